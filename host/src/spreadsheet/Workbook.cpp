#include "spreadsheet/Workbook.h"

#include <sys/mman.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <cwctype>
#include <fstream>

#include "core/Utf8.h"

namespace cadhost::spreadsheet {
namespace {

const std::uint8_t kZipSignature[] = {'P', 'K', 3, 4};
const std::uint8_t kCompoundSignature[] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};

bool StartsWith(std::span<const std::uint8_t> bytes, const std::uint8_t* signature, size_t length) {
    return bytes.size() >= length && std::memcmp(bytes.data(), signature, length) == 0;
}

bool SameNoCase(const std::wstring& a, const std::wstring& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (std::towlower(a[i]) != std::towlower(b[i])) return false;
    return true;
}

}  // namespace

Workbook::~Workbook() = default;

int Workbook::FindWorksheet(const std::wstring& name) const {
    for (size_t i = 0; i < m_sheets.size(); ++i)
        if (m_sheets[i].worksheet && SameNoCase(m_sheets[i].name, name)) return static_cast<int>(i);
    return -1;
}

std::uint32_t Workbook::AddText(std::string text) {
    m_texts.push_back(std::move(text));
    return static_cast<std::uint32_t>(m_texts.size() - 1);
}

std::uint32_t Workbook::AddFormat(const std::wstring& code) {
    for (size_t i = 0; i < m_formatCodes.size(); ++i)
        if (m_formatCodes[i] == code) return static_cast<std::uint32_t>(i);
    m_formatCodes.push_back(code);
    m_formats.emplace_back(code);
    return static_cast<std::uint32_t>(m_formatCodes.size() - 1);
}

void Workbook::ReserveCells(int sheet, size_t count) {
    if (m_cells.size() < m_sheets.size()) m_cells.resize(m_sheets.size());
    if (sheet < 0 || static_cast<size_t>(sheet) >= m_cells.size()) return;
    auto& cells = m_cells[static_cast<size_t>(sheet)].cells;
    cells.reserve(count);
    // The cells of a large sheet fill megabytes one after the other: in
    // huge pages the system maps them a few times, not a thousand.
    constexpr std::uintptr_t kHugePage = 2u << 20;
    auto begin = reinterpret_cast<std::uintptr_t>(cells.data());
    std::uintptr_t end = begin + cells.capacity() * sizeof(cells[0]);
    std::uintptr_t from = (begin + kHugePage - 1) & ~(kHugePage - 1), to = end & ~(kHugePage - 1);
    if (to > from) ::madvise(reinterpret_cast<void*>(from), to - from, MADV_HUGEPAGE);
}

void Workbook::ForgetCells(int sheet, size_t texts) {
    if (sheet >= 0 && static_cast<size_t>(sheet) < m_cells.size()) m_cells[static_cast<size_t>(sheet)].cells.clear();
    if (texts < m_texts.size()) m_texts.resize(texts);
}

void Workbook::AddCell(int sheet, std::uint32_t row, std::uint32_t column, const Cell& cell) {
    if (m_cells.size() < m_sheets.size()) m_cells.resize(m_sheets.size());
    if (sheet < 0 || static_cast<size_t>(sheet) >= m_cells.size()) return;
    m_cells[static_cast<size_t>(sheet)].cells.emplace_back(Key(row, column), cell);
}

bool Workbook::LoadCells(int sheet, std::wstring& why) {
    if (sheet < 0 || static_cast<size_t>(sheet) >= m_sheets.size()) {
        why = L"the workbook has no such sheet";
        return false;
    }
    if (m_cells.size() < m_sheets.size()) m_cells.resize(m_sheets.size());
    SheetCells& target = m_cells[static_cast<size_t>(sheet)];
    if (target.loaded) return true;
    if (m_formatCodes.empty()) AddFormat(L"General");
    if (!ReadCells(sheet, why)) {
        target.cells.clear();
        return false;
    }
    // A cell that a file gives twice counts as it was given last. Files
    // mostly give their cells in order, once each: then nothing moves.
    auto byKey = [](const auto& a, const auto& b) { return a.first < b.first; };
    if (!std::is_sorted(target.cells.begin(), target.cells.end(), byKey))
        std::stable_sort(target.cells.begin(), target.cells.end(), byKey);
    auto sameKey = [](const auto& a, const auto& b) { return a.first == b.first; };
    if (std::adjacent_find(target.cells.begin(), target.cells.end(), sameKey) != target.cells.end()) {
        auto last = std::unique(target.cells.rbegin(), target.cells.rend(), sameKey);
        target.cells.erase(target.cells.begin(), last.base());
    }
    // Room reserved beyond the cells is kept: never written, it takes no
    // memory, where copying the cells to fit would.
    target.loaded = true;
    return true;
}

const Cell* Workbook::Find(int sheet, std::uint32_t row, std::uint32_t column) const {
    if (sheet < 0 || static_cast<size_t>(sheet) >= m_cells.size()) return nullptr;
    const auto& cells = m_cells[static_cast<size_t>(sheet)].cells;
    std::uint64_t key = Key(row, column);
    auto at = std::lower_bound(cells.begin(), cells.end(), key, [](const auto& c, std::uint64_t k) { return c.first < k; });
    if (at == cells.end() || at->first != key || at->second.kind == CellKind::Empty) return nullptr;
    return &at->second;
}

size_t Workbook::CellCount(int sheet) const {
    if (sheet < 0 || static_cast<size_t>(sheet) >= m_cells.size()) return 0;
    size_t count = 0;
    for (const auto& entry : m_cells[static_cast<size_t>(sheet)].cells)
        if (entry.second.kind != CellKind::Empty) ++count;
    return count;
}

std::wstring Workbook::Shown(const Cell& cell) const {
    const NumberFormat& format = m_formats.at(cell.format < m_formats.size() ? cell.format : 0);
    switch (cell.kind) {
    case CellKind::Number: return format.Format(cell.number, m_date1904);
    case CellKind::Text: return format.FormatText(FromUtf8(m_texts.at(cell.text)));
    case CellKind::Boolean: return cell.number != 0 ? L"TRUE" : L"FALSE";
    case CellKind::Error: return FromUtf8(m_texts.at(cell.text));
    case CellKind::Empty: break;
    }
    return std::wstring();
}

std::unique_ptr<Workbook> ReadWorkbookBytes(std::span<const std::uint8_t> bytes, std::wstring& why) {
    if (StartsWith(bytes, kZipSignature, sizeof kZipSignature)) return ReadXlsx(bytes, why);
    if (StartsWith(bytes, kCompoundSignature, sizeof kCompoundSignature)) return ReadXls(bytes, why);
    why = bytes.empty() ? L"the file is empty" : L"it is neither an .xls nor an .xlsx workbook";
    return nullptr;
}

std::unique_ptr<Workbook> ReadWorkbook(const std::filesystem::path& path, std::wstring& why) {
    std::error_code error;
    auto status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status)) {
        why = L"the file is not there";
        return nullptr;
    }
    if (std::filesystem::is_directory(status)) {
        why = L"it is a folder, not a file";
        return nullptr;
    }
    std::uintmax_t size = std::filesystem::file_size(path, error);
    if (error) {
        why = L"the file cannot be read";
        return nullptr;
    }
    if (size > kMaxFileBytes) {
        why = L"the file is larger than 512 MB";
        return nullptr;
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        why = L"the file cannot be read (" + FromUtf8(std::strerror(errno)) + L")";
        return nullptr;
    }
    std::vector<std::uint8_t> bytes(static_cast<size_t>(size));
    in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (static_cast<std::uintmax_t>(in.gcount()) != size) {
        why = L"the file cannot be read to its end";
        return nullptr;
    }
    std::span<const std::uint8_t> view(bytes);
    if (StartsWith(view, kZipSignature, sizeof kZipSignature)) return ReadXlsx(view, why);
    if (StartsWith(view, kCompoundSignature, sizeof kCompoundSignature)) return ReadXls(view, why);
    why = bytes.empty() ? L"the file is empty" : L"it is neither an .xls nor an .xlsx workbook";
    return nullptr;
}

namespace {

// Letters and digits of cell names are ASCII in either width of text.
template <class Char>
bool ParseCellNameOf(std::basic_string_view<Char> text, std::uint32_t& row, std::uint32_t& column) {
    auto letter = [](Char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
    size_t i = 0;
    if (i < text.size() && text[i] == '$') ++i;
    std::uint32_t c = 0;
    size_t letters = 0;
    while (i < text.size() && letter(text[i])) {
        c = c * 26 + static_cast<std::uint32_t>((text[i] & ~0x20) - 'A' + 1);
        if (++letters > 3) return false;
        ++i;
    }
    if (letters == 0 || c > 16384) return false;
    if (i < text.size() && text[i] == '$') ++i;
    std::uint64_t r = 0;
    size_t digits = 0;
    while (i < text.size() && text[i] >= '0' && text[i] <= '9') {
        r = r * 10 + static_cast<std::uint64_t>(text[i] - '0');
        if (++digits > 7) return false;
        ++i;
    }
    if (digits == 0 || i != text.size() || r == 0 || r > 1048576) return false;
    row = static_cast<std::uint32_t>(r);
    column = c;
    return true;
}

}  // namespace

bool ParseCellName(std::wstring_view text, std::uint32_t& row, std::uint32_t& column) {
    return ParseCellNameOf(text, row, column);
}

bool ParseCellName(std::string_view text, std::uint32_t& row, std::uint32_t& column) {
    return ParseCellNameOf(text, row, column);
}

std::wstring ColumnName(std::uint32_t column) {
    std::wstring name;
    while (column > 0) {
        --column;
        name.insert(name.begin(), static_cast<wchar_t>(L'A' + column % 26));
        column /= 26;
    }
    return name;
}

std::wstring CellName(std::uint32_t row, std::uint32_t column) { return ColumnName(column) + std::to_wstring(row); }

}  // namespace cadhost::spreadsheet
