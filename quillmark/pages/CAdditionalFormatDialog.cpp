#include "pages/CAdditionalFormatDialog.h"

#include <AcValue.h>

#include "ArxUtils/ArxUtils.h"

namespace {

// The entries of the hidden separator lists and their character codes.
struct SeparatorEntry {
    const ACHAR* caption;
    DWORD code;
};
const SeparatorEntry kDecimalSeparators[] = {{L"'.' (Period)", 0}, {L"',' (Comma)", 44}, {L"' ' (Space)", 32}};
const SeparatorEntry kThousandsSeparators[] = {
    {L"(None)", 0}, {L"',' (Comma)", 44}, {L"'.' (Period)", 46}, {L"''' (Single quote)", 39}};

template <size_t N>
void FillSeparators(CComboBox& combo, const SeparatorEntry (&entries)[N]) {
    for (const SeparatorEntry& entry : entries) {
        int index = combo.AddString(entry.caption);
        combo.SetItemData(index, entry.code);
    }
    combo.SetCurSel(0);
}

// Units codes of LUNITS.
const int kEngineering = 3;
const int kArchitectural = 4;

}  // namespace

BEGIN_MESSAGE_MAP(CAdditionalFormatDialog, CDialog)
    ON_EN_CHANGE(IDC_CONVERSION_FACTOR, &CAdditionalFormatDialog::UpdatePreview)
    ON_EN_CHANGE(IDC_FORMAT_PREFIX, &CAdditionalFormatDialog::UpdatePreview)
    ON_EN_CHANGE(IDC_FORMAT_SUFFIX, &CAdditionalFormatDialog::UpdatePreview)
    ON_BN_CLICKED(IDC_ZERO_LEADING, &CAdditionalFormatDialog::UpdatePreview)
    ON_BN_CLICKED(IDC_ZERO_TRAILING, &CAdditionalFormatDialog::UpdatePreview)
    ON_BN_CLICKED(IDC_ZERO_FEET, &CAdditionalFormatDialog::UpdatePreview)
    ON_BN_CLICKED(IDC_ZERO_INCHES, &CAdditionalFormatDialog::UpdatePreview)
END_MESSAGE_MAP()

CAdditionalFormatDialog::CAdditionalFormatDialog(CWnd* parent)
    : CDialog(IDD, parent),
      m_factor(1.0),
      m_leadingZero(0),
      m_trailingZero(0),
      m_zeroFeet(0),
      m_zeroInches(0),
      m_units(-1),
      m_valueKind(kValueNone),
      m_longValue(0),
      m_doubleValue(0.0),
      m_pointValue{0.0, 0.0, 0.0} {}

CAdditionalFormatDialog::~CAdditionalFormatDialog() = default;

void CAdditionalFormatDialog::SetAdditionalValues(const AdditionalFormat& values) {
    m_factor = values.m_factor;
    m_prefix = values.m_prefix;
    m_suffix = values.m_suffix;
    m_leadingZero = values.m_leadingZero;
    m_trailingZero = values.m_trailingZero;
    m_zeroFeet = values.m_zeroFeet;
    m_zeroInches = values.m_zeroInches;
}

AdditionalFormat CAdditionalFormatDialog::AdditionalValues() const {
    AdditionalFormat values;
    values.m_factor = m_factor;
    values.m_prefix = m_prefix;
    values.m_suffix = m_suffix;
    values.m_leadingZero = m_leadingZero;
    values.m_trailingZero = m_trailingZero;
    values.m_zeroFeet = m_zeroFeet;
    values.m_zeroInches = m_zeroInches;
    return values;
}

void CAdditionalFormatDialog::DoDataExchange(CDataExchange* pDX) {
    CDialog::DoDataExchange(pDX);
    DDX_Text(pDX, IDC_CONVERSION_FACTOR, m_factor);
    DDX_Text(pDX, IDC_FORMAT_PREFIX, m_prefix);
    DDX_Text(pDX, IDC_FORMAT_SUFFIX, m_suffix);
    DDX_Check(pDX, IDC_ZERO_LEADING, m_leadingZero);
    DDX_Check(pDX, IDC_ZERO_TRAILING, m_trailingZero);
    DDX_Check(pDX, IDC_ZERO_FEET, m_zeroFeet);
    DDX_Check(pDX, IDC_ZERO_INCHES, m_zeroInches);
    DDX_Control(pDX, IDC_DECIMAL_SEPARATOR, m_decimalCombo);
    DDX_Control(pDX, IDC_THOUSANDS_SEPARATOR, m_thousandsCombo);
}

BOOL CAdditionalFormatDialog::OnInitDialog() {
    CDialog::OnInitDialog();
    FillSeparators(m_decimalCombo, kDecimalSeparators);
    FillSeparators(m_thousandsCombo, kThousandsSeparators);
    // "Current units" and "(none)" on a page stand for the drawing's units.
    if (m_units < 1) GetSysVarInt(L"LUNITS", m_units);
    EnableControls();
    UpdatePreview();
    ShowCurrentValue();
    return TRUE;
}

void CAdditionalFormatDialog::EnableControls() {
    bool number = m_valueKind == kValueDouble || m_valueKind == kValueLong || m_valueKind == kValueDoubleOther;
    bool text = m_valueKind == kValueText;
    bool feetAndInches = m_units == kEngineering || m_units == kArchitectural;
    struct Rule {
        int id;
        bool enabled;
    };
    // A flag that is disabled keeps its state, and it still counts.
    const Rule rules[] = {
        {IDC_CONVERSION_FACTOR, number},
        {IDC_ZERO_LEADING, !text && m_units != kArchitectural},
        {IDC_ZERO_TRAILING, !text && m_units != kArchitectural},
        {IDC_ZERO_FEET, !text && feetAndInches},
        {IDC_ZERO_INCHES, !text && feetAndInches},
    };
    for (const Rule& rule : rules) {
        if (CWnd* control = GetDlgItem(rule.id)) control->EnableWindow(rule.enabled);
    }
}

CString CAdditionalFormatDialog::GetAdditionalFormat() {
    if (!UpdateData(TRUE)) return CString();
    return ComposeAdditionalFormat(m_factor, m_prefix, m_suffix, 0, 0, m_zeroFeet, m_zeroInches, m_leadingZero,
                                   m_trailingZero);
}

CString CAdditionalFormatDialog::GetFullFormat() { return m_unitsFormat + m_precisionFormat + GetAdditionalFormat(); }

CString CAdditionalFormatDialog::FormatValue(const CString& format) const {
    AcFdFieldValue value;
    switch (m_valueKind) {
    case kValueNone: return CString();
    case kValueDouble:
    case kValueDoubleOther: value.set(m_doubleValue); break;
    case kValueLong: value.set(static_cast<Adesk::Int32>(m_longValue)); break;
    case kValuePoint:
    case kValuePointOther: value.set(m_pointValue[0], m_pointValue[1], m_pointValue[2]); break;
    case kValueText: value.set((const ACHAR*)m_stringValue); break;
    default: value.set(L""); break;
    }
    ACHAR* text = nullptr;
    value.format(format, text);
    CString shown(text);
    if (text) acutDelBuffer(text);
    return shown;
}

void CAdditionalFormatDialog::UpdatePreview() {
    SetDlgItemText(IDC_FORMAT_PREVIEW, L"");
    if (m_valueKind == kValueNone) return;
    SetDlgItemText(IDC_FORMAT_PREVIEW, FormatValue(GetFullFormat()));
}

void CAdditionalFormatDialog::ShowCurrentValue() {
    SetDlgItemText(IDC_CURRENT_VALUE, L"");
    if (m_valueKind == kValueNone) return;
    SetDlgItemText(IDC_CURRENT_VALUE, FormatValue(m_unitsFormat + m_precisionFormat));
}

void CAdditionalFormatDialog::OnOK() {
    if (!UpdateData(TRUE)) return;
    CDialog::OnOK();
}
