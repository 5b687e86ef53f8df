// The Block Count page: the blocks whose references the field counts, the
// filter, the source (the drawing or a window) and the format. The page
// counts nothing itself: it composes the code, has a temporary field
// evaluate it for the preview, and hands the code to the Field dialog after
// every change.
#pragma once

#include "StdAfx.h"

#include <AcFdUi.h>

#include "AcadDatabase.h"
#include "ArxUtils/ArxUtils.h"
#include "resources/resource.h"

class AsdkBlockCntOptionDialog : public CAcFdUiFieldOptionDialog {
    DECLARE_DYNAMIC(AsdkBlockCntOptionDialog)
public:
    AsdkBlockCntOptionDialog(CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* dialog, HINSTANCE instance);
    ~AsdkBlockCntOptionDialog() override;

    enum { IDD = IDD_BLOCKCOUNT_PAGE };

    // The page's window, from the module's template.
    BOOL Create(CWnd* parent) override;
    // The field code of the page's present state: with no name ticked the
    // short form, whatever else is set.
    CString GetFieldCode();
    // Brings the page into the state of a stored field: ticks its block
    // names (adding those the list lacks), takes its window, filter, nested
    // setting, format and value, and shows the field's own code. 1 when
    // done, 0 without a field, 64 when the field has no data item, 16 when
    // the item is not a text.
    int LoadField(AcDbField* field);

protected:
    void DoDataExchange(CDataExchange* pDX) override;
    BOOL OnInitDialog() override;

    // The count of the present code, evaluated anew, into the preview; the
    // code goes to the Field dialog.
    afx_msg void RefreshValue();
    afx_msg void OnSourceChanged();
    afx_msg void OnPickWindow();
    afx_msg void OnCheckAll();
    afx_msg void OnUncheckAll();
    afx_msg void OnNestedChanged();
    afx_msg void OnFilter();
    afx_msg void OnAdditionalFormat();
    afx_msg LRESULT OnAcadKeepFocus(WPARAM wParam, LPARAM lParam);

    // The additional piece of the format; a count has no units or precision.
    CString GetFormat() const;

    CCheckListBox m_blockList;
    CString m_previewText;
    long m_value;
    int m_source;  // 0 the entire drawing, 1 a window
    double m_firstCorner[3];
    double m_secondCorner[3];
    int m_initialising;

    double m_factor;
    CString m_prefix;
    CString m_suffix;
    int m_leadingZero;
    int m_trailingZero;
    int m_zeroFeet;
    int m_zeroInches;

    AcadBlockArray m_blocks;
    CString m_filterTag;
    CString m_filterValue;
    CString m_filterOperator;
    CStringArrayEx m_layers;
    CButton m_nestedCheck;

    DECLARE_MESSAGE_MAP()
};
