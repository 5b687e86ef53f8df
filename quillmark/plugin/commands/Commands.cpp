// The command table, in table order, and the command bodies.
#include "plugin/commands/Commands.h"

#include "Product.h"
#include "plugin/AcRxArxApp.h"
#include "plugin/ModuleState.h"
#include "services/AboutDlg.h"
#include "services/LiveUpdateDlg.h"
#include "services/WebLinks.h"

#define QM_COMMAND(globalName, localName, function)                                                         \
    static CommandEntry function##Entry = {QM_COMMAND_GROUP, globalName, localName, ACRX_CMD_TRANSPARENT, \
                                           function, nullptr, static_cast<UINT>(-1)};                    \
    ACRX_TABLE_ENTRY(ARXCOMMA) CommandEntry* function##Slot = &function##Entry;

QM_COMMAND(L"_Quillmark_Test", L"Quillmark_Test", Quillmark_Test)
QM_COMMAND(L"_Quillmark_Website", L"Quillmark_Website", Quillmark_Website)
QM_COMMAND(L"_Quillmark_About", L"Quillmark_About", Quillmark_About)
QM_COMMAND(L"_Quillmark_Support", L"Quillmark_Support", Quillmark_Support)
QM_COMMAND(L"_Quillmark_Faq", L"Quillmark_Faq", Quillmark_Faq)
QM_COMMAND(L"_Quillmark_New", L"Quillmark_New", Quillmark_New)
QM_COMMAND(L"_Quillmark_Demo", L"Quillmark_Demo", Quillmark_Demo)
QM_COMMAND(L"_Quillmark_Help", L"Quillmark_Help", Quillmark_Help)
QM_COMMAND(L"_Quillmark_Live_Update", L"Quillmark_Live_Update", Quillmark_Live_Update)

// A self-check of drawing access that shows nothing.
void Quillmark_Test() {
    AcDbDatabase* database = acdbHostApplicationServices()->workingDatabase();
    AcDbBlockTable* blockTable = nullptr;
    if (!database || database->getSymbolTable(blockTable, AcDb::kForRead) != Acad::eOk) return;
    AcDbBlockTableRecord* block = nullptr;
    if (blockTable->getAt(L"abc", block, AcDb::kForRead) == Acad::eOk) {
        AcDbObjectIdArray ids;
        block->getBlockReferenceIds(ids);
        block->close();
    }
    blockTable->close();
}

namespace {

// The module's instance, or its resource handle if the instance is empty.
HINSTANCE DialogResources() { return _hdllInstance ? _hdllInstance : ModuleResourceHandle(); }

}  // namespace

void Quillmark_Website() { OpenWebsite(); }

void Quillmark_About() {
    ModuleResourceScope scope(DialogResources());
    CAboutDlg dialog;
    dialog.DoModal();
}

void Quillmark_Support() { OpenSupportMail(); }

void Quillmark_Faq() { OpenFaq(QM_PRODUCT_WORD); }

void Quillmark_New() { OpenWhatsNew(QM_PRODUCT_WORD); }

void Quillmark_Demo() { OpenDemo(); }

void Quillmark_Help() { OpenHelpFile(QM_HELP_FILE); }

void Quillmark_Live_Update() {
    ModuleResourceScope scope(DialogResources());
    CLiveUpdateDlg dialog;
    dialog.DoModal();
}
