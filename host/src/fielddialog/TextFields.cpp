#include "fielddialog/TextFields.h"

#include <adslib.h>
#include <dbdict.h>
#include <dbmtext.h>
#include <dbsymtb.h>

#include <memory>

namespace cadhost {
namespace {

constexpr wchar_t kFieldDictionary[] = L"ACAD_FIELD";
constexpr wchar_t kTextProperty[] = L"TEXT";
// The height of a new text, in drawing units.
constexpr double kNewTextHeight = 2.5;

// The TEXT field of a text object that is open.
Acad::ErrorStatus TextFieldId(const AcDbObject& text, AcDbObjectId& id) {
    AcDbObjectId extension = text.extensionDictionary();
    if (extension.isNull()) return Acad::eKeyNotFound;
    AcDbDictionary* dictionary = nullptr;
    Acad::ErrorStatus es = acdbOpenObject(dictionary, extension, AcDb::kForRead);
    if (es != Acad::eOk) return es;
    AcDbObjectId fieldsId;
    es = dictionary->getAt(kFieldDictionary, fieldsId);
    dictionary->close();
    if (es != Acad::eOk) return es;
    AcDbDictionary* fields = nullptr;
    es = acdbOpenObject(fields, fieldsId, AcDb::kForRead);
    if (es != Acad::eOk) return es;
    es = fields->getAt(kTextProperty, id);
    fields->close();
    return es;
}

// Evaluates the TEXT field of a text open for write and shows its value.
Acad::ErrorStatus Refresh(AcDbMText& text, int context) {
    AcDbObjectId id;
    Acad::ErrorStatus es = TextFieldId(text, id);
    if (es != Acad::eOk) return es;
    AcDbField* field = nullptr;
    es = acdbOpenObject(field, id, AcDb::kForWrite);
    if (es != Acad::eOk) return es;
    field->evaluate(context, text.database());
    text.setContents(field->getValue());
    field->close();
    return Acad::eOk;
}

// Files the field, inside a new text field, in a text open for write.
Acad::ErrorStatus Attach(AcDbMText& text, AcDbField* field) {
    AcDbFieldArray children;
    children.append(field);
    auto* holder = new AcDbField;
    // The holder takes the field over once the code is set.
    Acad::ErrorStatus es = holder->setFieldCode(L"%<\\_FldIdx 0>%", AcDbField::kTextField, &children);
    if (es != Acad::eOk) {
        delete holder;
        delete field;
        return es;
    }
    holder->setEvaluationOption(AcDbField::kAutomatic);
    es = holder->setInObject(&text, kTextProperty);
    if (es != Acad::eOk) {
        delete holder;
        return es;
    }
    holder->close();
    return Refresh(text, AcDbField::kDemand);
}

}  // namespace

Acad::ErrorStatus AddTextWithField(AcDbDatabase* database, const AcGePoint3d& at, AcDbField* field,
                                   AcDbObjectId& textId) {
    std::unique_ptr<AcDbField> owned(field);
    if (!database || !field) return Acad::eInvalidInput;
    AcDbBlockTableRecord* space = nullptr;
    Acad::ErrorStatus es = acdbOpenObject(space, database->currentSpaceId(), AcDb::kForWrite);
    if (es != Acad::eOk) return es;
    auto* text = new AcDbMText;
    text->setLocation(at);
    text->setTextHeight(kNewTextHeight);
    es = space->appendAcDbEntity(textId, text);
    space->close();
    if (es != Acad::eOk) {
        delete text;
        return es;
    }
    es = Attach(*text, owned.release());
    text->close();
    return es;
}

Acad::ErrorStatus ReplaceTextField(AcDbObjectId textId, AcDbField* field) {
    std::unique_ptr<AcDbField> owned(field);
    if (!field) return Acad::eInvalidInput;
    AcDbMText* text = nullptr;
    Acad::ErrorStatus es = acdbOpenObject(text, textId, AcDb::kForWrite);
    if (es != Acad::eOk) return es;
    es = Attach(*text, owned.release());
    text->close();
    return es;
}

Acad::ErrorStatus OpenTextField(AcDbObjectId textId, AcDb::OpenMode mode, AcDbField*& field) {
    field = nullptr;
    AcDbMText* text = nullptr;
    Acad::ErrorStatus es = acdbOpenObject(text, textId, AcDb::kForRead);
    if (es != Acad::eOk) return es;
    AcDbObjectId id;
    es = TextFieldId(*text, id);
    text->close();
    if (es != Acad::eOk) return es;
    AcDbField* holder = nullptr;
    es = acdbOpenObject(holder, id, mode);
    if (es != Acad::eOk) return es;
    if (holder->childCount() == 0) {
        field = holder;
        return Acad::eOk;
    }
    es = holder->getChild(0, field, mode);
    holder->close();
    return es;
}

Acad::ErrorStatus RefreshTextFields(AcDbObjectId textId, int context) {
    AcDbMText* text = nullptr;
    Acad::ErrorStatus es = acdbOpenObject(text, textId, AcDb::kForWrite);
    if (es != Acad::eOk) return es;
    es = Refresh(*text, context);
    text->close();
    return es;
}

}  // namespace cadhost
