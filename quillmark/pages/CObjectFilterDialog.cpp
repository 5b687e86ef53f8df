#include "pages/CObjectFilterDialog.h"

#include "ArxUtils/ArxUtils.h"
#include "services/Registry.h"

namespace {

const ObjectTypeRow kObjectTypeRows[] = {
    {kObjectTypeLine, IDC_TYPE_LINE, L"Line"},
    {kObjectTypePolyline, IDC_TYPE_POLYLINE, L"Polyline"},
    {kObjectTypeMText, IDC_TYPE_MTEXT, L"MText"},
    {kObjectTypeText, IDC_TYPE_TEXT, L"Text"},
    {kObjectTypeCircle, IDC_TYPE_CIRCLE, L"Circle"},
    {kObjectTypeArc, IDC_TYPE_ARC, L"Arc"},
    {kObjectTypeSolid, IDC_TYPE_SOLID, L"Solid"},
    {kObjectTypeBlockReference, IDC_TYPE_BLOCKREF, L"BlockReference"},
};
const int kObjectTypeCount = sizeof(kObjectTypeRows) / sizeof(kObjectTypeRows[0]);

}  // namespace

const ObjectTypeRow* GetObjectTypeRows(int& count) {
    count = kObjectTypeCount;
    return kObjectTypeRows;
}

IMPLEMENT_DYNAMIC(CObjectFilterDialog, CDialog)

BEGIN_MESSAGE_MAP(CObjectFilterDialog, CDialog)
    ON_BN_CLICKED(IDC_FILTER_SELECT_ALL, &CObjectFilterDialog::OnSelectAll)
    ON_BN_CLICKED(IDC_FILTER_UNSELECT_ALL, &CObjectFilterDialog::OnUnselectAll)
END_MESSAGE_MAP()

CObjectFilterDialog::CObjectFilterDialog(LPCTSTR settingsKey, ObjectTypeMask objectMask, CWnd* parent)
    : CDialog(IDD, parent), m_objectMask(objectMask), m_settingsKey(settingsKey) {}

CObjectFilterDialog::~CObjectFilterDialog() = default;

void CObjectFilterDialog::DoDataExchange(CDataExchange* pDX) {
    CDialog::DoDataExchange(pDX);
    DDX_Control(pDX, IDC_FILTER_LAYERS, m_layerList);
    for (int i = 0; i < kObjectTypeCount; ++i) DDX_Control(pDX, kObjectTypeRows[i].controlId, m_typeBoxes[i]);
}

BOOL CObjectFilterDialog::OnInitDialog() {
    CDialog::OnInitDialog();
    // Every layer starts ticked, whatever the page chose before.
    CStringArray names;
    GetLayerNames(names);
    for (INT_PTR i = 0; i < names.GetSize(); ++i) {
        int index = m_layerList.AddString(names[i]);
        m_layerList.SetCheck(index, BST_CHECKED);
    }
    FitListExtent(m_layerList);
    for (int i = 0; i < kObjectTypeCount; ++i)
        m_typeBoxes[i].ShowWindow((m_objectMask & kObjectTypeRows[i].bit) ? SW_SHOW : SW_HIDE);
    LoadObjectTypes();
    return TRUE;
}

void CObjectFilterDialog::LoadObjectTypes() {
    for (int i = 0; i < kObjectTypeCount; ++i) {
        int known = (m_objectMask & kObjectTypeRows[i].bit) ? 1 : 0;
        // Any value but 0 lets the pages take the type, so it shows ticked.
        UINT stored = CRegistry::GetProfileInt(m_settingsKey, kObjectTypeRows[i].valueName, known);
        m_typeBoxes[i].SetCheck(stored != 0 ? BST_CHECKED : BST_UNCHECKED);
    }
}

void CObjectFilterDialog::SaveObjectTypes() {
    for (int i = 0; i < kObjectTypeCount; ++i)
        CRegistry::WriteProfileInt(m_settingsKey, kObjectTypeRows[i].valueName, m_typeBoxes[i].GetCheck());
}

void CObjectFilterDialog::OnSelectAll() {
    for (int i = 0; i < m_layerList.GetCount(); ++i) m_layerList.SetCheck(i, BST_CHECKED);
}

void CObjectFilterDialog::OnUnselectAll() {
    for (int i = 0; i < m_layerList.GetCount(); ++i) m_layerList.SetCheck(i, BST_UNCHECKED);
}

void CObjectFilterDialog::OnOK() {
    if (!UpdateData(TRUE)) return;
    SaveObjectTypes();
    CString name;
    for (int i = 0; i < m_layerList.GetCount(); ++i) {
        if (m_layerList.GetCheck(i) != BST_CHECKED) continue;
        m_layerList.GetText(i, name);
        m_layers.Add(name);
    }
    CDialog::OnOK();
}
