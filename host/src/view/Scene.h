// What the drawing view draws of one block (a space or a block definition):
// its outlines and texts in the block's own plan coordinates, and the
// blocks it places, each drawn from that block's own scene. A scene is made
// once for a block and kept until the drawing changes, so that pan and zoom
// only draw.
#pragma once

#include <dbid.h>
#include <gemat3d.h>
#include <gepnt2d.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace cadhost::view {

struct Rgb {
    std::uint8_t r = 0, g = 0, b = 0;
    bool operator==(const Rgb&) const = default;
};

// A box in plan coordinates; a new one is empty.
struct Box {
    double minX = std::numeric_limits<double>::infinity();
    double minY = std::numeric_limits<double>::infinity();
    double maxX = -std::numeric_limits<double>::infinity();
    double maxY = -std::numeric_limits<double>::infinity();

    bool Empty() const { return minX > maxX || minY > maxY; }
    void Add(double x, double y) {
        if (x < minX) minX = x;
        if (x > maxX) maxX = x;
        if (y < minY) minY = y;
        if (y > maxY) maxY = y;
    }
    void Add(const Box& other) {
        if (other.Empty()) return;
        Add(other.minX, other.minY);
        Add(other.maxX, other.maxY);
    }
    bool Overlaps(const Box& other) const {
        return !Empty() && !other.Empty() && minX <= other.maxX && other.minX <= maxX && minY <= other.maxY &&
               other.minY <= maxY;
    }
};

// A plan transformation: x' = a x + c y + e, y' = b x + d y + f.
struct Affine {
    double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;

    static Affine FromMatrix(const AcGeMatrix3d& m) {
        return {m(0, 0), m(1, 0), m(0, 1), m(1, 1), m(0, 3), m(1, 3)};
    }
    void Apply(double x, double y, double& outX, double& outY) const {
        outX = a * x + c * y + e;
        outY = b * x + d * y + f;
    }
    // This after inner: first inner, then this.
    Affine operator*(const Affine& inner) const {
        return {a * inner.a + c * inner.b, b * inner.a + d * inner.b, a * inner.c + c * inner.d,
                b * inner.c + d * inner.d, a * inner.e + c * inner.f + e, b * inner.e + d * inner.f + f};
    }
    // The box around the transformed box.
    Box Apply(const Box& box) const;
    // How much lengths grow (the larger of the two axes' factors).
    double Scale() const;
};

// A colour that entities on layer 0 inside a block take from the reference
// that shows them, as the platform draws such blocks.
struct Paint {
    Rgb color;
    bool fromReference = false;
};

// A point of an outline; bulge is the tangent of a quarter of the angle of
// the arc to the next point (0 straight, 1 a half circle counterclockwise,
// negative clockwise), as polylines keep arcs. Arcs are made into edges only
// when drawn, as fine as their size on the screen asks.
struct Vertex {
    double x = 0, y = 0, bulge = 0;
};

// Adds to a box the arc from a to b of a bulge (the points where it meets
// the axis directions, beside its ends).
void AddArc(Box& box, const Vertex& a, const Vertex& b);

// A run of connected points, as drawn.
struct Outline {
    std::uint32_t first = 0;  // into Scene::points
    std::uint32_t count = 0;
    Paint paint;
    float width = 0;      // in drawing units; 0 draws one pixel wide
    bool closed = false;
    bool filled = false;  // a solid
    Box box;
};

// A text as plain lines (multiline text without its formatting codes).
struct Label {
    double x = 0, y = 0;  // the point the text is aligned to
    double height = 0;
    double rotation = 0;  // radians from the x axis
    double widthFactor = 1;
    int horizontal = 0;   // 0 left, 1 center, 2 right
    int vertical = 0;     // 0 baseline, 1 bottom, 2 middle, 3 top (of all lines)
    std::wstring text;    // lines separated by '\n'
    Paint paint;
    Box box;
};

// A block reference: the block's scene, placed.
struct Placement {
    AcDbObjectId block;
    Affine transform;
    Rgb referenceColor;  // for the block's layer-0 entities
    Box box;             // the placed block's extents
};

// A paper space viewport: model space seen through a window of the sheet.
struct Inset {
    AcDbObjectId model;   // model space
    Box window;           // on the sheet
    Affine modelToSheet;
    Rgb borderColor;
};

struct Scene {
    std::vector<Vertex> points;
    std::vector<Outline> outlines;
    std::vector<Label> labels;
    std::vector<Placement> placements;
    std::vector<Inset> insets;
    Box box;  // of everything the scene draws, its placements' blocks included
};

}  // namespace cadhost::view
