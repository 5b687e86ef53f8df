// The programs installed on the machine, with the classes they serve.
#include "ole/ClassRegistry.h"
#include "spreadsheet/SpreadsheetProgram.h"

namespace cadhost::ole {

const std::vector<InstalledClass>& InstalledPrograms() {
    static const std::vector<InstalledClass> programs = {
        {spreadsheet::kProgramId, spreadsheet::kApplicationClsid, &spreadsheet::CreateApplicationObject},
    };
    return programs;
}

}  // namespace cadhost::ole
