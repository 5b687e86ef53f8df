// Copies of result buffers, with the allocation rules of acutRelRb.
#pragma once

#include <adsdef.h>

namespace cadhost {

ACHAR* DuplicateText(const ACHAR* text);
resbuf* CopyBuffer(const resbuf* source);
// Copies the chain up to, not including, stop (null: to its end).
resbuf* CopyChain(const resbuf* chain, const resbuf* stop = nullptr);

}  // namespace cadhost
