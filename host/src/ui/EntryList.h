// The entries of a list or combo box, kept in blocks so that inserting or
// removing one costs about the square root of their number, not all of it:
// a list of the handles of a selection of a hundred thousand objects fills
// in moments, where one array would move every entry behind each insertion.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <windows.h>

namespace cadhost::ui {

// An entry of a list box or of a combo box's list.
struct ListEntry {
    std::wstring text;
    DWORD_PTR data = 0;
    bool selected = false;  // in a list of multiple selection
    int check = 0;          // the tick of a check list box
    bool enabled = true;    // an entry of a check list box can be disabled
};

class EntryList {
public:
    size_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }
    ListEntry& operator[](size_t index);
    const ListEntry& operator[](size_t index) const;
    void insert(size_t index, ListEntry entry);  // index up to size()
    void erase(size_t index);
    void clear();

    template <class Function>
    void ForEach(Function function) {
        size_t index = 0;
        for (auto& block : m_blocks) {
            for (ListEntry& entry : block) function(index++, entry);
        }
    }

private:
    // The block that holds an index, and the index within it.
    std::pair<size_t, size_t> Locate(size_t index) const;
    void Restart(size_t fromBlock);

    std::vector<std::vector<ListEntry>> m_blocks;
    std::vector<size_t> m_starts;  // the index of each block's first entry
    size_t m_size = 0;
};

}  // namespace cadhost::ui
