// Everything a module of the CAD platform includes.
#pragma once

#include "afxwin.h"
#include "afxtempl.h"
#include "acui.h"
#include "rxregsvc.h"
#include "aced.h"
#include "AcApDMgr.h"
#include "dbapserv.h"
