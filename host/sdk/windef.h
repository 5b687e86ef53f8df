// Handles and geometry of the window system.
#pragma once

#include "windows.h"

// Windows, menus, device contexts and drawing objects are handles; the
// host keeps what stands behind them.
struct HWND__;
typedef HWND__* HWND;
struct HMENU__;
typedef HMENU__* HMENU;
struct HDC__;
typedef HDC__* HDC;
struct HFONT__;
typedef HFONT__* HFONT;
struct HBRUSH__;
typedef HBRUSH__* HBRUSH;
struct HICON__;
typedef HICON__* HICON;
typedef HICON HCURSOR;
struct HBITMAP__;
typedef HBITMAP__* HBITMAP;
struct HRSRC__;
typedef HRSRC__* HRSRC;
typedef void* HGDIOBJ;
typedef UINT* PUINT;
typedef int* LPINT;

typedef struct tagRECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
} RECT, *PRECT, *LPRECT;
typedef const RECT* LPCRECT;

typedef struct tagPOINT {
    LONG x;
    LONG y;
} POINT, *PPOINT, *LPPOINT;

typedef struct tagSIZE {
    LONG cx;
    LONG cy;
} SIZE, *PSIZE, *LPSIZE;

#define MAKELONG(a, b) \
    (static_cast<LONG>(static_cast<DWORD>(LOWORD(a)) | (static_cast<DWORD>(LOWORD(b)) << 16)))
#define MAKEWPARAM(l, h) (static_cast<WPARAM>(static_cast<DWORD>(MAKELONG(l, h))))
#define MAKELPARAM(l, h) (static_cast<LPARAM>(static_cast<DWORD>(MAKELONG(l, h))))
#define MAKELRESULT(l, h) (static_cast<LRESULT>(static_cast<DWORD>(MAKELONG(l, h))))

#define RGB(r, g, b)                                                                          \
    (static_cast<COLORREF>(static_cast<BYTE>(r) | (static_cast<WORD>(static_cast<BYTE>(g)) << 8) | \
                           (static_cast<DWORD>(static_cast<BYTE>(b)) << 16)))
#define GetRValue(rgb) (static_cast<BYTE>(rgb))
#define GetGValue(rgb) (static_cast<BYTE>(static_cast<WORD>(rgb) >> 8))
#define GetBValue(rgb) (static_cast<BYTE>((rgb) >> 16))

extern "C" {
// Geometry helpers of the platform.
CADHOST_API int WINAPI MulDiv(int number, int numerator, int denominator);
CADHOST_API BOOL WINAPI SetRect(LPRECT rect, int left, int top, int right, int bottom);
CADHOST_API BOOL WINAPI SetRectEmpty(LPRECT rect);
CADHOST_API BOOL WINAPI OffsetRect(LPRECT rect, int dx, int dy);
CADHOST_API BOOL WINAPI InflateRect(LPRECT rect, int dx, int dy);
CADHOST_API BOOL WINAPI PtInRect(const RECT* rect, POINT point);
CADHOST_API BOOL WINAPI IsRectEmpty(const RECT* rect);
CADHOST_API BOOL WINAPI EqualRect(const RECT* a, const RECT* b);
}
