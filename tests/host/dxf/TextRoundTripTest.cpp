// Texts, attribute definitions and multiline texts: each class's groups
// as files of a release write them, read, checked, written back the same.
#include <adslib.h>
#include <dbents.h>
#include <dbmtext.h>
#include <dbobjptr.h>

#include "support/DxfRoundTrip.h"

namespace {

using namespace qmtest;
constexpr auto kR12 = DxfRelease::kR12;
constexpr auto kR2000 = DxfRelease::kR2000;
constexpr auto kR2018 = DxfRelease::kR2018;

class TextRoundTripTest : public HostTest {
protected:
    void Expect(const std::vector<RoundTripCase>& cases) { ExpectRoundTrips(host(), m_folder.path(), cases); }
};

TEST_F(TextRoundTripTest, Texts) {
    auto plain = ForReleases(
        "text", {kR12, kR2000, kR2018}, DxfPlace::kEntities,
        [](DxfRelease r) {
            return EntityGroups(r, "TEXT", "A0", {{8, "0"}},
                                {{100, "AcDbText"}, {10, "1.0"}, {20, "2.0"}, {30, "0.0"}, {40, "2.5"},
                                 {1, "Door 12"}, {100, "AcDbText"}});
        },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbText> text(ObjectByHandle(db, "A0"));
            ASSERT_EQ(text.openStatus(), Acad::eOk);
            EXPECT_EQ(text->position(), AcGePoint3d(1, 2, 0));
            EXPECT_EQ(text->height(), 2.5);
            EXPECT_EQ(std::wstring(text->textStringConst()), L"Door 12");
            EXPECT_TRUE(text->isDefaultAlignment());
        });
    // Every optional group, some holding their defaults (rotation 0, width
    // 1, left, base line, the Z axis), with a style and a thickness the host
    // keeps.
    auto optional = ForReleases(
        "text_optional", {kR12, kR2000, kR2018}, DxfPlace::kEntities,
        [](DxfRelease r) {
            return EntityGroups(r, "TEXT", "A1", {{8, "0"}},
                                {{100, "AcDbText"}, {39, "0.5"}, {10, "1.0"}, {20, "2.0"}, {30, "0.0"},
                                 {40, "2.5"}, {1, "x"}, {50, "0.0"}, {41, "1.0"}, {7, "ROMANS"}, {72, "0"},
                                 {11, "0.0"}, {21, "0.0"}, {31, "0.0"}, {210, "0.0"}, {220, "0.0"}, {230, "1.0"},
                                 {100, "AcDbText"}, {73, "0"}});
        },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbText> text(ObjectByHandle(db, "A1"));
            ASSERT_EQ(text.openStatus(), Acad::eOk);
            EXPECT_EQ(text->rotationDegrees(), 0.0);
            EXPECT_EQ(text->widthFactor(), 1.0);
            EXPECT_EQ(text->horizontalMode(), AcDb::kTextLeft);
            EXPECT_EQ(text->verticalMode(), AcDb::kTextBase);
        });
    auto aligned = ForReleases(
        "text_aligned", {kR12, kR2000, kR2018}, DxfPlace::kEntities,
        [](DxfRelease r) {
            return EntityGroups(r, "TEXT", "A2", {{8, "0"}},
                                {{100, "AcDbText"}, {10, "1.0"}, {20, "2.0"}, {30, "0.0"}, {40, "2.5"},
                                 {1, "mid"}, {50, "45.0"}, {41, "0.75"}, {72, "1"}, {11, "5.0"}, {21, "6.0"},
                                 {31, "0.0"}, {100, "AcDbText"}, {73, "2"}});
        },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbText> text(ObjectByHandle(db, "A2"));
            ASSERT_EQ(text.openStatus(), Acad::eOk);
            EXPECT_EQ(text->rotationDegrees(), 45.0);
            EXPECT_EQ(text->widthFactor(), 0.75);
            EXPECT_EQ(text->horizontalMode(), AcDb::kTextCenter);
            EXPECT_EQ(text->verticalMode(), AcDb::kTextVertMid);
            EXPECT_EQ(text->planeAlignmentPoint(), AcGePoint3d(5, 6, 0));
        });
    Expect(plain);
    Expect(optional);
    Expect(aligned);
}

TEST_F(TextRoundTripTest, AttributeDefinitions) {
    auto plain = ForReleases(
        "attdef", {kR12, kR2000, kR2018}, DxfPlace::kEntities,
        [](DxfRelease r) {
            return EntityGroups(r, "ATTDEF", "B0", {{8, "0"}},
                                {{100, "AcDbText"}, {10, "0.0"}, {20, "-1.0"}, {30, "0.0"}, {40, "0.25"},
                                 {1, "90"}, {100, "AcDbAttributeDefinition"}, {3, "Size?"}, {2, "SIZE"},
                                 {70, "8"}});
        },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbAttributeDefinition> definition(ObjectByHandle(db, "B0"));
            ASSERT_EQ(definition.openStatus(), Acad::eOk);
            EXPECT_EQ(std::wstring(definition->tagConst()), L"SIZE");
            EXPECT_EQ(std::wstring(definition->promptConst()), L"Size?");
            EXPECT_EQ(std::wstring(definition->textStringConst()), L"90");
            EXPECT_TRUE(definition->isPreset());
            EXPECT_FALSE(definition->isConstant());
        });
    // The vertical mode holding its default, and a field length the host
    // keeps in the definition's part.
    auto optional = ForReleases(
        "attdef_optional", {kR12, kR2000, kR2018}, DxfPlace::kEntities,
        [](DxfRelease r) {
            return EntityGroups(r, "ATTDEF", "B1", {{8, "0"}},
                                {{100, "AcDbText"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {40, "1.0"},
                                 {1, ""}, {50, "90.0"}, {100, "AcDbAttributeDefinition"}, {3, "Tag?"},
                                 {2, "TAG"}, {70, "3"}, {73, "0"}, {74, "0"}});
        },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbAttributeDefinition> definition(ObjectByHandle(db, "B1"));
            ASSERT_EQ(definition.openStatus(), Acad::eOk);
            EXPECT_TRUE(definition->isInvisible());
            EXPECT_TRUE(definition->isConstant());
            EXPECT_EQ(definition->rotationDegrees(), 90.0);
            EXPECT_EQ(definition->verticalMode(), AcDb::kTextBase);
        });
    Expect(plain);
    Expect(optional);
}

TEST_F(TextRoundTripTest, MultilineTexts) {
    auto plain = ForReleases(
        "mtext", {kR2000, kR2018}, DxfPlace::kEntities,
        [](DxfRelease r) {
            return EntityGroups(r, "MTEXT", "C0", {{8, "0"}},
                                {{100, "AcDbMText"}, {10, "0.0"}, {20, "10.0"}, {30, "0.0"}, {40, "0.5"},
                                 {71, "1"}, {1, "Two\\Plines"}});
        },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbMText> mtext(ObjectByHandle(db, "C0"));
            ASSERT_EQ(mtext.openStatus(), Acad::eOk);
            EXPECT_EQ(mtext->location(), AcGePoint3d(0, 10, 0));
            EXPECT_EQ(mtext->textHeight(), 0.5);
            EXPECT_EQ(mtext->attachment(), AcDbMText::kTopLeft);
            ACHAR* contents = mtext->contents();
            EXPECT_EQ(std::wstring(contents), L"Two\\Plines");
            acutDelBuffer(contents);
        });
    // A width, a normal and a rotation holding their defaults, a style and
    // line spacing the host keeps; a text longer than one group, in chunks.
    std::string longText = std::string(250, 'a') + std::string(250, 'b') + "end";
    auto optional = ForReleases(
        "mtext_optional", {kR2000, kR2018}, DxfPlace::kEntities,
        [&](DxfRelease r) {
            return EntityGroups(r, "MTEXT", "C1", {{8, "0"}},
                                {{100, "AcDbMText"}, {10, "1.0"}, {20, "2.0"}, {30, "3.0"}, {40, "2.0"},
                                 {41, "0.0"}, {71, "5"}, {72, "1"}, {3, std::string(250, 'a')},
                                 {3, std::string(250, 'b')}, {1, "end"}, {7, "Standard"}, {210, "0.0"},
                                 {220, "0.0"}, {230, "1.0"}, {50, "0.0"}, {73, "1"}, {44, "1.0"}});
        },
        [&](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbMText> mtext(ObjectByHandle(db, "C1"));
            ASSERT_EQ(mtext.openStatus(), Acad::eOk);
            EXPECT_EQ(mtext->attachment(), AcDbMText::kMiddleCenter);
            EXPECT_EQ(mtext->width(), 0.0);
            ACHAR* contents = mtext->contents();
            EXPECT_EQ(cadhost::ToUtf8(contents), longText);
            acutDelBuffer(contents);
        });
    // A direction vector in place of a rotation.
    auto direction = ForReleases(
        "mtext_direction", {kR2018}, DxfPlace::kEntities,
        [](DxfRelease r) {
            return EntityGroups(r, "MTEXT", "C2", {{8, "0"}},
                                {{100, "AcDbMText"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {40, "1.0"},
                                 {41, "12.5"}, {71, "9"}, {1, "up"}, {11, "0.0"}, {21, "1.0"}, {31, "0.0"}});
        },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbMText> mtext(ObjectByHandle(db, "C2"));
            ASSERT_EQ(mtext.openStatus(), Acad::eOk);
            EXPECT_EQ(mtext->width(), 12.5);
            EXPECT_TRUE(mtext->direction().isEqualTo(AcGeVector3d(0, 1, 0)));
        });
    Expect(plain);
    Expect(optional);
    Expect(direction);
}

}  // namespace
