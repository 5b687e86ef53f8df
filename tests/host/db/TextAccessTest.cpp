// The texts of texts, attributes and attribute definitions: what the
// accessors without a copy show is what the copies show, at every length,
// and what is no character reads as U+FFFD; a reference walks attributes
// beyond the few it keeps inside itself.
#include <adslib.h>
#include <dbents.h>
#include <dbobjptr.h>
#include <dbsymtb.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "support/TestHost.h"

namespace {

std::wstring Take(ACHAR* text) {
    std::wstring out = text ? text : L"";
    acutDelBuffer(text);
    return out;
}

struct Case {
    std::wstring given;
    std::wstring read;  // what the object shows of it
};

// Texts of every length around what an object keeps inside itself, beyond
// ASCII, and values that are no characters.
std::vector<Case> Cases() {
    std::vector<Case> cases;
    const std::wstring letters = L"AB\u00D6\u20AC\U0001F600CDEFGHIJKLMNOPQRSTUVWXYZ";
    for (size_t length = 1; length <= 20; ++length) cases.push_back({letters.substr(0, length), letters.substr(0, length)});
    cases.push_back({std::wstring(300, L'Q'), std::wstring(300, L'Q')});
    cases.push_back({std::wstring(L"A") + wchar_t(0xD800) + L"B", L"A\uFFFDB"});
    cases.push_back({std::wstring(L"LONGER_THAN_SEVEN") + wchar_t(0xDFFF), L"LONGER_THAN_SEVEN\uFFFD"});
    cases.push_back({std::wstring(1, static_cast<wchar_t>(0x110000)), L"\uFFFD"});
    return cases;
}

TEST(TextAccessTest, TextsShowTheSameWithAndWithoutACopy) {
    for (const Case& c : Cases()) {
        SCOPED_TRACE(c.given.size());
        AcDbText made(AcGePoint3d::kOrigin, c.given.c_str());
        EXPECT_EQ(Take(made.textString()), c.read);
        EXPECT_EQ(std::wstring(made.textStringConst()), c.read);
        AcDbText set;
        ASSERT_EQ(set.setTextString(c.given.c_str()), Acad::eOk);
        EXPECT_EQ(Take(set.textString()), c.read);
        EXPECT_EQ(std::wstring(set.textStringConst()), c.read);
    }
    AcDbText empty;
    EXPECT_STREQ(empty.textStringConst(), L"");
}

TEST(TextAccessTest, AttributesShowTheirTagsAndTextsWithAndWithoutACopy) {
    for (const Case& c : Cases()) {
        SCOPED_TRACE(c.given.size());
        AcDbAttribute made(AcGePoint3d::kOrigin, c.given.c_str(), c.given.c_str());
        EXPECT_EQ(Take(made.tag()), c.read);
        EXPECT_EQ(std::wstring(made.tagConst()), c.read);
        EXPECT_EQ(std::wstring(made.textStringConst()), c.read);
        AcDbAttribute set;
        ASSERT_EQ(set.setTag(c.given.c_str()), Acad::eOk);
        EXPECT_EQ(Take(set.tag()), c.read);
        EXPECT_EQ(std::wstring(set.tagConst()), c.read);

        AcDbAttributeDefinition definition(AcGePoint3d::kOrigin, c.given.c_str(), c.given.c_str(), c.given.c_str());
        EXPECT_EQ(Take(definition.tag()), c.read);
        EXPECT_EQ(std::wstring(definition.tagConst()), c.read);
        EXPECT_EQ(Take(definition.prompt()), c.read);
        EXPECT_EQ(std::wstring(definition.promptConst()), c.read);
        ASSERT_EQ(definition.setPrompt((c.given + L" asked").c_str()), Acad::eOk);
        EXPECT_EQ(std::wstring(definition.promptConst()), c.read + L" asked");

        // An attribute made from the definition takes its texts whole.
        AcDbAttribute placed;
        ASSERT_EQ(placed.setAttributeFromBlock(&definition, AcGeMatrix3d::kIdentity), Acad::eOk);
        EXPECT_EQ(std::wstring(placed.tagConst()), c.read);
        EXPECT_EQ(std::wstring(placed.textStringConst()), c.read);
    }
    // A tag that is refused leaves the one before.
    AcDbAttribute attribute(AcGePoint3d::kOrigin, L"v", L"KEPT_TAG_OF_SOME_LENGTH");
    EXPECT_EQ(attribute.setTag(L""), Acad::eInvalidInput);
    EXPECT_EQ(attribute.setTag(L"TWO WORDS"), Acad::eInvalidInput);
    EXPECT_STREQ(attribute.tagConst(), L"KEPT_TAG_OF_SOME_LENGTH");
}

class ManyAttributesTest : public qmtest::HostTest {
protected:
    AcDbDatabase* db() { return acdbHostApplicationServices()->workingDatabase(); }
};

TEST_F(ManyAttributesTest, AReferenceWalksEveryAttributeInOrder) {
    AcDbObjectId block;
    {
        AcDbSymbolTablePointer<AcDbBlockTable> table(db(), AcDb::kForWrite);
        auto* record = new AcDbBlockTableRecord;
        record->setName(L"PANEL");
        ASSERT_EQ(table->add(block, record), Acad::eOk);
        record->close();
    }
    AcDbObjectId referenceId;
    std::vector<AcDbObjectId> attributes;
    {
        AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> model(db()->modelSpaceId(), AcDb::kForWrite);
        auto* reference = new AcDbBlockReference(AcGePoint3d::kOrigin, block);
        ASSERT_EQ(model->appendAcDbEntity(referenceId, reference), Acad::eOk);
        for (int i = 0; i < 9; ++i) {
            std::wstring tag = L"T" + std::to_wstring(i);
            auto* attribute = new AcDbAttribute(AcGePoint3d::kOrigin, (L"value " + std::to_wstring(i)).c_str(),
                                                tag.c_str());
            AcDbObjectId id;
            ASSERT_EQ(reference->appendAttribute(id, attribute), Acad::eOk);
            attribute->close();
            attributes.push_back(id);
        }
        reference->close();
    }
    auto walk = [&] {
        AcDbObjectPointer<AcDbBlockReference> reference(referenceId);
        std::unique_ptr<AcDbObjectIterator> it(reference->attributeIterator());
        std::vector<std::wstring> seen;
        for (; !it->done(); it->step()) {
            AcDbObjectPointer<AcDbAttribute> attribute(it->objectId());
            EXPECT_EQ(attribute.openStatus(), Acad::eOk);
            if (attribute.openStatus() == Acad::eOk)
                seen.push_back(std::wstring(attribute->tagConst()) + L"=" + attribute->textStringConst());
        }
        return seen;
    };
    std::vector<std::wstring> all;
    for (int i = 0; i < 9; ++i) all.push_back(L"T" + std::to_wstring(i) + L"=value " + std::to_wstring(i));
    EXPECT_EQ(walk(), all);
    {
        AcDbObjectPointer<AcDbBlockReference> reference(referenceId);
        EXPECT_EQ(std::vector<AcDbObjectId>(reference->attributeIds().begin(), reference->attributeIds().end()),
                  attributes);
    }
    // Erased ones are passed over, within the first four and beyond them.
    for (int erased : {1, 6}) {
        AcDbObjectPointer<AcDbAttribute> attribute(attributes[static_cast<size_t>(erased)], AcDb::kForWrite);
        ASSERT_EQ(attribute->erase(), Acad::eOk);
        all.erase(std::find(all.begin(), all.end(), L"T" + std::to_wstring(erased) + L"=value " +
                                                        std::to_wstring(erased)));
    }
    EXPECT_EQ(walk(), all);
}

}  // namespace
