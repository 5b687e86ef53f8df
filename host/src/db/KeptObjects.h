// Objects and entities of a drawing file whose type the host does not
// model: all their groups are kept, and saving writes them back as read.
#pragma once

#include <dbmain.h>

#include <string>
#include <vector>

namespace cadhost {

class KeptObject : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(KeptObject)
    explicit KeptObject(std::string type = {}) : m_type(std::move(type)) {}
    ~KeptObject() override;

    const std::string& type() const { return m_type; }
    // What the object holds in the file's order: the records of a table.
    std::vector<AcDbObjectId>& children() { return m_children; }
    const std::vector<AcDbObjectId>& children() const { return m_children; }

private:
    std::string m_type;
    std::vector<AcDbObjectId> m_children;
};

class KeptEntity : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(KeptEntity)
    explicit KeptEntity(std::string type = {}) : m_type(std::move(type)) {}
    ~KeptEntity() override;

    const std::string& type() const { return m_type; }
    // The entities that follow it in files up to their end marker (the
    // vertices of a polyline and its SEQEND), in order.
    std::vector<AcDbObjectId>& children() { return m_children; }
    const std::vector<AcDbObjectId>& children() const { return m_children; }

private:
    std::string m_type;
    std::vector<AcDbObjectId> m_children;
};

// The name that drawing files and selection filters give an object's type:
// the kept type of a kept object, else its class's.
std::wstring DxfNameOf(const AcDbObject* object);

}  // namespace cadhost
