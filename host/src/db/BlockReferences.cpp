#include <dbents.h>
#include <dbsymtb.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "db/DatabaseImpl.h"
#include "db/Extents.h"

ACRX_DXF_DEFINE_MEMBERS(AcDbBlockReference, AcDbEntity, L"INSERT")
ACRX_DXF_DEFINE_MEMBERS(AcDbSolid, AcDbEntity, L"SOLID")
ACRX_DXF_DEFINE_MEMBERS(AcDbViewport, AcDbEntity, L"VIEWPORT")
ACRX_DXF_DEFINE_MEMBERS(AcDbBlockBegin, AcDbEntity, L"BLOCK")
ACRX_DXF_DEFINE_MEMBERS(AcDbBlockEnd, AcDbEntity, L"ENDBLK")
ACRX_DXF_DEFINE_MEMBERS(AcDbSequenceEnd, AcDbEntity, L"SEQEND")

using cadhost::DatabaseImpl;

namespace {
// Blocks that hold themselves, directly or through others, end here.
constexpr int kMaxNesting = 32;
// The unit in which memory comes into the processor's caches.
constexpr size_t kCacheLine = 64;

AcGeMatrix3d PlaneToWorld(const AcGeVector3d& normal) {
    return normal == AcGeVector3d::kZAxis ? AcGeMatrix3d::kIdentity : AcGeMatrix3d::planeToWorld(normal);
}
AcGeMatrix3d WorldToPlane(const AcGeVector3d& normal) {
    return normal == AcGeVector3d::kZAxis ? AcGeMatrix3d::kIdentity : AcGeMatrix3d::worldToPlane(normal);
}
}  // namespace

// Iterator over attributes ------------------------------------------------

void AcDbObjectIterator::skipErasedForward() {
    while (!done() && m_ids[m_index].isErased()) ++m_index;
}

void AcDbObjectIterator::start(bool atEnd) {
    m_index = atEnd ? (m_ids.empty() ? 0 : m_ids.size() - 1) : 0;
    if (!atEnd) skipErasedForward();
}

void AcDbObjectIterator::step(bool backwards, bool skipErased) {
    if (done()) return;
    if (backwards) {
        // Stepping back from the first leaves the iterator done.
        do {
            if (m_index == 0) {
                m_index = m_ids.size();
                return;
            }
            --m_index;
        } while (skipErased && m_ids[m_index].isErased());
        return;
    }
    ++m_index;
    if (skipErased) skipErasedForward();
}

bool AcDbObjectIterator::setPosition(AcDbObjectId id) {
    for (size_t i = 0; i < m_ids.size(); ++i) {
        if (m_ids[i] == id) {
            m_index = i;
            return true;
        }
    }
    return false;
}

AcDbEntity* AcDbObjectIterator::entity() const { return AcDbEntity::cast(DatabaseImpl::Peek(objectId())); }

// Block reference -------------------------------------------------------

AcDbBlockReference::AcDbBlockReference(const AcGePoint3d& position, AcDbObjectId blockTableRecord)
    : m_block(blockTableRecord), m_position(position) {}

AcDbBlockReference::~AcDbBlockReference() = default;

Acad::ErrorStatus AcDbBlockReference::setBlockTableRecord(AcDbObjectId blockId) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    auto* newBlock = AcDbBlockTableRecord::cast(DatabaseImpl::Peek(blockId));
    if (!newBlock) return Acad::eWrongObjectType;
    if (blockId == m_block) return Acad::eOk;
    if (!objectId().isNull()) {
        if (blockId.database() != database()) return Acad::eWrongDatabase;
        if (auto* old = AcDbBlockTableRecord::cast(DatabaseImpl::Peek(m_block))) old->forgetReference(objectId());
        newBlock->noteReference(objectId());
    }
    m_block = blockId;
    return Acad::eOk;
}

AcGePoint3d AcDbBlockReference::position() const { return PlaneToWorld(m_normal) * m_position; }

Acad::ErrorStatus AcDbBlockReference::setPosition(const AcGePoint3d& position) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    m_position = WorldToPlane(m_normal) * position;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockReference::setScaleFactors(const AcGeScale3d& scale) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (scale.sx == 0 || scale.sy == 0 || scale.sz == 0) return Acad::eInvalidInput;
    m_scale = scale;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockReference::setRotation(double angle) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!std::isfinite(angle)) return Acad::eInvalidInput;
    m_rotation = cadhost::ToDegrees(angle);
    return Acad::eOk;
}

double AcDbBlockReference::rotation() const { return cadhost::ToRadians(m_rotation); }

Acad::ErrorStatus AcDbBlockReference::setNormal(const AcGeVector3d& normal) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (normal.isZeroLength()) return Acad::eInvalidInput;
    AcGePoint3d world = position();
    m_normal = normal.normal();
    m_position = WorldToPlane(m_normal) * world;
    return Acad::eOk;
}

AcGeMatrix3d AcDbBlockReference::blockTransform() const {
    AcGePoint3d origin;
    if (auto* block = AcDbBlockTableRecord::cast(DatabaseImpl::Peek(m_block))) origin = block->origin();
    return PlaneToWorld(m_normal) * AcGeMatrix3d::translation(m_position.asVector()) *
           AcGeMatrix3d::rotation(rotation(), AcGeVector3d::kZAxis) * AcGeMatrix3d::scaling(m_scale) *
           AcGeMatrix3d::translation(-origin.asVector());
}

Acad::ErrorStatus AcDbBlockReference::appendAttribute(AcDbAttribute* attribute) {
    AcDbObjectId id;
    return appendAttribute(id, attribute);
}

Acad::ErrorStatus AcDbBlockReference::appendAttribute(AcDbObjectId& id, AcDbAttribute* attribute) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!attribute) return Acad::eNullObjectPointer;
    AcDbStub* stub = DatabaseImpl::StubOf(this);
    if (!stub) return Acad::eNotInDatabase;
    if (attribute->layerId().isNull()) attribute->setLayer(layerId());
    Acad::ErrorStatus es = stub->database->Add(id, attribute);
    if (es != Acad::eOk) return es;
    attribute->setOwnerId(objectId());
    m_attributes.push_back(id);
    // Files end a reference's attributes with a marker of its own.
    if (m_sequenceEnd.isNull()) {
        auto* end = new AcDbSequenceEnd;
        end->setLayer(layerId());
        if (stub->database->Add(m_sequenceEnd, end) == Acad::eOk) {
            end->setOwnerId(objectId());
            end->close();
        } else {
            delete end;
        }
    }
    return Acad::eOk;
}

AcDbObjectIterator* AcDbBlockReference::attributeIterator() const {
    // Whoever walks the attributes opens them next: their memory is asked for
    // now, all at once, rather than one fetch after another as each opens.
    for (AcDbObjectId id : m_attributes) {
        if (const AcDbObject* attribute = DatabaseImpl::Peek(id)) {
            const char* bytes = reinterpret_cast<const char*>(attribute);
            for (size_t at = 0; at < sizeof(AcDbAttribute); at += kCacheLine) __builtin_prefetch(bytes + at);
            __builtin_prefetch(bytes + sizeof(AcDbAttribute) - 1);
        }
    }
    return new AcDbObjectIterator(m_attributes);
}

void AcDbBlockReference::addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int depth) const {
    if (depth > kMaxNesting) return;
    // The blocks being expanded on the way down: a block that holds itself
    // (which only a broken file can make) adds nothing the second time.
    static thread_local std::vector<const AcDbObject*> expanding;
    auto* block = AcDbBlockTableRecord::cast(DatabaseImpl::Peek(m_block));
    if (block && std::find(expanding.begin(), expanding.end(), block) != expanding.end()) block = nullptr;
    if (block && !m_block.isErased()) {
        expanding.push_back(block);
        AcGeMatrix3d placed = transform * blockTransform();
        for (AcDbObjectId id : block->entityIds()) {
            auto* entity = AcDbEntity::cast(DatabaseImpl::Peek(id));
            if (!entity || id.isErased()) continue;
            // A reference shows the values of its attributes, not the
            // definitions, except for constant ones.
            if (auto* definition = AcDbAttributeDefinition::cast(entity); definition && !definition->isConstant())
                continue;
            entity->addExtentsTo(extents, placed, depth + 1);
        }
        expanding.pop_back();
    }
    for (AcDbObjectId id : m_attributes) {
        auto* attribute = AcDbEntity::cast(DatabaseImpl::Peek(id));
        if (attribute && !id.isErased()) attribute->addExtentsTo(extents, transform, depth + 1);
    }
}

// Solid -----------------------------------------------------------------

AcDbSolid::AcDbSolid(const AcGePoint3d& p0, const AcGePoint3d& p1, const AcGePoint3d& p2, const AcGePoint3d& p3)
    : m_points{p0, p1, p2, p3} {}

AcDbSolid::~AcDbSolid() = default;

Acad::ErrorStatus AcDbSolid::getPointAt(Adesk::UInt16 index, AcGePoint3d& point) const {
    if (index > 3) return Acad::eInvalidIndex;
    point = PlaneToWorld(m_normal) * m_points[index];
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSolid::setPointAt(Adesk::UInt16 index, const AcGePoint3d& point) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (index > 3) return Acad::eInvalidIndex;
    m_points[index] = WorldToPlane(m_normal) * point;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSolid::setNormal(const AcGeVector3d& normal) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (normal.isZeroLength()) return Acad::eInvalidInput;
    AcGePoint3d world[4];
    for (Adesk::UInt16 i = 0; i < 4; ++i) getPointAt(i, world[i]);
    m_normal = normal.normal();
    for (int i = 0; i < 4; ++i) m_points[i] = WorldToPlane(m_normal) * world[i];
    return Acad::eOk;
}

void AcDbSolid::addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int) const {
    AcGeMatrix3d placed = transform * PlaneToWorld(m_normal);
    for (const AcGePoint3d& p : m_points) extents.addPoint(placed * p);
}

// Viewport --------------------------------------------------------------

AcDbViewport::~AcDbViewport() = default;

Acad::ErrorStatus AcDbViewport::setCenterPoint(const AcGePoint3d& point) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    m_center = point;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbViewport::setWidth(double width) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (width < 0) return Acad::eInvalidInput;
    m_width = width;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbViewport::setHeight(double height) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (height < 0) return Acad::eInvalidInput;
    m_height = height;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbViewport::setViewDirection(const AcGeVector3d& direction) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (direction.isZeroLength()) return Acad::eInvalidInput;
    m_viewDirection = direction;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbViewport::setViewTarget(const AcGePoint3d& target) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    m_viewTarget = target;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbViewport::setViewCenter(const AcGePoint2d& center) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    m_viewCenter = center;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbViewport::setViewHeight(double height) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!(height > 0)) return Acad::eInvalidInput;
    m_viewHeight = height;
    return Acad::eOk;
}

double AcDbViewport::twistAngle() const { return cadhost::ToRadians(m_twist); }

Acad::ErrorStatus AcDbViewport::setTwistAngle(double angle) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    m_twist = cadhost::ToDegrees(angle);
    return Acad::eOk;
}

void AcDbViewport::addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int) const {
    for (int corner = 0; corner < 4; ++corner) {
        double x = m_center.x + ((corner & 1) ? m_width : -m_width) / 2;
        double y = m_center.y + ((corner & 2) ? m_height : -m_height) / 2;
        extents.addPoint(transform * AcGePoint3d(x, y, m_center.z));
    }
}

// Markers of files -------------------------------------------------------

AcDbBlockBegin::~AcDbBlockBegin() = default;
AcDbBlockEnd::~AcDbBlockEnd() = default;
AcDbSequenceEnd::~AcDbSequenceEnd() = default;
