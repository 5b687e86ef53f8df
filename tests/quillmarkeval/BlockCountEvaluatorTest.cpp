// The AcBlockCount evaluator: counts by name, layer and attribute
// condition, through nesting, in a space and a window, over dynamic blocks
// and their anonymous copies, and what it makes of codes it cannot read.
#include <dbfield.h>
#include <dbobjptr.h>

#include <functional>
#include <limits>
#include <string>

#include "BlockCountQuery.h"
#include "EvaluatorLoader.h"
#include "support/BlockDrawings.h"
#include "support/TestHost.h"

namespace {

const std::filesystem::path kBin = QM_OUTPUT_DIR;

class BlockCountEvaluatorTest : public qmtest::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        ASSERT_TRUE(host().linker().loadModule(cadhost::FromUtf8((kBin / "QuillmarkEval.dbx").string()).c_str(), true))
            << TakeOutput();
        m_drawing = std::make_unique<qmtest::BlockDrawing>(db());
    }

    AcDbDatabase* db() { return acdbHostApplicationServices()->workingDatabase(); }
    qmtest::BlockDrawing& drawing() { return *m_drawing; }

    // What a field of the code shows, "####" with the message when it fails.
    struct Outcome {
        std::wstring value;
        int status = 0;
        std::wstring message;
        std::wstring data;  // "-" without the data item
    };
    Outcome Evaluate(const std::wstring& code) {
        AcDbField field;
        Outcome outcome;
        if (field.setFieldCode(code.c_str()) != Acad::eOk) {
            outcome.value = L"(not a code)";
            return outcome;
        }
        field.evaluate(AcDbField::kPreview, db());
        ACHAR* message = nullptr;
        outcome.status = field.evaluationStatus(nullptr, &message);
        outcome.message = message ? message : L"";
        acutDelBuffer(message);
        outcome.value = field.getValue();
        AcFdFieldValue data;
        const ACHAR* text = nullptr;
        outcome.data = field.getData(L"AcBlockCount Data", &data) == Acad::eOk && data.get(text) ? text : L"-";
        return outcome;
    }
    std::wstring Count(const std::wstring& arguments) {
        return Evaluate(L"%<\\AcBlockCount " + arguments + L">%").value;
    }

    std::unique_ptr<qmtest::BlockDrawing> m_drawing;
};

// A plan: doors and windows in model space and paper space, rooms that hold
// doors and a window, a house that holds rooms and a door, and a definition
// that holds doors but is never placed.
class PlanTest : public BlockCountEvaluatorTest {
protected:
    void SetUp() override {
        BlockCountEvaluatorTest::SetUp();
        qmtest::BlockDrawing& d = drawing();
        door = d.Block(L"Door", {L"TYPE", L"SIZE"});
        window = d.Block(L"WIN", {L"SIZE"});
        room = d.Block(L"ROOM");
        house = d.Block(L"HOUSE");
        unused = d.Block(L"UNUSED");
        d.Insert(room, door, {0, 0, 0}, L"A", {{L"TYPE", L"swing"}, {L"SIZE", L"90"}});
        d.Insert(room, door, {2, 0, 0}, L"B", {{L"TYPE", L"slide"}, {L"SIZE", L"120"}});
        d.Insert(room, window, {4, 0, 0}, L"A", {{L"SIZE", L"60"}});
        for (int i = 0; i < 3; ++i) d.Insert(house, room, {10.0 * i, 0, 0}, L"0");
        d.Insert(house, door, {40, 0, 0}, L"B", {{L"TYPE", L"Swing"}, {L"SIZE", L"80"}});
        d.Insert(unused, door, {0, 0, 0}, L"A", {{L"TYPE", L"swing"}, {L"SIZE", L"90"}});
        // Model space: two doors, a window, two rooms and a house.
        d.Insert(d.modelSpace(), door, {0, 0, 0}, L"A", {{L"TYPE", L"swing"}, {L"SIZE", L"100"}});
        d.Insert(d.modelSpace(), door, {2, 0, 0}, L"B", {{L"SIZE", L"abc"}});
        d.Insert(d.modelSpace(), window, {4, 0, 0}, L"B", {{L"SIZE", L"1e400"}});
        d.Insert(d.modelSpace(), room, {0, 10, 0}, L"0");
        d.Insert(d.modelSpace(), room, {0, 20, 0}, L"0");
        d.Insert(d.modelSpace(), house, {0, 30, 0}, L"0");
        // Paper space: one door without attributes.
        d.Insert(d.paperSpace(), door, {1, 1, 0}, L"0");
    }

    AcDbObjectId door, window, room, house, unused;
};

// Rooms are placed 2 + 3 = 5 times and hold 2 doors each; the house holds a
// door; 3 doors stand in the spaces themselves.
TEST_F(PlanTest, CountsByNameLayerConditionAndNesting) {
    struct Case {
        const wchar_t* arguments;
        const wchar_t* value;
    };
    const Case cases[] = {
        {L"\"Door\"", L"3"},
        {L"\"DOOR\"", L"3"},
        {L"\"door\" \\nested", L"14"},
        {L"\"DOOR;WIN\"", L"4"},
        {L"\" Door ; WIN ;;\"", L"4"},
        {L"\"DOOR;door\"", L"3"},
        {L"\"WIN\" \\nested", L"6"},
        {L"\"ROOM\"", L"2"},
        {L"\"ROOM\" \\nested", L"5"},
        {L"\"HOUSE;ROOM;DOOR;WIN\" \\nested", L"26"},
        {L"\"UNUSED\" \\nested", L"0"},
        {L"\"NOSUCH\"", L"0"},
        {L"\"NOSUCH\" \\nested", L"0"},
        {L"\"DOOR\" \\layer \"A\"", L"1"},
        {L"\"DOOR\" \\layer \"a\" \\nested", L"6"},
        {L"\"DOOR\" \\layer \"B;0\" \\nested", L"8"},
        {L"\"DOOR\" \\layer \"NONE\" \\nested", L"0"},
        // Conditions: numbers when both sides read as numbers, else texts
        // not minding case; no tag, no match.
        {L"\"DOOR\" \\op \"=\" \\tag \"TYPE\" \\value \"SWING\" \\nested", L"7"},
        {L"\"DOOR\" \\op \"!=\" \\tag \"type\" \\value \"swing\" \\nested", L"5"},
        {L"\"DOOR\" \\op \">=\" \\tag \"SIZE\" \\value \"100\" \\nested", L"7"},  // 100, 120 five times, "abc"
        {L"\"DOOR\" \\op \">\" \\tag \"SIZE\" \\value \"100\" \\nested", L"6"},
        {L"\"DOOR\" \\op \"<\" \\tag \"SIZE\" \\value \"100\" \\nested", L"6"},
        {L"\"DOOR\" \\op \"<=\" \\tag \"SIZE\" \\value \"90.0\" \\nested", L"6"},
        {L"\"DOOR\" \\op \"=\" \\tag \"SIZE\" \\value \"90\"", L"0"},
        {L"\"DOOR\" \\op \">\" \\tag \"SIZE\" \\value \"9\"", L"2"},     // 100, and "abc" > "9" as texts
        {L"\"DOOR\" \\op \"<\" \\tag \"SIZE\" \\value \"9\"", L"0"},     // 100 > 9 as numbers; "abc" > "9"
        {L"\"WIN\" \\op \">\" \\tag \"SIZE\" \\value \"1e300\"", L"1"},  // "1e400" is no number: texts
        {L"\"WIN\" \\op \"=\" \\tag \"SIZE\" \\value \"1E400\"", L"1"},  // the same text, not minding case
        {L"\"DOOR\" \\op \"=\" \\tag \"COLOR\" \\value \"\"", L"0"},
        {L"\"DOOR\" \\op \"!=\" \\tag \"COLOR\" \\value \"x\"", L"0"},
        {L"\"DOOR\" \\op \"=\" \\tag \"\" \\value \"x\"", L"3"},  // an empty tag is no condition
        {L"\"DOOR\" \\op \"~\" \\tag \"\"", L"3"},
        // All together, options in any order.
        {L"\"DOOR\" \\nested \\layer \"A;B\" \\value \"swing\" \\tag \"TYPE\" \\op \"=\"", L"7"},
        {L"\"DOOR\" \\LAYER \"A\" \\NESTED", L"6"},
        // No names: nothing to count.
        {L"", L"0"},
        {L"\"\"", L"0"},
        {L"\";;\" \\nested", L"0"},
    };
    for (const Case& c : cases) {
        Outcome outcome = Evaluate(std::wstring(L"%<\\AcBlockCount ") + c.arguments + L">%");
        EXPECT_EQ(outcome.value, c.value) << cadhost::ToUtf8(c.arguments) << ": " << cadhost::ToUtf8(outcome.message);
        EXPECT_EQ(outcome.status, AcDbField::kSuccess) << cadhost::ToUtf8(c.arguments);
    }
}

TEST_F(PlanTest, TheDataItemHoldsTheArgumentsWithoutTheFormat) {
    struct Case {
        const wchar_t* code;
        const wchar_t* value;
        const wchar_t* data;
    };
    const Case cases[] = {
        {L"%<\\AcBlockCount \"DOOR;WIN\" \\layer \"A;B\" \\nested>%", L"19", L"\"DOOR;WIN\" \\layer \"A;B\" \\nested"},
        {L"%<\\AcBlockCount \"DOOR\" \\f \"%ps[,pcs]\">%", L"3pcs", L"\"DOOR\""},
        {L"%<\\AcBlockCount \"DOOR\" \\nested \\f \"%ct8[2]\">%", L"28", L"\"DOOR\" \\nested"},
        {L"%<\\AcBlockCount >%", L"0", L""},
    };
    for (const Case& c : cases) {
        Outcome outcome = Evaluate(c.code);
        EXPECT_EQ(outcome.value, c.value) << cadhost::ToUtf8(c.code);
        EXPECT_EQ(outcome.data, c.data) << cadhost::ToUtf8(c.code);
    }
}

TEST_F(PlanTest, ASpaceAndAWindowLimitTheCountToWhatLiesInside) {
    std::wstring model = qmtest::BlockDrawing::Handle(db()->modelSpaceId());
    std::wstring paper = qmtest::BlockDrawing::Handle(db()->paperSpaceId());
    // Model space: doors at (0,0) and (2,0), a window at (4,0), rooms at
    // (0,10) and (0,20), the house at (0,30); each block's line runs one
    // unit up and right, a room's reaches to x = 5, the house's to x = 41.
    struct Case {
        std::wstring arguments;
        const wchar_t* value;
    };
    const Case cases[] = {
        {L"\"DOOR\" \\Space(" + model + L") \\Window(0,0,0:3,1,0)", L"2"},
        {L"\"DOOR\" \\Space(" + model + L") \\Window(3,1,0:0,0,0)", L"2"},     // corners either way
        {L"\"DOOR\" \\Space(" + model + L") \\Window(3,0,0:0,1,0)", L"2"},
        {L"\"DOOR\" \\Space(" + model + L") \\Window(0.5,0,0:3,1,0)", L"1"},   // wholly inside only
        {L"\"DOOR\" \\Space(" + model + L") \\Window(0,0:3,0.999)", L"0"},
        {L"\"DOOR;WIN\" \\Space(" + model + L") \\Window(-1,-1,0:100,100,0)", L"3"},
        {L"\"DOOR\" \\Space(" + model + L") \\Window(-1,-1,0:100,100,0) \\nested", L"13"},
        {L"\"DOOR\" \\Space(" + model + L") \\Window(-1,9,0:6,21,0) \\nested", L"4"},  // the two rooms
        {L"\"DOOR\" \\Space(" + model + L") \\Window(-1,9,0:6,21,0)", L"0"},
        {L"\"DOOR\" \\Space(" + model + L") \\Window(-1,29,0:40,100,0) \\nested", L"0"},  // the house reaches to 41
        {L"\"DOOR\" \\Space(" + model + L") \\Window(-1,29,0:41,100,0) \\nested", L"7"},
        {L"\"DOOR\" \\Space(" + model + L") \\Window(-1,9,0:6,21,0) \\nested \\layer \"A\"", L"2"},
        {L"\"DOOR\" \\Space(" + paper + L") \\Window(0,0,0:10,10,0)", L"1"},
        {L"\"DOOR\" \\Space(" + paper + L") \\Window(0,0,0:10,10,0) \\nested", L"1"},
        {L"\"DOOR\" \\Space(" + paper + L")", L"1"},   // a space alone: all of it
        {L"\"DOOR\" \\Space(" + model + L") \\nested", L"13"},
        {L"\"DOOR\" \\Space(" + model + L") \\Window(1e300,0,0:1e301,1,0)", L"0"},
    };
    for (const Case& c : cases) {
        Outcome outcome = Evaluate(L"%<\\AcBlockCount " + c.arguments + L">%");
        EXPECT_EQ(outcome.value, c.value) << cadhost::ToUtf8(c.arguments) << ": " << cadhost::ToUtf8(outcome.message);
    }
}

TEST_F(PlanTest, AWindowOverEverySpaceAddsUpToTheWholeDrawing) {
    std::wstring model = qmtest::BlockDrawing::Handle(db()->modelSpaceId());
    std::wstring paper = qmtest::BlockDrawing::Handle(db()->paperSpaceId());
    for (const wchar_t* query : {L"\"DOOR\" \\nested", L"\"DOOR;WIN\" \\nested \\layer \"A\"",
                                 L"\"DOOR\" \\op \">\" \\tag \"SIZE\" \\value \"85\" \\nested", L"\"ROOM\" \\nested",
                                 L"\"WIN\""}) {
        std::wstring whole = Count(query);
        std::wstring window = L" \\Window(-1000,-1000,0:1000,1000,0)";
        int inModel = std::stoi(Count(std::wstring(query) + L" \\Space(" + model + L")" + window));
        int inPaper = std::stoi(Count(std::wstring(query) + L" \\Space(" + paper + L")" + window));
        EXPECT_EQ(std::stoi(whole), inModel + inPaper) << cadhost::ToUtf8(query);
    }
}

TEST_F(PlanTest, ErasedReferencesAndDefinitionsCountNoMore) {
    EXPECT_EQ(Count(L"\"DOOR\" \\nested"), L"14");
    AcDbObjectId extra = drawing().Insert(db()->modelSpaceId(), room, {50, 50, 0}, L"0");
    EXPECT_EQ(Count(L"\"DOOR\" \\nested"), L"16");
    drawing().Erase(extra);
    EXPECT_EQ(Count(L"\"DOOR\" \\nested"), L"14");
    drawing().Erase(house);  // with it, what it holds
    EXPECT_EQ(Count(L"\"DOOR\" \\nested"), L"7");
}

TEST_F(BlockCountEvaluatorTest, CodesThatCannotBeReadFailWithAMessage) {
    qmtest::BlockDrawing& d = drawing();
    d.Insert(d.modelSpace(), d.Block(L"DOOR"), {0, 0, 0});
    std::wstring model = qmtest::BlockDrawing::Handle(db()->modelSpaceId());
    struct Case {
        std::wstring arguments;
        int status;
        const wchar_t* says;  // a piece of the message
    };
    const Case cases[] = {
        {L"DOOR", AcDbField::kSyntaxError, L"must stand first, in double quotes"},
        {L"\"DOOR", AcDbField::kSyntaxError, L"must stand first"},
        {L"\"DO\"OR\"", AcDbField::kSyntaxError, L"\"OR\"\" is no option"},
        {L"\"DOOR\" layer \"A\"", AcDbField::kSyntaxError, L"is no option"},
        {L"\"DOOR\" \\layers \"A\"", AcDbField::kSyntaxError, L"\"\\layers\" is no option"},
        {L"\"DOOR\" \\", AcDbField::kSyntaxError, L"is no option"},
        {L"\"DOOR\" \\layer A", AcDbField::kSyntaxError, L"\\layer needs a text"},
        {L"\"DOOR\" \\layer \"A", AcDbField::kSyntaxError, L"\\layer needs a text"},
        {L"\"DOOR\" \\nested \\Nested", AcDbField::kSyntaxError, L"\\Nested is given twice"},
        {L"\"DOOR\" \\nestedx", AcDbField::kSyntaxError, L"is no option"},
        {L"\"DOOR\" \\tag \"T\"", AcDbField::kSyntaxError, L"operator \"\""},
        {L"\"DOOR\" \\op \"<>\" \\tag \"T\"", AcDbField::kSyntaxError, L"operator \"<>\""},
        {L"\"DOOR\" \\op \"=>\" \\tag \"T\" \\value \"1\"", AcDbField::kSyntaxError, L"none of =, >, <, >=, <=, !="},
        {L"\"DOOR\" \\Window(0,0,0:1,1,0)", AcDbField::kSyntaxError, L"needs the option \\Space"},
        {L"\"DOOR\" \\Space(" + model + L") \\Window(nan,0,0:1,1,0)", AcDbField::kSyntaxError, L"two corners"},
        {L"\"DOOR\" \\Space(" + model + L") \\Window(inf,0,0:1,1,0)", AcDbField::kSyntaxError, L"two corners"},
        {L"\"DOOR\" \\Space(" + model + L") \\Window(1e400,0,0:1,1,0)", AcDbField::kSyntaxError, L"two corners"},
        {L"\"DOOR\" \\Space(" + model + L") \\Window(0x10,0,0:1,1,0)", AcDbField::kSyntaxError, L"two corners"},
        {L"\"DOOR\" \\Space(" + model + L") \\Window(0,0,0;1,1,0)", AcDbField::kSyntaxError, L"two corners"},
        {L"\"DOOR\" \\Space(" + model + L") \\Window(0,0,0:1,1,0", AcDbField::kSyntaxError, L"two corners"},
        {L"\"DOOR\" \\Space(" + model + L") \\Window(0:1)", AcDbField::kSyntaxError, L"two corners"},
        {L"\"DOOR\" \\Space(" + model + L") \\Window(1,2,3,4:1,1)", AcDbField::kSyntaxError, L"two corners"},
        {L"\"DOOR\" \\Space(XYZ) \\Window(0,0,0:1,1,0)", AcDbField::kSyntaxError, L"\"XYZ\" in \\Space is no handle"},
        {L"\"DOOR\" \\Space \\Window(0,0,0:1,1,0)", AcDbField::kSyntaxError, L"needs the handle of a space"},
        {L"\"DOOR\" \\Space() \\Window(0,0,0:1,1,0)", AcDbField::kInvalidCode, L"names no space"},
        {L"\"DOOR\" \\Space(FFFFF) \\Window(0,0,0:1,1,0)", AcDbField::kInvalidCode, L"No space of the drawing has the handle FFFFF"},
        {L"\"DOOR\" \\Space(" + qmtest::BlockDrawing::Handle(db()->layerTableId()) + L") \\Window(0,0,0:1,1,0)",
         AcDbField::kInvalidCode, L"No space of the drawing has the handle"},
    };
    for (const Case& c : cases) {
        Outcome outcome = Evaluate(L"%<\\AcBlockCount " + c.arguments + L">%");
        EXPECT_EQ(outcome.value, L"####") << cadhost::ToUtf8(c.arguments);
        EXPECT_EQ(outcome.status, c.status) << cadhost::ToUtf8(c.arguments);
        EXPECT_NE(outcome.message.find(c.says), std::wstring::npos)
            << cadhost::ToUtf8(c.arguments) << " says " << cadhost::ToUtf8(outcome.message);
        EXPECT_EQ(outcome.data, L"-") << cadhost::ToUtf8(c.arguments);
    }
    // The same arguments with a readable window count.
    EXPECT_EQ(Count(L"\"DOOR\" \\Space(" + model + L") \\Window(-1,-1:2,2)"), L"1");
}

TEST_F(BlockCountEvaluatorTest, AnonymousCopiesOfADynamicBlockCountUnderItsName) {
    qmtest::BlockDrawing& d = drawing();
    AcDbObjectId dynamic = d.Block(L"DYNDOOR");
    d.AddProperty(dynamic, L"Width", AcDbEvalVariant(0.9));
    d.AddProperty(dynamic, L"Visibility", AcDbEvalVariant(L"Open"));
    d.AddProperty(dynamic, L"Leaves", AcDbEvalVariant(short(1)));
    d.AddProperty(dynamic, L"Origin", AcDbEvalVariant(AcGePoint3d(0, 0, 0)));
    AcDbObjectId copy = d.Block(L"*U1"), other = d.Block(L"*U2"), plain = d.Block(L"*U3");
    d.Tie(copy, dynamic);
    d.Tie(other, dynamic);
    d.Insert(d.modelSpace(), dynamic, {0, 0, 0});                                  // Width 0.9, Open
    AcDbObjectId wide = d.Insert(d.modelSpace(), copy, {2, 0, 0});                 // Width 1.2
    d.SetProperty(wide, L"Width", AcDbEvalVariant(1.2));
    AcDbObjectId closed = d.Insert(d.modelSpace(), other, {4, 0, 0}, L"A");         // Closed
    d.SetProperty(closed, L"Visibility", AcDbEvalVariant(L"Closed"));
    d.SetProperty(closed, L"Leaves", AcDbEvalVariant(short(2)));
    d.Insert(d.modelSpace(), plain, {6, 0, 0});  // an anonymous block of no dynamic block
    // A dynamic block reference with a real attribute too.
    AcDbObjectId attributed = d.Insert(d.modelSpace(), copy, {8, 0, 0}, L"0", {{L"Width", L"7"}});
    d.SetProperty(attributed, L"Width", AcDbEvalVariant(1.2));

    struct Case {
        const wchar_t* arguments;
        const wchar_t* value;
    };
    const Case cases[] = {
        {L"\"DYNDOOR\"", L"4"},
        {L"\"dyndoor\" \\layer \"A\"", L"1"},
        {L"\"*U1\"", L"2"},  // a copy typed by name counts its own references
        {L"\"*U3\"", L"1"},
        {L"\"DYNDOOR;*U1\"", L"4"},  // each reference once
        {L"\"DYNDOOR\" \\op \">\" \\tag \"width\" \\value \"1\"", L"2"},  // 1.2, and the attribute 7 before the property
        {L"\"DYNDOOR\" \\op \">\" \\tag \"Width\" \\value \"7\"", L"0"},
        {L"\"DYNDOOR\" \\op \"=\" \\tag \"Width\" \\value \"0.9\"", L"2"},
        {L"\"DYNDOOR\" \\op \"=\" \\tag \"VISIBILITY\" \\value \"closed\"", L"1"},
        {L"\"DYNDOOR\" \\op \">=\" \\tag \"Leaves\" \\value \"1\"", L"4"},
        {L"\"DYNDOOR\" \\op \"=\" \\tag \"Leaves\" \\value \"2\"", L"1"},
        {L"\"DYNDOOR\" \\op \"=\" \\tag \"Origin\" \\value \"0\"", L"0"},  // a point has nothing to compare
    };
    for (const Case& c : cases) {
        Outcome outcome = Evaluate(std::wstring(L"%<\\AcBlockCount ") + c.arguments + L">%");
        EXPECT_EQ(outcome.value, c.value) << cadhost::ToUtf8(c.arguments) << ": " << cadhost::ToUtf8(outcome.message);
    }
}

TEST_F(BlockCountEvaluatorTest, BlocksThatHoldThemselvesCountOncePerLevelAndEnd) {
    qmtest::BlockDrawing& d = drawing();
    AcDbObjectId door = d.Block(L"DOOR"), self = d.Block(L"SELF"), ping = d.Block(L"PING"), pong = d.Block(L"PONG");
    d.Insert(self, self, {0, 0, 0});
    d.Insert(self, door, {0, 0, 0});
    d.Insert(ping, pong, {0, 0, 0});
    d.Insert(ping, door, {0, 0, 0});
    d.Insert(pong, ping, {0, 0, 0});
    d.Insert(pong, door, {0, 0, 0});
    d.Insert(d.modelSpace(), self, {0, 0, 0});
    d.Insert(d.modelSpace(), ping, {5, 0, 0});
    std::wstring model = qmtest::BlockDrawing::Handle(db()->modelSpaceId());
    struct Case {
        std::wstring arguments;
        const wchar_t* value;
    };
    const Case cases[] = {
        // SELF placed once holds a door; PING holds a door and PONG with its door.
        {L"\"DOOR\" \\nested", L"3"},
        {L"\"SELF\" \\nested", L"2"},
        {L"\"PING;PONG\" \\nested", L"3"},
        {L"\"DOOR\" \\nested \\Space(" + model + L")", L"3"},
        {L"\"SELF;DOOR\" \\nested \\Space(" + model + L") \\Window(-10,-10:10,10)", L"5"},
    };
    for (const Case& c : cases) {
        Outcome outcome = Evaluate(L"%<\\AcBlockCount " + c.arguments + L">%");
        EXPECT_EQ(outcome.status, AcDbField::kSuccess) << cadhost::ToUtf8(c.arguments);
        EXPECT_EQ(outcome.value, c.value) << cadhost::ToUtf8(c.arguments);
    }
}

TEST_F(BlockCountEvaluatorTest, NestingOfAnyDepthEnds) {
    // A chain of definitions far deeper than any stack of calls could take.
    qmtest::BlockDrawing& d = drawing();
    const int depth = 100000;
    AcDbObjectId leaf = d.Block(L"LEAF");
    AcDbObjectId inner = leaf;
    for (int i = 0; i < depth; ++i) {
        AcDbObjectId outer = d.Block((L"LEVEL" + std::to_wstring(i)).c_str());
        d.Insert(outer, inner, {0, 0, 0});
        inner = outer;
    }
    d.Insert(d.modelSpace(), inner, {0, 0, 0});
    EXPECT_EQ(Count(L"\"LEAF\" \\nested"), L"1");
    std::wstring model = qmtest::BlockDrawing::Handle(db()->modelSpaceId());
    EXPECT_EQ(Count(L"\"LEAF\" \\nested \\Space(" + model + L")"), L"1");
}

TEST_F(BlockCountEvaluatorTest, ACountBeyondALongFails) {
    // Four levels of 1000 references each: 10^12 leaves.
    qmtest::BlockDrawing& d = drawing();
    AcDbObjectId inner = d.Block(L"LEAF");
    for (int level = 0; level < 4; ++level) {
        AcDbObjectId outer = d.Block((L"L" + std::to_wstring(level)).c_str());
        for (int i = 0; i < 1000; ++i) d.Insert(outer, inner, {0, 0, 0});
        inner = outer;
    }
    d.Insert(d.modelSpace(), inner, {0, 0, 0});
    EXPECT_EQ(Count(L"\"L1\" \\nested"), L"1000000");
    Outcome outcome = Evaluate(L"%<\\AcBlockCount \"LEAF\" \\nested>%");
    EXPECT_EQ(outcome.value, L"####");
    EXPECT_EQ(outcome.status, AcDbField::kOtherError);
    EXPECT_EQ(outcome.message, L"The block count is larger than 2147483647.");
}

TEST(BlockCountConditionTest, NumbersWhenBothAreNumbersElseTextsNotMindingCase) {
    struct Case {
        const wchar_t* actual;
        const wchar_t* op;
        const wchar_t* expected;
        bool holds;
    };
    const Case cases[] = {
        {L"10", L">", L"9", true},          {L"10", L"<", L"9", false},       {L"abc", L">", L"9", true},
        {L" 1.50 ", L"=", L"1.5", true},    {L"1.5e1", L"=", L"15", true},    {L"-.5", L"<", L"0", true},
        {L"5.", L"=", L"5", true},          {L"0x10", L">", L"9", false},     {L"0x10", L"=", L"0X10", true},
        {L"1e400", L">", L"1", true},       {L"inf", L">", L"1", true},       {L"nan", L"!=", L"NAN", false},
        {L"Swing", L"=", L"sWING", true},   {L"a", L"<", L"B", true},         {L"", L"=", L"", true},
        {L"", L"<", L"a", true},            {L"1", L"!=", L"1.0", false},     {L"2", L">=", L"2", true},
        {L"2", L"<=", L"1", false},         {L"1 2", L"=", L"1", false},      {L"+3", L"=", L"3", true},
        {L"0.1", L"=", L"0.10", true},      {L"-0", L"=", L"0", true},        {L"0.3", L"=", L"0.30000000000000004", false},
        {L"1234567890123456", L">", L"1234567890123455", true},  // beyond fifteen digits
        {L"123456789012345.6", L">", L"123456789012345", true},
    };
    for (const Case& c : cases) {
        BlockCountOperator op;
        ASSERT_TRUE(ReadBlockCountOperator(c.op, op));
        BlockCountCondition condition(op, c.expected);
        EXPECT_EQ(condition.Accepts(c.actual), c.holds)
            << cadhost::ToUtf8(c.actual) << " " << cadhost::ToUtf8(c.op) << " " << cadhost::ToUtf8(c.expected);
    }
    BlockCountOperator op;
    for (const wchar_t* bad : {L"", L"==", L"<>", L"=>", L" =", L"gt"}) EXPECT_FALSE(ReadBlockCountOperator(bad, op));
    BlockCountCondition equal(BlockCountOperator::kEqual, L"2");
    EXPECT_TRUE(equal.AcceptsNumber(2.0, L"2"));
    EXPECT_FALSE(equal.AcceptsNumber(std::numeric_limits<double>::quiet_NaN(), L"nan"));
}

TEST(BlockCountQueryTest, ReadsEveryPieceTheComposerWrites) {
    BlockCountQuery query;
    CString why;
    ASSERT_TRUE(ReadBlockCountQuery(L"\"DOOR;WIN\" \\layer \"0;WALL\" \\op \"=\" \\tag \"TYPE\" \\value \"A\" \\nested "
                                    L"\\Space(1F) \\Window(0,0,0:100,50,0)",
                                    query, why))
        << why.ToUtf8();
    ASSERT_EQ(query.names.size(), 2u);
    EXPECT_EQ(query.names[1], L"WIN");
    ASSERT_EQ(query.layers.size(), 2u);
    EXPECT_EQ(query.layers[1], L"WALL");
    EXPECT_EQ(query.tag, L"TYPE");
    EXPECT_EQ(query.value, L"A");
    EXPECT_EQ(query.op, BlockCountOperator::kEqual);
    EXPECT_TRUE(query.nested);
    EXPECT_TRUE(query.hasSpace);
    EXPECT_EQ(query.spaceHandle, L"1F");
    EXPECT_TRUE(query.hasWindow);
    EXPECT_EQ(query.secondCorner[0], 100);
    EXPECT_EQ(query.secondCorner[1], 50);
    // The %g corners of a composed code come back as written.
    ASSERT_TRUE(ReadBlockCountQuery(L"\"D\" \\Space(1F) \\Window(1.23457e+006,-2.5,0:-1e-05,3,7)", query, why));
    EXPECT_EQ(query.firstCorner[0], 1234570);
    EXPECT_EQ(query.secondCorner[0], -1e-05);
    EXPECT_EQ(query.secondCorner[2], 7);
    // Names with blanks inside keep them.
    ASSERT_TRUE(ReadBlockCountQuery(L"\"Door 900 ; Window\"", query, why));
    ASSERT_EQ(query.names.size(), 2u);
    EXPECT_EQ(query.names[0], L"Door 900");
}

}  // namespace
