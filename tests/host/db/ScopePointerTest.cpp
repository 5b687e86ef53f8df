// Scope pointers and symbol table look-ups by name.
#include <adslib.h>
#include <dbents.h>
#include <dbobjptr.h>
#include <dbsymtb.h>

#include "support/TestHost.h"

namespace {

class ScopePointerTest : public qmtest::HostTest {
protected:
    AcDbDatabase* db() { return acdbHostApplicationServices()->workingDatabase(); }

    AcDbObjectId AddLine() {
        AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> model(db()->modelSpaceId(), AcDb::kForWrite);
        AcDbObjectId id;
        auto* line = new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0));
        EXPECT_EQ(model->appendAcDbEntity(id, line), Acad::eOk);
        line->close();
        return id;
    }

    AcDbObjectId AddLayer(const wchar_t* name) {
        AcDbSymbolTablePointer<AcDbLayerTable> table(db(), AcDb::kForWrite);
        EXPECT_EQ(table.openStatus(), Acad::eOk);
        auto* layer = new AcDbLayerTableRecord;
        layer->setName(name);
        AcDbObjectId id;
        EXPECT_EQ(table->add(id, layer), Acad::eOk);
        layer->close();
        return id;
    }
};

TEST_F(ScopePointerTest, StatusTellsWhyAnOpenFailed) {
    AcDbObjectId line = AddLine();
    {
        AcDbObjectPointer<AcDbLine> pointer(line);
        EXPECT_EQ(pointer.openStatus(), Acad::eOk);
        EXPECT_EQ(pointer->endPoint(), AcGePoint3d(1, 0, 0));
        // While it is open for read, a writer is refused.
        AcDbObjectPointer<AcDbLine> writer(line, AcDb::kForWrite);
        EXPECT_EQ(writer.openStatus(), Acad::eWasOpenForRead);
        EXPECT_EQ(writer.object(), nullptr);
    }
    AcDbObjectPointer<AcDbCircle> wrongClass(line);
    EXPECT_EQ(wrongClass.openStatus(), Acad::eNotThatKindOfClass);
    AcDbObjectPointer<AcDbLine> none(AcDbObjectId::kNull);
    EXPECT_EQ(none.openStatus(), Acad::eNullObjectId);

    AcDbObjectPointer<AcDbLine> pointer(line, AcDb::kForWrite);
    ASSERT_EQ(pointer->erase(), Acad::eOk);
    EXPECT_EQ(pointer.close(), Acad::eOk);
    EXPECT_EQ(pointer.openStatus(), Acad::eNullObjectPointer);
    EXPECT_EQ(pointer.object(), nullptr);
    AcDbObjectPointer<AcDbLine> erased(line);
    EXPECT_EQ(erased.openStatus(), Acad::eWasErased);
    AcDbObjectPointer<AcDbLine> openErased(line, AcDb::kForRead, true);
    EXPECT_EQ(openErased.openStatus(), Acad::eOk);
}

TEST_F(ScopePointerTest, AfterItsScopeTheObjectIsClosed) {
    AcDbObjectId line = AddLine();
    {
        AcDbObjectPointer<AcDbLine> pointer(line, AcDb::kForWrite);
        ASSERT_EQ(pointer.openStatus(), Acad::eOk);
    }
    AcDbObjectPointer<AcDbLine> again(line, AcDb::kForWrite);
    EXPECT_EQ(again.openStatus(), Acad::eOk);
    AcDbObjectPointer<AcDbLine> empty;
    EXPECT_EQ(empty.openStatus(), Acad::eNullObjectPointer);
    // An object that no database holds belongs to the pointer.
    AcDbObjectPointer<AcDbCircle> made;
    EXPECT_EQ(made.create(), Acad::eOk);
    EXPECT_EQ(made.openStatus(), Acad::eOk);
    made->setRadius(2);
}

TEST_F(ScopePointerTest, RecordsByNameIgnoreCaseAndFollowRenames) {
    AcDbObjectId walls = AddLayer(L"Walls");
    AcDbSymbolTableRecordPointer<AcDbLayerTableRecord> byName(L"WALLS", db());
    ASSERT_EQ(byName.openStatus(), Acad::eOk);
    EXPECT_EQ(byName->objectId(), walls);
    byName.close();
    AcDbSymbolTableRecordPointer<AcDbLayerTableRecord> missing(L"Doors", db());
    EXPECT_EQ(missing.openStatus(), Acad::eKeyNotFound);
    AcDbSymbolTableRecordPointer<AcDbLayerTableRecord> noDatabase(L"Walls", nullptr);
    EXPECT_EQ(noDatabase.openStatus(), Acad::eInvalidInput);

    AcDbObjectId doors = AddLayer(L"Doors");
    {
        AcDbSymbolTableRecordPointer<AcDbLayerTableRecord> layer(walls, AcDb::kForWrite);
        EXPECT_EQ(layer->setName(L"doors"), Acad::eDuplicateRecordName);
        EXPECT_EQ(layer->setName(L"Partitions"), Acad::eOk);
    }
    AcDbSymbolTablePointer<AcDbLayerTable> table(db());
    AcDbObjectId found;
    EXPECT_EQ(table->getAt(L"Walls", found), Acad::eKeyNotFound);
    EXPECT_EQ(table->getAt(L"partitions", found), Acad::eOk);
    EXPECT_EQ(found, walls);
    EXPECT_TRUE(table->has(doors));
    EXPECT_FALSE(table->has(db()->modelSpaceId()));
}

TEST_F(ScopePointerTest, ErasedRecordGivesWayToANewOneOfTheSameName) {
    AcDbObjectId old = AddLayer(L"Temp");
    {
        AcDbSymbolTableRecordPointer<AcDbLayerTableRecord> layer(old, AcDb::kForWrite);
        layer->erase();
    }
    AcDbObjectId fresh = AddLayer(L"TEMP");
    AcDbSymbolTablePointer<AcDbLayerTable> table(db());
    AcDbObjectId found;
    ASSERT_EQ(table->getAt(L"temp", found), Acad::eOk);
    EXPECT_EQ(found, fresh);
    {
        AcDbSymbolTableRecordPointer<AcDbLayerTableRecord> layer(fresh, AcDb::kForWrite);
        layer->erase();
    }
    EXPECT_EQ(table->getAt(L"temp", found), Acad::eKeyNotFound);
    ASSERT_EQ(table->getAt(L"temp", found, true), Acad::eOk);
    EXPECT_EQ(found, old);
}

TEST_F(ScopePointerTest, LayerStatesAndEntityLayers) {
    AcDbObjectId layerId = AddLayer(L"Hidden");
    {
        AcDbSymbolTableRecordPointer<AcDbLayerTableRecord> layer(layerId, AcDb::kForWrite);
        layer->setIsFrozen(true);
        layer->setIsOff(true);
        layer->setIsLocked(true);
        EXPECT_EQ(layer->recordFlags(), 5);
        layer->setIsFrozen(false);
        EXPECT_EQ(layer->recordFlags(), 4);
    }
    AcDbObjectId line = AddLine();
    AcDbObjectPointer<AcDbLine> pointer(line, AcDb::kForWrite);
    ACHAR* name = pointer->layer();
    EXPECT_STREQ(name, L"0");
    acutDelBuffer(name);
    EXPECT_EQ(pointer->setLayer(L"hidden"), Acad::eOk);
    name = pointer->layer();
    EXPECT_STREQ(name, L"Hidden");
    acutDelBuffer(name);
    EXPECT_EQ(pointer->setLayer(L"nowhere"), Acad::eKeyNotFound);
}

}  // namespace
