#include <adslib.h>
#include <dbdict.h>
#include <dbents.h>
#include <dbsymtb.h>

#include "support/TestHost.h"

namespace {

class DatabaseCoreTest : public qmtest::HostTest {
protected:
    AcDbDatabase* db() { return acdbHostApplicationServices()->workingDatabase(); }

    AcDbObjectId AddBlock(const wchar_t* name) {
        AcDbBlockTable* table = nullptr;
        EXPECT_EQ(db()->getSymbolTable(table, AcDb::kForWrite), Acad::eOk);
        auto* record = new AcDbBlockTableRecord;
        record->setName(name);
        AcDbObjectId id;
        EXPECT_EQ(table->add(id, record), Acad::eOk);
        record->close();  // a new object is open for write until its maker closes it
        table->close();
        return id;
    }
};

TEST_F(DatabaseCoreTest, ANewDrawingHoldsTheSpacesAndLayerZero) {
    AcDbBlockTable* blocks = nullptr;
    ASSERT_EQ(db()->getSymbolTable(blocks, AcDb::kForRead), Acad::eOk);
    AcDbBlockTableRecord* model = nullptr;
    ASSERT_EQ(blocks->getAt(L"*MODEL_SPACE", model, AcDb::kForRead), Acad::eOk);  // names ignore case
    EXPECT_TRUE(model->isLayout());
    EXPECT_FALSE(model->isAnonymous());
    EXPECT_EQ(model->objectId(), db()->currentSpaceId());
    model->close();
    EXPECT_TRUE(blocks->has(ACDB_PAPER_SPACE));
    blocks->close();

    AcDbLayerTable* layers = nullptr;
    ASSERT_EQ(db()->getSymbolTable(layers, AcDb::kForRead), Acad::eOk);
    EXPECT_TRUE(layers->has(L"0"));
    layers->close();
    EXPECT_EQ(db()->lunits(), 2);
}

TEST_F(DatabaseCoreTest, OpeningKeepsReadersAndWritersApart) {
    AcDbObjectId id = AddBlock(L"DOOR");
    AcDbObject* first = nullptr;
    AcDbObject* second = nullptr;
    ASSERT_EQ(acdbOpenAcDbObject(first, id, AcDb::kForRead), Acad::eOk);
    ASSERT_EQ(acdbOpenAcDbObject(second, id, AcDb::kForRead), Acad::eOk);
    AcDbObject* writer = nullptr;
    EXPECT_EQ(acdbOpenAcDbObject(writer, id, AcDb::kForWrite), Acad::eWasOpenForRead);
    EXPECT_EQ(writer, nullptr);
    EXPECT_EQ(first->upgradeOpen(), Acad::eHadMultipleReaders);
    second->close();
    EXPECT_EQ(first->upgradeOpen(), Acad::eOk);
    EXPECT_TRUE(first->isWriteEnabled());
    EXPECT_EQ(acdbOpenAcDbObject(second, id, AcDb::kForRead), Acad::eWasOpenForWrite);
    first->close();
    EXPECT_EQ(first->close(), Acad::eNotOpenForRead);  // a second close is refused, not miscounted
}

TEST_F(DatabaseCoreTest, ClassAndErasureAreChecked) {
    AcDbObjectId id = AddBlock(L"WIN");
    AcDbLayerTableRecord* wrong = nullptr;
    EXPECT_EQ(acdbOpenObject(wrong, id, AcDb::kForRead), Acad::eNotThatKindOfClass);
    EXPECT_EQ(wrong, nullptr);
    AcDbEntity* entity = nullptr;
    EXPECT_EQ(acdbOpenAcDbEntity(entity, id, AcDb::kForRead), Acad::eNotThatKindOfClass);
    EXPECT_EQ(acdbOpenAcDbEntity(entity, AcDbObjectId(), AcDb::kForRead), Acad::eNullObjectId);

    AcDbObject* object = nullptr;
    ASSERT_EQ(acdbOpenAcDbObject(object, id, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(object->erase(), Acad::eOk);
    object->close();
    EXPECT_TRUE(id.isErased());
    EXPECT_EQ(acdbOpenAcDbObject(object, id, AcDb::kForRead), Acad::eWasErased);
    ASSERT_EQ(acdbOpenAcDbObject(object, id, AcDb::kForRead, true), Acad::eOk);
    object->close();

    AcDbBlockTable* table = nullptr;
    ASSERT_EQ(db()->getSymbolTable(table, AcDb::kForRead), Acad::eOk);
    EXPECT_FALSE(table->has(L"WIN"));
    AcDbBlockTableIterator* it = nullptr;
    table->newIterator(it);
    int seen = 0;
    for (; !it->done(); it->step()) ++seen;
    delete it;
    table->close();
    EXPECT_EQ(seen, 2);  // the two spaces; the erased record is skipped
}

TEST_F(DatabaseCoreTest, HandlesAreUpperCaseHexAndLookedUpByValue) {
    struct Case {
        Adesk::UInt64 value;
        const wchar_t* text;
    };
    for (const Case& c : {Case{0x2F1, L"2F1"}, Case{0, L"0"}, Case{0xFFFFFFFFFFFFFFFFull, L"FFFFFFFFFFFFFFFF"},
                          Case{0xCE, L"CE"}}) {
        ACHAR buffer[17];
        AcDbHandle(c.value).getIntoAsciiBuffer(buffer);
        EXPECT_STREQ(buffer, c.text);
        EXPECT_EQ(AcDbHandle(c.text).value(), c.value);
    }
    ACHAR tiny[3];
    EXPECT_FALSE(AcDbHandle(0x2F1).getIntoAsciiBuffer(tiny, 3));
    EXPECT_TRUE(AcDbHandle(L"not hex").isNull());
    EXPECT_TRUE(AcDbHandle(L"12345678901234567").isNull());

    AcDbObjectId id = AddBlock(L"CHAIR");
    ACHAR text[17];
    id.handle().getIntoAsciiBuffer(text);
    ads_name name;
    ASSERT_EQ(acdbHandEnt(text, name), RTNORM);
    AcDbObjectId found;
    ASSERT_EQ(acdbGetObjectId(found, name), Acad::eOk);
    EXPECT_EQ(found, id);
    EXPECT_EQ(acdbHandEnt(L"FFFFF", name), RTERROR);
    EXPECT_EQ(acdbHandEnt(L"zz", name), RTERROR);
}

TEST_F(DatabaseCoreTest, ExtendedDataIsKeptPerApplication) {
    AcDbObjectId id = AddBlock(L"TAGGED");
    AcDbObject* object = nullptr;
    ASSERT_EQ(acdbOpenAcDbObject(object, id, AcDb::kForWrite), Acad::eOk);
    resbuf* unregistered = acutBuildList(1001, L"QM", 1000, L"x", 0);
    EXPECT_EQ(object->setXData(unregistered), Acad::eRegappIdNotFound);
    EXPECT_EQ(acdbRegApp(L"QM"), RTNORM);
    EXPECT_EQ(acdbRegApp(L"QM"), RTERROR);  // already there
    EXPECT_EQ(acdbRegApp(L"OTHER"), RTNORM);
    EXPECT_EQ(object->setXData(unregistered), Acad::eOk);
    acutRelRb(unregistered);
    resbuf* other = acutBuildList(1001, L"OTHER", 1000, L"o", 1070, 5, 0);
    EXPECT_EQ(object->setXData(other), Acad::eOk);
    acutRelRb(other);
    resbuf* replace = acutBuildList(1001, L"qm", 1000, L"y", 1000, L"z", 0);
    EXPECT_EQ(object->setXData(replace), Acad::eOk);
    acutRelRb(replace);

    resbuf* mine = object->xData(L"QM");
    ASSERT_NE(mine, nullptr);
    EXPECT_STREQ(mine->rbnext->resval.rstring, L"y");
    EXPECT_STREQ(mine->rbnext->rbnext->resval.rstring, L"z");
    EXPECT_EQ(mine->rbnext->rbnext->rbnext, nullptr);
    acutRelRb(mine);

    resbuf* headOnly = acutBuildList(1001, L"OTHER", 0);
    EXPECT_EQ(object->setXData(headOnly), Acad::eOk);  // a head alone removes that application's data
    acutRelRb(headOnly);
    EXPECT_EQ(object->xData(L"OTHER"), nullptr);
    resbuf* bad = acutBuildList(1000, L"no head", 0);
    EXPECT_EQ(object->setXData(bad), Acad::eBadDxfSequence);
    acutRelRb(bad);
    object->close();
}

TEST_F(DatabaseCoreTest, ExtensionDictionariesBelongToTheirObject) {
    AcDbObjectId id = AddBlock(L"WITHDICT");
    AcDbObject* object = nullptr;
    ASSERT_EQ(acdbOpenAcDbObject(object, id, AcDb::kForWrite), Acad::eOk);
    ASSERT_EQ(object->createExtensionDictionary(), Acad::eOk);
    EXPECT_EQ(object->createExtensionDictionary(), Acad::eAlreadyInDb);
    AcDbObjectId dictionaryId = object->extensionDictionary();
    object->close();
    AcDbDictionary* dictionary = nullptr;
    ASSERT_EQ(acdbOpenObject(dictionary, dictionaryId, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(dictionary->ownerId(), id);
    AcDbObjectId entryId;
    auto* entry = new AcDbDictionary;
    ASSERT_EQ(dictionary->setAt(L"ACAD_FIELD", entry, entryId), Acad::eOk);
    entry->close();
    EXPECT_TRUE(dictionary->has(L"acad_field"));
    EXPECT_EQ(dictionary->numEntries(), 1u);
    dictionary->close();
}

TEST_F(DatabaseCoreTest, ReferencesThroughNestedBlocks) {
    AcDbObjectId inner = AddBlock(L"INNER");
    AcDbObjectId outer = AddBlock(L"OUTER");
    AcDbBlockTableRecord* outerRecord = nullptr;
    ASSERT_EQ(acdbOpenObject(outerRecord, outer, AcDb::kForWrite), Acad::eOk);
    AcDbObjectId innerRef;
    auto* reference = new AcDbBlockReference(AcGePoint3d::kOrigin, inner);
    ASSERT_EQ(outerRecord->appendAcDbEntity(innerRef, reference), Acad::eOk);
    EXPECT_TRUE(reference->isWriteEnabled());  // still open for its maker
    reference->close();
    outerRecord->close();
    AcDbBlockTableRecord* model = nullptr;
    ASSERT_EQ(acdbOpenObject(model, db()->modelSpaceId(), AcDb::kForWrite), Acad::eOk);
    AcDbObjectId outerRef;
    reference = new AcDbBlockReference(AcGePoint3d::kOrigin, outer);
    ASSERT_EQ(model->appendAcDbEntity(outerRef, reference), Acad::eOk);
    reference->close();
    model->close();

    AcDbBlockTableRecord* record = nullptr;
    ASSERT_EQ(acdbOpenObject(record, inner, AcDb::kForRead), Acad::eOk);
    AcDbObjectIdArray direct, all;
    record->getBlockReferenceIds(direct);
    record->getBlockReferenceIds(all, false);
    record->close();
    EXPECT_EQ(direct.length(), 1);
    EXPECT_EQ(all.length(), 2);
    EXPECT_TRUE(all.contains(outerRef));
    EXPECT_FALSE(innerRef.isEffectivelyErased());

    AcDbObject* outerObject = nullptr;
    ASSERT_EQ(acdbOpenAcDbObject(outerObject, outer, AcDb::kForWrite), Acad::eOk);
    outerObject->erase();
    outerObject->close();
    EXPECT_FALSE(innerRef.isErased());
    EXPECT_TRUE(innerRef.isEffectivelyErased());  // gone with the block that holds it
}

}  // namespace
