// Makes the Text File benchmark: a folder with FILES text files of BYTES
// bytes each (lines of text, in notes/), and beside it a drawing whose
// FIELDS multiline texts each hold one Text File field naming one of the
// files relative to the drawing, spread over all of them. The fields are
// not evaluated: the drawing is what `cadhost update` brings up to date.
//
//     bench_TextFileDrawingMake FOLDER [FIELDS] [FILES] [BYTES]
//
// Writes FOLDER/textfiles.dxf and FOLDER/notes/noteN.txt, and prints the
// numbers made.
#include <dbfield.h>
#include <dbmtext.h>
#include <dbsymtb.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "BenchFieldTexts.h"
#include "app/Host.h"
#include "core/Utf8.h"

namespace {

bool WriteNotes(const std::filesystem::path& folder, int files, int bytes) {
    std::filesystem::create_directories(folder / "notes");
    for (int f = 0; f < files; ++f) {
        std::string text;
        for (int line = 0; static_cast<int>(text.size()) < bytes; ++line)
            text += "Note " + std::to_string(f) + ", line " + std::to_string(line) + ": check the valves.\r\n";
        text.resize(static_cast<size_t>(bytes));
        std::ofstream out(folder / "notes" / ("note" + std::to_string(f) + ".txt"), std::ios::binary);
        if (!(out << text)) return false;
    }
    return true;
}

bool AddTextFileFields(AcDbBlockTableRecord& model, int count, int files) {
    for (int i = 0; i < count; ++i) {
        std::wstring code = L"%<\\TextField ./notes/note" + std::to_wstring(i % files) + L".txt>%";
        if (!AddFieldText(model, code, AcGePoint3d((i % 100) * 50.0, -(i / 100) * 50.0, 0))) return false;
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: bench_TextFileDrawingMake FOLDER [FIELDS] [FILES] [BYTES]\n";
        return 2;
    }
    std::filesystem::path folder = std::filesystem::absolute(argv[1]);
    int fields = argc > 2 ? std::atoi(argv[2]) : 10000;
    int files = argc > 3 ? std::atoi(argv[3]) : 100;
    int bytes = argc > 4 ? std::atoi(argv[4]) : 10240;
    if (fields < 0 || files < 1 || bytes < 1) {
        std::cerr << "bench_TextFileDrawingMake: FIELDS must be at least 0, FILES and BYTES at least 1\n";
        return 2;
    }
    if (!WriteNotes(folder, files, bytes)) {
        std::cerr << "bench_TextFileDrawingMake: the notes cannot be written in " << folder << "\n";
        return 1;
    }
    std::filesystem::path settings = std::filesystem::temp_directory_path() / "qm-bench-settings";
    cadhost::HostOptions options;
    options.settingsFolder = settings;
    cadhost::Host host(options);
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    AcDbBlockTableRecord* model = nullptr;
    if (acdbOpenObject(model, db->modelSpaceId(), AcDb::kForWrite) != Acad::eOk) {
        std::cerr << "bench_TextFileDrawingMake: model space does not open\n";
        return 1;
    }
    bool made = AddTextFileFields(*model, fields, files);
    model->close();
    if (!made) {
        std::cerr << "bench_TextFileDrawingMake: the drawing could not be made\n";
        return 1;
    }
    std::filesystem::path drawing = folder / "textfiles.dxf";
    std::wstring error;
    if (!host.SaveDrawing(drawing, error)) {
        std::cerr << "bench_TextFileDrawingMake: " << cadhost::ToUtf8(error) << "\n";
        return 1;
    }
    std::printf("fields=%d\nfiles=%d\nbytes_per_file=%d\ndrawing_bytes=%lld\n", fields, files, bytes,
                static_cast<long long>(std::filesystem::file_size(drawing)));
    return 0;
}
