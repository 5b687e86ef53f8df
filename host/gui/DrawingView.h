// The drawing view: one space of the drawing in a window, panned with the
// middle or left button held, zoomed with the wheel about the pointer.
#pragma once

#include "view/Drawing.h"

#include <wx/window.h>

#include <vector>

namespace cadhost::gui {

class DrawingView : public wxWindow {
public:
    DrawingView(wxWindow* parent, view::Scenes& scenes, AcDbObjectId space);

    void ZoomExtents();
    // Draws again: the drawing changed.
    void Redraw() {
        m_stale = true;
        Refresh(false);
    }
    // Draws the view as it stands into an image of the given size (the
    // window's own when zero), texts included.
    wxImage Picture(int width = 0, int height = 0);
    const view::DrawCounts& lastCounts() const { return m_counts; }
    double lastDrawMilliseconds() const { return m_lastMilliseconds; }

private:
    void OnPaint(wxPaintEvent& event);
    void OnSize(wxSizeEvent& event);
    void OnWheel(wxMouseEvent& event);
    void OnButtonDown(wxMouseEvent& event);
    void OnButtonUp(wxMouseEvent& event);
    void OnMotion(wxMouseEvent& event);
    void OnDoubleClick(wxMouseEvent& event);
    void OnKey(wxKeyEvent& event);
    // Draws the raster of the current view when it is out of date.
    void Render(int width, int height);
    static void DrawLabels(wxDC& dc, const std::vector<view::ShownLabel>& labels);

    view::Scenes& m_scenes;
    AcDbObjectId m_space;
    view::ViewTransform m_view;
    bool m_zoomed = false;  // the first size zooms to the extents
    view::Raster m_raster{1, 1};
    std::vector<view::ShownLabel> m_labels;
    bool m_stale = true;
    view::DrawCounts m_counts;
    double m_lastMilliseconds = 0;
    bool m_dragging = false;
    wxPoint m_dragFrom;
};

}  // namespace cadhost::gui
