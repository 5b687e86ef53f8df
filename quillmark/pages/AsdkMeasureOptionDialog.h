// What the Objects Area and Objects Length pages share: a list of the
// handles of chosen objects, a units list and a precision list, and the
// additional format values. The user selects objects in the drawing; the
// page composes an AcArea or AcLength code from its state, previews it by
// evaluating a temporary field after a change of objects and by formatting
// its last value after a change of format, and hands the code to the Field
// dialog after every change. Where the two pages differ is told by one
// MeasurePageKind each.
#pragma once

#include "StdAfx.h"

#include <AcFdUi.h>

#include "ArxUtils/ArxUtils.h"
#include "fieldcode/FormatText.h"
#include "pages/CObjectFilterDialog.h"

// A class of objects that a page takes, and its type in the filter.
struct MeasuredClass {
    AcRxClass* (*desc)();
    ObjectTypeBit type;
};

// Everything in which the Objects Area and Objects Length pages differ.
struct MeasurePageKind {
    UINT templateId;
    const ACHAR* evaluatorId;  // in the code
    const ACHAR* dataKey;      // the evaluator's data item that LoadField reads
    const ACHAR* settingsKey;  // of the types that the filter lets through
    ObjectTypeMask filterMask;  // the types that the filter dialog shows
    // The types of the selection filter, in order; the rest null.
    const ACHAR* selectionTypes[4];
    // The classes that the page takes, tested in order (each with its
    // derived classes); the rest null.
    MeasuredClass classes[4];
    // The units piece of the format text for the selected units entry.
    CString (*unitsFormat)(BOOL selected, int itemData);
    // The precision entries of Architectural and Fractional units: in the
    // unit's own notation (each showing the fraction it stands for), or in
    // decimal notation.
    bool fractionsInOwnNotation;
    // Whether the preview is rendered again when the Additional Format
    // dialog is cancelled.
    bool previewAfterCancel;
};

// The Objects Area page and the Objects Length page.
extern const MeasurePageKind kAreaPageKind;
extern const MeasurePageKind kLengthPageKind;

class AsdkMeasureOptionDialog : public CAcFdUiFieldOptionDialog {
    DECLARE_DYNAMIC(AsdkMeasureOptionDialog)
public:
    AsdkMeasureOptionDialog(const MeasurePageKind& kind, CAcFdUiFieldDialogHook* hook, CAcFdUiFieldDialog* dialog,
                            HINSTANCE instance);
    ~AsdkMeasureOptionDialog() override;

    // The page's window, from the module's template.
    BOOL Create(CWnd* parent) override;
    // The field code of the page's present state: the handles in list
    // order and the format text.
    CString GetFieldCode();
    // Brings the page into the state of a stored field: units, precision
    // and additional values from its format, the handles from the data item
    // its evaluator stored, its value. 1 when done, 0 without a field, 64
    // when the data item cannot be read, 16 when it is not a text.
    int LoadField(AcDbField* field);

    // The format text: units, precision and additional piece.
    CString GetFormat();
    CString GetUnitsFormat();
    CString GetPrecisionFormat();

    // Whether the page takes an object: of a class the page measures, and
    // of a type that the filter's stored choice lets through.
    BOOL IsObjectTypeAllowed(AcDbEntity* entity);
    // Whether the object of a handle exists, lies on one of the page's
    // layers, and is of a type the page takes.
    BOOL IsHandleAllowed(const CString& handle);

    // The last value, the layers that the page takes, the additional values.
    double Value() const { return m_value; }
    const CStringArrayEx& Layers() const { return m_layers; }
    const AdditionalFormat& Additional() const { return m_additional; }

protected:
    void DoDataExchange(CDataExchange* pDX) override;
    BOOL OnInitDialog() override;

    // After a change of objects: evaluates a temporary field of the page's
    // code for the value and the preview, and hands the code on.
    void RefreshValue();
    // After a change of format: formats the last value anew and hands the
    // code on; nothing is evaluated.
    void RefreshPreview();

    afx_msg void OnSelectObjects();
    afx_msg void OnRemoveObject();
    afx_msg void OnFilter();
    afx_msg void OnUnitsChanged();
    afx_msg void OnPrecisionChanged();
    afx_msg void OnAdditionalFormat();

    CListBox m_objectList;
    CListBox m_unitsList;
    CComboBox m_precisionCombo;
    double m_value;
    CString m_previewText;
    CStringArrayEx m_layers;
    AdditionalFormat m_additional;

    DECLARE_MESSAGE_MAP()

private:
    // Whether an open entity lies on one of the page's layers and is of a
    // type the page takes.
    BOOL IsEntityAllowed(AcDbEntity* entity);
    // Hands the code to the Field dialog.
    void ShowFieldCode(const CString& code);
    // The handles of the list joined by ";", in list order.
    const CString& HandleList();
    // Takes entry index out of the list, and out of the joined handles.
    void RemoveListEntry(int index);

    // The joined handles, kept while the list stays as it is: every change
    // of format composes the code again, and the list may hold a hundred
    // thousand handles. Any other change of the list drops them.
    CString m_handleList;
    BOOL m_handleListKnown;

    const MeasurePageKind& m_kind;
};
