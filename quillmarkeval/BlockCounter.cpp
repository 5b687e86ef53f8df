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
// show, so that no sum or product overflows.
constexpr Adesk::Int64 kCeiling = Adesk::Int64(1) << 62;

Adesk::Int64 Plus(Adesk::Int64 a, Adesk::Int64 b) { return std::min(a + b, kCeiling); }

Adesk::Int64 Times(Adesk::Int64 a, Adesk::Int64 b) {
    if (a == 0 || b == 0) return 0;
    return a > kCeiling / b ? kCeiling : a * b;
}

// Symbol names compare without regard to case.
std::wstring NameKey(const ACHAR* name) {
    std::wstring key = name ? name : L"";
    for (wchar_t& c : key) c = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c)));
    return key;
}

// Tags compare without regard to case; letters of the ASCII range, which
// tags nearly always are, fold without a look-up.
bool SameTag(const wchar_t* a, const wchar_t* b) {
    for (;; ++a, ++b) {
        wchar_t x = *a, y = *b;
        if (x == y) {
            if (!x) return true;
            continue;
        }
        if (x < 0x80 && y < 0x80) {
            if (x >= L'a' && x <= L'z') x = static_cast<wchar_t>(x - 32);
            if (y >= L'a' && y <= L'z') y = static_cast<wchar_t>(y - 32);
            if (x != y) return false;
        } else if (std::towupper(static_cast<wint_t>(x)) != std::towupper(static_cast<wint_t>(y))) {
            return false;
        }
    }
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

// The strongly connected parts of a graph of blocks (a block that holds
// itself, directly or through others, is one part with them), found by
// Tarjan's walk on a stack of its own, so that nesting of any depth ends.
// Each part is finished once every part its edges lead to is finished.
class BlockComponents {
public:
    bool Seen(AcDbObjectId id) const { return m_index.count(id) > 0; }

    // Walks from root unless it was walked already. next(id, out) lists the
    // blocks the edges of a block lead to; finish(members) takes each part.
    template <class Next, class Finish>
    void Walk(AcDbObjectId root, Next&& next, Finish&& finish) {
        if (Seen(root)) return;
        struct Frame {
            AcDbObjectId block;
            std::vector<AcDbObjectId> next;
            size_t at = 0;
        };
        std::vector<Frame> frames;
        auto enter = [&](AcDbObjectId block) {
            m_index[block] = m_low[block] = m_counter++;
            m_stack.push_back(block);
            m_onStack[block] = true;
            Frame frame;
            frame.block = block;
            next(block, frame.next);
            frames.push_back(std::move(frame));
        };
        enter(root);
        while (!frames.empty()) {
            Frame& top = frames.back();
            if (top.at < top.next.size()) {
                AcDbObjectId target = top.next[top.at++];
                if (!Seen(target)) {
                    enter(target);  // top is gone with the push
                } else if (m_onStack[target]) {
                    m_low[top.block] = std::min(m_low[top.block], m_index[target]);
                }
                continue;
            }
            AcDbObjectId block = top.block;
            if (m_low[block] == m_index[block]) {
                std::vector<AcDbObjectId> members;
                AcDbObjectId member;
                do {
                    member = m_stack.back();
                    m_stack.pop_back();
                    m_onStack[member] = false;
                    members.push_back(member);
                } while (member != block);
                finish(members);
            }
            frames.pop_back();
            if (!frames.empty()) {
                AcDbObjectId parent = frames.back().block;
                m_low[parent] = std::min(m_low[parent], m_low[block]);
            }
        }
    }

private:
    IdMap<int> m_index, m_low;
    IdMap<bool> m_onStack;
    std::vector<AcDbObjectId> m_stack;
    int m_counter = 0;
};

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
    IdMap<bool> layerMatches;
    IdMap<bool> dynamicMatches;             // dynamic block record: its name is asked for
    // Down from a space: what each block holds that counts, through every
    // level; the references each block holds, until its part is finished.
    BlockComponents down;
    IdMap<Adesk::Int64> contents;
    IdMap<std::vector<std::pair<Adesk::Int64, AcDbObjectId>>> held;
    // Up from the references: how often the spaces hold each definition.
    BlockComponents up;
    IdMap<Adesk::Int64> placements;
    IdMap<std::vector<AcDbObjectId>> holders;  // the owner of each reference to a block

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
                if (layout) continue;
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

    // Whether a reference's name is asked for, its record's match known.
    bool NameAskedFor(const AcDbBlockReference& reference, NameMatch match) {
        if (match == NameMatch::kByReference) return DynamicBlockAskedFor(reference.objectId());
        return match == NameMatch::kYes;
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
            if (!SameTag(query.tag, attribute->tagConst())) continue;
            bool accepted = condition->Accepts(attribute->textStringConst());
            delete iterator;
            return accepted;
        }
        delete iterator;

        AcDbDynBlockReference dynamic(reference.objectId());
        if (!dynamic.isDynamicBlock()) return false;
        AcDbDynBlockReferencePropertyArray properties;
        dynamic.getBlockProperties(properties);
        for (int i = 0; i < properties.length(); ++i) {
            if (!SameTag(query.tag, properties[i].propertyName().kwszPtr())) continue;
            AcDbEvalVariant value = properties[i].value();
            CString text;
            switch (value.restype) {
            case AcDb::kDxfText: return condition->Accepts(value.resval.rstring);
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

    bool Counts(const AcDbBlockReference& reference, NameMatch match) {
        return NameAskedFor(reference, match) && OnLayer(reference) && MeetsCondition(reference);
    }
    bool Counts(const AcDbBlockReference& reference) {
        auto it = recordMatches.find(reference.blockTableRecord());
        return it != recordMatches.end() && Counts(reference, it->second);
    }

    // What a block holds that counts, through every level. Blocks that hold
    // one another count as one: each reference inside them once, and what
    // the references that lead out of them hold.
    Adesk::Int64 Contents(AcDbObjectId blockId) {
        down.Walk(
            blockId,
            [&](AcDbObjectId block, std::vector<AcDbObjectId>& next) {
                std::vector<std::pair<Adesk::Int64, AcDbObjectId>>& steps = held[block];
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
                    AcDbObjectId inner = reference->blockTableRecord();
                    steps.emplace_back(Counts(*reference.object()) ? 1 : 0, inner);
                    next.push_back(inner);
                }
                delete iterator;
            },
            [&](const std::vector<AcDbObjectId>& members) {
                std::unordered_set<AcDbObjectId, IdHash> part(members.begin(), members.end());
                Adesk::Int64 sum = 0;
                for (AcDbObjectId member : members) {
                    for (const auto& [own, inner] : held[member]) {
                        sum = Plus(sum, own);
                        if (!part.count(inner)) sum = Plus(sum, contents[inner]);
                    }
                }
                for (AcDbObjectId member : members) {
                    contents[member] = sum;
                    held.erase(member);
                }
            });
        return contents[blockId];
    }

    // How often the spaces hold a definition, through the definitions that
    // hold it. Definitions that hold one another share the count of the ways
    // into them.
    Adesk::Int64 Placements(AcDbObjectId blockId) {
        if (IsLayout(blockId)) return 1;
        up.Walk(
            blockId,
            [&](AcDbObjectId block, std::vector<AcDbObjectId>& next) {
                std::vector<AcDbObjectId>& owners = holders[block];
                AcDbObjectIdArray references;
                {
                    AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> record(block);
                    if (record.openStatus() != Acad::eOk) return;
                    record->getBlockReferenceIds(references, true, false);
                }
                for (int i = 0; i < references.length(); ++i) {
                    AcDbObjectPointer<AcDbBlockReference> reference(references[i]);
                    if (reference.openStatus() != Acad::eOk) continue;
                    AcDbObjectId owner = reference->ownerId();
                    owners.push_back(owner);
                    if (!IsLayout(owner)) next.push_back(owner);
                }
            },
            [&](const std::vector<AcDbObjectId>& members) {
                std::unordered_set<AcDbObjectId, IdHash> part(members.begin(), members.end());
                Adesk::Int64 ways = 0;
                for (AcDbObjectId member : members) {
                    for (AcDbObjectId owner : holders[member]) {
                        if (IsLayout(owner)) ways = Plus(ways, 1);
                        else if (!part.count(owner)) ways = Plus(ways, placements[owner]);
                    }
                }
                for (AcDbObjectId member : members) {
                    placements[member] = ways;
                    holders.erase(member);
                }
            });
        return placements[blockId];
    }

    // The whole drawing: each reference of a block asked for, once for a
    // space that holds it and, with nesting, as often as the spaces hold the
    // definition that holds it. Only the references of the blocks asked for
    // are looked at.
    Adesk::Int64 CountEverywhere() {
        Adesk::Int64 total = 0;
        IdMap<Adesk::Int64> countedIn;  // definition: its references that count
        std::vector<AcDbObjectId> definitions;
        for (AcDbObjectId recordId : recordOrder) {
            NameMatch match = recordMatches[recordId];
            if (match == NameMatch::kNo) continue;
            AcDbObjectIdArray references;
            {
                AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> record(recordId);
                if (record.openStatus() != Acad::eOk) continue;
                record->getBlockReferenceIds(references, true, false);
            }
            for (int i = 0; i < references.length(); ++i) {
                AcDbObjectPointer<AcDbBlockReference> reference(references[i]);
                if (reference.openStatus() != Acad::eOk) continue;
                AcDbObjectId owner = reference->ownerId();
                bool inSpace = IsLayout(owner);
                if (!inSpace && !query.nested) continue;
                // The record's match is known here: no look-up of it per reference.
                const AcDbBlockReference& placed = *reference.object();
                bool counts = placed.blockTableRecord() == recordId ? Counts(placed, match) : Counts(placed);
                if (!counts) continue;
                if (inSpace) {
                    total = Plus(total, 1);
                } else {
                    auto [it, added] = countedIn.emplace(owner, 0);
                    if (added) definitions.push_back(owner);
                    it->second = Plus(it->second, 1);
                }
            }
        }
        for (AcDbObjectId definition : definitions)
            total = Plus(total, Times(countedIn[definition], Placements(definition)));
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
    Adesk::Int64 total = state.query.hasSpace ? state.CountInSpace(spaceId) : state.CountEverywhere();
    if (total > std::numeric_limits<Adesk::Int32>::max()) return kTooMany;
    count = static_cast<Adesk::Int32>(total);
    return kCounted;
}
