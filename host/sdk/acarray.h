// AcArray: the CAD platform's growable array, with logical length.
#pragma once

#include <algorithm>
#include <stdexcept>
#include <vector>

template <class T>
class AcArray {
public:
    AcArray() = default;
    explicit AcArray(int physicalLength, int growLength = 8) { m_items.reserve(physicalLength > 0 ? physicalLength : 0); }

    int length() const { return static_cast<int>(m_items.size()); }
    int logicalLength() const { return length(); }
    bool isEmpty() const { return m_items.empty(); }
    AcArray& setLogicalLength(int n) {
        m_items.resize(n > 0 ? static_cast<size_t>(n) : 0);
        return *this;
    }
    AcArray& setPhysicalLength(int n) {
        m_items.reserve(n > 0 ? static_cast<size_t>(n) : 0);
        return *this;
    }

    const T& at(int index) const { return m_items.at(Checked(index)); }
    T& at(int index) { return m_items.at(Checked(index)); }
    const T& operator[](int index) const { return at(index); }
    T& operator[](int index) { return at(index); }
    const T& first() const { return at(0); }
    const T& last() const { return at(length() - 1); }
    const T* asArrayPtr() const { return m_items.data(); }
    T* asArrayPtr() { return m_items.data(); }

    int append(const T& value) {
        m_items.push_back(value);
        return length() - 1;
    }
    AcArray& append(const AcArray& other) {
        m_items.insert(m_items.end(), other.m_items.begin(), other.m_items.end());
        return *this;
    }
    AcArray& insertAt(int index, const T& value) {
        if (index < 0 || index > length()) throw std::out_of_range("AcArray::insertAt");
        m_items.insert(m_items.begin() + index, value);
        return *this;
    }
    AcArray& removeAt(int index) {
        m_items.erase(m_items.begin() + Checked(index));
        return *this;
    }
    bool remove(const T& value, int start = 0) {
        int i = findFrom(value, start);
        if (i < 0) return false;
        removeAt(i);
        return true;
    }
    AcArray& removeAll() {
        m_items.clear();
        return *this;
    }
    AcArray& setAll(const T& value) {
        std::fill(m_items.begin(), m_items.end(), value);
        return *this;
    }
    bool contains(const T& value, int start = 0) const { return findFrom(value, start) >= 0; }
    bool find(const T& value, int& index, int start = 0) const {
        int i = findFrom(value, start);
        if (i < 0) return false;
        index = i;
        return true;
    }
    int findFrom(const T& value, int start = 0) const {
        for (int i = start < 0 ? 0 : start; i < length(); ++i) {
            if (m_items[static_cast<size_t>(i)] == value) return i;
        }
        return -1;
    }

    typename std::vector<T>::const_iterator begin() const { return m_items.begin(); }
    typename std::vector<T>::const_iterator end() const { return m_items.end(); }

private:
    size_t Checked(int index) const {
        if (index < 0 || index >= length()) throw std::out_of_range("AcArray index");
        return static_cast<size_t>(index);
    }
    std::vector<T> m_items;
};
