// The files an evaluator has read during one evaluation pass, by full path:
// each file is read once a pass, however many fields name it. Outside a
// pass (a field evaluated on its own, as the Field dialog does) every call
// reads the file. Entry is what an evaluator makes of a file (its text, a
// workbook, or why it could not be read); Entry::Weight() tells roughly
// how many characters it holds, and entries beyond the cache's budget are
// not kept, so that a pass over very many large files stays bounded.
#pragma once

#include <string>
#include <unordered_map>
#include <utility>

#include "EvaluationPass.h"

template <class Entry>
class CPassFileCache : public CPassCache {
public:
    explicit CPassFileCache(size_t budget) : m_budget(budget) {}

    void BeginPass() override { ++m_depth; }
    void EndPass() override {
        if (m_depth > 0 && --m_depth == 0) {
            m_entries.clear();
            m_weight = 0;
        }
    }
    bool InPass() const { return m_depth > 0; }

    // The entry of a file: the one read earlier in this pass, else what
    // load(fullPath) makes of it now. The reference holds until the next call.
    template <class Load>
    const Entry& Get(const std::wstring& fullPath, Load&& load) {
        if (m_depth > 0) {
            auto found = m_entries.find(fullPath);
            if (found != m_entries.end()) return found->second;
        }
        ++m_loads;
        m_last = load(fullPath);
        if (m_depth == 0) return m_last;
        size_t weight = m_last.Weight();
        if (m_weight + weight > m_budget) return m_last;
        m_weight += weight;
        return m_entries.emplace(fullPath, std::move(m_last)).first->second;
    }

    // How many times a file was read since the cache was made.
    int Loads() const { return m_loads; }
    size_t Kept() const { return m_entries.size(); }

private:
    size_t m_budget;
    int m_depth = 0;
    int m_loads = 0;
    size_t m_weight = 0;
    std::unordered_map<std::wstring, Entry> m_entries;
    Entry m_last;
};
