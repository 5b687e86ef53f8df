// The inside of a field: its code, format, children, last evaluation and
// data items.
#pragma once

#include <dbfield.h>

#include <memory>
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
    // A code kept as it came (from a file) that does not read as a code,
    // and why.
    bool unreadable = false;
    std::wstring unreadableReason;
    std::vector<Child> children;

    AcDbField::EvalStatus status = AcDbField::kNotYetEvaluated;
    int errorCode = 0;
    std::wstring errorMessage;
    int option = AcDbField::kDisable;
    bool compiled = false;
    std::optional<AcFdFieldValue> value;       // of the last evaluation, when it succeeded
    std::optional<std::wstring> evaluatorText;  // the evaluator's own display of it

    std::vector<std::pair<std::wstring, AcFdFieldValue>> data;

    // What a drawing file gave that the host keeps for writing it back: the
    // objects that the code names by id, the filing option, and values of
    // types that AcValue does not hold (dates, buffers), as their groups
    // (code and UTF-8 text), the cached value when its status is success.
    struct FileValue {
        std::vector<std::pair<int, std::string>> groups;
    };
    std::vector<AcDbObjectId> objectIds;
    int filingOption = 0;
    std::vector<std::pair<std::wstring, FileValue>> fileData;
    std::optional<FileValue> fileValue;
    // How the file wrote what the host derives (the state, the text shown
    // for the cached value, the flags framing each value), written so again
    // while the field is as it was read.
    struct FileForm {
        int state = 0;
        int stateAtRead = 0;
        std::wstring shown;
        std::shared_ptr<const std::wstring> shownAtRead;  // null: none (no success)
        // A text of fields carries no value of its own in files; one that
        // the file gave it is written again.
        bool textValue = false;
        std::optional<int> cacheFlags;
        std::vector<std::pair<std::wstring, std::optional<int>>> itemFlags;
        // A field whose groups were not in the order files give them: its
        // groups as they came, written so while the field is unchanged
        // (its fingerprint the same).
        struct RawGroup {
            int code = 0;
            std::string value;  // as the file wrote it
            bool counted = true;
        };
        std::vector<RawGroup> raw;
        std::wstring fingerprint;
    };
    std::optional<FileForm> fileForm;

    // Texts handed out by pointer; valid until the field next changes. A
    // text value is handed out from the value itself.
    mutable std::wstring codeText;
    mutable std::wstring valueText;
    mutable std::shared_ptr<const std::wstring> composedText;

    ~Impl();
    void DropChildren();
};

namespace cadhost {

// The text a field shows (what getValue gives), shared with its value when
// that is a text. A text of fields that succeeded without a value of its
// own (as files give it) shows its children's values in their places.
std::shared_ptr<const std::wstring> ShownText(const AcDbField& field);
bool ShowsChildren(const AcDbField& field);
// A text field's text with its children's values in their places.
std::shared_ptr<const std::wstring> ComposedText(const AcDbField& field);

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
