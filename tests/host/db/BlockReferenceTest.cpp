// Block references: placement, attributes, the blocks' index of their
// references, and extents through nested blocks.
#include <adslib.h>
#include <dbents.h>
#include <dbobjptr.h>
#include <dbpl.h>
#include <dbsymtb.h>

#include <cmath>

#include "support/TestHost.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

class BlockReferenceTest : public qmtest::HostTest {
protected:
    AcDbDatabase* db() { return acdbHostApplicationServices()->workingDatabase(); }

    AcDbObjectId AddBlock(const wchar_t* name, std::initializer_list<AcDbEntity*> entities,
                          AcGePoint3d origin = AcGePoint3d::kOrigin) {
        AcDbBlockTable* table = nullptr;
        EXPECT_EQ(db()->getSymbolTable(table, AcDb::kForWrite), Acad::eOk);
        auto* record = new AcDbBlockTableRecord;
        record->setName(name);
        record->setOrigin(origin);
        AcDbObjectId id;
        EXPECT_EQ(table->add(id, record), Acad::eOk);
        table->close();
        for (AcDbEntity* entity : entities) {
            EXPECT_EQ(record->appendAcDbEntity(entity), Acad::eOk);
            entity->close();
        }
        record->close();
        return id;
    }

    AcDbObjectId Append(AcDbObjectId blockId, AcDbEntity* entity) {
        AcDbBlockTableRecord* record = nullptr;
        EXPECT_EQ(acdbOpenObject(record, blockId, AcDb::kForWrite), Acad::eOk);
        AcDbObjectId id;
        EXPECT_EQ(record->appendAcDbEntity(id, entity), Acad::eOk);
        entity->close();
        record->close();
        return id;
    }

    AcDbObjectId Insert(AcDbObjectId spaceId, AcDbObjectId blockId, AcGePoint3d at, double rotation = 0,
                        AcGeScale3d scale = AcGeScale3d()) {
        auto* reference = new AcDbBlockReference(at, blockId);
        reference->setRotation(rotation);
        reference->setScaleFactors(scale);
        return Append(spaceId, reference);
    }

    std::vector<AcDbObjectId> References(AcDbObjectId blockId, bool directOnly = true) {
        AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> record(blockId);
        EXPECT_EQ(record.openStatus(), Acad::eOk);
        AcDbObjectIdArray ids;
        record->getBlockReferenceIds(ids, directOnly);
        return std::vector<AcDbObjectId>(ids.begin(), ids.end());
    }

    AcDbExtents ExtentsOf(AcDbObjectId id) {
        AcDbObjectPointer<AcDbEntity> entity(id);
        AcDbExtents extents;
        EXPECT_EQ(entity->getGeomExtents(extents), Acad::eOk);
        return extents;
    }

    void ExpectBox(const AcDbExtents& e, double x0, double y0, double x1, double y1) {
        EXPECT_NEAR(e.minPoint().x, x0, 1e-9);
        EXPECT_NEAR(e.minPoint().y, y0, 1e-9);
        EXPECT_NEAR(e.maxPoint().x, x1, 1e-9);
        EXPECT_NEAR(e.maxPoint().y, y1, 1e-9);
    }
};

TEST_F(BlockReferenceTest, TransformCarriesBlockPointsToTheWorld) {
    AcDbObjectId block = AddBlock(L"B", {}, AcGePoint3d(1, 1, 0));
    AcDbObjectId ref = Insert(db()->modelSpaceId(), block, AcGePoint3d(10, 20, 0), kPi / 2, AcGeScale3d(2, 3, 1));
    AcDbObjectPointer<AcDbBlockReference> reference(ref);
    ASSERT_EQ(reference.openStatus(), Acad::eOk);
    // The block's origin lands on the position; (2,1) is one unit right of
    // the origin: scaled by 2 and turned a quarter, it goes 2 up.
    AcGePoint3d p = reference->blockTransform() * AcGePoint3d(2, 1, 0);
    EXPECT_NEAR(p.x, 10, 1e-12);
    EXPECT_NEAR(p.y, 22, 1e-12);
    EXPECT_EQ(reference->position(), AcGePoint3d(10, 20, 0));
    EXPECT_EQ(reference->scaleFactors(), AcGeScale3d(2, 3, 1));
    EXPECT_DOUBLE_EQ(reference->rotation(), kPi / 2);
    EXPECT_EQ(reference->blockTableRecord(), block);
}

TEST_F(BlockReferenceTest, IndexFollowsAppendMoveAndErase) {
    AcDbObjectId a = AddBlock(L"A", {});
    AcDbObjectId b = AddBlock(L"B", {});
    AcDbObjectId r1 = Insert(db()->modelSpaceId(), a, AcGePoint3d(0, 0, 0));
    AcDbObjectId r2 = Insert(db()->paperSpaceId(), a, AcGePoint3d(1, 0, 0));
    EXPECT_EQ(References(a), (std::vector<AcDbObjectId>{r1, r2}));
    EXPECT_TRUE(References(b).empty());

    {
        AcDbObjectPointer<AcDbBlockReference> reference(r1, AcDb::kForWrite);
        ASSERT_EQ(reference->setBlockTableRecord(b), Acad::eOk);
    }
    EXPECT_EQ(References(a), (std::vector<AcDbObjectId>{r2}));
    EXPECT_EQ(References(b), (std::vector<AcDbObjectId>{r1}));
    {
        // Back again: listed once, not twice.
        AcDbObjectPointer<AcDbBlockReference> reference(r1, AcDb::kForWrite);
        ASSERT_EQ(reference->setBlockTableRecord(a), Acad::eOk);
    }
    EXPECT_EQ(References(a).size(), 2u);
    EXPECT_TRUE(References(b).empty());

    {
        AcDbObjectPointer<AcDbBlockReference> reference(r2, AcDb::kForWrite);
        ASSERT_EQ(reference->erase(), Acad::eOk);
    }
    EXPECT_EQ(References(a), (std::vector<AcDbObjectId>{r1}));
    {
        AcDbObjectPointer<AcDbBlockReference> reference(r2, AcDb::kForWrite, true);
        ASSERT_EQ(reference->erase(false), Acad::eOk);
    }
    EXPECT_EQ(References(a).size(), 2u);

    AcDbObjectPointer<AcDbBlockReference> reference(r1, AcDb::kForWrite);
    EXPECT_EQ(reference->setBlockTableRecord(db()->layerTableId()), Acad::eWrongObjectType);
}

TEST_F(BlockReferenceTest, NestedReferencesReachOuterBlocks) {
    AcDbObjectId inner = AddBlock(L"INNER", {});
    AcDbObjectId outer = AddBlock(L"OUTER", {});
    AcDbObjectId innerRef = Insert(outer, inner, AcGePoint3d(0, 0, 0));
    AcDbObjectId outerRef1 = Insert(db()->modelSpaceId(), outer, AcGePoint3d(5, 0, 0));
    AcDbObjectId outerRef2 = Insert(db()->modelSpaceId(), outer, AcGePoint3d(9, 0, 0));
    EXPECT_EQ(References(inner), (std::vector<AcDbObjectId>{innerRef}));
    std::vector<AcDbObjectId> all = References(inner, false);
    EXPECT_EQ(all.size(), 3u);
    EXPECT_NE(std::find(all.begin(), all.end(), outerRef1), all.end());
    EXPECT_NE(std::find(all.begin(), all.end(), outerRef2), all.end());
}

TEST_F(BlockReferenceTest, AttributesBelongToTheirReference) {
    AcDbObjectId block = AddBlock(L"TAGGED", {new AcDbAttributeDefinition(AcGePoint3d(0, 0, 0), L"?", L"SIZE", L"Size?")});
    AcDbObjectId ref = Insert(db()->modelSpaceId(), block, AcGePoint3d(0, 0, 0));
    AcDbObjectId first, second;
    {
        AcDbObjectPointer<AcDbBlockReference> reference(ref, AcDb::kForWrite);
        AcDbObjectPointer<AcDbAttribute> a, b;
        a.create();
        b.create();
        a->setTextString(L"10");
        a->setTag(L"SIZE");
        b->setTextString(L"red");
        b->setTag(L"COLOR");
        AcDbAttribute* raw = nullptr;
        a.release(raw);
        ASSERT_EQ(reference->appendAttribute(first, raw), Acad::eOk);
        raw->close();
        b.release(raw);
        ASSERT_EQ(reference->appendAttribute(second, raw), Acad::eOk);
        raw->close();
        EXPECT_FALSE(reference->sequenceEnd().isNull());
    }
    {
        AcDbObjectPointer<AcDbAttribute> attribute(first, AcDb::kForWrite);
        EXPECT_EQ(attribute->ownerId(), ref);
        attribute->erase();
    }
    AcDbObjectPointer<AcDbBlockReference> reference(ref);
    std::unique_ptr<AcDbObjectIterator> it(reference->attributeIterator());
    std::vector<std::wstring> tags;
    for (; !it->done(); it->step()) {
        AcDbObjectPointer<AcDbAttribute> attribute(it->objectId());
        ASSERT_EQ(attribute.openStatus(), Acad::eOk);
        ACHAR* tag = attribute->tag();
        ACHAR* text = attribute->textString();
        tags.push_back(std::wstring(tag) + L"=" + text);
        acutDelBuffer(tag);
        acutDelBuffer(text);
    }
    EXPECT_EQ(tags, (std::vector<std::wstring>{L"COLOR=red"}));

    AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> record(block);
    EXPECT_TRUE(record->hasAttributeDefinitions());
    AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> model(db()->modelSpaceId());
    EXPECT_FALSE(model->hasAttributeDefinitions());
}

TEST_F(BlockReferenceTest, ExtentsGoThroughNestedBlocks) {
    // A unit square polyline in INNER, INNER placed at (2,0) in OUTER,
    // OUTER placed at (10,10) turned a quarter and scaled by 2.
    auto* square = new AcDbPolyline;
    square->addVertexAt(0, AcGePoint2d(0, 0));
    square->addVertexAt(1, AcGePoint2d(1, 0));
    square->addVertexAt(2, AcGePoint2d(1, 1));
    square->addVertexAt(3, AcGePoint2d(0, 1));
    square->setClosed(true);
    AcDbObjectId inner = AddBlock(L"INNER", {square});
    AcDbObjectId outer = AddBlock(L"OUTER", {});
    Insert(outer, inner, AcGePoint3d(2, 0, 0));
    AcDbObjectId ref = Insert(db()->modelSpaceId(), outer, AcGePoint3d(10, 10, 0), kPi / 2, AcGeScale3d(2));
    // OUTER holds [2,3]x[0,1]; scaled to [4,6]x[0,2]; turned: x -> -y.
    ExpectBox(ExtentsOf(ref), 8, 14, 10, 16);

    // A circle in a block turned by 45 degrees stays a circle.
    AcDbObjectId round = AddBlock(L"ROUND", {new AcDbCircle(AcGePoint3d(0, 0, 0), AcGeVector3d::kZAxis, 1)});
    ExpectBox(ExtentsOf(Insert(db()->modelSpaceId(), round, AcGePoint3d(0, 0, 0), kPi / 4)), -1, -1, 1, 1);
    // Scaled unevenly it becomes an ellipse with half axes 3 and 1.
    ExpectBox(ExtentsOf(Insert(db()->modelSpaceId(), round, AcGePoint3d(0, 0, 0), 0, AcGeScale3d(3, 1, 1))), -3, -1,
              3, 1);
}

TEST_F(BlockReferenceTest, BlockThatHoldsItselfStillHasExtents) {
    AcDbObjectId loop = AddBlock(L"LOOP", {new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0))});
    Insert(loop, loop, AcGePoint3d(1, 0, 0));
    AcDbObjectId ref = Insert(db()->modelSpaceId(), loop, AcGePoint3d(0, 0, 0));
    // The block's own geometry counts; holding itself adds nothing.
    ExpectBox(ExtentsOf(ref), 0, 0, 1, 0);
}

TEST_F(BlockReferenceTest, ArcAndTextExtents) {
    // A quarter arc from 0 to 90 degrees: only its own quadrant.
    AcDbArc arc(AcGePoint3d(0, 0, 0), 2, 0, kPi / 2);
    AcDbExtents e;
    ASSERT_EQ(arc.getGeomExtents(e), Acad::eOk);
    ExpectBox(e, 0, 0, 2, 2);
    // From 45 to 225 degrees it passes the top and the left.
    AcDbArc wide(AcGePoint3d(0, 0, 0), 2, kPi / 4, 5 * kPi / 4);
    ASSERT_EQ(wide.getGeomExtents(e), Acad::eOk);
    ExpectBox(e, -2, -std::sqrt(2.0), std::sqrt(2.0), 2);

    AcDbText text(AcGePoint3d(1, 1, 0), L"ABCD", AcDbObjectId::kNull, 0.5, 0);
    ASSERT_EQ(text.getGeomExtents(e), Acad::eOk);
    ExpectBox(e, 1, 1, 3, 1.5);

    AcDbLine none;
    AcDbViewport viewport;
    viewport.setCenterPoint(AcGePoint3d(5, 5, 0));
    viewport.setWidth(4);
    viewport.setHeight(2);
    ASSERT_EQ(viewport.getGeomExtents(e), Acad::eOk);
    ExpectBox(e, 3, 4, 7, 6);
}

TEST_F(BlockReferenceTest, InvisibleAttributesAddNoExtents) {
    AcDbObjectId block = AddBlock(L"DOT", {new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 1, 0))});
    AcDbObjectId ref = Insert(db()->modelSpaceId(), block, AcGePoint3d(0, 0, 0));
    AcDbObjectId attributeId;
    {
        AcDbObjectPointer<AcDbBlockReference> reference(ref, AcDb::kForWrite);
        auto* attribute = new AcDbAttribute(AcGePoint3d(50, 50, 0), L"FAR", L"TAG");
        attribute->setHeight(1);
        ASSERT_EQ(reference->appendAttribute(attributeId, attribute), Acad::eOk);
        attribute->close();
    }
    EXPECT_GT(ExtentsOf(ref).maxPoint().x, 50);
    {
        AcDbObjectPointer<AcDbAttribute> attribute(attributeId, AcDb::kForWrite);
        attribute->setInvisible(true);
    }
    ExpectBox(ExtentsOf(ref), 0, 0, 1, 1);
}

TEST_F(BlockReferenceTest, AttributeTakesItsDefinitionCarriedByTheReference) {
    AcDbAttributeDefinition definition(AcGePoint3d(1, 0, 0), L"default", L"SIZE", L"Size?");
    definition.setHeight(2);
    definition.setPreset(true);
    AcDbAttribute attribute;
    AcGeMatrix3d placement = AcGeMatrix3d::translation(AcGeVector3d(10, 0, 0)) *
                             AcGeMatrix3d::rotation(kPi / 2, AcGeVector3d::kZAxis) * AcGeMatrix3d::scaling(3);
    ASSERT_EQ(attribute.setAttributeFromBlock(&definition, placement), Acad::eOk);
    EXPECT_NEAR(attribute.position().x, 10, 1e-12);
    EXPECT_NEAR(attribute.position().y, 3, 1e-12);
    EXPECT_NEAR(attribute.rotation(), kPi / 2, 1e-12);
    EXPECT_NEAR(attribute.height(), 6, 1e-12);
    EXPECT_TRUE(attribute.isPreset());
    ACHAR* tag = attribute.tag();
    EXPECT_STREQ(tag, L"SIZE");
    acutDelBuffer(tag);
}

}  // namespace
