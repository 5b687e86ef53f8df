// What the field benchmarks' drawings are made of: a multiline text in
// model space that holds one field, not evaluated, as a drawing keeps it.
#pragma once

#include <dbfield.h>
#include <dbmtext.h>
#include <dbsymtb.h>

#include <string>

// Adds a text whose TEXT field holds the code as its one child field, both
// evaluated at every automatic moment; the text shows "----" until the
// field is brought up to date.
inline bool AddFieldText(AcDbBlockTableRecord& model, const std::wstring& code, const AcGePoint3d& where) {
    auto* mtext = new AcDbMText;
    mtext->setLocation(where);
    mtext->setTextHeight(0.5);
    mtext->setContents(code.c_str());
    AcDbObjectId id;
    if (model.appendAcDbEntity(id, mtext) != Acad::eOk) {
        delete mtext;
        return false;
    }
    auto* field = new AcDbField(code.c_str(), true);
    field->setEvaluationOption(AcDbField::kAutomatic);
    if (field->setInObject(mtext, L"TEXT") != Acad::eOk) {
        delete field;
        mtext->close();
        return false;
    }
    for (int c = 0; c < field->childCount(); ++c) {
        AcDbField* child = nullptr;
        if (field->getChild(c, child, AcDb::kForWrite) != Acad::eOk) continue;
        child->setEvaluationOption(AcDbField::kAutomatic);
        child->close();
    }
    field->close();
    mtext->setContents(L"----");
    mtext->close();
    return true;
}
