// The loader's table of mapped modules. A module handle (HINSTANCE) names a
// record here; it is known from any address inside the module's image.
#pragma once

#include <windows.h>

#include <filesystem>
#include <memory>
#include <mutex>
#include <vector>

namespace cadhost::ui {
class ResourceScript;
}

struct HINSTANCE__ {
    std::filesystem::path path;
    const void* base = nullptr;
    // The module's resources, read from the script it carries on first use.
    std::shared_ptr<const cadhost::ui::ResourceScript> resources;
    bool resourcesRead = false;
};

namespace cadhost {

class ModuleTable {
public:
    static ModuleTable& Instance();

    // The record of the module that holds this address; made on first use.
    HMODULE FromAddress(const void* address);
    // The record of the host's own library.
    HMODULE Host();
    // A record that this table holds, or null for anything else.
    HMODULE Find(HMODULE module) const;
    HMODULE FindByBase(const void* base) const;
    // Drops the record once its image is unmapped.
    void Forget(HMODULE module);

private:
    ModuleTable() = default;
    mutable std::mutex m_mutex;
    std::vector<std::unique_ptr<HINSTANCE__>> m_records;
};

}  // namespace cadhost
