#include <adslib.h>

#include <algorithm>
#include <unordered_set>
#include <vector>

#include "fields/FieldCodeText.h"
#include "fields/FieldImpl.h"
#include "fields/FieldResult.h"

ACRX_DEFINE_MEMBERS(AcFdFieldResult, AcRxObject)

AcFdFieldResult::~AcFdFieldResult() = default;

// The base result keeps nothing; the host hands evaluators its own.
Acad::ErrorStatus AcFdFieldResult::setFieldValue(const AcValue*) { return Acad::eNotApplicable; }
Acad::ErrorStatus AcFdFieldResult::setEvaluationStatus(int, int, const ACHAR*) { return Acad::eNotApplicable; }

namespace cadhost {
namespace {

constexpr int kKnownStatuses = AcDbField::kNotYetEvaluated | AcDbField::kSuccess | AcDbField::kEvaluatorNotFound |
                               AcDbField::kSyntaxError | AcDbField::kInvalidCode | AcDbField::kInvalidContext |
                               AcDbField::kOtherError;
constexpr int kKnownContexts = static_cast<int>(AcDbField::kAutomatic) | static_cast<int>(AcDbField::kPreview);

// One status bit; anything else an evaluator reports counts as an error of
// its own.
bool IsOneStatus(int status) { return status > 0 && (status & kKnownStatuses) == status && (status & (status - 1)) == 0; }

Acad::ErrorStatus Fail(AcDbField::Impl& m, int status, const std::wstring& message, int errorCode = 0,
                       Acad::ErrorStatus es = Acad::eInvalidInput) {
    m.status = static_cast<AcDbField::EvalStatus>(status);
    m.errorCode = errorCode;
    m.errorMessage = message;
    m.value.reset();
    m.evaluatorText.reset();
    return es == Acad::eOk ? Acad::eInvalidInput : es;
}

std::wstring HandleText(AcDbObjectId id) {
    ACHAR text[32] = L"";
    id.handle().getIntoAsciiBuffer(text, 32);
    return text;
}

// One field on the walk's path, and how far its children are walked.
struct Step {
    const AcDbField* field;
    AcDbObjectId id;  // null for a child the field holds
    size_t next = 0;
    bool opened = false;
};

}  // namespace

std::optional<std::wstring> FieldStructureFault(const AcDbField& top) {
    std::vector<Step> path{{&top, top.objectId()}};
    std::unordered_set<AcDbStub*> followed;  // fields whose children were all walked
    std::optional<std::wstring> fault;
    while (!path.empty() && !fault) {
        Step& step = path.back();
        const auto& children = step.field->impl().children;
        if (step.next >= children.size()) {
            if (!step.id.isNull()) followed.insert(step.id.stub());
            if (step.opened) const_cast<AcDbField*>(step.field)->close();
            path.pop_back();
            continue;
        }
        const AcDbField::Impl::Child& child = children[step.next++];
        if (path.size() > static_cast<size_t>(kMaxFieldNesting)) {
            fault = L"The child fields are nested deeper than " + std::to_wstring(kMaxFieldNesting) + L" levels.";
            break;
        }
        if (child.held) {
            path.push_back({child.held, AcDbObjectId()});
            continue;
        }
        if (child.id.isNull()) {
            fault = L"A child field of the field names no object.";
            break;
        }
        if (followed.count(child.id.stub())) continue;
        auto onPath = std::find_if(path.begin(), path.end(), [&](const Step& s) { return s.id == child.id; });
        if (onPath != path.end()) {
            std::wstring cycle;
            for (auto it = onPath; it != path.end(); ++it) cycle += HandleText(it->id) + L" -> ";
            fault = L"The child fields form a cycle: " + cycle + HandleText(child.id) + L".";
            break;
        }
        AcDbField* field = nullptr;
        Acad::ErrorStatus es = acdbOpenObject(field, child.id, AcDb::kForRead);
        if (es == Acad::eOk) {
            path.push_back({field, child.id, 0, true});
        } else if (es == Acad::eNotThatKindOfClass) {
            fault = L"The child " + HandleText(child.id) + L" of the field is not a field.";
        } else if (es == Acad::eWasErased) {
            fault = L"The child field " + HandleText(child.id) + L" was erased from the drawing.";
        } else if (es != Acad::eWasOpenForWrite) {
            fault = L"The child field " + HandleText(child.id) + L" is not in the drawing.";
        }
    }
    for (const Step& step : path)
        if (step.opened) const_cast<AcDbField*>(step.field)->close();
    return fault;
}

Acad::ErrorStatus FieldResult::setFieldValue(const AcValue* newValue) {
    if (!newValue) return Acad::eNullObjectPointer;
    value = AcFdFieldValue(*newValue);
    return Acad::eOk;
}

Acad::ErrorStatus FieldResult::setEvaluationStatus(int newStatus, int newErrorCode, const ACHAR* newMessage) {
    status = newStatus;
    errorCode = newErrorCode;
    message = newMessage ? newMessage : L"";
    return Acad::eOk;
}

Acad::ErrorStatus EvaluateField(AcDbField& field, int context, AcDbDatabase* database, int& found, int& evaluated) {
    if (!field.isWriteEnabled()) return Acad::eNotOpenForWrite;
    // Children that cannot be followed would leave the field showing a
    // text without them: it fails, its children as they are.
    if (std::optional<std::wstring> fault = FieldStructureFault(field)) {
        ++found;
        return Fail(field.impl(), AcDbField::kOtherError, *fault);
    }
    return EvaluateTree(field, context, database, found, evaluated);
}

Acad::ErrorStatus EvaluateTree(AcDbField& field, int context, AcDbDatabase* database, int& found, int& evaluated) {
    AcDbField::Impl& m = field.impl();
    ++found;
    for (const auto& child : m.children) {
        ChildAccess access(child, AcDb::kForWrite);
        if (access.get()) EvaluateTree(*access.get(), context, database, found, evaluated);
    }
    if (context <= 0 || (context & ~kKnownContexts))
        return Fail(m, AcDbField::kInvalidContext, L"The evaluation context is not one the host knows.");
    if (!(context & AcDbField::kPreview) && !(context & m.option)) return Acad::eOk;

    if (m.unreadable) {
        std::wstring why = m.unreadableReason.empty() ? L"" : L": " + m.unreadableReason;
        return Fail(m, AcDbField::kSyntaxError, L"The field code cannot be read" + why + L".");
    }
    if (!m.hasCode) return Fail(m, AcDbField::kInvalidCode, L"The field has no code.");
    AcFdFieldEngine* engine = acdbGetFieldEngine();
    const ACHAR* id = m.evaluatorId.c_str();
    AcFdFieldEvaluator* evaluator = engine ? engine->findEvaluator(&field, id) : nullptr;
    if (!evaluator)
        return Fail(m, AcDbField::kEvaluatorNotFound, L"No evaluator is registered for \"" + m.evaluatorId + L"\".", 0,
                    Acad::eNotApplicable);
    ++evaluated;

    FieldResult result;
    if (!m.compiled) {
        evaluator->initialize(&field);
        Acad::ErrorStatus es = evaluator->compile(&field, database, &result);
        if (es != Acad::eOk || (result.status && *result.status != AcDbField::kSuccess)) {
            int status = result.status && IsOneStatus(*result.status) && *result.status != AcDbField::kSuccess
                             ? *result.status
                             : AcDbField::kInvalidCode;
            return Fail(m, status, result.message, result.errorCode, es);
        }
        m.compiled = true;
        result.status.reset();
    }

    Acad::ErrorStatus es = evaluator->evaluate(&field, context, database, &result);
    int status = result.status ? *result.status : (es == Acad::eOk ? AcDbField::kSuccess : AcDbField::kOtherError);
    if (!IsOneStatus(status) || (status == AcDbField::kSuccess && es != Acad::eOk)) status = AcDbField::kOtherError;
    if (status != AcDbField::kSuccess) return Fail(m, status, result.message, result.errorCode, es);

    m.status = AcDbField::kSuccess;
    m.errorCode = 0;
    m.errorMessage.clear();
    m.value = result.value ? std::move(*result.value) : AcFdFieldValue();
    m.evaluatorText.reset();
    ACHAR* text = nullptr;
    if (evaluator->format(&field, text) == Acad::eOk && text) m.evaluatorText = std::wstring(text);
    if (text) acutDelBuffer(text);
    return Acad::eOk;
}

}  // namespace cadhost
