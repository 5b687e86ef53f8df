// The read structs of the classes, while one file is read: one of each
// kind, made on first use and made new before each object that uses it, so
// that objects do not allocate them one by one.
#pragma once

#include <unordered_map>

#include "dxf/DxfIo.h"

namespace cadhost::dxf {

class ReadStates {
public:
    ReadStates() = default;
    ReadStates(const ReadStates&) = delete;
    ReadStates& operator=(const ReadStates&) = delete;
    ~ReadStates() {
        for (auto& [kind, state] : m_states) kind->free(state);
    }

    // The struct of that kind, new, for the object about to be read (null
    // for a class that keeps none); it stays the current one until the next.
    void* Fresh(const ReadStateKind* kind) {
        m_currentKind = kind;
        m_current = nullptr;
        if (!kind) return nullptr;
        auto [it, added] = m_states.try_emplace(kind, nullptr);
        if (added) it->second = kind->make();
        else kind->reset(it->second);
        m_current = it->second;
        return m_current;
    }

    // The struct the last object was read into, when it is an S.
    template <class S>
    const S* Current() const {
        return m_currentKind == &kReadStateKind<S> ? static_cast<const S*>(m_current) : nullptr;
    }

private:
    std::unordered_map<const ReadStateKind*, void*> m_states;
    const ReadStateKind* m_currentKind = nullptr;
    void* m_current = nullptr;
};

}  // namespace cadhost::dxf
