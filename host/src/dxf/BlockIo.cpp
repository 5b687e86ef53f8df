// Files' groups of the markers that open and close blocks and attribute lists.
#include <dbents.h>
#include <dbsymtb.h>

#include "core/Utf8.h"
#include "db/DatabaseImpl.h"
#include "dxf/EntityGroups.h"

namespace cadhost::dxf {
namespace {

// Markers of blocks and attribute lists ---------------------------------
// A BLOCK's name, flags, base point and path belong to its block record:
// they are read into a BlockBeginRead, which the reader takes them from.

Use ReadBlockBegin(AcDbBlockBegin&, BlockBeginRead& read, const Group& g, ObjectReader& in) {
    switch (g.code) {
    case 100: return g.value == "AcDbBlockBegin" ? Use::kKnown : Use::kKept;
    case 2: read.name = in.Text(g); return Use::kKnown;
    case 3: return Use::kKnown;  // the name once more
    case 70: read.flags = static_cast<int>(in.Integer(g)); return Use::kKnown;
    case 1: read.path = in.Text(g); return Use::kKnown;
    case 10:
    case 20:
    case 30: return Coordinate(read.origin, 10, g, in);
    default: return Use::kKept;
    }
}

void WriteBlockBegin(const AcDbObject& object, ObjectWriter& out) {
    auto* block = AcDbBlockTableRecord::cast(DatabaseImpl::Peek(object.ownerId()));
    std::string name = BlockNameInFile(object.ownerId(), out.File());
    out.Marker("AcDbBlockBegin");
    out.Text(2, name);
    Adesk::Int16 flags = block ? block->blockFlags() : 0;
    if (block && !out.FromFile()) {
        // A block made in this session: its flags follow what it holds.
        flags = static_cast<Adesk::Int16>((flags & ~3) | (block->isAnonymous() ? 1 : 0) |
                                          (block->hasAttributeDefinitions() ? 2 : 0));
    }
    out.Integer(70, flags);
    out.Point(10, block ? block->origin() : AcGePoint3d::kOrigin);
    out.Text(3, name);
    const ACHAR* path = L"";
    if (block) block->pathName(path);
    out.Text(1, ToUtf8(path));
}

Use ReadMarker(AcDbObject&, const Group& g, ObjectReader&) {
    return IsMarker(g, "AcDbBlockEnd") ? Use::kKnown : Use::kKept;
}

void WriteBlockEnd(const AcDbObject&, ObjectWriter& out) { out.Marker("AcDbBlockEnd"); }

Use ReadNothing(AcDbObject&, const Group&, ObjectReader&) { return Use::kKept; }
void WriteNothing(const AcDbObject&, ObjectWriter&) {}

constexpr ClassIo kBlockClasses[] = {
    {.dxfName = "BLOCK",
     .rxClass = AcDbBlockBegin::desc,
     .create = Make<AcDbBlockBegin>,
     .read = Reads<ReadBlockBegin>,
     .write = WriteBlockBegin,
     .isEntity = true,
     .markers = "AcDbBlockBegin"},
    {.dxfName = "ENDBLK",
     .rxClass = AcDbBlockEnd::desc,
     .create = Make<AcDbBlockEnd>,
     .read = Reads<ReadMarker>,
     .write = WriteBlockEnd,
     .isEntity = true,
     .markers = "AcDbBlockEnd"},
    {.dxfName = "SEQEND",
     .rxClass = AcDbSequenceEnd::desc,
     .create = Make<AcDbSequenceEnd>,
     .read = Reads<ReadNothing>,
     .write = WriteNothing,
     .isEntity = true},
};

}  // namespace

std::span<const ClassIo> BlockClasses() { return kBlockClasses; }

}  // namespace cadhost::dxf
