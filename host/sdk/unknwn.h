// IUnknown, the root interface of the component object model.
#pragma once

#include "objbase.h"
