#include "ui/GdiObjects.h"

#include <cwchar>

namespace cadhost::ui {
namespace {

LOGFONTW Font(LONG height, LONG weight, const wchar_t* face) {
    LOGFONTW font{};
    font.lfHeight = height;
    font.lfWeight = weight;
    font.lfCharSet = DEFAULT_CHARSET;
    std::wcsncpy(font.lfFaceName, face, LF_FACESIZE - 1);
    return font;
}

}  // namespace

LOGFONTW GdiObjects::DialogFont(int pointSize, const wchar_t* face) {
    return Font(-MulDiv(pointSize, 96, 72), FW_NORMAL, face && *face ? face : L"Microsoft Sans Serif");
}

GdiObjects::GdiObjects() {
    m_systemFont = CreateFont(Font(16, FW_BOLD, L"System"));
    m_guiFont = CreateFont(DialogFont(8, L"MS Shell Dlg"));
    m_fonts[m_systemFont]->stock = true;
    m_fonts[m_guiFont]->stock = true;
}

GdiObjects::~GdiObjects() {
    // Temporary objects let go of their handles before they go.
    for (auto& [handle, dc] : m_dcs) {
        if (dc->object) dc->object->m_hDC = nullptr;
    }
    for (auto& [handle, font] : m_fonts) {
        if (font->object) font->object->m_hObject = nullptr;
    }
}

HFONT GdiObjects::CreateFont(const LOGFONTW& logFont) {
    auto font = std::make_unique<HFONT__>();
    font->logFont = logFont;
    font->logFont.lfFaceName[LF_FACESIZE - 1] = L'\0';
    HFONT handle = font.get();
    m_fonts.emplace(handle, std::move(font));
    return handle;
}

bool GdiObjects::IsFont(HFONT font) const { return font && m_fonts.count(font) != 0; }

bool GdiObjects::DeleteFont(HFONT font) {
    auto it = m_fonts.find(font);
    if (it == m_fonts.end() || it->second->stock) return false;
    if (it->second->object) it->second->object->m_hObject = nullptr;
    for (auto& [handle, dc] : m_dcs) {
        if (dc->font == font) dc->font = m_systemFont;
    }
    m_fonts.erase(it);
    return true;
}

HFONT GdiObjects::StockFont(int index) const {
    if (index == SYSTEM_FONT) return m_systemFont;
    if (index == DEFAULT_GUI_FONT) return m_guiFont;
    return nullptr;
}

CFont* GdiObjects::FontObject(HFONT font) {
    auto it = m_fonts.find(font);
    if (it == m_fonts.end()) return nullptr;
    if (!it->second->object) {
        it->second->object = std::make_unique<CFont>();
        it->second->object->m_hObject = font;
    }
    return it->second->object.get();
}

HDC GdiObjects::CreateDC(HWND window) {
    auto dc = std::make_unique<HDC__>();
    dc->window = window;
    dc->font = m_systemFont;
    HDC handle = dc.get();
    m_dcs.emplace(handle, std::move(dc));
    return handle;
}

bool GdiObjects::IsDC(HDC dc) const { return dc && m_dcs.count(dc) != 0; }

bool GdiObjects::DeleteDC(HDC dc) {
    auto it = m_dcs.find(dc);
    if (it == m_dcs.end()) return false;
    if (it->second->object) it->second->object->m_hDC = nullptr;
    m_dcs.erase(it);
    return true;
}

CDC* GdiObjects::DCObject(HDC dc) {
    auto it = m_dcs.find(dc);
    if (it == m_dcs.end()) return nullptr;
    if (!it->second->object) {
        it->second->object = std::make_unique<CDC>();
        it->second->object->m_hDC = dc;
    }
    return it->second->object.get();
}

}  // namespace cadhost::ui
