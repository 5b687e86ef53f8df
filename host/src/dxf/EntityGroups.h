// What the files of the entity families share: the bits that remember
// which optional groups a file wrote, and readers of points and normals.
#pragma once

#include <dbmain.h>

#include <string>

#include "dxf/DxfIo.h"

namespace cadhost::dxf {

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
    kHad39 = 1 << 13,
};


inline void Note(AcDbObject& object, Adesk::UInt16 bit) { object.setFileGroups(object.fileGroups() | bit); }
inline bool Had(const AcDbObject& object, Adesk::UInt16 bit) { return (object.fileGroups() & bit) != 0; }

// A point read group by group: the base code takes x (and counts), the
// codes 10 and 20 above it y and z.
inline Use Coordinate(AcGePoint3d& point, int base, const Group& group, ObjectReader& in) {
    int axis = (group.code - base) / 10;
    point[static_cast<unsigned>(axis)] = in.Real(group);
    return axis == 0 ? Use::kKnown : Use::kContinued;
}

inline bool IsCoordinate(int code, int base) { return code == base || code == base + 10 || code == base + 20; }

inline Use Vector(AcGeVector3d& vector, int base, const Group& group, ObjectReader& in) {
    AcGePoint3d p(vector.x, vector.y, vector.z);
    Use use = Coordinate(p, base, group, in);
    vector.set(p.x, p.y, p.z);
    return use;
}

template <class T>
AcDbObject* Make() {
    return new T;
}

// A normal as a file gives it, read group by group into a class's read
// struct: zero until given, and a zero vector means the default.
struct FileNormal {
    AcGeVector3d raw{0, 0, 0};
    Use Read(int base, const Group& group, ObjectReader& in) { return Vector(raw, base, group, in); }
    AcGeVector3d Value() const { return raw.isZeroLength() ? AcGeVector3d::kZAxis : raw.normal(); }
};

// What a block reference keeps between its groups and its finish step (a
// table's block reference part too, TableIo.cpp).
struct BlockReferenceRead {
    FileNormal normal;
};

inline void WriteNormal(ObjectWriter& out, const AcDbObject& object, const AcGeVector3d& normal) {
    if (Had(object, kHad210) || normal != AcGeVector3d::kZAxis) out.Vector(210, normal);
}

// The block's name as files write it: the two spaces have names of their
// own before 2000 (BlockReferenceIo.cpp).
std::string BlockNameInFile(AcDbObjectId blockId, const FileState& file);

}  // namespace cadhost::dxf
