// The platform headers that every source of the module includes.
#pragma once

#include <arxHeaders.h>
#include <dbmain.h>
#include <dbsymtb.h>
#include <shlwapi.h>
