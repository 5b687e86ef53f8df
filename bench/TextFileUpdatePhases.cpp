// Times the three phases of `cadhost update` on one drawing, in process:
// reading the drawing, the update pass that evaluates every field, and
// writing the drawing back. With the Text File benchmark's drawing (see
// run_textfile_bench.sh) it tells the evaluators' share of an update from
// the share of the drawing file, whose size grows with the text every
// field shows.
//
//     bench_TextFileUpdatePhases DRAWING OUT [PASSES]
//
// OUT is where the updated drawing is written (DRAWING is left alone);
// PASSES update passes run one after the other (default 2: the first
// changes every new field, the next ones read every file again).
#include <dbapserv.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <string>

#include "app/HugePageHeap.h"
#include "app/Host.h"
#include "core/Utf8.h"
#include "fields/FieldUpdate.h"

namespace {

using Clock = std::chrono::steady_clock;

// Wall time and processor time of a phase: on a machine shared with other
// work the second tells more of the program than the first.
struct Phase {
    Clock::time_point wall = Clock::now();
    std::clock_t processor = std::clock();
    void Print(const char* name, const std::string& what = std::string()) const {
        double wallMs = std::chrono::duration<double, std::milli>(Clock::now() - wall).count();
        double processorMs = 1000.0 * static_cast<double>(std::clock() - processor) / CLOCKS_PER_SEC;
        std::printf("%-20s %10.1f ms wall %10.1f ms processor  %s\n", name, wallMs, processorMs, what.c_str());
    }
};

}  // namespace

int main(int argc, char** argv) {
    // As the host program starts.
    cadhost::StartWithHugePageHeap(argv);
    if (argc < 3) {
        std::cerr << "usage: bench_TextFileUpdatePhases DRAWING OUT [PASSES]\n";
        return 2;
    }
    std::filesystem::path drawing = argv[1], output = argv[2];
    int passes = argc > 3 ? std::atoi(argv[3]) : 2;
    if (passes < 1) {
        std::cerr << "bench_TextFileUpdatePhases: PASSES must be at least 1\n";
        return 2;
    }
    std::filesystem::path settings = std::filesystem::temp_directory_path() / "qm-bench-settings";
    cadhost::HostOptions options;
    options.settingsFolder = settings;
    std::ostringstream quiet;
    options.output = &quiet;
    cadhost::Host host(options);

    std::wstring error;
    Phase read;
    if (!host.OpenDrawing(drawing, error)) {
        std::cerr << "bench_TextFileUpdatePhases: " << cadhost::ToUtf8(error) << "\n";
        return 1;
    }
    read.Print("read the drawing");
    if (!host.linker().loadModule(L"QuillmarkEval.dbx", false)) {
        std::cerr << "bench_TextFileUpdatePhases: QuillmarkEval.dbx cannot be loaded\n";
        return 1;
    }
    AcDbDatabase* database = acdbHostApplicationServices()->workingDatabase();
    for (int pass = 1; pass <= passes; ++pass) {
        Phase update;
        cadhost::FieldUpdateReport report = cadhost::UpdateFields(*database, AcDbField::kRegen);
        update.Print(("update pass " + std::to_string(pass)).c_str(),
                     std::to_string(report.evaluated) + " evaluated, " + std::to_string(report.changed) +
                         " changed, " + std::to_string(report.failed.size()) + " failed");
        if (!report.failed.empty()) {
            std::cerr << "bench_TextFileUpdatePhases: fields failed; the figures would not be those of a good update\n";
            return 1;
        }
    }
    Phase write;
    if (!host.SaveDrawing(output, error)) {
        std::cerr << "bench_TextFileUpdatePhases: " << cadhost::ToUtf8(error) << "\n";
        return 1;
    }
    write.Print("write the drawing", std::to_string(std::filesystem::file_size(output)) + " bytes");
    return 0;
}
