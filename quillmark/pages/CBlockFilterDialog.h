// The Block Filter dialog behind the "Filter..." button of the Block Count
// page: the layers that the count is limited to, and one attribute
// condition of a tag, an operator and a value. It works on the copy that the
// page gives it; the page takes the four values back after OK.
#pragma once

#include "StdAfx.h"

#include "AcadDatabase.h"
#include "ArxUtils/ArxUtils.h"
#include "resources/resource.h"

class CBlockFilterDialog : public CDialog {
    DECLARE_DYNAMIC(CBlockFilterDialog)
public:
    // The model is the page's snapshot, for the tags and values offered; it
    // may be null, and it is not owned.
    CBlockFilterDialog(CWnd* parent, AcadBlockArray* model);
    ~CBlockFilterDialog() override;

    enum { IDD = IDD_BLOCK_FILTER };

    // In and out: the chosen layers (empty: no limit), and the condition (an
    // empty tag: none).
    CStringArrayEx m_layers;
    CString m_tag;
    CString m_value;
    CString m_operator;

protected:
    void DoDataExchange(CDataExchange* pDX) override;
    BOOL OnInitDialog() override;
    void OnOK() override;

    afx_msg void OnAttributeClicked();
    afx_msg void OnCheckAll();
    afx_msg void OnUncheckAll();
    // The value list follows the tag in its box when it drops down.
    afx_msg void OnValueDropDown();

    void EnableCondition(BOOL enable);

    CCheckListBox m_layerList;
    int m_useAttribute;
    CComboBox m_tagCombo;
    CComboBox m_valueCombo;
    CComboBox m_operatorCombo;
    AcadBlockArray* m_model;

    DECLARE_MESSAGE_MAP()
};
