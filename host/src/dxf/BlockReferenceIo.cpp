// Files' groups of block references (INSERT).
#include <dbents.h>
#include <dbsymtb.h>

#include "core/Utf8.h"
#include "db/DatabaseImpl.h"
#include "dxf/EntityGroups.h"

namespace cadhost::dxf {
namespace {

// INSERT -----------------------------------------------------------------

Use ReadInsert(AcDbBlockReference& reference, BlockReferenceRead& read, const Group& g, ObjectReader& in) {
    switch (g.code) {
    case 100: return g.value == "AcDbBlockReference" ? Use::kKnown : Use::kKept;
    case 66:
        // Whether attributes follow is the reader's to see; the value is
        // checked as a number here.
        Note(reference, kHad66);
        in.Integer(g);
        return Use::kKnown;
    case 2: {
        std::string name = in.Text(g);
        if (name.empty()) in.Fail(g, "a block reference needs a block name");
        reference.setBlockIdOnly(in.BlockByName(name));
        return Use::kKnown;
    }
    case 10:
    case 20:
    case 30: {
        AcGePoint3d p = reference.planePosition();
        Use use = Coordinate(p, 10, g, in);
        reference.setPlanePosition(p);
        return use;
    }
    case 41:
    case 42:
    case 43: {
        double factor = in.Real(g);
        if (factor == 0) return Use::kKept;  // no reference can be flattened to nothing
        Note(reference, g.code == 41 ? kHad41 : g.code == 42 ? kHad42 : kHad43);
        AcGeScale3d scale = reference.scaleFactors();
        scale[static_cast<unsigned>(g.code - 41)] = factor;
        reference.setScaleRaw(scale);
        return Use::kKnown;
    }
    case 50:
        Note(reference, kHad50);
        reference.setRotationDegrees(in.Real(g));
        return Use::kKnown;
    case 210:
    case 220:
    case 230: {
        Note(reference, kHad210);
        return read.normal.Read(210, g, in);
    }
    default: return Use::kKept;
    }
}

void FinishInsert(AcDbBlockReference& reference, BlockReferenceRead& read, ObjectReader& in) {
    if (reference.blockTableRecord().isNull()) in.Fail(Group(), "a block reference needs a block name");
    if (Had(reference, kHad210)) reference.setPlaneNormal(read.normal.Value());
}

void WriteInsertBody(const AcDbBlockReference& reference, ObjectWriter& out, bool attributes) {
    out.Marker("AcDbBlockReference");
    if (Had(reference, kHad66) || attributes) out.Integer(66, attributes ? 1 : 0);
    out.Text(2, BlockNameInFile(reference.blockTableRecord(), out.File()));
    out.Point(10, reference.planePosition());
    AcGeScale3d scale = reference.scaleFactors();
    if (Had(reference, kHad41) || scale.sx != 1) out.Real(41, scale.sx);
    if (Had(reference, kHad42) || scale.sy != 1) out.Real(42, scale.sy);
    if (Had(reference, kHad43) || scale.sz != 1) out.Real(43, scale.sz);
    if (Had(reference, kHad50) || reference.rotationDegrees() != 0) out.Real(50, reference.rotationDegrees());
    WriteNormal(out, reference, reference.normal());
}

void WriteInsert(const AcDbObject& object, ObjectWriter& out) {
    auto& reference = static_cast<const AcDbBlockReference&>(object);
    bool attributes = false;
    for (AcDbObjectId id : reference.attributeIds())
        if (!id.isErased() && DatabaseImpl::Peek(id)) attributes = true;
    WriteInsertBody(reference, out, attributes);
}

constexpr ClassIo kBlockReferenceClasses[] = {
    {.dxfName = "INSERT",
     .rxClass = AcDbBlockReference::desc,
     .create = Make<AcDbBlockReference>,
     .read = Reads<ReadInsert>,
     .finish = Finishes<FinishInsert>,
     .write = WriteInsert,
     .isEntity = true,
     .markers = "AcDbBlockReference"},
};

}  // namespace

std::span<const ClassIo> BlockReferenceClasses() { return kBlockReferenceClasses; }

// The block's name as files write it: the two spaces have names of their
// own before 2000.
std::string BlockNameInFile(AcDbObjectId blockId, const FileState& file) {
    auto* block = AcDbBlockTableRecord::cast(DatabaseImpl::Peek(blockId));
    if (!block) return "";
    std::string name = ToUtf8(block->name());
    if (file.IsR12()) {
        AcDbDatabase* db = blockId.database();
        if (db && blockId == db->modelSpaceId()) return file.r12ModelSpace;
        if (db && blockId == db->paperSpaceId()) return file.r12PaperSpace;
    }
    return name;
}

// Shared with the table's reader and writer.
Use ReadBlockReferencePart(AcDbBlockReference& reference, BlockReferenceRead& read, const Group& g, ObjectReader& in) {
    return ReadInsert(reference, read, g, in);
}
void FinishBlockReferencePart(AcDbBlockReference& reference, BlockReferenceRead& read, ObjectReader& in) {
    FinishInsert(reference, read, in);
}
void WriteBlockReferencePart(const AcDbBlockReference& reference, ObjectWriter& out) {
    WriteInsertBody(reference, out, false);
}

}  // namespace cadhost::dxf
