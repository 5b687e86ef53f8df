// The Objects Filter dialog behind "Filter..." on the Objects Area and
// Objects Length pages: which layers and which object types a page
// accepts. The layers go back to the page in memory; the types go to the
// settings store, under the page's own key, and outlive the program.
#pragma once

#include "StdAfx.h"

#include "resources/resource.h"

// A set of object types, one bit each.
enum ObjectTypeBit {
    kObjectTypeLine = 1,
    kObjectTypePolyline = 2,
    kObjectTypeMText = 4,
    kObjectTypeText = 8,
    kObjectTypeCircle = 16,
    kObjectTypeArc = 32,
    kObjectTypeSolid = 64,
    kObjectTypeBlockReference = 128,
};
typedef int ObjectTypeMask;

class CObjectFilterDialog : public CDialog {
    DECLARE_DYNAMIC(CObjectFilterDialog)
public:
    // The settings section of the page (Quillmark\AreaField) and the types
    // the page knows: only their boxes are shown.
    CObjectFilterDialog(LPCTSTR settingsKey, ObjectTypeMask objectMask, CWnd* parent = nullptr);
    ~CObjectFilterDialog() override;

    enum { IDD = IDD_OBJECT_FILTER };

    // After OK: the ticked layers, in list order.
    CStringArray m_layers;

protected:
    void DoDataExchange(CDataExchange* pDX) override;
    BOOL OnInitDialog() override;
    void OnOK() override;

    afx_msg void OnSelectAll();
    afx_msg void OnUnselectAll();

    // Each type box from its stored value; a type that has none is ticked
    // when the page knows it.
    void LoadObjectTypes();
    // Each type box, shown or hidden, into the store.
    void SaveObjectTypes();

    CCheckListBox m_layerList;
    CButton m_typeBoxes[8];  // in the order of the type table
    ObjectTypeMask m_objectMask;
    CString m_settingsKey;

    DECLARE_MESSAGE_MAP()
};

// One row of the type table: its bit, its box and its value in the
// settings store, in the order in which the dialog treats them.
struct ObjectTypeRow {
    ObjectTypeBit bit;
    int controlId;
    const ACHAR* valueName;
};
// The eight rows; count gets their number.
const ObjectTypeRow* GetObjectTypeRows(int& count);
