// cadhost as a desktop program: the main window on the running host.
#pragma once

#include <filesystem>
#include <optional>
#include <ostream>

#include "app/Host.h"

namespace cadhost::gui {

struct GuiOptions {
    // Draws the first tab's view into this PNG file at this size and ends,
    // instead of waiting for the user (for pictures and tests).
    std::optional<std::filesystem::path> snapshot;
    int width = 1100, height = 760;
};

// Runs the window until it is closed; the exit status of the program.
int RunGui(Host& host, const GuiOptions& options, std::ostream& errors);

}  // namespace cadhost::gui
