// Drawing a space into a raster: what lies in view, each block through its
// kept scene, things smaller than a pixel as a dot.
#pragma once

#include <string>
#include <vector>

#include "view/Raster.h"
#include "view/Scenes.h"
#include "view/ViewTransform.h"

namespace cadhost::view {

// A text large enough to be read, left to the window's fonts: where it
// stands on the screen and how.
struct ShownLabel {
    double x = 0, y = 0;     // the aligned point, in pixels
    double pixelHeight = 0;  // of a capital letter
    double rotation = 0;     // radians, counterclockwise on the screen
    double widthFactor = 1;
    int horizontal = 0, vertical = 0;  // as Label has them
    const std::wstring* text = nullptr;  // lines separated by '\n'; lives in the scene
    Rgb color;
    Clip clip;
};

struct DrawCounts {
    size_t outlines = 0, dots = 0, labels = 0, placements = 0;
};

// The view's background, and the colour of white drawing colours on it.
inline constexpr Rgb kBackground{33, 40, 48};

// Draws the space's scene as the view shows it; the texts to be drawn with
// fonts go to labels, smaller ones are drawn as a stroke along their line.
DrawCounts DrawSpace(Scenes& scenes, AcDbObjectId space, const ViewTransform& view, Raster& raster,
                     std::vector<ShownLabel>& labels);

}  // namespace cadhost::view
