// The spreadsheet program's objects as automation reaches them: Application,
// Workbooks, Workbook, Worksheets, Worksheet and Range, each answering the
// members it publishes by dispatch id, with the meanings it gives them.
#pragma once

#include <oaidl.h>

#include <memory>

#include "spreadsheet/SpreadsheetProgram.h"

namespace cadhost::spreadsheet {

// A new application object for the program's present run (no reference
// taken yet).
IDispatch* NewApplicationObject();

// The dispatch ids of the members the program answers.
enum ProgramMember : DISPID {
    kMemberName = 0x6E,
    kMemberCount = 0x76,
    kMemberItem = 0xAA,
    kMemberAdd = 0xB5,
    kMemberRange = 0xC5,
    kMemberSelect = 0xEB,
    kMemberColumn = 0xF0,
    kMemberRow = 0x101,
    kMemberFullName = 0x121,
    kMemberActivate = 0x130,
    kMemberActiveCell = 0x131,
    kMemberActiveSheet = 0x133,
    kMemberActiveWorkbook = 0x134,
    kMemberWorksheets = 0x1EE,
    kMemberVisible = 0x22E,
    kMemberWorkbooks = 0x23C,
    kMemberOpen = 0x2AA,
};

// The status code the program gives with its own errors.
constexpr HRESULT kProgramErrorCode = static_cast<HRESULT>(0x800A03ECu);

}  // namespace cadhost::spreadsheet
