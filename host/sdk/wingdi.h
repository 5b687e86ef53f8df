// Drawing objects: fonts, device contexts and the measuring of text.
//
// The host draws nothing, but lays out and measures as the platform does.
// Text is measured in a fixed metric of the font "Microsoft Sans Serif" at
// 8 points (a cell 13 pixels high, 11 of them for the character, at 96 dots
// per inch): every character has a set advance width, listed in the host's
// text metric, and other sizes scale those widths with the character
// height. The face name does not change the widths, so that a width is the
// same on every machine.
#pragma once

#include "windef.h"

#define LF_FACESIZE 32

#define FW_DONTCARE 0
#define FW_THIN 100
#define FW_LIGHT 300
#define FW_NORMAL 400
#define FW_MEDIUM 500
#define FW_SEMIBOLD 600
#define FW_BOLD 700
#define FW_HEAVY 900

#define ANSI_CHARSET 0
#define DEFAULT_CHARSET 1
#define OUT_DEFAULT_PRECIS 0
#define CLIP_DEFAULT_PRECIS 0
#define DEFAULT_QUALITY 0
#define DEFAULT_PITCH 0
#define FF_DONTCARE 0
#define FF_SWISS 0x20

#define LOGPIXELSX 88
#define LOGPIXELSY 90

// Stock objects.
#define SYSTEM_FONT 13
#define DEFAULT_GUI_FONT 17

#define TRANSPARENT 1
#define OPAQUE 2

typedef struct tagLOGFONTW {
    LONG lfHeight;  // below 0: the character height in pixels; above 0: the cell height
    LONG lfWidth;
    LONG lfEscapement;
    LONG lfOrientation;
    LONG lfWeight;
    BYTE lfItalic;
    BYTE lfUnderline;
    BYTE lfStrikeOut;
    BYTE lfCharSet;
    BYTE lfOutPrecision;
    BYTE lfClipPrecision;
    BYTE lfQuality;
    BYTE lfPitchAndFamily;
    WCHAR lfFaceName[LF_FACESIZE];
} LOGFONTW, *PLOGFONTW, *LPLOGFONTW;
typedef LOGFONTW LOGFONT;
typedef LPLOGFONTW LPLOGFONT;

typedef struct tagTEXTMETRICW {
    LONG tmHeight;
    LONG tmAscent;
    LONG tmDescent;
    LONG tmInternalLeading;
    LONG tmExternalLeading;
    LONG tmAveCharWidth;
    LONG tmMaxCharWidth;
    LONG tmWeight;
    LONG tmOverhang;
    LONG tmDigitizedAspectX;
    LONG tmDigitizedAspectY;
    WCHAR tmFirstChar;
    WCHAR tmLastChar;
    WCHAR tmDefaultChar;
    WCHAR tmBreakChar;
    BYTE tmItalic;
    BYTE tmUnderlined;
    BYTE tmStruckOut;
    BYTE tmPitchAndFamily;
    BYTE tmCharSet;
} TEXTMETRICW, *LPTEXTMETRICW;
typedef TEXTMETRICW TEXTMETRIC;
typedef LPTEXTMETRICW LPTEXTMETRIC;

extern "C" {
CADHOST_API HFONT WINAPI CreateFontIndirectW(const LOGFONTW* font);
CADHOST_API BOOL WINAPI DeleteObject(HGDIOBJ object);
CADHOST_API HGDIOBJ WINAPI GetStockObject(int index);
CADHOST_API int WINAPI GetObjectW(HGDIOBJ object, int size, LPVOID buffer);
// Device contexts: a window's context starts with the system font selected.
CADHOST_API HDC WINAPI GetDC(HWND window);
CADHOST_API int WINAPI ReleaseDC(HWND window, HDC dc);
CADHOST_API HDC WINAPI CreateCompatibleDC(HDC dc);
CADHOST_API BOOL WINAPI DeleteDC(HDC dc);
CADHOST_API HGDIOBJ WINAPI SelectObject(HDC dc, HGDIOBJ object);
CADHOST_API BOOL WINAPI GetTextExtentPoint32W(HDC dc, LPCWSTR text, int length, LPSIZE size);
CADHOST_API BOOL WINAPI GetTextMetricsW(HDC dc, LPTEXTMETRICW metrics);
CADHOST_API int WINAPI GetDeviceCaps(HDC dc, int index);
CADHOST_API COLORREF WINAPI SetTextColor(HDC dc, COLORREF color);
CADHOST_API COLORREF WINAPI SetBkColor(HDC dc, COLORREF color);
CADHOST_API int WINAPI SetBkMode(HDC dc, int mode);
// Writes text with its top left corner at x, y of the context's window, in
// the selected font and the context's colours; the host keeps what was
// written as the window's painting.
CADHOST_API BOOL WINAPI TextOutW(HDC dc, int x, int y, LPCWSTR text, int length);
}

#define CreateFontIndirect CreateFontIndirectW
#define GetObject GetObjectW
#define GetTextExtentPoint32 GetTextExtentPoint32W
#define GetTextMetrics GetTextMetricsW
#define TextOut TextOutW
