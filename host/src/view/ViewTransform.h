// Where the drawing lies in the view: the drawing point at the view's
// center and the pixels per drawing unit. Screen y runs down.
#pragma once

#include <algorithm>
#include <cmath>

#include "view/Scene.h"

namespace cadhost::view {

struct ViewTransform {
    int width = 1, height = 1;  // pixels
    double centerX = 0, centerY = 0;
    double scale = 1;  // pixels per drawing unit

    // The drawing to screen, as an Affine of plan coordinates.
    Affine ToScreen() const {
        return {scale, 0, 0, -scale, width / 2.0 - scale * centerX, height / 2.0 + scale * centerY};
    }
    void ToDrawing(double sx, double sy, double& x, double& y) const {
        x = centerX + (sx - width / 2.0) / scale;
        y = centerY - (sy - height / 2.0) / scale;
    }
    // The drawing's area that the view shows.
    Box Visible() const {
        Box box;
        double x, y;
        ToDrawing(0, 0, x, y);
        box.Add(x, y);
        ToDrawing(width, height, x, y);
        box.Add(x, y);
        return box;
    }
    // Everything in the box in view, with a margin of 5% on each side.
    void ZoomTo(const Box& box) {
        if (box.Empty()) {
            centerX = centerY = 0;
            scale = 1;
            return;
        }
        centerX = (box.minX + box.maxX) / 2;
        centerY = (box.minY + box.maxY) / 2;
        double w = std::max(box.maxX - box.minX, 1e-9), h = std::max(box.maxY - box.minY, 1e-9);
        scale = std::min(width / w, height / h) / 1.1;
        if (!(scale > 0) || !std::isfinite(scale)) scale = 1;
    }
    // Zooms by a factor, keeping the drawing point under a screen point
    // where it is (the wheel zooms about the pointer).
    void ZoomAbout(double sx, double sy, double factor) {
        double x, y;
        ToDrawing(sx, sy, x, y);
        double next = scale * factor;
        if (!(next > 1e-12 && next < 1e12)) return;
        scale = next;
        centerX = x - (sx - width / 2.0) / scale;
        centerY = y + (sy - height / 2.0) / scale;
    }
    // Moves the drawing with the pointer by a screen distance.
    void Pan(double dx, double dy) {
        centerX -= dx / scale;
        centerY += dy / scale;
    }
};

}  // namespace cadhost::view
