// The 255 colours of the platform's colour index, as its drawing view shows
// them on screen.
#pragma once

#include "view/Scene.h"

namespace cadhost::view {

// Colour 1 to 255; any other index (0 by block, 256 by layer, a negative
// one of a layer that is off) as its absolute value when that is 1 to 255,
// else white.
Rgb AciColor(int index);

}  // namespace cadhost::view
