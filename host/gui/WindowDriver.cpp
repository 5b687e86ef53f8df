#include "WindowDriver.h"

#include <wx/filedlg.h>
#include <wx/menu.h>
#include <wx/msgdlg.h>
#include <wx/window.h>

#include <map>

namespace cadhost::gui {

void WindowDriver::RunModal(HWND) {}

int WindowDriver::AnswerMessageBox(const ui::MessageBoxRequest& request) {
    // The box's buttons in wxWidgets' few kinds, each answering its own id.
    bool has[8] = {};
    for (int button : request.buttons)
        if (button > 0 && button < 8) has[button] = true;
    long style = 0;
    if (has[IDYES]) style |= wxYES_NO;
    if (has[IDOK]) style |= wxOK;
    if (has[IDCANCEL]) style |= wxCANCEL;
    if (style == 0) style = wxOK;
    UINT icon = request.type & MB_ICONMASK;
    style |= icon == MB_ICONHAND ? wxICON_ERROR : icon == MB_ICONQUESTION ? wxICON_QUESTION
             : icon == MB_ICONEXCLAMATION ? wxICON_WARNING : icon == MB_ICONASTERISK ? wxICON_INFORMATION : 0;
    if (request.defaultButton == IDNO) style |= wxNO_DEFAULT;
    if (request.defaultButton == IDCANCEL && has[IDCANCEL]) style |= wxCANCEL_DEFAULT;
    wxMessageDialog dialog(m_parent, wxString(request.text), wxString(request.caption), style);
    switch (dialog.ShowModal()) {
    case wxID_YES: return IDYES;
    case wxID_NO: return IDNO;
    case wxID_CANCEL: return has[IDCANCEL] ? IDCANCEL : request.defaultButton;
    default: return has[IDOK] ? IDOK : request.defaultButton;
    }
}

std::optional<std::wstring> WindowDriver::AnswerFileDialog(const ui::FileDialogRequest& request) {
    // The platform's filter "Text (*.txt)|*.txt|..." is wxWidgets' too; its
    // patterns separated by ';' as well.
    std::wstring filter = request.filter;
    while (!filter.empty() && filter.back() == L'|') filter.pop_back();
    long style = request.open ? wxFD_OPEN : (wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
    wxFileDialog dialog(m_parent, wxString(request.title.empty() ? (request.open ? L"Open" : L"Save As") : request.title),
                        wxEmptyString, wxString(request.initialName), wxString(filter), style);
    if (dialog.ShowModal() != wxID_OK) return std::nullopt;
    return dialog.GetPath().ToStdWstring();
}

int WindowDriver::AnswerPopupMenu(const ui::PopupMenuRequest& request) {
    wxMenu menu;
    std::map<int, int> places;  // menu id to the item's place
    for (size_t i = 0; i < request.items.size(); ++i) {
        const ui::PopupMenuLine& line = request.items[i];
        if (line.flags & MF_SEPARATOR) {
            menu.AppendSeparator();
            continue;
        }
        int id = wxID_HIGHEST + 100 + static_cast<int>(i);
        wxMenuItem* item = menu.Append(id, wxString(line.text), wxEmptyString,
                                       (line.flags & MF_CHECKED) ? wxITEM_CHECK : wxITEM_NORMAL);
        if (line.flags & MF_CHECKED) item->Check(true);
        if (line.flags & (MF_GRAYED | MF_DISABLED)) item->Enable(false);
        places[id] = static_cast<int>(i);
    }
    int chosen = m_parent->GetPopupMenuSelectionFromUser(menu, wxPoint(request.x, request.y));
    auto found = places.find(chosen);
    return found == places.end() ? -1 : found->second;
}

}  // namespace cadhost::gui
