// Bringing the fields of a drawing up to date, as the platform does when it
// regenerates: every field filed under a text (its extension dictionary's
// ACAD_FIELD entry) is evaluated in the context, and each text shows the
// value of its TEXT field.
#pragma once

#include <dbfield.h>

#include <string>
#include <vector>

namespace cadhost {

// A field that did not evaluate successfully.
struct FieldFailure {
    AcDbObjectId text;   // the text that holds it
    AcDbObjectId field;
    std::wstring code;   // with its markers
    AcDbField::EvalStatus status = AcDbField::kNotYetEvaluated;
    std::wstring message;
};

struct FieldUpdateReport {
    int texts = 0;      // texts that hold fields
    int evaluated = 0;  // fields evaluated (the texts' own fields not counted)
    int changed = 0;    // of those, the ones whose value text changed
    int textsChanged = 0;
    std::vector<FieldFailure> failed;
    // Fields whose evaluator is not registered: they keep their value.
    std::vector<FieldFailure> skipped;
    // Fields whose children cannot be followed (a child that names nothing,
    // a cycle): not evaluated, kept as they are with their text.
    std::vector<FieldFailure> notEvaluated;
};

FieldUpdateReport UpdateFields(AcDbDatabase& database, int context = AcDbField::kRegen);

// A field's value text as a text entity shows it: multiline text takes a
// line break as a paragraph break, single-line text as a blank.
std::wstring ShownInMText(const std::wstring& value);
std::wstring ShownInText(const std::wstring& value);

}  // namespace cadhost
