// STAND-IN, to be replaced at merge by the Additional Format dialog itself:
// the interface that the Block Count page is written against. It has no
// template of its own here, so DoModal answers -1 and the page keeps its
// values.
#pragma once

#include "StdAfx.h"

class CAdditionalFormatDialog : public CDialog {
public:
    explicit CAdditionalFormatDialog(CWnd* parent = nullptr) : CDialog(103, parent) {}

    double m_factor = 1.0;
    CString m_prefix;
    CString m_suffix;
    int m_leadingZero = 0;
    int m_trailingZero = 0;
    int m_zeroFeet = 0;
    int m_zeroInches = 0;
    int m_units = -1;
    int m_valueKind = 0;
    long m_longValue = 0;
    double m_doubleValue = 0;
    CString m_unitsFormat;
    CString m_precisionFormat;
};
