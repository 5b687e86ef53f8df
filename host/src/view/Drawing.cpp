#include "view/Drawing.h"

#include "view/AciColors.h"

#include <algorithm>
#include <cmath>

namespace cadhost::view {
namespace {

// Texts shorter than this many pixels are drawn as a stroke: no font reads
// at that size, and the stroke shows where the text lies.
constexpr double kSmallestReadable = 6;
constexpr int kMaxNesting = 32;

Clip ClipOf(const Box& box) {
    return {static_cast<int>(std::floor(box.minX)), static_cast<int>(std::floor(box.minY)),
            static_cast<int>(std::ceil(box.maxX)) + 1, static_cast<int>(std::ceil(box.maxY)) + 1};
}

bool Meets(const Box& screen, const Clip& clip) {
    return !screen.Empty() && screen.maxX >= clip.x0 && screen.minX < clip.x1 && screen.maxY >= clip.y0 &&
           screen.minY < clip.y1;
}

class SceneDrawer {
public:
    SceneDrawer(Scenes& scenes, Raster& raster, std::vector<ShownLabel>& labels)
        : m_scenes(scenes), m_raster(raster), m_labels(labels) {}

    void Draw(const Scene& scene, const Affine& toScreen, Rgb referenceColor, const Clip& clip, int depth);
    DrawCounts counts;

private:
    void DrawOutline(const Scene& scene, const Outline& outline, const Affine& toScreen, Rgb color,
                     const Clip& clip);
    void DrawLabel(const Label& label, const Affine& toScreen, Rgb color, const Clip& clip);

    Scenes& m_scenes;
    Raster& m_raster;
    std::vector<ShownLabel>& m_labels;
    std::vector<AcGePoint2d> m_corners;
};

void DotAt(Raster& raster, const Box& screen, Rgb color, const Clip& clip) {
    raster.Dot(static_cast<int>((screen.minX + screen.maxX) / 2), static_cast<int>((screen.minY + screen.maxY) / 2),
               color, clip);
}

void SceneDrawer::Draw(const Scene& scene, const Affine& toScreen, Rgb referenceColor, const Clip& clip,
                       int depth) {
    if (depth > kMaxNesting || clip.Empty()) return;
    double pixels = toScreen.Scale();
    for (const Outline& outline : scene.outlines) {
        Box screen = toScreen.Apply(outline.box);
        if (!Meets(screen, clip)) continue;
        Rgb color = outline.paint.fromReference ? referenceColor : outline.paint.color;
        if (screen.maxX - screen.minX < 1 && screen.maxY - screen.minY < 1 && outline.width * pixels < 1) {
            DotAt(m_raster, screen, color, clip);
            ++counts.dots;
            continue;
        }
        DrawOutline(scene, outline, toScreen, color, clip);
    }
    for (const Label& label : scene.labels) {
        if (!Meets(toScreen.Apply(label.box), clip)) continue;
        DrawLabel(label, toScreen, label.paint.fromReference ? referenceColor : label.paint.color, clip);
    }
    for (const Placement& placement : scene.placements) {
        Box screen = toScreen.Apply(placement.box);
        if (!Meets(screen, clip)) continue;
        ++counts.placements;
        if (screen.maxX - screen.minX < 2 && screen.maxY - screen.minY < 2) {
            DotAt(m_raster, screen, placement.referenceColor, clip);
            ++counts.dots;
            continue;
        }
        Draw(m_scenes.Of(placement.block), toScreen * placement.transform, placement.referenceColor, clip, depth + 1);
    }
    for (const Inset& inset : scene.insets) {
        Box window = toScreen.Apply(inset.window);
        if (!Meets(window, clip)) continue;
        // Model space, cut to the viewport's window.
        Clip inside = ClipOf(window).Within(clip);
        inside.x0 += 1, inside.y0 += 1, inside.x1 -= 1, inside.y1 -= 1;
        const Scene& model = m_scenes.Of(inset.model);
        Draw(model, toScreen * inset.modelToSheet, inset.borderColor, inside, depth + 1);
    }
}

void SceneDrawer::DrawOutline(const Scene& scene, const Outline& outline, const Affine& toScreen, Rgb color,
                              const Clip& clip) {
    ++counts.outlines;
    const Vertex* points = &scene.points[outline.first];
    double pixels = toScreen.Scale();
    double halfWidth = outline.width * pixels / 2;
    m_corners.clear();
    auto add = [&](double px, double py) {
        double x, y;
        toScreen.Apply(px, py, x, y);
        m_corners.emplace_back(x, y);
    };
    for (std::uint32_t i = 0; i < outline.count; ++i) {
        const Vertex& a = points[i];
        add(a.x, a.y);
        bool last = i + 1 == outline.count;
        if (a.bulge == 0 || (last && !outline.closed)) continue;
        // The arc to the next point in edges no more than half a pixel off it.
        const Vertex& b = points[last ? 0 : i + 1];
        double chord = std::hypot(b.x - a.x, b.y - a.y);
        if (chord == 0) continue;
        double offset = (1 / a.bulge - a.bulge) / 4;
        double cx = (a.x + b.x) / 2 - (b.y - a.y) * offset, cy = (a.y + b.y) / 2 + (b.x - a.x) * offset;
        double radius = std::hypot(a.x - cx, a.y - cy), start = std::atan2(a.y - cy, a.x - cx);
        double sweep = 4 * std::atan(a.bulge), onScreen = radius * pixels;
        double step = onScreen > 0.5 ? 2 * std::acos(1 - 0.5 / onScreen) : std::fabs(sweep);
        int edges = std::clamp(static_cast<int>(std::ceil(std::fabs(sweep) / step)), 1, 256);
        for (int k = 1; k < edges; ++k) {
            double angle = start + sweep * k / edges;
            add(cx + radius * std::cos(angle), cy + radius * std::sin(angle));
        }
    }
    if (outline.filled) {
        m_raster.Fill(m_corners, color, clip);
        return;
    }
    size_t edges = m_corners.size() - 1 + (outline.closed && m_corners.size() > 2 ? 1 : 0);
    if (m_corners.size() == 1) {
        m_raster.Dot(static_cast<int>(m_corners[0].x), static_cast<int>(m_corners[0].y), color, clip);
        return;
    }
    std::vector<AcGePoint2d> band(4);
    for (size_t i = 0; i < edges; ++i) {
        const AcGePoint2d& a = m_corners[i];
        const AcGePoint2d& b = m_corners[(i + 1) % m_corners.size()];
        if (halfWidth > 0.75) {
            // A wide segment: the band around it.
            double dx = b.x - a.x, dy = b.y - a.y, length = std::hypot(dx, dy);
            if (length > 0) {
                double nx = -dy / length * halfWidth, ny = dx / length * halfWidth;
                band[0].set(a.x + nx, a.y + ny), band[1].set(b.x + nx, b.y + ny);
                band[2].set(b.x - nx, b.y - ny), band[3].set(a.x - nx, a.y - ny);
                m_raster.Fill(band, color, clip);
                continue;
            }
        }
        m_raster.Line(a.x, a.y, b.x, b.y, color, clip);
    }
}

void SceneDrawer::DrawLabel(const Label& label, const Affine& toScreen, Rgb color, const Clip& clip) {
    ++counts.labels;
    double x, y;
    toScreen.Apply(label.x, label.y, x, y);
    // The text's direction on the screen (y runs down there).
    double dx = std::cos(label.rotation), dy = std::sin(label.rotation);
    double sx = toScreen.a * dx + toScreen.c * dy, sy = toScreen.b * dx + toScreen.d * dy;
    double pixelHeight = label.height * toScreen.Scale();
    double angle = std::atan2(-sy, sx);
    if (pixelHeight >= kSmallestReadable) {
        m_labels.push_back({x, y, pixelHeight, angle, label.widthFactor, label.horizontal, label.vertical,
                            &label.text, color, clip});
        return;
    }
    // A stroke as long as the first line, where the text's middle runs.
    size_t length = label.text.find(L'\n');
    if (length == std::wstring::npos) length = label.text.size();
    double run = static_cast<double>(length) * pixelHeight * 0.8 * label.widthFactor;
    double start = label.horizontal == 1 ? -run / 2 : label.horizontal == 2 ? -run : 0;
    double ux = std::cos(angle), uy = -std::sin(angle);  // along the text
    double upX = -std::sin(angle), upY = -std::cos(angle);  // towards its top
    double lift = label.vertical == 3 ? -pixelHeight / 2 : label.vertical == 2 ? 0 : pixelHeight / 2;
    double ax = x + ux * start + upX * lift, ay = y + uy * start + upY * lift;
    m_raster.Line(ax, ay, ax + ux * run, ay + uy * run, color, clip);
}

}  // namespace

DrawCounts DrawSpace(Scenes& scenes, AcDbObjectId space, const ViewTransform& view, Raster& raster,
                     std::vector<ShownLabel>& labels) {
    raster.Clear(kBackground);
    labels.clear();
    SceneDrawer drawer(scenes, raster, labels);
    drawer.Draw(scenes.Of(space), view.ToScreen(), AciColor(7), raster.Whole(), 0);
    return drawer.counts;
}

}  // namespace cadhost::view
