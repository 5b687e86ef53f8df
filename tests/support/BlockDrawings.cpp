#include "support/BlockDrawings.h"

#include <dbobjptr.h>
#include <dbsymtb.h>
#include <gtest/gtest.h>

#include "db/DynamicBlocks.h"

namespace qmtest {

BlockDrawing::BlockDrawing(AcDbDatabase* database) : m_database(database) {}

AcDbObjectId BlockDrawing::modelSpace() const { return m_database->modelSpaceId(); }
AcDbObjectId BlockDrawing::paperSpace() const { return m_database->paperSpaceId(); }

AcDbObjectId BlockDrawing::Layer(const wchar_t* name, bool frozen, bool off, bool locked) {
    AcDbSymbolTablePointer<AcDbLayerTable> table(m_database, AcDb::kForWrite);
    EXPECT_EQ(table.openStatus(), Acad::eOk);
    AcDbObjectId id;
    if (table->getAt(name, id) == Acad::eOk) return id;
    auto* record = new AcDbLayerTableRecord;
    record->setName(name);
    record->setIsFrozen(frozen);
    record->setIsOff(off);
    record->setIsLocked(locked);
    EXPECT_EQ(table->add(id, record), Acad::eOk);
    record->close();
    return id;
}

AcDbObjectId BlockDrawing::Block(const wchar_t* name, const std::vector<std::wstring>& attributeTags) {
    AcDbSymbolTablePointer<AcDbBlockTable> table(m_database, AcDb::kForWrite);
    EXPECT_EQ(table.openStatus(), Acad::eOk);
    auto* record = new AcDbBlockTableRecord;
    record->setName(name);
    if (name[0] == L'*') record->setBlockFlags(1);
    AcDbObjectId id;
    EXPECT_EQ(table->add(id, record), Acad::eOk);
    auto* line = new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 1, 0));
    EXPECT_EQ(record->appendAcDbEntity(line), Acad::eOk);
    line->close();
    for (const std::wstring& tag : attributeTags) {
        std::wstring prompt = tag + L"?";
        auto* definition = new AcDbAttributeDefinition(AcGePoint3d(0, 0.5, 0), L"", tag.c_str(), prompt.c_str());
        definition->setHeight(0.1);
        EXPECT_EQ(record->appendAcDbEntity(definition), Acad::eOk);
        definition->close();
    }
    record->close();
    return id;
}

AcDbObjectId BlockDrawing::Insert(AcDbObjectId owner, AcDbObjectId block, const AcGePoint3d& at, const wchar_t* layer,
                                  const AttributeValues& attributes) {
    Layer(layer);
    AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> record(owner, AcDb::kForWrite);
    EXPECT_EQ(record.openStatus(), Acad::eOk);
    auto* reference = new AcDbBlockReference(at, block);
    EXPECT_EQ(reference->setLayer(layer), Acad::eOk);
    AcDbObjectId id;
    EXPECT_EQ(record->appendAcDbEntity(id, reference), Acad::eOk);
    for (const auto& [tag, value] : attributes) {
        // Attributes lie within the block's unit square, so that they do not
        // widen the reference's extents.
        auto* attribute = new AcDbAttribute(AcGePoint3d(at.x + 0.1, at.y + 0.5, 0), value.c_str(), tag.c_str());
        attribute->setHeight(0.1);
        EXPECT_EQ(reference->appendAttribute(attribute), Acad::eOk);
        attribute->close();
    }
    reference->close();
    return id;
}

void BlockDrawing::Erase(AcDbObjectId id) {
    AcDbObject* object = nullptr;
    ASSERT_EQ(acdbOpenAcDbObject(object, id, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(object->erase(), Acad::eOk);
    object->close();
}

void BlockDrawing::AddProperty(AcDbObjectId block, const wchar_t* name, const AcDbEvalVariant& value, bool readOnly,
                               bool show) {
    EXPECT_EQ(cadhost::AddDynamicProperty(block, {name, L"", value, show, readOnly}), Acad::eOk);
}

void BlockDrawing::Tie(AcDbObjectId anonymousCopy, AcDbObjectId dynamicBlock) {
    EXPECT_EQ(cadhost::TieAnonymousCopy(anonymousCopy, dynamicBlock), Acad::eOk);
}

void BlockDrawing::SetProperty(AcDbObjectId reference, const wchar_t* name, const AcDbEvalVariant& value) {
    AcDbDynBlockReferencePropertyArray properties;
    AcDbDynBlockReference(reference).getBlockProperties(properties);
    for (int i = 0; i < properties.length(); ++i) {
        if (properties[i].propertyName() == name) {
            EXPECT_EQ(properties[i].setValue(value), Acad::eOk);
            return;
        }
    }
    ADD_FAILURE() << "no property of that name";
}

std::wstring BlockDrawing::Handle(AcDbObjectId id) {
    ACHAR text[32];
    id.handle().getIntoAsciiBuffer(text, 32);
    return text;
}

}  // namespace qmtest
