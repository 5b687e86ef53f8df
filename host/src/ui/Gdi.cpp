// Fonts and device contexts. Nothing is drawn; text is measured in the
// host's fixed metric (TextMetric.h).
#include <afxwin.h>

#include <cstring>
#include <cwchar>

#include "ui/Desktop.h"
#include "ui/TextMetric.h"

using cadhost::ui::Desktop;

IMPLEMENT_DYNCREATE(CGdiObject, CObject)
IMPLEMENT_DYNCREATE(CFont, CGdiObject)
IMPLEMENT_DYNCREATE(CDC, CObject)
IMPLEMENT_DYNAMIC(CClientDC, CDC)
IMPLEMENT_DYNAMIC(CPaintDC, CDC)

namespace {

cadhost::ui::GdiObjects* Objects() {
    Desktop* desktop = Desktop::Current();
    return desktop ? &desktop->gdi() : nullptr;
}

bool IsFontHandle(HGDIOBJ object) {
    cadhost::ui::GdiObjects* objects = Objects();
    return objects && objects->IsFont(static_cast<HFONT>(object));
}

}  // namespace

extern "C" {

HFONT WINAPI CreateFontIndirectW(const LOGFONTW* font) {
    cadhost::ui::GdiObjects* objects = Objects();
    return objects && font ? objects->CreateFont(*font) : nullptr;
}

BOOL WINAPI DeleteObject(HGDIOBJ object) {
    cadhost::ui::GdiObjects* objects = Objects();
    return objects && objects->DeleteFont(static_cast<HFONT>(object));
}

HGDIOBJ WINAPI GetStockObject(int index) {
    cadhost::ui::GdiObjects* objects = Objects();
    return objects ? objects->StockFont(index) : nullptr;
}

int WINAPI GetObjectW(HGDIOBJ object, int size, LPVOID buffer) {
    if (!IsFontHandle(object)) return 0;
    if (!buffer) return static_cast<int>(sizeof(LOGFONTW));
    if (size < static_cast<int>(sizeof(LOGFONTW))) return 0;
    std::memcpy(buffer, &static_cast<HFONT>(object)->logFont, sizeof(LOGFONTW));
    return static_cast<int>(sizeof(LOGFONTW));
}

HDC WINAPI GetDC(HWND window) {
    Desktop* desktop = Desktop::Current();
    if (!desktop || (window && !desktop->IsWindow(window))) return nullptr;
    return desktop->gdi().CreateDC(window);
}

int WINAPI ReleaseDC(HWND, HDC dc) {
    cadhost::ui::GdiObjects* objects = Objects();
    return objects && objects->DeleteDC(dc) ? 1 : 0;
}

HDC WINAPI CreateCompatibleDC(HDC) { return GetDC(nullptr); }

BOOL WINAPI DeleteDC(HDC dc) { return ReleaseDC(nullptr, dc); }

HGDIOBJ WINAPI SelectObject(HDC dc, HGDIOBJ object) {
    cadhost::ui::GdiObjects* objects = Objects();
    if (!objects || !objects->IsDC(dc) || !IsFontHandle(object)) return nullptr;
    HFONT previous = dc->font;
    dc->font = static_cast<HFONT>(object);
    return previous;
}

BOOL WINAPI GetTextExtentPoint32W(HDC dc, LPCWSTR text, int length, LPSIZE size) {
    cadhost::ui::GdiObjects* objects = Objects();
    if (!objects || !objects->IsDC(dc) || !size || length < 0 || (length > 0 && !text)) return FALSE;
    const LOGFONTW& font = objects->IsFont(dc->font) ? dc->font->logFont : LOGFONTW{};
    size->cx = cadhost::ui::TextWidth(font, std::wstring_view(text ? text : L"", static_cast<size_t>(length)));
    size->cy = cadhost::ui::CellHeight(font);
    return TRUE;
}

BOOL WINAPI GetTextMetricsW(HDC dc, LPTEXTMETRICW metrics) {
    cadhost::ui::GdiObjects* objects = Objects();
    if (!objects || !objects->IsDC(dc) || !metrics) return FALSE;
    *metrics = cadhost::ui::TextMetrics(objects->IsFont(dc->font) ? dc->font->logFont : LOGFONTW{});
    return TRUE;
}

int WINAPI GetDeviceCaps(HDC dc, int index) {
    cadhost::ui::GdiObjects* objects = Objects();
    if (!objects || !objects->IsDC(dc)) return 0;
    return index == LOGPIXELSX || index == LOGPIXELSY ? 96 : 0;
}

COLORREF WINAPI SetTextColor(HDC dc, COLORREF color) {
    cadhost::ui::GdiObjects* objects = Objects();
    if (!objects || !objects->IsDC(dc)) return 0xFFFFFFFFu;
    COLORREF previous = dc->textColor;
    dc->textColor = color;
    return previous;
}

COLORREF WINAPI SetBkColor(HDC dc, COLORREF color) {
    cadhost::ui::GdiObjects* objects = Objects();
    if (!objects || !objects->IsDC(dc)) return 0xFFFFFFFFu;
    COLORREF previous = dc->backColor;
    dc->backColor = color;
    return previous;
}

int WINAPI SetBkMode(HDC dc, int mode) {
    cadhost::ui::GdiObjects* objects = Objects();
    if (!objects || !objects->IsDC(dc)) return 0;
    int previous = dc->backMode;
    dc->backMode = mode;
    return previous;
}
}

CGdiObject::~CGdiObject() { DeleteObject(); }

BOOL CGdiObject::Attach(HGDIOBJ hObject) {
    if (m_hObject || !hObject) return FALSE;
    m_hObject = hObject;
    return TRUE;
}

HGDIOBJ CGdiObject::Detach() {
    HGDIOBJ object = m_hObject;
    m_hObject = nullptr;
    return object;
}

BOOL CGdiObject::DeleteObject() {
    if (!m_hObject) return FALSE;
    return ::DeleteObject(Detach());
}

CFont* CFont::FromHandle(HFONT hFont) {
    cadhost::ui::GdiObjects* objects = Objects();
    return objects ? objects->FontObject(hFont) : nullptr;
}

BOOL CFont::CreateFontIndirect(const LOGFONT* lpLogFont) { return Attach(::CreateFontIndirectW(lpLogFont)); }

BOOL CFont::CreatePointFont(int nPointSize, LPCTSTR lpszFaceName, CDC*) {
    LOGFONTW font{};
    font.lfHeight = -MulDiv(nPointSize, 96, 720);
    font.lfWeight = FW_NORMAL;
    font.lfCharSet = DEFAULT_CHARSET;
    if (lpszFaceName) std::wcsncpy(font.lfFaceName, lpszFaceName, LF_FACESIZE - 1);
    return CreateFontIndirect(&font);
}

BOOL CFont::CreateFont(int nHeight, int nWidth, int nEscapement, int nOrientation, int nWeight, BYTE bItalic,
                       BYTE bUnderline, BYTE cStrikeOut, BYTE nCharSet, BYTE nOutPrecision, BYTE nClipPrecision,
                       BYTE nQuality, BYTE nPitchAndFamily, LPCTSTR lpszFacename) {
    LOGFONTW font{};
    font.lfHeight = nHeight;
    font.lfWidth = nWidth;
    font.lfEscapement = nEscapement;
    font.lfOrientation = nOrientation;
    font.lfWeight = nWeight;
    font.lfItalic = bItalic;
    font.lfUnderline = bUnderline;
    font.lfStrikeOut = cStrikeOut;
    font.lfCharSet = nCharSet;
    font.lfOutPrecision = nOutPrecision;
    font.lfClipPrecision = nClipPrecision;
    font.lfQuality = nQuality;
    font.lfPitchAndFamily = nPitchAndFamily;
    if (lpszFacename) std::wcsncpy(font.lfFaceName, lpszFacename, LF_FACESIZE - 1);
    return CreateFontIndirect(&font);
}

int CFont::GetLogFont(LOGFONT* pLogFont) { return ::GetObjectW(m_hObject, sizeof(LOGFONT), pLogFont); }

CDC::~CDC() { DeleteDC(); }

CDC* CDC::FromHandle(HDC hDC) {
    cadhost::ui::GdiObjects* objects = Objects();
    return objects ? objects->DCObject(hDC) : nullptr;
}

BOOL CDC::Attach(HDC hDC) {
    if (m_hDC || !hDC) return FALSE;
    m_hDC = hDC;
    return TRUE;
}

HDC CDC::Detach() {
    HDC dc = m_hDC;
    m_hDC = nullptr;
    return dc;
}

BOOL CDC::CreateCompatibleDC(CDC* pDC) { return Attach(::CreateCompatibleDC(pDC ? pDC->m_hDC : nullptr)); }

BOOL CDC::DeleteDC() {
    if (!m_hDC) return FALSE;
    return ::DeleteDC(Detach());
}

CFont* CDC::SelectObject(CFont* pFont) {
    if (!pFont) return nullptr;
    return CFont::FromHandle(static_cast<HFONT>(::SelectObject(m_hDC, pFont->m_hObject)));
}

HGDIOBJ CDC::SelectObject(HGDIOBJ hObject) { return ::SelectObject(m_hDC, hObject); }

CSize CDC::GetTextExtent(LPCTSTR lpszString, int nCount) const {
    SIZE size{0, 0};
    ::GetTextExtentPoint32W(m_hDC, lpszString, nCount, &size);
    return CSize(size);
}

CSize CDC::GetTextExtent(const CString& str) const { return GetTextExtent(str.GetString(), str.GetLength()); }

BOOL CDC::GetTextMetrics(LPTEXTMETRIC lpMetrics) const { return ::GetTextMetricsW(m_hDC, lpMetrics); }

int CDC::GetDeviceCaps(int nIndex) const { return ::GetDeviceCaps(m_hDC, nIndex); }

COLORREF CDC::SetTextColor(COLORREF crColor) { return ::SetTextColor(m_hDC, crColor); }

COLORREF CDC::SetBkColor(COLORREF crColor) { return ::SetBkColor(m_hDC, crColor); }

int CDC::SetBkMode(int nBkMode) { return ::SetBkMode(m_hDC, nBkMode); }

CClientDC::CClientDC(CWnd* pWnd) : m_hWnd(pWnd ? pWnd->m_hWnd : nullptr) { Attach(::GetDC(m_hWnd)); }

CClientDC::~CClientDC() {
    if (m_hDC) ::ReleaseDC(m_hWnd, Detach());
}

BOOL CDC::TextOut(int x, int y, LPCTSTR lpszString, int nCount) { return ::TextOutW(m_hDC, x, y, lpszString, nCount); }

BOOL CDC::TextOut(int x, int y, const CString& str) { return TextOut(x, y, str.GetString(), str.GetLength()); }

CPaintDC::CPaintDC(CWnd* pWnd) : m_ps{}, m_hWnd(pWnd ? pWnd->m_hWnd : nullptr) {
    Attach(::BeginPaint(m_hWnd, &m_ps));
}

CPaintDC::~CPaintDC() {
    if (m_hDC) ::EndPaint(m_hWnd, &m_ps);
    Detach();
}
