// One object of a file, read and written back: its groups are wrapped into
// the smallest file of a release that holds them, read into a drawing,
// checked there through the platform's calls, saved, and the groups of the
// same place in the saved file handed back for comparing.
#pragma once

#include <dbmain.h>

#include <functional>
#include <string>
#include <vector>

#include "support/DxfGroups.h"
#include "support/TestHost.h"

namespace qmtest {

enum class DxfRelease { kR12, kR2000, kR2018 };

const char* ReleaseName(DxfRelease release);

// Where the groups stand in the file: among the entities, as a block
// definition, as a table of the TABLES section, among the objects.
enum class DxfPlace { kEntities, kBlocks, kTables, kObjects };

using Groups = std::vector<DxfGroup>;

struct RoundTripCase {
    std::string name;
    DxfRelease release;
    DxfPlace place;
    Groups groups;
    // Checks what the drawing read from the groups holds.
    std::function<void(AcDbDatabase& db)> check;
    // From 2000 on, block records (name, handle) that the file's table of
    // block records holds beside model space's.
    std::vector<std::pair<std::string, std::string>> blockRecords = {};
};

// Runs one case in the host; answers the groups the saved file holds in the
// place of the case's groups (the whole place: what the writer added there
// shows as well).
Groups RoundTrip(cadhost::Host& host, const std::filesystem::path& folder, const RoundTripCase& c);

// Empty when both lists hold the same groups, code for code and value for
// value as text; else the first that differs, with its index.
std::string CompareGroups(const Groups& expected, const Groups& actual);

// An entity's groups as a file of the release writes them: type, handle,
// from 2000 on the owner (model space's record, 1F) and the entity marker,
// then common (layer, colour, ...) and body. The body's markers (100) are
// left out before 2000, as such files have none.
Groups EntityGroups(DxfRelease release, const char* type, const char* handle, const Groups& common,
                    const Groups& body);

// The cases of one class for each release, each named "name_release";
// groups makes the groups for a release.
std::vector<RoundTripCase> ForReleases(const std::string& name, std::initializer_list<DxfRelease> releases,
                                       DxfPlace place, const std::function<Groups(DxfRelease)>& groups,
                                       const std::function<void(AcDbDatabase&)>& check);

// Runs every case in the host, each a drawing of its own, and expects the
// written groups to be the case's groups.
void ExpectRoundTrips(cadhost::Host& host, const std::filesystem::path& folder,
                      const std::vector<RoundTripCase>& cases);

// The object of that handle in db; null when it has none.
AcDbObjectId ObjectByHandle(AcDbDatabase& db, const char* hex);

}  // namespace qmtest
