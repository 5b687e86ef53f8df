// CArray: the framework's typed array, holding its elements by value.
#pragma once

#include <stdexcept>
#include <vector>

#include "afx.h"

template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray : public CObject {
public:
    CArray() = default;
    CArray(const CArray&) = delete;  // the framework's arrays copy with Copy()
    CArray& operator=(const CArray&) = delete;
    ~CArray() override = default;

    INT_PTR GetSize() const { return static_cast<INT_PTR>(m_items.size()); }
    INT_PTR GetCount() const { return GetSize(); }
    BOOL IsEmpty() const { return m_items.empty(); }
    INT_PTR GetUpperBound() const { return GetSize() - 1; }
    void SetSize(INT_PTR newSize, INT_PTR growBy = -1) { m_items.resize(newSize < 0 ? 0 : newSize); }

    const TYPE& GetAt(INT_PTR index) const { return m_items.at(Checked(index)); }
    TYPE& GetAt(INT_PTR index) { return m_items.at(Checked(index)); }
    TYPE& ElementAt(INT_PTR index) { return m_items.at(Checked(index)); }
    void SetAt(INT_PTR index, ARG_TYPE element) { m_items.at(Checked(index)) = element; }
    const TYPE& operator[](INT_PTR index) const { return GetAt(index); }
    TYPE& operator[](INT_PTR index) { return ElementAt(index); }
    const TYPE* GetData() const { return m_items.data(); }
    TYPE* GetData() { return m_items.data(); }

    INT_PTR Add(ARG_TYPE element) {
        m_items.push_back(element);
        return GetUpperBound();
    }
    INT_PTR Append(const CArray& source) {
        INT_PTR first = GetSize();
        m_items.insert(m_items.end(), source.m_items.begin(), source.m_items.end());
        return first;
    }
    void Copy(const CArray& source) {
        if (this != &source) m_items = source.m_items;
    }
    void InsertAt(INT_PTR index, ARG_TYPE element, INT_PTR count = 1) {
        if (index < 0) throw std::out_of_range("CArray::InsertAt");
        if (index > GetSize()) m_items.resize(index);
        m_items.insert(m_items.begin() + index, count, element);
    }
    void RemoveAt(INT_PTR index, INT_PTR count = 1) {
        if (index < 0 || count < 0 || index + count > GetSize()) throw std::out_of_range("CArray::RemoveAt");
        m_items.erase(m_items.begin() + index, m_items.begin() + index + count);
    }
    void RemoveAll() { m_items.clear(); }
    void FreeExtra() { m_items.shrink_to_fit(); }

private:
    static size_t Checked(INT_PTR index) {
        if (index < 0) throw std::out_of_range("CArray index");
        return static_cast<size_t>(index);
    }
    std::vector<TYPE> m_items;
};
