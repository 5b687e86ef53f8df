#include "pages/CBlockFilterDialog.h"

namespace {

// The comparisons in the order of their list: the short forms first, so that
// the first entry that begins with ">" is ">" itself.
const ACHAR* const kOperators[] = {L"=", L">", L"<", L">=", L"<=", L"!="};

}  // namespace

IMPLEMENT_DYNAMIC(CBlockFilterDialog, CDialog)

BEGIN_MESSAGE_MAP(CBlockFilterDialog, CDialog)
    ON_BN_CLICKED(IDC_FILTER_ATTRIBUTE, &CBlockFilterDialog::OnAttributeClicked)
    ON_BN_CLICKED(IDC_FILTER_CHECK_ALL, &CBlockFilterDialog::OnCheckAll)
    ON_BN_CLICKED(IDC_FILTER_UNCHECK_ALL, &CBlockFilterDialog::OnUncheckAll)
    ON_CBN_DROPDOWN(IDC_FILTER_VALUE, &CBlockFilterDialog::OnValueDropDown)
END_MESSAGE_MAP()

CBlockFilterDialog::CBlockFilterDialog(CWnd* parent, AcadBlockArray* model)
    : CDialog(IDD, parent), m_useAttribute(0), m_model(model) {}

CBlockFilterDialog::~CBlockFilterDialog() = default;

void CBlockFilterDialog::DoDataExchange(CDataExchange* pDX) {
    CDialog::DoDataExchange(pDX);
    DDX_Control(pDX, IDC_FILTER_LAYERS, m_layerList);
    DDX_Check(pDX, IDC_FILTER_ATTRIBUTE, m_useAttribute);
    DDX_Control(pDX, IDC_FILTER_TAG, m_tagCombo);
    DDX_Control(pDX, IDC_FILTER_VALUE, m_valueCombo);
    DDX_Control(pDX, IDC_FILTER_OPERATOR, m_operatorCombo);
}

void CBlockFilterDialog::EnableCondition(BOOL enable) {
    m_tagCombo.EnableWindow(enable);
    m_valueCombo.EnableWindow(enable);
    m_operatorCombo.EnableWindow(enable);
}

BOOL CBlockFilterDialog::OnInitDialog() {
    CDialog::OnInitDialog();

    // Every layer of the drawing; with no limit all are ticked.
    CStringArray layers;
    GetLayerNames(layers);
    for (INT_PTR i = 0; i < layers.GetSize(); ++i) {
        int index = m_layerList.AddString(layers[i]);
        if (index >= 0) m_layerList.SetCheck(index, m_layers.IsEmpty() || m_layers.Find(layers[i], 0) >= 0);
    }
    FitListExtent(m_layerList);

    EnableCondition(FALSE);
    for (const ACHAR* op : kOperators) m_operatorCombo.AddString(op);
    m_operatorCombo.SetCurSel(0);

    if (m_model) {
        CStringArrayEx tags;
        m_model->GetAttributeTags(tags, 0);
        for (INT_PTR i = 0; i < tags.GetSize(); ++i) m_tagCombo.AddString(tags[i]);
        if (m_tagCombo.GetCount() > 0) FitComboDropWidth(m_tagCombo);
    }

    if (m_tag.IsEmpty()) {
        UpdateData(FALSE);
        return TRUE;
    }
    m_useAttribute = 1;
    EnableCondition(TRUE);
    m_tagCombo.SetWindowText(m_tag);
    m_valueCombo.SetWindowText(m_value);
    // The first entry that begins with the operator; an operator the list
    // does not know leaves "=".
    int count = m_operatorCombo.GetCount();
    for (int i = 0; i < count; ++i) {
        CString entry;
        m_operatorCombo.GetLBText(i, entry);
        if (!m_operator.IsEmpty() && entry.Left(m_operator.GetLength()) == m_operator) {
            m_operatorCombo.SetCurSel(i);
            break;
        }
    }
    UpdateData(FALSE);
    return TRUE;
}

void CBlockFilterDialog::OnAttributeClicked() {
    UpdateData(TRUE);
    EnableCondition(m_useAttribute ? TRUE : FALSE);
}

void CBlockFilterDialog::OnCheckAll() {
    for (int i = 0; i < m_layerList.GetCount(); ++i) m_layerList.SetCheck(i, 1);
}

void CBlockFilterDialog::OnUncheckAll() {
    for (int i = 0; i < m_layerList.GetCount(); ++i) m_layerList.SetCheck(i, 0);
}

void CBlockFilterDialog::OnValueDropDown() {
    m_valueCombo.ResetContent();
    m_valueCombo.SetWindowText(L"");
    CString tag;
    m_tagCombo.GetWindowText(tag);
    if (tag.IsEmpty() || !m_model) return;
    CStringArrayEx values;
    m_model->GetAttributeValues(tag, values);
    for (INT_PTR i = 0; i < values.GetSize(); ++i) m_valueCombo.AddString(values[i]);
    FitComboDropWidth(m_valueCombo);
}

void CBlockFilterDialog::OnOK() {
    if (!UpdateData(TRUE)) return;
    m_layers.RemoveAll();
    int count = m_layerList.GetCount();
    for (int i = 0; i < count; ++i) {
        if (!m_layerList.GetCheck(i)) continue;
        CString name;
        m_layerList.GetText(i, name);
        m_layers.Add(name);
    }
    // Every layer ticked is no limit at all.
    if (m_layers.GetSize() == count) m_layers.RemoveAll();
    if (m_useAttribute) {
        m_tagCombo.GetWindowText(m_tag);
        m_valueCombo.GetWindowText(m_value);
        m_operatorCombo.GetWindowText(m_operator);
    } else {
        m_tag.Empty();
        m_value.Empty();
        m_operator.Empty();
    }
    CDialog::OnOK();
}
