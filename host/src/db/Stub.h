// What an object id points at: the database's entry for one handle. The
// object may be absent while a file that refers to it forward is read.
#pragma once

#include <dbmain.h>

namespace cadhost {
class DatabaseImpl;
}

struct AcDbStub {
    AcDbObject* object = nullptr;  // owned by the database
    cadhost::DatabaseImpl* database = nullptr;
    Adesk::UInt64 handle = 0;
    bool erased = false;
    bool fromFile = false;  // read from a drawing file, not made in this session
};
