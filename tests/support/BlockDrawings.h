// Drawings with blocks for tests, made in memory: layers, block definitions
// with attribute definitions, references with attributes, nesting, and
// dynamic blocks with anonymous copies.
#pragma once

#include <dbdynblk.h>
#include <dbents.h>

#include <string>
#include <utility>
#include <vector>

namespace qmtest {

// An attribute of a reference: tag and value.
using AttributeValues = std::vector<std::pair<std::wstring, std::wstring>>;

class BlockDrawing {
public:
    explicit BlockDrawing(AcDbDatabase* database);

    AcDbDatabase* database() const { return m_database; }
    AcDbObjectId modelSpace() const;
    AcDbObjectId paperSpace() const;

    // A layer with its states.
    AcDbObjectId Layer(const wchar_t* name, bool frozen = false, bool off = false, bool locked = false);
    // A block whose geometry is a line from (0,0) to (1,1), with attribute
    // definitions of the tags (prompt "TAG?"); an anonymous one when the
    // name begins with "*".
    AcDbObjectId Block(const wchar_t* name, const std::vector<std::wstring>& attributeTags = {});
    // A reference in owner (a space or a block) at a point, on a layer, with
    // attributes.
    AcDbObjectId Insert(AcDbObjectId owner, AcDbObjectId block, const AcGePoint3d& at, const wchar_t* layer = L"0",
                        const AttributeValues& attributes = {});
    // Erases an object.
    void Erase(AcDbObjectId id);

    // Makes a block dynamic with properties, and ties an anonymous block to
    // it as a copy.
    void AddProperty(AcDbObjectId block, const wchar_t* name, const AcDbEvalVariant& value, bool readOnly = false,
                     bool show = true);
    void Tie(AcDbObjectId anonymousCopy, AcDbObjectId dynamicBlock);
    // Sets a property's value on one reference.
    void SetProperty(AcDbObjectId reference, const wchar_t* name, const AcDbEvalVariant& value);

    static std::wstring Handle(AcDbObjectId id);

private:
    AcDbDatabase* m_database;
};

}  // namespace qmtest
