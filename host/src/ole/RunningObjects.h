// The table of running objects: a program that runs registers its
// application object under its class, and others find it there.
#pragma once

#include <objbase.h>

namespace cadhost::ole {

// How many objects the table holds; for tests.
int RunningObjectCount();

}  // namespace cadhost::ole
