// A picture of the drawing view in memory: RGB bytes, row by row from the
// top, that the window shows as it is and that files store as images.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "view/Scene.h"

namespace cadhost::view {

// A rectangle of pixels, from x0, y0 up to but not including x1, y1.
struct Clip {
    int x0 = 0, y0 = 0, x1 = 0, y1 = 0;
    bool Empty() const { return x0 >= x1 || y0 >= y1; }
    Clip Within(const Clip& other) const {
        return {std::max(x0, other.x0), std::max(y0, other.y0), std::min(x1, other.x1), std::min(y1, other.y1)};
    }
};

class Raster {
public:
    Raster(int width, int height);

    int width() const { return m_width; }
    int height() const { return m_height; }
    Clip Whole() const { return {0, 0, m_width, m_height}; }
    std::uint8_t* bytes() { return m_rgb.data(); }
    const std::uint8_t* bytes() const { return m_rgb.data(); }
    Rgb At(int x, int y) const;

    void Clear(Rgb color);
    void Dot(int x, int y, Rgb color, const Clip& clip);
    // A one-pixel line between two screen points, the part inside clip.
    void Line(double x0, double y0, double x1, double y1, Rgb color, const Clip& clip);
    // A filled polygon (even-odd), the part inside clip.
    void Fill(const std::vector<AcGePoint2d>& corners, Rgb color, const Clip& clip);

    // As a binary PPM image (P6).
    bool WritePpm(const std::string& path) const;

private:
    void Set(int x, int y, Rgb color) {
        std::uint8_t* p = &m_rgb[(static_cast<size_t>(y) * static_cast<size_t>(m_width) + static_cast<size_t>(x)) * 3];
        p[0] = color.r, p[1] = color.g, p[2] = color.b;
    }
    int m_width, m_height;
    std::vector<std::uint8_t> m_rgb;
};

}  // namespace cadhost::view
