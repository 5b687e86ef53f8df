// Objects of the OBJECTS section: dictionaries and fields, as files of a
// release write them, read, checked, written back the same.
#include <dbdict.h>
#include <dbfield.h>
#include <dbobjptr.h>

#include "support/DxfRoundTrip.h"

namespace {

using namespace qmtest;
constexpr auto kR2000 = DxfRelease::kR2000;
constexpr auto kR2018 = DxfRelease::kR2018;

class ObjectRoundTripTest : public HostTest {
protected:
    void Expect(const std::vector<RoundTripCase>& cases) { ExpectRoundTrips(host(), m_folder.path(), cases); }
};

TEST_F(ObjectRoundTripTest, Dictionaries) {
    // The drawing's dictionary, with an owned and a referred entry, and one
    // it owns that says its entries are hard owned (280) and how a
    // duplicate name is treated (281, which the host keeps).
    auto cases = ForReleases(
        "dictionary", {kR2000, kR2018}, DxfPlace::kObjects,
        [](DxfRelease) {
            return Groups{{0, "DICTIONARY"}, {5, "C"},     {330, "0"},   {100, "AcDbDictionary"},
                          {281, "1"},         {3, "INNER"}, {350, "D"},   {3, "OWN"},
                          {360, "E"},         {0, "DICTIONARY"}, {5, "D"}, {102, "{ACAD_REACTORS"},
                          {330, "C"},         {102, "}"},   {330, "C"},   {100, "AcDbDictionary"},
                          {280, "1"},         {281, "1"},   {0, "DICTIONARY"}, {5, "E"},
                          {102, "{ACAD_REACTORS"}, {330, "C"}, {102, "}"}, {330, "C"},
                          {100, "AcDbDictionary"}, {280, "0"}, {281, "1"}};
        },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbDictionary> root(ObjectByHandle(db, "C"));
            ASSERT_EQ(root.openStatus(), Acad::eOk);
            EXPECT_EQ(root->numEntries(), 2u);
            AcDbObjectId inner;
            EXPECT_EQ(root->getAt(L"INNER", inner), Acad::eOk);
            EXPECT_EQ(inner, ObjectByHandle(db, "D"));
            AcDbObjectPointer<AcDbDictionary> hard(inner);
            ASSERT_EQ(hard.openStatus(), Acad::eOk);
            EXPECT_TRUE(hard->isTreatElementsAsHard());
            AcDbObjectPointer<AcDbDictionary> soft(ObjectByHandle(db, "E"));
            ASSERT_EQ(soft.openStatus(), Acad::eOk);
            EXPECT_FALSE(soft->isTreatElementsAsHard());
        });
    Expect(cases);
}

TEST_F(ObjectRoundTripTest, Fields) {
    // A text field holding one area field, filed in a dictionary, as a
    // file that had evaluated them wrote them.
    auto cases = ForReleases(
        "field", {kR2018}, DxfPlace::kObjects,
        [](DxfRelease) {
            return Groups{{0, "DICTIONARY"}, {5, "C"}, {330, "0"}, {100, "AcDbDictionary"}, {281, "1"},
                          {3, "QM"}, {360, "36"},
                          {0, "FIELD"}, {5, "36"}, {102, "{ACAD_REACTORS"}, {330, "C"}, {102, "}"}, {330, "C"},
                          {100, "AcDbField"}, {1, "_text"}, {2, "%<\\_FldIdx 0>%"}, {90, "1"}, {360, "37"},
                          {97, "0"}, {91, "63"}, {92, "0"}, {94, "2"}, {95, "2"}, {96, "0"}, {300, ""},
                          {93, "0"}, {7, "ACFD_FIELD_VALUE"}, {93, "0"}, {90, "4"}, {1, "Area: 12.57"},
                          {94, "0"}, {300, ""}, {302, ""}, {304, "ACVALUE_END"}, {301, ""}, {98, "0"},
                          {0, "FIELD"}, {5, "37"}, {102, "{ACAD_REACTORS"}, {330, "36"}, {102, "}"},
                          {330, "36"}, {100, "AcDbField"}, {1, "AcArea"}, {2, "\\AcArea Object(<51>)"},
                          {90, "0"}, {97, "0"}, {91, "63"}, {92, "0"}, {94, "2"}, {95, "2"}, {96, "0"},
                          {300, ""}, {93, "1"}, {6, "AcArea Data"}, {90, "4"}, {1, "Object(<51>)"}, {94, "0"},
                          {300, ""}, {302, ""}, {304, "ACVALUE_END"}, {7, "ACFD_FIELD_VALUE"}, {93, "0"},
                          {90, "2"}, {140, "12.566370614359172"}, {94, "0"}, {300, ""}, {302, ""},
                          {304, "ACVALUE_END"}, {301, "%lu2%pr2"}, {98, "8"}};
        },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbField> text(ObjectByHandle(db, "36"));
            ASSERT_EQ(text.openStatus(), Acad::eOk);
            EXPECT_EQ(std::wstring(text->evaluatorId()), L"_text");
            EXPECT_TRUE(text->isTextField());
            EXPECT_EQ(text->childCount(), 1);
            AcDbObjectPointer<AcDbField> area(ObjectByHandle(db, "37"));
            ASSERT_EQ(area.openStatus(), Acad::eOk);
            EXPECT_EQ(std::wstring(area->evaluatorId()), L"AcArea");
            EXPECT_EQ(std::wstring(area->getFormat()), L"%lu2%pr2");
            ASSERT_EQ(area->dataCount(), 1);
            EXPECT_EQ(std::wstring(area->dataKey(0)), L"AcArea Data");
            EXPECT_EQ(area->evaluationStatus(), AcDbField::kSuccess);
        });
    Expect(cases);
}

}  // namespace
