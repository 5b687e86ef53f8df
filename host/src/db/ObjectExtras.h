// State that few objects have: extended data, an extension dictionary, and
// what a file held for the object that the host does not interpret.
#pragma once

#include <dbmain.h>

#include <string>
#include <vector>

namespace cadhost {

// One group of a drawing file: its code and its value as the file wrote it.
struct RawGroup {
    int code = 0;
    std::string value;
};

struct ObjectExtras {
    ObjectExtras() = default;
    ObjectExtras(const ObjectExtras&) = delete;
    ObjectExtras& operator=(const ObjectExtras&) = delete;
    ~ObjectExtras();

    resbuf* xdata = nullptr;  // the whole chain, application by application
    AcDbObjectId extensionDictionary;
    std::vector<RawGroup> keptGroups;
};

}  // namespace cadhost
