// Reading DXF files in tests: their groups, to compare files, and the
// figures that tests/fixtures/make_fixtures.py wrote with ezdxf.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace qmtest {

struct DxfGroup {
    int code;
    std::string value;
};

std::vector<DxfGroup> ReadDxfGroups(const std::filesystem::path& path);

// Compares two files group by group: codes equal, numbers equal as
// numbers, texts equal as bytes. Empty when they agree, else what differs
// first, with the group's index.
std::string CompareDxf(const std::filesystem::path& expected, const std::filesystem::path& actual);

// One record of a figures file: its fields, unescaped.
using FigureRecord = std::vector<std::string>;
std::vector<FigureRecord> ReadFigures(const std::filesystem::path& path);

std::filesystem::path FixturePath(const std::string& name);
std::string ReadText(const std::filesystem::path& path);
void WriteText(const std::filesystem::path& path, const std::string& text);

}  // namespace qmtest
