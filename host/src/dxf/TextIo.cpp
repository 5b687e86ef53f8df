// Files' groups of texts: single-line text, attributes, their definitions and multiline text.
#include <dbents.h>
#include <dbmtext.h>

#include "dxf/EntityGroups.h"

namespace cadhost::dxf {
namespace {

// TEXT, ATTRIB and ATTDEF ---------------------------------------------
struct TextRead {
    // A TEXT's part after its second AcDbText marker, which holds only the
    // vertical mode; an attribute's (definition's) own part, after its
    // marker, where only its tag, prompt, flags and vertical mode are read:
    // the rest of that part means other things in newer releases.
    bool hadTextMarker = false;
    bool inSecondPart = false;
    bool inAttributePart = false;
    FileNormal normal;
};

Use ReadTextBody(AcDbText& text, TextRead& read, const Group& g, ObjectReader& in, int verticalCode) {
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
        return read.normal.Read(210, g, in);
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

void FinishText(AcDbText& text, TextRead& read, ObjectReader&) {
    if (Had(text, kHad210)) text.setPlaneNormal(read.normal.Value());
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

Use ReadText(AcDbText& text, TextRead& read, const Group& g, ObjectReader& in) {
    if (IsMarker(g, "AcDbText")) {
        // The second marker opens the part that holds the vertical mode.
        if (read.hadTextMarker) read.inSecondPart = true;
        read.hadTextMarker = true;
        return Use::kKnown;
    }
    if (read.inSecondPart && g.code != 73) return Use::kKept;
    return ReadTextBody(text, read, g, in, 73);
}

void WriteText(const AcDbObject& object, ObjectWriter& out) {
    auto& text = static_cast<const AcDbText&>(object);
    out.Marker("AcDbText");
    WriteTextBody(text, out);
    out.Marker("AcDbText");
    if (Had(text, kHadVertical) || text.verticalMode() != AcDb::kTextBase) out.Integer(73, text.verticalMode());
}

Use ReadAttribute(AcDbAttribute& attribute, TextRead& read, const Group& g, ObjectReader& in) {
    if (IsMarker(g, "AcDbText")) return Use::kKnown;
    if (IsMarker(g, "AcDbAttribute")) {
        read.inAttributePart = true;
        return Use::kKnown;
    }
    if (read.inAttributePart && g.code != 2 && g.code != 70 && g.code != 74) return Use::kKept;
    if (g.code == 2) {
        attribute.setTagUtf8(in.Text(g));
        return Use::kKnown;
    }
    if (g.code == 70) {
        attribute.setFlags(static_cast<Adesk::Int16>(in.Integer(g)));
        return Use::kKnown;
    }
    return ReadTextBody(attribute, read, g, in, 74);
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

Use ReadDefinition(AcDbAttributeDefinition& definition, TextRead& read, const Group& g, ObjectReader& in) {
    if (IsMarker(g, "AcDbText")) return Use::kKnown;
    if (IsMarker(g, "AcDbAttributeDefinition")) {
        read.inAttributePart = true;
        return Use::kKnown;
    }
    if (read.inAttributePart && g.code != 2 && g.code != 3 && g.code != 70 && g.code != 74) return Use::kKept;
    switch (g.code) {
    case 2: definition.setTagUtf8(in.Text(g)); return Use::kKnown;
    case 3: definition.setPromptUtf8(in.Text(g)); return Use::kKnown;
    case 70: definition.setFlags(static_cast<Adesk::Int16>(in.Integer(g))); return Use::kKnown;
    default: return ReadTextBody(definition, read, g, in, 74);
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
struct MTextRead {
    std::string contents;  // its parts (groups 3, then 1) as the file wrote them, joined
    bool contentsBegun = false;
    bool columnsMet = false;     // a later 50 is a column height
    bool inEmbedded = false;     // inside the embedded object: its groups mean other things
    AcGeVector3d direction{0, 0, 0};
    double rotationDegrees = 0;
    FileNormal normal;

    // Ready for the next text, keeping the room its contents took.
    void Reset() {
        std::string kept = std::move(contents);
        kept.clear();
        *this = MTextRead();
        contents = std::move(kept);
    }
};

Use ReadMText(AcDbMText& mtext, MTextRead& read, const Group& g, ObjectReader& in) {
    // The embedded object closes an MTEXT: it stays behind the text's own
    // groups wherever a file had it.
    if (read.inEmbedded) return Use::kKeptAtEnd;
    switch (g.code) {
    case 100: return g.value == "AcDbMText" ? Use::kKnown : Use::kKept;
    case 101: read.inEmbedded = true; return Use::kKeptAtEnd;
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
        Note(mtext, kHad41);
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
        read.contents.append(g.value);
        bool first = !read.contentsBegun;
        read.contentsBegun = true;
        return first ? Use::kKnown : Use::kContinued;
    }
    case 11:
    case 21:
    case 31: {
        Note(mtext, kHad11);
        return Vector(read.direction, 11, g, in);
    }
    case 50:
        if (read.columnsMet) return Use::kKept;
        Note(mtext, kHad50);
        read.rotationDegrees = in.Real(g);
        return Use::kKnown;
    case 75: read.columnsMet = true; return Use::kKept;
    case 210:
    case 220:
    case 230: {
        Note(mtext, kHad210);
        return read.normal.Read(210, g, in);
    }
    default: return Use::kKept;
    }
}

void FinishMText(AcDbMText& mtext, MTextRead& read, ObjectReader& in) {
    // Long texts (those that show a whole file, many alike) are shared.
    const std::string& raw = read.contents;
    if (raw.size() > 250)
        mtext.setContentsUtf8(in.Shared<std::string>('M', raw, [&in, &raw] { return in.Decode(raw); }));
    else
        mtext.setContentsUtf8(in.Decode(raw));
    if (Had(mtext, kHad210)) mtext.setNormalRaw(read.normal.Value());
    // A direction wins over an angle when a file gives both.
    if (Had(mtext, kHad11)) mtext.setDirectionRaw(read.direction);
    else if (Had(mtext, kHad50)) mtext.setRotationDegrees(read.rotationDegrees);
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

constexpr ClassIo kTextClasses[] = {
    {.dxfName = "TEXT",
     .rxClass = AcDbText::desc,
     .create = Make<AcDbText>,
     .read = Reads<ReadText>,
     .finish = Finishes<FinishText>,
     .write = WriteText,
     .isEntity = true,
     .markers = "AcDbText|AcDbText"},
    {.dxfName = "ATTRIB",
     .rxClass = AcDbAttribute::desc,
     .create = Make<AcDbAttribute>,
     .read = Reads<ReadAttribute>,
     .finish = Finishes<FinishText>,
     .write = WriteAttribute,
     .isEntity = true,
     .markers = "AcDbText|AcDbAttribute"},
    {.dxfName = "ATTDEF",
     .rxClass = AcDbAttributeDefinition::desc,
     .create = Make<AcDbAttributeDefinition>,
     .read = Reads<ReadDefinition>,
     .finish = Finishes<FinishText>,
     .write = WriteDefinition,
     .isEntity = true,
     .markers = "AcDbText|AcDbAttributeDefinition"},
    {.dxfName = "MTEXT",
     .rxClass = AcDbMText::desc,
     .create = Make<AcDbMText>,
     .read = Reads<ReadMText>,
     .finish = Finishes<FinishMText>,
     .write = WriteMText,
     .isEntity = true,
     .markers = "AcDbMText"},
};

}  // namespace

std::span<const ClassIo> TextClasses() { return kTextClasses; }

}  // namespace cadhost::dxf
