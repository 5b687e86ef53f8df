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

void MakeChildPage(CWnd& page, CWnd* parent) {
    page.ModifyStyle(WS_POPUP | WS_CHILD | WS_THICKFRAME, 0);
    page.ModifyStyle(0, WS_CHILD);
    page.SetParent(parent);
}
