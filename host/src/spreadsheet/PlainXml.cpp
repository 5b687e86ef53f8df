#include "spreadsheet/PlainXml.h"

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string_view>

namespace cadhost::spreadsheet {
namespace {

constexpr size_t kNone = static_cast<size_t>(-1);
constexpr std::string_view kXmlNamespace = "http://www.w3.org/XML/1998/namespace";
constexpr std::string_view kXmlnsNamespace = "http://www.w3.org/2000/xmlns/";

bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

bool IsNameStart(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_'; }
bool IsNameChar(char c) { return IsNameStart(c) || (c >= '0' && c <= '9') || c == '.' || c == '-'; }

// Whether a code point is a character that XML 1.0 documents may hold.
bool IsXmlChar(std::uint32_t c) {
    return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) || (c >= 0xE000 && c <= 0xFFFD) ||
           (c >= 0x10000 && c <= 0x10FFFF);
}

// The length of the UTF-8 sequence at data[i] that encodes a character XML
// allows (shortest form, no surrogate), or 0.
size_t Utf8Char(const char* data, size_t i, size_t end) {
    auto b = [&](size_t k) { return static_cast<unsigned char>(data[i + k]); };
    unsigned char first = b(0);
    size_t length = first >= 0xC2 && first <= 0xDF ? 2 : first >= 0xE0 && first <= 0xEF ? 3
                    : first >= 0xF0 && first <= 0xF4 ? 4 : 0;
    if (length == 0 || i + length > end) return 0;
    std::uint32_t c = first & (0x7F >> length);
    for (size_t k = 1; k < length; ++k) {
        if ((b(k) & 0xC0) != 0x80) return 0;
        c = (c << 6) | (b(k) & 0x3F);
    }
    static const std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    return c >= kLeast[length] && IsXmlChar(c) ? length : 0;
}

size_t PutUtf8(char* out, std::uint32_t c) {
    if (c < 0x80) {
        out[0] = static_cast<char>(c);
        return 1;
    }
    if (c < 0x800) {
        out[0] = static_cast<char>(0xC0 | (c >> 6));
        out[1] = static_cast<char>(0x80 | (c & 0x3F));
        return 2;
    }
    if (c < 0x10000) {
        out[0] = static_cast<char>(0xE0 | (c >> 12));
        out[1] = static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out[2] = static_cast<char>(0x80 | (c & 0x3F));
        return 3;
    }
    out[0] = static_cast<char>(0xF0 | (c >> 18));
    out[1] = static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    out[2] = static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out[3] = static_cast<char>(0x80 | (c & 0x3F));
    return 4;
}

// The reference at data[i] ('&'): a named one of the five or a numeric
// one of a character XML allows; its length (with ';') and character, or 0.
size_t Reference(const char* data, size_t i, size_t end, std::uint32_t& c) {
    std::string_view rest(data + i, end - i);
    static const struct {
        std::string_view name;
        char c;
    } kNamed[] = {{"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}};
    for (const auto& named : kNamed) {
        if (rest.substr(0, named.name.size()) == named.name) {
            c = static_cast<unsigned char>(named.c);
            return named.name.size();
        }
    }
    if (rest.size() < 4 || rest[1] != '#') return 0;
    bool hex = rest[2] == 'x';
    size_t k = hex ? 3 : 2;
    std::uint32_t value = 0;
    size_t digits = 0;
    for (; k < rest.size() && rest[k] != ';'; ++k, ++digits) {
        char d = rest[k];
        int digit = d >= '0' && d <= '9' ? d - '0'
                    : hex && d >= 'a' && d <= 'f' ? d - 'a' + 10
                    : hex && d >= 'A' && d <= 'F' ? d - 'A' + 10 : -1;
        if (digit < 0 || digits >= 8) return 0;
        value = value * (hex ? 16 : 10) + static_cast<std::uint32_t>(digit);
    }
    if (k >= rest.size() || digits == 0 || !IsXmlChar(value)) return 0;
    c = value;
    return k + 1;
}

// Checks the characters of text or of an attribute's value between begin
// and end; with decode, writes them decoded in place from begin on and
// answers their end through written. Line breaks and tabs are refused in
// values (they would be normalised), carriage returns everywhere (line ends
// are normalised).
bool Characters(char* data, size_t begin, size_t end, bool value, bool decode, size_t* written) {
    size_t w = begin;  // where the next decoded byte goes
    size_t i = begin;
    auto keep = [&](size_t length) {
        if (decode && w != i) std::memmove(data + w, data + i, length);
        w += length;
        i += length;
    };
    while (i < end) {
        // A run of plain characters, which stay as they are.
        size_t run = i;
        while (run < end) {
            auto c = static_cast<unsigned char>(data[run]);
            if (c < 0x20 || c >= 0x80 || c == '&' || c == '<' || c == '>') break;
            ++run;
        }
        if (run > i) keep(run - i);
        if (i >= end) break;
        char ch = data[i];
        auto c = static_cast<unsigned char>(ch);
        if (ch == '&') {
            std::uint32_t code = 0;
            size_t length = Reference(data, i, end, code);
            if (length == 0) return false;
            if (decode) w += PutUtf8(data + w, code);
            else w += length;
            i += length;
        } else if (ch == '>') {
            // "]]>" may not stand in text (checked before the text is decoded).
            if (!value && !decode && i >= begin + 2 && data[i - 1] == ']' && data[i - 2] == ']') return false;
            keep(1);
        } else if (ch == '\n' || ch == '\t') {
            if (value) return false;
            keep(1);
        } else if (c >= 0x80) {
            size_t length = Utf8Char(data, i, end);
            if (length == 0) return false;
            keep(length);
        } else {
            return false;  // '<', a carriage return or another control character
        }
    }
    if (written) *written = w - begin;
    return true;
}

// A name with one prefix at most, in ASCII, from data[i]: its end and the
// place of its colon (npos for none); false where none begins, or where
// it is not known yet whether one does or where it ends (more is set then).
bool QName(const char* data, size_t size, size_t i, size_t& end, size_t& colon, bool& more) {
    more = i >= size;
    colon = kNone;
    if (i >= size || !IsNameStart(data[i])) return false;
    size_t k = i + 1;
    for (; k < size; ++k) {
        char c = data[k];
        if (IsNameChar(c)) continue;
        if (c != ':') break;
        if (colon != kNone || k + 1 >= size || !IsNameStart(data[k + 1])) {
            more = colon == kNone && k + 1 >= size;
            return false;
        }
        colon = k;
    }
    if (k >= size) {
        more = true;
        return false;
    }
    end = k;
    return true;
}

}  // namespace

bool PlainXmlReader::Bound(const char* prefix, size_t length) const {
    std::string_view wanted(prefix, length);
    for (auto it = m_bindings.rbegin(); it != m_bindings.rend(); ++it)
        if (it->prefix == wanted) return true;
    return false;
}

bool PlainXmlReader::Declaration(const char* data, size_t size, size_t& at, bool& complete) {
    // <?xml version="1.0" encoding="UTF-8" standalone="yes"?>, the last two
    // optional, either quote.
    complete = false;
    const char* end = static_cast<const char*>(std::memchr(data, '>', size));
    if (!end) return true;
    complete = true;
    std::string_view text(data, static_cast<size_t>(end - data) + 1);
    size_t i = 5;  // after "<?xml"
    auto spaces = [&] {
        size_t from = i;
        while (i < text.size() && IsSpace(text[i])) ++i;
        return i > from;
    };
    auto pseudo = [&](std::string_view name, std::initializer_list<std::string_view> values) {
        size_t from = i;
        if (text.substr(i, name.size()) != name) return false;
        i += name.size();
        spaces();
        if (i >= text.size() || text[i] != '=') return (i = from), false;
        ++i;
        spaces();
        if (i >= text.size() || (text[i] != '"' && text[i] != '\'')) return false;
        char quote = text[i++];
        size_t close = text.find(quote, i);
        if (close == std::string_view::npos) return false;
        std::string_view value = text.substr(i, close - i);
        i = close + 1;
        for (std::string_view allowed : values)
            if (value == allowed) return true;
        return false;
    };
    if (!spaces() || !pseudo("version", {"1.0"})) return false;
    size_t before = i;
    if (spaces() && text.substr(i, 8) == "encoding") {
        if (!pseudo("encoding", {"UTF-8", "utf-8"})) return false;
    } else {
        i = before;
    }
    before = i;
    if (spaces() && text.substr(i, 10) == "standalone") {
        if (!pseudo("standalone", {"yes", "no"})) return false;
    } else {
        i = before;
    }
    spaces();
    if (text.substr(i) != "?>") return false;
    at = text.size();
    return true;
}

PlainXmlReader::Step PlainXmlReader::StartTag(char* data, size_t size, size_t& at) {
    size_t nameEnd = 0, colon = kNone;
    bool more = false;
    if (!QName(data, size, at + 1, nameEnd, colon, more)) return more ? Step::kIncomplete : Step::kNotPlain;
    m_attributes.clear();
    size_t i = nameEnd;
    bool empty = false;
    for (;;) {
        size_t spaced = i;
        while (i < size && IsSpace(data[i])) ++i;
        if (i >= size) return Step::kIncomplete;
        if (data[i] == '>') break;
        if (data[i] == '/') {
            if (i + 1 >= size) return Step::kIncomplete;
            if (data[i + 1] != '>') return Step::kNotPlain;
            empty = true;
            ++i;
            break;
        }
        if (i == spaced) return Step::kNotPlain;  // attributes stand apart
        Attribute attribute{};
        attribute.name = i;
        if (!QName(data, size, i, attribute.nameEnd, attribute.colon, more)) return more ? Step::kIncomplete : Step::kNotPlain;
        i = attribute.nameEnd;
        while (i < size && IsSpace(data[i])) ++i;
        if (i >= size) return Step::kIncomplete;
        if (data[i] != '=') return Step::kNotPlain;
        ++i;
        while (i < size && IsSpace(data[i])) ++i;
        if (i >= size) return Step::kIncomplete;
        char quote = data[i];
        if (quote != '"' && quote != '\'') return Step::kNotPlain;
        attribute.value = ++i;
        const void* close = std::memchr(data + i, quote, size - i);
        if (!close) return Step::kIncomplete;
        attribute.valueEnd = static_cast<size_t>(static_cast<const char*>(close) - data);
        if (!Characters(data, attribute.value, attribute.valueEnd, true, false, nullptr)) return Step::kNotPlain;
        i = attribute.valueEnd + 1;
        m_attributes.push_back(attribute);
    }
    size_t tagEnd = i + 1;  // after '>'
    int depth = static_cast<int>(m_nameStarts.size()) + 1;
    if (depth > m_maxDepth) return Step::kNotPlain;

    // Namespace declarations first: they bind the names of this very tag.
    size_t bindingsBefore = m_bindings.size();
    auto undo = [&] {
        m_bindings.resize(bindingsBefore);
        return Step::kNotPlain;
    };
    auto nameOf = [&](const Attribute& a) { return std::string_view(data + a.name, a.nameEnd - a.name); };
    auto isDeclaration = [&](const Attribute& a) {
        std::string_view name = nameOf(a);
        return name[0] == 'x' && (name == "xmlns" || (a.colon != kNone && name.substr(0, 6) == "xmlns:"));
    };
    for (const Attribute& a : m_attributes) {
        if (!isDeclaration(a)) continue;
        std::string_view value(data + a.value, a.valueEnd - a.value);
        if (value.find('&') != std::string_view::npos || value == kXmlNamespace || value == kXmlnsNamespace) return undo();
        if (a.colon == kNone) continue;  // the default namespace: it names nothing the handler sees
        std::string_view prefix(data + a.colon + 1, a.nameEnd - a.colon - 1);
        if (value.empty() || prefix == "xml" || prefix == "xmlns") return undo();
        m_bindings.push_back(Binding{std::string(prefix), depth});
    }
    if (colon != kNone && !Bound(data + at + 1, colon - at - 1)) return undo();
    for (size_t k = 0; k < m_attributes.size(); ++k) {
        const Attribute& a = m_attributes[k];
        bool declaration = isDeclaration(a);
        if (!declaration && a.colon != kNone) {
            std::string_view prefix(data + a.name, a.colon - a.name);
            if (prefix == "xmlns" || (prefix != "xml" && !Bound(data + a.name, a.colon - a.name))) return undo();
        }
        for (size_t j = 0; j < k; ++j) {
            const Attribute& b = m_attributes[j];
            if (nameOf(a) == nameOf(b)) return undo();
            // The same local name under two prefixes may be the same name.
            auto local = [&](const Attribute& x) {
                size_t from = x.colon == kNone ? x.name : x.colon + 1;
                return std::string_view(data + from, x.nameEnd - from);
            };
            if (!declaration && !isDeclaration(b) && local(a) == local(b)) return undo();
        }
    }

    // The tag is whole and plain: its names and values become C strings in
    // place, values decoded.
    m_pointers.clear();
    for (const Attribute& a : m_attributes) {
        if (isDeclaration(a)) continue;
        data[a.nameEnd] = '\0';
        size_t written = 0;
        Characters(data, a.value, a.valueEnd, true, true, &written);
        data[a.value + written] = '\0';
        m_pointers.push_back(data + (a.colon == kNone ? a.name : a.colon + 1));
        m_pointers.push_back(data + a.value);
    }
    m_pointers.push_back(nullptr);
    size_t localStart = colon == kNone ? at + 1 : colon + 1;
    std::string_view local(data + localStart, nameEnd - localStart);
    m_nameStarts.push_back(m_names.size());
    m_names.append(data + at + 1, nameEnd - at - 1);
    m_rootSeen = true;
    at = tagEnd;
    m_handler.Start(local, m_pointers.data());
    if (m_handler.done) return Step::kDone;
    if (empty) {
        m_handler.End(local);
        m_names.resize(m_nameStarts.back());
        m_nameStarts.pop_back();
        while (!m_bindings.empty() && m_bindings.back().depth >= depth) m_bindings.pop_back();
        if (m_handler.done) return Step::kDone;
    }
    return Step::kNext;
}

PlainXmlReader::Step PlainXmlReader::EndTag(char* data, size_t size, size_t& at) {
    size_t nameEnd = 0, colon = kNone;
    bool more = false;
    if (!QName(data, size, at + 2, nameEnd, colon, more)) return more ? Step::kIncomplete : Step::kNotPlain;
    size_t i = nameEnd;
    while (i < size && IsSpace(data[i])) ++i;
    if (i >= size) return Step::kIncomplete;
    if (data[i] != '>') return Step::kNotPlain;
    std::string_view name(data + at + 2, nameEnd - at - 2);
    if (m_nameStarts.empty() || std::string_view(m_names).substr(m_nameStarts.back()) != name) return Step::kNotPlain;
    int depth = static_cast<int>(m_nameStarts.size());
    size_t localStart = colon == kNone ? at + 2 : colon + 1;
    std::string_view local(data + localStart, nameEnd - localStart);
    m_names.resize(m_nameStarts.back());
    m_nameStarts.pop_back();
    while (!m_bindings.empty() && m_bindings.back().depth >= depth) m_bindings.pop_back();
    at = i + 1;
    m_handler.End(local);
    return m_handler.done ? Step::kDone : Step::kNext;
}

PlainXmlReader::Result PlainXmlReader::Read(char* data, size_t size, bool last, size_t& used) {
    size_t at = 0;
    used = 0;
    auto needMore = [&] {
        used = at;
        return last ? Result::kNotPlain : Result::kMore;
    };
    if (!m_started) {
        if (size < 5 && !last) return Result::kMore;
        if (size >= 5 && std::memcmp(data, "<?xml", 5) == 0) {
            bool complete = false;
            if (!Declaration(data, size, at, complete)) return Result::kNotPlain;
            if (!complete) return needMore();
        }
        m_started = true;
    }
    for (;;) {
        if (m_nameStarts.empty()) {
            // Before the root: blanks, then its start; after it: blanks.
            while (at < size && IsSpace(data[at])) ++at;
            if (at >= size) {
                if (m_rootSeen && last) {
                    used = at;
                    return Result::kDone;
                }
                return needMore();
            }
            if (m_rootSeen || data[at] != '<') return Result::kNotPlain;
            if (at + 1 >= size) return needMore();
            if (!IsNameStart(data[at + 1])) return Result::kNotPlain;
            Step step = StartTag(data, size, at);
            if (step == Step::kIncomplete) return needMore();
            if (step != Step::kNext) return step == Step::kDone ? Result::kDone : Result::kNotPlain;
            continue;
        }
        if (at >= size) return needMore();
        if (data[at] == '<') {
            if (at + 1 >= size) return needMore();
            Step step;
            if (data[at + 1] == '/') step = EndTag(data, size, at);
            else if (IsNameStart(data[at + 1])) step = StartTag(data, size, at);
            else return Result::kNotPlain;
            if (step == Step::kIncomplete) return needMore();
            if (step != Step::kNext) return step == Step::kDone ? Result::kDone : Result::kNotPlain;
            continue;
        }
        const void* next = std::memchr(data + at, '<', size - at);
        if (!next) return needMore();
        size_t end = static_cast<size_t>(static_cast<const char*>(next) - data);
        if (!Characters(data, at, end, false, false, nullptr)) return Result::kNotPlain;
        size_t written = 0;
        Characters(data, at, end, false, true, &written);
        size_t from = at;
        at = end;
        m_handler.Characters(std::string_view(data + from, written));
        if (m_handler.done) return Result::kDone;
    }
}

}  // namespace cadhost::spreadsheet
