#include <cstdio>
#include <cstdlib>
#include <string>

#include "dxf/DxfIo.h"

namespace cadhost::dxf {

bool ClassRegistry::Add(const ClassIo& io, std::string& error) {
    if (io.dxfName.empty()) {
        error = "a DXF class needs a type name";
        return false;
    }
    if (io.read.kind && io.finish.kind && io.read.kind != io.finish.kind) {
        error = "the DXF type " + std::string(io.dxfName) + " reads into one struct and finishes from another";
        return false;
    }
    auto [it, added] = m_byName.try_emplace(std::string(io.dxfName), io);
    if (!added) {
        error = "the DXF type " + std::string(io.dxfName) + " is registered twice";
        return false;
    }
    std::lock_guard<std::mutex> lock(m_mutex);
    m_byClass.clear();
    return true;
}

const ClassIo* ClassRegistry::Find(std::string_view dxfName) const {
    auto it = m_byName.find(dxfName);
    return it == m_byName.end() ? nullptr : &it->second;
}

const ClassIo* ClassRegistry::FindOf(const AcRxClass* rxClass) const {
    std::lock_guard<std::mutex> lock(m_mutex);
    auto cached = m_byClass.find(rxClass);
    if (cached != m_byClass.end()) return cached->second;
    const ClassIo* found = nullptr;
    for (const AcRxClass* c = rxClass; c && !found; c = c->myParent()) {
        for (const auto& [name, io] : m_byName) {
            if (io.rxClass && io.rxClass() == c && io.write) {
                found = &io;
                break;
            }
        }
    }
    m_byClass[rxClass] = found;
    return found;
}

std::span<const std::span<const ClassIo>> ClassFamilies() {
    // Every family of classes the host reads and writes, in one list.
    static const std::span<const ClassIo> families[] = {
        LineClasses(), CurveClasses(), PointClasses(), PolylineClasses(), TextClasses(), BlockReferenceClasses(),
        ViewportClasses(), BlockClasses(), SymbolClasses(), FieldClasses(), TableClasses()};
    return families;
}

namespace {

struct HostClasses : ClassRegistry {
    HostClasses() {
        for (std::span<const ClassIo> family : ClassFamilies()) {
            for (const ClassIo& io : family) {
                std::string error;
                if (!Add(io, error)) {
                    // A fault of the host's own lists, which every run meets.
                    std::fprintf(stderr, "cadhost: %s\n", error.c_str());
                    std::abort();
                }
            }
        }
    }
};

}  // namespace

const ClassRegistry& Classes() {
    static const HostClasses registry;
    return registry;
}

}  // namespace cadhost::dxf
