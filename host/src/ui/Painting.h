// What a window painted: the text it wrote, where, in which colours and
// font. The host draws nothing, but keeps the last painting of a window so
// that a script sees what the user would.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace cadhost::ui {

struct PaintedText {
    std::wstring text;
    POINT at{};
    COLORREF color = 0;
    COLORREF back = 0;
    int backMode = OPAQUE;
    LOGFONTW font{};
};

struct Painting {
    bool painted = false;  // the window has painted since it was made
    std::vector<PaintedText> texts;
};

// "painted "TEXT" at 0,0 color 0xFF0000 on 0xF0F0F0 underlined", one part
// for each text; "not painted" before the first painting.
std::wstring DescribePainting(const Painting& painting);

}  // namespace cadhost::ui
