#include "BlockCounter.h"

#include <dbdynblk.h>
#include <dbents.h>
#include <dbobjptr.h>

#include <algorithm>
#include <cwctype>
#include <limits>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace {

// Counts grow through nesting, where a definition placed often adds what
// it holds each time; they stop at a ceiling far above what a field can
// show, so that no sum overflows.
constexpr Adesk::Int64 kCeiling = Adesk::Int64(1) << 62;

Adesk::Int64 Plus(Adesk::Int64 a, Adesk::Int64 b) { return std::min(a + b, kCeiling); }

// Symbol names compare without regard to case.
std::wstring NameKey(const ACHAR* name) {
    std::wstring key = name ? name : L"";
    for (wchar_t& c : key) c = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c)));
    return key;
}

std::unordered_set<std::wstring> NameKeys(const std::vector<CString>& names) {
    std::unordered_set<std::wstring> keys;
    for (const CString& name : names) keys.insert(NameKey(name));
    return keys;
}

// Ids as keys of hash tables: the object's handle.
struct IdHash {
    size_t operator()(const AcDbObjectId& id) const {
        AcDbHandle handle = id.handle();
        return std::hash<Adesk::UInt64>()((Adesk::UInt64(handle.high()) << 32) | handle.low());
    }
};
template <class T>
using IdMap = std::unordered_map<AcDbObjectId, T, IdHash>;

// How a block record's references go by name.
enum class NameMatch { kNo, kYes, kByReference };

// A memo of counts over blocks that notes the blocks on the way, so that a
// block reached again through itself adds nothing more.
class BlockMemo {
public:
    // The memo's count of a block, or false when it has none yet; a block on
    // the way counts 0.
    bool Find(AcDbObjectId id, Adesk::Int64& count) const {
        auto it = m_counts.find(id);
        if (it == m_counts.end()) return false;
        count = it->second;
        return true;
    }
    void Begin(AcDbObjectId id) { m_counts[id] = 0; }
    void End(AcDbObjectId id, Adesk::Int64 count) { m_counts[id] = count; }

private:
    IdMap<Adesk::Int64> m_counts;
};

// One thing a block holds: what it adds itself, and the block through which
// it adds more (null for none).
struct Step {
    Adesk::Int64 own = 0;
    AcDbObjectId next;
};

// The sum over a block's steps of what each adds itself and what its next
// block sums to, each block summed once. The walk keeps its own stack, so
// that nesting of any depth ends; a block reached again on its own way adds
// nothing more.
template <class Expand>
Adesk::Int64 SumThrough(BlockMemo& memo, AcDbObjectId root, Expand&& expand) {
    Adesk::Int64 known = 0;
    if (memo.Find(root, known)) return known;
    struct Frame {
        AcDbObjectId block;
        std::vector<Step> steps;
        size_t next = 0;
        Adesk::Int64 sum = 0;
    };
    std::vector<Frame> frames;
    auto enter = [&](AcDbObjectId block) {
        memo.Begin(block);
        Frame frame;
        frame.block = block;
        expand(block, frame.steps);
        frames.push_back(std::move(frame));
    };
    enter(root);
    for (;;) {
        Frame& top = frames.back();
        if (top.next == top.steps.size()) {
            memo.End(top.block, top.sum);
            Adesk::Int64 sum = top.sum;
            frames.pop_back();
            if (frames.empty()) return sum;
            continue;
        }
        const Step& step = top.steps[top.next];
        Adesk::Int64 inner = 0;
        if (!step.next.isNull() && !memo.Find(step.next, inner)) {
            enter(step.next);  // its sum is in the memo when the walk comes back here
            continue;
        }
        top.sum = Plus(top.sum, Plus(step.own, inner));
        ++top.next;
    }
}

}  // namespace

struct CBlockCounter::State {
    AcDbDatabase* database;
    const BlockCountQuery& query;
    std::unordered_set<std::wstring> names;
    std::unordered_set<std::wstring> layers;
    std::unique_ptr<BlockCountCondition> condition;

    IdMap<NameMatch> recordMatches;         // every block record but the layouts
    std::vector<AcDbObjectId> recordOrder;  // the same, in table order
    IdMap<bool> layoutRecords;              // block record: is a layout
    std::vector<AcDbObjectId> layoutOrder;  // the layouts, in table order
    IdMap<bool> layerMatches;
    IdMap<bool> dynamicMatches;             // dynamic block record: its name is asked for
    BlockMemo contents;                     // block: what it holds that counts

    State(AcDbDatabase* db, const BlockCountQuery& q)
        : database(db), query(q), names(NameKeys(q.names)), layers(NameKeys(q.layers)) {
        if (!q.tag.IsEmpty()) condition = std::make_unique<BlockCountCondition>(q.op, q.value);
    }

    // Reads the block table once: which records go by name, which go by the
    // dynamic block of each reference, which are layouts.
    void ReadRecords() {
        AcDbBlockTable* table = nullptr;
        if (!database || database->getSymbolTable(table, AcDb::kForRead) != Acad::eOk) return;
        AcDbBlockTableIterator* iterator = nullptr;
        if (table->newIterator(iterator, true, true) == Acad::eOk && iterator) {
            std::vector<std::pair<AcDbObjectId, bool>> anonymous;
            bool dynamicAskedFor = false;
            for (; !iterator->done(); iterator->step(true, true)) {
                AcDbBlockTableRecord* record = nullptr;
                if (iterator->getRecord(record, AcDb::kForRead) != Acad::eOk || !record) continue;
                AcDbObjectId id = record->objectId();
                const ACHAR* name = nullptr;
                record->getName(name);
                bool listed = names.count(NameKey(name)) > 0;
                bool layout = record->isLayout(), isAnonymous = record->isAnonymous();
                record->close();
                layoutRecords[id] = layout;
                if (layout) {
                    layoutOrder.push_back(id);
                    continue;
                }
                recordMatches[id] = listed ? NameMatch::kYes : NameMatch::kNo;
                recordOrder.push_back(id);
                if (listed && AcDbDynBlockReference::isDynamicBlock(id)) dynamicAskedFor = true;
                if (isAnonymous && !listed) anonymous.emplace_back(id, true);
            }
            delete iterator;
            // References to anonymous copies go by their dynamic block, which
            // only matters when a dynamic block is asked for.
            if (dynamicAskedFor) {
                for (const auto& entry : anonymous) recordMatches[entry.first] = NameMatch::kByReference;
            }
        }
        table->close();
    }

    bool IsLayout(AcDbObjectId id) {
        auto it = layoutRecords.find(id);
        return it != layoutRecords.end() && it->second;
    }

    // Whether the dynamic block of a reference to an anonymous copy is asked for.
    bool DynamicBlockAskedFor(AcDbObjectId referenceId) {
        AcDbObjectId dynamic = AcDbDynBlockReference(referenceId).dynamicBlockTableRecord();
        if (dynamic.isNull()) return false;
        auto it = dynamicMatches.find(dynamic);
        if (it != dynamicMatches.end()) return it->second;
        bool asked = false;
        AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> record(dynamic);
        if (record.openStatus() == Acad::eOk) {
            const ACHAR* name = nullptr;
            record->getName(name);
            asked = names.count(NameKey(name)) > 0;
        }
        dynamicMatches[dynamic] = asked;
        return asked;
    }

    bool NameAskedFor(const AcDbBlockReference& reference) {
        auto it = recordMatches.find(reference.blockTableRecord());
        if (it == recordMatches.end()) return false;
        if (it->second == NameMatch::kByReference) return DynamicBlockAskedFor(reference.objectId());
        return it->second == NameMatch::kYes;
    }

    bool OnLayer(const AcDbBlockReference& reference) {
        if (layers.empty()) return true;
        AcDbObjectId layerId = reference.layerId();
        auto it = layerMatches.find(layerId);
        if (it != layerMatches.end()) return it->second;
        bool listed = false;
        AcDbSymbolTableRecordPointer<AcDbLayerTableRecord> layer(layerId);
        if (layer.openStatus() == Acad::eOk) {
            const ACHAR* name = nullptr;
            layer->getName(name);
            listed = layers.count(NameKey(name)) > 0;
        }
        layerMatches[layerId] = listed;
        return listed;
    }

    // The condition on the first attribute of the tag or, when there is none,
    // on the dynamic property of that name.
    bool MeetsCondition(const AcDbBlockReference& reference) {
        if (!condition) return true;
        AcDbObjectIterator* iterator = reference.attributeIterator();
        for (; iterator && !iterator->done(); iterator->step(false, true)) {
            AcDbObjectPointer<AcDbAttribute> attribute(iterator->objectId());
            if (attribute.openStatus() != Acad::eOk) continue;
            ACHAR* tag = attribute->tag();
            bool same = tag && query.tag.CompareNoCase(tag) == 0;
            acutDelBuffer(tag);
            if (!same) continue;
            ACHAR* text = attribute->textString();
            bool accepted = condition->Accepts(CString(text));
            acutDelBuffer(text);
            delete iterator;
            return accepted;
        }
        delete iterator;

        AcDbDynBlockReference dynamic(reference.objectId());
        if (!dynamic.isDynamicBlock()) return false;
        AcDbDynBlockReferencePropertyArray properties;
        dynamic.getBlockProperties(properties);
        for (int i = 0; i < properties.length(); ++i) {
            if (query.tag.CompareNoCase(properties[i].propertyName().kwszPtr()) != 0) continue;
            AcDbEvalVariant value = properties[i].value();
            CString text;
            switch (value.restype) {
            case AcDb::kDxfText: return condition->Accepts(CString(value.resval.rstring));
            case AcDb::kDxfReal:
                text.Format(L"%g", value.resval.rreal);
                return condition->AcceptsNumber(value.resval.rreal, text);
            case AcDb::kDxfInt16:
                text.Format(L"%d", static_cast<int>(value.resval.rint));
                return condition->AcceptsNumber(value.resval.rint, text);
            case AcDb::kDxfInt32:
                text.Format(L"%ld", static_cast<long>(value.resval.rlong));
                return condition->AcceptsNumber(value.resval.rlong, text);
            default: return false;  // a point has no value to compare
            }
        }
        return false;
    }

    bool Counts(const AcDbBlockReference& reference) {
        return NameAskedFor(reference) && OnLayer(reference) && MeetsCondition(reference);
    }

    // What a block holds that counts, through every level.
    Adesk::Int64 Contents(AcDbObjectId blockId) {
        return SumThrough(contents, blockId, [&](AcDbObjectId block, std::vector<Step>& steps) {
            AcDbBlockTableRecordIterator* iterator = nullptr;
            {
                AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> record(block);
                if (record.openStatus() != Acad::eOk) return;
                record->newIterator(iterator, true, true);
            }
            for (; iterator && !iterator->done(); iterator->step(true, true)) {
                AcDbObjectId id;
                iterator->getEntityId(id);
                AcDbObjectPointer<AcDbBlockReference> reference(id);
                if (reference.openStatus() != Acad::eOk) continue;
                steps.push_back({Counts(*reference.object()) ? 1 : 0, reference->blockTableRecord()});
            }
            delete iterator;
        });
    }

    // The references of the blocks asked for that a space holds itself.
    Adesk::Int64 CountInSpacesOnly() {
        Adesk::Int64 total = 0;
        for (AcDbObjectId recordId : recordOrder) {
            if (recordMatches[recordId] == NameMatch::kNo) continue;
            AcDbObjectIdArray references;
            {
                AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> record(recordId);
                if (record.openStatus() != Acad::eOk) continue;
                record->getBlockReferenceIds(references, true, false);
            }
            for (int i = 0; i < references.length(); ++i) {
                if (references[i].isEffectivelyErased()) continue;
                AcDbObjectPointer<AcDbBlockReference> reference(references[i]);
                if (reference.openStatus() != Acad::eOk || !IsLayout(reference->ownerId())) continue;
                if (Counts(*reference.object())) total = Plus(total, 1);
            }
        }
        return total;
    }

    bool InsideWindow(const AcDbBlockReference& reference) const {
        if (!query.hasWindow) return true;
        AcDbExtents extents;
        if (reference.getGeomExtents(extents) != Acad::eOk) return false;
        double x0 = std::min(query.firstCorner[0], query.secondCorner[0]);
        double x1 = std::max(query.firstCorner[0], query.secondCorner[0]);
        double y0 = std::min(query.firstCorner[1], query.secondCorner[1]);
        double y1 = std::max(query.firstCorner[1], query.secondCorner[1]);
        const AcGePoint3d& lo = extents.minPoint();
        const AcGePoint3d& hi = extents.maxPoint();
        return lo.x >= x0 && hi.x <= x1 && lo.y >= y0 && hi.y <= y1;
    }

    // One space, within the window when there is one: its references that
    // count, and with nesting what each of them holds.
    Adesk::Int64 CountInSpace(AcDbObjectId spaceId) {
        Adesk::Int64 total = 0;
        AcDbBlockTableRecordIterator* iterator = nullptr;
        {
            AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> space(spaceId);
            if (space.openStatus() != Acad::eOk) return 0;
            space->newIterator(iterator, true, true);
        }
        for (; iterator && !iterator->done(); iterator->step(true, true)) {
            AcDbObjectId id;
            iterator->getEntityId(id);
            AcDbObjectPointer<AcDbBlockReference> reference(id);
            if (reference.openStatus() != Acad::eOk) continue;
            Adesk::Int64 inner = query.nested ? Contents(reference->blockTableRecord()) : 0;
            Adesk::Int64 own = Counts(*reference.object()) ? 1 : 0;
            if (own + inner == 0 || !InsideWindow(*reference.object())) continue;
            total = Plus(total, Plus(own, inner));
        }
        delete iterator;
        return total;
    }

    // The space a handle names: a layout's block record.
    bool FindSpace(AcDbObjectId& spaceId) const {
        AcDbHandle handle(static_cast<const ACHAR*>(query.spaceHandle));
        if (handle.isNull() || !database || database->getAcDbObjectId(spaceId, false, handle) != Acad::eOk)
            return false;
        AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> space(spaceId);
        return space.openStatus() == Acad::eOk && space->isLayout();
    }
};

CBlockCounter::CBlockCounter(AcDbDatabase* database, const BlockCountQuery& query)
    : m_state(std::make_unique<State>(database, query)) {}

CBlockCounter::~CBlockCounter() = default;

CBlockCounter::Result CBlockCounter::Count(Adesk::Int32& count) {
    State& state = *m_state;
    count = 0;
    AcDbObjectId spaceId;
    if (state.query.hasSpace && !state.FindSpace(spaceId)) return kNoSuchSpace;
    if (state.names.empty()) return kCounted;
    state.ReadRecords();
    Adesk::Int64 total = 0;
    if (state.query.hasSpace) {
        total = state.CountInSpace(spaceId);
    } else if (state.query.nested) {
        // Down from each space, so that every definition is walked once and
        // a block met again on its own way adds nothing more.
        for (AcDbObjectId space : state.layoutOrder) total = Plus(total, state.CountInSpace(space));
    } else {
        total = state.CountInSpacesOnly();
    }
    if (total > std::numeric_limits<Adesk::Int32>::max()) return kTooMany;
    count = static_cast<Adesk::Int32>(total);
    return kCounted;
}
