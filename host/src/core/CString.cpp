#include <afxwin.h>

#include <algorithm>
#include <cwctype>
#include <stdexcept>

#include "core/Utf8.h"
#include "core/WideFormat.h"

namespace {

bool IsBlank(wchar_t c) { return std::iswspace(static_cast<wint_t>(c)) != 0; }

bool InSet(wchar_t c, const wchar_t* set) { return set && std::wcschr(set, c) != nullptr && c != L'\0'; }

wchar_t FoldCase(wchar_t c) { return static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c))); }

size_t Clamp(int value, size_t limit) {
    if (value < 0) return 0;
    return std::min(static_cast<size_t>(value), limit);
}

}  // namespace

CString::CString(const wchar_t* text) : m_text(text ? text : L"") {}

CString::CString(const wchar_t* text, int length) {
    if (text && length > 0) m_text.assign(text, static_cast<size_t>(length));
}

CString::CString(const char* utf8) : m_text(utf8 ? cadhost::FromUtf8(utf8) : std::wstring()) {}

CString::CString(wchar_t ch, int repeat) : m_text(repeat > 0 ? static_cast<size_t>(repeat) : 0, ch) {}

CString& CString::operator=(const wchar_t* text) {
    m_text = text ? text : L"";
    return *this;
}

CString& CString::operator=(const char* utf8) {
    m_text = utf8 ? cadhost::FromUtf8(utf8) : std::wstring();
    return *this;
}

CString& CString::operator=(wchar_t ch) {
    m_text.assign(1, ch);
    return *this;
}

wchar_t CString::GetAt(int index) const {
    if (index < 0 || index >= GetLength()) throw std::out_of_range("CString::GetAt");
    return m_text[static_cast<size_t>(index)];
}

void CString::SetAt(int index, wchar_t ch) {
    if (index < 0 || index >= GetLength()) throw std::out_of_range("CString::SetAt");
    m_text[static_cast<size_t>(index)] = ch;
}

wchar_t* CString::GetBuffer(int minLength) {
    if (minLength > GetLength()) m_text.resize(static_cast<size_t>(minLength));
    return m_text.data();
}

wchar_t* CString::GetBufferSetLength(int length) {
    m_text.resize(length > 0 ? static_cast<size_t>(length) : 0);
    return m_text.data();
}

void CString::ReleaseBuffer(int newLength) {
    if (newLength < 0) {
        m_text.resize(std::wcslen(m_text.c_str()));
    } else {
        m_text.resize(std::min(static_cast<size_t>(newLength), m_text.size()));
    }
}

CString& CString::operator+=(const CString& text) {
    m_text += text.m_text;
    return *this;
}

CString& CString::operator+=(const wchar_t* text) {
    if (text) m_text += text;
    return *this;
}

CString& CString::operator+=(wchar_t ch) {
    m_text += ch;
    return *this;
}

int CString::Compare(const wchar_t* text) const {
    int r = std::wcscmp(m_text.c_str(), text ? text : L"");
    return r < 0 ? -1 : (r > 0 ? 1 : 0);
}

int CString::CompareNoCase(const wchar_t* text) const {
    const wchar_t* a = m_text.c_str();
    const wchar_t* b = text ? text : L"";
    for (;; ++a, ++b) {
        wchar_t ca = FoldCase(*a), cb = FoldCase(*b);
        if (ca != cb) return ca < cb ? -1 : 1;
        if (ca == L'\0') return 0;
    }
}

int CString::Find(wchar_t ch, int start) const {
    if (start < 0 || start >= GetLength()) return -1;
    size_t at = m_text.find(ch, static_cast<size_t>(start));
    return at == std::wstring::npos ? -1 : static_cast<int>(at);
}

int CString::Find(const wchar_t* text, int start) const {
    if (!text || start < 0 || start > GetLength()) return -1;
    size_t at = m_text.find(text, static_cast<size_t>(start));
    return at == std::wstring::npos ? -1 : static_cast<int>(at);
}

int CString::ReverseFind(wchar_t ch) const {
    size_t at = m_text.rfind(ch);
    return at == std::wstring::npos ? -1 : static_cast<int>(at);
}

int CString::FindOneOf(const wchar_t* chars) const {
    if (!chars) return -1;
    size_t at = m_text.find_first_of(chars);
    return at == std::wstring::npos ? -1 : static_cast<int>(at);
}

CString CString::Left(int count) const { return CString(m_text.substr(0, Clamp(count, m_text.size()))); }

CString CString::Right(int count) const {
    size_t n = Clamp(count, m_text.size());
    return CString(m_text.substr(m_text.size() - n));
}

CString CString::Mid(int first) const { return Mid(first, GetLength()); }

CString CString::Mid(int first, int count) const {
    size_t from = Clamp(first, m_text.size());
    return CString(m_text.substr(from, Clamp(count, m_text.size() - from)));
}

CString CString::SpanIncluding(const wchar_t* chars) const {
    size_t n = 0;
    while (n < m_text.size() && InSet(m_text[n], chars)) ++n;
    return Left(static_cast<int>(n));
}

CString CString::SpanExcluding(const wchar_t* chars) const {
    size_t n = 0;
    while (n < m_text.size() && !InSet(m_text[n], chars)) ++n;
    return Left(static_cast<int>(n));
}

CString CString::Tokenize(const wchar_t* delimiters, int& start) const {
    if (start < 0) return CString();
    size_t at = static_cast<size_t>(start);
    while (at < m_text.size() && InSet(m_text[at], delimiters)) ++at;
    if (at >= m_text.size()) {
        start = -1;
        return CString();
    }
    size_t end = at;
    while (end < m_text.size() && !InSet(m_text[end], delimiters)) ++end;
    start = static_cast<int>(end + (end < m_text.size() ? 1 : 0));
    return CString(m_text.substr(at, end - at));
}

CString& CString::MakeLower() {
    for (wchar_t& c : m_text) c = FoldCase(c);
    return *this;
}

CString& CString::MakeUpper() {
    for (wchar_t& c : m_text) c = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c)));
    return *this;
}

CString& CString::MakeReverse() {
    std::reverse(m_text.begin(), m_text.end());
    return *this;
}

CString& CString::Trim() { return TrimRight().TrimLeft(); }
CString& CString::Trim(wchar_t target) { return TrimRight(target).TrimLeft(target); }
CString& CString::Trim(const wchar_t* targets) { return TrimRight(targets).TrimLeft(targets); }

CString& CString::TrimLeft() {
    size_t n = 0;
    while (n < m_text.size() && IsBlank(m_text[n])) ++n;
    m_text.erase(0, n);
    return *this;
}

CString& CString::TrimLeft(wchar_t target) {
    size_t n = 0;
    while (n < m_text.size() && m_text[n] == target) ++n;
    m_text.erase(0, n);
    return *this;
}

CString& CString::TrimLeft(const wchar_t* targets) {
    size_t n = 0;
    while (n < m_text.size() && InSet(m_text[n], targets)) ++n;
    m_text.erase(0, n);
    return *this;
}

CString& CString::TrimRight() {
    size_t n = m_text.size();
    while (n > 0 && IsBlank(m_text[n - 1])) --n;
    m_text.resize(n);
    return *this;
}

CString& CString::TrimRight(wchar_t target) {
    size_t n = m_text.size();
    while (n > 0 && m_text[n - 1] == target) --n;
    m_text.resize(n);
    return *this;
}

CString& CString::TrimRight(const wchar_t* targets) {
    size_t n = m_text.size();
    while (n > 0 && InSet(m_text[n - 1], targets)) --n;
    m_text.resize(n);
    return *this;
}

int CString::Replace(wchar_t oldChar, wchar_t newChar) {
    int count = 0;
    for (wchar_t& c : m_text) {
        if (c == oldChar) c = newChar, ++count;
    }
    return count;
}

int CString::Replace(const wchar_t* oldText, const wchar_t* newText) {
    if (!oldText || !*oldText) return 0;
    const std::wstring from(oldText), to(newText ? newText : L"");
    std::wstring result;
    int count = 0;
    size_t at = 0;
    for (size_t hit; (hit = m_text.find(from, at)) != std::wstring::npos; at = hit + from.size()) {
        result.append(m_text, at, hit - at);
        result += to;
        ++count;
    }
    if (count) {
        result.append(m_text, at, std::wstring::npos);
        m_text.swap(result);
    }
    return count;
}

int CString::Remove(wchar_t ch) {
    size_t before = m_text.size();
    std::erase(m_text, ch);
    return static_cast<int>(before - m_text.size());
}

int CString::Insert(int index, wchar_t ch) {
    m_text.insert(Clamp(index, m_text.size()), 1, ch);
    return GetLength();
}

int CString::Insert(int index, const wchar_t* text) {
    if (text) m_text.insert(Clamp(index, m_text.size()), text);
    return GetLength();
}

int CString::Delete(int index, int count) {
    size_t from = Clamp(index, m_text.size());
    m_text.erase(from, Clamp(count, m_text.size() - from));
    return GetLength();
}

void CString::Truncate(int length) { m_text.resize(Clamp(length, m_text.size())); }

void CString::Format(const wchar_t* format, ...) {
    va_list args;
    va_start(args, format);
    FormatV(format, args);
    va_end(args);
}

void CString::FormatV(const wchar_t* format, va_list args) { m_text = cadhost::FormatWide(format, args); }

void CString::AppendFormat(const wchar_t* format, ...) {
    va_list args;
    va_start(args, format);
    AppendFormatV(format, args);
    va_end(args);
}

void CString::AppendFormatV(const wchar_t* format, va_list args) { m_text += cadhost::FormatWide(format, args); }

BOOL CString::LoadString(UINT id) { return LoadString(AfxGetResourceHandle(), id); }

BOOL CString::LoadString(HINSTANCE instance, UINT id) {
    wchar_t buffer[4096];
    int n = ::LoadStringW(instance, id, buffer, 4096);
    if (n <= 0) return FALSE;
    m_text.assign(buffer, static_cast<size_t>(n));
    return TRUE;
}

std::string CString::ToUtf8() const { return cadhost::ToUtf8(m_text); }

CString operator+(const CString& a, const CString& b) { return CString(a.str() + b.str()); }
CString operator+(const CString& a, const wchar_t* b) { return CString(a.str() + (b ? b : L"")); }
CString operator+(const wchar_t* a, const CString& b) { return CString((a ? a : L"") + b.str()); }
CString operator+(const CString& a, wchar_t b) { return CString(a.str() + b); }
CString operator+(wchar_t a, const CString& b) { return CString(std::wstring(1, a) + b.str()); }
