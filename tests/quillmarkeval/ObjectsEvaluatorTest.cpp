// The AcArea and AcLength evaluators: the object list they read, their
// sums against the areas and lengths that ezdxf computes for the fixture
// drawings, the value text under format texts, and the failures that name
// the handle at fault.
#include <adslib.h>
#include <dbents.h>
#include <dbobjptr.h>
#include <dbsymtb.h>

#include <cmath>
#include <map>

#include "EvaluatorLoader.h"
#include "ObjectListReference.h"
#include "ObjectsEvaluator.h"
#include "support/DxfGroups.h"
#include "support/TestHost.h"

namespace {

const std::filesystem::path kBin = QM_OUTPUT_DIR;

std::wstring HandleText(const AcDbHandle& handle) {
    ACHAR text[17];
    handle.getIntoAsciiBuffer(text, 17);
    return text;
}

TEST(ObjectListReference, ReadsHandlesInOrderOrNamesTheFault) {
    struct Case {
        const wchar_t* text;
        std::vector<std::wstring> handles;  // read, in order
        const wchar_t* why;                 // null: read
    };
    const Case cases[] = {
        {L"Object(<2F1;2F5>)", {L"2F1", L"2F5"}, nullptr},
        {L"Object(<2F5;2F1;2F5>)", {L"2F5", L"2F1", L"2F5"}, nullptr},
        {L"  Object(<2a1>) \t", {L"2A1"}, nullptr},
        {L"OBJECT(<0036>)", {L"36"}, nullptr},
        {L"Object(<>)", {}, nullptr},
        {L"Object(<FFFFFFFFFFFFFFFF>)", {L"FFFFFFFFFFFFFFFF"}, nullptr},
        {L"", {}, L"an object list begins with Object(<"},
        {L"Object(2F1)", {}, L"an object list begins with Object(<"},
        {L"Objects(<2F1>)", {}, L"an object list begins with Object(<"},
        {L"Object(<2F1>", {}, L"an object list ends with >)"},
        {L"Object(<2F1>) x", {}, L"an object list ends with >)"},
        {L"Object(<", {}, L"an object list ends with >)"},
        {L"Object(<>)>)", {}, L"\">)\" is no handle: a handle is a hexadecimal number of up to 16 digits"},
        {L"Object(<;2F1>)", {}, L"the list begins with \";\""},
        {L"Object(<2F1;>)", {}, L"the list ends with \";\""},
        {L"Object(<2F1;;2F5>)", {}, L"the list has an empty place between two \";\""},
        {L"Object(<;>)", {}, L"the list begins with \";\""},
        {L"Object(<2F1; 2F5>)", {}, L"\" 2F5\" is no handle: a handle is a hexadecimal number of up to 16 digits"},
        {L"Object(<2G1>)", {}, L"\"2G1\" is no handle: a handle is a hexadecimal number of up to 16 digits"},
        {L"Object(<10000000000000000>)", {},
         L"\"10000000000000000\" is no handle: a handle is a hexadecimal number of up to 16 digits"},
        {L"Object(<0>)", {}, L"\"0\" is no handle: no object has the handle 0"},
        {L"Object(<2F1;000>)", {}, L"\"000\" is no handle: no object has the handle 0"},
    };
    for (const Case& c : cases) {
        std::vector<ObjectListHandle> handles;
        CString why = L"untouched";
        int read = ReadObjectList(c.text, handles, why);
        EXPECT_EQ(read, c.why ? 0 : 1) << c.text;
        if (c.why) {
            EXPECT_EQ(why.str(), c.why) << c.text;
            EXPECT_TRUE(handles.empty()) << c.text;
            continue;
        }
        std::vector<std::wstring> texts;
        for (const ObjectListHandle& h : handles) texts.push_back(HandleText(h.handle));
        EXPECT_EQ(texts, c.handles) << c.text;
    }
    // A faulty entry is quoted short.
    std::vector<ObjectListHandle> handles;
    CString why;
    ASSERT_EQ(ReadObjectList(L"Object(<" + CString(std::wstring(100, L'x')) + L">)", handles, why), 0);
    EXPECT_EQ(why.str(), L"\"" + std::wstring(40, L'x') + L"...\" is no handle: a handle is a hexadecimal number of "
                                                            L"up to 16 digits");
}

TEST(ObjectListReference, TheDataTextKeepsTheHandlesAsWritten) {
    const wchar_t* cases[][2] = {
        {L"Object(<2F1;2F5>)", L"Object(<2F1;2F5>)"},
        {L" object(<2f1;0036>) ", L"Object(<2f1;0036>)"},
        {L"Object(<>)", L"Object(<>)"},
    };
    for (const auto& c : cases) {
        std::vector<ObjectListHandle> handles;
        CString why;
        ASSERT_EQ(ReadObjectList(c[0], handles, why), 1) << c[0];
        EXPECT_EQ(ObjectListDataText(c[0], handles).str(), c[1]);
    }
}

TEST(ObjectListReference, AKeptDataTextIsKnownOnlyWhenItIsTheListsExactly) {
    struct Case {
        const wchar_t* data;
        const wchar_t* list;
        bool same;
    };
    const Case cases[] = {
        {L"Object(<2F1;2F5>)", L"Object(<2F1;2F5>)", true},
        {L"Object(<2F1;2F5>)", L"  object(<2F1;2F5>) ", true},
        {L"Object(<>)", L"Object(<>)", true},
        {L"Object(<2F1;2F5>)", L"Object(<2f1;2F5>)", false},  // the handles as written
        {L"Object(<2F1>)", L"Object(<2F1;2F5>)", false},
        {L"Object(<2F1;2F5>)", L"Object(<2F1>)", false},
        {L"Object(<2F1;2F5>) ", L"Object(<2F1;2F5>)", false},
        {L"object(<2F1;2F5>)", L"Object(<2F1;2F5>)", false},
        {L"Object(<2F1;2F5]", L"Object(<2F1;2F5>)", false},
        {L"", L"Object(<>)", false},
        {nullptr, L"Object(<>)", false},
    };
    for (const Case& c : cases) {
        std::vector<ObjectListHandle> handles;
        CString why;
        ASSERT_EQ(ReadObjectList(c.list, handles, why), 1) << c.list;
        EXPECT_EQ(IsObjectListDataText(c.data, c.list, handles), c.same) << (c.data ? c.data : L"(null)") << " / " << c.list;
    }
}

class ObjectsEvaluatorTest : public qmtest::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        ASSERT_TRUE(host().linker().loadModule(cadhost::FromUtf8((kBin / "QuillmarkEval.dbx").string()).c_str(), true))
            << TakeOutput();
    }

    AcDbDatabase* db() { return acdbHostApplicationServices()->workingDatabase(); }

    void Open(const std::string& fixture) {
        std::wstring error;
        ASSERT_TRUE(host().OpenDrawing(qmtest::FixturePath(fixture + ".dxf"), error)) << cadhost::ToUtf8(error);
    }

    // The entities of a fixture's figures: handle, type, area and length.
    struct Figure {
        std::wstring handle;
        std::string type;
        double area, length;
    };
    static std::vector<Figure> Figures(const std::string& fixture) {
        std::vector<Figure> figures;
        for (const qmtest::FigureRecord& r : qmtest::ReadFigures(qmtest::FixturePath(fixture + ".figures.tsv"))) {
            if (r.size() < 7 || r[0] != "entity" || r[5] == "-") continue;
            figures.push_back({cadhost::FromUtf8(r[1]), r[2], std::stod(r[5]), std::stod(r[6])});
        }
        return figures;
    }

    // Evaluates a code in the drawing; the field keeps the result.
    static void Evaluate(AcDbField& field, const std::wstring& code, AcDbDatabase* database) {
        ASSERT_EQ(field.setFieldCode(code.c_str()), Acad::eOk) << cadhost::ToUtf8(code);
        field.evaluate(AcDbField::kPreview, database);
    }

    static double Value(const AcDbField& field) {
        AcFdFieldValue value;
        double number = std::nan("");
        EXPECT_EQ(field.getValue(value), Acad::eOk);
        EXPECT_EQ(value.dataType(), AcValue::kDouble);
        EXPECT_TRUE(value.get(number));
        return number;
    }

    static std::wstring Data(const AcDbField& field, const wchar_t* key) {
        AcFdFieldValue data;
        if (field.getData(key, &data) != Acad::eOk) return L"(none)";
        const ACHAR* text = nullptr;
        EXPECT_EQ(data.dataType(), AcValue::kString);
        EXPECT_TRUE(data.get(text));
        return text ? text : L"";
    }

    static std::wstring Message(const AcDbField& field) {
        ACHAR* message = nullptr;
        field.evaluationStatus(nullptr, &message);
        std::wstring text = message ? message : L"";
        acutDelBuffer(message);
        return text;
    }

    static void ExpectClose(double actual, double expected, const std::string& what) {
        EXPECT_NEAR(actual, expected, 1e-9 * std::fabs(expected) + 1e-12) << what;
    }
};

TEST_F(ObjectsEvaluatorTest, SumsAgreeWithEzdxfObjectByObjectAndAltogether) {
    for (const std::string fixture : {"measure_r2010", "drawing_r2010"}) {
        Open(fixture);
        std::wstring areaList, lengthList;
        double areaSum = 0, lengthSum = 0;
        int areas = 0, lengths = 0;
        for (const Figure& f : Figures(fixture)) {
            bool area = f.type == "CIRCLE" || f.type == "LWPOLYLINE";
            bool length = area || f.type == "LINE" || f.type == "ARC";
            std::string what = fixture + " " + cadhost::ToUtf8(f.handle) + " " + f.type;
            if (area) {
                AcDbField field;
                Evaluate(field, L"%<\\AcArea Object(<" + f.handle + L">)>%", db());
                ASSERT_EQ(field.evaluationStatus(), AcDbField::kSuccess) << what << ": " << cadhost::ToUtf8(Message(field));
                ExpectClose(Value(field), f.area, what + " area");
                areaList += (areas++ ? L";" : L"") + f.handle;
                areaSum += f.area;
            }
            if (length) {
                AcDbField field;
                Evaluate(field, L"%<\\AcLength Object(<" + f.handle + L">)>%", db());
                ASSERT_EQ(field.evaluationStatus(), AcDbField::kSuccess) << what << ": " << cadhost::ToUtf8(Message(field));
                ExpectClose(Value(field), f.length, what + " length");
                lengthList += (lengths++ ? L";" : L"") + f.handle;
                lengthSum += f.length;
            }
        }
        EXPECT_GE(areas, 8) << fixture;
        EXPECT_GE(lengths, 12) << fixture;
        AcDbField area, length;
        Evaluate(area, L"%<\\AcArea Object(<" + areaList + L">) \\f \"%lu2%pr2\">%", db());
        Evaluate(length, L"%<\\AcLength Object(<" + lengthList + L">)>%", db());
        ASSERT_EQ(area.evaluationStatus(), AcDbField::kSuccess) << cadhost::ToUtf8(Message(area));
        ASSERT_EQ(length.evaluationStatus(), AcDbField::kSuccess) << cadhost::ToUtf8(Message(length));
        ExpectClose(Value(area), areaSum, fixture + " all areas");
        ExpectClose(Value(length), lengthSum, fixture + " all lengths");
        EXPECT_EQ(Data(area, L"AcArea Data"), L"Object(<" + areaList + L">)");
        EXPECT_EQ(Data(length, L"AcLength Data"), L"Object(<" + lengthList + L">)");
        EXPECT_EQ(area.dataCount(), 1);
    }
}

// Objects are visited in the order of their handles, in batches; the sum
// and the fault reported must still be those of the list's order.
TEST_F(ObjectsEvaluatorTest, ALongListSumsInListOrderAndReportsItsFirstFault) {
    Open("measure_r2010");
    std::vector<std::wstring> handles;
    std::vector<double> areas;
    for (const Figure& f : Figures("measure_r2010")) {
        // 38 is erased below.
        if ((f.type != "CIRCLE" && f.type != "LWPOLYLINE") || f.handle == L"38") continue;
        AcDbField one;
        Evaluate(one, L"%<\\AcArea Object(<" + f.handle + L">)>%", db());
        ASSERT_EQ(one.evaluationStatus(), AcDbField::kSuccess);
        handles.push_back(f.handle);
        areas.push_back(Value(one));
    }
    ASSERT_GE(handles.size(), 3u);
    // More places than an object may have readers, each handle many times,
    // in an order that is not the handles' own.
    std::wstring list;
    double sum = 0;
    for (size_t i = 0; i < 700; ++i) {
        size_t k = (i * 7 + i / 3) % handles.size();
        list += (i ? L";" : L"") + handles[k];
        sum += areas[k];
    }
    AcDbField all;
    Evaluate(all, L"%<\\AcArea Object(<" + list + L">)>%", db());
    ASSERT_EQ(all.evaluationStatus(), AcDbField::kSuccess) << cadhost::ToUtf8(Message(all));
    EXPECT_EQ(Value(all), sum);  // the same additions in the same order
    EXPECT_EQ(Data(all, L"AcArea Data"), L"Object(<" + list + L">)");

    // 38 erased; 3A a line. The first fault in the list is the one named,
    // however the handles sort.
    {
        AcDbObjectId id;
        ASSERT_EQ(db()->getAcDbObjectId(id, false, AcDbHandle(L"38")), Acad::eOk);
        AcDbObjectPointer<AcDbEntity> room(id, AcDb::kForWrite);
        ASSERT_EQ(room.openStatus(), Acad::eOk);
        ASSERT_EQ(room->erase(), Acad::eOk);
    }
    const std::wstring notArea = L" is not a circle or a polyline; the field sums the areas of circles and polylines.";
    const std::pair<std::wstring, std::wstring> cases[] = {
        {list + L";3A;38", L"The object 3A" + notArea},
        {L"3A;" + list + L";38", L"The object 3A" + notArea},
        {L"38;3A", L"The object 38 was erased from the drawing."},
        {L"3A;FFFF;38", L"The object 3A" + notArea},
        {L"FFFF;3A", L"No object has the handle FFFF in the drawing."},
        {list + L";FFFF;3A;38", L"No object has the handle FFFF in the drawing."},
    };
    for (const auto& [entries, message] : cases) {
        AcDbField field;
        Evaluate(field, L"%<\\AcArea Object(<" + entries + L">)>%", db());
        EXPECT_EQ(field.evaluationStatus(), AcDbField::kInvalidCode) << cadhost::ToUtf8(entries.substr(0, 40));
        EXPECT_EQ(Message(field), message) << cadhost::ToUtf8(entries.substr(0, 40));
    }
}

TEST_F(ObjectsEvaluatorTest, ACircleIsAsLongAsItsRadiusTimesTheWrittenFactor) {
    AcDbObjectId id;
    {
        AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> model(db()->modelSpaceId(), AcDb::kForWrite);
        auto* circle = new AcDbCircle(AcGePoint3d(0, 0, 0), AcGeVector3d::kZAxis, 1.0e12);
        ASSERT_EQ(model->appendAcDbEntity(id, circle), Acad::eOk);
        circle->close();
    }
    AcDbField field;
    Evaluate(field, L"%<\\AcLength Object(<" + HandleText(id.handle()) + L">)>%", db());
    double length = Value(field);
    EXPECT_EQ(length, 1.0e12 * 6.28318530718);
    EXPECT_GT(std::fabs(length - 2 * M_PI * 1.0e12), 0.4);  // not two pi, which is 0.41 shorter here
}

TEST_F(ObjectsEvaluatorTest, AnEmptyListIsAValidCodeWorthNothing) {
    for (const wchar_t* id : {L"AcArea", L"AcLength"}) {
        AcDbField field;
        Evaluate(field, L"%<\\" + std::wstring(id) + L" Object(<>) \\f \"%lu2%pr3\">%", db());
        ASSERT_EQ(field.evaluationStatus(), AcDbField::kSuccess) << cadhost::ToUtf8(id);
        EXPECT_EQ(Value(field), 0.0);
        EXPECT_STREQ(field.getValue(), L"0.000");
        EXPECT_EQ(Data(field, (std::wstring(id) + L" Data").c_str()), L"Object(<>)");
    }
}

TEST_F(ObjectsEvaluatorTest, TheValueTextFollowsTheFormatText) {
    Open("measure_r2010");
    // 36 is a room of 12 by 10 (area 120, length 44), 3E a circle of
    // radius 0.5 (area 0.785398...), 37 a room with a rounded end (length
    // 27.4247779...).
    struct Case {
        const wchar_t* id;
        const wchar_t* handles;
        const wchar_t* format;
        const wchar_t* text;
    };
    const Case cases[] = {
        {L"AcArea", L"36", L"%lu2%pr2", L"120.00"},
        {L"AcArea", L"36", L"%lu2%ct4%qf1 SQ. FT.%pr2", L"0.83 SQ. FT."},      // 120 / 144
        {L"AcArea", L"36;3E", L"%lu2%pr3", L"120.785"},
        {L"AcArea", L"36", L"%lu1%pr3", L"1.200E+02"},
        {L"AcArea", L"36", L"%lu2%pr1%ps[A\\,B=,\\[m2\\]]", L"A,B=120.0[m2]"},
        {L"AcArea", L"36", L"%lu2%pr2%ps[,\\\\]", L"120.00\\"},
        {L"AcArea", L"36", L"%lu2%pr2%ct8[0.0929]", L"11.15"},                // 11.148
        {L"AcArea", L"36", L"%lu2%pr4%zs8", L"120"},
        {L"AcArea", L"3E", L"%lu2%pr3%zs4", L".785"},
        {L"AcArea", L"3E", L"%lu2%pr3", L"0.785"},
        {L"AcLength", L"36", L"%lu4%pr3", L"3'-8\""},                          // 44 inches
        {L"AcLength", L"37", L"%lu5%pr2", L"27 1/2"},                          // 27.42 to a quarter
        {L"AcLength", L"37", L"%lu4%pr4", L"2'-3 7/16\""},                     // 27.4248 to a sixteenth
        {L"AcLength", L"36", L"%lu3%pr2", L"3'-8.00\""},
        {L"AcLength", L"36", L"%lu2%pr2%ps[L = , m]%ct8[0.0254]", L"L = 1.12 m"},  // 1.1176
    };
    for (const Case& c : cases) {
        AcDbField field;
        Evaluate(field,
                 L"%<\\" + std::wstring(c.id) + L" Object(<" + c.handles + L">) \\f \"" + c.format + L"\">%", db());
        ASSERT_EQ(field.evaluationStatus(), AcDbField::kSuccess) << cadhost::ToUtf8(c.format);
        EXPECT_STREQ(field.getValue(), c.text) << cadhost::ToUtf8(c.id) << " " << cadhost::ToUtf8(c.format);
    }
}

TEST_F(ObjectsEvaluatorTest, AnObjectThatCannotBeMeasuredFailsTheWholeSumAndNamesIt) {
    Open("measure_r2010");
    // Erase the room 38.
    {
        AcDbObjectId id;
        ASSERT_EQ(db()->getAcDbObjectId(id, false, AcDbHandle(L"38")), Acad::eOk);
        AcDbObjectPointer<AcDbEntity> room(id, AcDb::kForWrite);
        ASSERT_EQ(room.openStatus(), Acad::eOk);
        ASSERT_EQ(room->erase(), Acad::eOk);
    }
    const std::wstring areaKinds = L" is not a circle or a polyline; the field sums the areas of circles and polylines.";
    const std::wstring lengthKinds =
        L" is not a line, an arc, a circle or a polyline; the field sums the lengths of lines, arcs, circles and "
        L"polylines.";
    struct Case {
        const wchar_t* id;
        std::wstring list;
        AcDbField::EvalStatus status;
        std::wstring message;
    };
    const Case cases[] = {
        {L"AcArea", L"Object(<36;FFFF>)", AcDbField::kInvalidCode, L"No object has the handle FFFF in the drawing."},
        {L"AcLength", L"Object(<ffff;36>)", AcDbField::kInvalidCode, L"No object has the handle ffff in the drawing."},
        {L"AcArea", L"Object(<36;38>)", AcDbField::kInvalidCode, L"The object 38 was erased from the drawing."},
        {L"AcLength", L"Object(<38>)", AcDbField::kInvalidCode, L"The object 38 was erased from the drawing."},
        {L"AcArea", L"Object(<36;3A>)", AcDbField::kInvalidCode, L"The object 3A" + areaKinds},   // a line
        {L"AcArea", L"Object(<3B>)", AcDbField::kInvalidCode, L"The object 3B" + areaKinds},      // an arc
        {L"AcArea", L"Object(<40>)", AcDbField::kInvalidCode, L"The object 40" + areaKinds},      // a text
        {L"AcLength", L"Object(<41>)", AcDbField::kInvalidCode, L"The object 41" + lengthKinds},  // an ellipse
        {L"AcLength", L"Object(<2>)", AcDbField::kInvalidCode, L"The object 2" + lengthKinds},    // the layer table
        {L"AcArea", L"Object(<36>", AcDbField::kSyntaxError,
         L"The object list \"Object(<36>\" cannot be read: an object list ends with >)."},
        {L"AcLength", L"", AcDbField::kSyntaxError,
         L"The object list \"\" cannot be read: an object list begins with Object(<."},
        {L"AcArea", L"Object(<36;;37>)", AcDbField::kSyntaxError,
         L"The object list \"Object(<36;;37>)\" cannot be read: the list has an empty place between two \";\"."},
    };
    for (const Case& c : cases) {
        AcDbField field;
        std::wstring code = L"%<\\" + std::wstring(c.id) + L" " + c.list + L" \\f \"%lu2%pr2\">%";
        Evaluate(field, code, db());
        EXPECT_EQ(field.evaluationStatus(), c.status) << cadhost::ToUtf8(code);
        EXPECT_EQ(Message(field), c.message) << cadhost::ToUtf8(code);
        EXPECT_STREQ(field.getValue(), L"####") << cadhost::ToUtf8(code);
        EXPECT_EQ(field.dataCount(), 0) << cadhost::ToUtf8(code);
    }
    // A long list is quoted short.
    std::wstring list = L"Object(<";
    for (int i = 0; i < 30; ++i) list += L"36;";
    list += L">)";
    AcDbField field;
    Evaluate(field, L"%<\\AcArea " + list + L">%", db());
    EXPECT_EQ(Message(field), L"The object list \"" + list.substr(0, 60) +
                                  L"...\" cannot be read: the list ends with \";\".");
}

TEST_F(ObjectsEvaluatorTest, AFailureLeavesTheDataItemOfTheLastSuccess) {
    Open("measure_r2010");
    auto* field = new AcDbField(L"%<\\AcArea Object(<36;3E>)>%");
    AcDbObjectId fieldId;
    ASSERT_EQ(field->postInDatabase(db()), Acad::eOk);
    fieldId = field->objectId();
    ASSERT_EQ(field->evaluate(AcDbField::kPreview), Acad::eOk);
    EXPECT_EQ(Data(*field, L"AcArea Data"), L"Object(<36;3E>)");
    field->close();
    {
        AcDbObjectId id;
        ASSERT_EQ(db()->getAcDbObjectId(id, false, AcDbHandle(L"3E")), Acad::eOk);
        AcDbObjectPointer<AcDbEntity> circle(id, AcDb::kForWrite);
        ASSERT_EQ(circle->erase(), Acad::eOk);
    }
    AcDbObjectPointer<AcDbField> again(fieldId, AcDb::kForWrite);
    ASSERT_EQ(again.openStatus(), Acad::eOk);
    EXPECT_NE(again->evaluate(AcDbField::kPreview), Acad::eOk);
    EXPECT_EQ(Message(*again.object()), L"The object 3E was erased from the drawing.");
    EXPECT_STREQ(again->getValue(), L"####");
    // What the page reads back when the field is edited is what it was.
    EXPECT_EQ(Data(*again.object(), L"AcArea Data"), L"Object(<36;3E>)");
}

TEST_F(ObjectsEvaluatorTest, AFieldEvaluatedOverChangingListsKeepsTheDataItemOfItsLastList) {
    Open("measure_r2010");
    AcDbField field;
    const wchar_t* lists[][2] = {
        {L"Object(<36;3E>)", L"Object(<36;3E>)"},
        {L"Object(<36;3E>)", L"Object(<36;3E>)"},  // the same list again
        {L" object(<36;3e>)", L"Object(<36;3e>)"},
        {L"Object(<36>)", L"Object(<36>)"},
        {L"Object(<>)", L"Object(<>)"},
        {L"Object(<3E;36>)", L"Object(<3E;36>)"},
    };
    for (const auto& list : lists) {
        Evaluate(field, std::wstring(L"%<\\AcArea ") + list[0] + L">%", db());
        EXPECT_EQ(Data(field, L"AcArea Data"), list[1]) << list[0];
    }
}

TEST_F(ObjectsEvaluatorTest, AFieldInTheDrawingMeasuresThereWhenNoDatabaseIsGiven) {
    Open("measure_r2010");
    AcDbField loose(L"%<\\AcLength Object(<3A>)>%");
    EXPECT_NE(loose.evaluate(AcDbField::kPreview, nullptr), Acad::eOk);
    EXPECT_EQ(loose.evaluationStatus(), AcDbField::kInvalidCode);
    EXPECT_EQ(Message(loose), L"The field belongs to no drawing, so its objects cannot be found.");
    auto* field = new AcDbField(L"%<\\AcLength Object(<3A>)>%");
    ASSERT_EQ(field->postInDatabase(db()), Acad::eOk);
    EXPECT_EQ(field->evaluate(AcDbField::kPreview), Acad::eOk);
    EXPECT_EQ(Value(*field), 19.0);
    field->close();
}

TEST_F(ObjectsEvaluatorTest, TheModuleAnswersBothIdsInAnyCase) {
    AcFdFieldEngine* engine = acdbGetFieldEngine();
    for (const wchar_t* id : {L"AcArea", L"acarea", L"AcLength", L"ACLENGTH"}) {
        AcFdFieldEvaluator* evaluator = engine->getEvaluator(id);
        ASSERT_NE(evaluator, nullptr) << cadhost::ToUtf8(id);
        EXPECT_EQ(_wcsicmp(evaluator->evaluatorId(), id), 0);
    }
    EXPECT_NE(engine->getEvaluator(L"AcArea"), engine->getEvaluator(L"AcLength"));
}

}  // namespace
