#include "DrawingView.h"

#include <wx/dcbuffer.h>
#include <wx/dcmemory.h>
#include <wx/font.h>
#include <wx/image.h>

#include <chrono>
#include <cmath>

namespace cadhost::gui {

DrawingView::DrawingView(wxWindow* parent, view::Scenes& scenes, AcDbObjectId space)
    : wxWindow(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxWANTS_CHARS | wxFULL_REPAINT_ON_RESIZE),
      m_scenes(scenes), m_space(space) {
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    Bind(wxEVT_PAINT, &DrawingView::OnPaint, this);
    Bind(wxEVT_SIZE, &DrawingView::OnSize, this);
    Bind(wxEVT_MOUSEWHEEL, &DrawingView::OnWheel, this);
    Bind(wxEVT_LEFT_DOWN, &DrawingView::OnButtonDown, this);
    Bind(wxEVT_MIDDLE_DOWN, &DrawingView::OnButtonDown, this);
    Bind(wxEVT_LEFT_UP, &DrawingView::OnButtonUp, this);
    Bind(wxEVT_MIDDLE_UP, &DrawingView::OnButtonUp, this);
    Bind(wxEVT_MOTION, &DrawingView::OnMotion, this);
    Bind(wxEVT_MIDDLE_DCLICK, &DrawingView::OnDoubleClick, this);
    Bind(wxEVT_CHAR_HOOK, &DrawingView::OnKey, this);
}

void DrawingView::ZoomExtents() {
    m_view.ZoomTo(m_scenes.Of(m_space).box);
    m_zoomed = true;
    m_stale = true;
    Refresh(false);
}

void DrawingView::Render(int width, int height) {
    if (!m_stale && m_raster.width() == width && m_raster.height() == height) return;
    auto started = std::chrono::steady_clock::now();
    if (m_raster.width() != width || m_raster.height() != height) m_raster = view::Raster(width, height);
    m_view.width = width;
    m_view.height = height;
    m_counts = view::DrawSpace(m_scenes, m_space, m_view, m_raster, m_labels);
    m_stale = false;
    m_lastMilliseconds = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - started).count();
}

void DrawingView::DrawLabels(wxDC& dc, const std::vector<view::ShownLabel>& labels) {
    for (const view::ShownLabel& label : labels) {
        // The font's size in pixels from the height of a capital letter.
        int pixels = std::max(1, static_cast<int>(std::lround(label.pixelHeight / 0.72)));
        if (pixels > 2000) continue;
        wxFont font(wxFontInfo(wxSize(0, pixels)).Family(wxFONTFAMILY_SWISS));
        dc.SetFont(font);
        dc.SetTextForeground(wxColour(label.color.r, label.color.g, label.color.b));
        dc.SetClippingRegion(label.clip.x0, label.clip.y0, label.clip.x1 - label.clip.x0, label.clip.y1 - label.clip.y0);
        std::wstring text = *label.text;
        std::vector<wxString> lines;
        for (size_t from = 0;;) {
            size_t end = text.find(L'\n', from);
            lines.emplace_back(text.substr(from, end == std::wstring::npos ? std::wstring::npos : end - from));
            if (end == std::wstring::npos) break;
            from = end + 1;
        }
        double spacing = label.pixelHeight * 5 / 3;
        wxCoord ascent = 0, descent = 0, width = 0, height = 0, leading = 0;
        dc.GetTextExtent(wxS("X"), &width, &height, &descent, &leading);
        ascent = height - descent;
        double block = spacing * static_cast<double>(lines.size() - 1) + label.pixelHeight;
        // The first line's top, down from the aligned point.
        double top = label.vertical == 0   ? -ascent
                     : label.vertical == 1 ? -block - (ascent - label.pixelHeight)
                     : label.vertical == 2 ? -block / 2 - (ascent - label.pixelHeight)
                                           : -(ascent - label.pixelHeight);
        double alongX = std::cos(label.rotation), alongY = -std::sin(label.rotation);
        double downX = std::sin(label.rotation), downY = std::cos(label.rotation);
        for (size_t i = 0; i < lines.size(); ++i) {
            wxCoord lineWidth = 0, lineHeight = 0;
            dc.GetTextExtent(lines[i], &lineWidth, &lineHeight);
            double left = label.horizontal == 1 ? -lineWidth / 2.0 : label.horizontal == 2 ? -lineWidth : 0;
            double down = top + spacing * static_cast<double>(i);
            double x = label.x + alongX * left + downX * down, y = label.y + alongY * left + downY * down;
            dc.DrawRotatedText(lines[i], static_cast<wxCoord>(std::lround(x)), static_cast<wxCoord>(std::lround(y)),
                               label.rotation * 180 / M_PI);
        }
        dc.DestroyClippingRegion();
    }
}

wxImage DrawingView::Picture(int width, int height) {
    wxSize size = GetClientSize();
    if (width <= 0 || height <= 0) width = size.x, height = size.y;
    if (!m_zoomed) {
        m_view.width = width;
        m_view.height = height;
        ZoomExtents();
    }
    Render(width, height);
    wxImage image(width, height, const_cast<unsigned char*>(m_raster.bytes()), true);
    wxBitmap bitmap(image);
    {
        wxMemoryDC dc(bitmap);
        DrawLabels(dc, m_labels);
    }
    return bitmap.ConvertToImage();
}

void DrawingView::OnPaint(wxPaintEvent&) {
    wxAutoBufferedPaintDC dc(this);
    wxSize size = GetClientSize();
    if (size.x <= 0 || size.y <= 0) return;
    if (!m_zoomed) {
        m_view.width = size.x;
        m_view.height = size.y;
        ZoomExtents();
    }
    Render(size.x, size.y);
    wxImage image(size.x, size.y, const_cast<unsigned char*>(m_raster.bytes()), true);
    dc.DrawBitmap(wxBitmap(image), 0, 0);
    DrawLabels(dc, m_labels);
}

void DrawingView::OnSize(wxSizeEvent& event) {
    m_stale = true;
    Refresh(false);
    event.Skip();
}

void DrawingView::OnWheel(wxMouseEvent& event) {
    double steps = static_cast<double>(event.GetWheelRotation()) / std::max(1, event.GetWheelDelta());
    m_view.ZoomAbout(event.GetX(), event.GetY(), std::pow(1.25, steps));
    m_stale = true;
    Refresh(false);
}

void DrawingView::OnButtonDown(wxMouseEvent& event) {
    SetFocus();
    m_dragging = true;
    m_dragFrom = event.GetPosition();
    if (!HasCapture()) CaptureMouse();
}

void DrawingView::OnButtonUp(wxMouseEvent&) {
    m_dragging = false;
    if (HasCapture()) ReleaseMouse();
}

void DrawingView::OnMotion(wxMouseEvent& event) {
    if (!m_dragging || !(event.LeftIsDown() || event.MiddleIsDown())) return;
    wxPoint at = event.GetPosition();
    m_view.Pan(at.x - m_dragFrom.x, at.y - m_dragFrom.y);
    m_dragFrom = at;
    m_stale = true;
    Refresh(false);
}

void DrawingView::OnDoubleClick(wxMouseEvent&) { ZoomExtents(); }

void DrawingView::OnKey(wxKeyEvent& event) {
    switch (event.GetKeyCode()) {
    case WXK_HOME: ZoomExtents(); return;
    case '+': case '=': m_view.ZoomAbout(m_view.width / 2.0, m_view.height / 2.0, 1.25); break;
    case '-': m_view.ZoomAbout(m_view.width / 2.0, m_view.height / 2.0, 0.8); break;
    default: event.Skip(); return;
    }
    m_stale = true;
    Refresh(false);
}

}  // namespace cadhost::gui
