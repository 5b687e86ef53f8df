// The drawing that the host starts from: the DXF file
// host/resources/NewDrawing.dxf (a 2010 drawing with model space, one paper
// space layout, layer "0", the standard line types, text style, dimension
// style and the dictionaries every drawing has), which the build embeds in
// the library.
#include <cstring>

#include "dxf/DxfFiles.h"

namespace {

// The layout of the build's table of embedded files, ended by a null name.
struct EmbeddedDataFile {
    const char* name;
    const char* text;
    unsigned long size;
};

}  // namespace

extern "C" const EmbeddedDataFile cadhost_host_data_files[];

namespace cadhost::dxf {

std::string_view NewDrawingTemplate() {
    for (const EmbeddedDataFile* file = cadhost_host_data_files; file->name; ++file)
        if (std::strcmp(file->name, "NewDrawing.dxf") == 0) return std::string_view(file->text, file->size);
    return {};  // not embedded: the database builds its bare minimum instead
}

}  // namespace cadhost::dxf
