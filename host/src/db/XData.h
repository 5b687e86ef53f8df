// Extended data chains: application by application, each headed by 1001.
#pragma once

#include <dbmain.h>

namespace cadhost {

// The part of one application (null: all of it), as a new chain.
resbuf* CopyXData(const resbuf* chain, const ACHAR* appName);
// A chain that setXData takes: every part headed by a registered application.
Acad::ErrorStatus CheckXData(const resbuf* chain, AcDbDatabase* database);
// The object's chain after setXData: the applications of update replace
// theirs in current; an application given with its head alone is removed.
resbuf* MergeXData(const resbuf* current, const resbuf* update);

}  // namespace cadhost
