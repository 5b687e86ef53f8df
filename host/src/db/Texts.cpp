#include <dbents.h>
#include <dbmtext.h>

#include <cmath>
#include <cwchar>

#include "core/Utf8.h"
#include "db/Extents.h"
#include "db/MTextFormat.h"

ACRX_DXF_DEFINE_MEMBERS(AcDbText, AcDbEntity, L"TEXT")
ACRX_DXF_DEFINE_MEMBERS(AcDbAttributeDefinition, AcDbText, L"ATTDEF")
ACRX_DXF_DEFINE_MEMBERS(AcDbAttribute, AcDbText, L"ATTRIB")
ACRX_DXF_DEFINE_MEMBERS(AcDbMText, AcDbEntity, L"MTEXT")

namespace {

ACHAR* NewText(std::wstring_view text) {
    auto* copy = new ACHAR[text.size() + 1];
    std::wmemcpy(copy, text.data(), text.size());
    copy[text.size()] = L'\0';
    return copy;
}

// Decoded straight into the caller's buffer: texts are read often, one
// reference's attributes after another.
ACHAR* NewTextFromUtf8(const std::string& text) {
    auto* copy = new ACHAR[text.size() + 1];
    copy[cadhost::FromUtf8(text, copy)] = L'\0';
    return copy;
}

AcGeMatrix3d PlaneToWorld(const AcGeVector3d& normal) {
    return normal == AcGeVector3d::kZAxis ? AcGeMatrix3d::kIdentity : AcGeMatrix3d::planeToWorld(normal);
}

AcGeMatrix3d WorldToPlane(const AcGeVector3d& normal) {
    return normal == AcGeVector3d::kZAxis ? AcGeMatrix3d::kIdentity : AcGeMatrix3d::worldToPlane(normal);
}

}  // namespace

// Text -----------------------------------------------------------------

AcDbText::AcDbText(const AcGePoint3d& position, const ACHAR* text, AcDbObjectId, double height, double rotation)
    : m_position(position),
      m_height(height),
      m_rotation(cadhost::ToDegrees(rotation)),
      m_text(cadhost::ValidText(text ? text : L"")) {}

double AcDbText::rotation() const { return cadhost::ToRadians(m_rotation); }

AcDbText::~AcDbText() = default;

AcGePoint3d AcDbText::position() const { return PlaneToWorld(m_normal) * m_position; }
AcGePoint3d AcDbText::alignmentPoint() const { return PlaneToWorld(m_normal) * m_alignment; }

Acad::ErrorStatus AcDbText::setPosition(const AcGePoint3d& position) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    m_position = WorldToPlane(m_normal) * position;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbText::setAlignmentPoint(const AcGePoint3d& point) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    m_alignment = WorldToPlane(m_normal) * point;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbText::setHeight(double height) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!(height > 0)) return Acad::eInvalidInput;
    m_height = height;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbText::setRotation(double rotation) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!std::isfinite(rotation)) return Acad::eInvalidInput;
    m_rotation = cadhost::ToDegrees(rotation);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbText::setWidthFactor(double factor) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!(factor > 0)) return Acad::eInvalidInput;
    m_widthFactor = factor;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbText::setNormal(const AcGeVector3d& normal) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (normal.isZeroLength()) return Acad::eInvalidInput;
    AcGePoint3d position = this->position(), alignment = alignmentPoint();
    m_normal = normal.normal();
    m_position = WorldToPlane(m_normal) * position;
    m_alignment = WorldToPlane(m_normal) * alignment;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbText::setHorizontalMode(AcDb::TextHorzMode mode) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (mode < AcDb::kTextLeft || mode > AcDb::kTextFit) return Acad::eInvalidInput;
    m_horizontal = static_cast<Adesk::UInt8>(mode);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbText::setVerticalMode(AcDb::TextVertMode mode) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (mode < AcDb::kTextBase || mode > AcDb::kTextTop) return Acad::eInvalidInput;
    m_vertical = static_cast<Adesk::UInt8>(mode);
    return Acad::eOk;
}

ACHAR* AcDbText::textString() const { return NewText(m_text); }

std::string AcDbText::textUtf8() const { return cadhost::ToUtf8(m_text); }

void AcDbText::setTextUtf8(std::string_view text) { m_text = cadhost::FromUtf8(text); }

Acad::ErrorStatus AcDbText::setTextString(const ACHAR* text) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!text) return Acad::eInvalidInput;
    m_text = cadhost::ValidText(text);
    return Acad::eOk;
}

void AcDbText::addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int) const {
    // Text is measured as if every character were as wide as it is high:
    // the host draws no glyphs, and extents only decide window selection.
    double width = static_cast<double>(m_text.size()) * m_height * m_widthFactor;
    double height = m_height;
    // The box in the text's own frame: x along the baseline from the start.
    AcGePoint3d anchor = m_position;
    double rotation = this->rotation();
    double x0 = 0;
    auto horizontal = static_cast<AcDb::TextHorzMode>(m_horizontal);
    if (horizontal == AcDb::kTextAlign || horizontal == AcDb::kTextFit) {
        AcGeVector3d along = m_alignment - m_position;
        width = std::hypot(along.x, along.y);
        rotation = std::atan2(along.y, along.x);
    } else if (!isDefaultAlignment()) {
        anchor = m_alignment;
        if (horizontal == AcDb::kTextCenter || horizontal == AcDb::kTextMid) x0 = -width / 2;
        if (horizontal == AcDb::kTextRight) x0 = -width;
    }
    double y0 = 0;
    if (horizontal == AcDb::kTextMid || m_vertical == AcDb::kTextVertMid) y0 = -height / 2;
    if (m_vertical == AcDb::kTextTop) y0 = -height;
    AcGeMatrix3d frame = transform * PlaneToWorld(m_normal) * AcGeMatrix3d::translation(anchor.asVector()) *
                         AcGeMatrix3d::rotation(rotation, AcGeVector3d::kZAxis);
    for (int corner = 0; corner < 4; ++corner) {
        double x = x0 + ((corner & 1) ? width : 0), y = y0 + ((corner & 2) ? height : 0);
        extents.addPoint(frame * AcGePoint3d(x, y, 0));
    }
}

// Attribute definitions -------------------------------------------------

AcDbAttributeDefinition::AcDbAttributeDefinition(const AcGePoint3d& position, const ACHAR* text, const ACHAR* tag,
                                                 const ACHAR* prompt, AcDbObjectId style)
    : AcDbText(position, text, style),
      m_tag(cadhost::ValidText(tag ? tag : L"")),
      m_prompt(cadhost::ValidText(prompt ? prompt : L"")) {}

AcDbAttributeDefinition::~AcDbAttributeDefinition() = default;

ACHAR* AcDbAttributeDefinition::tag() const { return NewText(m_tag); }
ACHAR* AcDbAttributeDefinition::prompt() const { return NewText(m_prompt); }
std::string AcDbAttributeDefinition::tagUtf8() const { return cadhost::ToUtf8(m_tag); }
std::string AcDbAttributeDefinition::promptUtf8() const { return cadhost::ToUtf8(m_prompt); }
void AcDbAttributeDefinition::setTagUtf8(std::string_view tag) { m_tag = cadhost::FromUtf8(tag); }
void AcDbAttributeDefinition::setPromptUtf8(std::string_view prompt) { m_prompt = cadhost::FromUtf8(prompt); }

Acad::ErrorStatus AcDbAttributeDefinition::setTag(const ACHAR* tag) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!tag || !*tag || std::wcschr(tag, L' ')) return Acad::eInvalidInput;
    m_tag = cadhost::ValidText(tag);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbAttributeDefinition::setPrompt(const ACHAR* prompt) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    m_prompt = cadhost::ValidText(prompt ? prompt : L"");
    return Acad::eOk;
}

namespace {
Acad::ErrorStatus SetBit(AcDbObject& object, Adesk::Int16& flags, Adesk::Int16 bit, bool value) {
    if (!object.isWriteEnabled()) return Acad::eNotOpenForWrite;
    flags = value ? static_cast<Adesk::Int16>(flags | bit) : static_cast<Adesk::Int16>(flags & ~bit);
    return Acad::eOk;
}
}  // namespace

Acad::ErrorStatus AcDbAttributeDefinition::setInvisible(bool value) { return SetBit(*this, m_flags, 1, value); }
Acad::ErrorStatus AcDbAttributeDefinition::setConstant(bool value) { return SetBit(*this, m_flags, 2, value); }
Acad::ErrorStatus AcDbAttributeDefinition::setVerifiable(bool value) { return SetBit(*this, m_flags, 4, value); }
Acad::ErrorStatus AcDbAttributeDefinition::setPreset(bool value) { return SetBit(*this, m_flags, 8, value); }

// Attributes ------------------------------------------------------------

AcDbAttribute::AcDbAttribute(const AcGePoint3d& position, const ACHAR* text, const ACHAR* tag, AcDbObjectId style)
    : AcDbText(position, text, style), m_tag(cadhost::ValidText(tag ? tag : L"")) {}

AcDbAttribute::~AcDbAttribute() = default;

ACHAR* AcDbAttribute::tag() const { return NewText(m_tag); }
std::string AcDbAttribute::tagUtf8() const { return cadhost::ToUtf8(m_tag); }
void AcDbAttribute::setTagUtf8(std::string_view tag) { m_tag = cadhost::FromUtf8(tag); }

Acad::ErrorStatus AcDbAttribute::setTag(const ACHAR* tag) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!tag || !*tag || std::wcschr(tag, L' ')) return Acad::eInvalidInput;
    m_tag = cadhost::ValidText(tag);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbAttribute::setInvisible(bool value) { return SetBit(*this, m_flags, 1, value); }

Acad::ErrorStatus AcDbAttribute::setAttributeFromBlock(const AcDbAttributeDefinition* definition,
                                                       const AcGeMatrix3d& blockTransform) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!definition) return Acad::eNullObjectPointer;
    setTextString(definition->textStringConst());
    m_tag = definition->tagConst();
    m_flags = definition->flags();
    AcGeVector3d normal = definition->normal();
    AcGeMatrix3d placement = blockTransform;
    AcGeVector3d newNormal = cadhost::Linear(placement, normal).normal();
    if (newNormal.isZeroLength()) newNormal = AcGeVector3d::kZAxis;
    setPlaneNormal(newNormal);
    setPosition(placement * definition->position());
    setAlignmentPoint(placement * definition->alignmentPoint());
    // The rotation follows the block's: the baseline direction carried into
    // the new plane.
    AcGeVector3d base = cadhost::Linear(PlaneToWorld(normal), AcGeVector3d(std::cos(definition->rotation()),
                                                                            std::sin(definition->rotation()), 0));
    AcGeVector3d carried = cadhost::Linear(WorldToPlane(newNormal), cadhost::Linear(placement, base));
    setRotation(std::atan2(carried.y, carried.x));
    double scale = cadhost::Linear(placement, AcGeVector3d::kYAxis).length();
    if (definition->height() > 0) setHeight(definition->height() * (scale > 0 ? scale : 1));
    setWidthFactor(definition->widthFactor());
    setModes(definition->horizontalMode(), definition->verticalMode());
    if (AcDbObjectId layer = definition->layerId(); !layer.isNull() && layerId().isNull()) setLayer(layer);
    return Acad::eOk;
}

void AcDbAttribute::addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int depth) const {
    if (isInvisible()) return;
    AcDbText::addExtentsTo(extents, transform, depth);
}

// Multiline text --------------------------------------------------------

AcDbMText::~AcDbMText() = default;

Acad::ErrorStatus AcDbMText::setLocation(const AcGePoint3d& point) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    m_location = point;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMText::setNormal(const AcGeVector3d& normal) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (normal.isZeroLength()) return Acad::eInvalidInput;
    m_normal = normal.normal();
    return Acad::eOk;
}

AcGeVector3d AcDbMText::direction() const {
    if (m_hasDirection) return m_direction.normal();
    double angle = cadhost::ToRadians(m_rotation);
    return cadhost::Linear(PlaneToWorld(m_normal), AcGeVector3d(std::cos(angle), std::sin(angle), 0));
}

Acad::ErrorStatus AcDbMText::setDirection(const AcGeVector3d& direction) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (direction.isZeroLength()) return Acad::eInvalidInput;
    m_direction = direction;
    m_hasDirection = true;
    return Acad::eOk;
}

double AcDbMText::rotation() const {
    if (!m_hasDirection) return cadhost::ToRadians(m_rotation);
    AcGeVector3d inPlane = cadhost::Linear(WorldToPlane(m_normal), m_direction);
    double angle = std::atan2(inPlane.y, inPlane.x);
    return angle < 0 ? angle + cadhost::kTwoPi : angle;
}

Acad::ErrorStatus AcDbMText::setRotation(double angle) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!std::isfinite(angle)) return Acad::eInvalidInput;
    m_rotation = cadhost::ToDegrees(angle);
    m_hasDirection = false;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMText::setTextHeight(double height) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!(height > 0)) return Acad::eInvalidInput;
    m_height = height;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMText::setWidth(double width) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (width < 0) return Acad::eInvalidInput;
    m_width = width;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMText::setAttachment(AttachmentPoint attachment) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (attachment < kTopLeft || attachment > kBottomRight) return Acad::eInvalidInput;
    m_attachment = static_cast<Adesk::Int16>(attachment);
    return Acad::eOk;
}

ACHAR* AcDbMText::contents() const { return NewTextFromUtf8(contentsUtf8()); }

const std::string& AcDbMText::contentsUtf8() const {
    static const std::string kEmpty;
    return m_contents ? *m_contents : kEmpty;
}

void AcDbMText::setContentsUtf8(std::string text) { m_contents = std::make_shared<const std::string>(std::move(text)); }

void AcDbMText::setContentsUtf8(std::shared_ptr<const std::string> text) {
    if (text) m_contents = std::move(text);
    else m_contents.reset();
}

Acad::ErrorStatus AcDbMText::setContents(const ACHAR* text) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!text) return Acad::eInvalidInput;
    setContentsUtf8(cadhost::ToUtf8(text));
    return Acad::eOk;
}

ACHAR* AcDbMText::text() const { return NewText(cadhost::StripMTextCodes(cadhost::FromUtf8(contentsUtf8()))); }

void AcDbMText::addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int) const {
    std::wstring plain = cadhost::StripMTextCodes(cadhost::FromUtf8(contentsUtf8()));
    size_t lines = 1, longest = 0, current = 0;
    for (wchar_t c : plain) {
        if (c == L'\n') {
            ++lines;
            current = 0;
        } else if (++current > longest) {
            longest = current;
        }
    }
    double width = m_width > 0 ? m_width : static_cast<double>(longest) * m_height;
    // Lines stand five thirds of the text height apart.
    double height = m_height * (1 + (static_cast<double>(lines) - 1) * 5.0 / 3.0);
    int column = (m_attachment - 1) % 3, row = (m_attachment - 1) / 3;
    double x0 = -width * column / 2.0;
    double y0 = -height + height * row / 2.0;
    AcGeVector3d xAxis = direction();
    AcGeVector3d zAxis = m_normal;
    AcGeVector3d yAxis = zAxis.crossProduct(xAxis).normal();
    AcGeMatrix3d frame =
        transform * AcGeMatrix3d().setCoordSystem(m_location, xAxis, yAxis, zAxis);
    for (int corner = 0; corner < 4; ++corner) {
        double x = x0 + ((corner & 1) ? width : 0), y = y0 + ((corner & 2) ? height : 0);
        extents.addPoint(frame * AcGePoint3d(x, y, 0));
    }
}
