// State that few objects have: extended data, an extension dictionary,
// what a file held for the object that the host does not interpret, and
// the properties of dynamic blocks.
#pragma once

#include <dbmain.h>

#include <memory>
#include <string>
#include <vector>

#include "db/KeptGroups.h"

namespace cadhost {

// One group of a drawing file: its code and its value as the file wrote it.
struct RawGroup {
    int code = 0;
    std::string value;
};

struct DynamicBlockData;

struct ObjectExtras {
    ObjectExtras();
    ObjectExtras(const ObjectExtras&) = delete;
    ObjectExtras& operator=(const ObjectExtras&) = delete;
    ~ObjectExtras();

    resbuf* xdata = nullptr;  // the whole chain, application by application
    AcDbObjectId extensionDictionary;
    // The owner a file named when it differs from the object's owner (files
    // that name the space as the owner of an attribute), written back so.
    AcDbObjectId fileOwner;
    KeptGroups kept;
    std::unique_ptr<DynamicBlockData> dynamic;  // a dynamic block's properties, or a reference's values
};

}  // namespace cadhost
