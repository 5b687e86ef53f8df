#include <afx.h>

#include <stdexcept>

IMPLEMENT_DYNAMIC(CStringArray, CObject)

namespace {
size_t Checked(INT_PTR index, size_t size, const char* what) {
    if (index < 0 || static_cast<size_t>(index) >= size) throw std::out_of_range(what);
    return static_cast<size_t>(index);
}
}  // namespace

void CStringArray::SetSize(INT_PTR newSize, INT_PTR) { m_items.resize(newSize > 0 ? static_cast<size_t>(newSize) : 0); }

const CString& CStringArray::GetAt(INT_PTR index) const {
    return m_items[Checked(index, m_items.size(), "CStringArray::GetAt")];
}

CString& CStringArray::ElementAt(INT_PTR index) {
    return m_items[Checked(index, m_items.size(), "CStringArray::ElementAt")];
}

void CStringArray::SetAt(INT_PTR index, const wchar_t* text) {
    m_items[Checked(index, m_items.size(), "CStringArray::SetAt")] = text;
}

INT_PTR CStringArray::Add(const wchar_t* text) {
    m_items.emplace_back(text);
    return GetUpperBound();
}

INT_PTR CStringArray::Add(const CString& text) {
    m_items.push_back(text);
    return GetUpperBound();
}

INT_PTR CStringArray::Append(const CStringArray& source) {
    INT_PTR first = GetSize();
    if (this == &source) {
        std::vector<CString> copy = m_items;
        m_items.insert(m_items.end(), copy.begin(), copy.end());
    } else {
        m_items.insert(m_items.end(), source.m_items.begin(), source.m_items.end());
    }
    return first;
}

void CStringArray::Copy(const CStringArray& source) {
    if (this != &source) m_items = source.m_items;
}

void CStringArray::InsertAt(INT_PTR index, const wchar_t* text, INT_PTR count) {
    if (index < 0 || count < 0) throw std::out_of_range("CStringArray::InsertAt");
    if (static_cast<size_t>(index) > m_items.size()) m_items.resize(static_cast<size_t>(index));
    m_items.insert(m_items.begin() + index, static_cast<size_t>(count), CString(text));
}

void CStringArray::RemoveAt(INT_PTR index, INT_PTR count) {
    if (index < 0 || count < 0 || static_cast<size_t>(index + count) > m_items.size())
        throw std::out_of_range("CStringArray::RemoveAt");
    m_items.erase(m_items.begin() + index, m_items.begin() + index + count);
}
