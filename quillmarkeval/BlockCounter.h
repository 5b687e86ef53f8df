// Counts the block references of a drawing that a Block Count query asks
// for.
//
// A reference counts when its block has one of the query's names (not
// minding case; a reference to an anonymous copy of a dynamic block goes by
// the dynamic block's name), it lies on one of the query's layers, and it
// satisfies the attribute condition (an attribute of the tag or, for a
// dynamic block reference, a property of that name; a reference without the
// tag never does).
//
// Without a space, references owned by model space or a layout count once
// each. With nesting, a reference inside a block definition counts as often
// as that definition is placed in the spaces, through every level, and a
// definition that is never placed adds nothing. With a space, only what that
// space holds counts; with a window too, only the references of the space
// whose extents lie wholly inside the window (in x and y), and with nesting
// what those references hold.
//
// Each definition is looked at once, however often it is placed; counting
// the whole drawing looks only at the references of the blocks asked for and
// at the definitions that hold them. Blocks that hold one another (which
// only a broken file makes) count as one: each reference inside them once
// for each way into them, and the walk ends.
#pragma once

#include "StdAfx.h"

#include <memory>

#include "BlockCountQuery.h"

class CBlockCounter {
public:
    enum Result { kCounted, kNoSuchSpace, kTooMany };

    CBlockCounter(AcDbDatabase* database, const BlockCountQuery& query);
    ~CBlockCounter();
    CBlockCounter(const CBlockCounter&) = delete;
    CBlockCounter& operator=(const CBlockCounter&) = delete;

    // The count in count; kNoSuchSpace when the query's space names no space
    // of the drawing, kTooMany when the count does not fit a 32-bit value.
    Result Count(Adesk::Int32& count);

private:
    struct State;
    std::unique_ptr<State> m_state;
};
