// Entities of the drawing: curves, texts, attributes, block references,
// solids and viewports.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "acdb.h"
#include "dbcompact.h"
#include "dbmain.h"
#include "gepnt2d.h"

class AcDbAttribute;
class AcDbObjectIterator;

// A curve: points along it are named by a parameter that runs from the
// start parameter to the end parameter.
class CADHOST_API AcDbCurve : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbCurve)
    ~AcDbCurve() override;

    virtual bool isClosed() const;
    virtual bool isPeriodic() const;
    virtual Acad::ErrorStatus getStartParam(double& param) const;
    virtual Acad::ErrorStatus getEndParam(double& param) const;
    virtual Acad::ErrorStatus getStartPoint(AcGePoint3d& point) const;
    virtual Acad::ErrorStatus getEndPoint(AcGePoint3d& point) const;
    virtual Acad::ErrorStatus getPointAtParam(double param, AcGePoint3d& point) const;
    // The length along the curve from its start to the parameter.
    virtual Acad::ErrorStatus getDistAtParam(double param, double& dist) const;
    virtual Acad::ErrorStatus getParamAtDist(double dist, double& param) const;
    // The area the curve encloses; an open curve is closed by the straight
    // line from its end to its start.
    virtual Acad::ErrorStatus getArea(double& area) const;

protected:
    AcDbCurve() = default;
};

class CADHOST_API AcDbLine : public AcDbCurve {
public:
    ACRX_DECLARE_MEMBERS(AcDbLine)
    AcDbLine() = default;
    AcDbLine(const AcGePoint3d& start, const AcGePoint3d& end) : m_start(start), m_end(end) {}
    ~AcDbLine() override;

    AcGePoint3d startPoint() const { return m_start; }
    AcGePoint3d endPoint() const { return m_end; }
    Acad::ErrorStatus setStartPoint(const AcGePoint3d& point);
    Acad::ErrorStatus setEndPoint(const AcGePoint3d& point);

    bool isClosed() const override { return false; }
    Acad::ErrorStatus getStartParam(double& param) const override;
    Acad::ErrorStatus getEndParam(double& param) const override;
    Acad::ErrorStatus getPointAtParam(double param, AcGePoint3d& point) const override;
    Acad::ErrorStatus getDistAtParam(double param, double& dist) const override;
    Acad::ErrorStatus getParamAtDist(double dist, double& param) const override;
    Acad::ErrorStatus getArea(double& area) const override;
    void addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int depth = 0) const override;

private:
    AcGePoint3d m_start, m_end;
};

class CADHOST_API AcDbCircle : public AcDbCurve {
public:
    ACRX_DECLARE_MEMBERS(AcDbCircle)
    AcDbCircle() = default;
    AcDbCircle(const AcGePoint3d& center, const AcGeVector3d& normal, double radius);
    ~AcDbCircle() override;

    AcGePoint3d center() const;
    Acad::ErrorStatus setCenter(const AcGePoint3d& center);
    double radius() const { return m_radius; }
    Acad::ErrorStatus setRadius(double radius);
    AcGeVector3d normal() const { return m_normal; }
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    double circumference() const;
    // The host's own: the center in the plane's own coordinates, as files
    // keep it.
    AcGePoint3d planeCenter() const { return m_center; }
    void setPlaneCenter(const AcGePoint3d& center) { m_center = center; }
    void setPlaneNormal(const AcGeVector3d& normal) { m_normal = normal; }

    bool isClosed() const override { return true; }
    bool isPeriodic() const override { return true; }
    Acad::ErrorStatus getStartParam(double& param) const override;
    Acad::ErrorStatus getEndParam(double& param) const override;
    Acad::ErrorStatus getPointAtParam(double param, AcGePoint3d& point) const override;
    Acad::ErrorStatus getDistAtParam(double param, double& dist) const override;
    Acad::ErrorStatus getParamAtDist(double dist, double& param) const override;
    Acad::ErrorStatus getArea(double& area) const override;
    void addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int depth = 0) const override;

private:
    AcGePoint3d m_center;  // in the plane's coordinates
    AcGeVector3d m_normal = AcGeVector3d::kZAxis;
    double m_radius = 0;
};

// An arc runs counterclockwise about its normal from the start angle to the
// end angle, both measured in its plane; its parameters are those angles.
class CADHOST_API AcDbArc : public AcDbCurve {
public:
    ACRX_DECLARE_MEMBERS(AcDbArc)
    AcDbArc() = default;
    AcDbArc(const AcGePoint3d& center, double radius, double startAngle, double endAngle);
    AcDbArc(const AcGePoint3d& center, const AcGeVector3d& normal, double radius, double startAngle, double endAngle);
    ~AcDbArc() override;

    AcGePoint3d center() const;
    Acad::ErrorStatus setCenter(const AcGePoint3d& center);
    double radius() const { return m_radius; }
    Acad::ErrorStatus setRadius(double radius);
    double startAngle() const;
    Acad::ErrorStatus setStartAngle(double angle);
    double endAngle() const;
    Acad::ErrorStatus setEndAngle(double angle);
    AcGeVector3d normal() const { return m_normal; }
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    // The angle that the arc spans, in (0, 2 pi].
    double totalAngle() const;
    double length() const { return m_radius * totalAngle(); }
    AcGePoint3d planeCenter() const { return m_center; }
    void setPlaneCenter(const AcGePoint3d& center) { m_center = center; }
    void setPlaneNormal(const AcGeVector3d& normal) { m_normal = normal; }
    // The angles in degrees, as files keep them.
    double startDegrees() const { return m_startAngle; }
    double endDegrees() const { return m_endAngle; }
    void setDegrees(double start, double end) {
        m_startAngle = start;
        m_endAngle = end;
    }

    bool isClosed() const override { return false; }
    Acad::ErrorStatus getStartParam(double& param) const override;
    Acad::ErrorStatus getEndParam(double& param) const override;
    Acad::ErrorStatus getPointAtParam(double param, AcGePoint3d& point) const override;
    Acad::ErrorStatus getDistAtParam(double param, double& dist) const override;
    Acad::ErrorStatus getParamAtDist(double dist, double& param) const override;
    // The area between the arc and its chord.
    Acad::ErrorStatus getArea(double& area) const override;
    void addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int depth = 0) const override;

private:
    AcGePoint3d m_center;  // in the plane's coordinates
    AcGeVector3d m_normal = AcGeVector3d::kZAxis;
    double m_radius = 0;
    double m_startAngle = 0;  // degrees
    double m_endAngle = 0;    // degrees
};

// Single-line text. Its points lie in the plane of its normal.
class CADHOST_API AcDbText : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbText)
    AcDbText() = default;
    AcDbText(const AcGePoint3d& position, const ACHAR* text, AcDbObjectId style = AcDbObjectId::kNull,
             double height = 0, double rotation = 0);
    ~AcDbText() override;

    AcGePoint3d position() const;
    Acad::ErrorStatus setPosition(const AcGePoint3d& position);
    AcGePoint3d alignmentPoint() const;
    Acad::ErrorStatus setAlignmentPoint(const AcGePoint3d& point);
    bool isDefaultAlignment() const { return m_horizontal == AcDb::kTextLeft && m_vertical == AcDb::kTextBase; }
    double height() const { return m_height; }
    Acad::ErrorStatus setHeight(double height);
    double rotation() const;
    Acad::ErrorStatus setRotation(double rotation);
    double widthFactor() const { return m_widthFactor; }
    Acad::ErrorStatus setWidthFactor(double factor);
    AcGeVector3d normal() const { return m_normal; }
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    AcDb::TextHorzMode horizontalMode() const { return static_cast<AcDb::TextHorzMode>(m_horizontal); }
    Acad::ErrorStatus setHorizontalMode(AcDb::TextHorzMode mode);
    AcDb::TextVertMode verticalMode() const { return static_cast<AcDb::TextVertMode>(m_vertical); }
    Acad::ErrorStatus setVerticalMode(AcDb::TextVertMode mode);

    // A new copy of the text, freed with acutDelBuffer.
    ACHAR* textString() const;
    // The text itself, valid while the object is open and unchanged.
    const ACHAR* textStringConst() const { return m_text.c_str(); }
    Acad::ErrorStatus setTextString(const ACHAR* text);
    // The host's own: the text as UTF-8, as files keep it.
    std::string textUtf8() const;
    void setTextUtf8(std::string_view text);
    // The host's own: the points in the plane's coordinates, as files keep
    // them.
    AcGePoint3d planePosition() const { return m_position; }
    AcGePoint3d planeAlignmentPoint() const { return m_alignment; }
    void setPlanePosition(const AcGePoint3d& point) { m_position = point; }
    void setPlaneAlignmentPoint(const AcGePoint3d& point) { m_alignment = point; }
    void setPlaneNormal(const AcGeVector3d& normal) { m_normal = normal; }
    double rotationDegrees() const { return m_rotation; }
    void setRotationDegrees(double degrees) { m_rotation = degrees; }
    void setWidthFactorRaw(double factor) { m_widthFactor = factor; }
    void setHeightRaw(double height) { m_height = height; }
    void setModes(int horizontal, int vertical) {
        m_horizontal = static_cast<Adesk::UInt8>(horizontal);
        m_vertical = static_cast<Adesk::UInt8>(vertical);
    }

    void addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int depth = 0) const override;

private:
    AcGePoint3d m_position, m_alignment;  // in the plane's coordinates
    AcGeVector3d m_normal = AcGeVector3d::kZAxis;
    double m_height = 0;
    double m_rotation = 0;  // degrees
    double m_widthFactor = 1;
    cadhost_detail::ShortText m_text;
    Adesk::UInt8 m_horizontal = 0;
    Adesk::UInt8 m_vertical = 0;
};

// The template of an attribute in a block definition.
class CADHOST_API AcDbAttributeDefinition : public AcDbText {
public:
    ACRX_DECLARE_MEMBERS(AcDbAttributeDefinition)
    AcDbAttributeDefinition() = default;
    AcDbAttributeDefinition(const AcGePoint3d& position, const ACHAR* text, const ACHAR* tag, const ACHAR* prompt,
                            AcDbObjectId style = AcDbObjectId::kNull);
    ~AcDbAttributeDefinition() override;

    // New copies, freed with acutDelBuffer.
    ACHAR* tag() const;
    ACHAR* prompt() const;
    // The texts themselves, valid while the object is open and unchanged.
    const ACHAR* tagConst() const { return m_tag.c_str(); }
    const ACHAR* promptConst() const { return m_prompt.c_str(); }
    Acad::ErrorStatus setTag(const ACHAR* tag);
    Acad::ErrorStatus setPrompt(const ACHAR* prompt);
    bool isInvisible() const { return (m_flags & 1) != 0; }
    bool isConstant() const { return (m_flags & 2) != 0; }
    bool isVerifiable() const { return (m_flags & 4) != 0; }
    bool isPreset() const { return (m_flags & 8) != 0; }
    Acad::ErrorStatus setInvisible(bool value);
    Acad::ErrorStatus setConstant(bool value);
    Acad::ErrorStatus setVerifiable(bool value);
    Acad::ErrorStatus setPreset(bool value);
    // The host's own: the flags as drawing files keep them (1 invisible,
    // 2 constant, 4 verifiable, 8 preset) and the texts as UTF-8.
    Adesk::Int16 flags() const { return m_flags; }
    void setFlags(Adesk::Int16 flags) { m_flags = flags; }
    std::string tagUtf8() const;
    std::string promptUtf8() const;
    void setTagUtf8(std::string_view tag);
    void setPromptUtf8(std::string_view prompt);

private:
    cadhost_detail::ShortText m_tag;
    cadhost_detail::ShortText m_prompt;
    Adesk::Int16 m_flags = 0;
};

// The value of an attribute of one block reference.
class CADHOST_API AcDbAttribute : public AcDbText {
public:
    ACRX_DECLARE_MEMBERS(AcDbAttribute)
    AcDbAttribute() = default;
    AcDbAttribute(const AcGePoint3d& position, const ACHAR* text, const ACHAR* tag,
                  AcDbObjectId style = AcDbObjectId::kNull);
    ~AcDbAttribute() override;

    // A new copy, freed with acutDelBuffer.
    ACHAR* tag() const;
    // The tag itself, valid while the object is open and unchanged.
    const ACHAR* tagConst() const { return m_tag.c_str(); }
    Acad::ErrorStatus setTag(const ACHAR* tag);
    bool isInvisible() const { return (m_flags & 1) != 0; }
    bool isConstant() const { return (m_flags & 2) != 0; }
    bool isVerifiable() const { return (m_flags & 4) != 0; }
    bool isPreset() const { return (m_flags & 8) != 0; }
    Acad::ErrorStatus setInvisible(bool value);
    // Takes text, tag, flags and placement from a definition, moved by the
    // placement of the reference.
    Acad::ErrorStatus setAttributeFromBlock(const AcDbAttributeDefinition* definition,
                                            const AcGeMatrix3d& blockTransform);
    Adesk::Int16 flags() const { return m_flags; }
    void setFlags(Adesk::Int16 flags) { m_flags = flags; }
    std::string tagUtf8() const;
    void setTagUtf8(std::string_view tag);

    void addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int depth = 0) const override;

private:
    cadhost_detail::ShortText m_tag;
    Adesk::Int16 m_flags = 0;
};

// Walks the attributes of a block reference.
class CADHOST_API AcDbObjectIterator {
public:
    // Starts at the first object that is not erased.
    explicit AcDbObjectIterator(const cadhost_detail::IdList& ids) : m_ids(ids) { skipErasedForward(); }
    virtual ~AcDbObjectIterator() = default;
    bool done() const { return m_index >= m_ids.size(); }
    void step(bool backwards = false, bool skipErased = true);
    void start(bool atEnd = false);
    bool setPosition(AcDbObjectId id);
    AcDbObjectId objectId() const { return done() ? AcDbObjectId() : m_ids[m_index]; }
    // The entity at the position, or null; it is not opened.
    AcDbEntity* entity() const;

private:
    void skipErasedForward();
    cadhost_detail::IdList m_ids;
    size_t m_index = 0;
};

// A placement of a block: the block's entities carried by the reference's
// position, scale, rotation and normal.
class CADHOST_API AcDbBlockReference : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbBlockReference)
    AcDbBlockReference() = default;
    AcDbBlockReference(const AcGePoint3d& position, AcDbObjectId blockTableRecord);
    ~AcDbBlockReference() override;

    AcDbObjectId blockTableRecord() const { return m_block; }
    // Points the reference at another block; the blocks' indexes of their
    // references follow.
    virtual Acad::ErrorStatus setBlockTableRecord(AcDbObjectId blockId);
    AcGePoint3d position() const;
    virtual Acad::ErrorStatus setPosition(const AcGePoint3d& position);
    AcGeScale3d scaleFactors() const { return m_scale; }
    virtual Acad::ErrorStatus setScaleFactors(const AcGeScale3d& scale);
    double rotation() const;
    virtual Acad::ErrorStatus setRotation(double angle);
    AcGeVector3d normal() const { return m_normal; }
    virtual Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    // From the block's coordinates to the world.
    AcGeMatrix3d blockTransform() const;

    // Attributes belong to the reference: appending one that no database
    // holds adds it to the reference's database.
    Acad::ErrorStatus appendAttribute(AcDbAttribute* attribute);
    Acad::ErrorStatus appendAttribute(AcDbObjectId& id, AcDbAttribute* attribute);
    // A new iterator over the attributes, deleted by the caller.
    AcDbObjectIterator* attributeIterator() const;
    const cadhost_detail::IdList& attributeIds() const { return m_attributes; }
    // The host's own: the end marker that files write after the attributes.
    AcDbObjectId sequenceEnd() const { return m_sequenceEnd; }
    void setSequenceEnd(AcDbObjectId id) { m_sequenceEnd = id; }
    void adoptAttribute(AcDbObjectId id) { m_attributes.push_back(id); }
    // The position in the plane's coordinates, as files keep it, and the
    // block set without the index (a file's reading fills the index).
    AcGePoint3d planePosition() const { return m_position; }
    void setPlanePosition(const AcGePoint3d& point) { m_position = point; }
    void setPlaneNormal(const AcGeVector3d& normal) { m_normal = normal; }
    void setBlockIdOnly(AcDbObjectId blockId) { m_block = blockId; }
    double rotationDegrees() const { return m_rotation; }
    void setRotationDegrees(double degrees) { m_rotation = degrees; }
    void setScaleRaw(const AcGeScale3d& scale) { m_scale = scale; }

    void addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int depth = 0) const override;

private:
    AcDbObjectId m_block;
    cadhost_detail::IdList m_attributes;
    AcGePoint3d m_position;  // in the plane's coordinates
    AcGeScale3d m_scale;
    AcGeVector3d m_normal = AcGeVector3d::kZAxis;
    double m_rotation = 0;  // degrees
    AcDbObjectId m_sequenceEnd;
};

// A point: its position in world coordinates, a thickness along its
// normal, and the angle of the x axis of its plane (how a point style that
// is drawn as a figure turns).
class CADHOST_API AcDbPoint : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbPoint)
    AcDbPoint() = default;
    explicit AcDbPoint(const AcGePoint3d& position) : m_position(position) {}
    ~AcDbPoint() override;

    AcGePoint3d position() const { return m_position; }
    Acad::ErrorStatus setPosition(const AcGePoint3d& position);
    double thickness() const { return m_thickness; }
    Acad::ErrorStatus setThickness(double thickness);
    AcGeVector3d normal() const { return m_normal; }
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    double ecsRotation() const;  // radians
    Acad::ErrorStatus setEcsRotation(double angle);
    // The host's own: the angle in degrees and the normal as files keep
    // them.
    double ecsDegrees() const { return m_ecsDegrees; }
    void setEcsDegrees(double degrees) { m_ecsDegrees = degrees; }
    void setPlaneNormal(const AcGeVector3d& normal) { m_normal = normal; }
    void addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int depth = 0) const override;

private:
    AcGePoint3d m_position;
    double m_thickness = 0;
    AcGeVector3d m_normal = AcGeVector3d::kZAxis;
    double m_ecsDegrees = 0;
};

// A filled triangle or quadrilateral; the corners lie in the plane of the
// normal.
class CADHOST_API AcDbSolid : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbSolid)
    AcDbSolid() = default;
    AcDbSolid(const AcGePoint3d& p0, const AcGePoint3d& p1, const AcGePoint3d& p2, const AcGePoint3d& p3);
    ~AcDbSolid() override;

    // The corners in world coordinates.
    Acad::ErrorStatus getPointAt(Adesk::UInt16 index, AcGePoint3d& point) const;
    Acad::ErrorStatus setPointAt(Adesk::UInt16 index, const AcGePoint3d& point);
    AcGeVector3d normal() const { return m_normal; }
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    // The host's own: the corners in the plane's coordinates, as files keep
    // them.
    AcGePoint3d planePoint(int index) const { return m_points[index & 3]; }
    void setPlanePoint(int index, const AcGePoint3d& point) { m_points[index & 3] = point; }
    void setPlaneNormal(const AcGeVector3d& normal) { m_normal = normal; }
    void addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int depth = 0) const override;

private:
    AcGePoint3d m_points[4];  // in the plane's coordinates
    AcGeVector3d m_normal = AcGeVector3d::kZAxis;
};

// A window of paper space onto model space.
class CADHOST_API AcDbViewport : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbViewport)
    AcDbViewport() = default;
    ~AcDbViewport() override;

    AcGePoint3d centerPoint() const { return m_center; }
    Acad::ErrorStatus setCenterPoint(const AcGePoint3d& point);
    double width() const { return m_width; }
    Acad::ErrorStatus setWidth(double width);
    double height() const { return m_height; }
    Acad::ErrorStatus setHeight(double height);
    // The view's direction from its target towards the viewer.
    AcGeVector3d viewDirection() const { return m_viewDirection; }
    Acad::ErrorStatus setViewDirection(const AcGeVector3d& direction);
    AcGePoint3d viewTarget() const { return m_viewTarget; }
    Acad::ErrorStatus setViewTarget(const AcGePoint3d& target);
    AcGePoint2d viewCenter() const { return m_viewCenter; }
    Acad::ErrorStatus setViewCenter(const AcGePoint2d& center);
    double viewHeight() const { return m_viewHeight; }
    Acad::ErrorStatus setViewHeight(double height);
    double twistAngle() const;
    Acad::ErrorStatus setTwistAngle(double angle);
    // The viewport's number on its sheet; 1 is the sheet itself.
    Adesk::Int16 number() const { return m_number; }
    // The host's own: the number and status as drawing files keep them.
    void setNumber(Adesk::Int16 number) { m_number = number; }
    Adesk::Int16 status() const { return m_status; }
    void setStatus(Adesk::Int16 status) { m_status = status; }
    double twistDegrees() const { return m_twist; }
    void setTwistDegrees(double degrees) { m_twist = degrees; }
    void setViewHeightRaw(double height) { m_viewHeight = height; }

    void addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int depth = 0) const override;

private:
    AcGePoint3d m_center;
    AcGeVector3d m_viewDirection = AcGeVector3d::kZAxis;
    AcGePoint3d m_viewTarget;
    AcGePoint2d m_viewCenter;
    double m_width = 0, m_height = 0;
    double m_viewHeight = 1;
    double m_twist = 0;  // degrees
    Adesk::Int16 m_number = 0;
    Adesk::Int16 m_status = 0;
};

// The first and last entity of a block definition in drawing files; they
// carry the block's own handles there.
class CADHOST_API AcDbBlockBegin : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbBlockBegin)
    AcDbBlockBegin() = default;
    ~AcDbBlockBegin() override;
};

class CADHOST_API AcDbBlockEnd : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbBlockEnd)
    AcDbBlockEnd() = default;
    ~AcDbBlockEnd() override;
};

// The end marker of the attributes of a block reference.
class CADHOST_API AcDbSequenceEnd : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbSequenceEnd)
    AcDbSequenceEnd() = default;
    ~AcDbSequenceEnd() override;
};
