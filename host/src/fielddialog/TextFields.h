// Fields in multiline text: the text keeps its fields in its extension
// dictionary (ACAD_FIELD, entry TEXT: a text field whose children are the
// real fields) and shows their value.
#pragma once

#include <dbfield.h>
#include <gepnt3d.h>

namespace cadhost {

// A new multiline text at the point in the current space of the drawing,
// showing the field, which it takes over (also when it fails).
Acad::ErrorStatus AddTextWithField(AcDbDatabase* database, const AcGePoint3d& at, AcDbField* field,
                                   AcDbObjectId& textId);

// Puts the field into a text in place of the fields it had; the text takes
// the field over (also when it fails).
Acad::ErrorStatus ReplaceTextField(AcDbObjectId textId, AcDbField* field);

// The field that a text shows (the first field of its text), opened in the
// mode; the caller closes it. eKeyNotFound when the text holds no field,
// eNotThatKindOfClass when the object is no multiline text.
Acad::ErrorStatus OpenTextField(AcDbObjectId textId, AcDb::OpenMode mode, AcDbField*& field);

// Evaluates the text's fields in the context and shows their value.
Acad::ErrorStatus RefreshTextFields(AcDbObjectId textId, int context);

}  // namespace cadhost
