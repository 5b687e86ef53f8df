// The numbers by which the hook and the Field dialog speak of the module's
// field types and its category.
#pragma once

#include "StdAfx.h"

typedef UINT FieldTypeId;

#define QM_FIELD_TABLE_CELL 72339u
#define QM_FIELD_EXCEL_CELL 72340u
#define QM_FIELD_TEXT_FILE 72341u
#define QM_FIELD_BLOCK_COUNT 72342u
#define QM_FIELD_AREA 72343u
#define QM_FIELD_LENGTH 72344u
#define QM_FIELD_CATEGORY 72345u

#define QM_CATEGORY_NAME L"Quillmark"
