// The number formats of workbook cells: a format code ("#,##0.00",
// "0.0%", "d-mmm-yy", "[h]:mm", "\"Total \"General;(0)") turned into the
// text that the spreadsheet program shows for a value in a cell wide
// enough for it, in its United States locale.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace cadhost::spreadsheet {

// The code of a built-in number format by its id (0 to 49), as the program
// shows it in the United States locale; empty for an id it does not define.
std::wstring_view BuiltInFormatCode(unsigned id);

// A number in the General format: at most 15 significant digits, trailing
// zeros dropped, and scientific notation from 12 digits before the point
// on or below 1E-09 ("1.23456789012E+11", "-0.5", "1E-10").
std::wstring GeneralNumber(double value);

class NumberFormat {
public:
    // An empty code or "General" is the General format. A code that cannot
    // be read shows numbers as General.
    explicit NumberFormat(std::wstring_view code);
    ~NumberFormat();
    NumberFormat(NumberFormat&&) noexcept;
    NumberFormat& operator=(NumberFormat&&) noexcept;

    // The text of a number. Serial dates count days from 1899-12-31 (with
    // the program's 29 February 1900) or, with date1904, from 1904-01-01; a
    // date outside years 1900 (1904) to 9999 shows as "########".
    std::wstring Format(double value, bool date1904 = false) const;
    // The text of a text value: the format's text section with "@" standing
    // for the text, or the text itself when the format has none.
    std::wstring FormatText(const std::wstring& text) const;
    // Whether numbers show as dates or times.
    bool IsDateTime() const;

    struct Section;

private:
    std::vector<Section> m_sections;
    bool m_general = true;
};

}  // namespace cadhost::spreadsheet
