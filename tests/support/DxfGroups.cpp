#include "support/DxfGroups.h"

#include <fstream>
#include <sstream>

#include "dxf/Values.h"

namespace qmtest {

std::string ReadText(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

void WriteText(const std::filesystem::path& path, const std::string& text) {
    std::ofstream out(path, std::ios::binary);
    out << text;
}

std::vector<DxfGroup> ReadDxfGroups(const std::filesystem::path& path) {
    std::istringstream in(ReadText(path));
    std::vector<DxfGroup> groups;
    std::string code, value;
    while (std::getline(in, code) && std::getline(in, value)) {
        if (!code.empty() && code.back() == '\r') code.pop_back();
        if (!value.empty() && value.back() == '\r') value.pop_back();
        long long number = 0;
        if (!cadhost::dxf::ParseInteger(code, number)) break;
        groups.push_back(DxfGroup{static_cast<int>(number), value});
    }
    return groups;
}

std::string CompareDxf(const std::filesystem::path& expected, const std::filesystem::path& actual) {
    using cadhost::dxf::ValueType;
    std::vector<DxfGroup> a = ReadDxfGroups(expected), b = ReadDxfGroups(actual);
    for (size_t i = 0; i < a.size() || i < b.size(); ++i) {
        auto shown = [](const std::vector<DxfGroup>& g, size_t k) {
            return k < g.size() ? std::to_string(g[k].code) + " \"" + g[k].value + "\"" : std::string("(end)");
        };
        std::string where = "group " + std::to_string(i) + ": expected " + shown(a, i) + ", found " + shown(b, i);
        if (i >= a.size() || i >= b.size() || a[i].code != b[i].code) return where;
        const std::string& x = a[i].value;
        const std::string& y = b[i].value;
        bool same = x == y;
        switch (cadhost::dxf::ValueTypeOf(a[i].code)) {
        case ValueType::kReal: {
            double p, q;
            same = cadhost::dxf::ParseReal(x, p) && cadhost::dxf::ParseReal(y, q) ? p == q : x == y;
            break;
        }
        case ValueType::kInteger: {
            long long p, q;
            same = cadhost::dxf::ParseInteger(x, p) && cadhost::dxf::ParseInteger(y, q) ? p == q : x == y;
            break;
        }
        case ValueType::kHandle: {
            uint64_t p, q;
            same = cadhost::dxf::ParseHandle(x, p) && cadhost::dxf::ParseHandle(y, q) ? p == q : x == y;
            break;
        }
        default: break;
        }
        if (!same) return where;
    }
    return "";
}

std::vector<FigureRecord> ReadFigures(const std::filesystem::path& path) {
    std::istringstream in(ReadText(path));
    std::vector<FigureRecord> records;
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        FigureRecord record(1);
        for (size_t i = 0; i < line.size(); ++i) {
            char c = line[i];
            if (c == '\t') {
                record.emplace_back();
            } else if (c == '\\' && i + 1 < line.size()) {
                char n = line[++i];
                record.back() += n == 't' ? '\t' : n == 'n' ? '\n' : n;
            } else {
                record.back() += c;
            }
        }
        records.push_back(record);
    }
    return records;
}

std::filesystem::path FixturePath(const std::string& name) {
    return std::filesystem::path(QM_SOURCE_DIR) / "tests" / "fixtures" / name;
}

}  // namespace qmtest
