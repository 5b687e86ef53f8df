// Where a module's resources come from: the resource script that the build
// embeds in the module under the exported symbol cadhost_resource_script,
// read once per module and kept with its handle.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "ui/resources/ResourceScript.h"

namespace cadhost::ui {

// The layout of the embedded symbol: an array of files, the script first,
// ended by an entry whose name is null.
struct EmbeddedResourceFile {
    const char* name;
    const char* text;
    unsigned long size;
};

inline constexpr const char* kResourceScriptSymbol = "cadhost_resource_script";

// The resources of a module, or null when it carries none. A script that
// does not read is reported once on the command line; the module then has
// no resources.
std::shared_ptr<const ResourceScript> ResourcesOf(HINSTANCE module);

// Gives a module handle the resources of a script, in place of what it
// carries: for the host's tests, and for modules whose scripts are files.
void AttachResources(HINSTANCE module, std::shared_ptr<const ResourceScript> script);

// The files of an embedded script.
std::vector<SourceFile> EmbeddedFiles(const EmbeddedResourceFile* files);

}  // namespace cadhost::ui
