#include "pages/AsdkBlockCntOptionDialog.h"

#include <acedads.h>
#include <dbdynblk.h>
#include <dbents.h>
#include <dbobjptr.h>

#include <string>
#include <unordered_set>

#include "fieldcode/FieldCodeForms.h"
#include "fieldcode/FieldCodeReading.h"
#include "fieldcode/FormatText.h"
#include "pages/CAdditionalFormatDialog.h"
#include "pages/CBlockFilterDialog.h"
#include "plugin/ModuleState.h"
#include "services/Registry.h"

namespace {

const ACHAR kSettingsSection[] = L"Quillmark";
const ACHAR kSourceSetting[] = L"BlockSource";
const ACHAR kNestedSetting[] = L"IncNestedBlock";
const ACHAR kBlockCountData[] = L"AcBlockCount Data";
const ACHAR kFirstCornerPrompt[] = L"\nSpecify first corner point:";
const ACHAR kOtherCornerPrompt[] = L"\nSpecify other corner point:";

// A count shows in the Additional Format dialog as a decimal number.
const int kDecimalUnits = 2;

// LoadField's answers.
const int kLoaded = 1;
const int kNoField = 0;
const int kNoDataItem = 64;
const int kDataNotText = 16;

// The block name of a reference picked in the drawing: a dynamic block's
// own name also for its anonymous copies; empty for any other anonymous
// block, or when the reference or its block does not open.
CString PickedBlockName(AcDbObjectId referenceId) {
    AcDbDynBlockReference dynamic(referenceId);
    AcDbObjectId recordId;
    if (dynamic.isDynamicBlock()) {
        recordId = dynamic.dynamicBlockTableRecord();
    } else {
        AcDbObjectPointer<AcDbBlockReference> reference(referenceId, AcDb::kForRead);
        if (reference.openStatus() != Acad::eOk) return CString();
        recordId = reference->blockTableRecord();
    }
    AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> record(recordId, AcDb::kForRead);
    if (record.openStatus() != Acad::eOk || record->isAnonymous()) return CString();
    const ACHAR* name = nullptr;
    record->getName(name);
    return CString(name);
}

}  // namespace

IMPLEMENT_DYNAMIC(AsdkBlockCntOptionDialog, CAcFdUiFieldOptionDialog)

BEGIN_MESSAGE_MAP(AsdkBlockCntOptionDialog, CAcFdUiFieldOptionDialog)
    ON_BN_CLICKED(IDC_ADDITIONAL_FORMAT, &AsdkBlockCntOptionDialog::OnAdditionalFormat)
    ON_BN_CLICKED(IDC_BLOCK_FILTER, &AsdkBlockCntOptionDialog::OnFilter)
    ON_LBN_SELCHANGE(IDC_BLOCK_LIST, &AsdkBlockCntOptionDialog::RefreshValue)
    ON_BN_CLICKED(IDC_CHECK_ALL, &AsdkBlockCntOptionDialog::OnCheckAll)
    ON_BN_CLICKED(IDC_UNCHECK_ALL, &AsdkBlockCntOptionDialog::OnUncheckAll)
    ON_BN_CLICKED(IDC_NESTED_BLOCKS, &AsdkBlockCntOptionDialog::OnNestedChanged)
    ON_BN_CLICKED(IDC_PICK_WINDOW, &AsdkBlockCntOptionDialog::OnPickWindow)
    ON_BN_CLICKED(IDC_SOURCE_DRAWING, &AsdkBlockCntOptionDialog::OnSourceChanged)
    ON_BN_CLICKED(IDC_SOURCE_WINDOW, &AsdkBlockCntOptionDialog::OnSourceChanged)
    ON_MESSAGE(WM_ACAD_KEEPFOCUS, &AsdkBlockCntOptionDialog::OnAcadKeepFocus)
END_MESSAGE_MAP()

AsdkBlockCntOptionDialog::AsdkBlockCntOptionDialog(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* dialog,
                                                   HINSTANCE instance)
    : CAcFdUiFieldOptionDialog(hook, dialog, IDD, instance),
      m_value(0),
      m_source(0),
      m_firstCorner{0, 0, 0},
      m_secondCorner{0, 0, 0},
      m_initialising(0),
      m_factor(1.0),
      m_leadingZero(0),
      m_trailingZero(0),
      m_zeroFeet(0),
      m_zeroInches(0) {}

AsdkBlockCntOptionDialog::~AsdkBlockCntOptionDialog() = default;

BOOL AsdkBlockCntOptionDialog::Create(CWnd* parent) {
    CAcFdUiFieldOptionDialog::Create(parent);
    ModuleResourceScope scope;
    return CAdUiDialog::Create(IDD, parent);
}

void AsdkBlockCntOptionDialog::DoDataExchange(CDataExchange* pDX) {
    CAcFdUiFieldOptionDialog::DoDataExchange(pDX);
    DDX_Text(pDX, IDC_PREVIEW, m_previewText);
    DDX_Control(pDX, IDC_BLOCK_LIST, m_blockList);
    DDX_Control(pDX, IDC_NESTED_BLOCKS, m_nestedCheck);
    DDX_Radio(pDX, IDC_SOURCE_DRAWING, m_source);
}

BOOL AsdkBlockCntOptionDialog::OnInitDialog() {
    CAcFdUiFieldOptionDialog::OnInitDialog();
    m_initialising = 1;
    m_blocks.Read(nullptr, _SH_DENYWR, false);
    // A stored source other than the two the page knows is the drawing.
    m_source = CRegistry::GetProfileInt(kSettingsSection, kSourceSetting, m_source) == 1 ? 1 : 0;
    m_nestedCheck.SetCheck(CRegistry::GetProfileInt(kSettingsSection, kNestedSetting, 0) != 0 ? BST_CHECKED
                                                                                             : BST_UNCHECKED);
    UpdateData(FALSE);
    OnSourceChanged();
    m_initialising = 0;
    return TRUE;
}

LRESULT AsdkBlockCntOptionDialog::OnAcadKeepFocus(WPARAM, LPARAM) { return 1; }

CString AsdkBlockCntOptionDialog::GetFormat() const {
    return ComposeAdditionalFormat(m_factor, m_prefix, m_suffix, 0, 0, m_zeroFeet, m_zeroInches, m_leadingZero,
                                   m_trailingZero);
}

CString AsdkBlockCntOptionDialog::GetFieldCode() {
    BlockCountCodeState state;
    if (m_blockList.m_hWnd) {
        int count = m_blockList.GetCount();
        for (int i = 0; i < count; ++i) {
            if (!m_blockList.GetCheck(i)) continue;
            CString name;
            m_blockList.GetText(i, name);
            state.blockNames.Add(name);
        }
    }
    if (state.blockNames.IsEmpty()) return ComposeBlockCountFieldCode(state);

    state.layers.Copy(m_layers);
    state.op = m_filterOperator;
    state.tag = m_filterTag;
    state.value = m_filterValue;
    state.nested = m_nestedCheck.m_hWnd && m_nestedCheck.GetCheck() == BST_CHECKED;
    state.windowMode = m_source == 1;
    if (state.windowMode) {
        // The space in which the field is edited now, whichever it was made in.
        AcDbDatabase* database = acdbHostApplicationServices()->workingDatabase();
        if (database) GetHandleText(database->currentSpaceId(), state.spaceHandle);
        for (int i = 0; i < 3; ++i) {
            state.firstCorner[i] = m_firstCorner[i];
            state.secondCorner[i] = m_secondCorner[i];
        }
    }
    state.format = GetFormat();
    return ComposeBlockCountFieldCode(state);
}

void AsdkBlockCntOptionDialog::RefreshValue() {
    m_value = 0;
    CString code = GetFieldCode();
    AcDbField field;
    field.setFieldCode(code, 0, nullptr);
    field.evaluate(AcDbField::kPreview, acdbHostApplicationServices()->workingDatabase(), nullptr, nullptr);
    if (field.evaluationStatus(nullptr, nullptr) == AcDbField::kSuccess) {
        AcFdFieldValue value;
        Adesk::Int32 count = 0;
        if (field.getValue(value) == Acad::eOk && value.get(count)) m_value = count;
    }
    m_previewText = field.getValue();
    UpdateData(FALSE);
    if (CAcFdUiFieldDialog* dialog = GetFieldDialog()) dialog->SetFieldCode(GetFieldCode());
}

void AsdkBlockCntOptionDialog::OnSourceChanged() {
    int previous = m_source;
    UpdateData(TRUE);
    if (CWnd* pick = GetDlgItem(IDC_PICK_WINDOW)) pick->EnableWindow(m_source == 1);
    if (m_source == previous && !m_initialising) return;
    if (!m_initialising) CRegistry::WriteProfileInt(kSettingsSection, kSourceSetting, m_source);

    for (int i = 0; i < 3; ++i) m_firstCorner[i] = m_secondCorner[i] = 0;
    m_blockList.ResetContent();
    if (m_source == 1) {
        // A window starts afresh: the filter goes, and nesting has no meaning
        // for what a window shows (the setting stays as it is).
        m_layers.RemoveAll();
        m_filterTag.Empty();
        m_filterValue.Empty();
        m_filterOperator.Empty();
        m_nestedCheck.SetCheck(BST_UNCHECKED);
        m_nestedCheck.EnableWindow(FALSE);
    } else {
        // The definitions, so that a block without references and one used
        // only inside others stand in the list too.
        CStringArrayEx names;
        m_blocks.GetBlockNames(names);
        for (INT_PTR i = 0; i < names.GetSize(); ++i) m_blockList.AddString(names[i]);
        m_nestedCheck.EnableWindow(TRUE);
    }
    RefreshValue();
}

void AsdkBlockCntOptionDialog::OnPickWindow() {
    if (!UpdateData(TRUE) || m_source != 1) return;
    CAcFdUiFieldDialog* fieldDialog = GetFieldDialog();
    if (fieldDialog) fieldDialog->BeginEditorCommand();
    int result = acedGetPoint(nullptr, kFirstCornerPrompt, m_firstCorner);
    if (result == RTNORM) result = acedGetCorner(m_firstCorner, kOtherCornerPrompt, m_secondCorner);
    if (fieldDialog) fieldDialog->CompleteEditorCommand(1);
    if (result != RTNORM) return;

    // The references that lie wholly inside the window, in the corners' own
    // coordinate system.
    resbuf* filter = acutBuildList(RTDXF0, L"INSERT", 0);
    ads_name selection;
    int selected = acedSSGet(L"W", m_firstCorner, m_secondCorner, filter, selection);
    acutRelRb(filter);
    CStringArrayEx names;
    if (selected == RTNORM) {
        std::unordered_set<std::wstring> seen;
        Adesk::Int32 length = 0;
        acedSSLength(selection, &length);
        for (Adesk::Int32 i = 0; i < length; ++i) {
            ads_name entity;
            AcDbObjectId id;
            if (acedSSName(selection, i, entity) != RTNORM || acdbGetObjectId(id, entity) != Acad::eOk) continue;
            CString name = PickedBlockName(id);
            if (name.IsEmpty()) continue;
            if (seen.insert(std::wstring(static_cast<const wchar_t*>(name))).second) names.Add(name);
        }
        acedSSFree(selection);
    }
    acdbUcs2Wcs(m_firstCorner, m_firstCorner, 0);
    acdbUcs2Wcs(m_secondCorner, m_secondCorner, 0);

    m_blockList.ResetContent();
    for (INT_PTR i = 0; i < names.GetSize(); ++i) m_blockList.AddString(names[i]);
    RefreshValue();
}

void AsdkBlockCntOptionDialog::OnCheckAll() {
    for (int i = 0; i < m_blockList.GetCount(); ++i) m_blockList.SetCheck(i, 1);
    RefreshValue();
}

void AsdkBlockCntOptionDialog::OnUncheckAll() {
    for (int i = 0; i < m_blockList.GetCount(); ++i) m_blockList.SetCheck(i, 0);
    RefreshValue();
}

void AsdkBlockCntOptionDialog::OnNestedChanged() {
    CRegistry::WriteProfileInt(kSettingsSection, kNestedSetting, m_nestedCheck.GetCheck() == BST_CHECKED ? 1 : 0);
    RefreshValue();
}

void AsdkBlockCntOptionDialog::OnFilter() {
    ModuleResourceScope scope;
    CBlockFilterDialog dialog(this, &m_blocks);
    dialog.m_layers.Copy(m_layers);
    dialog.m_tag = m_filterTag;
    dialog.m_value = m_filterValue;
    dialog.m_operator = m_filterOperator;
    if (dialog.DoModal() != IDOK) return;
    m_layers.Copy(dialog.m_layers);
    m_filterTag = dialog.m_tag;
    m_filterValue = dialog.m_value;
    m_filterOperator = dialog.m_operator;
    RefreshValue();
}

void AsdkBlockCntOptionDialog::OnAdditionalFormat() {
    {
        ModuleResourceScope scope;
        CAdditionalFormatDialog dialog;
        dialog.m_units = kDecimalUnits;
        dialog.m_valueKind = CAdditionalFormatDialog::kValueLong;
        dialog.m_longValue = m_value;
        dialog.m_factor = m_factor;
        dialog.m_prefix = m_prefix;
        dialog.m_suffix = m_suffix;
        dialog.m_leadingZero = m_leadingZero;
        dialog.m_trailingZero = m_trailingZero;
        dialog.m_zeroFeet = m_zeroFeet;
        dialog.m_zeroInches = m_zeroInches;
        if (dialog.DoModal() == IDOK) {
            m_factor = dialog.m_factor;
            m_prefix = dialog.m_prefix;
            m_suffix = dialog.m_suffix;
            m_leadingZero = dialog.m_leadingZero;
            m_trailingZero = dialog.m_trailingZero;
            m_zeroFeet = dialog.m_zeroFeet;
            m_zeroInches = dialog.m_zeroInches;
        }
    }
    // The last count under the format, without a new evaluation.
    m_previewText = FormatLongValue(m_value, GetFormat());
    UpdateData(FALSE);
    if (CAcFdUiFieldDialog* dialog = GetFieldDialog()) dialog->SetFieldCode(GetFieldCode());
}

int AsdkBlockCntOptionDialog::LoadField(AcDbField* field) {
    if (!field) return kNoField;
    AcFdFieldValue data;
    if (field->getData(kBlockCountData, &data) != Acad::eOk) return kNoDataItem;
    const ACHAR* item = nullptr;
    if (data.dataType() != AcValue::kString || !data.get(item)) return kDataNotText;

    AdditionalFormat additional;
    additional.m_factor = m_factor;
    additional.m_prefix = m_prefix;
    additional.m_suffix = m_suffix;
    additional.m_leadingZero = m_leadingZero;
    additional.m_trailingZero = m_trailingZero;
    additional.m_zeroFeet = m_zeroFeet;
    additional.m_zeroInches = m_zeroInches;
    ReadAdditionalFormat(field->getFormat(), additional);
    m_factor = additional.m_factor;
    m_prefix = additional.m_prefix;
    m_suffix = additional.m_suffix;
    m_leadingZero = additional.m_leadingZero;
    m_trailingZero = additional.m_trailingZero;
    m_zeroFeet = additional.m_zeroFeet;
    m_zeroInches = additional.m_zeroInches;

    BlockCountData read;
    read.m_tag = m_filterTag;
    read.m_op = m_filterOperator;
    read.m_value = m_filterValue;
    if (ReadBlockCountData(item, read)) {
        for (INT_PTR i = 0; i < read.m_blockNames.GetSize(); ++i) {
            // A name the list lacks (the drawing no longer holds it) comes
            // back all the same.
            int index = m_blockList.FindStringExact(-1, read.m_blockNames[i]);
            if (index < 0) index = m_blockList.AddString(read.m_blockNames[i]);
            if (index >= 0) m_blockList.SetCheck(index, 1);
        }
        if (read.m_window) {
            for (int i = 0; i < 3; ++i) {
                m_firstCorner[i] = read.m_firstCorner[i];
                m_secondCorner[i] = read.m_secondCorner[i];
            }
            m_source = 1;
        }
        m_layers.Append(read.m_layers);
        m_filterTag = read.m_tag;
        m_filterOperator = read.m_op;
        m_filterValue = read.m_value;
        if (read.m_nested && m_nestedCheck.m_hWnd) m_nestedCheck.SetCheck(BST_CHECKED);
    }

    m_value = 0;
    AcFdFieldValue value;
    Adesk::Int32 count = 0;
    if (field->getValue(value) == Acad::eOk && value.get(count)) m_value = count;
    m_previewText = field->getValue();
    if (m_hWnd) UpdateData(FALSE);
    if (CAcFdUiFieldDialog* dialog = GetFieldDialog())
        dialog->SetFieldCode(field->getFieldCode(AcDbField::kFieldCode | AcDbField::kAddMarkers));
    return kLoaded;
}
