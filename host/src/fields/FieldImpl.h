// The inside of a field: its code, format, children, last evaluation and
// data items.
#pragma once

#include <dbfield.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

struct AcDbField::Impl {
    // A child is held by the field until the field goes into a database,
    // which owns it from then on.
    struct Child {
        AcDbField* held = nullptr;
        AcDbObjectId id;
    };

    std::wstring evaluatorId;
    std::wstring code;  // "\Id arguments", or a text field's text, with child places
    std::wstring format;
    bool formatOption = false;  // an empty \f "" is written back as given
    bool hasCode = false;
    bool textField = false;
    // A code kept as it came (from a file) that does not read as a code.
    bool unreadable = false;
    std::vector<Child> children;

    AcDbField::EvalStatus status = AcDbField::kNotYetEvaluated;
    int errorCode = 0;
    std::wstring errorMessage;
    int option = AcDbField::kDisable;
    bool compiled = false;
    std::optional<AcFdFieldValue> value;       // of the last evaluation, when it succeeded
    std::optional<std::wstring> evaluatorText;  // the evaluator's own display of it

    std::vector<std::pair<std::wstring, AcFdFieldValue>> data;

    // Texts handed out by pointer; valid until the field next changes.
    mutable std::wstring codeText;
    mutable std::wstring valueText;

    ~Impl();
    void DropChildren();
};

namespace cadhost {

// A child of a field, held or opened from the database for as long as the
// guard lives.
class ChildAccess {
public:
    ChildAccess(const AcDbField::Impl::Child& child, AcDb::OpenMode mode) {
        if (child.held) {
            m_field = child.held;
        } else if (acdbOpenObject(m_field, child.id, mode) == Acad::eOk) {
            m_opened = true;
        }
    }
    ~ChildAccess() {
        if (m_opened) m_field->close();
    }
    ChildAccess(const ChildAccess&) = delete;
    ChildAccess& operator=(const ChildAccess&) = delete;
    AcDbField* get() const { return m_field; }

private:
    AcDbField* m_field = nullptr;
    bool m_opened = false;
};

}  // namespace cadhost
