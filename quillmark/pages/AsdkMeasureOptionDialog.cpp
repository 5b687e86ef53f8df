#include "pages/AsdkMeasureOptionDialog.h"

#include <acedads.h>
#include <adslib.h>
#include <dbents.h>
#include <dbfield.h>
#include <dbpl.h>

#include <vector>

#include "fieldcode/FieldCodeForms.h"
#include "fieldcode/FieldCodeReading.h"
#include "pages/CAdditionalFormatDialog.h"
#include "plugin/ModuleState.h"
#include "services/Registry.h"

namespace {

// The units list: caption and item data (a LUNITS code, -1 for the
// drawing's current units, 0 for none), in the list's order.
struct UnitsEntry {
    const ACHAR* caption;
    int itemData;
};
const UnitsEntry kUnitsEntries[] = {
    {L"(none)", 0},       {L"Current units", -1}, {L"Decimal", 2},    {L"Architectural", 4},
    {L"Engineering", 3},  {L"Fractional", 5},     {L"Scientific", 1},
};

const int kCurrentUnits = -1;
const int kNoUnits = 0;
const int kScientific = 1;
const int kDecimal = 2;
const int kEngineering = 3;
const int kArchitectural = 4;
const int kFractional = 5;
const int kCurrentPrecision = -1;
const int kHighestPrecision = 8;
// DIMZIN 1 shows zero feet and zero inches, so that every entry of the
// precision list shows all its places.
const short kDimzinShowZeros = 1;

const ACHAR kCurrentPrecisionCaption[] = L"Current precision";
// A handle's text: up to 16 hexadecimal digits and the end zero.
const int kHandleTextLength = 17;
// acdbRToS writes at most this many characters with the end zero.
const int kNumberTextLength = 256;

// The selection filter: any of the types, each in its own <and> group.
resbuf* BuildSelectionFilter(const ACHAR* const types[4]) {
    resbuf* head = acutBuildList(-4, L"<or", 0);
    resbuf* tail = head;
    for (int i = 0; i < 4 && types[i] && tail; ++i) {
        tail->rbnext = acutBuildList(-4, L"<and", RTDXF0, types[i], -4, L"and>", 0);
        while (tail->rbnext) tail = tail->rbnext;
    }
    if (tail) tail->rbnext = acutBuildList(-4, L"or>", 0);
    return head;
}

}  // namespace

// ---- The two pages, side by side ----------------------------------------------

const MeasurePageKind kAreaPageKind = {
    IDD_AREA_PAGE,
    QM_EVALUATOR_AREA,
    L"AcArea Data",
    L"Quillmark\\AreaField",
    kObjectTypePolyline | kObjectTypeCircle,
    {L"CIRCLE", L"LWPOLYLINE"},
    {{&AcDbPolyline::desc, kObjectTypePolyline}, {&AcDbCircle::desc, kObjectTypeCircle}},
    &GetAreaUnitsFormat,
    false,  // Architectural and Fractional precision in decimal notation
    true,   // a cancelled Additional Format dialog renders the preview again
};

const MeasurePageKind kLengthPageKind = {
    IDD_LENGTH_PAGE,
    QM_EVALUATOR_LENGTH,
    L"AcLength Data",
    L"Quillmark\\LengthField",
    kObjectTypeLine | kObjectTypePolyline | kObjectTypeCircle | kObjectTypeArc,
    {L"ARC", L"CIRCLE", L"LINE", L"LWPOLYLINE"},
    {{&AcDbLine::desc, kObjectTypeLine},
     {&AcDbPolyline::desc, kObjectTypePolyline},
     {&AcDbCircle::desc, kObjectTypeCircle},
     {&AcDbArc::desc, kObjectTypeArc}},
    &GetLengthUnitsFormat,
    true,   // Architectural and Fractional precision in the unit's own notation
    false,  // a cancelled Additional Format dialog leaves the preview alone
};

IMPLEMENT_DYNAMIC(AsdkMeasureOptionDialog, CAcFdUiFieldOptionDialog)

BEGIN_MESSAGE_MAP(AsdkMeasureOptionDialog, CAcFdUiFieldOptionDialog)
    ON_BN_CLICKED(IDC_SELECT_OBJECTS, &AsdkMeasureOptionDialog::OnSelectObjects)
    ON_LBN_SELCHANGE(IDC_UNITS_LIST, &AsdkMeasureOptionDialog::OnUnitsChanged)
    ON_BN_CLICKED(IDC_ADDITIONAL_FORMAT, &AsdkMeasureOptionDialog::OnAdditionalFormat)
    ON_CBN_SELCHANGE(IDC_PRECISION, &AsdkMeasureOptionDialog::OnPrecisionChanged)
    ON_BN_CLICKED(IDC_REMOVE_OBJECT, &AsdkMeasureOptionDialog::OnRemoveObject)
    ON_BN_CLICKED(IDC_OBJECT_FILTER, &AsdkMeasureOptionDialog::OnFilter)
END_MESSAGE_MAP()

AsdkMeasureOptionDialog::AsdkMeasureOptionDialog(const MeasurePageKind& kind, CAcFdUiFieldDialogHook* hook,
                                                 CAcFdUiFieldDialog* dialog, HINSTANCE instance)
    : CAcFdUiFieldOptionDialog(hook, dialog, kind.templateId, instance),
      m_value(0.0),
      m_handleListKnown(FALSE),
      m_kind(kind) {}

AsdkMeasureOptionDialog::~AsdkMeasureOptionDialog() = default;

BOOL AsdkMeasureOptionDialog::Create(CWnd* parent) {
    CAcFdUiFieldOptionDialog::Create(parent);
    ModuleResourceScope scope;
    return CAdUiDialog::Create(m_kind.templateId, parent);
}

void AsdkMeasureOptionDialog::DoDataExchange(CDataExchange* pDX) {
    CAcFdUiFieldOptionDialog::DoDataExchange(pDX);
    DDX_Control(pDX, IDC_OBJECT_LIST, m_objectList);
    DDX_Control(pDX, IDC_UNITS_LIST, m_unitsList);
    DDX_Control(pDX, IDC_PRECISION, m_precisionCombo);
    DDX_Text(pDX, IDC_PREVIEW, m_previewText);
}

BOOL AsdkMeasureOptionDialog::OnInitDialog() {
    CAcFdUiFieldOptionDialog::OnInitDialog();
    for (const UnitsEntry& entry : kUnitsEntries) {
        int index = m_unitsList.AddString(entry.caption);
        m_unitsList.SetItemData(index, static_cast<DWORD_PTR>(entry.itemData));
    }
    // The drawing's units, without building the precision list: a new field
    // has the units piece alone in its format.
    AcDbDatabase* database = acdbHostApplicationServices()->workingDatabase();
    if (database) m_unitsList.SetCurSel(FindListItemByData(m_unitsList, static_cast<DWORD>(database->lunits())));
    m_precisionCombo.EnableWindow(FALSE);
    GetLayerNames(m_layers, database);
    return TRUE;
}

// ---- Composing -------------------------------------------------------------

CString AsdkMeasureOptionDialog::GetUnitsFormat() {
    int selected = m_unitsList.m_hWnd ? m_unitsList.GetCurSel() : LB_ERR;
    if (selected < 0) return m_kind.unitsFormat(FALSE, 0);
    return m_kind.unitsFormat(TRUE, static_cast<int>(m_unitsList.GetItemData(selected)));
}

CString AsdkMeasureOptionDialog::GetPrecisionFormat() {
    if (!m_precisionCombo.m_hWnd) return CString();
    int selected = m_precisionCombo.GetCurSel();
    int itemData = selected >= 0 ? static_cast<int>(m_precisionCombo.GetItemData(selected)) : kCurrentPrecision;
    return ::GetPrecisionFormat(m_precisionCombo.IsWindowEnabled(), selected >= 0, itemData);
}

CString AsdkMeasureOptionDialog::GetFormat() {
    return JoinFormat(GetUnitsFormat(), GetPrecisionFormat(), ComposeAdditionalFormat(m_additional));
}

CString AsdkMeasureOptionDialog::GetFieldCode() {
    return ComposeObjectsFieldCode(m_kind.evaluatorId, HandleList(), GetFormat());
}

const CString& AsdkMeasureOptionDialog::HandleList() {
    if (m_handleListKnown) return m_handleList;
    // Joined in list order through one buffer.
    m_handleList.Empty();
    std::vector<ACHAR> text(kHandleTextLength);
    int count = m_objectList.m_hWnd ? m_objectList.GetCount() : 0;
    for (int i = 0; i < count; ++i) {
        int length = m_objectList.GetTextLen(i);
        if (length < 0) continue;
        if (static_cast<size_t>(length) >= text.size()) text.resize(static_cast<size_t>(length) + 1);
        m_objectList.GetText(i, text.data());
        if (i > 0) m_handleList += L';';
        m_handleList += text.data();
    }
    // A list without a window is no list yet: nothing is kept for it.
    m_handleListKnown = m_objectList.m_hWnd != nullptr;
    return m_handleList;
}

void AsdkMeasureOptionDialog::RemoveListEntry(int index) {
    CString entry;
    m_objectList.GetText(index, entry);
    m_objectList.DeleteString(static_cast<UINT>(index));
    if (!m_handleListKnown) return;
    // The entry is the index-th piece of the joined handles; it goes with
    // one ";" beside it. Anything unexpected drops the joined handles.
    int start = 0;
    for (int i = 0; i < index && start >= 0; ++i) {
        start = m_handleList.Find(L';', start);
        if (start >= 0) ++start;
    }
    int length = entry.GetLength();
    if (start < 0 || m_handleList.Mid(start, length) != entry ||
        (start + length < m_handleList.GetLength() && m_handleList[start + length] != L';')) {
        m_handleListKnown = FALSE;
        return;
    }
    if (start + length < m_handleList.GetLength()) m_handleList.Delete(start, length + 1);
    else if (start > 0) m_handleList.Delete(start - 1, length + 1);
    else m_handleList.Empty();
}

void AsdkMeasureOptionDialog::ShowFieldCode(const CString& code) {
    if (CAcFdUiFieldDialog* dialog = GetFieldDialog()) dialog->SetFieldCode(code);
}

// ---- The two recomputations -------------------------------------------------

void AsdkMeasureOptionDialog::RefreshValue() {
    m_value = 0.0;
    CString code = GetFieldCode();
    AcDbField field;
    field.setFieldCode(code, 0, nullptr);
    field.evaluate(AcDbField::kPreview, acdbHostApplicationServices()->workingDatabase(), nullptr, nullptr);
    if (field.evaluationStatus(nullptr, nullptr) == AcDbField::kSuccess) {
        AcFdFieldValue value;
        double number = 0.0;
        if (field.getValue(value) == Acad::eOk && value.get(number)) m_value = number;
    }
    // A failed evaluation shows the host's text for it.
    m_previewText = field.getValue();
    UpdateData(FALSE);
    ShowFieldCode(code);
}

void AsdkMeasureOptionDialog::RefreshPreview() {
    m_previewText = FormatDoubleValue(m_value, GetFormat());
    UpdateData(FALSE);
    ShowFieldCode(GetFieldCode());
}

// ---- Format events -----------------------------------------------------------

void AsdkMeasureOptionDialog::OnUnitsChanged() {
    int selected = m_unitsList.GetCurSel();
    if (selected < 0) return;
    int units = static_cast<int>(m_unitsList.GetItemData(selected));

    resbuf saved = {};
    bool haveSaved = acedGetVar(L"DIMZIN", &saved) == RTNORM;
    resbuf showZeros = {};
    showZeros.restype = RTSHORT;
    showZeros.resval.rint = kDimzinShowZeros;
    acedSetVar(L"DIMZIN", &showZeros);

    m_precisionCombo.ResetContent();
    if (units >= kScientific && units <= kFractional) {
        m_precisionCombo.EnableWindow(TRUE);
        int index = m_precisionCombo.AddString(kCurrentPrecisionCaption);
        m_precisionCombo.SetItemData(index, static_cast<DWORD_PTR>(kCurrentPrecision));
        bool fraction = units == kArchitectural || units == kFractional;
        for (int precision = 0; precision <= kHighestPrecision; ++precision) {
            ACHAR text[kNumberTextLength] = L"";
            if (!fraction) {
                acdbRToS(0.0, units, precision, text);
            } else if (!m_kind.fractionsInOwnNotation) {
                acdbRToS(0.0, kDecimal, precision, text);
            } else {
                // The fraction that the precision stands for: 1/2 to 1/256.
                double value = precision == 0 ? 0.0 : 1.0 / static_cast<double>(1 << precision);
                acdbRToS(value, units, precision, text);
            }
            index = m_precisionCombo.AddString(text);
            m_precisionCombo.SetItemData(index, static_cast<DWORD_PTR>(precision));
        }
        m_precisionCombo.SetCurSel(0);
    } else {
        // Current units, none, or a code the list does not know.
        m_precisionCombo.EnableWindow(FALSE);
    }

    if (haveSaved) acedSetVar(L"DIMZIN", &saved);
    RefreshPreview();
}

void AsdkMeasureOptionDialog::OnPrecisionChanged() { RefreshPreview(); }

void AsdkMeasureOptionDialog::OnAdditionalFormat() {
    ModuleResourceScope scope;
    CAdditionalFormatDialog dialog(nullptr);
    dialog.m_unitsFormat = GetUnitsFormat();
    dialog.m_precisionFormat = GetPrecisionFormat();
    int selected = m_unitsList.GetCurSel();
    dialog.m_units = selected >= 0 ? static_cast<int>(m_unitsList.GetItemData(selected)) : -1;
    dialog.m_valueKind = CAdditionalFormatDialog::kValueDouble;
    dialog.m_doubleValue = m_value;
    dialog.SetAdditionalValues(m_additional);
    if (dialog.DoModal() == IDOK) {
        m_additional = dialog.AdditionalValues();
        RefreshPreview();
    } else if (m_kind.previewAfterCancel) {
        RefreshPreview();
    }
}

// ---- Objects -------------------------------------------------------------------

BOOL AsdkMeasureOptionDialog::IsObjectTypeAllowed(AcDbEntity* entity) {
    if (!entity) return FALSE;
    int rowCount = 0;
    const ObjectTypeRow* rows = GetObjectTypeRows(rowCount);
    for (const MeasuredClass& measured : m_kind.classes) {
        if (!measured.desc || !entity->isKindOf(measured.desc())) continue;
        // The stored choice is read at every test, so that a confirmed
        // filter holds at once and after the next start.
        for (int i = 0; i < rowCount; ++i) {
            if (rows[i].bit == measured.type)
                return CRegistry::GetProfileInt(m_kind.settingsKey, rows[i].valueName, 1) != 0;
        }
        return FALSE;
    }
    return FALSE;
}

BOOL AsdkMeasureOptionDialog::IsEntityAllowed(AcDbEntity* entity) {
    ACHAR* layer = entity->layer();
    bool onLayer = m_layers.Find(layer, 0) >= 0;
    acutDelBuffer(layer);
    return onLayer && IsObjectTypeAllowed(entity);
}

BOOL AsdkMeasureOptionDialog::IsHandleAllowed(const CString& handle) {
    ads_name name = {0, 0};
    AcDbObjectId id;
    AcDbEntity* entity = nullptr;
    if (acdbHandEnt(handle, name) != RTNORM || acdbGetObjectId(id, name) != Acad::eOk ||
        acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk)
        return FALSE;
    BOOL allowed = IsEntityAllowed(entity);
    entity->close();
    return allowed;
}

void AsdkMeasureOptionDialog::OnSelectObjects() {
    resbuf* filter = BuildSelectionFilter(m_kind.selectionTypes);
    CAcFdUiFieldDialog* fieldDialog = GetFieldDialog();
    if (fieldDialog) fieldDialog->BeginEditorCommand();
    ads_name selection = {0, 0};
    acedSSGet(nullptr, nullptr, nullptr, filter, selection);
    if (fieldDialog) fieldDialog->CompleteEditorCommand(TRUE);
    acutRelRb(filter);

    // Nothing chosen, or the selection cancelled: the page stays as it is.
    Adesk::Int32 length = 0;
    acedSSLength(selection, &length);
    if (length <= 0) {
        if (selection[0] != 0 || selection[1] != 0) acedSSFree(selection);
        return;
    }
    for (Adesk::Int32 i = 0; i < length; ++i) {
        ads_name member;
        AcDbObjectId id;
        AcDbEntity* entity = nullptr;
        if (acedSSName(selection, i, member) != RTNORM || acdbGetObjectId(id, member) != Acad::eOk ||
            acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk)
            continue;
        if (IsEntityAllowed(entity)) {
            AcDbHandle handle;
            entity->getAcDbHandle(handle);
            ACHAR text[kHandleTextLength] = L"";
            handle.getIntoAsciiBuffer(text, kHandleTextLength);
            // A whole entry: "2A1" is not "2A".
            if (m_objectList.FindStringExact(-1, text) == LB_ERR) {
                m_objectList.AddString(text);
                m_handleListKnown = FALSE;
            }
        }
        entity->close();
    }
    acedSSFree(selection);
    RefreshValue();
}

void AsdkMeasureOptionDialog::OnRemoveObject() {
    int selected = m_objectList.GetCurSel();
    if (selected < 0) return;
    RemoveListEntry(selected);
    RefreshValue();
}

void AsdkMeasureOptionDialog::OnFilter() {
    ModuleResourceScope scope;
    CObjectFilterDialog dialog(m_kind.settingsKey, m_kind.filterMask, nullptr);
    if (dialog.DoModal() != IDOK) return;
    m_layers.RemoveAll();
    m_layers.Copy(dialog.m_layers);
    // The filter holds at once for the objects in the list, and for every
    // later selection.
    CString handle;
    for (int i = m_objectList.GetCount() - 1; i >= 0; --i) {
        m_objectList.GetText(i, handle);
        if (!IsHandleAllowed(handle)) {
            m_objectList.DeleteString(static_cast<UINT>(i));
            m_handleListKnown = FALSE;
        }
    }
    RefreshValue();
}

// ---- Reading a stored field --------------------------------------------------------

int AsdkMeasureOptionDialog::LoadField(AcDbField* field) {
    if (!field) return 0;
    AcFdFieldValue data;
    if (field->getData(m_kind.dataKey, &data) != Acad::eOk) return 64;
    const ACHAR* item = nullptr;
    if (data.dataType() != AcValue::kString || !data.get(item)) return 16;

    // Units first, since they rebuild the precision list; then precision,
    // prefix and suffix, factor and zero suppression.
    MeasureFormatState format;
    format.m_additional = m_additional;
    ReadMeasureFormat(field->getFormat(), format);
    if (format.m_hasUnits) {
        int index = FindListItemByData(m_unitsList, static_cast<DWORD>(format.m_units));
        if (index >= 0) {
            m_unitsList.SetCurSel(index);
            OnUnitsChanged();
        }
    }
    if (format.m_hasPrecision) {
        int index = FindComboItemByData(m_precisionCombo, static_cast<DWORD>(format.m_precision));
        if (index >= 0) m_precisionCombo.SetCurSel(index);
    }
    m_additional = format.m_additional;

    // The handles as the evaluator kept them; they are not tested here.
    CStringArray handles;
    ReadObjectHandles(item, handles);
    for (INT_PTR i = 0; i < handles.GetSize(); ++i) m_objectList.AddString(handles[i]);
    m_handleListKnown = FALSE;

    AcFdFieldValue value;
    double number = 0.0;
    if (field->getValue(value) == Acad::eOk && value.get(number)) m_value = number;
    SetDlgItemText(IDC_PREVIEW, field->getValue());
    ShowFieldCode(field->getFieldCode(AcDbField::kFieldCode | AcDbField::kAddMarkers, nullptr, AcDb::kForRead));
    return 1;
}
