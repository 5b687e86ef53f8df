// The host's fixed text metric. Widths are those of "Microsoft Sans Serif"
// at 8 points on a screen of 96 dots per inch, where a character is 11
// pixels high in a cell of 13: digits are 6 pixels wide, "i" and "l" 2,
// "m" 8, "W" and "@" 11; other characters and heights are in TextMetric.cpp.
// A font of another character height scales each width by height / 11,
// rounded; the face does not matter. Dialog base units follow from the
// metric as the platform computes them: 6 by 13 for that font.
#pragma once

#include <windows.h>

#include <string_view>

namespace cadhost::ui {

// The height of a character of the font in pixels (11 for 8 points).
int CharacterHeight(const LOGFONTW& font);
// The height of a line of the font (13 for 8 points).
int CellHeight(const LOGFONTW& font);
int CharacterWidth(const LOGFONTW& font, wchar_t c);
int TextWidth(const LOGFONTW& font, std::wstring_view text);
TEXTMETRICW TextMetrics(const LOGFONTW& font);
// The dialog base units of the font: the average width of the letters and
// the height of a line.
SIZE DialogBaseUnits(const LOGFONTW& font);

}  // namespace cadhost::ui
