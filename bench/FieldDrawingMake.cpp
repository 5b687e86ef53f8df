// Makes a drawing for the field benchmarks: tables of 20 rows and 30
// columns side by side in model space, each cell with a short text, and
// multiline texts that each hold one Table Cell field naming a cell of one of
// the tables, spread over all of them. The fields are not evaluated: the
// drawing is what `cadhost update` brings up to date.
//
//     bench_FieldDrawingMake OUT.dxf [TABLES] [FIELDS]
//
// Prints the numbers made and the time the host took to make and save them.
#include <dbdict.h>
#include <dbfield.h>
#include <dbmtext.h>
#include <dbsymtb.h>
#include <dbtable.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "BenchFieldTexts.h"
#include "app/Host.h"
#include "core/Utf8.h"

namespace {

constexpr int kRows = 20;
constexpr int kColumns = 30;
constexpr double kRowHeight = 1.0;
constexpr double kColumnWidth = 2.5;
constexpr double kTableGap = 10.0;

std::wstring HandleText(AcDbObjectId id) {
    ACHAR text[32] = L"";
    id.handle().getIntoAsciiBuffer(text, 32);
    return text;
}

std::wstring ColumnName(int column) {  // from 1
    std::wstring name;
    if (column > 26) name += static_cast<wchar_t>(L'A' + (column - 1) / 26 - 1);
    name += static_cast<wchar_t>(L'A' + (column - 1) % 26);
    return name;
}

bool AddTables(AcDbBlockTableRecord& model, int count, std::vector<AcDbObjectId>& tables) {
    for (int t = 0; t < count; ++t) {
        auto* table = new AcDbTable;
        table->setSize(kRows, kColumns);
        for (int r = 0; r < kRows; ++r) table->setRowHeight(r, kRowHeight);
        for (int c = 0; c < kColumns; ++c) table->setColumnWidth(c, kColumnWidth);
        table->setPosition(AcGePoint3d(t * (kColumns * kColumnWidth + kTableGap), 0, 0));
        for (int r = 0; r < kRows; ++r)
            for (int c = 0; c < kColumns; ++c)
                table->setTextString(r, c, (L"T" + std::to_wstring(t) + L" R" + std::to_wstring(r + 1) + L" C" +
                                            std::to_wstring(c + 1)).c_str());
        AcDbObjectId id;
        if (model.appendAcDbEntity(id, table) != Acad::eOk) {
            delete table;
            return false;
        }
        table->close();
        tables.push_back(id);
    }
    return true;
}

bool AddTableCellFields(AcDbBlockTableRecord& model, const std::vector<AcDbObjectId>& tables, int count) {
    for (int i = 0; i < count; ++i) {
        AcDbObjectId table = tables[static_cast<size_t>(i) % tables.size()];
        int row = 1 + (i / 7) % kRows, column = 1 + (i / 3) % kColumns;
        std::wstring code = L"%<\\TableCell Table(<" + HandleText(table) + L">).$" + ColumnName(column) + L"$" +
                            std::to_wstring(row) + L">%";
        if (!AddFieldText(model, code, AcGePoint3d((i % 1000) * 5.0, -30.0 - (i / 1000) * 2.0, 0))) return false;
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: bench_FieldDrawingMake OUT.dxf [TABLES] [FIELDS]\n";
        return 2;
    }
    std::filesystem::path out = argv[1];
    int tables = argc > 2 ? std::atoi(argv[2]) : 1000;
    int fields = argc > 3 ? std::atoi(argv[3]) : 20000;
    if (tables < 1 || fields < 0) {
        std::cerr << "bench_FieldDrawingMake: TABLES must be at least 1 and FIELDS at least 0\n";
        return 2;
    }
    std::filesystem::path settings = std::filesystem::temp_directory_path() / "qm-bench-settings";
    cadhost::HostOptions options;
    options.settingsFolder = settings;
    cadhost::Host host(options);

    auto start = std::chrono::steady_clock::now();
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    std::vector<AcDbObjectId> tableIds;
    {
        AcDbBlockTableRecord* model = nullptr;
        if (acdbOpenObject(model, db->modelSpaceId(), AcDb::kForWrite) != Acad::eOk) {
            std::cerr << "bench_FieldDrawingMake: model space does not open\n";
            return 1;
        }
        bool made = AddTables(*model, tables, tableIds) && AddTableCellFields(*model, tableIds, fields);
        model->close();
        if (!made) {
            std::cerr << "bench_FieldDrawingMake: the drawing could not be made\n";
            return 1;
        }
    }
    std::wstring error;
    if (!host.SaveDrawing(out, error)) {
        std::cerr << "bench_FieldDrawingMake: " << cadhost::ToUtf8(error) << "\n";
        return 1;
    }
    double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::printf("tables=%d\ncells=%d\nfields=%d\nmake_seconds=%.3f\nfile_bytes=%lld\n", tables,
                tables * kRows * kColumns, fields, seconds,
                static_cast<long long>(std::filesystem::file_size(out)));
    std::printf("last_table_cell_point=%.2f,%.2f\n",
                (tables - 1) * (kColumns * kColumnWidth + kTableGap) + (kColumns - 0.5) * kColumnWidth,
                -(kRows - 0.5) * kRowHeight);
    return 0;
}
