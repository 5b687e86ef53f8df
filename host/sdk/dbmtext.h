// Multiline text: a text with formatting codes in a box of a given width.
#pragma once

#include <memory>
#include <string>

#include "dbents.h"

class CADHOST_API AcDbMText : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbMText)
    AcDbMText() = default;
    ~AcDbMText() override;

    enum AttachmentPoint {
        kTopLeft = 1, kTopCenter = 2, kTopRight = 3,
        kMiddleLeft = 4, kMiddleCenter = 5, kMiddleRight = 6,
        kBottomLeft = 7, kBottomCenter = 8, kBottomRight = 9,
    };

    AcGePoint3d location() const { return m_location; }
    Acad::ErrorStatus setLocation(const AcGePoint3d& point);
    AcGeVector3d normal() const { return m_normal; }
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    // The direction of the text's baseline, in world coordinates.
    AcGeVector3d direction() const;
    Acad::ErrorStatus setDirection(const AcGeVector3d& direction);
    double rotation() const;
    Acad::ErrorStatus setRotation(double angle);
    double textHeight() const { return m_height; }
    Acad::ErrorStatus setTextHeight(double height);
    double width() const { return m_width; }
    Acad::ErrorStatus setWidth(double width);
    AttachmentPoint attachment() const { return static_cast<AttachmentPoint>(m_attachment); }
    Acad::ErrorStatus setAttachment(AttachmentPoint attachment);

    // The text with its formatting codes, a new copy freed with acutDelBuffer.
    ACHAR* contents() const;
    Acad::ErrorStatus setContents(const ACHAR* text);
    // The text without formatting codes.
    ACHAR* text() const;
    const std::string& contentsUtf8() const;
    void setContentsUtf8(std::string text);
    // The host's own: contents shared with other texts that show the same
    // (a text never changes in place; setting it puts another in).
    void setContentsUtf8(std::shared_ptr<const std::string> text);
    // The host's own: whether the direction is kept as a vector (true) or as
    // a rotation angle in the plane (false), as files give either.
    bool hasDirection() const { return m_hasDirection; }
    double rotationDegrees() const { return m_rotation; }
    void setRotationDegrees(double degrees) {
        m_rotation = degrees;
        m_hasDirection = false;
    }
    void setDirectionRaw(const AcGeVector3d& direction) {
        m_direction = direction;
        m_hasDirection = true;
    }
    void setHeightRaw(double height) { m_height = height; }
    void setWidthRaw(double width) { m_width = width; }
    void setAttachmentRaw(Adesk::Int16 attachment) { m_attachment = attachment; }
    void setNormalRaw(const AcGeVector3d& normal) { m_normal = normal; }

    void addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int depth = 0) const override;

private:
    AcGePoint3d m_location;
    AcGeVector3d m_normal = AcGeVector3d::kZAxis;
    AcGeVector3d m_direction = AcGeVector3d::kXAxis;  // in world coordinates, when m_hasDirection
    double m_rotation = 0;                            // degrees in the plane, when !m_hasDirection
    double m_height = 0;
    double m_width = 0;
    std::shared_ptr<const std::string> m_contents;  // null for no text
    Adesk::Int16 m_attachment = kTopLeft;
    bool m_hasDirection = false;
};
