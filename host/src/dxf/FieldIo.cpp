// Files' groups of fields (FIELD objects, class AcDbField). A field lists its
// evaluator (1), its code (2, overflow in 3), its child fields (90 and a 360
// each), the objects its code names by id (97 and a 331 each), evaluation
// option, filing option, state, status, error code and message (91, 92, 94,
// 95, 96, 300), its data items (93, then per item a key under 6 and a value),
// the cached value (7 ACFD_FIELD_VALUE and a value) and its format (301,
// overflow in 9, length in 98). A value is its data type (90) and the group of
// its type, framed from the 2007 release on by flags (93) before and unit
// type, format, shown text and end marker (94, 300, 302, 304) after.
//
// Texts of fields may hold line breaks, which a group cannot: they are written
// in caret notation (^J), and a caret itself as "^ ".
#include <dbfield.h>
#include <tchar.h>

#include <algorithm>
#include <bit>
#include <memory>
#include <cstdint>
#include <optional>
#include <set>
#include <sstream>

#include "core/Utf8.h"
#include "db/FileState.h"
#include "dxf/DxfIo.h"
#include "fields/FieldCodeText.h"
#include "fields/FieldImpl.h"
#include "fields/SharedValueText.h"

namespace cadhost::dxf {
namespace {

constexpr char kCacheKey[] = "ACFD_FIELD_VALUE";
constexpr size_t kLongText = 250;  // longer than one group holds
constexpr char kValueEnd[] = "ACVALUE_END";

std::string CaretEncode(std::string_view text) {
    // Counted first (most texts have nothing to encode), then written in place.
    size_t extra = 0;
    for (char c : text) extra += static_cast<size_t>(c == '^') | static_cast<size_t>(static_cast<unsigned char>(c) < 0x20);
    if (extra == 0) return std::string(text);
    std::string out(text.size() + extra, '\0');
    char* p = out.data();
    for (char c : text) {
        if (c == '^') {
            *p++ = '^';
            *p++ = ' ';
        } else if (static_cast<unsigned char>(c) < 0x20) {
            *p++ = '^';
            *p++ = static_cast<char>(c + 0x40);
        } else {
            *p++ = c;
        }
    }
    return out;
}

std::string CaretDecode(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '^' && i + 1 < text.size()) {
            char next = text[i + 1];
            if (next == ' ') {
                out += '^';
                ++i;
                continue;
            }
            if (next >= 0x40 && next <= 0x5F) {
                out += static_cast<char>(next - 0x40);
                ++i;
                continue;
            }
        }
        out += c;
    }
    return out;
}

std::wstring WideText(ObjectReader& in, std::string_view raw) { return FromUtf8(CaretDecode(in.Decode(raw))); }

// Whether the file's release frames values (from 2007 on).
bool FramesValues(const FileState& file) { return file.version >= "AC1021"; }

constexpr wchar_t kNoValue[] = L"####";

bool SameText(const std::shared_ptr<const std::wstring>& a, const std::shared_ptr<const std::wstring>& b) {
    return a == b || (a && b && *a == *b);
}

// Whether a field's own value goes into files. A text of fields carries
// none where its value is what its children show in their places (the file
// holds their values, and the text shows them), unless the file it came
// from gave it one. A field read without one does not compose its children
// here: they may not have been read yet.
bool WritesOwnValue(const AcDbField& field) {
    const AcDbField::Impl& m = field.impl();
    if (!m.textField || (m.fileForm && m.fileForm->textValue)) return true;
    if (m.status != AcDbField::kSuccess || ShowsChildren(field)) return false;
    std::shared_ptr<const std::wstring> own = m.evaluatorText || !m.value ? nullptr : SharedValueText::Of(*m.value);
    return !own || !SameText(own, ComposedText(field));
}

// The state that files hold: compiled is a state of the session (an
// evaluator compiles a field anew after each opening), and a field whose
// value is not written has no cache there.
int StateToWrite(const AcDbField& field, bool ownValue) {
    int state = field.state() & ~AcDbField::kCompiled;
    if (!ownValue) state &= ~(AcDbField::kHasCache | AcDbField::kHasFormattedString);
    return state;
}

// What one field's groups said, gathered while they are read.
struct FieldRead {
    enum Part { kBeforeMarker, kHead, kItems, kValue, kTail };
    Part part = kBeforeMarker;
    std::string code, format;  // raw, decoded at the end
    std::vector<AcDbObjectId> children;
    int status = 0;

    // The value being read.
    bool valueIsCache = false;
    std::wstring key;
    bool typeSeen = false;
    int type = 0;
    bool textBegun = false;
    std::string text;  // raw
    double xyz[3] = {0, 0, 0};
    long long whole = 0;
    AcDbObjectId id;
    std::vector<std::pair<int, std::string>> raw;
    std::string shown;  // raw
    std::optional<int> flags;

    // Every group after the marker as the file wrote it (its value in
    // rawText), and whether it was counted; irregular when one of them is
    // not where the form puts it. Only an irregular field keeps them.
    struct RawRef {
        int code;
        size_t at, size;
        bool counted;
    };
    std::vector<RawRef> rawRefs;
    std::string rawText;
    bool irregular = false;

    std::optional<std::string> cacheShown;  // the cached value's shown text
    std::optional<int> fileState;
    std::optional<int> cacheFlags;
    std::vector<std::pair<std::wstring, std::optional<int>>> itemFlags;

    // Ready for the next field, keeping the room the lists took: fields
    // come by the thousand, most alike.
    void Reset() {
        part = kBeforeMarker;
        code.clear();
        format.clear();
        children.clear();
        status = 0;
        StartValue(false, std::wstring());
        part = kBeforeMarker;
        rawRefs.clear();
        rawText.clear();
        irregular = false;
        cacheShown.reset();
        fileState.reset();
        cacheFlags.reset();
        itemFlags.clear();
    }
    std::vector<AcDbField::Impl::FileForm::RawGroup> RawGroups() const {
        std::vector<AcDbField::Impl::FileForm::RawGroup> out;
        out.reserve(rawRefs.size());
        for (const RawRef& ref : rawRefs) out.push_back({ref.code, rawText.substr(ref.at, ref.size), ref.counted});
        return out;
    }

    void StartValue(bool cache, std::wstring itemKey) {
        part = kValue;
        valueIsCache = cache;
        key = std::move(itemKey);
        typeSeen = false;
        type = 0;
        textBegun = false;
        text.clear();
        xyz[0] = xyz[1] = xyz[2] = 0;
        whole = 0;
        id = AcDbObjectId();
        raw.clear();
        shown.clear();
        flags.reset();
    }
};


bool Modelled(int type) {
    switch (type) {
    case AcValue::kUnknown:
    case AcValue::kLong:
    case AcValue::kDouble:
    case AcValue::kString:
    case AcValue::kPoint:
    case AcValue::k3dPoint:
    case AcValue::kObjectId: return true;
    default: return false;
    }
}

void EndValue(AcDbField::Impl& m, FieldRead& r, ObjectReader& in) {
    r.part = FieldRead::kItems;
    if (r.valueIsCache) {
        r.cacheFlags = r.flags;
    } else {
        std::erase_if(r.itemFlags, [&](const auto& item) { return item.first == r.key; });
        r.itemFlags.emplace_back(r.key, r.flags);
    }
    if (!Modelled(r.type)) {
        AcDbField::Impl::FileValue kept;
        kept.groups.emplace_back(90, std::to_string(r.type));
        for (auto& group : r.raw) kept.groups.push_back(std::move(group));
        if (r.valueIsCache) {
            m.fileValue = std::move(kept);
            r.cacheShown = r.shown;
        } else {
            std::erase_if(m.fileData, [&](const auto& item) { return item.first == r.key; });
            m.fileData.emplace_back(r.key, std::move(kept));
        }
        return;
    }
    AcFdFieldValue value;
    switch (r.type) {
    case AcValue::kLong: value.set(static_cast<Adesk::Int32>(r.whole)); break;
    case AcValue::kDouble: value.set(r.xyz[0]); break;
    case AcValue::kString:
        // Long values (a whole file's text, shown by many fields) are made
        // once and shared.
        if (r.text.size() > kLongText)
            SharedValueText::Set(value, in.Shared<std::wstring>('F', r.text, [&] { return WideText(in, r.text); }));
        else
            value.set(WideText(in, r.text).c_str());
        break;
    case AcValue::kPoint: value.set(r.xyz[0], r.xyz[1]); break;
    case AcValue::k3dPoint: value.set(r.xyz[0], r.xyz[1], r.xyz[2]); break;
    case AcValue::kObjectId: value.set(r.id); break;
    default: break;
    }
    if (r.valueIsCache) {
        m.value = value;
        r.cacheShown = r.shown;
    } else {
        auto it = std::find_if(m.data.begin(), m.data.end(), [&](const auto& item) { return item.first == r.key; });
        if (it != m.data.end()) it->second = value;
        else m.data.emplace_back(r.key, value);
    }
}

Use ReadValueGroup(AcDbField::Impl& m, FieldRead& r, const Group& g, ObjectReader& in) {
    if (!r.typeSeen) {
        if (g.code == 93) {
            r.flags = static_cast<int>(in.Integer(g));
            return Use::kKnown;
        }
        if (g.code != 90) return Use::kKept;
        long long type = in.Integer(g);
        r.type = type >= 0 && type <= 0x7FFFFFFF ? static_cast<int>(type) : -1;
        r.typeSeen = true;
        return Use::kKnown;
    }
    switch (g.code) {
    case 94:
    case 300: return Use::kKnown;  // unit type and the value's own format
    case 302:
        r.shown.assign(g.value);
        return Use::kKnown;
    case 304:
        EndValue(m, r, in);
        return Use::kKnown;
    default: break;
    }
    if (!Modelled(r.type)) {
        r.raw.emplace_back(g.code, in.Text(g));
        return Use::kKnown;
    }
    switch (r.type) {
    case AcValue::kLong:
        if (g.code != 91) return Use::kKept;
        r.whole = in.Integer(g);
        if (r.whole < INT32_MIN || r.whole > INT32_MAX) in.Fail(g, "a field's long value is out of range");
        return Use::kKnown;
    case AcValue::kDouble:
        if (g.code != 140) return Use::kKept;
        r.xyz[0] = in.Real(g);
        return Use::kKnown;
    case AcValue::kString:
        if (g.code != 1 && g.code != 2) return Use::kKept;
        {
            bool first = !r.textBegun;
            r.textBegun = true;
            r.text.append(g.value);
            return first ? Use::kKnown : Use::kContinued;
        }
    case AcValue::kPoint:
    case AcValue::k3dPoint:
        if (g.code != 11 && g.code != 21 && g.code != 31) return Use::kKept;
        r.xyz[(g.code - 11) / 10] = in.Real(g);
        return g.code == 11 ? Use::kKnown : Use::kContinued;
    case AcValue::kObjectId:
        if (g.code != 330) return Use::kKept;
        r.id = in.Id(g);
        return Use::kKnown;
    default: return Use::kKept;
    }
}

Use ReadFieldGroup(AcDbField::Impl& m, FieldRead& r, const Group& g, ObjectReader& in) {
    if (r.part == FieldRead::kValue) {
        // Values before 2007 have no end marker: the next item ends them.
        bool next = g.code == 6 || g.code == 7 || g.code == 301 || g.code == 9 || g.code == 98;
        if (!next) return ReadValueGroup(m, r, g, in);
        EndValue(m, r, in);  // a value without its type is an unknown one
    }
    if (r.part == FieldRead::kHead) {
        switch (g.code) {
        case 1: m.evaluatorId = WideText(in, g.value); return Use::kKnown;
        case 2:
            r.code.assign(g.value);
            return Use::kKnown;
        case 3:
            r.code.append(g.value);
            return Use::kContinued;
        case 90: return Use::kKnown;  // counts: the lists themselves decide
        case 97: return Use::kKnown;
        case 360: r.children.push_back(in.Id(g)); return Use::kKnown;
        case 331: m.objectIds.push_back(in.Id(g)); return Use::kKnown;
        case 91: {
            // Only the bits of the automatic moments mean anything.
            long long option = in.Integer(g);
            m.option = option > 0 ? static_cast<int>(option & AcDbField::kAutomatic) : 0;
            return Use::kKnown;
        }
        case 92: m.filingOption = static_cast<int>(in.Integer(g)); return Use::kKnown;
        case 94: r.fileState = static_cast<int>(in.Integer(g)); return Use::kKnown;
        case 95: {
            long long status = in.Integer(g);
            r.status = status > 0 && status <= 0x40 && (status & (status - 1)) == 0 ? static_cast<int>(status) : 0;
            return Use::kKnown;
        }
        case 96: m.errorCode = static_cast<int>(in.Integer(g)); return Use::kKnown;
        case 300: m.errorMessage = WideText(in, g.value); return Use::kKnown;
        case 93:
            r.part = FieldRead::kItems;
            return Use::kKnown;
        case 6:
        case 7:
        case 301:
        case 9:
        case 98: r.part = FieldRead::kItems; break;
        default: return Use::kKept;
        }
    }
    switch (g.code) {
    case 6:
        if (r.part == FieldRead::kTail) return Use::kKept;
        r.StartValue(false, WideText(in, g.value));
        return Use::kKnown;
    case 7:
        if (r.part == FieldRead::kTail) return Use::kKept;
        r.StartValue(true, L"");
        return Use::kKnown;
    case 301:
        r.part = FieldRead::kTail;
        r.format.assign(g.value);
        return Use::kKnown;
    case 9:
        if (r.part != FieldRead::kTail) return Use::kKept;
        r.format.append(g.value);
        return Use::kContinued;
    case 98: r.part = FieldRead::kTail; return Use::kKnown;
    default: return Use::kKept;
    }
}

Use ReadField(AcDbField& field, FieldRead& r, const Group& g, ObjectReader& in) {
    auto& m = field.impl();
    if (r.part == FieldRead::kBeforeMarker) {
        if (!IsMarker(g, "AcDbField")) return Use::kKept;
        r.part = FieldRead::kHead;
        return Use::kKnown;
    }
    // The field's own groups are all taken: those out of place make the
    // field irregular, and it is written back as it came while unchanged.
    Use use = ReadFieldGroup(m, r, g, in);
    bool counted = use != Use::kContinued || !ContinuesGroup(in.previousTaken, g.code);
    r.rawRefs.push_back({g.code, r.rawText.size(), g.value.size(), counted});
    r.rawText.append(g.value);
    if (use != Use::kKept) return use;
    r.irregular = true;
    return Use::kKnown;
}

// What the host holds of a field, as one text: a field whose fingerprint
// is what it was when read has not changed since.
void AddValue(std::wostringstream& out, const AcValue& value) {
    out << L'\x1E' << value.dataType() << L':';
    const ACHAR* text = nullptr;
    Adesk::Int32 whole = 0;
    double x = 0, y = 0, z = 0;
    AcDbObjectId id;
    if (value.get(text)) out << text;
    else if (value.get(whole)) out << whole;
    else if (value.get(x, y, z)) out << std::bit_cast<uint64_t>(x) << L',' << std::bit_cast<uint64_t>(y) << L',' << std::bit_cast<uint64_t>(z);
    else if (value.get(x, y)) out << std::bit_cast<uint64_t>(x) << L',' << std::bit_cast<uint64_t>(y);
    else if (value.get(x)) out << std::bit_cast<uint64_t>(x);
    else if (value.get(id)) out << id.handle().value();
}

void AddKept(std::wostringstream& out, const AcDbField::Impl::FileValue& value) {
    for (const auto& [code, text] : value.groups) out << L'\x1E' << code << L':' << FromUtf8(text);
}

std::wstring Fingerprint(const AcDbField& field) {
    const AcDbField::Impl& m = field.impl();
    std::wostringstream out;
    const wchar_t separator = L'\x1F';
    out << m.evaluatorId << separator << m.hasCode << m.unreadable << m.textField << separator << m.code << separator
        << m.format << separator << m.option << L',' << m.filingOption << L',' << m.status << L',' << m.errorCode
        << separator << m.errorMessage << separator;
    for (const auto& child : m.children) out << (child.held ? 0 : child.id.handle().value()) << L',';
    out << separator;
    for (AcDbObjectId id : m.objectIds) out << id.handle().value() << L',';
    out << separator;
    if (m.value) AddValue(out, *m.value);
    out << separator << (m.evaluatorText ? L"+" + *m.evaluatorText : L"-") << separator;
    for (const auto& [key, value] : m.data) {
        out << key;
        AddValue(out, value);
    }
    out << separator;
    for (const auto& [key, value] : m.fileData) {
        out << key;
        AddKept(out, value);
    }
    out << separator;
    if (m.fileValue) AddKept(out, *m.fileValue);
    return out.str();
}

// Whether every code inside the parsed code is the place of one of the
// file's children, each child used once; fills the children in the order of
// their places, or says why they do not match.
bool PlacesMatch(const ParsedCode& parsed, const std::vector<AcDbObjectId>& fileChildren,
                 std::vector<AcDbField::Impl::Child>& children, std::wstring& why) {
    auto count = [](size_t n) { return std::to_wstring(n) + (n == 1 ? L" child" : L" children"); };
    std::set<size_t> used;
    for (const ParsedCode& child : parsed.children) {
        if (!child.suppliedChild) {
            why = L"a field code stands inside it where the place of a child must";
            return false;
        }
        size_t place = *child.suppliedChild;
        if (place >= fileChildren.size()) {
            why = L"it names child " + std::to_wstring(place) + L", and the field has " + count(fileChildren.size());
            return false;
        }
        if (!used.insert(place).second) {
            why = L"it names child " + std::to_wstring(place) + L" twice";
            return false;
        }
        children.push_back({nullptr, fileChildren[place]});
    }
    if (used.size() != fileChildren.size()) {
        why = L"it names " + count(used.size()) + L", and the field has " + count(fileChildren.size());
        return false;
    }
    return true;
}

void FinishField(AcDbField& field, FieldRead& r, ObjectReader& in) {
    auto& m = field.impl();
    if (r.part == FieldRead::kValue) EndValue(m, r, in);
    std::wstring code = WideText(in, r.code);
    std::wstring format = WideText(in, r.format);
    bool textField = _wcsicmp(m.evaluatorId.c_str(), kTextEvaluatorId) == 0;

    m.DropChildren();
    m.hasCode = !code.empty();
    m.textField = textField;
    m.compiled = false;
    std::wstring error;
    std::optional<ParsedCode> parsed;
    if (m.hasCode) parsed = textField ? ParseTextWithFields(code, error, true) : ParseFieldCode(code, error, true);
    std::vector<AcDbField::Impl::Child> children;
    bool readable = parsed && PlacesMatch(*parsed, r.children, children, error);
    if (readable && !textField && !m.evaluatorId.empty() &&
        _wcsicmp(parsed->evaluatorId.c_str(), m.evaluatorId.c_str()) != 0) {
        error = L"it names the evaluator \"" + parsed->evaluatorId + L"\", and the field \"" + m.evaluatorId + L"\"";
        readable = false;
    }
    m.unreadableReason.clear();
    if (readable) {
        if (m.evaluatorId.empty()) m.evaluatorId = parsed->evaluatorId;
        m.code = parsed->code;
        m.format = parsed->format.empty() ? format : parsed->format;
        m.children = std::move(children);
        m.unreadable = false;
    } else {
        // Kept as it came: evaluating it fails, saving writes it back.
        m.code = code;
        m.format = format;
        for (AcDbObjectId child : r.children) m.children.push_back({nullptr, child});
        m.unreadable = m.hasCode;
        if (m.unreadable) m.unreadableReason = error;
    }
    m.status = r.status ? static_cast<AcDbField::EvalStatus>(r.status) : AcDbField::kNotYetEvaluated;
    if (m.status != AcDbField::kSuccess) {
        m.value.reset();
        m.fileValue.reset();
    } else if (!m.value && !m.fileValue) {
        m.value = AcFdFieldValue();
    }
    // The shown text of the cache: kept when the host would show the value
    // otherwise (an evaluator that shaped its display). A text of fields
    // without a value of its own is not composed here: its children may not
    // have been read yet.
    m.evaluatorText.reset();
    bool success = m.status == AcDbField::kSuccess;
    std::wstring fileShown = r.cacheShown ? WideText(in, *r.cacheShown) : std::wstring();
    std::shared_ptr<const std::wstring> ownShown = success && !ShowsChildren(field) ? ShownText(field) : nullptr;
    if (success && !fileShown.empty() && (m.fileValue || fileShown != (ownShown ? *ownShown : kNoValue)))
        m.evaluatorText = fileShown;
    AcDbField::Impl::FileForm form;
    form.textValue = textField && (m.fileValue || (m.value && m.value->isValid()) || !fileShown.empty());
    form.shown = std::move(fileShown);
    form.cacheFlags = r.cacheFlags;
    form.itemFlags = std::move(r.itemFlags);
    m.fileForm = std::move(form);
    m.fileForm->stateAtRead = StateToWrite(field, WritesOwnValue(field));
    m.fileForm->state = r.fileState.value_or(m.fileForm->stateAtRead);
    if (success && !ShowsChildren(field)) m.fileForm->shownAtRead = m.evaluatorText ? ShownText(field) : ownShown;
    if (r.irregular) {
        m.fileForm->raw = r.RawGroups();
        m.fileForm->fingerprint = Fingerprint(field);
    }
    r.Reset();
}

// Writing -----------------------------------------------------------------

void WriteText(ObjectWriter& out, int code, const std::wstring& text) { out.Text(code, CaretEncode(ToUtf8(text))); }

void WriteValueBody(ObjectWriter& out, const AcValue& value) {
    out.Integer(90, value.dataType());
    switch (value.dataType()) {
    case AcValue::kLong: {
        Adesk::Int32 whole = 0;
        value.get(whole);
        out.Integer(91, whole);
        break;
    }
    case AcValue::kDouble: {
        double real = 0;
        value.get(real);
        out.Real(140, real);
        break;
    }
    case AcValue::kString: {
        // Values that many fields show (one source named by many) are one
        // shared text: made into the file's form once.
        std::shared_ptr<const std::wstring> text = SharedValueText::Of(value);
        if (text) out.LongText(2, 1, out.Shared(text.get(), [&text] { return CaretEncode(ToUtf8(*text)); }));
        else out.LongText(2, 1, "");
        break;
    }
    case AcValue::kPoint: {
        double x = 0, y = 0;
        value.get(x, y);
        out.Point2d(11, x, y);
        break;
    }
    case AcValue::k3dPoint: {
        double x = 0, y = 0, z = 0;
        value.get(x, y, z);
        out.Point(11, AcGePoint3d(x, y, z));
        break;
    }
    case AcValue::kObjectId: {
        AcDbObjectId id;
        value.get(id);
        out.Id(330, id);
        break;
    }
    default: break;
    }
}

void WriteKeptBody(ObjectWriter& out, const AcDbField::Impl::FileValue& value) {
    for (const auto& [code, text] : value.groups) out.Text(code, text);
}

// flags: those the file framed the value with (none: it had no flags).
template <class Body>
void WriteValue(ObjectWriter& out, std::optional<int> flags, const std::wstring& shown, Body body) {
    bool framed = FramesValues(out.File());
    if (framed && flags) out.Integer(93, *flags);
    body();
    if (!framed) return;
    out.Integer(94, 0);
    out.Text(300, "");
    WriteText(out, 302, shown);
    out.Text(304, kValueEnd);
}

void WriteField(const AcDbObject& object, ObjectWriter& out) {
    auto& field = static_cast<const AcDbField&>(object);
    const AcDbField::Impl& m = field.impl();
    out.Marker("AcDbField");
    if (m.fileForm && !m.fileForm->raw.empty() && Fingerprint(field) == m.fileForm->fingerprint) {
        for (const auto& group : m.fileForm->raw) out.Raw(group.code, group.value, group.counted);
        return;
    }
    WriteText(out, 1, m.evaluatorId);
    out.SplitText(2, 3, CaretEncode(ToUtf8(m.hasCode ? m.code : std::wstring())));
    out.Integer(90, static_cast<long long>(m.children.size()));
    for (const auto& child : m.children) out.Id(360, child.held ? child.held->objectId() : child.id);
    out.Integer(97, static_cast<long long>(m.objectIds.size()));
    for (AcDbObjectId id : m.objectIds) out.Id(331, id);
    out.Integer(91, m.option);
    out.Integer(92, m.filingOption);
    const auto& form = m.fileForm;
    bool ownValue = WritesOwnValue(field);
    int state = StateToWrite(field, ownValue);
    out.Integer(94, form && state == form->stateAtRead ? form->state : state);
    out.Integer(95, m.status);
    out.Integer(96, m.errorCode);
    WriteText(out, 300, m.errorMessage);

    std::vector<const std::pair<std::wstring, AcDbField::Impl::FileValue>*> kept;
    for (const auto& item : m.fileData) {
        bool replaced = std::any_of(m.data.begin(), m.data.end(), [&](const auto& d) { return d.first == item.first; });
        if (!replaced) kept.push_back(&item);
    }
    out.Integer(93, static_cast<long long>(m.data.size() + kept.size()));
    auto itemFlags = [&](const std::wstring& key) -> std::optional<int> {
        if (!form) return 0;
        for (const auto& [name, flags] : form->itemFlags)
            if (name == key) return flags;
        return 0;
    };
    for (const auto& item : m.data) {
        WriteText(out, 6, item.first);
        WriteValue(out, itemFlags(item.first), L"", [&] { WriteValueBody(out, item.second); });
    }
    for (const auto* item : kept) {
        WriteText(out, 6, item->first);
        WriteValue(out, itemFlags(item->first), L"", [&] { WriteKeptBody(out, item->second); });
    }

    out.Text(7, kCacheKey);
    bool success = m.status == AcDbField::kSuccess && ownValue;
    // The text shown goes with the value where it says more than the value:
    // a text value shows as it is. While the field shows what it showed when
    // read, the file's own shown text is written again.
    std::wstring shown;
    if (success) {
        std::shared_ptr<const std::wstring> text = ShownText(field);
        if (form && SameText(text, form->shownAtRead)) shown = form->shown;
        else if (m.evaluatorText || !m.value || m.value->dataType() != AcValue::kString) shown = *text;
    } else if (form && !form->shownAtRead) {
        shown = form->shown;  // it had no value when read either
    }
    std::optional<int> flags = form ? form->cacheFlags : std::optional<int>(0);
    if (success && m.value) {
        WriteValue(out, flags, shown, [&] { WriteValueBody(out, *m.value); });
    } else if (success && m.fileValue) {
        WriteValue(out, flags, shown, [&] { WriteKeptBody(out, *m.fileValue); });
    } else {
        WriteValue(out, flags, shown, [&] { WriteValueBody(out, AcValue()); });
    }
    out.SplitText(301, 9, CaretEncode(ToUtf8(m.format)));
    out.Integer(98, static_cast<long long>(m.format.size()));
}

constexpr ClassIo kFieldClasses[] = {
    {.dxfName = "FIELD",
     .rxClass = AcDbField::desc,
     .create = [] { return static_cast<AcDbObject*>(new AcDbField); },
     .read = Reads<ReadField>,
     .finish = Finishes<FinishField>,
     .write = WriteField,
     .cppName = "AcDbField",
     .appName = "ObjectDBX Classes",
     .proxyFlags = 1152,
     .markers = "AcDbField"},
};

}  // namespace

std::span<const ClassIo> FieldClasses() { return kFieldClasses; }

}  // namespace cadhost::dxf
