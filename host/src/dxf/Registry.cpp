#include <map>
#include <mutex>
#include <string>
#include <unordered_map>

#include "dxf/DxfIo.h"

namespace cadhost::dxf {
namespace {

struct Registry {
    std::mutex mutex;
    std::map<std::string, ClassIo, std::less<>> byName;
    std::unordered_map<const AcRxClass*, const ClassIo*> byClass;  // filled on demand
};

Registry& TheRegistry() {
    static Registry registry;
    return registry;
}

}  // namespace

bool RegisterClass(const ClassIo& io) {
    Registry& registry = TheRegistry();
    std::lock_guard<std::mutex> lock(registry.mutex);
    registry.byName[std::string(io.dxfName)] = io;
    registry.byClass.clear();
    return true;
}

const ClassIo* FindClass(std::string_view dxfName) {
    Registry& registry = TheRegistry();
    std::lock_guard<std::mutex> lock(registry.mutex);
    auto it = registry.byName.find(dxfName);
    return it == registry.byName.end() ? nullptr : &it->second;
}

const ClassIo* FindClassOf(const AcRxClass* rxClass) {
    Registry& registry = TheRegistry();
    std::lock_guard<std::mutex> lock(registry.mutex);
    auto cached = registry.byClass.find(rxClass);
    if (cached != registry.byClass.end()) return cached->second;
    const ClassIo* found = nullptr;
    for (const AcRxClass* c = rxClass; c && !found; c = c->myParent()) {
        for (const auto& [name, io] : registry.byName) {
            if (io.rxClass && io.rxClass() == c && io.write) {
                found = &io;
                break;
            }
        }
    }
    registry.byClass[rxClass] = found;
    return found;
}

}  // namespace cadhost::dxf
