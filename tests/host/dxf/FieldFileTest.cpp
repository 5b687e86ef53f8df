// Fields in drawing files: read as the platform files them under texts,
// written back so that they read the same, kept when the host cannot use
// them, and read by another DXF reader.
#include <adslib.h>
#include <dbdict.h>
#include <dbmtext.h>
#include <dbobjptr.h>
#include <dbsymtb.h>

#include <sys/wait.h>

#include <cstdlib>

#include "host/fields/FieldTestSupport.h"
#include "support/FieldDrawings.h"
#include "support/TestHost.h"

namespace {

using qmtest::DescribeField;
using qmtest::DxfGroup;
using qmtest::FixturePath;
using qmtest::HandleText;
using qmtest::IdOfHandle;

class FieldFileTest : public qmtest::HostTest {
protected:
    AcDbDatabase* db() { return acdbHostApplicationServices()->workingDatabase(); }

    void Open(const std::filesystem::path& path) {
        std::wstring error;
        ASSERT_TRUE(host().OpenDrawing(path, error)) << cadhost::ToUtf8(error);
    }
    std::wstring OpenFails(const std::filesystem::path& path) {
        std::wstring error;
        EXPECT_FALSE(host().OpenDrawing(path, error));
        return error;
    }
    std::filesystem::path Save(const std::string& name) {
        std::filesystem::path path = m_folder.path() / name;
        std::wstring error;
        EXPECT_TRUE(host().SaveDrawing(path, error)) << cadhost::ToUtf8(error);
        return path;
    }
    AcDbObjectId Id(const std::string& handle) { return IdOfHandle(db(), cadhost::FromUtf8(handle)); }
    // Saves the drawing, opens the file and saves it again: the second file
    // must be the first. Answers the first.
    std::filesystem::path SaveTwice(const std::string& stem) {
        std::filesystem::path first = Save(stem + "_first.dxf");
        Open(first);
        std::filesystem::path second = Save(stem + "_second.dxf");
        EXPECT_EQ(qmtest::ReadText(first), qmtest::ReadText(second));
        return first;
    }

    // Every field of the drawing under its handle, described.
    std::map<std::wstring, std::wstring> AllFields() {
        std::map<std::wstring, std::wstring> out;
        for (const auto& [name, text] : qmtest::ReadFieldFixture()) {
            if (text.child == "-") continue;
            out[cadhost::FromUtf8(text.textField)] = DescribeField(Id(text.textField));
            out[cadhost::FromUtf8(text.child)] = DescribeField(Id(text.child));
        }
        return out;
    }

    // The fixture with its text replaced, as a file of the test's folder.
    std::filesystem::path Edited(const std::string& name, const std::string& from, const std::string& to) {
        std::string text = qmtest::ReadText(FixturePath("tablecell_fields.dxf"));
        size_t at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        if (at != std::string::npos) text.replace(at, from.size(), to);
        std::filesystem::path path = m_folder.path() / name;
        qmtest::WriteText(path, text);
        return path;
    }
};

TEST_F(FieldFileTest, TextsOfTheFixtureHoldTheirFields) {
    Open(FixturePath("tablecell_fields.dxf"));
    auto texts = qmtest::ReadFieldFixture();
    ASSERT_EQ(texts.size(), 9u);
    struct Case {
        const char* name;
        const wchar_t* shown;
        const wchar_t* textCode;
    };
    const Case cases[] = {
        {"up_to_date", L"Tag", L"%<\\_FldIdx 0>%"},
        {"stale", L"Load: old", L"Load: %<\\_FldIdx 0>%"},
        {"paper_table", L"Ground floor plan", L"%<\\_FldIdx 0>%"},
        {"area", L"12.00", L"%<\\_FldIdx 0>%"},
    };
    for (const Case& c : cases) {
        const qmtest::FieldFixtureText& t = texts.at(c.name);
        AcDbObjectId textId = Id(t.text);
        EXPECT_EQ(qmtest::MTextContents(textId), c.shown) << c.name;
        ASSERT_EQ(qmtest::TextFieldOf(textId), Id(t.textField)) << c.name;
        ASSERT_EQ(qmtest::ChildFieldOf(textId), Id(t.child)) << c.name;
        AcDbObjectPointer<AcDbField> text(Id(t.textField), AcDb::kForRead);
        ASSERT_EQ(text.openStatus(), Acad::eOk);
        EXPECT_TRUE(text->isTextField());
        EXPECT_STREQ(text->getFieldCode(AcDbField::kPreserveFields), c.textCode) << c.name;
        EXPECT_STREQ(text->getValue(), c.shown) << c.name;
        EXPECT_EQ(text->evaluationOption(), AcDbField::kAutomatic);
        EXPECT_EQ(text->ownerId().isNull(), false);
    }
    const qmtest::FieldFixtureText& stale = texts.at("stale");
    EXPECT_EQ(DescribeField(Id(stale.child)),
              L"evaluator TableCell\ncode \\TableCell " + cadhost::FromUtf8(stale.arguments) +
                  L"\nformat \noption 63\nstatus 2 0 \nvalue old\ntyped 4:\"old\"\ndata TableCell Data = 4:\"" +
                  cadhost::FromUtf8(stale.arguments) + L"\"\nchildren 0");
    const qmtest::FieldFixtureText& area = texts.at("area");
    EXPECT_EQ(DescribeField(Id(area.child)),
              L"evaluator AcArea\ncode \\AcArea " + cadhost::FromUtf8(area.arguments) +
                  L" \\f \"%lu2%pr2\"\nformat %lu2%pr2\noption 63\nstatus 2 0 \nvalue 12.00\ntyped 2:12\ndata AcArea Data = 4:\"" +
                  cadhost::FromUtf8(area.arguments) + L"\"\nchildren 0");
    // The child belongs to its text field.
    AcDbObjectPointer<AcDbField> child(Id(stale.child), AcDb::kForRead);
    EXPECT_EQ(child->ownerId(), Id(stale.textField));
}

TEST_F(FieldFileTest, FieldsInTheOlderFormReadToo) {
    // Items without the flags of their value, as releases before 2007 file
    // them, and the texts of the field in the code and the format.
    Open(FixturePath("fields_r2010.dxf"));
    EXPECT_EQ(DescribeField(Id("37")),
              L"evaluator AcArea\ncode \\AcArea Object(<51>) \\f \"%lu2%pr2\"\nformat %lu2%pr2\noption 63\nstatus 2 0 \nvalue 12.57\n"
              L"typed 2:12.566370614359172\ndata AcArea Data = 4:\"Object(<51>)\"\nchildren 0");
    EXPECT_EQ(DescribeField(Id("36")),
              L"evaluator _text\ncode %<\\AcArea Object(<51>) \\f \"%lu2%pr2\">%\nformat \noption 63\nstatus 2 0 \n"
              L"value Area: 12.57\ntyped 4:\"Area: 12.57\"\nchildren 1 37");
}

TEST_F(FieldFileTest, ValuesWithoutFramesEndAtTheNextItemOrTheObjectsEnd) {
    // As releases before 2007 write them: type and value alone; this one
    // has no format after its cached value.
    std::string text = qmtest::ReadText(FixturePath("tablecell_fields.dxf"));
    qmtest::FieldFixtureText area = qmtest::ReadFieldFixture().at("area");
    std::string item = " 93\n0\n 90\n4\n  1\n" + area.arguments + "\n 94\n0\n300\n\n302\n\n304\nACVALUE_END\n";
    std::string cache = " 93\n0\n 90\n2\n140\n12.0\n 94\n0\n300\n\n302\n12.00\n304\nACVALUE_END\n301\n%lu2%pr2\n 98\n8\n";
    size_t at = text.find(item);
    ASSERT_NE(at, std::string::npos);
    text.replace(at, item.size(), " 90\n4\n  1\n" + area.arguments + "\n");
    at = text.find(cache);
    ASSERT_NE(at, std::string::npos);
    text.replace(at, cache.size(), " 90\n2\n140\n12.0\n");
    std::filesystem::path path = m_folder.path() / "unframed.dxf";
    qmtest::WriteText(path, text);
    Open(path);
    EXPECT_EQ(DescribeField(Id(area.child)),
              L"evaluator AcArea\ncode \\AcArea " + cadhost::FromUtf8(area.arguments) +
                  L"\nformat \noption 63\nstatus 2 0 \nvalue 12.0000\ntyped 2:12\ndata AcArea Data = 4:\"" +
                  cadhost::FromUtf8(area.arguments) + L"\"\nchildren 0");
}

TEST_F(FieldFileTest, SavedFieldsReadBackTheSameAndSaveTheSameAgain) {
    Open(FixturePath("tablecell_fields.dxf"));
    auto before = AllFields();
    std::filesystem::path first = Save("first.dxf");
    EXPECT_EQ(qmtest::CompareDxf(FixturePath("tablecell_fields.dxf"), first), "");
    Open(first);
    EXPECT_EQ(AllFields(), before);
    std::filesystem::path second = Save("second.dxf");
    EXPECT_EQ(qmtest::ReadText(first), qmtest::ReadText(second));
}

TEST_F(FieldFileTest, FieldsMadeInTheSessionReadBackWithEveryKindOfValue) {
    qmtest::ScriptedEvaluator probe(L"Probe", qmtest::Succeeds(1.23456));
    qmtest::ScriptedLoader loader;
    loader.Add(&probe);
    ASSERT_EQ(host().fieldEngine().registerEvaluatorLoader(&loader), Acad::eOk);
    AcDbObjectId text = qmtest::AddFieldText(db()->modelSpaceId(), AcGePoint3d(1, 2, 0),
                                             L"A %<\\Probe one>% and %<\\Probe two \\f \"%pr3\">% ^ end", 0x15);
    AcDbObjectId textField = qmtest::TextFieldOf(text);
    AcDbObjectId one = qmtest::ChildFieldOf(text, 0), two = qmtest::ChildFieldOf(text, 1);
    ASSERT_FALSE(one.isNull());
    ASSERT_FALSE(two.isNull());
    std::wstring longText(300, L'x');
    longText += L"\u00e9\u20ac";  // beyond the first chunk, in characters of several bytes
    {
        AcDbObjectPointer<AcDbField> field(one, AcDb::kForWrite);
        ASSERT_EQ(field.openStatus(), Acad::eOk);
        std::pair<const wchar_t*, AcFdFieldValue> items[] = {
            {L"long", AcFdFieldValue(static_cast<Adesk::Int32>(-2147483647 - 1))},
            {L"double", AcFdFieldValue(0.1 + 0.2)},
            {L"text", AcFdFieldValue(L"two\nlines ^J caret\t\r")},
            {L"long text", AcFdFieldValue(longText.c_str())},
            {L"id", AcFdFieldValue(text)},
            {L"none", AcFdFieldValue()},
        };
        for (auto& [key, value] : items) ASSERT_EQ(field->setData(key, &value), Acad::eOk);
        AcFdFieldValue point, point3;
        point.set(1.5, -2.25);
        point3.set(1e300, -7.5, 3.0);
        field->setData(L"point", &point);
        field->setData(L"3d point", &point3);
        ASSERT_EQ(field->setFieldCode((L"%<\\Probe " + longText + L">%").c_str()), Acad::eOk);
        field->setEvaluationOption(AcDbField::kOnDemand);
    }
    std::map<std::wstring, std::wstring> before = {{L"text", DescribeField(textField)},
                                                   {L"one", DescribeField(one)},
                                                   {L"two", DescribeField(two)}};
    EXPECT_NE(before[L"one"].find(L"data long text = 4:\"" + longText + L"\""), std::wstring::npos);
    std::wstring contents = qmtest::MTextContents(text);
    std::string handles[] = {cadhost::ToUtf8(HandleText(text)), cadhost::ToUtf8(HandleText(textField)),
                             cadhost::ToUtf8(HandleText(one)), cadhost::ToUtf8(HandleText(two))};
    std::filesystem::path first = Save("session.dxf");
    Open(first);
    EXPECT_EQ(DescribeField(Id(handles[1])), before[L"text"]);
    EXPECT_EQ(DescribeField(Id(handles[2])), before[L"one"]);
    EXPECT_EQ(DescribeField(Id(handles[3])), before[L"two"]);
    EXPECT_EQ(qmtest::MTextContents(Id(handles[0])), contents);
    std::filesystem::path second = Save("again.dxf");
    EXPECT_EQ(qmtest::ReadText(first), qmtest::ReadText(second));
    EXPECT_NE(before[L"two"].find(L"value 1.235\n"), std::wstring::npos) << cadhost::ToUtf8(before[L"two"]);
    host().fieldEngine().unregisterEvaluatorLoader(&loader);
}

// The groups of an object's cached value: from the ACFD_FIELD_VALUE key to
// the end marker.
std::vector<DxfGroup> CacheGroups(const std::vector<DxfGroup>& object) {
    std::vector<DxfGroup> out;
    bool in = false;
    for (const DxfGroup& group : object) {
        if (group.code == 7 && group.value == "ACFD_FIELD_VALUE") in = true;
        if (!in) continue;
        out.push_back(group);
        if (group.code == 304) break;
    }
    return out;
}

std::string GroupsText(const std::vector<DxfGroup>& groups) {
    std::string out;
    for (const DxfGroup& group : groups) out += std::to_string(group.code) + "=" + group.value + ";";
    return out;
}

TEST_F(FieldFileTest, ATextOfFieldsThatShowsItsChildrenIsFiledWithoutAValueOfItsOwn) {
    qmtest::ScriptedEvaluator probe(L"Probe", qmtest::Succeeds(L"two\nlines"));
    qmtest::ScriptedLoader loader;
    loader.Add(&probe);
    ASSERT_EQ(host().fieldEngine().registerEvaluatorLoader(&loader), Acad::eOk);
    AcDbObjectId alone = qmtest::AddFieldText(db()->modelSpaceId(), AcGePoint3d(0, 0, 0), L"%<\\Probe a>%");
    AcDbObjectId among = qmtest::AddFieldText(db()->modelSpaceId(), AcGePoint3d(0, 5, 0),
                                              L"Load: %<\\Probe b>% and %<\\Probe c>%.");
    AcDbObjectId fields[] = {qmtest::TextFieldOf(alone), qmtest::ChildFieldOf(alone), qmtest::TextFieldOf(among),
                             qmtest::ChildFieldOf(among, 0), qmtest::ChildFieldOf(among, 1)};
    std::vector<std::wstring> before;
    for (AcDbObjectId id : fields) {
        ASSERT_FALSE(id.isNull());
        before.push_back(DescribeField(id));
    }
    EXPECT_NE(before[2].find(L"value Load: two\nlines and two\nlines."), std::wstring::npos) << before[2];
    std::vector<std::string> handles;
    for (AcDbObjectId id : fields) handles.push_back(cadhost::ToUtf8(HandleText(id)));

    std::filesystem::path first = Save("texts.dxf");
    auto objects = qmtest::DxfObjectsByHandle(first);
    // The texts' fields: no value, no text shown, no cache in their state.
    const std::string none = "7=ACFD_FIELD_VALUE;93=0;90=0;94=0;300=;302=;304=ACVALUE_END;";
    for (int i : {0, 2}) {
        EXPECT_EQ(GroupsText(CacheGroups(objects.at(handles[i]))), none) << handles[i];
        for (const DxfGroup& group : objects.at(handles[i]))
            if (group.code == 94) {
                EXPECT_EQ(std::stoi(group.value) & (AcDbField::kHasCache | AcDbField::kHasFormattedString), 0);
                break;
            }
    }
    // The value itself, once, without a shown text that repeats it.
    EXPECT_EQ(GroupsText(CacheGroups(objects.at(handles[1]))),
              "7=ACFD_FIELD_VALUE;93=0;90=4;1=two^Jlines;94=0;300=;302=;304=ACVALUE_END;");

    Open(first);
    for (size_t i = 0; i < before.size(); ++i) EXPECT_EQ(DescribeField(Id(handles[i])), before[i]) << handles[i];
    std::filesystem::path second = Save("again.dxf");
    EXPECT_EQ(qmtest::ReadText(first), qmtest::ReadText(second));
    host().fieldEngine().unregisterEvaluatorLoader(&loader);
}

TEST_F(FieldFileTest, ATextValueShapedByItsEvaluatorKeepsItsShownText) {
    qmtest::ScriptedEvaluator probe(L"Probe", qmtest::Succeeds(L"raw"));
    probe.ownText = L"shaped";
    qmtest::ScriptedLoader loader;
    loader.Add(&probe);
    ASSERT_EQ(host().fieldEngine().registerEvaluatorLoader(&loader), Acad::eOk);
    AcDbObjectId text = qmtest::AddFieldText(db()->modelSpaceId(), AcGePoint3d(0, 0, 0), L"%<\\Probe a>%");
    AcDbObjectId child = qmtest::ChildFieldOf(text);
    std::wstring described = DescribeField(child);
    EXPECT_NE(described.find(L"value shaped"), std::wstring::npos) << described;
    std::filesystem::path first = Save("shaped.dxf");
    auto objects = qmtest::DxfObjectsByHandle(first);
    EXPECT_EQ(GroupsText(CacheGroups(objects.at(cadhost::ToUtf8(HandleText(child))))),
              "7=ACFD_FIELD_VALUE;93=0;90=4;1=raw;94=0;300=;302=shaped;304=ACVALUE_END;");
    std::string handle = cadhost::ToUtf8(HandleText(child));
    host().fieldEngine().unregisterEvaluatorLoader(&loader);
    Open(first);
    EXPECT_EQ(DescribeField(Id(handle)), described);
}

TEST_F(FieldFileTest, LongValuesThatManyFieldsShowAreWrittenForEachAndReadBackApart) {
    std::wstring same = L"First line \u00E9\u20AC ^ caret\t", other = L"Other \u0416\t";
    while (same.size() < 700) same += same;
    while (other.size() < 700) other += other;
    AcValue sameValue(same.c_str()), otherValue(other.c_str());
    qmtest::ScriptedEvaluator probe(L"Probe", [&](AcDbField* field, int, AcFdFieldResult* result) {
        std::wstring code = field->getFieldCode(AcDbField::kFieldCode);
        // One value handed to every field that names "same", as an
        // evaluator hands out a file it read once.
        result->setFieldValue(code.find(L"same") != std::wstring::npos ? &sameValue : &otherValue);
        result->setEvaluationStatus(AcDbField::kSuccess);
        return Acad::eOk;
    });
    qmtest::ScriptedLoader loader;
    loader.Add(&probe);
    ASSERT_EQ(host().fieldEngine().registerEvaluatorLoader(&loader), Acad::eOk);
    const wchar_t* codes[] = {L"%<\\Probe same>%", L"%<\\Probe other>%", L"%<\\Probe same>%", L"%<\\Probe same>%"};
    std::vector<std::string> texts, children;
    std::vector<std::wstring> contents, described;
    for (int i = 0; i < 4; ++i) {
        AcDbObjectId text = qmtest::AddFieldText(db()->modelSpaceId(), AcGePoint3d(0, 5.0 * i, 0), codes[i]);
        texts.push_back(cadhost::ToUtf8(HandleText(text)));
        children.push_back(cadhost::ToUtf8(HandleText(qmtest::ChildFieldOf(text))));
        contents.push_back(qmtest::MTextContents(text));
        described.push_back(DescribeField(qmtest::ChildFieldOf(text)));
    }
    EXPECT_NE(described[0].find(L"value " + same), std::wstring::npos);
    EXPECT_NE(described[1].find(L"value " + other), std::wstring::npos);
    host().fieldEngine().unregisterEvaluatorLoader(&loader);

    Open(Save("shared.dxf"));
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(qmtest::MTextContents(Id(texts[i])), contents[i]) << i;
        EXPECT_EQ(DescribeField(Id(children[i])), described[i]) << i;
    }
    // What one text or field holds is its own, however alike they came.
    {
        AcDbObjectPointer<AcDbMText> text(Id(texts[2]), AcDb::kForWrite);
        ASSERT_EQ(text.openStatus(), Acad::eOk);
        text->setContents(L"changed");
        AcDbObjectPointer<AcDbField> field(Id(children[3]), AcDb::kForWrite);
        ASSERT_EQ(field.openStatus(), Acad::eOk);
        AcFdFieldValue item(L"an item");
        field->setData(L"note", &item);
    }
    EXPECT_EQ(qmtest::MTextContents(Id(texts[0])), contents[0]);
    EXPECT_EQ(qmtest::MTextContents(Id(texts[3])), contents[3]);
    EXPECT_EQ(DescribeField(Id(children[0])), described[0]);
    Open(Save("changed.dxf"));
    EXPECT_EQ(qmtest::MTextContents(Id(texts[2])), L"changed");
    for (int i : {0, 1, 3}) EXPECT_EQ(qmtest::MTextContents(Id(texts[i])), contents[i]) << i;
    for (int i : {0, 1, 2}) EXPECT_EQ(DescribeField(Id(children[i])), described[i]) << i;
    std::wstring noted = described[3];
    noted.insert(noted.find(L"\nchildren"), L"\ndata note = 4:\"an item\"");
    EXPECT_EQ(DescribeField(Id(children[3])), noted);
}

// The text 32 of tablecell_notables.dxf holds the field 35 (_text), whose
// one child is the field 36.
TEST_F(FieldFileTest, TextsOfFieldsInACycleWithoutValuesShowNoValueAndSaveAsTheyCame) {
    std::string text = qmtest::ReadText(FixturePath("tablecell_notables.dxf"));
    auto replace = [&text](const std::string& from, const std::string& to) {
        size_t at = text.find(from);
        ASSERT_NE(at, std::string::npos) << from;
        text.replace(at, from.size(), to);
    };
    const std::string cached = " 90\n4\n  1\nPump\n 94\n0\n300\n\n302\nPump\n";
    const std::string none = " 90\n0\n 94\n0\n300\n\n302\n\n";
    replace(cached, none);  // the text field's
    replace("  1\nTableCell\n  2\n\\TableCell Table(<3C>).$B$2\n 90\n0\n", "  1\n_text\n  2\n%<\\_FldIdx 0>%\n 90\n1\n360\n35\n");
    replace(cached, none);  // the child's, a text field now whose child is the first
    std::filesystem::path path = m_folder.path() / "cycle.dxf";
    qmtest::WriteText(path, text);
    Open(path);
    for (const char* handle : {"35", "36"}) {
        AcDbObjectPointer<AcDbField> field(Id(handle), AcDb::kForRead);
        ASSERT_EQ(field.openStatus(), Acad::eOk);
        EXPECT_TRUE(field->isTextField());
        EXPECT_STREQ(field->getValue(), L"####") << handle;
        AcFdFieldValue value;
        ASSERT_EQ(field->getValue(value), Acad::eOk);
        const ACHAR* shown = nullptr;
        ASSERT_TRUE(value.get(shown));
        EXPECT_STREQ(shown, L"####");
    }
    EXPECT_EQ(qmtest::CompareDxf(path, Save("cycle_saved.dxf")), "");
}

TEST_F(FieldFileTest, AFieldThatTheHostCannotReadIsKeptAsItCame) {
    // A code that names an object by id, as other evaluators write them, and
    // a date value, which the host's values do not hold.
    qmtest::FieldFixtureText area = qmtest::ReadFieldFixture().at("area");
    std::string from = "  1\nAcArea\n  2\n\\AcArea " + area.arguments + "\n 90\n0\n 97\n0\n";
    std::string to = "  1\nAcObjProp\n  2\n\\AcObjProp Object(%<\\_ObjIdx 0>%).Area\n 90\n0\n 97\n1\n331\n" +
                     qmtest::ReadFieldFixture().at("up_to_date").text + "\n";
    std::filesystem::path path = Edited("foreign.dxf", from, to);
    std::string text = qmtest::ReadText(path);
    size_t at = text.find("  6\nAcArea Data\n");
    ASSERT_NE(at, std::string::npos);
    at = text.find("  7\nACFD_FIELD_VALUE\n", at);
    ASSERT_NE(at, std::string::npos);
    text.insert(at, "  6\nWhen\n 93\n0\n 90\n8\n 92\n4\n310\n0A0B0C0D\n 94\n0\n300\n\n302\n\n304\nACVALUE_END\n");
    size_t count = text.rfind(" 93\n1\n  6\nAcArea Data\n", at);
    ASSERT_NE(count, std::string::npos);
    text.replace(count, 5, " 93\n2");
    qmtest::WriteText(path, text);
    Open(path);

    AcDbObjectId child = Id(area.child);
    {
        AcDbObjectPointer<AcDbField> field(child, AcDb::kForRead);
        ASSERT_EQ(field.openStatus(), Acad::eOk);
        EXPECT_STREQ(field->evaluatorId(), L"AcObjProp");
        EXPECT_STREQ(field->getFieldCode(AcDbField::kFieldCode), L"\\AcObjProp Object(%<\\_ObjIdx 0>%).Area \\f \"%lu2%pr2\"");
        EXPECT_STREQ(field->getValue(), L"12.00");
        EXPECT_EQ(field->getData(L"When", nullptr), Acad::eKeyNotFound);  // no value of the host's
        EXPECT_EQ(field->getData(L"AcArea Data", nullptr), Acad::eOk);
    }
    std::filesystem::path saved = Save("kept.dxf");
    auto original = qmtest::DxfObjectsByHandle(path);
    auto written = qmtest::DxfObjectsByHandle(saved);
    ASSERT_TRUE(written.count(area.child));
    const auto& a = original.at(area.child);
    const auto& b = written.at(area.child);
    ASSERT_EQ(a.size(), b.size());
    for (size_t i = 0; i < a.size(); ++i) {
        EXPECT_EQ(a[i].code, b[i].code) << i;
        EXPECT_EQ(a[i].value, b[i].value) << i;
    }
    // Evaluating it fails, as its code cannot be read; the drawing keeps it.
    {
        AcDbObjectPointer<AcDbField> field(child, AcDb::kForWrite);
        EXPECT_NE(field->evaluate(AcDbField::kDemand, db()), Acad::eOk);
        EXPECT_EQ(field->evaluationStatus(), AcDbField::kSyntaxError);
        EXPECT_STREQ(field->getValue(), L"####");
    }
}

TEST_F(FieldFileTest, ChildPlacesThatDoNotMatchTheChildrenKeepTheCodeAsItCame) {
    qmtest::FieldFixtureText t = qmtest::ReadFieldFixture().at("stale");
    struct Case {
        const char* to;
        const wchar_t* code;
    };
    const Case cases[] = {
        {"Load: %<\\_FldIdx 1>%", L"Load: %<\\_FldIdx 1>%"},                          // no second child
        {"%<\\_FldIdx 0>% %<\\_FldIdx 0>%", L"%<\\_FldIdx 0>% %<\\_FldIdx 0>%"},      // one child twice
        {"Load: none", L"Load: none"},                                                  // a child without place
        {"Load: %<\\_FldIdx 0>", L"Load: %<\\_FldIdx 0>"},                            // a place left open
    };
    for (const Case& c : cases) {
        std::filesystem::path path = Edited("places.dxf", "  2\nLoad: %<\\_FldIdx 0>%\n", std::string("  2\n") + c.to + "\n");
        Open(path);
        AcDbObjectPointer<AcDbField> field(Id(t.textField), AcDb::kForRead);
        ASSERT_EQ(field.openStatus(), Acad::eOk) << c.to;
        EXPECT_STREQ(field->getFieldCode(AcDbField::kPreserveFields), c.code) << c.to;
        EXPECT_EQ(field->childCount(), 1) << c.to;
        EXPECT_STREQ(field->getValue(), L"Load: old") << c.to;
        field.close();
        std::filesystem::path saved = Save("places_saved.dxf");
        EXPECT_EQ(qmtest::CompareDxf(path, saved), "") << c.to;
    }
}

TEST_F(FieldFileTest, BrokenFieldsFailTheFileWithTheirLineOrReadAsNoValue) {
    qmtest::FieldFixtureText t = qmtest::ReadFieldFixture().at("up_to_date");
    // Numbers that are no numbers fail the file, naming the line.
    std::filesystem::path bad = Edited("bad.dxf", " 91\n63\n 92\n0\n", " 91\nmany\n 92\n0\n");
    std::wstring error = OpenFails(bad);
    EXPECT_NE(error.find(L"line "), std::wstring::npos) << cadhost::ToUtf8(error);
    EXPECT_NE(error.find(L"needs a whole number"), std::wstring::npos) << cadhost::ToUtf8(error);
    std::filesystem::path huge = Edited("huge.dxf", " 90\n2\n140\n12.0\n", " 90\n1\n 91\n99999999999\n");
    error = OpenFails(huge);
    EXPECT_NE(error.find(L"out of range"), std::wstring::npos) << cadhost::ToUtf8(error);

    // A value of no type, an unknown status and option bits beyond the
    // automatic moments: the field reads, without a value.
    std::filesystem::path odd = Edited("odd.dxf", " 95\n2\n", " 95\n3\n");
    Open(odd);
    AcDbObjectId textField = Id(t.textField);
    {
        AcDbObjectPointer<AcDbField> field(textField, AcDb::kForRead);
        EXPECT_EQ(field->evaluationStatus(), AcDbField::kNotYetEvaluated);
        EXPECT_STREQ(field->getValue(), L"####");
    }
    std::filesystem::path options = Edited("options.dxf", " 91\n63\n", " 91\n255\n");
    Open(options);
    AcDbObjectPointer<AcDbField> field(Id(t.textField), AcDb::kForRead);
    EXPECT_EQ(field->evaluationOption(), AcDbField::kAutomatic);
}

TEST_F(FieldFileTest, AnApplicationGroupLeftOpenDoesNotTakeTheFieldWithIt) {
    // "102 {ACAD_REACTORS" without its "102 }": the field's own groups are
    // still the field's, and saving twice gives the same file.
    qmtest::FieldFixtureText t = qmtest::ReadFieldFixture().at("stale");
    std::filesystem::path path = Edited("open.dxf", "102\n{ACAD_REACTORS\n330\n" + t.textField + "\n102\n}\n",
                                        "102\n{ACAD_REACTORS\n330\n" + t.textField + "\n");
    Open(path);
    std::wstring described = DescribeField(Id(t.child));
    EXPECT_EQ(described.find(L"evaluator TableCell\ncode \\TableCell Table(<"), 0u) << cadhost::ToUtf8(described);
    EXPECT_NE(described.find(L"\nvalue old\n"), std::wstring::npos) << cadhost::ToUtf8(described);
    std::filesystem::path first = SaveTwice("open");
    EXPECT_EQ(qmtest::CompareDxf(path, first), "");
}

TEST_F(FieldFileTest, AFieldWithGroupsOutOfPlaceIsWrittenAsItCameWhileUnchanged) {
    // A stray format overflow inside a data item, and a group the form
    // does not have: the field reads as far as it goes, and saves as it came.
    qmtest::FieldFixtureText t = qmtest::ReadFieldFixture().at("stale");
    std::string item = "  6\nTableCell Data\n 93\n0\n 90\n4\n  1\n" + t.arguments + "\n";
    std::filesystem::path path = Edited("stray.dxf", item, item + "  9\nstray\n 62\n5\n");
    Open(path);
    AcDbObjectId child = Id(t.child);
    std::wstring described = DescribeField(child);
    EXPECT_NE(described.find(L"\nvalue old\n"), std::wstring::npos) << cadhost::ToUtf8(described);
    std::filesystem::path first = Save("stray_first.dxf");
    auto original = qmtest::DxfObjectsByHandle(path), written = qmtest::DxfObjectsByHandle(first);
    ASSERT_EQ(original.at(t.child).size(), written.at(t.child).size());
    for (size_t i = 0; i < original.at(t.child).size(); ++i) {
        EXPECT_EQ(original.at(t.child)[i].code, written.at(t.child)[i].code) << i;
        EXPECT_EQ(original.at(t.child)[i].value, written.at(t.child)[i].value) << i;
    }
    // Once the field changes, it is written in the form files give fields,
    // and stays so.
    {
        AcDbObjectPointer<AcDbField> field(child, AcDb::kForWrite);
        ASSERT_EQ(field->setFieldCode((L"%<\\TableCell " + cadhost::FromUtf8(t.arguments) + L">%").c_str()),
                  Acad::eOk);
    }
    std::filesystem::path second = Save("stray_second.dxf");
    Open(second);
    std::filesystem::path third = Save("stray_third.dxf");
    EXPECT_EQ(qmtest::ReadText(second), qmtest::ReadText(third));
    bool stray = false;
    auto objects = qmtest::DxfObjectsByHandle(third);
    for (const DxfGroup& group : objects.at(t.child))
        if (group.code == 62 || group.value == "stray") stray = true;
    EXPECT_FALSE(stray);
}

TEST_F(FieldFileTest, ExtendedDataAmidTheFieldsGroupsLeavesTheFieldItsGroups) {
    // Extended data amid the field's groups (a 1001 followed by groups of
    // the object): the field is still read, and the extended data is the
    // object's, written after its groups where files keep it.
    qmtest::FieldFixtureText t = qmtest::ReadFieldFixture().at("stale");
    std::string head = "100\nAcDbField\n  1\nTableCell\n";
    std::filesystem::path path = Edited("xdata.dxf", head, "1001\nQMTEST\n1000\nnote\n" + head);
    Open(path);
    std::wstring described = DescribeField(Id(t.child));
    EXPECT_NE(described.find(L"\nvalue old\n"), std::wstring::npos) << cadhost::ToUtf8(described);
    std::filesystem::path first = SaveTwice("xdata");
    std::string saved = qmtest::ReadText(first);
    const std::string xdata = "1001\nQMTEST\n1000\nnote\n";
    size_t at = saved.find(xdata);
    ASSERT_NE(at, std::string::npos);
    EXPECT_EQ(saved.compare(at + xdata.size(), 4, "  0\n"), 0) << saved.substr(at, 80);  // the object's last groups
    EXPECT_EQ(saved.find(xdata, at + 1), std::string::npos);
    // Without it, the file is the one the fixture gave.
    saved.erase(at, xdata.size());
    qmtest::WriteText(m_folder.path() / "xdata_without.dxf", saved);
    EXPECT_EQ(qmtest::CompareDxf(FixturePath("tablecell_fields.dxf"), m_folder.path() / "xdata_without.dxf"), "");
}

TEST_F(FieldFileTest, AFieldWithoutHandleGetsOneAheadOfItsGroups) {
    // A field (and an object of a type the host does not know) without
    // handle: each is given one, written before its groups, and the second
    // save is the first.
    qmtest::FieldFixtureText t = qmtest::ReadFieldFixture().at("area");
    std::filesystem::path path = Edited("handleless.dxf", "", "");
    std::string text = qmtest::ReadText(path);
    size_t end = text.rfind("  0\nENDSEC\n");
    ASSERT_NE(end, std::string::npos);
    text.insert(end, "  0\nFIELD\n100\nAcDbField\n  1\nAcArea\n  2\n\\AcArea Object(<31>)\n 90\n0\n 97\n0\n"
                     "  0\nWIDGET\n100\nAcDbWidget\n  1\nkept\n");
    qmtest::WriteText(path, text);
    Open(path);
    std::filesystem::path first = SaveTwice("handleless");
    std::string saved = qmtest::ReadText(first);
    size_t widget = saved.find("  0\nWIDGET\n");
    ASSERT_NE(widget, std::string::npos);
    const std::string widgetHead = "  0\nWIDGET\n  5\n", fieldHead = "  0\nFIELD\n  5\n";
    EXPECT_EQ(saved.compare(widget, widgetHead.size(), widgetHead), 0) << saved.substr(widget, 60);
    EXPECT_NE(saved.find("100\nAcDbWidget\n  1\nkept\n", widget), std::string::npos);
    size_t field = saved.rfind("  0\nFIELD\n", widget);
    ASSERT_NE(field, std::string::npos);
    EXPECT_EQ(saved.compare(field, fieldHead.size(), fieldHead), 0) << saved.substr(field, 60);
}

TEST_F(FieldFileTest, AHandleAfterItsOwnerIsWrittenAheadWithTheGroupsInOrder) {
    // An object whose handle follows its owner and a second owner group
    // that names nothing: the handle goes first, the second group stays
    // behind the owner, and the saved file opens again.
    std::filesystem::path path = Edited("late_handle.dxf", "", "");
    std::string text = qmtest::ReadText(path);
    size_t end = text.rfind("  0\nENDSEC\n");
    ASSERT_NE(end, std::string::npos);
    text.insert(end, "  0\nWIDGET\n330\nC\n330\nnot a handle\n-30\n3\n  5\n3FFF\n100\nAcDbWidget\n  1\nkept\n");
    qmtest::WriteText(path, text);
    Open(path);
    std::filesystem::path first = SaveTwice("late_handle");
    std::string saved = qmtest::ReadText(first);
    const std::string widget = "  0\nWIDGET\n  5\n3FFF\n330\nC\n330\nnot a handle\n-30\n3\n100\nAcDbWidget\n  1\nkept\n";
    EXPECT_NE(saved.find(widget), std::string::npos) << saved.substr(saved.find("  0\nWIDGET\n"), 120);
}

TEST_F(FieldFileTest, AnotherReaderLoadsTheFieldsTheHostWrote) {
    qmtest::AddFieldText(db()->modelSpaceId(), AcGePoint3d(0, 0, 0), L"Made %<\\Probe x>% here");
    AcDbObjectId paper =
        qmtest::AddFieldText(db()->paperSpaceId(), AcGePoint3d(0, 0, 0), L"%<\\Probe y>%\\P%<\\Probe z>%");
    ASSERT_FALSE(qmtest::ChildFieldOf(paper, 1).isNull());
    std::filesystem::path path = Save("for_ezdxf.dxf");
    std::string command = "/usr/bin/python3 " + FixturePath("check_with_ezdxf.py").string() + " audit " +
                          path.string() + " > " + (m_folder.path() / "ezdxf.txt").string() + " 2>&1";
    int status = std::system(command.c_str());
    ASSERT_NE(status, -1);
    int exit = WEXITSTATUS(status);
    if (exit == 77) GTEST_SKIP() << "ezdxf is not installed for /usr/bin/python3";
    std::string report = qmtest::ReadText(m_folder.path() / "ezdxf.txt");
    EXPECT_EQ(exit, 0) << report;
    EXPECT_NE(report.find("model MTEXT 1"), std::string::npos) << report;
    EXPECT_NE(report.find("paper MTEXT 1"), std::string::npos) << report;
}

}  // namespace

TEST_F(FieldFileTest, GroupsKeptAmidALongCodeAndFormatStayWhereTheyStood) {
    // The overflow parts of a field's code (3) and format (9) belong to the
    // group before them: an application's group after them keeps its place.
    std::wstring longPart(300, L'y');
    AcDbObjectId text = qmtest::AddFieldText(
        db()->modelSpaceId(), AcGePoint3d(0, 0, 0),
        (L"%<\\Probe " + longPart + L" \\f \"%pr2" + longPart + L"\">%").c_str(), 0x15);
    AcDbObjectId child = qmtest::ChildFieldOf(text, 0);
    ASSERT_FALSE(child.isNull());
    std::string saved = qmtest::ReadText(Save("long.dxf"));
    size_t field = saved.find("  0\nFIELD\n  5\n" + cadhost::ToUtf8(HandleText(child)) + "\n");
    ASSERT_NE(field, std::string::npos);
    const std::string kept = "102\n{QMTEST\n  1\nnote\n102\n}\n";
    size_t afterCode = saved.find("\n 90\n", saved.find("\n  3\n", field));
    ASSERT_NE(afterCode, std::string::npos);
    saved.insert(afterCode + 1, kept);
    size_t afterFormat = saved.find("\n 98\n", saved.find("\n  9\n", field));
    ASSERT_NE(afterFormat, std::string::npos);
    saved.insert(afterFormat + 1, kept);
    std::filesystem::path edited = m_folder.path() / "long_kept.dxf";
    qmtest::WriteText(edited, saved);
    Open(edited);
    std::filesystem::path first = Save("long_kept_first.dxf");
    EXPECT_EQ(qmtest::CompareDxf(edited, first), "");
}
