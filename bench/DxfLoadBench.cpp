// Loads a DXF drawing with the host and reports the time it took and the
// process's peak memory.
//
//     bench_DxfLoadBench FILE [--save OUT]
#include <dbmain.h>
#include <dbsymtb.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "app/HugePageHeap.h"
#include "core/Utf8.h"
#include "db/DatabaseImpl.h"

namespace {

// The process's peak resident memory in bytes (VmHWM).
long long PeakBytes() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind("VmHWM:", 0) == 0) return std::stoll(line.substr(6)) * 1024;
    }
    return -1;
}

}  // namespace

int main(int argc, char** argv) {
    // As the host program starts.
    cadhost::StartWithHugePageHeap(argv);
    if (argc < 2) {
        std::cerr << "usage: bench_DxfLoadBench FILE [--save OUT]\n";
        return 2;
    }
    std::filesystem::path path = argv[1];
    std::error_code ec;
    auto size = static_cast<long long>(std::filesystem::file_size(path, ec));
    if (ec) {
        std::cerr << path << ": " << ec.message() << "\n";
        return 2;
    }
    long long before = PeakBytes();
    auto start = std::chrono::steady_clock::now();
    AcDbDatabase db(false);
    Acad::ErrorStatus es = db.readDwgFile(cadhost::FromUtf8(path.string()).c_str());
    double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    if (es != Acad::eOk) {
        std::cerr << cadhost::ToUtf8(db.impl().lastError) << "\n";
        return 1;
    }
    long long peak = PeakBytes();
    AcDbBlockTableRecord* model = nullptr;
    size_t entities = 0;
    if (acdbOpenObject(model, db.modelSpaceId(), AcDb::kForRead) == Acad::eOk) {
        entities = model->entityIds().size();
        model->close();
    }
    std::printf("file_bytes=%lld\nload_seconds=%.3f\nobjects=%d\nmodel_entities=%zu\n", size, seconds,
                static_cast<int>(db.approxNumObjects()), entities);
    std::printf("peak_bytes=%lld\nbaseline_bytes=%lld\npeak_per_file_byte=%.2f\n", peak, before,
                static_cast<double>(peak) / static_cast<double>(size));
    if (argc >= 4 && std::string(argv[2]) == "--save") {
        start = std::chrono::steady_clock::now();
        es = db.saveAs(cadhost::FromUtf8(argv[3]).c_str());
        seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        if (es != Acad::eOk) {
            std::cerr << cadhost::ToUtf8(db.impl().lastError) << "\n";
            return 1;
        }
        std::printf("save_seconds=%.3f\n", seconds);
    }
    return 0;
}
