#include "pages/PageSupport.h"

BOOL ReadTextDataItem(AcDbField* field, const ACHAR* key, CString& text) {
    if (!field) return FALSE;
    AcFdFieldValue data;
    if (field->getData(key, &data) != Acad::eOk || data.dataType() != AcValue::kString) return FALSE;
    const ACHAR* value = nullptr;
    if (!data.get(value)) return FALSE;
    text = value;
    return TRUE;
}
