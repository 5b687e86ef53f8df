// The host's own: compact holders that the drawing's objects keep inside
// themselves, so that reading a short text or a few ids takes no memory
// fetch beyond the object's own. Drawings hold millions of attributes, and
// walking them is bound by those fetches.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cwchar>
#include <string>
#include <string_view>

#include "dbid.h"

namespace cadhost_detail {

// Wide text of up to seven characters kept inside the holder; longer texts
// take a block of their own. Always terminated with a zero.
class ShortText {
public:
    ShortText() { m_inline[0] = L'\0'; }
    ShortText(std::wstring_view text) { place(text); }
    ShortText(const ShortText& other) { place(other.view()); }
    ShortText(ShortText&& other) noexcept { take(other); }
    ShortText& operator=(std::wstring_view text) {
        // The text may lie in this holder's own block.
        ShortText copy(text);
        release();
        take(copy);
        return *this;
    }
    ShortText& operator=(const ShortText& other) { return *this = other.view(); }
    ShortText& operator=(ShortText&& other) noexcept {
        if (this != &other) {
            release();
            take(other);
        }
        return *this;
    }
    ~ShortText() { release(); }

    const wchar_t* c_str() const { return onHeap() ? m_heap : m_inline; }
    size_t size() const { return m_size & ~kHeapBit; }
    bool empty() const { return size() == 0; }
    std::wstring_view view() const { return {c_str(), size()}; }
    operator std::wstring_view() const { return view(); }

private:
    static constexpr size_t kInline = 7;
    static constexpr std::uint32_t kHeapBit = 0x80000000u;

    bool onHeap() const { return (m_size & kHeapBit) != 0; }
    void place(std::wstring_view text) {
        size_t size = std::min<size_t>(text.size(), kHeapBit - 1);
        wchar_t* to = m_inline;
        m_size = static_cast<std::uint32_t>(size);
        if (size > kInline) {
            m_heap = to = new wchar_t[size + 1];
            m_size |= kHeapBit;
        }
        std::wmemcpy(to, text.data(), size);
        to[size] = L'\0';
    }
    void take(ShortText& other) {
        if (other.onHeap()) m_heap = other.m_heap;
        else std::wmemcpy(m_inline, other.m_inline, other.size() + 1);
        m_size = other.m_size;
        other.m_size = 0;
        other.m_inline[0] = L'\0';
    }
    void release() {
        if (onHeap()) delete[] m_heap;
        m_size = 0;
        m_inline[0] = L'\0';
    }

    union {
        wchar_t m_inline[kInline + 1];
        wchar_t* m_heap;
    };
    std::uint32_t m_size = 0;  // the length; the top bit says the text is on the heap
};

// The ids of a reference's attributes. A reference has few as a rule; up to
// four are kept inside the list itself.
class IdList {
public:
    IdList() = default;
    IdList(const IdList& other) { append(other.begin(), other.size()); }
    IdList& operator=(const IdList& other) {
        if (this != &other) {
            m_size = 0;
            append(other.begin(), other.size());
        }
        return *this;
    }
    ~IdList() {
        if (m_data != m_inline) delete[] m_data;
    }

    void push_back(AcDbObjectId id) { append(&id, 1); }
    size_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }
    const AcDbObjectId* begin() const { return m_data; }
    const AcDbObjectId* end() const { return m_data + m_size; }
    const AcDbObjectId& operator[](size_t index) const { return m_data[index]; }

private:
    static constexpr size_t kInline = 4;

    void append(const AcDbObjectId* ids, size_t count) {
        if (m_size + count > m_capacity) {
            size_t capacity = std::max(m_capacity * 2, m_size + count);
            auto* data = new AcDbObjectId[capacity];
            std::copy(m_data, m_data + m_size, data);
            if (m_data != m_inline) delete[] m_data;
            m_data = data;
            m_capacity = capacity;
        }
        std::copy(ids, ids + count, m_data + m_size);
        m_size += count;
    }

    AcDbObjectId* m_data = m_inline;
    size_t m_size = 0;
    size_t m_capacity = kInline;
    AcDbObjectId m_inline[kInline];
};

}  // namespace cadhost_detail
