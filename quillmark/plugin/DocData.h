// Per-document data: one record per open drawing, dropped with it.
#pragma once

#include "StdAfx.h"

class CDocData {};

extern AcApDataManager<CDocData> DocumentData;
