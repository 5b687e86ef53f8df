// The host's main window: a menu bar, the drawing view with a tab for
// model space and each layout, and the command line under it.
#pragma once

// The host's headers first: their _T is the one wxWidgets then keeps.
#include "app/Host.h"
#include "view/Scenes.h"

#include <wx/frame.h>

#include <memory>
#include <ostream>
#include <streambuf>
#include <vector>

class wxNotebook;
class wxTextCtrl;
class wxBookCtrlEvent;

namespace cadhost::gui {

class DrawingView;
class WindowDriver;

// Command-line text as the host prints it (UTF-8), appended to a text box.
class HistoryBuffer : public std::streambuf {
public:
    explicit HistoryBuffer(wxTextCtrl* history) : m_history(history) {}

protected:
    int_type overflow(int_type ch) override;
    int sync() override;

private:
    wxTextCtrl* m_history;
    std::string m_pending;
};

class MainFrame : public wxFrame {
public:
    explicit MainFrame(Host& host);
    ~MainFrame() override;

    // The view of the tab shown.
    DrawingView* CurrentView();
    // Rebuilds the tabs and views from the current drawing.
    void ShowDrawing();

private:
    void MakeMenus();
    // The pull-downs that modules put on the host's menu bar, after the
    // window's own; their items run their macros on the command line.
    void ShowModuleMenus();
    void OnOpen(wxCommandEvent& event);
    void OnSave(wxCommandEvent& event);
    void OnSaveAs(wxCommandEvent& event);
    void OnZoomExtents(wxCommandEvent& event);
    void OnCommandEntered(wxCommandEvent& event);
    void RunCommand(const std::wstring& typed);
    void UpdateTitle();

    Host& m_host;
    wxNotebook* m_tabs = nullptr;
    wxTextCtrl* m_history = nullptr;
    wxTextCtrl* m_prompt = nullptr;
    std::unique_ptr<HistoryBuffer> m_historyBuffer;
    std::unique_ptr<std::ostream> m_historyStream;
    std::unique_ptr<view::Scenes> m_scenes;
    std::unique_ptr<WindowDriver> m_driver;
    size_t m_ownMenus = 0;
    std::vector<std::wstring> m_macros;  // by menu id - kFirstMacro
};

}  // namespace cadhost::gui
