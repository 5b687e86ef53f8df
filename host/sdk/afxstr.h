// CString: the framework's wide string. Format follows the framework's rules:
// in a wide string %s and %c take wide arguments, %hs and %hc narrow ones.
#pragma once

#include <cstdarg>
#include <string>

#include "tchar.h"

class CADHOST_API CString {
public:
    CString() = default;
    CString(const CString&) = default;
    CString(CString&&) noexcept = default;
    CString(const wchar_t* text);  // null gives the empty string
    CString(const wchar_t* text, int length);
    CString(const char* utf8);  // narrow text is read as UTF-8
    CString(wchar_t ch, int repeat = 1);
    explicit CString(const std::wstring& text) : m_text(text) {}
    explicit CString(std::wstring&& text) : m_text(std::move(text)) {}

    CString& operator=(const CString&) = default;
    CString& operator=(CString&&) noexcept = default;
    CString& operator=(const wchar_t* text);
    CString& operator=(const char* utf8);
    CString& operator=(wchar_t ch);

    // Length and access.
    int GetLength() const { return static_cast<int>(m_text.size()); }
    bool IsEmpty() const { return m_text.empty(); }
    void Empty() { m_text.clear(); }
    wchar_t GetAt(int index) const;
    void SetAt(int index, wchar_t ch);
    wchar_t operator[](int index) const { return GetAt(index); }
    operator const wchar_t*() const { return m_text.c_str(); }
    const wchar_t* GetString() const { return m_text.c_str(); }

    // Writable buffer of at least minLength characters; ReleaseBuffer takes
    // the new length (-1: up to the first zero).
    wchar_t* GetBuffer(int minLength = 0);
    wchar_t* GetBufferSetLength(int length);
    void ReleaseBuffer(int newLength = -1);

    // Concatenation.
    CString& operator+=(const CString& text);
    CString& operator+=(const wchar_t* text);
    CString& operator+=(wchar_t ch);
    void Append(const wchar_t* text) { *this += text; }
    void AppendChar(wchar_t ch) { *this += ch; }

    // Comparison.
    int Compare(const wchar_t* text) const;
    int CompareNoCase(const wchar_t* text) const;
    int Collate(const wchar_t* text) const { return Compare(text); }
    int CollateNoCase(const wchar_t* text) const { return CompareNoCase(text); }

    // Search; positions count from 0, -1 when not found.
    int Find(wchar_t ch, int start = 0) const;
    int Find(const wchar_t* text, int start = 0) const;
    int ReverseFind(wchar_t ch) const;
    int FindOneOf(const wchar_t* chars) const;

    // Pieces.
    CString Left(int count) const;
    CString Right(int count) const;
    CString Mid(int first) const;
    CString Mid(int first, int count) const;
    CString SpanIncluding(const wchar_t* chars) const;
    CString SpanExcluding(const wchar_t* chars) const;
    CString Tokenize(const wchar_t* delimiters, int& start) const;

    // Changes in place.
    CString& MakeLower();
    CString& MakeUpper();
    CString& MakeReverse();
    CString& Trim();
    CString& Trim(wchar_t target);
    CString& Trim(const wchar_t* targets);
    CString& TrimLeft();
    CString& TrimLeft(wchar_t target);
    CString& TrimLeft(const wchar_t* targets);
    CString& TrimRight();
    CString& TrimRight(wchar_t target);
    CString& TrimRight(const wchar_t* targets);
    int Replace(wchar_t oldChar, wchar_t newChar);
    int Replace(const wchar_t* oldText, const wchar_t* newText);
    int Remove(wchar_t ch);
    int Insert(int index, wchar_t ch);
    int Insert(int index, const wchar_t* text);
    int Delete(int index, int count = 1);
    void Truncate(int length);

    // Formatted print.
    void Format(const wchar_t* format, ...);
    void FormatV(const wchar_t* format, va_list args);
    void AppendFormat(const wchar_t* format, ...);
    void AppendFormatV(const wchar_t* format, va_list args);

    // A string of the module's string table.
    BOOL LoadString(UINT id);
    BOOL LoadString(HINSTANCE instance, UINT id);

    // Bridges for the host's own code.
    const std::wstring& str() const { return m_text; }
    std::string ToUtf8() const;

private:
    std::wstring m_text;
};

CADHOST_API CString operator+(const CString& a, const CString& b);
CADHOST_API CString operator+(const CString& a, const wchar_t* b);
CADHOST_API CString operator+(const wchar_t* a, const CString& b);
CADHOST_API CString operator+(const CString& a, wchar_t b);
CADHOST_API CString operator+(wchar_t a, const CString& b);

inline bool operator==(const CString& a, const CString& b) { return a.str() == b.str(); }
inline bool operator==(const CString& a, const wchar_t* b) { return a.Compare(b) == 0; }
inline bool operator==(const wchar_t* a, const CString& b) { return b.Compare(a) == 0; }
inline bool operator!=(const CString& a, const CString& b) { return !(a == b); }
inline bool operator!=(const CString& a, const wchar_t* b) { return !(a == b); }
inline bool operator!=(const wchar_t* a, const CString& b) { return !(a == b); }
inline bool operator<(const CString& a, const CString& b) { return a.str() < b.str(); }

typedef CString CStringW;
