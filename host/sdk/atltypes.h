// CPoint, CSize and CRect: the framework's geometry classes over the
// platform's POINT, SIZE and RECT.
#pragma once

#include <utility>

#include "windows.h"

class CSize : public tagSIZE {
public:
    CSize() { cx = cy = 0; }
    CSize(int x, int y) { cx = x, cy = y; }
    CSize(SIZE size) { cx = size.cx, cy = size.cy; }
    bool operator==(SIZE size) const { return cx == size.cx && cy == size.cy; }
    bool operator!=(SIZE size) const { return !(*this == size); }
};

class CPoint : public tagPOINT {
public:
    CPoint() { x = y = 0; }
    CPoint(int ix, int iy) { x = ix, y = iy; }
    CPoint(POINT point) { x = point.x, y = point.y; }
    void Offset(int dx, int dy) { x += dx, y += dy; }
    bool operator==(POINT point) const { return x == point.x && y == point.y; }
    bool operator!=(POINT point) const { return !(*this == point); }
};

class CRect : public tagRECT {
public:
    CRect() { left = top = right = bottom = 0; }
    CRect(int l, int t, int r, int b) { left = l, top = t, right = r, bottom = b; }
    CRect(const RECT& rect) { left = rect.left, top = rect.top, right = rect.right, bottom = rect.bottom; }
    CRect(LPCRECT rect) : CRect(*rect) {}
    CRect(POINT topLeft, SIZE size) : CRect(topLeft.x, topLeft.y, topLeft.x + size.cx, topLeft.y + size.cy) {}

    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    CSize Size() const { return CSize(Width(), Height()); }
    CPoint TopLeft() const { return CPoint(left, top); }
    CPoint BottomRight() const { return CPoint(right, bottom); }
    CPoint CenterPoint() const { return CPoint((left + right) / 2, (top + bottom) / 2); }
    BOOL IsRectEmpty() const { return right <= left || bottom <= top; }
    BOOL IsRectNull() const { return left == 0 && top == 0 && right == 0 && bottom == 0; }
    BOOL PtInRect(POINT point) const { return point.x >= left && point.x < right && point.y >= top && point.y < bottom; }
    void SetRect(int l, int t, int r, int b) { left = l, top = t, right = r, bottom = b; }
    void SetRectEmpty() { SetRect(0, 0, 0, 0); }
    void OffsetRect(int dx, int dy) { left += dx, right += dx, top += dy, bottom += dy; }
    void OffsetRect(POINT point) { OffsetRect(point.x, point.y); }
    void InflateRect(int dx, int dy) { left -= dx, right += dx, top -= dy, bottom += dy; }
    void DeflateRect(int dx, int dy) { InflateRect(-dx, -dy); }
    void NormalizeRect() {
        if (left > right) std::swap(left, right);
        if (top > bottom) std::swap(top, bottom);
    }
    operator LPRECT() { return this; }
    operator LPCRECT() const { return this; }
    bool operator==(const RECT& rect) const {
        return left == rect.left && top == rect.top && right == rect.right && bottom == rect.bottom;
    }
    bool operator!=(const RECT& rect) const { return !(*this == rect); }
};
