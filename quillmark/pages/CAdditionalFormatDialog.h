// The Additional Format dialog: the conversion factor, prefix, suffix and
// zero flags of a measurement or count field. It shows the page's value
// twice, under the page's units and precision alone and under the whole
// format, the second updated as the user types. It knows nothing of field
// codes or objects: a page fills its members, runs it modally, and on OK
// copies the values back.
//
// A page uses it so:
//
//     ModuleResourceScope scope;
//     CAdditionalFormatDialog dialog;
//     dialog.m_unitsFormat = ...;       // empty on the Block Count page
//     dialog.m_precisionFormat = ...;   // empty on the Block Count page
//     dialog.m_units = 2;               // unit code 1 to 5; below 1: the drawing's
//     dialog.m_valueKind = CAdditionalFormatDialog::kValueLong;
//     dialog.m_longValue = count;
//     dialog.SetAdditionalValues(m_additional);
//     if (dialog.DoModal() == IDOK) m_additional = dialog.AdditionalValues();
#pragma once

#include "StdAfx.h"

#include "fieldcode/FormatText.h"
#include "resources/resource.h"

class CAdditionalFormatDialog : public CDialog {
public:
    // Which of the value members counts, and how it is set on the field
    // value that the previews format. Kinds 5 and 6 show as 1 and 3; no
    // page uses them.
    enum ValueKind {
        kValueNone = 0,  // nothing is shown
        kValueDouble = 1,
        kValueLong = 2,
        kValuePoint = 3,
        kValueText = 4,
        kValueDoubleOther = 5,
        kValuePointOther = 6,
    };

    explicit CAdditionalFormatDialog(CWnd* parent = nullptr);
    ~CAdditionalFormatDialog() override;

    enum { IDD = IDD_ADDITIONAL_FORMAT };

    // The page's additional values, in and out.
    double m_factor;
    CString m_prefix;
    CString m_suffix;
    int m_leadingZero;
    int m_trailingZero;
    int m_zeroFeet;
    int m_zeroInches;

    // What the page gives: its units code (below 1 unknown, then the
    // drawing's LUNITS counts), its value and the pieces of its format text
    // that come before the additional piece.
    int m_units;
    int m_valueKind;
    long m_longValue;
    double m_doubleValue;
    CString m_stringValue;
    double m_pointValue[3];
    CString m_unitsFormat;
    CString m_precisionFormat;

    // The seven additional values from and into a page's set.
    void SetAdditionalValues(const AdditionalFormat& values);
    AdditionalFormat AdditionalValues() const;

    // The additional piece of the controls' values; empty while the factor
    // box holds no number.
    CString GetAdditionalFormat();
    // The page's units and precision pieces and the additional piece.
    CString GetFullFormat();
    // The value under the whole format into the preview box (109).
    void UpdatePreview();
    // The value under the page's units and precision into the current value
    // text (108); once, when the dialog opens.
    void ShowCurrentValue();

protected:
    void DoDataExchange(CDataExchange* pDX) override;
    BOOL OnInitDialog() override;
    void OnOK() override;

    // The separator lists: hidden, filled all the same.
    CComboBox m_decimalCombo;
    CComboBox m_thousandsCombo;

    DECLARE_MESSAGE_MAP()

private:
    // The value of the kind, formatted; empty for kind 0.
    CString FormatValue(const CString& format) const;
    void EnableControls();
};
