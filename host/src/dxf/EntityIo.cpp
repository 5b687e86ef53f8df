// Files' groups of the entities the host models.
#include <dbents.h>
#include <dbmtext.h>
#include <dbpl.h>
#include <dbsymtb.h>

#include <type_traits>

#include "core/Utf8.h"
#include "db/DatabaseImpl.h"
#include "dxf/DxfIo.h"

namespace cadhost::dxf {
namespace {

// Bits of AcDbObject::fileGroups: optional groups that the file wrote.
enum : Adesk::UInt16 {
    kHad210 = 1 << 0,
    kHad50 = 1 << 1,
    kHad41 = 1 << 2,
    kHad72 = 1 << 3,
    kHad11 = 1 << 4,
    kHadVertical = 1 << 5,
    kHad42 = 1 << 6,
    kHad43 = 1 << 7,
    kHad66 = 1 << 8,
    kHad38 = 1 << 9,
    kAllWidths = 1 << 10,
    kAllBulges = 1 << 11,
    kNormalLast = 1 << 12,  // an arc's normal after its angles, not in its circle part
};

void Note(AcDbObject& object, Adesk::UInt16 bit) { object.setFileGroups(object.fileGroups() | bit); }
bool Had(const AcDbObject& object, Adesk::UInt16 bit) { return (object.fileGroups() & bit) != 0; }

// A point read group by group: the base code takes x (and counts), the
// codes 10 and 20 above it y and z.
Use Coordinate(AcGePoint3d& point, int base, const Group& group, ObjectReader& in) {
    int axis = (group.code - base) / 10;
    point[static_cast<unsigned>(axis)] = in.Real(group);
    return axis == 0 ? Use::kKnown : Use::kContinued;
}

bool IsCoordinate(int code, int base) { return code == base || code == base + 10 || code == base + 20; }

Use Vector(AcGeVector3d& vector, int base, const Group& group, ObjectReader& in) {
    AcGePoint3d p(vector.x, vector.y, vector.z);
    Use use = Coordinate(p, base, group, in);
    vector.set(p.x, p.y, p.z);
    return use;
}

template <class T>
AcDbObject* Make() {
    return new T;
}

// The normal as a file gives it: a zero vector means the default.
AcGeVector3d Normal(const double* scratch) {
    AcGeVector3d n(scratch[0], scratch[1], scratch[2]);
    return n.isZeroLength() ? AcGeVector3d::kZAxis : n.normal();
}

void WriteNormal(ObjectWriter& out, const AcDbObject& object, const AcGeVector3d& normal) {
    if (Had(object, kHad210) || normal != AcGeVector3d::kZAxis) out.Vector(210, normal);
}

// LINE -------------------------------------------------------------------

Use ReadLine(AcDbObject& object, const Group& g, ObjectReader& in) {
    auto& line = static_cast<AcDbLine&>(object);
    if (IsMarker(g, "AcDbLine")) return Use::kKnown;
    if (IsCoordinate(g.code, 10)) {
        AcGePoint3d p = line.startPoint();
        Use use = Coordinate(p, 10, g, in);
        line.setStartPoint(p);
        return use;
    }
    if (IsCoordinate(g.code, 11)) {
        AcGePoint3d p = line.endPoint();
        Use use = Coordinate(p, 11, g, in);
        line.setEndPoint(p);
        return use;
    }
    return Use::kKept;
}

void WriteLine(const AcDbObject& object, ObjectWriter& out) {
    auto& line = static_cast<const AcDbLine&>(object);
    out.Marker("AcDbLine");
    out.Point(10, line.startPoint());
    out.Point(11, line.endPoint());
}

// CIRCLE and ARC ---------------------------------------------------------

template <class T>
Use ReadRound(AcDbObject& object, const Group& g, ObjectReader& in) {
    auto& curve = static_cast<T&>(object);
    if (IsMarker(g, "AcDbCircle")) return Use::kKnown;
    if (IsMarker(g, "AcDbArc")) {
        in.state |= 2;
        return Use::kKnown;
    }
    if (IsCoordinate(g.code, 10)) {
        AcGePoint3d p = curve.planeCenter();
        Use use = Coordinate(p, 10, g, in);
        curve.setPlaneCenter(p);
        return use;
    }
    if (g.code == 40) {
        double r = in.Real(g);
        if (!(r >= 0)) in.Fail(g, "a radius cannot be negative");
        if (r > 0) curve.setRadius(r);
        return Use::kKnown;
    }
    if (IsCoordinate(g.code, 210)) {
        Note(object, kHad210);
        if (in.state & 2) Note(object, kNormalLast);
        AcGeVector3d v(in.scratch[0], in.scratch[1], in.scratch[2]);
        Use use = Vector(v, 210, g, in);
        in.scratch[0] = v.x, in.scratch[1] = v.y, in.scratch[2] = v.z;
        return use;
    }
    if constexpr (std::is_same_v<T, AcDbArc>) {
        if (g.code == 50) {
            curve.setDegrees(in.Real(g), curve.endDegrees());
            return Use::kKnown;
        }
        if (g.code == 51) {
            curve.setDegrees(curve.startDegrees(), in.Real(g));
            return Use::kKnown;
        }
    }
    return Use::kKept;
}

template <class T>
void FinishRound(AcDbObject& object, ObjectReader& in) {
    if (Had(object, kHad210)) static_cast<T&>(object).setPlaneNormal(Normal(in.scratch));
}

void WriteCircle(const AcDbObject& object, ObjectWriter& out) {
    auto& circle = static_cast<const AcDbCircle&>(object);
    out.Marker("AcDbCircle");
    out.Point(10, circle.planeCenter());
    out.Real(40, circle.radius());
    WriteNormal(out, object, circle.normal());
}

void WriteArc(const AcDbObject& object, ObjectWriter& out) {
    auto& arc = static_cast<const AcDbArc&>(object);
    out.Marker("AcDbCircle");
    out.Point(10, arc.planeCenter());
    out.Real(40, arc.radius());
    bool last = Had(object, kNormalLast);
    if (!last) WriteNormal(out, object, arc.normal());
    out.Marker("AcDbArc");
    out.Real(50, arc.startDegrees());
    out.Real(51, arc.endDegrees());
    if (last) WriteNormal(out, object, arc.normal());
}

// LWPOLYLINE -----------------------------------------------------------
// Each vertex has places for 10, 40, 41 and 42; those it lacks are counted
// when it ends. state: bits 1, 2, 4 for 40, 41, 42 of the vertex being
// read, 8 while a vertex is open, 16 once its Y was read; scratch[0..2]
// normal, scratch[3] x of the vertex being read.

// The places of a vertex that it did not fill: the writer writes the two
// widths together or neither, and the bulge or not.
void CloseVertex(ObjectReader& in) {
    if (!(in.state & 8)) return;
    in.Skip((in.state & 3) ? 2 - ((in.state & 1) != 0) - ((in.state & 2) != 0) : 2);
    if (!(in.state & 4)) in.Skip(1);
    in.state &= ~31;
}

Use ReadPolyline(AcDbObject& object, const Group& g, ObjectReader& in) {
    auto& pline = static_cast<AcDbPolyline&>(object);
    unsigned int last = pline.numVerts() - 1;
    bool vertexGroup = g.code == 10 || g.code == 20 || g.code == 40 || g.code == 41 || g.code == 42 || g.code == 91;
    if (!vertexGroup) CloseVertex(in);
    switch (g.code) {
    case 100: return g.value == "AcDbPolyline" ? Use::kKnown : Use::kKept;
    case 90: return Use::kKnown;  // the count; the vertices themselves decide
    case 70: pline.setFlags(static_cast<Adesk::Int16>(in.Integer(g))); return Use::kKnown;
    case 43:
        Note(object, kHad43);
        pline.setConstantWidth(in.Real(g) > 0 ? in.Real(g) : 0);
        return Use::kKnown;
    case 38:
        Note(object, kHad38);
        pline.setElevation(in.Real(g));
        return Use::kKnown;
    case 10:
        CloseVertex(in);
        in.state |= 8;
        in.scratch[3] = in.Real(g);
        pline.addVertexAt(pline.numVerts(), AcGePoint2d(in.scratch[3], 0));
        return Use::kKnown;
    case 20:
        if (!(in.state & 8) || (in.state & 16)) return Use::kKept;
        in.state |= 16;
        pline.setPointAt(last, AcGePoint2d(in.scratch[3], in.Real(g)));
        // The vertex's X counted the point's place, also where a width or
        // a bulge came between.
        return Use::kCounted;
    case 40:
    case 41: {
        int bit = g.code == 40 ? 1 : 2;
        if (!(in.state & 8) || (in.state & bit)) return Use::kKept;
        in.state |= bit;
        double start, end;
        pline.getWidthsAt(last, start, end);
        (g.code == 40 ? start : end) = in.Real(g);
        pline.setWidthsAt(last, start, end);
        // A file that writes widths of zero writes them for every vertex.
        if ((in.state & 3) == 3 && start == 0 && end == 0) Note(object, kAllWidths);
        return Use::kKnown;
    }
    case 42: {
        if (!(in.state & 8) || (in.state & 4)) return Use::kKept;
        in.state |= 4;
        double bulge = in.Real(g);
        if (bulge == 0) Note(object, kAllBulges);
        pline.setBulgeAt(last, bulge);
        return Use::kKnown;
    }
    case 210:
    case 220:
    case 230: {
        Note(object, kHad210);
        AcGeVector3d v(in.scratch[0], in.scratch[1], in.scratch[2]);
        Use use = Vector(v, 210, g, in);
        in.scratch[0] = v.x, in.scratch[1] = v.y, in.scratch[2] = v.z;
        return use;
    }
    default: return Use::kKept;
    }
}

void FinishPolyline(AcDbObject& object, ObjectReader& in) {
    if (Had(object, kHad210)) static_cast<AcDbPolyline&>(object).setNormal(Normal(in.scratch));
}

void WritePolyline(const AcDbObject& object, ObjectWriter& out) {
    auto& pline = static_cast<const AcDbPolyline&>(object);
    out.Marker("AcDbPolyline");
    out.Integer(90, pline.numVerts());
    out.Integer(70, pline.flags());
    double width = 0;
    pline.getConstantWidth(width);
    if (Had(object, kHad43) || width != 0) out.Real(43, width);
    if (Had(object, kHad38) || pline.elevation() != 0) out.Real(38, pline.elevation());
    for (unsigned int i = 0; i < pline.numVerts(); ++i) {
        AcGePoint2d p;
        pline.getPointAt(i, p);
        out.Point2d(10, p.x, p.y);
        double start = 0, end = 0;
        pline.getWidthsAt(i, start, end);
        if (start != 0 || end != 0 || Had(object, kAllWidths)) {
            out.Real(40, start);
            out.Real(41, end);
        } else {
            out.Skip(2);
        }
        double bulge = 0;
        pline.getBulgeAt(i, bulge);
        if (bulge != 0 || Had(object, kAllBulges)) out.Real(42, bulge);
        else out.Skip(1);
    }
    WriteNormal(out, object, pline.normal());
}

// TEXT, ATTRIB and ATTDEF ---------------------------------------------
constexpr int kSecondPart = 256;
// scratch[0..2] normal; state bit 2 once the second AcDbText marker of a
// TEXT was met.

Use ReadTextBody(AcDbText& text, const Group& g, ObjectReader& in, int verticalCode) {
    switch (g.code) {
    case 10:
    case 20:
    case 30: {
        AcGePoint3d p = text.planePosition();
        Use use = Coordinate(p, 10, g, in);
        text.setPlanePosition(p);
        return use;
    }
    case 11:
    case 21:
    case 31: {
        Note(text, kHad11);
        AcGePoint3d p = text.planeAlignmentPoint();
        Use use = Coordinate(p, 11, g, in);
        text.setPlaneAlignmentPoint(p);
        return use;
    }
    case 40: text.setHeightRaw(in.Real(g)); return Use::kKnown;
    case 1: text.setTextUtf8(in.Text(g)); return Use::kKnown;
    case 50:
        Note(text, kHad50);
        text.setRotationDegrees(in.Real(g));
        return Use::kKnown;
    case 41:
        Note(text, kHad41);
        text.setWidthFactorRaw(in.Real(g));
        return Use::kKnown;
    case 72: {
        long long mode = in.Integer(g);
        if (mode < 0 || mode > 5) return Use::kKept;
        Note(text, kHad72);
        text.setModes(static_cast<int>(mode), text.verticalMode());
        return Use::kKnown;
    }
    case 210:
    case 220:
    case 230: {
        Note(text, kHad210);
        AcGeVector3d v(in.scratch[0], in.scratch[1], in.scratch[2]);
        Use use = Vector(v, 210, g, in);
        in.scratch[0] = v.x, in.scratch[1] = v.y, in.scratch[2] = v.z;
        return use;
    }
    default:
        if (g.code == verticalCode) {
            long long mode = in.Integer(g);
            if (mode < 0 || mode > 3) return Use::kKept;
            Note(text, kHadVertical);
            text.setModes(text.horizontalMode(), static_cast<int>(mode));
            return Use::kKnown;
        }
        return Use::kKept;
    }
}

void FinishText(AcDbObject& object, ObjectReader& in) {
    if (Had(object, kHad210)) static_cast<AcDbText&>(object).setPlaneNormal(Normal(in.scratch));
}

void WriteTextBody(const AcDbText& text, ObjectWriter& out) {
    out.Point(10, text.planePosition());
    out.Real(40, text.height());
    out.Text(1, text.textUtf8());
    if (Had(text, kHad50) || text.rotationDegrees() != 0) out.Real(50, text.rotationDegrees());
    if (Had(text, kHad41) || text.widthFactor() != 1) out.Real(41, text.widthFactor());
    if (Had(text, kHad72) || text.horizontalMode() != AcDb::kTextLeft) out.Integer(72, text.horizontalMode());
    if (Had(text, kHad11) || !text.isDefaultAlignment()) out.Point(11, text.planeAlignmentPoint());
    if (Had(text, kHad210) || text.normal() != AcGeVector3d::kZAxis) out.Vector(210, text.normal());
}

Use ReadText(AcDbObject& object, const Group& g, ObjectReader& in) {
    if (IsMarker(g, "AcDbText")) {
        // The second marker opens the part that holds the vertical mode.
        if (in.state & 128) in.state |= kSecondPart;
        in.state |= 128;
        return Use::kKnown;
    }
    if ((in.state & kSecondPart) && g.code != 73) return Use::kKept;
    return ReadTextBody(static_cast<AcDbText&>(object), g, in, 73);
}

void WriteText(const AcDbObject& object, ObjectWriter& out) {
    auto& text = static_cast<const AcDbText&>(object);
    out.Marker("AcDbText");
    WriteTextBody(text, out);
    out.Marker("AcDbText");
    if (Had(text, kHadVertical) || text.verticalMode() != AcDb::kTextBase) out.Integer(73, text.verticalMode());
}

// In an attribute's own part (after its subclass marker) only its tag,
// prompt, flags and vertical mode are read; the rest of that part means
// other things in newer releases. state bit 64 marks that part.
constexpr int kAttributePart = 64;

Use ReadAttribute(AcDbObject& object, const Group& g, ObjectReader& in) {
    auto& attribute = static_cast<AcDbAttribute&>(object);
    if (IsMarker(g, "AcDbText")) return Use::kKnown;
    if (IsMarker(g, "AcDbAttribute")) {
        in.state |= kAttributePart;
        return Use::kKnown;
    }
    if ((in.state & kAttributePart) && g.code != 2 && g.code != 70 && g.code != 74) return Use::kKept;
    if (g.code == 2) {
        attribute.setTagUtf8(in.Text(g));
        return Use::kKnown;
    }
    if (g.code == 70) {
        attribute.setFlags(static_cast<Adesk::Int16>(in.Integer(g)));
        return Use::kKnown;
    }
    return ReadTextBody(attribute, g, in, 74);
}

void WriteAttribute(const AcDbObject& object, ObjectWriter& out) {
    auto& attribute = static_cast<const AcDbAttribute&>(object);
    out.Marker("AcDbText");
    WriteTextBody(attribute, out);
    out.Marker("AcDbAttribute");
    out.Text(2, attribute.tagUtf8());
    out.Integer(70, attribute.flags());
    if (Had(attribute, kHadVertical) || attribute.verticalMode() != AcDb::kTextBase)
        out.Integer(74, attribute.verticalMode());
}

Use ReadDefinition(AcDbObject& object, const Group& g, ObjectReader& in) {
    auto& definition = static_cast<AcDbAttributeDefinition&>(object);
    if (IsMarker(g, "AcDbText")) return Use::kKnown;
    if (IsMarker(g, "AcDbAttributeDefinition")) {
        in.state |= kAttributePart;
        return Use::kKnown;
    }
    if ((in.state & kAttributePart) && g.code != 2 && g.code != 3 && g.code != 70 && g.code != 74) return Use::kKept;
    switch (g.code) {
    case 2: definition.setTagUtf8(in.Text(g)); return Use::kKnown;
    case 3: definition.setPromptUtf8(in.Text(g)); return Use::kKnown;
    case 70: definition.setFlags(static_cast<Adesk::Int16>(in.Integer(g))); return Use::kKnown;
    default: return ReadTextBody(definition, g, in, 74);
    }
}

void WriteDefinition(const AcDbObject& object, ObjectWriter& out) {
    auto& definition = static_cast<const AcDbAttributeDefinition&>(object);
    out.Marker("AcDbText");
    WriteTextBody(definition, out);
    out.Marker("AcDbAttributeDefinition");
    out.Text(3, definition.promptUtf8());
    out.Text(2, definition.tagUtf8());
    out.Integer(70, definition.flags());
    if (Had(definition, kHadVertical) || definition.verticalMode() != AcDb::kTextBase)
        out.Integer(74, definition.verticalMode());
}

// MTEXT ------------------------------------------------------------------
// state: 1 text begun, 2 columns met (a later 50 is a column height),
// 4 inside the embedded object (its groups mean other things).

Use ReadMText(AcDbObject& object, const Group& g, ObjectReader& in) {
    auto& mtext = static_cast<AcDbMText&>(object);
    // The embedded object closes an MTEXT: it stays behind the text's own
    // groups wherever a file had it.
    if (in.state & 4) return Use::kKeptAtEnd;
    switch (g.code) {
    case 100: return g.value == "AcDbMText" ? Use::kKnown : Use::kKept;
    case 101: in.state |= 4; return Use::kKeptAtEnd;
    case 10:
    case 20:
    case 30: {
        AcGePoint3d p = mtext.location();
        Use use = Coordinate(p, 10, g, in);
        mtext.setLocation(p);
        return use;
    }
    case 40: mtext.setHeightRaw(in.Real(g)); return Use::kKnown;
    case 41:
        Note(object, kHad41);
        mtext.setWidthRaw(in.Real(g));
        return Use::kKnown;
    case 71: {
        long long attachment = in.Integer(g);
        if (attachment < 1 || attachment > 9) return Use::kKept;
        mtext.setAttachmentRaw(static_cast<Adesk::Int16>(attachment));
        return Use::kKnown;
    }
    case 3:
    case 1: {
        in.text[0].append(g.value);
        bool first = !(in.state & 1);
        in.state |= 1;
        return first ? Use::kKnown : Use::kContinued;
    }
    case 11:
    case 21:
    case 31: {
        Note(object, kHad11);
        AcGeVector3d v(in.scratch[3], in.scratch[4], in.scratch[5]);
        Use use = Vector(v, 11, g, in);
        in.scratch[3] = v.x, in.scratch[4] = v.y, in.scratch[5] = v.z;
        return use;
    }
    case 50:
        if (in.state & 2) return Use::kKept;
        Note(object, kHad50);
        in.scratch[6] = in.Real(g);
        return Use::kKnown;
    case 75: in.state |= 2; return Use::kKept;
    case 210:
    case 220:
    case 230: {
        Note(object, kHad210);
        AcGeVector3d v(in.scratch[0], in.scratch[1], in.scratch[2]);
        Use use = Vector(v, 210, g, in);
        in.scratch[0] = v.x, in.scratch[1] = v.y, in.scratch[2] = v.z;
        return use;
    }
    default: return Use::kKept;
    }
}

void FinishMText(AcDbObject& object, ObjectReader& in) {
    auto& mtext = static_cast<AcDbMText&>(object);
    // Long texts (those that show a whole file, many alike) are shared.
    if (in.text[0].size() > 250)
        mtext.setContentsUtf8(in.Shared<std::string>('M', in.text[0], [&in] { return in.Decode(in.text[0]); }));
    else
        mtext.setContentsUtf8(in.Decode(in.text[0]));
    if (Had(object, kHad210)) mtext.setNormalRaw(Normal(in.scratch));
    // A direction wins over an angle when a file gives both.
    if (Had(object, kHad11)) mtext.setDirectionRaw(AcGeVector3d(in.scratch[3], in.scratch[4], in.scratch[5]));
    else if (Had(object, kHad50)) mtext.setRotationDegrees(in.scratch[6]);
}

void WriteMText(const AcDbObject& object, ObjectWriter& out) {
    auto& mtext = static_cast<const AcDbMText&>(object);
    out.Marker("AcDbMText");
    out.Point(10, mtext.location());
    out.Real(40, mtext.textHeight());
    if (Had(object, kHad41) || mtext.width() != 0) out.Real(41, mtext.width());
    out.Integer(71, mtext.attachment());
    out.LongText(3, 1, mtext.contentsUtf8());
    if (Had(object, kHad210) || mtext.normal() != AcGeVector3d::kZAxis) out.Vector(210, mtext.normal());
    if (mtext.hasDirection()) {
        out.Vector(11, mtext.direction());
    } else if (Had(object, kHad50) || mtext.rotationDegrees() != 0) {
        out.Real(50, mtext.rotationDegrees());
    }
}

// INSERT -----------------------------------------------------------------
// state: the value of group 66 (attributes follow).

Use ReadInsert(AcDbObject& object, const Group& g, ObjectReader& in) {
    auto& reference = static_cast<AcDbBlockReference&>(object);
    switch (g.code) {
    case 100: return g.value == "AcDbBlockReference" ? Use::kKnown : Use::kKept;
    case 66:
        Note(object, kHad66);
        in.state = static_cast<int>(in.Integer(g));
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
        Note(object, g.code == 41 ? kHad41 : g.code == 42 ? kHad42 : kHad43);
        AcGeScale3d scale = reference.scaleFactors();
        scale[static_cast<unsigned>(g.code - 41)] = factor;
        reference.setScaleRaw(scale);
        return Use::kKnown;
    }
    case 50:
        Note(object, kHad50);
        reference.setRotationDegrees(in.Real(g));
        return Use::kKnown;
    case 210:
    case 220:
    case 230: {
        Note(object, kHad210);
        AcGeVector3d v(in.scratch[0], in.scratch[1], in.scratch[2]);
        Use use = Vector(v, 210, g, in);
        in.scratch[0] = v.x, in.scratch[1] = v.y, in.scratch[2] = v.z;
        return use;
    }
    default: return Use::kKept;
    }
}

void FinishInsert(AcDbObject& object, ObjectReader& in) {
    auto& reference = static_cast<AcDbBlockReference&>(object);
    if (reference.blockTableRecord().isNull()) in.Fail(Group(), "a block reference needs a block name");
    if (Had(object, kHad210)) reference.setPlaneNormal(Normal(in.scratch));
}

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

// SOLID ------------------------------------------------------------------

Use ReadSolid(AcDbObject& object, const Group& g, ObjectReader& in) {
    auto& solid = static_cast<AcDbSolid&>(object);
    if (IsMarker(g, "AcDbTrace")) return Use::kKnown;
    for (int corner = 0; corner < 4; ++corner) {
        if (IsCoordinate(g.code, 10 + corner)) {
            AcGePoint3d p = solid.planePoint(corner);
            Use use = Coordinate(p, 10 + corner, g, in);
            solid.setPlanePoint(corner, p);
            if (corner == 3) in.state |= 1;
            return use;
        }
    }
    if (IsCoordinate(g.code, 210)) {
        Note(object, kHad210);
        AcGeVector3d v(in.scratch[0], in.scratch[1], in.scratch[2]);
        Use use = Vector(v, 210, g, in);
        in.scratch[0] = v.x, in.scratch[1] = v.y, in.scratch[2] = v.z;
        return use;
    }
    return Use::kKept;
}

void FinishSolid(AcDbObject& object, ObjectReader& in) {
    auto& solid = static_cast<AcDbSolid&>(object);
    // Three corners: the fourth is the third.
    if (!(in.state & 1)) solid.setPlanePoint(3, solid.planePoint(2));
    if (Had(object, kHad210)) solid.setPlaneNormal(Normal(in.scratch));
}

void WriteSolid(const AcDbObject& object, ObjectWriter& out) {
    auto& solid = static_cast<const AcDbSolid&>(object);
    out.Marker("AcDbTrace");
    for (int corner = 0; corner < 4; ++corner) out.Point(10 + corner, solid.planePoint(corner));
    WriteNormal(out, object, solid.normal());
}

// VIEWPORT -------------------------------------------------------------

Use ReadViewport(AcDbObject& object, const Group& g, ObjectReader& in) {
    auto& viewport = static_cast<AcDbViewport&>(object);
    switch (g.code) {
    case 100: return g.value == "AcDbViewport" ? Use::kKnown : Use::kKept;
    case 10:
    case 20:
    case 30: {
        AcGePoint3d p = viewport.centerPoint();
        Use use = Coordinate(p, 10, g, in);
        viewport.setCenterPoint(p);
        return use;
    }
    case 40: viewport.setWidth(in.Real(g) > 0 ? in.Real(g) : 0); return Use::kKnown;
    case 41: viewport.setHeight(in.Real(g) > 0 ? in.Real(g) : 0); return Use::kKnown;
    case 68: viewport.setStatus(static_cast<Adesk::Int16>(in.Integer(g))); return Use::kKnown;
    case 69: viewport.setNumber(static_cast<Adesk::Int16>(in.Integer(g))); return Use::kKnown;
    case 12:
    case 22: {
        AcGePoint2d c = viewport.viewCenter();
        (g.code == 12 ? c.x : c.y) = in.Real(g);
        viewport.setViewCenter(c);
        return g.code == 12 ? Use::kKnown : Use::kContinued;
    }
    case 16:
    case 26:
    case 36: {
        AcGeVector3d v(in.scratch[0], in.scratch[1], in.scratch[2]);
        Use use = Vector(v, 16, g, in);
        in.scratch[0] = v.x, in.scratch[1] = v.y, in.scratch[2] = v.z;
        in.state |= 1;
        return use;
    }
    case 17:
    case 27:
    case 37: {
        AcGePoint3d p = viewport.viewTarget();
        Use use = Coordinate(p, 17, g, in);
        viewport.setViewTarget(p);
        return use;
    }
    case 45: viewport.setViewHeightRaw(in.Real(g)); return Use::kKnown;
    case 51: viewport.setTwistDegrees(in.Real(g)); return Use::kKnown;
    default: return Use::kKept;
    }
}

void FinishViewport(AcDbObject& object, ObjectReader& in) {
    // The direction as the file gave it (its length is the file's own);
    // a zero vector means the default.
    AcGeVector3d direction(in.scratch[0], in.scratch[1], in.scratch[2]);
    if (in.state & 1)
        static_cast<AcDbViewport&>(object).setViewDirection(direction.isZeroLength() ? AcGeVector3d::kZAxis : direction);
}

void WriteViewport(const AcDbObject& object, ObjectWriter& out) {
    auto& viewport = static_cast<const AcDbViewport&>(object);
    out.Marker("AcDbViewport");
    out.Point(10, viewport.centerPoint());
    out.Real(40, viewport.width());
    out.Real(41, viewport.height());
    out.Integer(68, viewport.status());
    out.Integer(69, viewport.number());
    if (out.R12()) return;  // the view itself is extended data there
    out.Point2d(12, viewport.viewCenter().x, viewport.viewCenter().y);
    out.Vector(16, viewport.viewDirection());
    out.Point(17, viewport.viewTarget());
    out.Real(45, viewport.viewHeight());
    out.Real(51, viewport.twistDegrees());
}

// Markers of blocks and attribute lists ---------------------------------
// A BLOCK's name, flags, base point and path belong to its block record:
// the reader takes them from text[0], state, scratch[0..2] and text[1].

Use ReadBlockBegin(AcDbObject&, const Group& g, ObjectReader& in) {
    switch (g.code) {
    case 100: return g.value == "AcDbBlockBegin" ? Use::kKnown : Use::kKept;
    case 2: in.text[0] = in.Text(g); return Use::kKnown;
    case 3: return Use::kKnown;  // the name once more
    case 70: in.state = static_cast<int>(in.Integer(g)); return Use::kKnown;
    case 1: in.text[1] = in.Text(g); return Use::kKnown;
    case 10:
    case 20:
    case 30: {
        AcGePoint3d p(in.scratch[0], in.scratch[1], in.scratch[2]);
        Use use = Coordinate(p, 10, g, in);
        in.scratch[0] = p.x, in.scratch[1] = p.y, in.scratch[2] = p.z;
        return use;
    }
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

constexpr ClassIo kEntityClasses[] = {
    {.dxfName = "LINE",
     .rxClass = AcDbLine::desc,
     .create = Make<AcDbLine>,
     .read = ReadLine,
     .write = WriteLine,
     .isEntity = true,
     .markers = "AcDbLine"},
    {.dxfName = "CIRCLE",
     .rxClass = AcDbCircle::desc,
     .create = Make<AcDbCircle>,
     .read = ReadRound<AcDbCircle>,
     .finish = FinishRound<AcDbCircle>,
     .write = WriteCircle,
     .isEntity = true,
     .markers = "AcDbCircle"},
    {.dxfName = "ARC",
     .rxClass = AcDbArc::desc,
     .create = Make<AcDbArc>,
     .read = ReadRound<AcDbArc>,
     .finish = FinishRound<AcDbArc>,
     .write = WriteArc,
     .isEntity = true,
     .markers = "AcDbCircle|AcDbArc"},
    {.dxfName = "LWPOLYLINE",
     .rxClass = AcDbPolyline::desc,
     .create = Make<AcDbPolyline>,
     .read = ReadPolyline,
     .finish = FinishPolyline,
     .write = WritePolyline,
     .isEntity = true,
     .markers = "AcDbPolyline"},
    {.dxfName = "TEXT",
     .rxClass = AcDbText::desc,
     .create = Make<AcDbText>,
     .read = ReadText,
     .finish = FinishText,
     .write = WriteText,
     .isEntity = true,
     .markers = "AcDbText|AcDbText"},
    {.dxfName = "ATTRIB",
     .rxClass = AcDbAttribute::desc,
     .create = Make<AcDbAttribute>,
     .read = ReadAttribute,
     .finish = FinishText,
     .write = WriteAttribute,
     .isEntity = true,
     .markers = "AcDbText|AcDbAttribute"},
    {.dxfName = "ATTDEF",
     .rxClass = AcDbAttributeDefinition::desc,
     .create = Make<AcDbAttributeDefinition>,
     .read = ReadDefinition,
     .finish = FinishText,
     .write = WriteDefinition,
     .isEntity = true,
     .markers = "AcDbText|AcDbAttributeDefinition"},
    {.dxfName = "MTEXT",
     .rxClass = AcDbMText::desc,
     .create = Make<AcDbMText>,
     .read = ReadMText,
     .finish = FinishMText,
     .write = WriteMText,
     .isEntity = true,
     .markers = "AcDbMText"},
    {.dxfName = "INSERT",
     .rxClass = AcDbBlockReference::desc,
     .create = Make<AcDbBlockReference>,
     .read = ReadInsert,
     .finish = FinishInsert,
     .write = WriteInsert,
     .isEntity = true,
     .markers = "AcDbBlockReference"},
    {.dxfName = "SOLID",
     .rxClass = AcDbSolid::desc,
     .create = Make<AcDbSolid>,
     .read = ReadSolid,
     .finish = FinishSolid,
     .write = WriteSolid,
     .isEntity = true,
     .markers = "AcDbTrace"},
    {.dxfName = "VIEWPORT",
     .rxClass = AcDbViewport::desc,
     .create = Make<AcDbViewport>,
     .read = ReadViewport,
     .finish = FinishViewport,
     .write = WriteViewport,
     .isEntity = true,
     .markers = "AcDbViewport"},
    {.dxfName = "BLOCK",
     .rxClass = AcDbBlockBegin::desc,
     .create = Make<AcDbBlockBegin>,
     .read = ReadBlockBegin,
     .write = WriteBlockBegin,
     .isEntity = true,
     .markers = "AcDbBlockBegin"},
    {.dxfName = "ENDBLK",
     .rxClass = AcDbBlockEnd::desc,
     .create = Make<AcDbBlockEnd>,
     .read = ReadMarker,
     .write = WriteBlockEnd,
     .isEntity = true,
     .markers = "AcDbBlockEnd"},
    {.dxfName = "SEQEND",
     .rxClass = AcDbSequenceEnd::desc,
     .create = Make<AcDbSequenceEnd>,
     .read = ReadNothing,
     .write = WriteNothing,
     .isEntity = true},
};

}  // namespace

std::span<const ClassIo> EntityClasses() { return kEntityClasses; }

// Shared with the table's reader and writer.
Use ReadBlockReferencePart(AcDbBlockReference& reference, const Group& g, ObjectReader& in) {
    return ReadInsert(reference, g, in);
}
void FinishBlockReferencePart(AcDbBlockReference& reference, ObjectReader& in) { FinishInsert(reference, in); }
void WriteBlockReferencePart(const AcDbBlockReference& reference, ObjectWriter& out) {
    WriteInsertBody(reference, out, false);
}

}  // namespace cadhost::dxf
