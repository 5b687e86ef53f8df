#include "fields/FieldUpdate.h"

#include <AcFdEval.h>
#include <adslib.h>
#include <dbdict.h>
#include <dbents.h>
#include <dbmtext.h>
#include <dbsymtb.h>

#include <memory>
#include <optional>
#include <unordered_map>

#include "db/DatabaseImpl.h"
#include "core/Utf8.h"
#include "fields/FieldCodeText.h"
#include "fields/FieldImpl.h"
#include "fields/FieldResult.h"

namespace cadhost {
namespace {

constexpr wchar_t kFieldsEntry[] = L"ACAD_FIELD";
constexpr wchar_t kTextProperty[] = L"TEXT";

struct Seen {
    std::shared_ptr<const std::wstring> value;
    bool wanted = false;  // the context is one of its moments
};

bool SameText(const std::shared_ptr<const std::wstring>& a, const std::shared_ptr<const std::wstring>& b) {
    return a == b || (a && b && *a == *b);
}

// The fields below a field (not the field itself), depth first, with their
// shown values.
void Collect(AcDbObjectId id, int context, std::vector<AcDbObjectId>& order,
             std::unordered_map<AcDbStub*, Seen>& seen, int depth) {
    AcDbField* field = nullptr;
    if (depth > kMaxFieldNesting || acdbOpenObject(field, id, AcDb::kForRead) != Acad::eOk) return;
    int children = field->childCount();
    std::vector<AcDbObjectId> ids;
    for (int i = 0; i < children; ++i) {
        AcDbField* child = nullptr;
        if (field->getChild(i, child, AcDb::kForRead) != Acad::eOk || !child) continue;
        AcDbObjectId childId = child->objectId();
        if (!childId.isNull() && seen.find(childId.stub()) == seen.end()) {
            seen[childId.stub()] = Seen{ShownText(*child), (child->evaluationOption() & context) != 0};
            order.push_back(childId);
            ids.push_back(childId);
        }
        child->close();
    }
    field->close();
    for (AcDbObjectId childId : ids) Collect(childId, context, order, seen, depth + 1);
}

// The entities that may hold fields: those of every block, and the
// attributes of block references.
std::vector<AcDbObjectId> Entities(AcDbDatabase& database) {
    std::vector<AcDbObjectId> out;
    auto* blocks = AcDbBlockTable::cast(DatabaseImpl::Peek(database.blockTableId()));
    if (!blocks) return out;
    for (AcDbObjectId blockId : blocks->recordIds()) {
        auto* block = AcDbBlockTableRecord::cast(DatabaseImpl::Peek(blockId));
        if (!block || blockId.isErased()) continue;
        for (AcDbObjectId id : block->entityIds()) {
            if (id.isErased()) continue;
            out.push_back(id);
            if (auto* reference = AcDbBlockReference::cast(DatabaseImpl::Peek(id))) {
                for (AcDbObjectId attribute : reference->attributeIds())
                    if (!attribute.isErased()) out.push_back(attribute);
            }
        }
    }
    return out;
}

// The fields filed under an entity, by property name.
std::vector<std::pair<std::wstring, AcDbObjectId>> FieldsOf(AcDbObjectId entityId) {
    std::vector<std::pair<std::wstring, AcDbObjectId>> out;
    AcDbObject* entity = DatabaseImpl::Peek(entityId);
    if (!entity || entity->extensionDictionary().isNull()) return out;
    AcDbDictionary* extension = nullptr;
    if (acdbOpenObject(extension, entity->extensionDictionary(), AcDb::kForRead) != Acad::eOk) return out;
    AcDbObjectId fieldsId;
    bool any = extension->getAt(kFieldsEntry, fieldsId) == Acad::eOk;
    extension->close();
    AcDbDictionary* fields = nullptr;
    if (!any || acdbOpenObject(fields, fieldsId, AcDb::kForRead) != Acad::eOk) return out;
    for (const AcDbDictionary::Entry& entry : fields->entries()) {
        if (!entry.id.isErased() && entry.id.objectClass() && entry.id.objectClass()->isDerivedFrom(AcDbField::desc()))
            out.emplace_back(entry.name, entry.id);
    }
    fields->close();
    return out;
}

std::wstring CodeOf(const AcDbField& field) {
    return field.getFieldCode(AcDbField::FieldCodeFlag(AcDbField::kFieldCode | AcDbField::kAddMarkers));
}

// A field that did not evaluate successfully goes on the report's list.
void ListFailure(const AcDbField& field, AcDbObjectId textId, FieldUpdateReport& report) {
    int errorCode = 0;
    ACHAR* message = nullptr;
    AcDbField::EvalStatus status = field.evaluationStatus(&errorCode, &message);
    if (status != AcDbField::kSuccess)
        report.failed.push_back(FieldFailure{textId, field.objectId(), CodeOf(field), status, message ? message : L""});
    acutDelBuffer(message);
}

// What texts show of the values of one pass, made once for each value
// text however many texts show it (many fields may name one source); a
// multiline text shares it with the others that show it.
class ShownInTexts {
public:
    const std::shared_ptr<const std::string>& InMText(const std::shared_ptr<const std::wstring>& value) {
        Entry& entry = Find(value);
        if (!entry.mtext) entry.mtext = std::make_shared<const std::string>(ToUtf8(ShownInMText(*value)));
        return entry.mtext;
    }
    const std::string& InText(const std::shared_ptr<const std::wstring>& value) {
        Entry& entry = Find(value);
        if (!entry.text) entry.text = ToUtf8(ShownInText(*value));
        return *entry.text;
    }

private:
    struct Entry {
        std::shared_ptr<const std::wstring> value;  // keeps the key alive
        std::shared_ptr<const std::string> mtext;
        std::optional<std::string> text;
    };
    Entry& Find(const std::shared_ptr<const std::wstring>& value) {
        Entry& entry = m_entries[value.get()];
        entry.value = value;
        return entry;
    }
    std::unordered_map<const std::wstring*, Entry> m_entries;
};

void ShowInText(AcDbObjectId textId, const std::shared_ptr<const std::wstring>& value, ShownInTexts& shownTexts,
                FieldUpdateReport& report) {
    AcDbEntity* entity = nullptr;
    if (!value || acdbOpenAcDbEntity(entity, textId, AcDb::kForRead) != Acad::eOk) return;
    bool changes = false;
    if (auto* mtext = AcDbMText::cast(entity)) changes = *shownTexts.InMText(value) != mtext->contentsUtf8();
    else if (auto* text = AcDbText::cast(entity)) changes = shownTexts.InText(value) != text->textUtf8();
    if (!changes || entity->upgradeOpen() != Acad::eOk) {
        entity->close();
        return;
    }
    if (auto* mtext = AcDbMText::cast(entity)) mtext->setContentsUtf8(shownTexts.InMText(value));
    else AcDbText::cast(entity)->setTextUtf8(shownTexts.InText(value));
    entity->close();
    ++report.textsChanged;
}

}  // namespace

std::wstring ShownInMText(const std::wstring& value) {
    std::wstring out;
    out.reserve(value.size());
    for (size_t i = 0; i < value.size(); ++i) {
        if (value[i] == L'\r' && i + 1 < value.size() && value[i + 1] == L'\n') continue;
        if (value[i] == L'\n' || value[i] == L'\r') out += L"\\P";
        else out += value[i];
    }
    return out;
}

std::wstring ShownInText(const std::wstring& value) {
    std::wstring out = value;
    for (wchar_t& c : out)
        if (c == L'\n' || c == L'\r') c = L' ';
    return out;
}

namespace {

// The field reactors hear of the whole pass, however it ends.
class EvaluationPass {
public:
    EvaluationPass(int context, AcDbDatabase& database) : m_context(context), m_database(database) {
        if (AcFdFieldEngine* engine = acdbGetFieldEngine()) engine->beginEvaluateFields(m_context, &m_database);
    }
    ~EvaluationPass() {
        if (AcFdFieldEngine* engine = acdbGetFieldEngine()) engine->endEvaluateFields(m_context, &m_database);
    }
    EvaluationPass(const EvaluationPass&) = delete;
    EvaluationPass& operator=(const EvaluationPass&) = delete;

private:
    int m_context;
    AcDbDatabase& m_database;
};

}  // namespace

FieldUpdateReport UpdateFields(AcDbDatabase& database, int context) {
    FieldUpdateReport report;
    EvaluationPass pass(context, database);
    ShownInTexts shownTexts;
    for (AcDbObjectId textId : Entities(database)) {
        auto fields = FieldsOf(textId);
        if (fields.empty()) continue;
        ++report.texts;
        for (const auto& [property, topId] : fields) {
            std::vector<AcDbObjectId> order;
            std::unordered_map<AcDbStub*, Seen> before;
            // The field itself counts when it is not a text of fields.
            AcDbField* top = nullptr;
            if (acdbOpenObject(top, topId, AcDb::kForRead) != Acad::eOk) continue;
            if (std::optional<std::wstring> fault = FieldStructureFault(*top)) {
                report.notEvaluated.push_back(FieldFailure{textId, topId, CodeOf(*top), AcDbField::kOtherError, *fault});
                top->close();
                continue;
            }
            bool topIsText = top->isTextField();
            if (!topIsText) {
                before[topId.stub()] = Seen{ShownText(*top), (top->evaluationOption() & context) != 0};
                order.push_back(topId);
            }
            top->close();
            Collect(topId, context, order, before, 0);

            // A field whose evaluator is not there keeps its value: it sits
            // out this evaluation and is reported.
            std::vector<std::pair<AcDbObjectId, int>> sittingOut;
            for (AcDbObjectId id : order) {
                Seen& was = before[id.stub()];
                AcDbField* field = nullptr;
                if (!was.wanted || acdbOpenObject(field, id, AcDb::kForWrite) != Acad::eOk) continue;
                const ACHAR* evaluatorId = nullptr;
                AcFdFieldEngine* engine = acdbGetFieldEngine();
                if (!field->isTextField() && (!engine || !engine->findEvaluator(field, evaluatorId))) {
                    sittingOut.emplace_back(id, field->evaluationOption());
                    field->setEvaluationOption(AcDbField::kDisable);
                    report.skipped.push_back(FieldFailure{textId, id, CodeOf(*field), AcDbField::kEvaluatorNotFound,
                                                          L"No evaluator is registered for \"" +
                                                              std::wstring(field->evaluatorId()) + L"\"."});
                    was.wanted = false;
                }
                field->close();
            }

            bool shows = false;
            std::shared_ptr<const std::wstring> value;
            if (acdbOpenObject(top, topId, AcDb::kForWrite) == Acad::eOk) {
                bool wanted = (top->evaluationOption() & context) != 0 || (context & AcDbField::kPreview);
                top->evaluate(context, &database);
                value = ShownText(*top);
                shows = wanted && top->evaluationStatus() == AcDbField::kSuccess;
                // A text of fields that fails (a code that cannot be read)
                // is listed, though it is not counted among the evaluated.
                if (wanted && topIsText) ListFailure(*top, textId, report);
                top->close();
            }
            for (const auto& [id, option] : sittingOut) {
                AcDbField* field = nullptr;
                if (acdbOpenObject(field, id, AcDb::kForWrite) != Acad::eOk) continue;
                field->setEvaluationOption(option);
                field->close();
            }

            for (AcDbObjectId id : order) {
                const Seen& was = before[id.stub()];
                if (!was.wanted) continue;
                AcDbField* field = nullptr;
                if (acdbOpenObject(field, id, AcDb::kForRead) != Acad::eOk) continue;
                if (!field->isTextField()) {
                    ++report.evaluated;
                    if (!SameText(was.value, ShownText(*field))) ++report.changed;
                }
                ListFailure(*field, textId, report);
                field->close();
            }
            if (shows && property == kTextProperty) ShowInText(textId, value, shownTexts, report);
        }
    }
    return report;
}

}  // namespace cadhost
