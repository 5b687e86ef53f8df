#include "GuiMain.h"

#include <wx/app.h>
#include <wx/image.h>
#include <wx/init.h>
#include <wx/log.h>

#include <chrono>
#include <cstdlib>

#include "DrawingView.h"
#include "MainFrame.h"

namespace cadhost::gui {
namespace {

class GuiApp : public wxApp {
public:
    GuiApp(Host& host, const GuiOptions& options, std::ostream& errors)
        : m_host(host), m_options(options), m_errors(errors) {}

    bool OnInit() override {
        wxInitAllImageHandlers();
        auto* frame = new MainFrame(m_host);
        frame->SetClientSize(m_options.width, m_options.height + 160);
        if (!m_options.snapshot) {
            frame->Show();
            return true;
        }
        // A picture of the first view at the asked size, then the end; the
        // library's own complaints go to standard error, never to a box
        // that nobody will close.
        delete wxLog::SetActiveTarget(new wxLogStream(&m_errors));
        DrawingView* view = frame->CurrentView();
        if (!view) {
            m_errors << "cadhost: the drawing has no space to show\n";
            m_status = 1;
        } else {
            auto started = std::chrono::steady_clock::now();
            wxImage picture = view->Picture(m_options.width, m_options.height);
            double ms = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - started).count();
            if (!picture.SaveFile(wxString::FromUTF8(m_options.snapshot->string()), wxBITMAP_TYPE_PNG)) {
                m_errors << "cadhost: cannot write " << m_options.snapshot->string() << "\n";
                m_status = 1;
            } else {
                const view::DrawCounts& counts = view->lastCounts();
                m_errors << "cadhost: drew " << counts.outlines << " outlines, " << counts.labels << " texts, "
                         << counts.placements << " block references, " << counts.dots << " dots in "
                         << static_cast<long>(ms) << " ms\n";
            }
        }
        frame->Destroy();
        return false;  // nothing more to run
    }
    int status() const { return m_status; }

private:
    Host& m_host;
    const GuiOptions& m_options;
    std::ostream& m_errors;
    int m_status = 0;
};

}  // namespace

int RunGui(Host& host, const GuiOptions& options, std::ostream& errors) {
    auto* app = new GuiApp(host, options, errors);
    wxApp::SetInstance(app);
    int argc = 1;
    char name[] = "cadhost";
    char* argv[] = {name, nullptr};
    if (!wxEntryStart(argc, argv)) {
        errors << "cadhost: cannot open a window (is a display there? DISPLAY=" 
               << (std::getenv("DISPLAY") ? std::getenv("DISPLAY") : "") << ")\n";
        return 2;
    }
    int status = 0;
    if (app->CallOnInit()) {
        status = app->OnRun();
        app->OnExit();
    } else {
        status = app->status();
    }
    wxEntryCleanup();
    return status;
}

}  // namespace cadhost::gui
