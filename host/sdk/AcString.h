// A text of the platform's interfaces that owns its characters.
#pragma once

#include <string>

#include "adesk.h"

class CADHOST_API AcString {
public:
    AcString() = default;
    AcString(const ACHAR* text) : m_text(text ? text : L"") {}
    AcString(std::wstring text) : m_text(std::move(text)) {}

    const ACHAR* kwszPtr() const { return m_text.c_str(); }
    const ACHAR* constPtr() const { return m_text.c_str(); }
    const ACHAR* kACharPtr() const { return m_text.c_str(); }
    operator const ACHAR*() const { return m_text.c_str(); }
    bool isEmpty() const { return m_text.empty(); }
    unsigned int length() const { return static_cast<unsigned int>(m_text.size()); }
    AcString& setEmpty() {
        m_text.clear();
        return *this;
    }
    AcString& operator=(const ACHAR* text) {
        m_text = text ? text : L"";
        return *this;
    }
    AcString& operator+=(const ACHAR* text) {
        if (text) m_text += text;
        return *this;
    }
    bool operator==(const ACHAR* text) const { return text && m_text == text; }
    bool operator==(const AcString& other) const { return m_text == other.m_text; }
    bool operator!=(const AcString& other) const { return m_text != other.m_text; }
    // Case-blind comparison: 0 when equal.
    int compareNoCase(const ACHAR* text) const;
    const std::wstring& str() const { return m_text; }

private:
    std::wstring m_text;
};
