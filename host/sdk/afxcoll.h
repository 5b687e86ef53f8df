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
