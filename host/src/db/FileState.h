// What a drawing file held besides its objects: the release it was written
// in, its header variables, its classes and sections the host does not
// read, and the order of its tables. Saving writes them back.
#pragma once

#include <dbid.h>

#include <cstdint>
#include <string>
#include <vector>

#include "db/ObjectExtras.h"

namespace cadhost {

struct HeaderVariable {
    std::string name;  // "$LUNITS"
    std::vector<RawGroup> groups;
};

struct KeptSection {
    std::string name;  // "THUMBNAILIMAGE"
    std::vector<RawGroup> groups;
};

struct FileState {
    std::string version = "AC1024";  // the $ACADVER of the file
    std::string codePage = "ANSI_1252";
    bool handles = true;        // objects carry handles in the file
    uint64_t nextHandle = 0;      // the file's $HANDSEED
    // The names that releases before 2000 give the two spaces' blocks.
    std::string r12ModelSpace = "$MODEL_SPACE";
    std::string r12PaperSpace = "$PAPER_SPACE";
    bool hasClasses = false;    // the file had a CLASSES section
    bool hasObjects = false;    // the file had an OBJECTS section
    std::vector<HeaderVariable> header;
    std::vector<RawGroup> classes;
    std::vector<KeptSection> sections;  // after OBJECTS, in file order
    std::vector<AcDbObjectId> tables;   // the TABLE objects in file order

    // A release before 2000 (AC1009 and older): no subclass markers, no
    // owners, no block records, no objects.
    bool IsR12() const { return version < "AC1012"; }
    // From 2007 on, texts are UTF-8.
    bool IsUtf8() const { return version >= "AC1021"; }
};

}  // namespace cadhost
