// What the option pages share: the text of a data item that an evaluator
// stored in a field, and the turn of a pop-up template into a child.
#pragma once

#include "StdAfx.h"

#include <AcFdUi.h>

// The text of the data item under key; FALSE, leaving text alone, when the
// field is null, has no such item, or the item is not a text.
BOOL ReadTextDataItem(AcDbField* field, const ACHAR* key, CString& text);

// A page whose template is a pop-up window becomes a child of the Field
// dialog's page area.
void MakeChildPage(CWnd& page, CWnd* parent);
