#include <AcFdEval.h>
#include <adslib.h>
#include <dbdict.h>
#include <dbfield.h>
#include <tchar.h>

#include <algorithm>
#include <cwchar>
#include <memory>

#include "fields/FieldCodeText.h"
#include "fields/FieldImpl.h"
#include "fields/FieldResult.h"
#include "fields/SharedValueText.h"

ACRX_DXF_DEFINE_MEMBERS(AcDbField, AcDbObject, L"FIELD")

namespace {

constexpr wchar_t kNoValue[] = L"####";
constexpr int kOptionBits = AcDbField::kAutomatic;

ACHAR* NewText(const std::wstring& text) {
    auto* copy = new ACHAR[text.size() + 1];
    std::wmemcpy(copy, text.c_str(), text.size() + 1);
    return copy;
}

// The code under the flags, children composed into their places. A child
// that cannot be opened, that is one of the fields being composed (a cycle a
// file gave) or that is nested too deep keeps its place as it stands, or
// shows no value.
std::wstring Compose(const AcDbField& field, int flags, std::vector<const AcDbField*>& path) {
    const AcDbField::Impl& m = field.impl();
    if (flags & AcDbField::kEvaluatedText) return field.getValue();
    if (!m.hasCode) return std::wstring();
    std::wstring body;
    body.reserve(m.code.size());
    // The text between children's places goes over in one piece: a code
    // may list a hundred thousand handles.
    static const std::wstring kPlaceHead = std::wstring(L"%<\\") + cadhost::kChildPlaceEvaluatorId + L" ";
    for (size_t i = 0; i < m.code.size();) {
        size_t next = m.children.empty() ? std::wstring::npos : m.code.find(kPlaceHead, i);
        if (next == std::wstring::npos) {
            body.append(m.code, i, std::wstring::npos);
            break;
        }
        body.append(m.code, i, next - i);
        i = next;
        auto place = cadhost::ChildPlaceAt(m.code, i);
        if (!place || place->first >= m.children.size() || (flags & AcDbField::kPreserveFields)) {
            size_t length = place ? place->second : 1;
            body.append(m.code, i, length);
            i += length;
            continue;
        }
        cadhost::ChildAccess child(m.children[place->first], AcDb::kForRead);
        if (!child.get() || path.size() > static_cast<size_t>(cadhost::kMaxFieldNesting) ||
            std::find(path.begin(), path.end(), child.get()) != path.end()) {
            if (flags & AcDbField::kEvaluatedChildren) body += kNoValue;
            else body.append(m.code, i, place->second);
        } else {
            path.push_back(child.get());
            // A text of fields without a value of its own composes its
            // children on this path, where a cycle ends.
            if ((flags & AcDbField::kEvaluatedChildren) && cadhost::ShowsChildren(*child.get()))
                body += Compose(*child.get(), AcDbField::kEvaluatedChildren, path);
            else if (flags & AcDbField::kEvaluatedChildren) body += child.get()->getValue();
            else body += Compose(*child.get(), (flags | AcDbField::kAddMarkers) & ~AcDbField::kEscapeBackslash, path);
            path.pop_back();
        }
        i += place->second;
    }
    if (m.textField) return body;
    if ((!m.format.empty() || m.formatOption) && !(flags & AcDbField::kStripOptions))
        body += L" \\f \"" + m.format + L"\"";
    if (flags & AcDbField::kAddMarkers) body = L"%<" + body + L">%";
    return body;
}

std::wstring EscapeBackslashes(const std::wstring& text) {
    std::wstring out;
    out.reserve(text.size());
    for (wchar_t c : text) {
        out += c;
        if (c == L'\\') out += c;
    }
    return out;
}

// New child fields for parsed codes; supplied children are taken from the
// caller's array. Answers false, having made nothing, when a supplied child
// is missing.
// Each supplied child stands in one place only, and no field holds itself.
bool CheckSupplied(const cadhost::ParsedCode& code, const AcDbFieldArray* supplied, const AcDbField* owner,
                   std::vector<const AcDbField*>& used) {
    for (const auto& child : code.children) {
        if (child.suppliedChild) {
            if (!supplied || *child.suppliedChild >= static_cast<size_t>(supplied->length())) return false;
            const AcDbField* given = (*supplied)[static_cast<int>(*child.suppliedChild)];
            if (!given || given == owner || std::find(used.begin(), used.end(), given) != used.end()) return false;
            used.push_back(given);
        } else if (!CheckSupplied(child, supplied, owner, used)) {
            return false;
        }
    }
    return true;
}

void Adopt(AcDbField::Impl& m, cadhost::ParsedCode&& code, AcDbFieldArray* supplied);

AcDbField* MakeChild(cadhost::ParsedCode&& code, AcDbFieldArray* supplied) {
    if (code.suppliedChild) return (*supplied)[static_cast<int>(*code.suppliedChild)];
    auto* child = new AcDbField;
    Adopt(child->impl(), std::move(code), supplied);
    return child;
}

// Takes the parsed code over: its texts are moved, not copied.
void Adopt(AcDbField::Impl& m, cadhost::ParsedCode&& code, AcDbFieldArray* supplied) {
    m.DropChildren();
    m.evaluatorId = std::move(code.evaluatorId);
    m.code = std::move(code.code);
    m.format = std::move(code.format);
    m.formatOption = code.formatOption;
    m.hasCode = true;
    m.unreadable = false;
    m.unreadableReason.clear();
    m.textField = _wcsicmp(m.evaluatorId.c_str(), cadhost::kTextEvaluatorId) == 0;
    for (auto& child : code.children) {
        AcDbField* made = MakeChild(std::move(child), supplied);
        // A supplied child may live in a database already.
        if (made->objectId().isNull()) m.children.push_back({made, AcDbObjectId()});
        else m.children.push_back({nullptr, made->objectId()});
    }
    m.status = AcDbField::kNotYetEvaluated;
    m.errorCode = 0;
    m.errorMessage.clear();
    m.compiled = false;
    m.value.reset();
    m.evaluatorText.reset();
    m.objectIds.clear();  // they belonged to the code read from a file
    m.fileValue.reset();
    m.fileForm.reset();
}

// Children that the field holds go into the field's database, owned by it.
Acad::ErrorStatus PostChildren(AcDbField& field, AcDbDatabase* database) {
    AcDbField::Impl& m = field.impl();
    for (auto& child : m.children) {
        if (!child.held) continue;
        Acad::ErrorStatus es = child.held->postInDatabase(database);
        if (es != Acad::eOk) return es;
        child.held->setOwnerId(field.objectId());
        child.id = child.held->objectId();
        child.held->close();  // posted open for write; the field reaches it by id from now on
        child.held = nullptr;
    }
    return Acad::eOk;
}

void EraseChildrenInDatabase(const std::vector<AcDbField::Impl::Child>& children) {
    for (const auto& child : children) {
        AcDbField* field = nullptr;
        if (child.held || acdbOpenObject(field, child.id, AcDb::kForWrite) != Acad::eOk) continue;
        field->erase();
        field->close();
    }
}

}  // namespace

AcDbField::Impl::~Impl() { DropChildren(); }

void AcDbField::Impl::DropChildren() {
    for (auto& child : children) delete child.held;
    children.clear();
}

AcDbField::AcDbField() : m_impl(new Impl) {}

AcDbField::AcDbField(const ACHAR* fieldCode, bool textField) : m_impl(new Impl) {
    setFieldCode(fieldCode, textField ? kTextField : FieldCodeFlag(0));
}

AcDbField::~AcDbField() { delete m_impl; }

Acad::ErrorStatus AcDbField::setFieldCode(const ACHAR* fieldCode, FieldCodeFlag flags, AcDbFieldArray* childFields) {
    Acad::ErrorStatus es = assertWriteEnabled();
    if (es != Acad::eOk) return es;
    if (!fieldCode) return Acad::eNullObjectPointer;
    std::wstring error;
    bool places = childFields != nullptr;
    std::optional<cadhost::ParsedCode> parsed = (flags & kTextField)
                                                    ? cadhost::ParseTextWithFields(fieldCode, error, places)
                                                    : cadhost::ParseFieldCode(fieldCode, error, places);
    std::vector<const AcDbField*> used;
    if (!parsed || !CheckSupplied(*parsed, childFields, this, used)) return Acad::eInvalidInput;
    std::vector<Impl::Child> old;
    old.swap(m_impl->children);
    Adopt(*m_impl, std::move(*parsed), childFields);
    // Children that went out of the code go out of the drawing, unless
    // they were handed in again.
    std::erase_if(old, [this](const Impl::Child& child) {
        return !child.held && std::any_of(m_impl->children.begin(), m_impl->children.end(),
                                          [&child](const Impl::Child& kept) { return kept.id == child.id; });
    });
    EraseChildrenInDatabase(old);
    for (auto& child : old) {
        if (std::find(used.begin(), used.end(), child.held) == used.end()) delete child.held;
    }
    if (AcDbDatabase* db = database()) return PostChildren(*this, db);
    return Acad::eOk;
}

const ACHAR* AcDbField::getFieldCode(FieldCodeFlag flags, AcDbFieldArray* childFields, AcDb::OpenMode mode) const {
    int wanted = flags == 0 ? kFieldCode : flags;
    // A field without children whose code is asked for as it stands is
    // handed its own code: a list of a hundred thousand handles is not
    // copied each time an evaluator reads it.
    const Impl& m = *m_impl;
    bool asStored = m.hasCode && m.children.empty() &&
                    !(wanted & (kEvaluatedText | kAddMarkers | kEscapeBackslash)) &&
                    (m.textField || (wanted & kStripOptions) || (m.format.empty() && !m.formatOption));
    if (asStored) return m.code.c_str();
    std::vector<const AcDbField*> path{this};
    std::wstring text = Compose(*this, wanted, path);
    m_impl->codeText = (wanted & kEscapeBackslash) ? EscapeBackslashes(text) : std::move(text);
    if (childFields) {
        for (const auto& child : m_impl->children) {
            AcDbField* field = child.held;
            if (!field && acdbOpenObject(field, child.id, mode) != Acad::eOk) field = nullptr;
            if (field) childFields->append(field);
        }
    }
    return m_impl->codeText.c_str();
}

Acad::ErrorStatus AcDbField::getFieldCode(ACHAR*& fieldCode, FieldCodeFlag flags, AcDbFieldArray* childFields,
                                          AcDb::OpenMode mode) const {
    fieldCode = NewText(getFieldCode(flags, childFields, mode));
    return Acad::eOk;
}

const ACHAR* AcDbField::evaluatorId() const { return m_impl->evaluatorId.c_str(); }

Acad::ErrorStatus AcDbField::setEvaluatorId(const ACHAR* id) {
    Acad::ErrorStatus es = assertWriteEnabled();
    if (es != Acad::eOk) return es;
    if (!id || !cadhost::IsEvaluatorId(id)) return Acad::eInvalidInput;
    Impl& m = *m_impl;
    if (m.hasCode && !m.textField) {
        size_t end = m.code.find_first_of(L" \t\r\n");
        m.code = L"\\" + std::wstring(id) + (end == std::wstring::npos ? L"" : m.code.substr(end));
    } else if (!m.hasCode) {
        m.code = L"\\" + std::wstring(id);
        m.hasCode = true;
    }
    m.evaluatorId = id;
    m.textField = _wcsicmp(id, cadhost::kTextEvaluatorId) == 0;
    m.compiled = false;
    return Acad::eOk;
}

bool AcDbField::isTextField() const { return m_impl->textField; }

const ACHAR* AcDbField::getFormat() const { return m_impl->format.c_str(); }

Acad::ErrorStatus AcDbField::getFormat(ACHAR*& format) const {
    format = NewText(m_impl->format);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbField::setFormat(const ACHAR* format) {
    Acad::ErrorStatus es = assertWriteEnabled();
    if (es != Acad::eOk) return es;
    m_impl->format = format ? format : L"";
    m_impl->formatOption = !m_impl->format.empty();
    m_impl->evaluatorText.reset();
    return Acad::eOk;
}

AcDbField::EvalStatus AcDbField::evaluationStatus(int* errorCode, ACHAR** errorMessage) const {
    if (errorCode) *errorCode = m_impl->errorCode;
    if (errorMessage) *errorMessage = NewText(m_impl->errorMessage);
    return m_impl->status;
}

AcDbField::EvalOption AcDbField::evaluationOption() const { return static_cast<EvalOption>(m_impl->option); }

Acad::ErrorStatus AcDbField::setEvaluationOption(EvalOption option) {
    Acad::ErrorStatus es = assertWriteEnabled();
    if (es != Acad::eOk) return es;
    if (static_cast<int>(option) & ~kOptionBits) return Acad::eInvalidInput;
    m_impl->option = option;
    return Acad::eOk;
}

AcDbField::State AcDbField::state() const {
    const Impl& m = *m_impl;
    int state = 0;
    if (m.hasCode) state |= kInitialized;
    if (m.compiled) state |= kCompiled;
    if (m.status != kNotYetEvaluated) state |= kEvaluated;
    if (m.value) state |= kHasCache;
    if (m.evaluatorText) state |= kHasFormattedString;
    return static_cast<State>(state);
}

Acad::ErrorStatus AcDbField::evaluate(int context, AcDbDatabase* db, int* numFound, int* numEvaluated) {
    int found = 0, evaluated = 0;
    Acad::ErrorStatus es = cadhost::EvaluateField(*this, context, db ? db : database(), found, evaluated);
    if (numFound) *numFound = found;
    if (numEvaluated) *numEvaluated = evaluated;
    return es;
}

Acad::ErrorStatus AcDbField::getValue(AcFdFieldValue& value) const {
    if (cadhost::ShowsChildren(*this)) {
        cadhost::SharedValueText::Set(value, cadhost::ComposedText(*this));
        return Acad::eOk;
    }
    if (!m_impl->value || m_impl->status != kSuccess) return Acad::eNotApplicable;
    value = *m_impl->value;
    return Acad::eOk;
}

const ACHAR* AcDbField::getValue() const {
    const Impl& m = *m_impl;
    if (m.status != kSuccess) return kNoValue;
    if (m.evaluatorText) return m.evaluatorText->c_str();
    if (cadhost::ShowsChildren(*this)) {
        m.composedText = cadhost::ComposedText(*this);
        return m.composedText->c_str();
    }
    if (!m.value) return kNoValue;
    // A text shows as it is, whatever the format: handed out from the value.
    const ACHAR* own = nullptr;
    if (m.value->get(own)) return own;
    ACHAR* text = nullptr;
    bool shown = m.value->format(m.format.empty() ? nullptr : m.format.c_str(), text) && text;
    m.valueText = shown ? text : kNoValue;
    if (text) acutDelBuffer(text);
    return m.valueText.c_str();
}

Acad::ErrorStatus AcDbField::getValue(ACHAR*& value) const {
    value = NewText(getValue());
    return Acad::eOk;
}

Acad::ErrorStatus AcDbField::getData(const ACHAR* key, AcFdFieldValue* data) const {
    if (!key || !*key) return Acad::eInvalidInput;
    for (const auto& item : m_impl->data) {
        if (item.first != key) continue;
        if (data) *data = item.second;
        return Acad::eOk;
    }
    return Acad::eKeyNotFound;
}

Acad::ErrorStatus AcDbField::setData(const ACHAR* key, const AcFdFieldValue* data, bool recursive) {
    Acad::ErrorStatus es = assertWriteEnabled();
    if (es != Acad::eOk) return es;
    if (!key || !*key) return Acad::eInvalidInput;
    auto& items = m_impl->data;
    auto it = std::find_if(items.begin(), items.end(), [key](const auto& item) { return item.first == key; });
    if (!data) {
        es = it == items.end() ? Acad::eKeyNotFound : Acad::eOk;
        if (it != items.end()) items.erase(it);
    } else if (it != items.end()) {
        it->second = *data;
    } else {
        items.emplace_back(key, *data);
    }
    if (recursive) {
        for (const auto& child : m_impl->children) {
            cadhost::ChildAccess access(child, AcDb::kForWrite);
            if (access.get()) access.get()->setData(key, data, true);
        }
    }
    return es;
}

int AcDbField::dataCount() const { return static_cast<int>(m_impl->data.size()); }

const ACHAR* AcDbField::dataKey(int index) const {
    if (index < 0 || index >= dataCount()) return nullptr;
    return m_impl->data[static_cast<size_t>(index)].first.c_str();
}

int AcDbField::childCount() const { return static_cast<int>(m_impl->children.size()); }

Acad::ErrorStatus AcDbField::getChild(int index, AcDbField*& field, AcDb::OpenMode mode) {
    field = nullptr;
    if (index < 0 || index >= childCount()) return Acad::eInvalidIndex;
    const Impl::Child& child = m_impl->children[static_cast<size_t>(index)];
    if (child.held) {
        field = child.held;
        return Acad::eOk;
    }
    return acdbOpenObject(field, child.id, mode);
}

Acad::ErrorStatus AcDbField::postInDatabase(AcDbDatabase* db) {
    if (!db) return Acad::eNoDatabase;
    if (!objectId().isNull()) return Acad::eAlreadyInDb;
    AcDbObjectId id;
    Acad::ErrorStatus es = db->addAcDbObject(id, this);
    if (es != Acad::eOk) return es;
    return PostChildren(*this, db);
}

Acad::ErrorStatus AcDbField::setInObject(AcDbObject* object, const ACHAR* propertyName) {
    if (!object || !propertyName || !*propertyName) return Acad::eInvalidInput;
    if (!objectId().isNull()) return Acad::eAlreadyInDb;
    AcDbDatabase* db = object->database();
    if (!db) return Acad::eNotInDatabase;
    if (!object->isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (object->extensionDictionary().isNull()) {
        Acad::ErrorStatus es = object->createExtensionDictionary();
        if (es != Acad::eOk) return es;
    }
    AcDbDictionary* extension = nullptr;
    Acad::ErrorStatus es = acdbOpenObject(extension, object->extensionDictionary(), AcDb::kForWrite);
    if (es != Acad::eOk) return es;
    AcDbObjectId fieldsId;
    if (extension->getAt(L"ACAD_FIELD", fieldsId) != Acad::eOk) {
        auto* fields = new AcDbDictionary;
        es = extension->setAt(L"ACAD_FIELD", fields, fieldsId);
        if (es != Acad::eOk) {
            delete fields;
            extension->close();
            return es;
        }
        fields->close();  // added open for write; opened again below
    }
    extension->close();
    AcDbDictionary* fields = nullptr;
    es = acdbOpenObject(fields, fieldsId, AcDb::kForWrite);
    if (es != Acad::eOk) return es;
    AcDbObjectId oldId;
    bool replacing = fields->getAt(propertyName, oldId) == Acad::eOk;
    AcDbObjectId id;
    es = fields->setAt(propertyName, this, id);
    fields->close();
    if (es != Acad::eOk) return es;
    if (replacing && oldId != id) {
        AcDbField* old = nullptr;
        if (acdbOpenObject(old, oldId, AcDb::kForWrite) == Acad::eOk) {
            EraseChildrenInDatabase(old->impl().children);
            old->erase();
            old->close();
        }
    }
    return PostChildren(*this, db);
}

namespace cadhost {

bool ShowsChildren(const AcDbField& field) {
    const AcDbField::Impl& m = field.impl();
    return m.textField && m.status == AcDbField::kSuccess && !m.evaluatorText && !m.fileValue &&
           (!m.value || !m.value->isValid());
}

std::shared_ptr<const std::wstring> ShownText(const AcDbField& field) {
    const AcDbField::Impl& m = field.impl();
    if (ShowsChildren(field)) return ComposedText(field);
    if (m.status == AcDbField::kSuccess && !m.evaluatorText && m.value) {
        if (std::shared_ptr<const std::wstring> text = SharedValueText::Of(*m.value)) return text;
    }
    return std::make_shared<const std::wstring>(field.getValue());
}

std::shared_ptr<const std::wstring> ComposedText(const AcDbField& field) {
    const AcDbField::Impl& m = field.impl();
    // A text that is one child's code and nothing else shows that child's
    // text itself.
    if (m.hasCode && m.children.size() == 1) {
        auto place = ChildPlaceAt(m.code, 0);
        if (place && place->first == 0 && place->second == m.code.size()) {
            ChildAccess child(m.children[0], AcDb::kForRead);
            if (child.get() && child.get() != &field && !ShowsChildren(*child.get())) return ShownText(*child.get());
        }
    }
    std::vector<const AcDbField*> path{&field};
    return std::make_shared<const std::wstring>(Compose(field, AcDbField::kEvaluatedChildren, path));
}

}  // namespace cadhost
