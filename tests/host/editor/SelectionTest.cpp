// Object selection: picks answered by the input queue, windows in the
// current user coordinate system, the whole drawing, and filter lists.
#include <acedads.h>
#include <dbents.h>
#include <dbobjptr.h>
#include <dbtable.h>

#include <algorithm>
#include <array>
#include <set>

#include "db/KeptObjects.h"
#include "editor/Wildcard.h"
#include "support/DxfGroups.h"
#include "support/TestHost.h"

namespace {

std::string HandleText(AcDbObjectId id) {
    ACHAR text[17];
    id.handle().getIntoAsciiBuffer(text);
    return cadhost::ToUtf8(text);
}

class SelectionTest : public qmtest::HostTest {
protected:
    AcDbDatabase* db() { return acdbHostApplicationServices()->workingDatabase(); }

    void SetUp() override {
        qmtest::HostTest::SetUp();
        std::wstring error;
        ASSERT_TRUE(host().OpenDrawing(qmtest::FixturePath("drawing_r2010.dxf"), error));
        m_figures = qmtest::ReadFigures(qmtest::FixturePath("drawing_r2010.figures.tsv"));
        TakeOutput();
    }

    // The handles of a set, in set order; the set is freed. Empty when
    // acedSSGet did not answer RTNORM (the answer is in m_status).
    std::vector<std::string> Select(const ACHAR* mode, const double* a, const double* b, const resbuf* filter) {
        ads_name set = {0, 0};
        m_status = acedSSGet(mode, a, b, filter, set);
        std::vector<std::string> handles;
        if (m_status != RTNORM) return handles;
        Adesk::Int32 length = -1;
        EXPECT_EQ(acedSSLength(set, &length), RTNORM);
        for (Adesk::Int32 i = 0; i < length; ++i) {
            ads_name name;
            EXPECT_EQ(acedSSName(set, i, name), RTNORM);
            AcDbObjectId id;
            EXPECT_EQ(acdbGetObjectId(id, name), Acad::eOk);
            handles.push_back(HandleText(id));
        }
        EXPECT_EQ(acedSSFree(set), RTNORM);
        EXPECT_EQ(acedSSLength(set, &length), RTERROR) << "a freed set is gone";
        return handles;
    }

    // The entities of the figures that a predicate keeps, in file order.
    template <class P>
    std::vector<std::string> Expected(P keep) {
        std::vector<std::string> handles;
        for (const qmtest::FigureRecord& r : m_figures)
            if (r[0] == "entity" && keep(r)) handles.push_back(r[1]);
        return handles;
    }

    std::vector<qmtest::FigureRecord> m_figures;
    int m_status = 0;
};

TEST(WildcardTest, PatternsMatchAsTheEditorDoes) {
    struct Case {
        const wchar_t* text;
        const wchar_t* pattern;
        bool match;
    };
    const Case cases[] = {
        {L"LWPOLYLINE", L"LWPOLYLINE", true},  {L"LWPOLYLINE", L"*POLY*", true},   {L"POLYLINE", L"LW*", false},
        {L"A1", L"@#", true},                  {L"AB", L"@#", false},              {L"A-1", L"@.#", true},
        {L"DOOR", L"D??R", true},              {L"DOR", L"D??R", false},           {L"DOOR", L"~DOOR", false},
        {L"WINDOW", L"~DOOR", true},           {L"CIRCLE", L"ARC,CIRCLE,LINE", true},
        {L"TEXT", L"ARC,CIRCLE,LINE", false},  {L"B3", L"[ABC]#", true},           {L"D3", L"[A-C]#", false},
        {L"D3", L"[~A-C]#", true},             {L"*U2", L"`*U#", true},            {L"XU2", L"`*U#", false},
        {L"A,B", L"A`,B", true},               {L"", L"*", true},                  {L"", L"?", false},
        {L"[x", L"[x", false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(cadhost::WildcardMatch(c.text, c.pattern, false), c.match) << cadhost::ToUtf8(c.text) << " / "
                                                                             << cadhost::ToUtf8(c.pattern);
        EXPECT_EQ(acutWcMatch(c.text, c.pattern), c.match ? RTNORM : RTERROR);
    }
    EXPECT_EQ(acutWcMatch(L"door", L"DOOR"), RTERROR);
    EXPECT_EQ(acutWcMatchEx(L"door", L"DOOR", true), RTNORM);
    EXPECT_EQ(acutWcMatchEx(L"gr\u00F6\u00DFe", L"GR\u00D6*", true), RTNORM);
    EXPECT_EQ(acutWcMatch(nullptr, L"*"), RTERROR);
}

TEST_F(SelectionTest, WholeDrawingWithFilters) {
    auto type = [](const char* t) { return [t](const qmtest::FigureRecord& r) { return r[2] == t; }; };
    struct Case {
        const char* name;
        resbuf* filter;
        std::vector<std::string> expected;
    };
    std::vector<Case> cases;
    cases.push_back({"no filter", nullptr, Expected([](auto&) { return true; })});
    cases.push_back({"circles", acutBuildList(RTDXF0, L"CIRCLE", 0), Expected(type("CIRCLE"))});
    cases.push_back({"type names ignore case", acutBuildList(RTDXF0, L"circle", 0), Expected(type("CIRCLE"))});
    cases.push_back({"a layer", acutBuildList(8, L"walls", 0), Expected([](auto& r) { return r[4] == "WALLS"; })});
    cases.push_back({"lines on WALLS", acutBuildList(RTDXF0, L"LINE", 8, L"WALLS", 0),
                     Expected([](auto& r) { return r[2] == "LINE" && r[4] == "WALLS"; })});
    // The filter of the Objects Area page.
    cases.push_back({"circles or polylines",
                     acutBuildList(-4, L"<or", -4, L"<and", RTDXF0, L"CIRCLE", -4, L"and>", -4, L"<and", RTDXF0,
                                   L"LWPOLYLINE", -4, L"and>", -4, L"or>", 0),
                     Expected([](auto& r) { return r[2] == "CIRCLE" || r[2] == "LWPOLYLINE"; })});
    cases.push_back({"wildcard types", acutBuildList(RTDXF0, L"ARC,*LINE", 0),
                     Expected([](auto& r) {
                         return r[2] == "ARC" || r[2] == "LINE" || r[2] == "LWPOLYLINE" || r[2] == "SPLINE";
                     })});
    cases.push_back({"not on layer 0", acutBuildList(-4, L"<not", 8, L"0", -4, L"not>", 0),
                     Expected([](auto& r) { return r[4] != "0"; })});
    cases.push_back({"circles xor on OFF",
                     acutBuildList(-4, L"<xor", RTDXF0, L"CIRCLE", 8, L"OFF", -4, L"xor>", 0),
                     Expected([](auto& r) { return (r[2] == "CIRCLE") != (r[4] == "OFF"); })});
    cases.push_back({"references of DOOR", acutBuildList(RTDXF0, L"INSERT", 2, L"DOOR", 0),
                     std::vector<std::string>{"6A", "72", "77", "8A"}});
    cases.push_back({"paper space", acutBuildList(67, 1, 0), Expected([](auto& r) { return r[3] == "paper"; })});
    cases.push_back({"not paper space", acutBuildList(-4, L"!=", 67, 1, 0),
                     Expected([](auto& r) { return r[3] == "model"; })});
    cases.push_back({"nothing of that type", acutBuildList(RTDXF0, L"HATCH", 0), {}});
    for (Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::vector<std::string> found = Select(L"X", nullptr, nullptr, c.filter);
        EXPECT_EQ(m_status, c.expected.empty() ? RTERROR : RTNORM);
        EXPECT_EQ(found, c.expected);
        if (c.filter) acutRelRb(c.filter);
    }
    EXPECT_EQ(Select(L"_X", nullptr, nullptr, nullptr).size(), Expected([](auto&) { return true; }).size());
}

TEST_F(SelectionTest, MalformedFiltersAreRefused) {
    const std::vector<resbuf*> filters = {
        acutBuildList(-4, L"<or", RTDXF0, L"LINE", 0),                                  // not closed
        acutBuildList(RTDXF0, L"LINE", -4, L"or>", 0),                                  // closes nothing
        acutBuildList(-4, L"<not", RTDXF0, L"LINE", 8, L"0", -4, L"not>", 0),           // two operands
        acutBuildList(-4, L"<xor", RTDXF0, L"LINE", -4, L"xor>", 0),                    // one operand
        acutBuildList(-4, L"<and", -4, L"and>", 0),                                     // empty
        acutBuildList(-4, L"<or", RTDXF0, L"LINE", -4, L"and>", 0),                     // wrong closer
        acutBuildList(-4, L"<nand", RTDXF0, L"LINE", -4, L"nand>", 0),                  // no such operator
        acutBuildList(RTDXF0, L"LINE", -4, L"=", 0),                                    // relation at the end
    };
    for (resbuf* filter : filters) {
        ads_name set = {0, 0};
        EXPECT_EQ(acedSSGet(L"X", nullptr, nullptr, filter, set), RTERROR);
        acutRelRb(filter);
    }
    EXPECT_NE(TakeOutput().find("Invalid selection filter"), std::string::npos);
    ads_name set;
    EXPECT_EQ(acedSSGet(L"Q", nullptr, nullptr, nullptr, set), RTERROR);  // no such mode
    EXPECT_EQ(acedSSGet(nullptr, nullptr, nullptr, nullptr, nullptr), RTERROR);
}

TEST_F(SelectionTest, PicksComeFromTheInputQueue) {
    resbuf* filter = acutBuildList(-4, L"<or", RTDXF0, L"CIRCLE", RTDXF0, L"LWPOLYLINE", -4, L"or>", 0);
    // 50 is a line (filtered out), 5E a line on a frozen layer, 87 in paper
    // space, FFFF no object; 52 a circle given twice, 57 a polyline.
    host().input().Pick({L"50", L"52", L"5E", L"87", L"FFFF", L"57", L"52"});
    EXPECT_EQ(Select(nullptr, nullptr, nullptr, filter), (std::vector<std::string>{"52", "57"}));
    EXPECT_EQ(TakeOutput(), "Select objects: 2 found");
    host().input().Pick({L"50"});
    EXPECT_TRUE(Select(nullptr, nullptr, nullptr, filter).empty());
    EXPECT_EQ(m_status, RTERROR);  // nothing was left
    host().input().Escape();
    EXPECT_TRUE(Select(nullptr, nullptr, nullptr, filter).empty());
    EXPECT_EQ(m_status, RTCAN);
    EXPECT_TRUE(Select(nullptr, nullptr, nullptr, filter).empty());
    EXPECT_EQ(m_status, RTCAN) << "an empty queue answers like Escape";
    EXPECT_NE(TakeOutput().find("*Cancel*"), std::string::npos);
    acutRelRb(filter);
    // In paper space, paper space objects are picked.
    db()->setTilemode(false);
    host().input().Pick({L"52", L"87"});
    EXPECT_EQ(Select(L"", nullptr, nullptr, nullptr), (std::vector<std::string>{"87"}));
}

TEST_F(SelectionTest, WindowKeepsWhatLiesWhollyInside) {
    resbuf* inserts = acutBuildList(RTDXF0, L"INSERT", 0);
    // The door at (60,0) reaches to x 61 (its attributes); the one at
    // (65,0) is turned a quarter and twice the size: from x 63.2 to 66.2,
    // where its constant attribute ends; the one at (70,0) lies on a frozen
    // layer.
    double a[3] = {59, -3, 0}, b[3] = {67, 2, 0};
    EXPECT_EQ(Select(L"W", a, b, inserts), (std::vector<std::string>{"6A", "72"}));
    double c[3] = {59.5, -3, 0}, d[3] = {64.5, 2, 0};
    EXPECT_EQ(Select(L"W", c, d, inserts), (std::vector<std::string>{"6A"}));
    EXPECT_EQ(Select(L"C", c, d, inserts), (std::vector<std::string>{"6A", "72"})) << "crossing";
    // Corners in either order.
    EXPECT_EQ(Select(L"W", d, c, inserts), (std::vector<std::string>{"6A"}));
    double e[3] = {69, -3, 0}, f[3] = {72, 2, 0};
    EXPECT_TRUE(Select(L"W", e, f, inserts).empty()) << "not what a frozen layer hides";
    EXPECT_EQ(m_status, RTERROR);
    // A nested block: FRAME at (80,5) turned 30 degrees holds a door at
    // (1,0) and a circle of radius 0.25; its attribute at (80,6), seven
    // characters 2.5 high, reaches to x 97.5.
    double g[3] = {78, 3, 0}, h[3] = {98, 9, 0};
    EXPECT_EQ(Select(L"W", g, h, inserts), (std::vector<std::string>{"7A"}));
    double i[3] = {79.8, 3, 0}, j[3] = {98, 9, 0};
    EXPECT_TRUE(Select(L"W", i, j, inserts).empty()) << "the circle at the origin of FRAME sticks out";
    acutRelRb(inserts);
    // Paper space current: only its objects.
    db()->setTilemode(false);
    double k[3] = {-1, -1, 0}, l[3] = {101, 61, 0};
    EXPECT_EQ(Select(L"W", k, l, nullptr), (std::vector<std::string>{"86", "87", "88"}));
}

TEST_F(SelectionTest, WindowCornersAreInTheCurrentUcs) {
    resbuf* lines = acutBuildList(RTDXF0, L"LINE", 8, L"WALLS", 0);
    // The line from (0,0) to (10,0) and the line (1,2,3)-(4,6,3).
    double a[3] = {-1, -1, 0}, b[3] = {11, 1, 0};
    EXPECT_EQ(Select(L"W", a, b, lines), (std::vector<std::string>{"50"}));
    // A system moved by (100,100) and turned a quarter: world x is user y.
    ASSERT_EQ(db()->setUcs(AcGePoint3d(100, 100, 0), AcGeVector3d(0, 1, 0), AcGeVector3d(-1, 0, 0)), Acad::eOk);
    EXPECT_TRUE(Select(L"W", a, b, lines).empty());
    double c[3] = {-101, 89, 0}, d[3] = {-99, 101, 0};
    EXPECT_EQ(Select(L"W", c, d, lines), (std::vector<std::string>{"50"}));
    acutRelRb(lines);
}

TEST_F(SelectionTest, SetsAreLimitedAndFreed) {
    std::vector<std::array<Adesk::LongPtr, 2>> sets;
    for (int n = 0; n < 128; ++n) {
        ads_name set;
        ASSERT_EQ(acedSSGet(L"X", nullptr, nullptr, nullptr, set), RTNORM) << n;
        sets.push_back({set[0], set[1]});
    }
    ads_name extra;
    EXPECT_EQ(acedSSGet(L"X", nullptr, nullptr, nullptr, extra), RTERROR);
    for (auto& set : sets) {
        ads_name name = {set[0], set[1]};
        EXPECT_EQ(acedSSFree(name), RTNORM);
        EXPECT_EQ(acedSSFree(name), RTERROR);
    }
    EXPECT_EQ(acedSSGet(L"X", nullptr, nullptr, nullptr, extra), RTNORM);
    Adesk::Int32 length = 0;
    ASSERT_EQ(acedSSLength(extra, &length), RTNORM);
    ads_name entity;
    EXPECT_EQ(acedSSName(extra, length, entity), RTERROR);
    EXPECT_EQ(acedSSName(extra, -1, entity), RTERROR);
    // A set made by adding one entity.
    ASSERT_EQ(acedSSName(extra, 0, entity), RTNORM);
    ads_name built;
    ASSERT_EQ(acedSSAdd(entity, nullptr, built), RTNORM);
    ASSERT_EQ(acedSSAdd(entity, built, built), RTNORM);
    ASSERT_EQ(acedSSLength(built, &length), RTNORM);
    EXPECT_EQ(length, 1);
    acedSSFree(built);
    acedSSFree(extra);
    ads_name entityAsSet = {entity[0], entity[1]};
    EXPECT_EQ(acedSSLength(entityAsSet, &length), RTERROR) << "an entity's name is no set";
}

TEST_F(SelectionTest, TablesUnderAPointAsTheTableCellPageFindsThem) {
    std::wstring error;
    ASSERT_TRUE(host().OpenDrawing(qmtest::FixturePath("tables_r2010.dxf"), error));
    resbuf* filter = acutBuildList(RTDXF0, L"ACAD_TABLE", 0);
    std::vector<std::string> tables = Select(L"X", nullptr, nullptr, filter);
    EXPECT_EQ(tables, (std::vector<std::string>{"3B", "3C"})) << "every table, in every space";
    acutRelRb(filter);
    struct Case {
        bool model;
        double x, y;
        std::string table;
        int row, column;
    };
    const Case cases[] = {{true, 65.5, 18.0, "3B", 2, 27}, {true, 5.5, 5.5, "", -1, -1},
                          {false, 5.5, 5.5, "3C", 0, 0}, {false, 65.5, 18.0, "", -1, -1}};
    for (const Case& c : cases) {
        db()->setTilemode(c.model);
        std::string found;
        int row = -1, column = -1;
        for (const std::string& handle : tables) {
            AcDbObjectId id;
            db()->getAcDbObjectId(id, false, AcDbHandle(cadhost::FromUtf8(handle).c_str()));
            AcDbObjectPointer<AcDbTable> table(id);
            if (table->ownerId() != db()->currentSpaceId()) continue;
            if (table->hitTest(AcGePoint3d(c.x, c.y, 0), AcGeVector3d::kZAxis, 0, 0, row, column)) {
                found = handle;
                break;
            }
        }
        EXPECT_EQ(found, c.table) << c.x << "," << c.y;
        if (!c.table.empty()) {
            EXPECT_EQ(row, c.row);
            EXPECT_EQ(column, c.column);
        }
    }
}

}  // namespace
