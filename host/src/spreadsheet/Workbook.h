// A workbook file as the host reads it: its sheets, the sheet and cell it
// was saved with, and its cells with their number formats. One reader for
// .xls (the compound file's workbook stream, record by record: the number
// format codes and the saved selection it needs are records that libfreexl
// does not hand out) and .xlsx (libzip and expat), used by the spreadsheet
// program and by the evaluators.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "spreadsheet/NumberFormat.h"

namespace cadhost::spreadsheet {

enum class CellKind : std::uint8_t { Empty, Number, Text, Boolean, Error };

struct Cell {
    CellKind kind = CellKind::Empty;
    std::uint32_t format = 0;  // index into Workbook::formats
    double number = 0;         // a number; 1 or 0 for a boolean
    std::uint32_t text = 0;    // index into Workbook::texts, for a text or an error value
};

// What the file says of a sheet.
struct Sheet {
    std::wstring name;
    bool worksheet = true;  // false for chart, macro and dialog sheets
    bool visible = true;
    std::uint32_t activeRow = 1;     // the selected cell it was saved with,
    std::uint32_t activeColumn = 1;  // counted from 1
};

enum class FileKind { Xls, Xlsx };

class Workbook {
public:
    virtual ~Workbook();

    FileKind kind() const { return m_kind; }
    const std::vector<Sheet>& sheets() const { return m_sheets; }
    // The sheet in front when the file was saved.
    int activeSheet() const { return m_activeSheet; }
    bool date1904() const { return m_date1904; }
    // The grid of the file's format: 65536 rows and 256 columns for .xls,
    // 1048576 and 16384 for .xlsx.
    std::uint32_t maxRows() const { return m_kind == FileKind::Xls ? 65536u : 1048576u; }
    std::uint32_t maxColumns() const { return m_kind == FileKind::Xls ? 256u : 16384u; }

    // The index of the worksheet of that name, compared without regard to
    // case as the program compares sheet names; -1 when there is none.
    int FindWorksheet(const std::wstring& name) const;

    // Reads a sheet's cells if they are not read yet; false with why when
    // they cannot be.
    bool LoadCells(int sheet, std::wstring& why);
    // The cell at a row and column counted from 1; null for an empty cell
    // (or a sheet whose cells are not loaded).
    const Cell* Find(int sheet, std::uint32_t row, std::uint32_t column) const;
    // How many cells of a loaded sheet hold something.
    size_t CellCount(int sheet) const;
    // Each cell of a loaded sheet that holds something, by row and column.
    template <class Visit>
    void ForEachCell(int sheet, Visit&& visit) const {
        if (sheet < 0 || static_cast<size_t>(sheet) >= m_cells.size()) return;
        for (const auto& [key, cell] : m_cells[static_cast<size_t>(sheet)].cells)
            if (cell.kind != CellKind::Empty)
                visit(static_cast<std::uint32_t>(key >> 16), static_cast<std::uint32_t>(key & 0xFFFF), cell);
    }
    // The text a cell shows in the spreadsheet program; empty for an empty
    // cell.
    std::wstring Shown(const Cell& cell) const;
    const std::string& Text(std::uint32_t index) const { return m_texts[index]; }
    const std::wstring& FormatCode(std::uint32_t index) const { return m_formatCodes[index]; }

protected:
    explicit Workbook(FileKind kind) : m_kind(kind) {}
    // Reads the cells of one sheet into m_cells[sheet] (sorted later).
    virtual bool ReadCells(int sheet, std::wstring& why) = 0;

    // Adds a text or a format code, giving its index.
    std::uint32_t AddText(std::string text);
    std::uint32_t AddFormat(const std::wstring& code);
    static std::uint64_t Key(std::uint32_t row, std::uint32_t column) {
        return (static_cast<std::uint64_t>(row) << 16) | column;
    }
    void AddCell(int sheet, std::uint32_t row, std::uint32_t column, const Cell& cell);
    void ReserveCells(int sheet, size_t count);
    size_t TextCount() const { return m_texts.size(); }
    // Drops the cells given so far for a sheet, and the texts added after
    // the first texts of the workbook.
    void ForgetCells(int sheet, size_t texts);

    FileKind m_kind;
    std::vector<Sheet> m_sheets;
    int m_activeSheet = 0;
    bool m_date1904 = false;

private:
    struct SheetCells {
        bool loaded = false;
        std::vector<std::pair<std::uint64_t, Cell>> cells;  // by key, sorted once loaded
    };
    std::vector<SheetCells> m_cells;
    std::vector<std::string> m_texts;
    std::vector<std::wstring> m_formatCodes;
    std::vector<NumberFormat> m_formats;
};

// The most that one part of an .xlsx may inflate to, and the deepest
// nesting of elements the reader follows.
constexpr std::uint64_t kMaxPartBytes = 256ull << 20;
constexpr int kMaxXmlDepth = 256;
// The largest workbook file read.
constexpr std::uint64_t kMaxFileBytes = 512ull << 20;

// Reads a workbook: what it is is told by its content, not its name. The
// sheets and their saved selection are read at once; the cells of a sheet
// when first asked for. On failure null, and why says in a few words what
// is wrong with the file ("the file is not there", "it is protected by a
// password", ...).
std::unique_ptr<Workbook> ReadWorkbook(const std::filesystem::path& path, std::wstring& why);
// The same for the bytes of a file (kept by the workbook while it lives).
std::unique_ptr<Workbook> ReadWorkbookBytes(std::span<const std::uint8_t> bytes, std::wstring& why);

// The readers of each kind.
std::unique_ptr<Workbook> ReadXlsx(std::span<const std::uint8_t> bytes, std::wstring& why);
std::unique_ptr<Workbook> ReadXls(std::span<const std::uint8_t> bytes, std::wstring& why);

// Cell names: "B3" or "$B$3" to a row and column from 1 (false for anything
// else, a row of 0, or a column beyond XFD), and back.
bool ParseCellName(std::wstring_view text, std::uint32_t& row, std::uint32_t& column);
bool ParseCellName(std::string_view text, std::uint32_t& row, std::uint32_t& column);
std::wstring CellName(std::uint32_t row, std::uint32_t column);
std::wstring ColumnName(std::uint32_t column);

}  // namespace cadhost::spreadsheet
