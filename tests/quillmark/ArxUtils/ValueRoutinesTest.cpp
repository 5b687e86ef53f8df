#include <adslib.h>
#include <dbsymtb.h>

#include <cmath>

#include "ArxUtils/ArxUtils.h"
#include "app/SystemVariables.h"
#include "support/TestHost.h"

namespace {

class ValueRoutinesTest : public qmtest::HostTest {
protected:
    AcDbDatabase* db() { return acdbHostApplicationServices()->workingDatabase(); }

    static AcDbObjectId AddLayer(AcDbDatabase* database, const wchar_t* name) {
        AcDbLayerTable* table = nullptr;
        EXPECT_EQ(database->getSymbolTable(table, AcDb::kForWrite), Acad::eOk);
        auto* record = new AcDbLayerTableRecord;
        record->setName(name);
        AcDbObjectId id;
        EXPECT_EQ(table->add(id, record), Acad::eOk);
        record->close();  // an added record is open for write until closed
        table->close();
        return id;
    }
};

TEST_F(ValueRoutinesTest, FormatsValuesThroughTheHost) {
    EXPECT_EQ(FormatDoubleValue(28800.0, L"%lu2%ct4%qf1 SQ. FT.%pr2%ps[A=,]"), L"A=200.00 SQ. FT.");
    EXPECT_EQ(FormatDoubleValue(2.0, L""), L"2.0000");
    EXPECT_EQ(FormatDoubleValue(15.5, L"%lu4%pr1"), L"1'-3 1/2\"");
    EXPECT_EQ(FormatLongValue(12, L"%ps[,pcs]"), L"12pcs");
    EXPECT_EQ(FormatLongValue(-3, L""), L"-3");
}

TEST_F(ValueRoutinesTest, GetLayerNamesWalksTheLayerTableInOrder) {
    AddLayer(db(), L"WALL");
    AcDbObjectId door = AddLayer(db(), L"DOOR");
    AddLayer(db(), L"Glass");
    CStringArray names;
    names.Add(L"stale");
    EXPECT_EQ(GetLayerNames(names), 1);
    ASSERT_EQ(names.GetSize(), 4);
    EXPECT_EQ(names[0], L"0");
    EXPECT_EQ(names[1], L"WALL");
    EXPECT_EQ(names[2], L"DOOR");
    EXPECT_EQ(names[3], L"Glass");

    AcDbObject* record = nullptr;
    ASSERT_EQ(acdbOpenAcDbObject(record, door, AcDb::kForWrite), Acad::eOk);
    ASSERT_EQ(record->erase(), Acad::eOk);
    record->close();
    EXPECT_EQ(GetLayerNames(names, db()), 1);
    ASSERT_EQ(names.GetSize(), 3);
    EXPECT_EQ(names[2], L"Glass");
}

TEST_F(ValueRoutinesTest, GetLayerNamesReadsTheDatabaseItIsGiven) {
    AcDbDatabase other(true, true);
    AddLayer(&other, L"OTHER");
    CStringArray names;
    EXPECT_EQ(GetLayerNames(names, &other), 1);
    ASSERT_EQ(names.GetSize(), 2);
    EXPECT_EQ(names[1], L"OTHER");

    AcDbDatabase empty(false, true);  // no tables at all
    names.Add(L"stale");
    EXPECT_EQ(GetLayerNames(names, &empty), 0);
    EXPECT_TRUE(names.IsEmpty());
}

TEST_F(ValueRoutinesTest, GetSysVarIntTakesTheBuffersShortOfAnyAnswer) {
    resbuf rb{};
    rb.restype = RTSHORT;
    rb.resval.rint = 11;
    ASSERT_EQ(acedSetVar(L"DIMZIN", &rb), RTNORM);
    int value = -1;
    EXPECT_EQ(GetSysVarInt(L"DIMZIN", value), 0);
    EXPECT_EQ(value, 11);
    EXPECT_EQ(GetSysVarInt(L"lunits", value), 0);
    EXPECT_EQ(value, 2);

    value = 42;
    EXPECT_EQ(GetSysVarInt(L"NOSUCHVARIABLE", value), 3);
    EXPECT_EQ(value, 42);

    // A real answers the 16-bit integer that the buffer holds where a short
    // would stand, widened with its sign: the low bits of the double. The
    // host has no real variable of its own that a module sets, so the test
    // defines one.
    double stored = 0;
    cadhost::SystemVariables::Variable variable;
    variable.type = RTREAL;
    variable.get = [&stored](resbuf& rb) {
        rb.resval.rreal = stored;
        return true;
    };
    variable.set = [&stored](const resbuf& rb) {
        stored = rb.resval.rreal;
        return std::wstring();
    };
    host().variables().Define(L"QMREAL", variable);
    struct RealCase {
        double real;
        int expected;
    };
    for (RealCase c : {RealCase{1.0, 0}, RealCase{std::nextafter(1.0, 2.0), 1}, RealCase{-0.0, 0},
                       RealCase{0.1, -26214}}) {
        resbuf real{};
        real.restype = RTREAL;
        real.resval.rreal = c.real;
        ASSERT_EQ(acedSetVar(L"QMREAL", &real), RTNORM) << c.real;
        value = 42;
        EXPECT_EQ(GetSysVarInt(L"QMREAL", value), 0) << c.real;
        EXPECT_EQ(value, c.expected) << c.real;
    }
    // A text answers too; its value is whatever the buffer holds there.
    EXPECT_EQ(GetSysVarInt(L"DWGNAME", value), 0);
}

}  // namespace
