#include "MainFrame.h"

#include <dbapserv.h>

#include <wx/filedlg.h>
#include <wx/menu.h>
#include <wx/msgdlg.h>
#include <wx/notebook.h>
#include <wx/sizer.h>
#include <wx/textctrl.h>

#include "DrawingView.h"
#include "WindowDriver.h"
#include "core/Utf8.h"

namespace cadhost::gui {

namespace {
enum { kZoomExtents = wxID_HIGHEST + 1, kPrompt, kFirstMacro = wxID_HIGHEST + 1000 };

// A menu macro as the command line takes it: "^C^C_Quillmark_About" cancels
// what runs and types the command.
std::wstring CommandOfMacro(std::wstring macro) {
    for (size_t at; (at = macro.find(L"^C")) != std::wstring::npos;) macro.erase(at, 2);
    while (!macro.empty() && (macro.back() == L';' || macro.back() == L' ')) macro.pop_back();
    return macro;
}
}

HistoryBuffer::int_type HistoryBuffer::overflow(int_type ch) {
    if (ch == traits_type::eof()) return traits_type::not_eof(ch);
    m_pending.push_back(static_cast<char>(ch));
    if (ch == '\n') sync();
    return ch;
}

int HistoryBuffer::sync() {
    if (!m_pending.empty()) {
        m_history->AppendText(wxString::FromUTF8(m_pending));
        m_pending.clear();
    }
    return 0;
}

MainFrame::MainFrame(Host& host) : wxFrame(nullptr, wxID_ANY, wxS("cadhost"), wxDefaultPosition, wxSize(1100, 760)), m_host(host) {
    MakeMenus();
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    m_tabs = new wxNotebook(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxNB_BOTTOM);
    sizer->Add(m_tabs, 1, wxEXPAND);
    m_history = new wxTextCtrl(this, wxID_ANY, wxEmptyString, wxDefaultPosition, wxSize(-1, 110),
                               wxTE_MULTILINE | wxTE_READONLY | wxTE_DONTWRAP);
    sizer->Add(m_history, 0, wxEXPAND);
    m_prompt = new wxTextCtrl(this, kPrompt, wxEmptyString, wxDefaultPosition, wxDefaultSize, wxTE_PROCESS_ENTER);
    m_prompt->SetHint(wxS("Type a command"));
    sizer->Add(m_prompt, 0, wxEXPAND);
    SetSizer(sizer);
    m_prompt->Bind(wxEVT_TEXT_ENTER, &MainFrame::OnCommandEntered, this);
    // What the host prints goes to the history box from now on.
    m_historyBuffer = std::make_unique<HistoryBuffer>(m_history);
    m_historyStream = std::make_unique<std::ostream>(m_historyBuffer.get());
    m_host.commandLine().SetOutput(*m_historyStream);
    // The framework's message boxes, file dialogs and menus open here.
    m_driver = std::make_unique<WindowDriver>(this);
    m_host.desktop().SetDriver(m_driver.get());
    ShowDrawing();
}

MainFrame::~MainFrame() {
    m_host.desktop().SetDriver(nullptr);
    m_host.commandLine().SetOutput(std::cout);
}

void MainFrame::MakeMenus() {
    auto* file = new wxMenu;
    file->Append(wxID_OPEN, wxS("&Open...\tCtrl+O"));
    file->Append(wxID_SAVE, wxS("&Save\tCtrl+S"));
    file->Append(wxID_SAVEAS, wxS("Save &As..."));
    file->AppendSeparator();
    file->Append(wxID_EXIT, wxS("E&xit"));
    auto* viewMenu = new wxMenu;
    viewMenu->Append(kZoomExtents, wxS("Zoom &Extents\tHome"));
    auto* bar = new wxMenuBar;
    bar->Append(file, wxS("&File"));
    bar->Append(viewMenu, wxS("&View"));
    SetMenuBar(bar);
    Bind(wxEVT_MENU, &MainFrame::OnOpen, this, wxID_OPEN);
    Bind(wxEVT_MENU, &MainFrame::OnSave, this, wxID_SAVE);
    Bind(wxEVT_MENU, &MainFrame::OnSaveAs, this, wxID_SAVEAS);
    Bind(wxEVT_MENU, [this](wxCommandEvent&) { Close(); }, wxID_EXIT);
    Bind(wxEVT_MENU, &MainFrame::OnZoomExtents, this, kZoomExtents);
    m_ownMenus = bar->GetMenuCount();
    Bind(
        wxEVT_MENU,
        [this](wxCommandEvent& event) {
            size_t index = static_cast<size_t>(event.GetId() - kFirstMacro);
            if (index < m_macros.size()) RunCommand(CommandOfMacro(m_macros[index]));
        },
        kFirstMacro, kFirstMacro + 999);
}

void MainFrame::ShowModuleMenus() {
    wxMenuBar* bar = GetMenuBar();
    while (bar->GetMenuCount() > m_ownMenus) delete bar->Remove(bar->GetMenuCount() - 1);
    m_macros.clear();
    for (const MenuBar::PullDown& pullDown : m_host.menus().PullDowns()) {
        if (pullDown.group.empty() || pullDown.items.empty()) continue;
        auto* menu = new wxMenu;
        for (const MenuItem& item : pullDown.items) {
            if (item.label.empty()) {
                menu->AppendSeparator();
            } else if (m_macros.size() < 1000) {
                menu->Append(kFirstMacro + static_cast<int>(m_macros.size()), wxString(item.label));
                m_macros.push_back(item.macro);
            }
        }
        bar->Append(menu, wxString(pullDown.title));
    }
}

DrawingView* MainFrame::CurrentView() {
    int page = m_tabs->GetSelection();
    return page < 0 ? nullptr : static_cast<DrawingView*>(m_tabs->GetPage(static_cast<size_t>(page)));
}

void MainFrame::ShowDrawing() {
    AcDbDatabase* database = acdbHostApplicationServices()->workingDatabase();
    m_tabs->DeleteAllPages();
    m_scenes.reset();
    if (!database) return;
    m_scenes = std::make_unique<view::Scenes>(*database);
    for (const view::Space& space : view::SpacesOf(*database))
        m_tabs->AddPage(new DrawingView(m_tabs, *m_scenes, space.block), wxString(space.name));
    UpdateTitle();
    ShowModuleMenus();
}

void MainFrame::UpdateTitle() {
    const ACHAR* name = nullptr;
    AcDbDatabase* database = acdbHostApplicationServices()->workingDatabase();
    if (database && database->getFilename(name) == Acad::eOk && name && *name)
        SetTitle(wxString(name) + wxS(" - cadhost"));
    else
        SetTitle(wxS("Drawing1.dxf - cadhost"));
}

void MainFrame::OnOpen(wxCommandEvent&) {
    wxFileDialog dialog(this, wxS("Open a drawing"), wxEmptyString, wxEmptyString,
                        wxS("Drawings (*.dxf)|*.dxf;*.DXF|All files (*)|*"), wxFD_OPEN | wxFD_FILE_MUST_EXIST);
    if (dialog.ShowModal() != wxID_OK) return;
    std::wstring error;
    if (!m_host.OpenDrawing(std::filesystem::path(dialog.GetPath().utf8_string()), error)) {
        wxMessageBox(wxString(error), wxS("cadhost"), wxOK | wxICON_ERROR, this);
        return;
    }
    ShowDrawing();
}

void MainFrame::OnSave(wxCommandEvent& event) {
    const ACHAR* name = nullptr;
    AcDbDatabase* database = acdbHostApplicationServices()->workingDatabase();
    if (!database || database->getFilename(name) != Acad::eOk || !name || !*name) return OnSaveAs(event);
    std::wstring error;
    if (!m_host.SaveDrawing(std::filesystem::path(ToUtf8(name)), error))
        wxMessageBox(wxString(error), wxS("cadhost"), wxOK | wxICON_ERROR, this);
}

void MainFrame::OnSaveAs(wxCommandEvent&) {
    wxFileDialog dialog(this, wxS("Save the drawing as"), wxEmptyString, wxEmptyString, wxS("Drawings (*.dxf)|*.dxf"),
                        wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
    if (dialog.ShowModal() != wxID_OK) return;
    std::wstring error;
    if (!m_host.SaveDrawing(std::filesystem::path(dialog.GetPath().utf8_string()), error))
        wxMessageBox(wxString(error), wxS("cadhost"), wxOK | wxICON_ERROR, this);
    UpdateTitle();
}

void MainFrame::OnZoomExtents(wxCommandEvent&) {
    if (DrawingView* current = CurrentView()) current->ZoomExtents();
}

void MainFrame::OnCommandEntered(wxCommandEvent&) {
    std::wstring typed = m_prompt->GetValue().ToStdWstring();
    m_prompt->Clear();
    RunCommand(typed);
}

void MainFrame::RunCommand(const std::wstring& typed) {
    if (typed.empty()) return;
    AcDbDatabase* before = acdbHostApplicationServices()->workingDatabase();
    m_host.Print(L"Command: " + typed + L"\n");
    m_host.processor().RunCommand(typed);
    m_host.processor().RunIdle();
    m_historyStream->flush();
    // A command may change anything in the drawing, or replace it.
    if (acdbHostApplicationServices()->workingDatabase() != before) {
        ShowDrawing();
        return;
    }
    ShowModuleMenus();  // a command may load or take off a menu
    if (m_scenes) m_scenes->Forget();
    for (size_t page = 0; page < m_tabs->GetPageCount(); ++page) static_cast<DrawingView*>(m_tabs->GetPage(page))->Redraw();
}

}  // namespace cadhost::gui
