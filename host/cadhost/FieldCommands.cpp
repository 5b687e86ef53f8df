// Script commands of the Field dialog: opening it for a new field or on the
// field of a text, choosing a field type, typing a field code, and looking
// at the dialog and at the fields of the drawing.
#include <AcFdUi.h>
#include <adslib.h>
#include <dbmtext.h>

#include "HostResource.h"
#include "ScriptRunner.h"
#include "fielddialog/TextFields.h"
#include "ui/ControlView.h"
#include "ui/UserInput.h"

namespace cadhost::script {
namespace {

// The context in which a script opens the Field dialog: a field for a text.
constexpr int kTextContext = 0;

// The open Field dialog; a script error when none is, or when a dialog of
// one of its pages is open over it.
CAcFdUiFieldDialog& OpenFieldDialog(ScriptRunner& runner) {
    HWND innermost = runner.host().desktop().InnermostModal();
    CWnd* object = innermost ? CWnd::FromHandlePermanent(innermost) : nullptr;
    if (object && object->IsKindOf(RUNTIME_CLASS(CAcFdUiFieldDialog))) return *static_cast<CAcFdUiFieldDialog*>(object);
    if (innermost) throw ScriptError(L"the innermost open dialog is not the Field dialog; close it with ok or cancel");
    throw ScriptError(L"the Field dialog is not open");
}

HWND DialogControl(CAcFdUiFieldDialog& dialog, int id) {
    HWND control = ::GetDlgItem(dialog.m_hWnd, id);
    if (!control) throw ScriptError(L"the Field dialog has no control " + std::to_wstring(id));
    return control;
}

AcDbDatabase& WorkingDatabase(ScriptRunner& runner) {
    AcDbDatabase* db = runner.host().services().workingDatabase();
    if (!db) throw ScriptError(L"no drawing is open");
    return *db;
}

// The text object of a handle that holds a field.
AcDbObjectId TextWithField(ScriptRunner& runner, const Word& word) {
    AcDbHandle handle(word.text.c_str());
    AcDbObjectId id;
    if (handle.isNull() || WorkingDatabase(runner).getAcDbObjectId(id, false, handle) != Acad::eOk || id.isNull() ||
        id.isErased())
        throw ScriptError(L"the drawing has no object with the handle " + ui::Quoted(word.text));
    AcDbField* field = nullptr;
    Acad::ErrorStatus es = OpenTextField(id, AcDb::kForRead, field);
    if (es == Acad::eNotThatKindOfClass) throw ScriptError(L"the object " + word.text + L" is no multiline text");
    if (es != Acad::eOk) throw ScriptError(L"the text " + word.text + L" holds no field");
    field->close();
    return id;
}

std::wstring HandleText(AcDbObjectId id) {
    ACHAR buffer[17];
    id.handle().getIntoAsciiBuffer(buffer);
    return buffer;
}

std::wstring ValueText(const AcValue& value) {
    switch (value.dataType()) {
    case AcValue::kString: {
        const ACHAR* text = nullptr;
        value.get(text);
        return ui::Quoted(text ? text : L"");
    }
    case AcValue::kLong: {
        Adesk::Int32 number = 0;
        value.get(number);
        return L"long " + std::to_wstring(number);
    }
    case AcValue::kDouble: {
        double number = 0;
        value.get(number);
        wchar_t buffer[64];
        swprintf(buffer, 64, L"double %.17g", number);
        return buffer;
    }
    default: {
        ACHAR* text = value.format(nullptr);
        std::wstring shown = L"type " + std::to_wstring(value.dataType()) + L" " + ui::Quoted(text ? text : L"");
        if (text) acutDelBuffer(text);
        return shown;
    }
    }
}

std::wstring DescribeField(AcDbObjectId textId) {
    std::wstring out = L"field of " + HandleText(textId) + L":";
    AcDbMText* text = nullptr;
    if (acdbOpenObject(text, textId, AcDb::kForRead) == Acad::eOk) {
        ACHAR* contents = text->contents();
        out += L"\n  text " + ui::Quoted(contents ? contents : L"");
        if (contents) acutDelBuffer(contents);
        text->close();
    }
    AcDbField* field = nullptr;
    if (OpenTextField(textId, AcDb::kForRead, field) != Acad::eOk) return out;
    out += L"\n  code " + ui::Quoted(field->getFieldCode(AcDbField::kFieldCode | AcDbField::kAddMarkers));
    out += L"\n  evaluator " + ui::Quoted(field->evaluatorId());
    out += L"\n  format " + ui::Quoted(field->getFormat());
    out += L"\n  value " + ui::Quoted(field->getValue());
    out += L"\n  status " + std::to_wstring(field->evaluationStatus()) + L", option " +
           std::to_wstring(field->evaluationOption());
    for (int i = 0; i < field->dataCount(); ++i) {
        AcFdFieldValue data;
        field->getData(field->dataKey(i), &data);
        out += L"\n  data " + ui::Quoted(field->dataKey(i)) + L" = " + ValueText(data);
    }
    field->close();
    return out;
}

// Runs the Field dialog; on OK the field goes into a new text at the point,
// or into the text it was opened on.
void RunFieldDialog(ScriptRunner& runner, const AcGePoint3d& at, AcDbObjectId editedText) {
    AcDbDatabase& db = WorkingDatabase(runner);
    AcDbField* edited = nullptr;
    if (!editedText.isNull() && OpenTextField(editedText, AcDb::kForRead, edited) != Acad::eOk)
        throw ScriptError(L"the text's field cannot be opened");
    CAcFdUiFieldDialog dialog(&db, kTextContext, edited);
    INT_PTR result = dialog.DoModal();
    if (edited) edited->close();
    if (result == -1) throw ScriptError(L"the Field dialog could not be made");
    AcDbField* field = dialog.TakeField();
    if (result != IDOK || !field || runner.Failed()) {
        delete field;
        return;
    }
    AcDbObjectId textId = editedText;
    Acad::ErrorStatus es = editedText.isNull() ? AddTextWithField(&db, at, field, textId)
                                               : ReplaceTextField(editedText, field);
    if (es != Acad::eOk) {
        runner.host().Print(std::wstring(L"\nThe field could not be put into the drawing: ") +
                            acadErrorStatusText(es) + L".");
        return;
    }
    runner.host().Print(L"\nMultiline text " + HandleText(textId) + L" shows the field.");
}

}  // namespace

void DefineFieldCommands(ScriptRunner& runner) {
    runner.Define(L"field", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 0, 2, L"field [at X,Y] | field edit HANDLE");
        r.RequireNoDialog(L"field");
        if (a.empty()) return RunFieldDialog(r, AcGePoint3d(0, 0, 0), AcDbObjectId());
        if (a.size() == 2 && !a[0].quoted && a[0].text == L"at") {
            Point point = ScriptRunner::ParsePointWord(a[1]);
            return RunFieldDialog(r, AcGePoint3d(point.x, point.y, point.z), AcDbObjectId());
        }
        if (a.size() == 2 && !a[0].quoted && a[0].text == L"edit")
            return RunFieldDialog(r, AcGePoint3d(0, 0, 0), TextWithField(r, a[1]));
        throw ScriptError(L"usage: field [at X,Y] | field edit HANDLE");
    });
    runner.Define(L"type", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"type \"TITLE\"");
        CAcFdUiFieldDialog& dialog = OpenFieldDialog(r);
        HWND list = DialogControl(dialog, IDC_ACFD_FIELD_LIST);
        auto* box = static_cast<CListBox*>(CWnd::FromHandle(list));
        for (int i = 0; i < box->GetCount(); ++i) {
            CString title;
            box->GetText(i, title);
            if (title.str() != a[0].text) continue;
            std::wstring why = ui::UserChoose(list, i);
            if (!why.empty()) throw ScriptError(why);
            return;
        }
        throw ScriptError(L"the Field dialog lists no field type " + ui::Quoted(a[0].text));
    });
    runner.Define(L"code", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"code \"TEXT\"");
        CAcFdUiFieldDialog& dialog = OpenFieldDialog(r);
        std::wstring why = ui::UserType(DialogControl(dialog, IDC_ACFD_FIELD_CODE), a[0].text);
        if (!why.empty()) throw ScriptError(why);
    });

    runner.DefinePrint(L"code", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 0, 0, L"print code");
        CAcFdUiFieldDialog& dialog = OpenFieldDialog(r);
        r.Show(ui::Quoted(dialog.GetFieldCode().str()) + (dialog.IsFieldCodeDirty() ? L" typed" : L""));
    });
    runner.DefinePrint(L"fields", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 0, 0, L"print fields");
        CAcFdUiFieldDialog& dialog = OpenFieldDialog(r);
        auto* box = static_cast<CListBox*>(CWnd::FromHandle(DialogControl(dialog, IDC_ACFD_FIELD_LIST)));
        std::wstring out;
        for (int i = 0; i < box->GetCount(); ++i) {
            CString title;
            box->GetText(i, title);
            out += (i ? L"\n" : L"") + std::to_wstring(static_cast<UINT>(box->GetItemData(i))) + L" " +
                   ui::Quoted(title.str());
        }
        r.Show(out.empty() ? L"(no field types)" : out);
    });
    runner.DefinePrint(L"field", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"print field HANDLE");
        r.Show(DescribeField(TextWithField(r, a[0])));
    });

    runner.DefineExpect(L"code", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"expect code \"TEXT\"");
        CString shown = OpenFieldDialog(r).GetFieldCode();
        if (shown.str() != a[0].text)
            throw ExpectationFailed(L"the field code box holds " + ui::Quoted(shown.str()) + L", not " +
                                    ui::Quoted(a[0].text));
    });
    runner.DefineExpect(L"value", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 2, 2, L"expect value HANDLE \"TEXT\"");
        AcDbObjectId text = TextWithField(r, a[0]);
        AcDbField* field = nullptr;
        if (OpenTextField(text, AcDb::kForRead, field) != Acad::eOk) throw ScriptError(L"the text's field cannot be opened");
        std::wstring shown = field->getValue();
        field->close();
        if (shown != a[1].text)
            throw ExpectationFailed(L"the field of " + a[0].text + L" shows " + ui::Quoted(shown) + L", not " +
                                    ui::Quoted(a[1].text));
    });
}

}  // namespace cadhost::script
