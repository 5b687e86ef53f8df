#include "view/Raster.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>

namespace cadhost::view {

Raster::Raster(int width, int height)
    : m_width(std::max(width, 1)), m_height(std::max(height, 1)),
      m_rgb(static_cast<size_t>(m_width) * static_cast<size_t>(m_height) * 3) {}

Rgb Raster::At(int x, int y) const {
    if (x < 0 || y < 0 || x >= m_width || y >= m_height) return {};
    const std::uint8_t* p = &m_rgb[(static_cast<size_t>(y) * static_cast<size_t>(m_width) + static_cast<size_t>(x)) * 3];
    return {p[0], p[1], p[2]};
}

void Raster::Clear(Rgb color) {
    for (size_t i = 0; i < m_rgb.size(); i += 3) m_rgb[i] = color.r, m_rgb[i + 1] = color.g, m_rgb[i + 2] = color.b;
}

void Raster::Dot(int x, int y, Rgb color, const Clip& clip) {
    Clip inside = clip.Within(Whole());
    if (x >= inside.x0 && x < inside.x1 && y >= inside.y0 && y < inside.y1) Set(x, y, color);
}

void Raster::Line(double x0, double y0, double x1, double y1, Rgb color, const Clip& clip) {
    Clip inside = clip.Within(Whole());
    if (inside.Empty()) return;
    // Cut the line to the clip's pixel centers' range (Liang-Barsky), so
    // that lines far outside cost nothing and huge coordinates do not
    // overflow the steps below.
    double left = inside.x0, right = inside.x1 - 1, top = inside.y0, bottom = inside.y1 - 1;
    double dx = x1 - x0, dy = y1 - y0, t0 = 0, t1 = 1;
    auto cut = [&](double p, double q) {
        if (p == 0) return q >= 0;
        double r = q / p;
        if (p < 0) {
            if (r > t1) return false;
            t0 = std::max(t0, r);
        } else {
            if (r < t0) return false;
            t1 = std::min(t1, r);
        }
        return true;
    };
    if (!std::isfinite(dx) || !std::isfinite(dy)) return;
    if (!cut(-dx, x0 - left) || !cut(dx, right - x0) || !cut(-dy, y0 - top) || !cut(dy, bottom - y0)) return;
    double ax = x0 + t0 * dx, ay = y0 + t0 * dy, bx = x0 + t1 * dx, by = y0 + t1 * dy;
    int steps = static_cast<int>(std::ceil(std::max(std::fabs(bx - ax), std::fabs(by - ay))));
    if (steps == 0) {
        Dot(static_cast<int>(std::lround(ax)), static_cast<int>(std::lround(ay)), color, inside);
        return;
    }
    double sx = (bx - ax) / steps, sy = (by - ay) / steps;
    for (int i = 0; i <= steps; ++i) {
        int x = static_cast<int>(std::lround(ax + sx * i)), y = static_cast<int>(std::lround(ay + sy * i));
        if (x >= inside.x0 && x < inside.x1 && y >= inside.y0 && y < inside.y1) Set(x, y, color);
    }
}

void Raster::Fill(const std::vector<AcGePoint2d>& corners, Rgb color, const Clip& clip) {
    Clip inside = clip.Within(Whole());
    if (corners.size() < 3 || inside.Empty()) return;
    double minY = corners[0].y, maxY = corners[0].y;
    for (const AcGePoint2d& p : corners) minY = std::min(minY, p.y), maxY = std::max(maxY, p.y);
    if (!std::isfinite(minY) || !std::isfinite(maxY)) return;
    int first = std::max(inside.y0, static_cast<int>(std::ceil(minY - 0.5)));
    int last = std::min(inside.y1 - 1, static_cast<int>(std::floor(maxY - 0.5)));
    std::vector<double> crossings;
    for (int y = first; y <= last; ++y) {
        double center = y + 0.5;
        crossings.clear();
        for (size_t i = 0; i < corners.size(); ++i) {
            const AcGePoint2d& a = corners[i];
            const AcGePoint2d& b = corners[(i + 1) % corners.size()];
            if ((a.y <= center) != (b.y <= center)) crossings.push_back(a.x + (center - a.y) * (b.x - a.x) / (b.y - a.y));
        }
        std::sort(crossings.begin(), crossings.end());
        for (size_t i = 0; i + 1 < crossings.size(); i += 2) {
            int from = std::max(inside.x0, static_cast<int>(std::ceil(crossings[i] - 0.5)));
            int to = std::min(inside.x1 - 1, static_cast<int>(std::floor(crossings[i + 1] - 0.5)));
            for (int x = from; x <= to; ++x) Set(x, y, color);
        }
    }
}

bool Raster::WritePpm(const std::string& path) const {
    std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.c_str(), "wb"), std::fclose);
    if (!file) return false;
    std::fprintf(file.get(), "P6\n%d %d\n255\n", m_width, m_height);
    return std::fwrite(m_rgb.data(), 1, m_rgb.size(), file.get()) == m_rgb.size() && std::fflush(file.get()) == 0;
}

}  // namespace cadhost::view
