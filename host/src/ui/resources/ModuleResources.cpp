#include "ui/resources/ModuleResources.h"

#include <dlfcn.h>

#include "app/Host.h"
#include "app/Modules.h"
#include "core/Utf8.h"

extern "C" const cadhost::ui::EmbeddedResourceFile cadhost_host_resource_script[];

namespace cadhost::ui {
namespace {

// The embedded script of the module whose image starts at base; the symbol
// must lie in that very image, not in a library it depends on. The host's
// own script has a name of its own.
const EmbeddedResourceFile* FindEmbedded(HINSTANCE module) {
    if (module == ModuleTable::Instance().Host()) return cadhost_host_resource_script;
    std::string path = module->path.string();
    void* handle = dlopen(path.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (!handle) return nullptr;
    void* symbol = dlsym(handle, kResourceScriptSymbol);
    const EmbeddedResourceFile* files = nullptr;
    Dl_info info{};
    if (symbol && dladdr(symbol, &info) && info.dli_fbase == module->base)
        files = static_cast<const EmbeddedResourceFile*>(symbol);
    dlclose(handle);  // the module stays: its loader holds it
    return files;
}

}  // namespace

std::vector<SourceFile> EmbeddedFiles(const EmbeddedResourceFile* files) {
    std::vector<SourceFile> sources;
    for (size_t i = 0; files && files[i].name && i < 256; ++i) {
        SourceFile source;
        source.name = FromUtf8(files[i].name);
        if (files[i].text) source.text.assign(files[i].text, files[i].size);
        sources.push_back(std::move(source));
    }
    return sources;
}

std::shared_ptr<const ResourceScript> ResourcesOf(HINSTANCE module) {
    HMODULE record = module ? ModuleTable::Instance().Find(module) : nullptr;
    if (!record) return nullptr;
    if (!record->resourcesRead) {
        record->resourcesRead = true;
        if (const EmbeddedResourceFile* files = FindEmbedded(record)) {
            ParseResult parsed = ParseResourceScript(EmbeddedFiles(files));
            record->resources = parsed.script;
            if (!parsed.script) {
                if (Host* host = Host::Current())
                    host->Print(L"\nThe resources of " + FromUtf8(record->path.filename().string()) +
                                L" cannot be read: " + parsed.error);
            }
        }
    }
    return record->resources;
}

void AttachResources(HINSTANCE module, std::shared_ptr<const ResourceScript> script) {
    HMODULE record = module ? ModuleTable::Instance().Find(module) : nullptr;
    if (!record) return;
    record->resources = std::move(script);
    record->resourcesRead = true;
}

}  // namespace cadhost::ui
