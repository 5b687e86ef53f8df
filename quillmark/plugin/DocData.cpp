#include "plugin/DocData.h"

AcApDataManager<CDocData> DocumentData;
