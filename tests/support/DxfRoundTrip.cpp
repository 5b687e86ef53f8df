#include "support/DxfRoundTrip.h"

#include <sstream>

#include <dbapserv.h>

namespace qmtest {
namespace {

const char* VersionOf(DxfRelease release) {
    switch (release) {
    case DxfRelease::kR12: return "AC1009";
    case DxfRelease::kR2000: return "AC1015";
    case DxfRelease::kR2018: return "AC1032";
    }
    return "AC1032";
}

const char* SectionOf(DxfPlace place) {
    switch (place) {
    case DxfPlace::kEntities: return "ENTITIES";
    case DxfPlace::kBlocks: return "BLOCKS";
    case DxfPlace::kTables: return "TABLES";
    case DxfPlace::kObjects: return "OBJECTS";
    }
    return "ENTITIES";
}

void Append(std::string& text, int code, const std::string& value) {
    text += std::to_string(code);
    text += '\n';
    text += value;
    text += '\n';
}

// From 2000 on an entity names its space by the handle of the space's
// block record: the file holds that record, handle 1F, as files do.
void AppendSpaceRecord(std::string& text, const RoundTripCase& c) {
    auto record = [&](const std::string& name, const std::string& handle) {
        for (const DxfGroup& g : Groups{{0, "BLOCK_RECORD"}, {5, handle}, {330, "1"}, {100, "AcDbSymbolTableRecord"},
                                        {100, "AcDbBlockTableRecord"}, {2, name}})
            Append(text, g.code, g.value);
    };
    for (const DxfGroup& g : Groups{{0, "TABLE"}, {2, "BLOCK_RECORD"}, {5, "1"}, {330, "0"}, {100, "AcDbSymbolTable"},
                                    {70, std::to_string(1 + c.blockRecords.size())}})
        Append(text, g.code, g.value);
    record("*Model_Space", "1F");
    for (const auto& [name, handle] : c.blockRecords) record(name, handle);
    Append(text, 0, "ENDTAB");
}

bool NamesTable(const Groups& groups, const char* name) {
    return groups.size() > 1 && groups[0].value == "TABLE" && groups[1].value == name;
}

// A header that names the release and a next handle above every handle of
// the cases, the space's record, and the case's groups in their section.
std::string FileOf(const RoundTripCase& c) {
    std::string text;
    Append(text, 0, "SECTION");
    Append(text, 2, "HEADER");
    Append(text, 9, "$ACADVER");
    Append(text, 1, VersionOf(c.release));
    Append(text, 9, "$HANDSEED");
    Append(text, 5, "FFFF");
    Append(text, 0, "ENDSEC");
    bool space = c.release != DxfRelease::kR12 && !NamesTable(c.groups, "BLOCK_RECORD");
    if (space && c.place != DxfPlace::kTables) {
        Append(text, 0, "SECTION");
        Append(text, 2, "TABLES");
        AppendSpaceRecord(text, c);
        Append(text, 0, "ENDSEC");
    }
    Append(text, 0, "SECTION");
    Append(text, 2, SectionOf(c.place));
    for (const DxfGroup& g : c.groups) Append(text, g.code, g.value);
    if (space && c.place == DxfPlace::kTables) AppendSpaceRecord(text, c);
    Append(text, 0, "ENDSEC");
    Append(text, 0, "EOF");
    return text;
}

// The groups of the named section between its name and its ENDSEC.
Groups SectionGroups(const Groups& file, const char* section) {
    for (size_t i = 0; i + 1 < file.size(); ++i) {
        if (file[i].code != 0 || file[i].value != "SECTION" || file[i + 1].code != 2 || file[i + 1].value != section)
            continue;
        Groups out;
        for (size_t j = i + 2; j < file.size() && !(file[j].code == 0 && file[j].value == "ENDSEC"); ++j)
            out.push_back(file[j]);
        return out;
    }
    return {};
}

// The part of a written section that stands where the case's groups stood:
// the whole section of entities; else from the group 0 that starts as the
// case does (type and handle or name) to its end: a table's ENDTAB, a
// block's ENDBLK with its groups, as many objects as the case has.
Groups PlaceGroups(const Groups& section, const RoundTripCase& c) {
    if (c.place == DxfPlace::kEntities || c.groups.size() < 2) return section;
    size_t start = 0;
    while (start + 1 < section.size() &&
           !(section[start].code == 0 && section[start].value == c.groups[0].value &&
             section[start + 1].code == c.groups[1].code && section[start + 1].value == c.groups[1].value))
        ++start;
    if (start + 1 >= section.size()) return {};
    size_t end = start + 1;
    bool blockEnded = false;
    size_t objects = 0;  // objects the case has, for the objects' place
    for (const DxfGroup& g : c.groups) objects += g.code == 0;
    for (; end < section.size(); ++end) {
        const DxfGroup& g = section[end];
        if (g.code != 0) continue;
        if (c.place == DxfPlace::kTables) {
            if (g.value == "ENDTAB") {
                ++end;
                break;
            }
        } else if (c.place == DxfPlace::kBlocks) {
            if (blockEnded) break;
            blockEnded = g.value == "ENDBLK";
        } else if (--objects == 0) {
            break;
        }
    }
    return Groups(section.begin() + static_cast<long>(start), section.begin() + static_cast<long>(end));
}

std::string Shown(const Groups& groups, size_t i) {
    return i < groups.size() ? std::to_string(groups[i].code) + " \"" + groups[i].value + "\"" : std::string("(end)");
}

}  // namespace

const char* ReleaseName(DxfRelease release) {
    switch (release) {
    case DxfRelease::kR12: return "R12";
    case DxfRelease::kR2000: return "R2000";
    case DxfRelease::kR2018: return "R2018";
    }
    return "?";
}

Groups RoundTrip(cadhost::Host& host, const std::filesystem::path& folder, const RoundTripCase& c) {
    std::filesystem::path in = folder / (c.name + ".in.dxf"), out = folder / (c.name + ".out.dxf");
    WriteText(in, FileOf(c));
    std::wstring error;
    if (!host.OpenDrawing(in, error)) {
        ADD_FAILURE() << c.name << ": the file does not open: " << cadhost::ToUtf8(error);
        return {};
    }
    if (c.check) c.check(*acdbHostApplicationServices()->workingDatabase());
    if (!host.SaveDrawing(out, error)) {
        ADD_FAILURE() << c.name << ": the drawing does not save: " << cadhost::ToUtf8(error);
        return {};
    }
    return PlaceGroups(SectionGroups(ReadDxfGroups(out), SectionOf(c.place)), c);
}

std::string CompareGroups(const Groups& expected, const Groups& actual) {
    for (size_t i = 0; i < expected.size() || i < actual.size(); ++i) {
        if (i < expected.size() && i < actual.size() && expected[i].code == actual[i].code &&
            expected[i].value == actual[i].value)
            continue;
        return "group " + std::to_string(i) + ": expected " + Shown(expected, i) + ", written " + Shown(actual, i);
    }
    return {};
}

Groups EntityGroups(DxfRelease release, const char* type, const char* handle, const Groups& common,
                    const Groups& body) {
    bool r12 = release == DxfRelease::kR12;
    Groups out{{0, type}, {5, handle}};
    if (!r12) {
        out.push_back({330, "1F"});
        out.push_back({100, "AcDbEntity"});
    }
    out.insert(out.end(), common.begin(), common.end());
    for (const DxfGroup& g : body)
        if (!(r12 && g.code == 100)) out.push_back(g);
    return out;
}

std::vector<RoundTripCase> ForReleases(const std::string& name, std::initializer_list<DxfRelease> releases,
                                       DxfPlace place, const std::function<Groups(DxfRelease)>& groups,
                                       const std::function<void(AcDbDatabase&)>& check) {
    std::vector<RoundTripCase> cases;
    for (DxfRelease release : releases)
        cases.push_back(RoundTripCase{name + "_" + ReleaseName(release), release, place, groups(release), check});
    return cases;
}

void ExpectRoundTrips(cadhost::Host& host, const std::filesystem::path& folder,
                      const std::vector<RoundTripCase>& cases) {
    for (const RoundTripCase& c : cases) {
        SCOPED_TRACE(c.name);
        Groups written = RoundTrip(host, folder, c);
        EXPECT_EQ(CompareGroups(c.groups, written), "") << c.name;
    }
}

AcDbObjectId ObjectByHandle(AcDbDatabase& db, const char* hex) {
    AcDbObjectId id;
    if (db.getAcDbObjectId(id, false, AcDbHandle(cadhost::FromUtf8(hex).c_str())) != Acad::eOk) return AcDbObjectId();
    return id;
}

}  // namespace qmtest
