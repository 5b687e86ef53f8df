#include "app/Host.h"
#include "app/MemoryReuse.h"

#include <AcFdUi.h>

#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <cwctype>

#include <dbsymtb.h>

#include "app/Modules.h"
#include "db/DatabaseImpl.h"
#include "editor/EditorCommands.h"
#include "editor/Viewports.h"
#include "core/Utf8.h"

namespace cadhost {
namespace {
Host* s_current = nullptr;

// The menu bar of a fresh host: File to Help.
const int kHostMenuCount = 11;

// A text for a result buffer, allocated as acutRelRb frees it.
wchar_t* NewText(const std::wstring& text) {
    auto* copy = static_cast<wchar_t*>(std::malloc((text.size() + 1) * sizeof(wchar_t)));
    if (copy) std::wmemcpy(copy, text.c_str(), text.size() + 1);
    return copy;
}

void MenuLoadCommand() {
    Host& host = Host::Require();
    std::optional<std::wstring> file = host.processor().NextInput();
    if (!file || file->empty()) {
        host.Print(L"\nMENULOAD needs the name of a customization file.");
        return;
    }
    std::wstring error;
    std::filesystem::path path(ToUtf8(*file));
    if (!host.menus().LoadGroup(path, error)) {
        host.Print(L"\nUnable to load the customization file " + *file + L": " + error + L".");
        return;
    }
    std::wstring group = host.menus().Groups().back().name;
    for (wchar_t& c : group) c = static_cast<wchar_t>(std::towupper(c));
    host.Print(L"\nCustomization file loaded successfully. Customization Group: " + group);
}

// A drawing's file as its document keeps it: the full path, as the
// platform keeps it, so that paths relative to the drawing can be made.
std::wstring FullPathOf(const std::filesystem::path& path) {
    std::error_code ec;
    std::filesystem::path full = std::filesystem::absolute(path, ec);
    return FromUtf8((ec ? path : full.lexically_normal()).string());
}
}  // namespace

Host* Host::Current() { return s_current; }

Host& Host::Require() {
    if (!s_current) {
        std::fputs("cadhost: a platform call came while no host is running\n", stderr);
        std::abort();
    }
    return *s_current;
}

Host::Host(HostOptions options)
    : m_moduleFolder(options.moduleFolder.empty() ? ModuleTable::Instance().Host()->path.parent_path()
                                                  : options.moduleFolder),
      m_internet(options.internet),
      m_commandLine(*options.output) {
    if (s_current) {
        std::fputs("cadhost: only one host can run in a process\n", stderr);
        std::abort();
    }
    s_current = this;
    KeepFreedMemoryForReuse();
    // A store that cannot be used says so on the command line, once.
    m_settings = std::make_unique<SettingsStore>(
        options.settingsFolder.empty() ? SettingsStore::DefaultFolder() : options.settingsFolder,
        [this](const std::wstring& message) { m_commandLine.Print(L"\n" + message); });
    m_documents = std::make_unique<DocumentManager>(ModuleTable::Instance().Host());
    m_services = std::make_unique<HostServices>(*m_documents);
    m_desktop = std::make_unique<ui::Desktop>([this](const std::wstring& text) { m_commandLine.Show(text); });
    m_shell = std::make_unique<Shell>([this](const std::wstring& text) { m_commandLine.Show(text); });
    auto print = [this](const std::wstring& text) { Print(text); };
    m_processor = std::make_unique<CommandProcessor>(m_commands, *m_documents, print);
    m_fieldEngine = std::make_unique<AcFdFieldEngine>();
    m_fieldManager = std::make_unique<CAcFdUiFieldManager>();
    m_linker = std::make_unique<DynamicLinker>(m_moduleFolder, print);
    m_sysRegistry.atPut(ACRX_DYNAMIC_LINKER, m_linker.get());
    m_sysRegistry.atPut(ACRX_COMMAND_DOCK, &m_commands);
    m_processor->lisp().Define(L"menucmd", [this](const std::vector<LispValue>& arguments) {
        if (arguments.empty() || arguments[0].kind != LispValue::Kind::String) return LispValue::Nil();
        m_menus.MenuCommand(arguments[0].text);
        return LispValue::Nil();
    });
    m_menus.SetHostMenus(kHostMenuCount);
    DefineCommands();
    DefineVariables();
    ConnectModules();
    NewDrawing();
}

Host::~Host() {
    m_linker->UnloadAll();
    m_documents->CloseAll();
    m_commandLine.FinishLine();
    s_current = nullptr;
}

SystemVersion& Host::systemVersion() {
    if (!m_systemVersion) m_systemVersion = RunningSystemVersion();
    return *m_systemVersion;
}

void Host::NewDrawing() { ReplaceDrawing(std::make_unique<AcDbDatabase>(true), L""); }

void Host::ReplaceDrawing(std::unique_ptr<AcDbDatabase> database, std::wstring fileName) {
    m_viewport = 0;
    m_selections = SelectionSets();  // sets belong to the drawing they were taken from
    if (Document* old = m_documents->Current()) m_linker->Broadcast(AcRx::kUnloadDwgMsg, old);
    m_functions.Clear();  // what modules defined belonged to the drawing
    Document* document = m_documents->Replace(std::move(database), std::move(fileName));
    m_linker->Broadcast(AcRx::kLoadDwgMsg, document);
}

bool Host::OpenDrawing(const std::filesystem::path& path, std::wstring& error) {
    auto database = std::make_unique<AcDbDatabase>(false);
    std::wstring name = FullPathOf(path);
    if (database->readDwgFile(name.c_str()) != Acad::eOk) {
        error = database->impl().lastError;
        return false;
    }
    ReplaceDrawing(std::move(database), name);
    return true;
}

bool Host::SaveDrawing(const std::filesystem::path& path, std::wstring& error) {
    Document* document = m_documents->Current();
    if (!document || !document->database()) {
        error = L"no drawing is open";
        return false;
    }
    std::wstring name = FullPathOf(path);
    if (document->database()->saveAs(name.c_str()) != Acad::eOk) {
        error = document->database()->impl().lastError;
        return false;
    }
    document->SetFileName(name);
    return true;
}

void Host::ConnectModules() {
    // A module that loads meets the current drawing.
    m_linker->SetLoadListener([this](DynamicLinker::App& app) {
        if (Document* document = m_documents->Current()) m_linker->Send(app, AcRx::kLoadDwgMsg, document);
    });
    // A module that goes takes its functions with it, and the field engine
    // and the Field dialog forget its evaluators and hooks, withdrawn or not.
    m_linker->SetUnloadListener([this](DynamicLinker::App& app) {
        m_functions.Forget(&app);
        m_fieldEngine->dropLoadersOfModule(app.module);
        m_fieldManager->DropHooksOfModule(app.module);
    });
    m_processor->lisp().SetFallback(
        [this](const std::wstring& name, const std::vector<LispValue>&) -> std::optional<LispValue> {
            const ExternalFunctions::Entry* entry = m_functions.Find(name);
            if (!entry) return std::nullopt;
            ExternalFunctions::Entry call = *entry;
            m_functions.SetCurrentCode(call.code);
            if (call.function) {
                call.function();
            } else if (DynamicLinker::App* app = m_linker->FindById(call.app)) {
                m_linker->Send(*app, AcRx::kInvkSubrMsg, nullptr);
            }
            m_functions.SetCurrentCode(-1);
            return LispValue::Nil();
        });
}

void Host::DefineCommands() {
    m_commands.addCommand(L"ACAD_MAIN", L"MENULOAD", L"MENULOAD", ACRX_CMD_MODAL, &MenuLoadCommand);
    DefineEditorCommands(m_commands);
}

void Host::DefineVariables() {
    using Variable = SystemVariables::Variable;
    auto text = [](std::wstring value) {
        return [value](resbuf& rb) {
            rb.resval.rstring = NewText(value);
            return rb.resval.rstring != nullptr;
        };
    };
    m_variables.Define(L"ACADVER", Variable{RTSTR, true, 0, 0, text(L"18.0"), nullptr});
    m_variables.Define(L"PRODUCT", Variable{RTSTR, true, 0, 0, text(L"cadhost"), nullptr});
    m_variables.Define(L"PROGRAM", Variable{RTSTR, true, 0, 0, text(L"cadhost"), nullptr});
    m_variables.Define(L"DWGNAME", Variable{RTSTR, true, 0, 0, [this](resbuf& rb) {
                                                 rb.resval.rstring = NewText(m_documents->Current()
                                                                                 ? m_documents->Current()->docTitle()
                                                                                 : L"");
                                                 return rb.resval.rstring != nullptr;
                                             },
                                             nullptr});

    // Settings of the session, kept by the host.
    auto session = [this](const std::wstring& name, int minimum, int maximum, short initial) {
        auto value = std::make_shared<short>(initial);
        m_variables.Define(name, Variable{RTSHORT, false, minimum, maximum,
                                          [value](resbuf& rb) {
                                              rb.resval.rint = *value;
                                              return true;
                                          },
                                          [value](const resbuf& rb) {
                                              *value = rb.resval.rint;
                                              return std::wstring();
                                          }});
    };
    session(L"CMDECHO", 0, 1, 1);
    session(L"FILEDIA", 0, 1, 1);
    session(L"MENUECHO", 0, 15, 0);

    // Header values of the working drawing.
    auto header = [this](const std::wstring& name, int minimum, int maximum, Adesk::Int16 (AcDbDatabase::*get)() const,
                         Acad::ErrorStatus (AcDbDatabase::*set)(Adesk::Int16)) {
        m_variables.Define(name, Variable{RTSHORT, false, minimum, maximum,
                                          [this, get](resbuf& rb) {
                                              AcDbDatabase* db = m_services->workingDatabase();
                                              if (!db) return false;
                                              rb.resval.rint = (db->*get)();
                                              return true;
                                          },
                                          [this, set](const resbuf& rb) {
                                              AcDbDatabase* db = m_services->workingDatabase();
                                              if (!db) return std::wstring(L"no drawing is open");
                                              return (db->*set)(rb.resval.rint) == Acad::eOk
                                                         ? std::wstring()
                                                         : std::wstring(L"the drawing refused the value");
                                          }});
    };
    header(L"LUNITS", 1, 5, &AcDbDatabase::lunits, &AcDbDatabase::setLunits);
    header(L"LUPREC", 0, 8, &AcDbDatabase::luprec, &AcDbDatabase::setLuprec);
    header(L"DIMZIN", 0, 15, &AcDbDatabase::dimzin, &AcDbDatabase::setDimzin);
    DefineDrawingVariables();
}

void Host::DefineDrawingVariables() {
    using Variable = SystemVariables::Variable;
    auto working = [this]() { return m_services->workingDatabase(); };
    // The current layer, by name; a frozen layer cannot be current.
    m_variables.Define(L"CLAYER", Variable{RTSTR, false, 0, 0,
                                           [working](resbuf& rb) {
                                               AcDbDatabase* db = working();
                                               if (!db) return false;
                                               std::wstring name;
                                               AcDbLayerTableRecord* layer = nullptr;
                                               if (acdbOpenObject(layer, db->clayer(), AcDb::kForRead) == Acad::eOk) {
                                                   name = layer->name();
                                                   layer->close();
                                               }
                                               rb.resval.rstring = NewText(name);
                                               return rb.resval.rstring != nullptr;
                                           },
                                           [working](const resbuf& rb) {
                                               AcDbDatabase* db = working();
                                               if (!db) return std::wstring(L"no drawing is open");
                                               AcDbLayerTable* table = nullptr;
                                               if (db->getSymbolTable(table, AcDb::kForRead) != Acad::eOk)
                                                   return std::wstring(L"the drawing has no layers");
                                               AcDbLayerTableRecord* layer = nullptr;
                                               Acad::ErrorStatus es = table->getAt(rb.resval.rstring, layer, AcDb::kForRead);
                                               table->close();
                                               if (es != Acad::eOk)
                                                   return L"no layer is named " + std::wstring(rb.resval.rstring);
                                               bool frozen = layer->isFrozen();
                                               AcDbObjectId id = layer->objectId();
                                               layer->close();
                                               if (frozen) return L"the layer " + std::wstring(rb.resval.rstring) +
                                                                  L" is frozen and cannot be current";
                                               db->setClayer(id);
                                               return std::wstring();
                                           }});
    // 1 while model space is current, 0 while the paper space of the
    // layout is; the viewport in use goes back to the whole sheet or model.
    m_variables.Define(L"TILEMODE", Variable{RTSHORT, false, 0, 1,
                                             [working](resbuf& rb) {
                                                 AcDbDatabase* db = working();
                                                 if (!db) return false;
                                                 rb.resval.rint = db->tilemode() ? 1 : 0;
                                                 return true;
                                             },
                                             [this, working](const resbuf& rb) {
                                                 AcDbDatabase* db = working();
                                                 if (!db) return std::wstring(L"no drawing is open");
                                                 if (db->setTilemode(rb.resval.rint != 0) != Acad::eOk)
                                                     return std::wstring(L"the drawing has no such space");
                                                 m_viewport = 0;
                                                 return std::wstring();
                                             }});
    // The viewport in use: 2 for model space, 1 for the sheet of a layout,
    // the number of a viewport of the sheet while working in it.
    m_variables.Define(L"CVPORT", Variable{RTSHORT, false, 1, 32767,
                                           [this, working](resbuf& rb) {
                                               AcDbDatabase* db = working();
                                               if (!db) return false;
                                               rb.resval.rint = db->tilemode() ? 2 : (m_viewport ? m_viewport : 1);
                                               return true;
                                           },
                                           [this, working](const resbuf& rb) {
                                               AcDbDatabase* db = working();
                                               if (!db) return std::wstring(L"no drawing is open");
                                               short number = rb.resval.rint;
                                               if (db->tilemode()) {
                                                   return number == 2 ? std::wstring()
                                                                      : std::wstring(L"model space has viewport 2 only");
                                               }
                                               if (number == 1) {
                                                   m_viewport = 0;
                                                   return std::wstring();
                                               }
                                               if (cadhost::FindViewport(*db, number).isNull())
                                                   return L"the layout has no viewport " + std::to_wstring(number);
                                               m_viewport = number;
                                               return std::wstring();
                                           }});
    // The user coordinate system of the current space, in world terms.
    auto ucs = [working](int which) {
        return [working, which](resbuf& rb) {
            AcDbDatabase* db = working();
            if (!db) return false;
            bool model = db->tilemode();
            AcGeVector3d v = which == 0 ? (model ? db->ucsorg() : db->pucsorg()).asVector()
                             : which == 1 ? (model ? db->ucsxdir() : db->pucsxdir())
                                          : (model ? db->ucsydir() : db->pucsydir());
            rb.resval.rpoint[0] = v.x;
            rb.resval.rpoint[1] = v.y;
            rb.resval.rpoint[2] = v.z;
            return true;
        };
    };
    m_variables.Define(L"UCSORG", Variable{RT3DPOINT, true, 0, 0, ucs(0), nullptr});
    m_variables.Define(L"UCSXDIR", Variable{RT3DPOINT, true, 0, 0, ucs(1), nullptr});
    m_variables.Define(L"UCSYDIR", Variable{RT3DPOINT, true, 0, 0, ucs(2), nullptr});
    m_variables.Define(L"WORLDUCS", Variable{RTSHORT, true, 0, 1,
                                             [working](resbuf& rb) {
                                                 AcDbDatabase* db = working();
                                                 if (!db) return false;
                                                 bool model = db->tilemode();
                                                 bool world = (model ? db->ucsorg() : db->pucsorg()) == AcGePoint3d::kOrigin &&
                                                              (model ? db->ucsxdir() : db->pucsxdir()) == AcGeVector3d::kXAxis &&
                                                              (model ? db->ucsydir() : db->pucsydir()) == AcGeVector3d::kYAxis;
                                                 rb.resval.rint = world ? 1 : 0;
                                                 return true;
                                             },
                                             nullptr});
    // The folder of the drawing's file, with its closing separator.
    m_variables.Define(L"DWGPREFIX", Variable{RTSTR, true, 0, 0,
                                              [this](resbuf& rb) {
                                                  Document* document = m_documents->Current();
                                                  std::wstring folder;
                                                  if (document && *document->fileName()) {
                                                      std::filesystem::path path(ToUtf8(document->fileName()));
                                                      folder = FromUtf8(path.parent_path().string());
                                                      if (!folder.empty() && folder.back() != L'/') folder += L'/';
                                                  }
                                                  rb.resval.rstring = NewText(folder);
                                                  return rb.resval.rstring != nullptr;
                                              },
                                              nullptr});
}

}  // namespace cadhost
