// Points: their groups as files of a release write them (with optional
// groups where they stood), read into a drawing, checked there, written
// back the same; and points that another DXF reader wrote, read by the host,
// saved, and read back by that reader alike.
#include <dbapserv.h>
#include <dbents.h>
#include <dbobjptr.h>
#include <sys/wait.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "support/DxfRoundTrip.h"

namespace {

using namespace qmtest;
constexpr auto kR12 = DxfRelease::kR12;
constexpr auto kR2000 = DxfRelease::kR2000;
constexpr auto kR2018 = DxfRelease::kR2018;

class PointRoundTripTest : public HostTest {
protected:
    void Expect(const std::vector<RoundTripCase>& cases) { ExpectRoundTrips(host(), m_folder.path(), cases); }
};

Groups PointGroups(DxfRelease r, const char* handle, Groups body) {
    body.insert(body.begin(), {100, "AcDbPoint"});
    return EntityGroups(r, "POINT", handle, {{8, "0"}}, body);
}

TEST_F(PointRoundTripTest, Points) {
    auto plain = ForReleases(
        "point", {kR12, kR2000, kR2018}, DxfPlace::kEntities,
        [](DxfRelease r) { return PointGroups(r, "C0", {{10, "1.5"}, {20, "-2.0"}, {30, "3.25"}}); },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbPoint> point(ObjectByHandle(db, "C0"));
            ASSERT_EQ(point.openStatus(), Acad::eOk);
            EXPECT_EQ(point->position(), AcGePoint3d(1.5, -2, 3.25));
            EXPECT_EQ(point->thickness(), 0.0);
            EXPECT_EQ(point->normal(), AcGeVector3d::kZAxis);
            EXPECT_EQ(point->ecsRotation(), 0.0);
            EXPECT_EQ(point->ownerId(), db.modelSpaceId());
        });
    // Thickness, a normal (the file's, made a unit vector) and the angle of
    // the plane's x axis.
    auto optional = ForReleases(
        "point_optional", {kR12, kR2000, kR2018}, DxfPlace::kEntities,
        [](DxfRelease r) {
            return PointGroups(r, "C1",
                               {{10, "7.0"}, {20, "8.0"}, {30, "9.0"}, {39, "-1.5"}, {210, "0.0"}, {220, "0.0"},
                                {230, "-1.0"}, {50, "45.0"}});
        },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbPoint> point(ObjectByHandle(db, "C1"));
            ASSERT_EQ(point.openStatus(), Acad::eOk);
            EXPECT_EQ(point->position(), AcGePoint3d(7, 8, 9));
            EXPECT_EQ(point->thickness(), -1.5);
            EXPECT_EQ(point->normal(), AcGeVector3d(0, 0, -1));
            EXPECT_NEAR(point->ecsRotation(), std::atan(1.0), 1e-15);
        });
    // Optional groups that hold their defaults stay, as the file had them.
    auto defaults = ForReleases(
        "point_defaults", {kR12, kR2000, kR2018}, DxfPlace::kEntities,
        [](DxfRelease r) {
            return PointGroups(r, "C2",
                               {{10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {39, "0.0"}, {210, "0.0"}, {220, "0.0"},
                                {230, "1.0"}, {50, "0.0"}});
        },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbPoint> point(ObjectByHandle(db, "C2"));
            ASSERT_EQ(point.openStatus(), Acad::eOk);
            EXPECT_EQ(point->position(), AcGePoint3d(0, 0, 0));
            EXPECT_EQ(point->normal(), AcGeVector3d::kZAxis);
        });
    // Groups the table does not name come back where they stood.
    auto kept = ForReleases(
        "point_kept", {kR2000, kR2018}, DxfPlace::kEntities,
        [](DxfRelease r) {
            return PointGroups(r, "C3", {{10, "1.0"}, {20, "1.0"}, {30, "1.0"}, {90, "5"}, {50, "90.0"}});
        },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbPoint> point(ObjectByHandle(db, "C3"));
            ASSERT_EQ(point.openStatus(), Acad::eOk);
            EXPECT_EQ(point->ecsDegrees(), 90.0);
        });
    Expect(plain);
    Expect(optional);
    Expect(defaults);
    Expect(kept);
}

// The python that has ezdxf; QM_EZDXF_PYTHON names another.
std::string EzdxfPython() {
    const char* other = std::getenv("QM_EZDXF_PYTHON");
    return other && *other ? other : "/usr/bin/python3";
}

// Runs the ezdxf script; its exit status, its output in output.
int RunEzdxf(const std::string& arguments, std::string& output) {
    std::string command = EzdxfPython() + " " + FixturePath("check_with_ezdxf.py").string() + " " + arguments + " 2>&1";
    std::FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return -1;
    output.clear();
    char buffer[512];
    while (std::fgets(buffer, sizeof buffer, pipe)) output += buffer;
    int status = pclose(pipe);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(PointRoundTripTest, AnotherReaderReadsThePointsTheHostWroteBack) {
    for (const char* release : {"R12", "R2000", "R2018"}) {
        SCOPED_TRACE(release);
        std::filesystem::path made = m_folder.path() / (std::string("points_") + release + ".dxf");
        std::filesystem::path saved = m_folder.path() / (std::string("saved_") + release + ".dxf");
        std::string output;
        int code = RunEzdxf("make-points " + made.string() + " " + release, output);
        if (code == 77) GTEST_SKIP() << output;
        ASSERT_EQ(code, 0) << output;
        std::string before;
        ASSERT_EQ(RunEzdxf("points " + made.string(), before), 0) << before;

        std::wstring error;
        ASSERT_TRUE(host().OpenDrawing(made, error)) << cadhost::ToUtf8(error);
        AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
        // Each point as ezdxf read it: handle, x, y, z, thickness, angle, normal.
        std::istringstream lines(before);
        std::string handle;
        double x, y, z, thickness, degrees, nx, ny, nz;
        int count = 0;
        while (lines >> handle >> x >> y >> z >> thickness >> degrees >> nx >> ny >> nz) {
            ++count;
            AcDbObjectPointer<AcDbPoint> point(ObjectByHandle(*db, handle.c_str()));
            ASSERT_EQ(point.openStatus(), Acad::eOk) << handle;
            EXPECT_EQ(point->position(), AcGePoint3d(x, y, z)) << handle;
            EXPECT_EQ(point->thickness(), thickness) << handle;
            EXPECT_EQ(point->ecsDegrees(), degrees) << handle;
            EXPECT_EQ(point->normal(), AcGeVector3d(nx, ny, nz)) << handle;
        }
        EXPECT_EQ(count, 4) << before;

        ASSERT_TRUE(host().SaveDrawing(saved, error)) << cadhost::ToUtf8(error);
        std::string after;
        ASSERT_EQ(RunEzdxf("points " + saved.string(), after), 0) << after;
        EXPECT_EQ(after, before);
    }
}

}  // namespace
