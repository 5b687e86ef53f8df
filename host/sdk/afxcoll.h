// CStringArray: the framework's array of strings.
#pragma once

#include <vector>

#include "afx.h"

class CADHOST_API CStringArray : public CObject {
    DECLARE_DYNAMIC(CStringArray)
public:
    CStringArray() = default;
    CStringArray(const CStringArray&) = delete;  // the framework's arrays don't copy
    CStringArray& operator=(const CStringArray&) = delete;
    ~CStringArray() override = default;

    INT_PTR GetSize() const { return static_cast<INT_PTR>(m_items.size()); }
    INT_PTR GetCount() const { return GetSize(); }
    BOOL IsEmpty() const { return m_items.empty(); }
    INT_PTR GetUpperBound() const { return GetSize() - 1; }
    void SetSize(INT_PTR newSize, INT_PTR growBy = -1);

    const CString& GetAt(INT_PTR index) const;
    CString& ElementAt(INT_PTR index);
    void SetAt(INT_PTR index, const wchar_t* text);
    const CString& operator[](INT_PTR index) const { return GetAt(index); }
    CString& operator[](INT_PTR index) { return ElementAt(index); }
    const CString* GetData() const { return m_items.data(); }
    CString* GetData() { return m_items.data(); }

    INT_PTR Add(const wchar_t* text);
    INT_PTR Add(const CString& text);
    INT_PTR Append(const CStringArray& source);
    void Copy(const CStringArray& source);
    void InsertAt(INT_PTR index, const wchar_t* text, INT_PTR count = 1);
    void RemoveAt(INT_PTR index, INT_PTR count = 1);
    void RemoveAll() { m_items.clear(); }
    void FreeExtra() { m_items.shrink_to_fit(); }

private:
    std::vector<CString> m_items;
};

// CUIntArray: the framework's array of unsigned whole numbers.
class CUIntArray : public CObject {
public:
    CUIntArray() = default;
    CUIntArray(const CUIntArray&) = delete;  // the framework's arrays copy with Copy()
    CUIntArray& operator=(const CUIntArray&) = delete;
    ~CUIntArray() override = default;

    INT_PTR GetSize() const { return static_cast<INT_PTR>(m_items.size()); }
    INT_PTR GetCount() const { return GetSize(); }
    BOOL IsEmpty() const { return m_items.empty(); }
    INT_PTR GetUpperBound() const { return GetSize() - 1; }
    void SetSize(INT_PTR newSize, INT_PTR growBy = -1) { m_items.resize(newSize > 0 ? static_cast<size_t>(newSize) : 0); }

    // An index outside the array gives 0 and changes nothing.
    UINT GetAt(INT_PTR index) const { return Valid(index) ? m_items[static_cast<size_t>(index)] : 0; }
    void SetAt(INT_PTR index, UINT value) {
        if (Valid(index)) m_items[static_cast<size_t>(index)] = value;
    }
    UINT operator[](INT_PTR index) const { return GetAt(index); }
    const UINT* GetData() const { return m_items.data(); }

    INT_PTR Add(UINT value) {
        m_items.push_back(value);
        return GetUpperBound();
    }
    void Copy(const CUIntArray& source) {
        if (this != &source) m_items = source.m_items;
    }
    void RemoveAt(INT_PTR index, INT_PTR count = 1) {
        if (index < 0 || count < 0 || index + count > GetSize()) return;
        m_items.erase(m_items.begin() + index, m_items.begin() + index + count);
    }
    void RemoveAll() { m_items.clear(); }

private:
    bool Valid(INT_PTR index) const { return index >= 0 && index < GetSize(); }
    std::vector<UINT> m_items;
};
