// Fonts and device contexts: the objects behind HFONT and HDC.
#pragma once

#include <afxwin.h>

#include <memory>
#include <unordered_map>

struct HFONT__ {
    LOGFONTW logFont{};
    bool stock = false;
    std::unique_ptr<CFont> object;  // the temporary object of FromHandle
};

struct HDC__ {
    HWND window = nullptr;
    HFONT font = nullptr;
    COLORREF textColor = 0;
    COLORREF backColor = 0xFFFFFF;
    int backMode = OPAQUE;
    std::unique_ptr<CDC> object;
};

namespace cadhost::ui {

class GdiObjects {
public:
    GdiObjects();
    ~GdiObjects();
    GdiObjects(const GdiObjects&) = delete;
    GdiObjects& operator=(const GdiObjects&) = delete;

    HFONT CreateFont(const LOGFONTW& logFont);
    bool IsFont(HFONT font) const;
    // Stock fonts stay; answers whether the font was deleted.
    bool DeleteFont(HFONT font);
    // SYSTEM_FONT or DEFAULT_GUI_FONT; null for others.
    HFONT StockFont(int index) const;
    CFont* FontObject(HFONT font);

    HDC CreateDC(HWND window);
    bool IsDC(HDC dc) const;
    bool DeleteDC(HDC dc);
    CDC* DCObject(HDC dc);

    // "Microsoft Sans Serif" at 8 points, the font of dialogs without one.
    static LOGFONTW DialogFont(int pointSize = 8, const wchar_t* face = L"Microsoft Sans Serif");

private:
    std::unordered_map<HFONT, std::unique_ptr<HFONT__>> m_fonts;
    std::unordered_map<HDC, std::unique_ptr<HDC__>> m_dcs;
    HFONT m_systemFont = nullptr;
    HFONT m_guiFont = nullptr;
};

}  // namespace cadhost::ui
