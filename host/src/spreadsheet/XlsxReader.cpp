// .xlsx workbooks: a zip package of XML parts. The package's relationships
// lead to the workbook part, which lists the sheets; each sheet is a part
// of its own, its texts stand in the shared strings part and its number
// formats in the styles part.
#include <zip.h>

#include <charconv>
#include <cmath>
#include <cstring>
#include <map>

#include "core/Utf8.h"
#include "spreadsheet/Workbook.h"
#include "spreadsheet/XmlPart.h"

namespace cadhost::spreadsheet {
namespace {

// The longest text a cell holds, in bytes of UTF-8; more is cut off.
constexpr size_t kMaxTextBytes = 32767 * 4;

bool EndsWith(std::string_view text, std::string_view tail) {
    return text.size() >= tail.size() && text.substr(text.size() - tail.size()) == tail;
}

std::string Folder(const std::string& part) {
    size_t slash = part.rfind('/');
    return slash == std::string::npos ? std::string() : part.substr(0, slash + 1);
}

// A relationship's target as a part name: absolute from the package's
// root, or relative to the folder of the part that names it.
std::string ResolveTarget(const std::string& base, std::string target) {
    std::string path = !target.empty() && target[0] == '/' ? target.substr(1) : Folder(base) + target;
    std::vector<std::string> parts;
    size_t start = 0;
    while (start <= path.size()) {
        size_t slash = path.find('/', start);
        std::string piece = path.substr(start, slash == std::string::npos ? std::string::npos : slash - start);
        if (piece == "..") {
            if (!parts.empty()) parts.pop_back();
        } else if (!piece.empty() && piece != ".") {
            parts.push_back(piece);
        }
        if (slash == std::string::npos) break;
        start = slash + 1;
    }
    std::string out;
    for (size_t i = 0; i < parts.size(); ++i) out += (i ? "/" : "") + parts[i];
    return out;
}

std::string RelationshipsOf(const std::string& part) {
    size_t slash = part.rfind('/');
    std::string folder = slash == std::string::npos ? std::string() : part.substr(0, slash + 1);
    std::string name = slash == std::string::npos ? part : part.substr(slash + 1);
    return folder + "_rels/" + name + ".rels";
}

struct Relationship {
    std::string type;
    std::string target;
};

class RelationshipsReader : public XmlHandler {
public:
    void Start(std::string_view name, const char** attributes) override {
        if (name != "Relationship") return;
        const char* id = XmlAttribute(attributes, "Id");
        const char* type = XmlAttribute(attributes, "Type");
        const char* target = XmlAttribute(attributes, "Target");
        const char* mode = XmlAttribute(attributes, "TargetMode");
        if (!id || !target || (mode && std::strcmp(mode, "External") == 0)) return;
        relationships[id] = Relationship{type ? type : "", target};
    }
    std::map<std::string, Relationship> relationships;
};

bool ReadRelationships(zip_t* archive, const std::string& part, std::map<std::string, Relationship>& out,
                       std::wstring& why) {
    out.clear();
    std::string name = RelationshipsOf(part);
    if (!HasPart(archive, name)) return true;
    RelationshipsReader reader;
    if (!ParsePart(archive, name, reader, why)) return false;
    out = std::move(reader.relationships);
    return true;
}

bool IsTrue(const char* value) {
    return value && (std::strcmp(value, "1") == 0 || std::strcmp(value, "true") == 0);
}

template <class T>
bool ParseNumber(std::string_view text, T& value) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t' || text.front() == '\n' || text.front() == '\r'))
        text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\n' || text.back() == '\r'))
        text.remove_suffix(1);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

// The program writes characters that XML cannot carry as _xHHHH_.
std::string Unescape(std::string text) {
    if (text.find("_x") == std::string::npos) return text;
    std::string out;
    for (size_t i = 0; i < text.size();) {
        if (i + 7 <= text.size() && text[i] == '_' && text[i + 1] == 'x' && text[i + 6] == '_') {
            unsigned code = 0;
            auto [end, error] = std::from_chars(text.data() + i + 2, text.data() + i + 6, code, 16);
            if (error == std::errc() && end == text.data() + i + 6) {
                out += ToUtf8(std::wstring(1, static_cast<wchar_t>(code)));
                i += 7;
                continue;
            }
        }
        out += text[i++];
    }
    return out;
}

// Collects the text of <t> elements below an element, leaving out the
// phonetic runs (<rPh>) that the program does not show in the cell.
struct RichText {
    bool inText = false;
    int phonetic = 0;
    std::string text;

    void Start(std::string_view name) {
        if (name == "rPh") ++phonetic;
        else if (name == "t" && phonetic == 0) inText = true;
    }
    void End(std::string_view name) {
        if (name == "rPh" && phonetic > 0) --phonetic;
        else if (name == "t") inText = false;
    }
    // Ready for the next cell, keeping the text's room.
    void Clear() {
        inText = false;
        phonetic = 0;
        text.clear();
    }
    void Characters(std::string_view chunk) {
        if (!inText) return;
        size_t room = kMaxTextBytes > text.size() ? kMaxTextBytes - text.size() : 0;
        text.append(chunk.substr(0, std::min(room, chunk.size())));
    }
};

// A date written as ISO 8601 ("2024-03-05T12:00:00") as a serial number.
bool IsoDateSerial(std::string_view text, bool date1904, double& serial) {
    int y = 0, mo = 0, d = 0, h = 0, mi = 0;
    double s = 0;
    if (text.size() < 10 || text[4] != '-' || text[7] != '-') return false;
    if (!ParseNumber(text.substr(0, 4), y) || !ParseNumber(text.substr(5, 2), mo) || !ParseNumber(text.substr(8, 2), d))
        return false;
    if (text.size() > 10) {
        if (text[10] != 'T' || text.size() < 16 || text[13] != ':') return false;
        if (!ParseNumber(text.substr(11, 2), h) || !ParseNumber(text.substr(14, 2), mi)) return false;
        if (text.size() > 17 && text[16] == ':') {
            std::string_view rest = text.substr(17);
            size_t zone = rest.find_first_of("Z+-");
            if (!ParseNumber(rest.substr(0, zone), s)) return false;
        }
    }
    if (mo < 1 || mo > 12 || d < 1 || d > 31) return false;
    // Days from 1970-01-01 (proleptic Gregorian).
    int yy = y - (mo <= 2);
    int era = (yy >= 0 ? yy : yy - 399) / 400;
    int yoe = yy - era * 400;
    int doy = (153 * (mo + (mo > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    int doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    long long days = static_cast<long long>(era) * 146097 + doe - 719468;
    long long epoch = date1904 ? -24107 : -25569;
    double value = static_cast<double>(days - epoch) + (h * 3600 + mi * 60 + s) / 86400.0;
    // Before March 1900 the program's calendar counts one day less.
    if (!date1904 && value < 61) value -= 1;
    serial = value;
    return true;
}

class WorkbookPartReader : public XmlHandler {
public:
    struct Entry {
        std::string name, id;
        bool hidden = false;
    };
    void Start(std::string_view name, const char** attributes) override {
        if (name == "workbookPr") {
            date1904 = IsTrue(XmlAttribute(attributes, "date1904"));
        } else if (name == "workbookView" && !viewSeen) {
            viewSeen = true;
            if (const char* tab = XmlAttribute(attributes, "activeTab")) ParseNumber(tab, activeTab);
        } else if (name == "sheet") {
            const char* sheetName = XmlAttribute(attributes, "name");
            const char* id = XmlAttribute(attributes, "id");
            const char* state = XmlAttribute(attributes, "state");
            if (sheetName && id)
                sheets.push_back(Entry{sheetName, id, state && std::strcmp(state, "visible") != 0});
        }
    }
    bool date1904 = false, viewSeen = false;
    int activeTab = 0;
    std::vector<Entry> sheets;
};

// A sheet's saved selection: the active cell of the active pane of its
// first view. Reading stops where the cells begin.
class SheetViewReader : public XmlHandler {
public:
    void Start(std::string_view name, const char** attributes) override {
        if (name == "sheetView") {
            ++views;
        } else if (views == 1 && name == "pane") {
            if (const char* pane = XmlAttribute(attributes, "activePane")) activePane = pane;
        } else if (views == 1 && name == "selection") {
            const char* pane = XmlAttribute(attributes, "pane");
            const char* cell = XmlAttribute(attributes, "activeCell");
            if (cell) selections.emplace_back(pane ? pane : "topLeft", cell);
        } else if (name == "sheetData") {
            done = true;
        }
    }
    int views = 0;
    std::string activePane = "topLeft";
    std::vector<std::pair<std::string, std::string>> selections;
};

class StylesReader : public XmlHandler {
public:
    void Start(std::string_view name, const char** attributes) override {
        if (name == "numFmts") {
            inFormats = true;
        } else if (name == "numFmt" && inFormats) {
            const char* id = XmlAttribute(attributes, "numFmtId");
            const char* code = XmlAttribute(attributes, "formatCode");
            unsigned number = 0;
            if (id && code && ParseNumber(id, number)) custom[number] = FromUtf8(code);
        } else if (name == "cellXfs") {
            inCellFormats = true;
        } else if (name == "xf" && inCellFormats) {
            unsigned number = 0;
            if (const char* id = XmlAttribute(attributes, "numFmtId")) ParseNumber(id, number);
            cellFormats.push_back(number);
        }
    }
    void End(std::string_view name) override {
        if (name == "numFmts") inFormats = false;
        else if (name == "cellXfs") inCellFormats = false;
    }
    bool inFormats = false, inCellFormats = false;
    std::map<unsigned, std::wstring> custom;
    std::vector<unsigned> cellFormats;
};

class SharedStringsReader : public XmlHandler {
public:
    void Start(std::string_view name, const char** attributes) override {
        if (name == "si") {
            inItem = true;
            item.Clear();
        } else if (inItem) {
            item.Start(name);
        }
    }
    void End(std::string_view name) override {
        if (name == "si") {
            inItem = false;
            strings.push_back(Unescape(item.text));
        } else if (inItem) {
            item.End(name);
        }
    }
    void Characters(std::string_view text) override {
        if (inItem) item.Characters(text);
    }
    bool CanRewind() const override { return true; }
    void Rewind() override {
        inItem = false;
        item.Clear();
        strings.clear();
    }
    bool inItem = false;
    RichText item;
    std::vector<std::string> strings;
};

class XlsxWorkbook : public Workbook {
public:
    XlsxWorkbook(std::vector<std::uint8_t> bytes) : Workbook(FileKind::Xlsx), m_bytes(std::move(bytes)) {}
    ~XlsxWorkbook() override {
        if (m_archive) zip_discard(m_archive);
    }

    bool Open(std::wstring& why) {
        zip_error_t error;
        zip_error_init(&error);
        zip_source_t* source = zip_source_buffer_create(m_bytes.data(), m_bytes.size(), 0, &error);
        if (source) m_archive = zip_open_from_source(source, ZIP_RDONLY, &error);
        if (!m_archive) {
            if (source) zip_source_free(source);
            why = L"it is not a workbook: the zip package cannot be read (" + FromUtf8(zip_error_strerror(&error)) + L")";
            zip_error_fini(&error);
            return false;
        }
        zip_error_fini(&error);

        std::map<std::string, Relationship> package;
        if (!ReadRelationships(m_archive, "", package, why)) return false;
        std::string workbookPart;
        for (const auto& [id, relationship] : package)
            if (EndsWith(relationship.type, "/officeDocument")) workbookPart = ResolveTarget("", relationship.target);
        if (workbookPart.empty()) workbookPart = "xl/workbook.xml";
        if (!HasPart(m_archive, workbookPart)) {
            why = L"it is not a workbook: the package holds no workbook part";
            return false;
        }
        m_workbookPart = workbookPart;

        WorkbookPartReader book;
        if (!ParsePart(m_archive, workbookPart, book, why)) return false;
        std::map<std::string, Relationship> parts;
        if (!ReadRelationships(m_archive, workbookPart, parts, why)) return false;
        m_date1904 = book.date1904;
        for (const auto& entry : book.sheets) {
            Sheet sheet;
            sheet.name = FromUtf8(entry.name);
            sheet.visible = !entry.hidden;
            auto found = parts.find(entry.id);
            std::string part;
            if (found != parts.end()) {
                sheet.worksheet = EndsWith(found->second.type, "/worksheet");
                part = ResolveTarget(workbookPart, found->second.target);
            } else {
                sheet.worksheet = false;
            }
            m_sheets.push_back(sheet);
            m_sheetParts.push_back(part);
        }
        for (const auto& [id, relationship] : parts) {
            if (EndsWith(relationship.type, "/sharedStrings"))
                m_sharedStringsPart = ResolveTarget(workbookPart, relationship.target);
            else if (EndsWith(relationship.type, "/styles"))
                m_stylesPart = ResolveTarget(workbookPart, relationship.target);
        }
        if (m_sheets.empty()) {
            why = L"it is not a workbook: it lists no sheets";
            return false;
        }
        m_activeSheet = book.activeTab >= 0 && static_cast<size_t>(book.activeTab) < m_sheets.size() ? book.activeTab : 0;

        // Each worksheet's saved selection.
        for (size_t i = 0; i < m_sheets.size(); ++i) {
            if (!m_sheets[i].worksheet || m_sheetParts[i].empty() || !HasPart(m_archive, m_sheetParts[i])) continue;
            SheetViewReader view;
            if (!ParsePart(m_archive, m_sheetParts[i], view, why)) return false;
            for (const auto& [pane, cell] : view.selections) {
                std::uint32_t row = 0, column = 0;
                if (pane == view.activePane && ParseCellName(FromUtf8(cell.substr(0, cell.find(' '))), row, column)) {
                    m_sheets[i].activeRow = row;
                    m_sheets[i].activeColumn = column;
                    break;
                }
            }
        }
        return true;
    }

protected:
    bool ReadShared(std::wstring& why) {
        if (m_sharedRead) return true;
        if (!m_stylesPart.empty() && HasPart(m_archive, m_stylesPart)) {
            StylesReader styles;
            if (!ParsePart(m_archive, m_stylesPart, styles, why)) return false;
            for (unsigned id : styles.cellFormats) {
                auto custom = styles.custom.find(id);
                std::wstring code = custom != styles.custom.end() ? custom->second : std::wstring(BuiltInFormatCode(id));
                m_cellFormats.push_back(AddFormat(code.empty() ? L"General" : code));
            }
        }
        if (!m_sharedStringsPart.empty() && HasPart(m_archive, m_sharedStringsPart)) {
            SharedStringsReader shared;
            if (!ParsePart(m_archive, m_sharedStringsPart, shared, why)) return false;
            m_sharedBase = 0;
            for (size_t i = 0; i < shared.strings.size(); ++i) {
                std::uint32_t index = AddText(std::move(shared.strings[i]));
                if (i == 0) m_sharedBase = index;
            }
            m_sharedCount = shared.strings.size();
        }
        m_sharedRead = true;
        return true;
    }

    bool ReadCells(int sheet, std::wstring& why) override;

private:
    std::vector<std::uint8_t> m_bytes;
    zip_t* m_archive = nullptr;
    std::string m_workbookPart, m_sharedStringsPart, m_stylesPart;
    std::vector<std::string> m_sheetParts;
    bool m_sharedRead = false;
    std::vector<std::uint32_t> m_cellFormats;
    std::uint32_t m_sharedBase = 0;
    size_t m_sharedCount = 0;

public:
    // What the cells reader needs of the workbook.
    std::uint32_t FormatOfStyle(std::uint32_t style) const {
        return style < m_cellFormats.size() ? m_cellFormats[style] : 0;
    }
    bool SharedText(std::uint32_t index, std::uint32_t& text) const {
        if (index >= m_sharedCount) return false;
        text = m_sharedBase + index;
        return true;
    }
    std::uint32_t NewText(std::string value) { return AddText(std::move(value)); }
    void NewCell(int sheet, std::uint32_t row, std::uint32_t column, const Cell& cell) {
        AddCell(sheet, row, column, cell);
    }
    std::uint32_t ErrorText(const std::string& value) { return AddText(value); }
    size_t Texts() const { return TextCount(); }
    void Forget(int sheet, size_t texts) { ForgetCells(sheet, texts); }
};

class CellsReader : public XmlHandler {
public:
    CellsReader(XlsxWorkbook& book, int sheet) : m_book(book), m_sheet(sheet), m_texts(book.Texts()) {}

    // The sheet is large: what it gave so far goes, for a second reading.
    bool CanRewind() const override { return true; }
    void Rewind() override {
        m_book.Forget(m_sheet, m_texts);
        m_inData = m_inCell = m_inValue = m_inInline = false;
        m_row = m_column = m_style = 0;
        m_type = Type::kNumber;
        m_value.clear();
        m_inline.Clear();
    }

    void Start(std::string_view name, const char** attributes) override {
        if (name == "sheetData") {
            m_inData = true;
        } else if (!m_inData) {
            return;
        } else if (name == "row") {
            std::uint32_t row = 0;
            const char* r = XmlAttribute(attributes, "r");
            m_row = r && ParseNumber(r, row) ? row : m_row + 1;
            m_column = 0;
        } else if (name == "c") {
            m_inCell = true;
            m_value.clear();
            m_inline.Clear();
            m_type = Type::kNumber;
            m_style = 0;
            if (const char* type = XmlAttribute(attributes, "t")) m_type = TypeOf(type);
            if (const char* style = XmlAttribute(attributes, "s")) ParseNumber(style, m_style);
            std::uint32_t row = 0, column = 0;
            const char* r = XmlAttribute(attributes, "r");
            if (r && ParseCellName(std::string_view(r), row, column)) {
                m_row = row;
                m_column = column;
            } else {
                ++m_column;
            }
        } else if (m_inCell && name == "v") {
            m_inValue = true;
        } else if (m_inCell && name == "is") {
            m_inInline = true;
        } else if (m_inInline) {
            m_inline.Start(name);
        }
    }

    void End(std::string_view name) override {
        if (name == "sheetData") {
            m_inData = false;
            done = true;
        } else if (name == "v") {
            m_inValue = false;
        } else if (name == "is") {
            m_inInline = false;
        } else if (m_inInline) {
            m_inline.End(name);
        } else if (name == "c" && m_inCell) {
            m_inCell = false;
            Finish();
        }
    }

    void Characters(std::string_view text) override {
        if (m_inValue) {
            size_t room = kMaxTextBytes > m_value.size() ? kMaxTextBytes - m_value.size() : 0;
            m_value.append(text.substr(0, std::min(room, text.size())));
        } else if (m_inInline) {
            m_inline.Characters(text);
        }
    }

private:
    void Finish() {
        if (m_row < 1 || m_row > 1048576 || m_column < 1 || m_column > 16384) return;
        Cell cell;
        cell.format = m_book.FormatOfStyle(m_style);
        if (m_type == Type::kShared) {
            std::uint32_t index = 0, text = 0;
            if (!ParseNumber(m_value, index) || !m_book.SharedText(index, text)) return;
            cell.kind = CellKind::Text;
            cell.text = text;
        } else if (m_type == Type::kFormulaText) {
            cell.kind = CellKind::Text;
            cell.text = m_book.NewText(Unescape(m_value));
        } else if (m_type == Type::kInline) {
            cell.kind = CellKind::Text;
            cell.text = m_book.NewText(Unescape(std::move(m_inline.text)));
        } else if (m_type == Type::kBoolean) {
            if (m_value.empty()) return;
            cell.kind = CellKind::Boolean;
            cell.number = m_value != "0" && m_value != "false" ? 1 : 0;
        } else if (m_type == Type::kError) {
            if (m_value.empty()) return;
            cell.kind = CellKind::Error;
            cell.text = m_book.ErrorText(m_value);
        } else if (m_type == Type::kDate) {
            if (!IsoDateSerial(m_value, m_book.date1904(), cell.number)) return;
            cell.kind = CellKind::Number;
        } else {
            if (m_value.empty() || !ParseNumber(m_value, cell.number) || !std::isfinite(cell.number)) return;
            cell.kind = CellKind::Number;
        }
        m_book.NewCell(m_sheet, m_row, m_column, cell);
    }

    XlsxWorkbook& m_book;
    int m_sheet;
    size_t m_texts;  // the workbook's texts before the sheet's
    bool m_inData = false, m_inCell = false, m_inValue = false, m_inInline = false;
    // The t attribute of a cell; anything the program does not write is a
    // number, as "n" is.
    enum class Type { kNumber, kShared, kFormulaText, kInline, kBoolean, kError, kDate };
    static Type TypeOf(std::string_view t) {
        if (t == "s") return Type::kShared;
        if (t == "str") return Type::kFormulaText;
        if (t == "inlineStr") return Type::kInline;
        if (t == "b") return Type::kBoolean;
        if (t == "e") return Type::kError;
        if (t == "d") return Type::kDate;
        return Type::kNumber;
    }

    std::uint32_t m_row = 0, m_column = 0, m_style = 0;
    Type m_type = Type::kNumber;
    std::string m_value;
    RichText m_inline;
};

bool XlsxWorkbook::ReadCells(int sheet, std::wstring& why) {
    const std::string& part = m_sheetParts[static_cast<size_t>(sheet)];
    if (!m_sheets[static_cast<size_t>(sheet)].worksheet || part.empty()) {
        why = L"the sheet " + m_sheets[static_cast<size_t>(sheet)].name + L" is not a worksheet";
        return false;
    }
    if (!ReadShared(why)) return false;
    // Room for as many cells as the part could hold (a cell takes twenty
    // bytes of XML at least): memory that is never written costs nothing,
    // and the cells are not moved as they come.
    zip_stat_t stat;
    zip_stat_init(&stat);
    if (zip_stat(m_archive, part.c_str(), ZIP_FL_NOCASE | ZIP_FL_ENC_GUESS, &stat) == 0 && (stat.valid & ZIP_STAT_SIZE))
        ReserveCells(sheet, static_cast<size_t>(std::min<zip_uint64_t>(stat.size, kMaxPartBytes) / 20));
    CellsReader reader(*this, sheet);
    return ParsePart(m_archive, part, reader, why);
}

}  // namespace

std::unique_ptr<Workbook> ReadXlsx(std::span<const std::uint8_t> bytes, std::wstring& why) {
    auto book = std::make_unique<XlsxWorkbook>(std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
    if (!book->Open(why)) return nullptr;
    return book;
}

}  // namespace cadhost::spreadsheet
