// What the option pages share: the text of a data item that an evaluator
// stored in a field.
#pragma once

#include "StdAfx.h"

#include <AcFdUi.h>

// The text of the data item under key; FALSE, leaving text alone, when the
// field is null, has no such item, or the item is not a text.
BOOL ReadTextDataItem(AcDbField* field, const ACHAR* key, CString& text);
