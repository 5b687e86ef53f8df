// A line of text in link colours that opens an address when clicked. It
// takes the place, size and font of a static placeholder of a dialog; the
// setters come first, then CreateOver, which makes the font.
#pragma once

#include "StdAfx.h"

class CHyperlink : public CWnd {
public:
    CHyperlink();
    ~CHyperlink() override;

    void SetColors(COLORREF hover, COLORREF normal, COLORREF back);
    void SetCaption(LPCTSTR caption) { m_caption = caption; }
    void SetUrl(LPCTSTR url) { m_url = url; }
    void SetUnderline(int underline) { m_underline = underline; }
    void SetLinkCursor(HCURSOR cursor) { m_cursor = cursor; }

    // Makes the window over the placeholder, as a shown child of its parent
    // with the given id; 0 when the window class cannot be registered or
    // the placeholder is no child window.
    BOOL CreateOver(CWnd* placeholder, UINT id);

    COLORREF TextColor() const { return m_textColor; }
    const CString& Caption() const { return m_caption; }
    const CString& Url() const { return m_url; }

protected:
    afx_msg void OnPaint();
    afx_msg BOOL OnSetCursor(CWnd* pWnd, UINT nHitTest, UINT message);
    afx_msg void OnMouseMove(UINT nFlags, CPoint point);
    afx_msg void OnCaptureChanged(CWnd* pWnd);
    afx_msg void OnLButtonUp(UINT nFlags, CPoint point);

    COLORREF m_textColor;  // the colour the text shows in now
    COLORREF m_hoverColor;
    COLORREF m_backColor;
    COLORREF m_normalColor;
    CString m_caption;
    CString m_url;
    CFont m_font;
    int m_underline;
    HCURSOR m_cursor;

    DECLARE_MESSAGE_MAP()
};
