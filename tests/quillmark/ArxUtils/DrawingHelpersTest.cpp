// The drawing helpers: error reports, handle texts, and text values in
// extended data by object, id and entity name, and the two exports as other
// modules find them.
#include <dlfcn.h>

#include <adslib.h>
#include <dbents.h>
#include <dbobjptr.h>
#include <dbsymtb.h>

#include <string>
#include <vector>

#include "ArxUtils/ArxUtils.h"
#include "support/TestHost.h"

namespace {

// One group of a chain, as a test writes and reads it.
struct Group {
    int code;
    std::wstring text;
    bool operator==(const Group& other) const { return code == other.code && text == other.text; }
};

std::ostream& operator<<(std::ostream& out, const Group& group) {
    return out << group.code << ":" << cadhost::ToUtf8(group.text);
}

class DrawingHelpersTest : public qmtest::HostTest {
protected:
    AcDbDatabase* db() { return acdbHostApplicationServices()->workingDatabase(); }

    AcDbObjectId AddLine() {
        AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> model(db()->modelSpaceId(), AcDb::kForWrite);
        auto* line = new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0));
        AcDbObjectId id;
        EXPECT_EQ(model->appendAcDbEntity(id, line), Acad::eOk);
        line->close();
        return id;
    }

    // Writes a chain of groups on the object (the applications registered first).
    void SetChain(AcDbObjectId id, const std::vector<Group>& groups) {
        resbuf* head = nullptr;
        resbuf** tail = &head;
        for (const Group& g : groups) {
            if (g.code == 1001) acdbRegApp(g.text.c_str());
            resbuf* rb = acutBuildList(g.code, g.text.c_str(), 0);
            ASSERT_NE(rb, nullptr);
            *tail = rb;
            tail = &rb->rbnext;
        }
        AcDbObjectPointer<AcDbLine> line(id, AcDb::kForWrite);
        ASSERT_EQ(line.openStatus(), Acad::eOk);
        EXPECT_EQ(line->setXData(head), Acad::eOk);
        acutRelRb(head);
    }

    std::vector<Group> Chain(AcDbObjectId id, const ACHAR* app) {
        AcDbObjectPointer<AcDbLine> line(id);
        std::vector<Group> groups;
        if (line.openStatus() != Acad::eOk) return groups;
        resbuf* chain = line->xData(app);
        for (resbuf* rb = chain; rb; rb = rb->rbnext) groups.push_back({rb->restype, rb->resval.rstring});
        acutRelRb(chain);
        return groups;
    }

    static bool IsRegistered(AcDbDatabase* database, const wchar_t* app) {
        AcDbSymbolTablePointer<AcDbRegAppTable> table(database);
        return table.openStatus() == Acad::eOk && table->has(app);
    }

    void Erase(AcDbObjectId id) {
        AcDbObject* object = nullptr;
        ASSERT_EQ(acdbOpenAcDbObject(object, id, AcDb::kForWrite), Acad::eOk);
        ASSERT_EQ(object->erase(), Acad::eOk);
        object->close();
    }
};

TEST_F(DrawingHelpersTest, ReportArxErrorPrintsOnlyAFailure) {
    TakeOutput();
    ReportArxError(Acad::eOk, L"AcadDatabase", 92);
    EXPECT_EQ(TakeOutput(), "");
    ReportArxError(Acad::eKeyNotFound, L"AcadDatabase", 92);
    EXPECT_EQ(TakeOutput(), "ARX ERROR: eKeyNotFound. AcadDatabase: 92");  // on a line of its own
}

TEST_F(DrawingHelpersTest, HandleTextsOfOpenAndClosedObjects) {
    AcDbObjectId line = AddLine();
    ACHAR expected[32];
    line.handle().getIntoAsciiBuffer(expected, 32);
    CString text = L"stale";
    GetHandleText(line, text);
    EXPECT_EQ(text, expected);
    {
        AcDbObjectPointer<AcDbLine> open(line);
        CString fromObject;
        GetObjectHandleText(open.object(), fromObject);
        EXPECT_EQ(fromObject, expected);
    }
    // An id that does not open gives the empty text, and nothing is said.
    TakeOutput();
    for (AcDbObjectId id : {AcDbObjectId(), line}) {
        if (id == line) Erase(line);
        text = L"stale";
        GetHandleText(id, text);
        EXPECT_EQ(text, L"");
    }
    EXPECT_EQ(TakeOutput(), "");
}

TEST_F(DrawingHelpersTest, SetXdataRegistersThenReplacesOrAppends) {
    AcDbObjectId id = AddLine();
    ASSERT_FALSE(IsRegistered(db(), L"QMTEST"));
    {
        AcDbObjectPointer<AcDbLine> line(id);  // open for read: setXdata upgrades it
        EXPECT_EQ(setXdata(line.object(), L"QMTEST", CString(L"first"), 1), 1);
    }
    EXPECT_TRUE(IsRegistered(db(), L"QMTEST"));
    EXPECT_EQ(Chain(id, L"QMTEST"), (std::vector<Group>{{1001, L"QMTEST"}, {1000, L"first"}}));

    struct Step {
        const wchar_t* value;
        int append;
        std::vector<Group> after;
    };
    const Step steps[] = {
        {L"second", 0, {{1001, L"QMTEST"}, {1000, L"second"}}},
        {L"third", 1, {{1001, L"QMTEST"}, {1000, L"second"}, {1000, L"third"}}},
        {L"", 1, {{1001, L"QMTEST"}, {1000, L"second"}, {1000, L"third"}, {1000, L""}}},
        {L"only", 0, {{1001, L"QMTEST"}, {1000, L"only"}}},
    };
    for (const Step& step : steps) {
        EXPECT_EQ(setXdata(id, L"QMTEST", CString(step.value), step.append), 1) << cadhost::ToUtf8(step.value);
        EXPECT_EQ(Chain(id, L"QMTEST"), step.after) << cadhost::ToUtf8(step.value);
    }
    // Other applications' data stays as it was.
    SetChain(id, {{1001, L"OTHER"}, {1000, L"kept"}});
    EXPECT_EQ(setXdata(id, L"QMTEST", CString(L"again"), 0), 1);
    EXPECT_EQ(Chain(id, L"OTHER"), (std::vector<Group>{{1001, L"OTHER"}, {1000, L"kept"}}));
}

TEST_F(DrawingHelpersTest, SetXdataRefusesWhatItCannotWrite) {
    AcDbObjectId id = AddLine();
    AcDbObjectPointer<AcDbLine> line(id);
    EXPECT_EQ(setXdata(static_cast<AcDbObject*>(nullptr), L"QMTEST", CString(L"v"), 0), 0);
    EXPECT_EQ(setXdata(line.object(), nullptr, CString(L"v"), 0), 0);
    EXPECT_EQ(setXdata(line.object(), L"", CString(L"v"), 0), 0);
    line.close();
    EXPECT_TRUE(Chain(id, nullptr).empty());
    EXPECT_FALSE(IsRegistered(db(), L""));
}

TEST_F(DrawingHelpersTest, GetXdataTakesTheFirstTextOutsideAGroup) {
    struct Case {
        const char* what;
        std::vector<Group> chain;
        int found;
        const wchar_t* text;  // what the text holds afterwards; it starts as "before"
    };
    const Case cases[] = {
        {"plain", {{1001, L"QMTEST"}, {1000, L"a"}, {1000, L"b"}}, 1, L"a"},
        {"group first", {{1001, L"QMTEST"}, {1002, L"{"}, {1000, L"a"}, {1002, L"}"}, {1000, L"b"}}, 1, L"b"},
        {"any control text flips", {{1001, L"QMTEST"}, {1002, L"}"}, {1000, L"a"}, {1002, L"{"}, {1000, L"b"}}, 1,
         L"b"},
        {"only grouped", {{1001, L"QMTEST"}, {1002, L"{"}, {1000, L"a"}}, 0, L"before"},
        {"no text", {{1001, L"QMTEST"}, {1070, L""}}, 0, L"before"},
        {"other application", {{1001, L"OTHER"}, {1000, L"x"}}, 0, L""},
    };
    for (const Case& c : cases) {
        AcDbObjectId id = AddLine();
        std::vector<Group> chain = c.chain;
        resbuf* head = nullptr;
        resbuf** tail = &head;
        for (const Group& g : chain) {
            if (g.code == 1001) acdbRegApp(g.text.c_str());
            resbuf* rb = g.code == 1070 ? acutBuildList(1070, short(7), 0) : acutBuildList(g.code, g.text.c_str(), 0);
            *tail = rb;
            tail = &rb->rbnext;
        }
        {
            AcDbObjectPointer<AcDbLine> line(id, AcDb::kForWrite);
            ASSERT_EQ(line->setXData(head), Acad::eOk) << c.what;
        }
        acutRelRb(head);
        CString text = L"before";
        EXPECT_EQ(getXdata(id, L"QMTEST", text), c.found) << c.what;
        EXPECT_EQ(text, c.text) << c.what;
    }
    CString untouched = L"before";
    EXPECT_EQ(getXdata(static_cast<AcDbObject*>(nullptr), L"QMTEST", untouched), 0);
    EXPECT_EQ(untouched, L"before");
}

TEST_F(DrawingHelpersTest, ReplaceChangesEveryEqualValueNotMindingCase) {
    AcDbObjectId id = AddLine();
    SetChain(id, {{1001, L"QMTEST"}, {1000, L"Door"}, {1000, L"wall"}, {1000, L"DOOR"}});
    EXPECT_EQ(ReplaceXdataString(id, L"QMTEST", L"door", L"gate"), 1);
    EXPECT_EQ(Chain(id, L"QMTEST"),
              (std::vector<Group>{{1001, L"QMTEST"}, {1000, L"gate"}, {1000, L"wall"}, {1000, L"gate"}}));
    EXPECT_EQ(ReplaceXdataString(id, L"QMTEST", L"window", L"x"), 0);
    EXPECT_EQ(ReplaceXdataString(id, L"NOSUCH", L"gate", L"x"), 0);
    EXPECT_EQ(ReplaceXdataString(static_cast<AcDbObject*>(nullptr), L"QMTEST", L"gate", L"x"), 0);
    EXPECT_EQ(Chain(id, L"QMTEST")[1].text, L"gate");
}

TEST_F(DrawingHelpersTest, RemoveTakesTheFirstEqualValueOnly) {
    AcDbObjectId id = AddLine();
    SetChain(id, {{1001, L"QMTEST"}, {1000, L"a"}, {1000, L"B"}, {1000, L"b"}});
    EXPECT_EQ(RemoveXdataString(id, L"QMTEST", L"b"), 1);
    EXPECT_EQ(Chain(id, L"QMTEST"), (std::vector<Group>{{1001, L"QMTEST"}, {1000, L"a"}, {1000, L"b"}}));
    EXPECT_EQ(RemoveXdataString(id, L"QMTEST", L"c"), 0);
    EXPECT_EQ(RemoveXdataString(id, L"NOSUCH", L"a"), 0);
    EXPECT_EQ(Chain(id, L"QMTEST").size(), 3u);
}

TEST_F(DrawingHelpersTest, IdAndNameFormsSayWhenTheyCannotReachTheObject) {
    AcDbObjectId id = AddLine();
    Erase(id);
    TakeOutput();
    CString text = L"before";
    EXPECT_EQ(getXdata(id, L"QMTEST", text), 0);
    EXPECT_EQ(TakeOutput(), "");  // reading says nothing
    EXPECT_EQ(setXdata(id, L"QMTEST", CString(L"v"), 0), 0);
    EXPECT_EQ(TakeOutput(), "acdbOpenEntity failed in setXdata function");
    EXPECT_EQ(ReplaceXdataString(id, L"QMTEST", L"a", L"b"), 0);
    EXPECT_EQ(TakeOutput(), "acdbOpenEntity failed in setXdata function");
    EXPECT_EQ(RemoveXdataString(id, L"QMTEST", L"a"), 0);
    EXPECT_EQ(TakeOutput(), "acdbOpenEntity failed in setXdata function");

    ads_name none = {0, 0};
    EXPECT_EQ(setXdata(none, L"QMTEST", CString(L"v"), 0), 0);
    EXPECT_EQ(ReplaceXdataString(none, L"QMTEST", L"a", L"b"), 0);
    EXPECT_EQ(RemoveXdataString(none, L"QMTEST", L"a"), 0);
    EXPECT_EQ(TakeOutput(), "");
    EXPECT_EQ(getXdata(none, L"QMTEST", text), 0);
    std::string said = TakeOutput();
    EXPECT_EQ(said.rfind("\nacdbGetObjectId failed in FILE: ArxUtils;LINE: ", 0), 0u) << said;
    EXPECT_EQ(text, L"before");

    // An entity name reaches the object.
    AcDbObjectId live = AddLine();
    ads_name name;
    ASSERT_EQ(acdbGetAdsName(name, live), Acad::eOk);
    EXPECT_EQ(setXdata(name, L"QMTEST", CString(L"named"), 0), 1);
    EXPECT_EQ(getXdata(name, L"QMTEST", text), 1);
    EXPECT_EQ(text, L"named");
    EXPECT_EQ(ReplaceXdataString(name, L"QMTEST", L"NAMED", L"renamed"), 1);
    EXPECT_EQ(RemoveXdataString(name, L"QMTEST", L"renamed"), 1);
    EXPECT_EQ(getXdata(name, L"QMTEST", text), 0);  // the chain is gone with its last value
    EXPECT_EQ(text, L"");
}

TEST_F(DrawingHelpersTest, TheModuleExportsBothUnderTheirNames) {
    void* library = dlopen((std::string(QM_OUTPUT_DIR) + "/Quillmark.arx").c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    using SetFunction = int (*)(AcDbObject*, const ACHAR*, CString, int);
    using GetFunction = int (*)(AcDbObject*, const ACHAR*, CString&);
    auto set = reinterpret_cast<SetFunction>(dlsym(library, "setXdata"));
    auto get = reinterpret_cast<GetFunction>(dlsym(library, "getXdata"));
    ASSERT_NE(set, nullptr);
    ASSERT_NE(get, nullptr);
    AcDbObjectId id = AddLine();
    {
        AcDbObjectPointer<AcDbLine> line(id);
        EXPECT_EQ(set(line.object(), L"QMEXPORT", CString(L"one"), 0), 1);
        EXPECT_EQ(set(line.object(), L"QMEXPORT", CString(L"two"), 1), 1);
        CString text;
        EXPECT_EQ(get(line.object(), L"QMEXPORT", text), 1);
        EXPECT_EQ(text, L"one");
    }
    EXPECT_EQ(Chain(id, L"QMEXPORT"), (std::vector<Group>{{1001, L"QMEXPORT"}, {1000, L"one"}, {1000, L"two"}}));
    dlclose(library);
}

}  // namespace
