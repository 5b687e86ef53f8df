// Dynamic blocks: the tie of anonymous copies to their block, properties
// with typed values, and each reference's own values.
#include <adslib.h>
#include <dbdynblk.h>
#include <dbents.h>
#include <dbobjptr.h>
#include <dbsymtb.h>

#include "db/DynamicBlocks.h"
#include "support/TestHost.h"

namespace {

class DynamicBlockTest : public qmtest::HostTest {
protected:
    AcDbDatabase* db() { return acdbHostApplicationServices()->workingDatabase(); }

    AcDbObjectId AddBlock(const wchar_t* name) {
        AcDbSymbolTablePointer<AcDbBlockTable> table(db(), AcDb::kForWrite);
        auto* record = new AcDbBlockTableRecord;
        record->setName(name);
        AcDbObjectId id;
        EXPECT_EQ(table->add(id, record), Acad::eOk);
        record->close();
        return id;
    }

    AcDbObjectId Insert(AcDbObjectId blockId) {
        AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> model(db()->modelSpaceId(), AcDb::kForWrite);
        AcDbObjectId id;
        auto* reference = new AcDbBlockReference(AcGePoint3d::kOrigin, blockId);
        EXPECT_EQ(model->appendAcDbEntity(id, reference), Acad::eOk);
        reference->close();
        return id;
    }

    static std::vector<std::wstring> Describe(const AcDbDynBlockReferencePropertyArray& properties) {
        std::vector<std::wstring> out;
        for (const AcDbDynBlockReferenceProperty& p : properties) {
            AcDbEvalVariant v = p.value();
            std::wstring text = std::wstring(p.propertyName().kwszPtr()) + L"=";
            switch (v.restype) {
            case 1: text += v.resval.rstring; break;
            case 40: text += std::to_wstring(v.resval.rreal); break;
            case 70: text += L"short " + std::to_wstring(v.resval.rint); break;
            case 90: text += L"long " + std::to_wstring(v.resval.rlong); break;
            case 10: text += L"point"; break;
            default: text += L"?"; break;
            }
            if (p.readOnly()) text += L" ro";
            if (!p.show()) text += L" hidden";
            out.push_back(text);
        }
        return out;
    }

    AcDbObjectId m_door, m_copy, m_plain;

    void SetUp() override {
        qmtest::HostTest::SetUp();
        m_door = AddBlock(L"DOOR");
        m_copy = AddBlock(L"*U7");
        m_plain = AddBlock(L"PLAIN");
        using cadhost::DynamicPropertyDefinition;
        ASSERT_EQ(cadhost::AddDynamicProperty(m_door, {L"Width", L"", AcDbEvalVariant(0.9), true, false}), Acad::eOk);
        ASSERT_EQ(cadhost::AddDynamicProperty(m_door, {L"Visibility", L"", AcDbEvalVariant(L"Open"), true, false}),
                  Acad::eOk);
        ASSERT_EQ(cadhost::AddDynamicProperty(m_door, {L"Flip", L"", AcDbEvalVariant(short(0)), false, false}),
                  Acad::eOk);
        ASSERT_EQ(cadhost::AddDynamicProperty(m_door, {L"Count", L"", AcDbEvalVariant(Adesk::Int32(3)), true, true}),
                  Acad::eOk);
        ASSERT_EQ(cadhost::AddDynamicProperty(m_door, {L"Origin", L"", AcDbEvalVariant(AcGePoint3d(1, 2, 0)), true,
                                                       false}),
                  Acad::eOk);
        ASSERT_EQ(cadhost::TieAnonymousCopy(m_copy, m_door), Acad::eOk);
    }
};

TEST_F(DynamicBlockTest, AnonymousCopyIsTiedToItsBlock) {
    AcDbObjectId onCopy = Insert(m_copy), onDoor = Insert(m_door), onPlain = Insert(m_plain);
    AcDbDynBlockReference copy(onCopy), door(onDoor), plain(onPlain);
    EXPECT_TRUE(copy.isDynamicBlock());
    EXPECT_EQ(copy.dynamicBlockTableRecord(), m_door);
    EXPECT_EQ(copy.anonymousBlockTableRecord(), m_copy);
    EXPECT_TRUE(door.isDynamicBlock());
    EXPECT_EQ(door.dynamicBlockTableRecord(), m_door);
    EXPECT_TRUE(door.anonymousBlockTableRecord().isNull());
    EXPECT_FALSE(plain.isDynamicBlock());
    EXPECT_TRUE(plain.dynamicBlockTableRecord().isNull());
    AcDbDynBlockReferencePropertyArray properties;
    plain.getBlockProperties(properties);
    EXPECT_EQ(properties.length(), 0);
    EXPECT_FALSE(AcDbDynBlockReference(db()->modelSpaceId()).isDynamicBlock());  // not a reference at all

    // The tie is the platform's extended data on the anonymous record.
    AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> record(m_copy);
    resbuf* tie = record->xData(L"AcDbBlockRepBTag");
    ASSERT_NE(tie, nullptr);
    ASSERT_NE(tie->rbnext, nullptr);
    EXPECT_EQ(tie->rbnext->restype, 1070);
    ASSERT_NE(tie->rbnext->rbnext, nullptr);
    EXPECT_EQ(tie->rbnext->rbnext->restype, 1005);
    ACHAR handle[17];
    m_door.handle().getIntoAsciiBuffer(handle);
    EXPECT_STREQ(tie->rbnext->rbnext->resval.rstring, handle);
    acutRelRb(tie);
}

TEST_F(DynamicBlockTest, PropertiesCarryTypedValuesPerReference) {
    AcDbObjectId first = Insert(m_copy), second = Insert(m_copy);
    AcDbDynBlockReferencePropertyArray properties;
    AcDbDynBlockReference(first).getBlockProperties(properties);
    EXPECT_EQ(Describe(properties),
              (std::vector<std::wstring>{L"Width=0.900000", L"Visibility=Open", L"Flip=short 0 hidden",
                                         L"Count=long 3 ro", L"Origin=point"}));
    EXPECT_EQ(properties[0].propertyType(), AcDb::kDwgReal);
    EXPECT_EQ(properties[1].propertyType(), AcDb::kDwgText);
    EXPECT_EQ(properties[2].propertyType(), AcDb::kDwgInt16);
    EXPECT_EQ(properties[3].propertyType(), AcDb::kDwgInt32);

    EXPECT_EQ(properties[0].setValue(AcDbEvalVariant(1.2)), Acad::eOk);
    EXPECT_EQ(properties[1].setValue(AcDbEvalVariant(L"Closed")), Acad::eOk);
    EXPECT_EQ(properties[1].setValue(AcDbEvalVariant(2.0)), Acad::eInvalidInput);  // a text stays a text
    EXPECT_EQ(properties[3].setValue(AcDbEvalVariant(Adesk::Int32(4))), Acad::eNotApplicable);

    AcDbDynBlockReference(first).getBlockProperties(properties);
    EXPECT_EQ(Describe(properties)[0], L"Width=1.200000");
    EXPECT_EQ(Describe(properties)[1], L"Visibility=Closed");
    AcDbDynBlockReference(second).getBlockProperties(properties);
    EXPECT_EQ(Describe(properties)[0], L"Width=0.900000");  // the other reference keeps the default

    AcDbDynBlockReference reset(first);
    ASSERT_EQ(reset.resetBlock(), Acad::eOk);
    reset.getBlockProperties(properties);
    EXPECT_EQ(Describe(properties)[0], L"Width=0.900000");
}

TEST_F(DynamicBlockTest, DefinitionsRefuseBadProperties) {
    EXPECT_EQ(cadhost::AddDynamicProperty(m_door, {L"width", L"", AcDbEvalVariant(1.0), true, false}),
              Acad::eDuplicateKey);
    EXPECT_EQ(cadhost::AddDynamicProperty(m_door, {L"", L"", AcDbEvalVariant(1.0), true, false}),
              Acad::eInvalidInput);
    EXPECT_EQ(cadhost::AddDynamicProperty(m_door, {L"Empty", L"", AcDbEvalVariant(), true, false}),
              Acad::eInvalidInput);
    EXPECT_EQ(cadhost::AddDynamicProperty(db()->layerTableId(), {L"X", L"", AcDbEvalVariant(1.0), true, false}),
              Acad::eNotThatKindOfClass);
    // A tie to a block that is not dynamic ties nothing.
    AcDbObjectId other = AddBlock(L"*U8");
    ASSERT_EQ(cadhost::TieAnonymousCopy(other, m_plain), Acad::eOk);
    EXPECT_FALSE(AcDbDynBlockReference(Insert(other)).isDynamicBlock());
}

TEST(EvalVariantTest, CopiesOwnTheirText) {
    AcDbEvalVariant a(L"text");
    AcDbEvalVariant b = a;
    a = AcDbEvalVariant(2.5);
    EXPECT_STREQ(b.resval.rstring, L"text");
    EXPECT_EQ(a.restype, 40);
    EXPECT_TRUE(b == AcDbEvalVariant(L"text"));
    EXPECT_FALSE(b == AcDbEvalVariant(L"Text"));
    EXPECT_TRUE(AcDbEvalVariant().isEmpty());
}

}  // namespace
