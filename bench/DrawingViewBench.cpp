// The drawing view on a big drawing: the time from a drawing read to its
// first whole picture (the scenes made and drawn), and the time of a frame
// after a pan and after a zoom, as the window draws them (texts that fonts
// draw are counted, not drawn: that is the window's part).
//
//     bench_DrawingViewBench FILE [WIDTHxHEIGHT]
#include <dbmain.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <vector>

#include "app/HugePageHeap.h"
#include "core/Utf8.h"
#include "db/DatabaseImpl.h"
#include "view/Drawing.h"

namespace {

double Milliseconds(std::chrono::steady_clock::time_point since) {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - since).count();
}

}  // namespace

int main(int argc, char** argv) {
    cadhost::StartWithHugePageHeap(argv);
    if (argc < 2) {
        std::cerr << "usage: bench_DrawingViewBench FILE [WIDTHxHEIGHT]\n";
        return 2;
    }
    int width = 1100, height = 760;
    if (argc > 2 && std::sscanf(argv[2], "%dx%d", &width, &height) != 2) return 2;
    auto start = std::chrono::steady_clock::now();
    AcDbDatabase db(false);
    if (db.readDwgFile(cadhost::FromUtf8(argv[1]).c_str()) != Acad::eOk) {
        std::cerr << cadhost::ToUtf8(db.impl().lastError) << "\n";
        return 1;
    }
    double readMs = Milliseconds(start);

    using namespace cadhost::view;
    Scenes scenes(db);
    ViewTransform view;
    view.width = width;
    view.height = height;
    Raster raster(width, height);
    std::vector<ShownLabel> labels;
    start = std::chrono::steady_clock::now();
    view.ZoomTo(scenes.Of(db.modelSpaceId()).box);
    DrawCounts first = DrawSpace(scenes, db.modelSpaceId(), view, raster, labels);
    double firstMs = Milliseconds(start);
    std::printf("read_ms=%.0f\nfirst_picture_ms=%.1f\noutlines=%zu dots=%zu texts=%zu (for fonts %zu) placements=%zu\n",
                readMs, firstMs, first.outlines, first.dots, first.labels, labels.size(), first.placements);

    // Frames as a user moves: ten pans across a tenth of the view, then ten
    // zooms in about a point and ten out again.
    std::vector<double> pans, zooms;
    for (int i = 0; i < 10; ++i) {
        view.Pan(width / 10.0, 0);
        auto frame = std::chrono::steady_clock::now();
        DrawSpace(scenes, db.modelSpaceId(), view, raster, labels);
        pans.push_back(Milliseconds(frame));
    }
    for (int i = 0; i < 20; ++i) {
        view.ZoomAbout(width * 0.4, height * 0.6, i < 10 ? 1.5 : 1 / 1.5);
        auto frame = std::chrono::steady_clock::now();
        DrawSpace(scenes, db.modelSpaceId(), view, raster, labels);
        zooms.push_back(Milliseconds(frame));
    }
    auto worst = [](const std::vector<double>& times) { return *std::max_element(times.begin(), times.end()); };
    std::printf("pan_frame_worst_ms=%.1f\nzoom_frame_worst_ms=%.1f\n", worst(pans), worst(zooms));
    return 0;
}
