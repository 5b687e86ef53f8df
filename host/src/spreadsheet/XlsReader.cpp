// .xls workbooks: the records of the workbook stream of a compound file,
// as the program writes them from 1995 on (BIFF5 and BIFF8). The globals
// give the sheets, the shared strings and the number formats; each sheet's
// records give its cells and the selection it was saved with. Every cell is
// read at once, one walk over the stream, so that a workbook's memory grows
// with what the file holds, never with the size of its used range.
#include <iconv.h>

#include <cstring>
#include <map>

#include "core/Utf8.h"
#include "spreadsheet/CompoundFile.h"
#include "spreadsheet/Workbook.h"

namespace cadhost::spreadsheet {
namespace {

enum RecordType : std::uint16_t {
    kFormula = 0x0006,
    kEof = 0x000A,
    kSelection = 0x001D,
    kDateMode = 0x0022,
    kFilePass = 0x002F,
    kContinue = 0x003C,
    kWindow1 = 0x003D,
    kPane = 0x0041,
    kCodePage = 0x0042,
    kBoundSheet = 0x0085,
    kMulRk = 0x00BD,
    kRString = 0x00D6,
    kXf = 0x00E0,
    kSst = 0x00FC,
    kLabelSst = 0x00FD,
    kNumber = 0x0203,
    kLabel = 0x0204,
    kBoolErr = 0x0205,
    kString = 0x0207,
    kRk = 0x027E,
    kFormat = 0x041E,
    kBof = 0x0809,
};

std::uint16_t U16(const std::uint8_t* p) { return static_cast<std::uint16_t>(p[0] | (p[1] << 8)); }
std::uint32_t U32(const std::uint8_t* p) {
    return static_cast<std::uint32_t>(p[0]) | (static_cast<std::uint32_t>(p[1]) << 8) |
           (static_cast<std::uint32_t>(p[2]) << 16) | (static_cast<std::uint32_t>(p[3]) << 24);
}
double F64(const std::uint8_t* p) {
    std::uint64_t bits = 0;
    for (int i = 7; i >= 0; --i) bits = (bits << 8) | p[i];
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

// An RK number: a whole number or the top 30 bits of a double, perhaps to
// be divided by 100.
double RkValue(std::uint32_t rk) {
    double value;
    if (rk & 2) {
        value = static_cast<double>(static_cast<std::int32_t>(rk) >> 2);
    } else {
        std::uint64_t bits = static_cast<std::uint64_t>(rk & 0xFFFFFFFCu) << 32;
        std::memcpy(&value, &bits, sizeof value);
    }
    return rk & 1 ? value / 100 : value;
}

const char* ErrorText(std::uint8_t code) {
    switch (code) {
    case 0x00: return "#NULL!";
    case 0x07: return "#DIV/0!";
    case 0x0F: return "#VALUE!";
    case 0x17: return "#REF!";
    case 0x1D: return "#NAME?";
    case 0x24: return "#NUM!";
    default: return "#N/A";
    }
}

struct Record {
    std::uint16_t type = 0;
    const std::uint8_t* data = nullptr;
    std::uint16_t size = 0;
};

// The records of the stream from an offset on.
class Records {
public:
    Records(const std::vector<std::uint8_t>& stream, size_t at) : m_stream(stream), m_at(at) {}
    bool Next(Record& record) {
        if (m_at + 4 > m_stream.size()) return false;
        record.type = U16(&m_stream[m_at]);
        record.size = U16(&m_stream[m_at + 2]);
        if (m_at + 4 + record.size > m_stream.size()) return false;
        record.data = m_stream.data() + m_at + 4;
        m_at += 4 + record.size;
        return true;
    }
    // The next record's type without taking it; 0 at the end.
    std::uint16_t PeekType() const { return m_at + 4 <= m_stream.size() ? U16(&m_stream[m_at]) : 0; }

private:
    const std::vector<std::uint8_t>& m_stream;
    size_t m_at;
};

// Text of a record and the CONTINUE records behind it. Inside a string's
// characters each new piece begins with a byte that says whether the
// characters go on as one or two bytes.
class Pieces {
public:
    void Add(const std::uint8_t* data, size_t size) { m_pieces.emplace_back(data, size); }
    bool Byte(std::uint8_t& out) {
        if (!Settle()) return false;
        out = m_pieces[m_piece].first[m_at++];
        return true;
    }
    bool Word(std::uint16_t& out) {
        std::uint8_t a, b;
        if (!Byte(a) || !Byte(b)) return false;
        out = static_cast<std::uint16_t>(a | (b << 8));
        return true;
    }
    bool Long(std::uint32_t& out) {
        std::uint16_t a, b;
        if (!Word(a) || !Word(b)) return false;
        out = static_cast<std::uint32_t>(a) | (static_cast<std::uint32_t>(b) << 16);
        return true;
    }
    bool Skip(size_t count) {
        while (count > 0) {
            if (!Settle()) return false;
            size_t here = std::min(count, m_pieces[m_piece].second - m_at);
            m_at += here;
            count -= here;
        }
        return true;
    }
    bool Characters(size_t count, bool wide, std::u16string& out, size_t keep) {
        while (count > 0) {
            if (m_piece < m_pieces.size() && m_at == m_pieces[m_piece].second) {
                // Characters that go on in the next piece: its first byte
                // tells their width again.
                if (++m_piece >= m_pieces.size()) return false;
                m_at = 0;
                std::uint8_t flags;
                if (!Byte(flags)) return false;
                wide = flags & 1;
            }
            if (m_piece >= m_pieces.size()) return false;
            const auto& [data, size] = m_pieces[m_piece];
            size_t width = wide ? 2 : 1;
            size_t here = std::min(count, (size - m_at) / width);
            if (here == 0) return false;
            for (size_t i = 0; i < here; ++i) {
                char16_t c = wide ? static_cast<char16_t>(U16(data + m_at + 2 * i)) : static_cast<char16_t>(data[m_at + i]);
                if (out.size() < keep) out += c;
            }
            m_at += here * width;
            count -= here;
        }
        return true;
    }

private:
    // Moves past the end of a piece; false at the end of all.
    bool Settle() {
        while (m_piece < m_pieces.size() && m_at >= m_pieces[m_piece].second) {
            ++m_piece;
            m_at = 0;
        }
        return m_piece < m_pieces.size();
    }
    std::vector<std::pair<const std::uint8_t*, size_t>> m_pieces;
    size_t m_piece = 0, m_at = 0;
};

constexpr size_t kMaxCharacters = 32767;

std::string Utf8Of(const std::u16string& text) {
    std::wstring wide;
    wide.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        char16_t c = text[i];
        if (c >= 0xD800 && c < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000) {
            wide += static_cast<wchar_t>(0x10000 + ((c - 0xD800) << 10) + (text[i + 1] - 0xDC00));
            ++i;
        } else {
            wide += static_cast<wchar_t>(c);
        }
    }
    return ToUtf8(wide);
}

class XlsWorkbook : public Workbook {
public:
    XlsWorkbook() : Workbook(FileKind::Xls) {}
    ~XlsWorkbook() override {
        if (m_converter != reinterpret_cast<iconv_t>(-1)) iconv_close(m_converter);
    }

    bool Read(const std::vector<std::uint8_t>& stream, std::wstring& why);

protected:
    // Every cell was read with the file.
    bool ReadCells(int sheet, std::wstring& why) override {
        if (!m_sheets[static_cast<size_t>(sheet)].worksheet) {
            why = L"the sheet " + m_sheets[static_cast<size_t>(sheet)].name + L" is not a worksheet";
            return false;
        }
        return true;
    }

private:
    // Text of one-byte characters in the workbook's code page (files
    // before 1997).
    std::string Narrow(const std::uint8_t* data, size_t size) {
        if (m_codePage == 1252 || m_codePage == 0 || m_codePage == 367) {
            std::wstring wide;
            for (size_t i = 0; i < size; ++i) wide += static_cast<wchar_t>(data[i]);
            return ToUtf8(wide);
        }
        if (m_converter == reinterpret_cast<iconv_t>(-1)) {
            std::string name = "CP" + std::to_string(m_codePage);
            m_converter = iconv_open("UTF-8", name.c_str());
            if (m_converter == reinterpret_cast<iconv_t>(-1)) m_codePage = 1252;
            if (m_converter == reinterpret_cast<iconv_t>(-1)) return Narrow(data, size);
        }
        std::string out(size * 4 + 4, '\0');
        char* in = const_cast<char*>(reinterpret_cast<const char*>(data));
        size_t inLeft = size, outLeft = out.size();
        char* to = out.data();
        iconv(m_converter, nullptr, nullptr, nullptr, nullptr);
        while (inLeft > 0 && iconv(m_converter, &in, &inLeft, &to, &outLeft) == static_cast<size_t>(-1)) {
            // A byte the code page does not know shows as a replacement.
            if (outLeft < 3) break;
            std::memcpy(to, "\xEF\xBF\xBD", 3);
            to += 3;
            outLeft -= 3;
            ++in;
            --inLeft;
        }
        out.resize(out.size() - outLeft);
        return out;
    }

    // A string whose length is a byte (cch 1) or a word (cch 2), and in
    // BIFF8 a flags byte, from the start of data; false when it does not fit.
    bool ShortString(const std::uint8_t* data, size_t size, int lengthBytes, std::string& out) {
        if (size < static_cast<size_t>(lengthBytes)) return false;
        size_t count = lengthBytes == 1 ? data[0] : U16(data);
        size_t at = static_cast<size_t>(lengthBytes);
        if (!m_biff8) {
            if (at + count > size) return false;
            out = Narrow(data + at, count);
            return true;
        }
        Pieces pieces;
        pieces.Add(data, size);
        pieces.Skip(at);
        std::uint8_t flags = 0;
        if (!pieces.Byte(flags)) return false;
        if (flags & 0x08) pieces.Skip(2);
        if (flags & 0x04) pieces.Skip(4);
        std::u16string text;
        if (!pieces.Characters(count, flags & 1, text, kMaxCharacters)) return false;
        out = Utf8Of(text);
        return true;
    }

    bool ReadSharedStrings(Records& records, const Record& first);
    void ReadSheet(const std::vector<std::uint8_t>& stream, size_t offset, int sheet);
    std::uint32_t FormatOf(std::uint16_t xf) const { return xf < m_xfFormats.size() ? m_xfFormats[xf] : 0; }
    void Put(int sheet, std::uint16_t row, std::uint16_t column, std::uint16_t xf, CellKind kind, double number,
             std::uint32_t text = 0) {
        if (column > 255) return;
        Cell cell;
        cell.kind = kind;
        cell.format = FormatOf(xf);
        cell.number = number;
        cell.text = text;
        AddCell(sheet, static_cast<std::uint32_t>(row) + 1, static_cast<std::uint32_t>(column) + 1, cell);
    }

    bool m_biff8 = true;
    int m_codePage = 1252;
    iconv_t m_converter = reinterpret_cast<iconv_t>(-1);
    std::vector<std::uint32_t> m_xfFormats;
    std::vector<std::uint32_t> m_shared;  // shared string index to text index
};

bool XlsWorkbook::ReadSharedStrings(Records& records, const Record& first) {
    Pieces pieces;
    pieces.Add(first.data, first.size);
    while (records.PeekType() == kContinue) {
        Record more;
        if (!records.Next(more)) break;
        pieces.Add(more.data, more.size);
    }
    std::uint32_t total = 0, unique = 0;
    if (!pieces.Long(total) || !pieces.Long(unique)) return false;
    for (std::uint32_t i = 0; i < unique; ++i) {
        std::uint16_t count = 0;
        std::uint8_t flags = 0;
        if (!pieces.Word(count) || !pieces.Byte(flags)) return false;
        std::uint16_t runs = 0;
        std::uint32_t extra = 0;
        if ((flags & 0x08) && !pieces.Word(runs)) return false;
        if ((flags & 0x04) && !pieces.Long(extra)) return false;
        std::u16string text;
        if (!pieces.Characters(count, flags & 1, text, kMaxCharacters)) return false;
        if (!pieces.Skip(4u * runs) || !pieces.Skip(extra)) return false;
        m_shared.push_back(AddText(Utf8Of(text)));
    }
    return true;
}

void XlsWorkbook::ReadSheet(const std::vector<std::uint8_t>& stream, size_t offset, int sheet) {
    Records records(stream, offset);
    Record record;
    if (!records.Next(record) || record.type != kBof) return;
    int activePane = 3;
    std::map<int, std::pair<std::uint32_t, std::uint32_t>> selections;
    // A formula whose text result follows in a STRING record.
    bool pending = false;
    std::uint16_t pendingRow = 0, pendingColumn = 0, pendingXf = 0;
    int depth = 0;
    while (records.Next(record)) {
        const std::uint8_t* d = record.data;
        size_t n = record.size;
        if (record.type == kBof) {  // an embedded chart's records
            ++depth;
            continue;
        }
        if (record.type == kEof) {
            if (depth-- == 0) break;
            continue;
        }
        if (depth > 0) continue;
        switch (record.type) {
        case kNumber:
            if (n >= 14) Put(sheet, U16(d), U16(d + 2), U16(d + 4), CellKind::Number, F64(d + 6));
            break;
        case kRk:
            if (n >= 10) Put(sheet, U16(d), U16(d + 2), U16(d + 4), CellKind::Number, RkValue(U32(d + 6)));
            break;
        case kMulRk:
            if (n >= 6) {
                std::uint16_t row = U16(d), column = U16(d + 2);
                for (size_t at = 4; at + 6 + 2 <= n; at += 6, ++column)
                    Put(sheet, row, column, U16(d + at), CellKind::Number, RkValue(U32(d + at + 2)));
            }
            break;
        case kLabelSst:
            if (n >= 10) {
                std::uint32_t index = U32(d + 6);
                if (index < m_shared.size()) Put(sheet, U16(d), U16(d + 2), U16(d + 4), CellKind::Text, 0, m_shared[index]);
            }
            break;
        case kLabel:
        case kRString: {
            std::string text;
            if (n >= 8 && ShortString(d + 6, n - 6, 2, text))
                Put(sheet, U16(d), U16(d + 2), U16(d + 4), CellKind::Text, 0, AddText(std::move(text)));
            break;
        }
        case kBoolErr:
            if (n >= 8) {
                if (d[7]) Put(sheet, U16(d), U16(d + 2), U16(d + 4), CellKind::Error, 0, AddText(ErrorText(d[6])));
                else Put(sheet, U16(d), U16(d + 2), U16(d + 4), CellKind::Boolean, d[6] ? 1 : 0);
            }
            break;
        case kFormula:
            pending = false;
            if (n < 14) break;
            if (d[12] == 0xFF && d[13] == 0xFF) {
                switch (d[6]) {
                case 0:  // the text follows
                    pending = true;
                    pendingRow = U16(d);
                    pendingColumn = U16(d + 2);
                    pendingXf = U16(d + 4);
                    break;
                case 1: Put(sheet, U16(d), U16(d + 2), U16(d + 4), CellKind::Boolean, d[8] ? 1 : 0); break;
                case 2: Put(sheet, U16(d), U16(d + 2), U16(d + 4), CellKind::Error, 0, AddText(ErrorText(d[8]))); break;
                case 3: Put(sheet, U16(d), U16(d + 2), U16(d + 4), CellKind::Text, 0, AddText(std::string())); break;
                default: break;
                }
            } else {
                Put(sheet, U16(d), U16(d + 2), U16(d + 4), CellKind::Number, F64(d + 6));
            }
            break;
        case kString: {
            if (!pending) break;
            pending = false;
            std::string text;
            if (m_biff8) {
                Pieces pieces;
                pieces.Add(d, n);
                while (records.PeekType() == kContinue) {
                    Record more;
                    if (!records.Next(more)) break;
                    pieces.Add(more.data, more.size);
                }
                std::uint16_t count = 0;
                std::uint8_t flags = 0;
                std::u16string wide;
                if (!pieces.Word(count) || !pieces.Byte(flags) || !pieces.Characters(count, flags & 1, wide, kMaxCharacters))
                    break;
                text = Utf8Of(wide);
            } else if (!ShortString(d, n, 2, text)) {
                break;
            }
            Put(sheet, pendingRow, pendingColumn, pendingXf, CellKind::Text, 0, AddText(std::move(text)));
            break;
        }
        case kPane:
            if (n >= 9) activePane = d[8];
            break;
        case kSelection:
            if (n >= 5) selections[d[0]] = {static_cast<std::uint32_t>(U16(d + 1)) + 1, static_cast<std::uint32_t>(U16(d + 3)) + 1};
            break;
        default:
            break;
        }
    }
    auto chosen = selections.find(activePane);
    if (chosen == selections.end() && !selections.empty()) chosen = selections.begin();
    if (chosen != selections.end() && chosen->second.first <= 65536 && chosen->second.second <= 256) {
        m_sheets[static_cast<size_t>(sheet)].activeRow = chosen->second.first;
        m_sheets[static_cast<size_t>(sheet)].activeColumn = chosen->second.second;
    }
}

bool XlsWorkbook::Read(const std::vector<std::uint8_t>& stream, std::wstring& why) {
    Records records(stream, 0);
    Record record;
    if (!records.Next(record) || record.type != kBof || record.size < 4) {
        why = L"it is not a workbook: its workbook stream does not begin as one";
        return false;
    }
    std::uint16_t version = U16(record.data);
    if (version != 0x0600 && version != 0x0500) {
        why = L"it is a workbook of a version before 1995, which cannot be read";
        return false;
    }
    m_biff8 = version == 0x0600;
    AddFormat(L"General");
    std::map<std::uint16_t, std::wstring> formats;
    std::vector<std::uint16_t> xfCodes;
    std::vector<std::uint32_t> offsets;
    bool ended = false;
    while (!ended && records.Next(record)) {
        const std::uint8_t* d = record.data;
        size_t n = record.size;
        switch (record.type) {
        case kEof: ended = true; break;
        case kFilePass:
            why = L"it is protected by a password";
            return false;
        case kCodePage:
            if (n >= 2) m_codePage = U16(d);
            break;
        case kDateMode:
            if (n >= 2) m_date1904 = U16(d) != 0;
            break;
        case kWindow1:
            if (n >= 12) m_activeSheet = U16(d + 10);
            break;
        case kFormat: {
            std::string code;
            if (n >= 3 && ShortString(d + 2, n - 2, m_biff8 ? 2 : 1, code)) formats[U16(d)] = FromUtf8(code);
            break;
        }
        case kXf:
            if (n >= 4) xfCodes.push_back(U16(d + 2));
            break;
        case kSst:
            if (!ReadSharedStrings(records, record)) {
                why = L"it is not a workbook: its shared strings are damaged";
                return false;
            }
            break;
        case kBoundSheet: {
            std::string name;
            if (n < 7 || !ShortString(d + 6, n - 6, 1, name)) break;
            Sheet sheet;
            sheet.name = FromUtf8(name);
            sheet.visible = (d[4] & 3) == 0;
            sheet.worksheet = d[5] == 0;
            m_sheets.push_back(sheet);
            offsets.push_back(U32(d));
            break;
        }
        default: break;
        }
    }
    if (m_sheets.empty()) {
        why = L"it is not a workbook: it lists no sheets";
        return false;
    }
    for (std::uint16_t code : xfCodes) {
        auto custom = formats.find(code);
        std::wstring text = custom != formats.end() ? custom->second : std::wstring(BuiltInFormatCode(code));
        m_xfFormats.push_back(AddFormat(text.empty() ? L"General" : text));
    }
    if (m_activeSheet < 0 || static_cast<size_t>(m_activeSheet) >= m_sheets.size()) m_activeSheet = 0;
    for (size_t i = 0; i < m_sheets.size(); ++i) {
        if (m_sheets[i].worksheet && offsets[i] < stream.size()) ReadSheet(stream, offsets[i], static_cast<int>(i));
    }
    return true;
}

}  // namespace

std::unique_ptr<Workbook> ReadXls(std::span<const std::uint8_t> bytes, std::wstring& why) {
    CompoundFile file;
    if (!file.Open(bytes, why)) return nullptr;
    // A workbook saved with a password to open is an encrypted package in a
    // compound file, whatever its format inside.
    if (file.Has(u"EncryptedPackage") || file.Has(u"EncryptionInfo")) {
        why = L"it is protected by a password";
        return nullptr;
    }
    std::vector<std::uint8_t> stream;
    if (!file.Read(file.Has(u"Workbook") ? u"Workbook" : u"Book", stream, why)) return nullptr;
    auto book = std::make_unique<XlsWorkbook>();
    if (!book->Read(stream, why)) return nullptr;
    return book;
}

}  // namespace cadhost::spreadsheet
