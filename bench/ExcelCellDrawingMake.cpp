// Makes the Excel Cell benchmark's drawing: beside FOLDER/book.xlsx a
// drawing whose texts each hold one ExcelCell field naming a cell of its
// sheet "Data" (the cells of FOLDER/cells.txt, "ROW COLUMN" a line),
// relative to the drawing. The fields are not evaluated: the drawing is
// what `cadhost update` brings up to date.
//
//     bench_ExcelCellDrawingMake FOLDER
//
// Writes FOLDER/cells.dxf and prints the numbers made.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "BenchFieldTexts.h"
#include "app/Host.h"
#include "core/Utf8.h"
#include "spreadsheet/Workbook.h"

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: bench_ExcelCellDrawingMake FOLDER\n";
        return 2;
    }
    std::filesystem::path folder = std::filesystem::absolute(argv[1]);
    std::ifstream cells(folder / "cells.txt");
    if (!cells) {
        std::cerr << "bench_ExcelCellDrawingMake: " << (folder / "cells.txt") << " cannot be read\n";
        return 1;
    }
    cadhost::HostOptions options;
    options.settingsFolder = std::filesystem::temp_directory_path() / "qm-bench-settings";
    cadhost::Host host(options);
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    AcDbBlockTableRecord* model = nullptr;
    if (acdbOpenObject(model, db->modelSpaceId(), AcDb::kForWrite) != Acad::eOk) {
        std::cerr << "bench_ExcelCellDrawingMake: model space does not open\n";
        return 1;
    }
    int fields = 0;
    unsigned row = 0, column = 0;
    bool made = true;
    while (made && cells >> row >> column) {
        std::wstring code = L"%<\\ExcelCell ./book.xlsx:Data:$" + cadhost::spreadsheet::ColumnName(column) + L"$" +
                            std::to_wstring(row) + L">%";
        made = AddFieldText(*model, code, AcGePoint3d((fields % 100) * 50.0, -(fields / 100) * 50.0, 0));
        ++fields;
    }
    model->close();
    if (!made) {
        std::cerr << "bench_ExcelCellDrawingMake: the drawing could not be made\n";
        return 1;
    }
    std::filesystem::path drawing = folder / "cells.dxf";
    std::wstring error;
    if (!host.SaveDrawing(drawing, error)) {
        std::cerr << "bench_ExcelCellDrawingMake: " << cadhost::ToUtf8(error) << "\n";
        return 1;
    }
    std::printf("fields=%d\ndrawing_bytes=%lld\n", fields, static_cast<long long>(std::filesystem::file_size(drawing)));
    return 0;
}
