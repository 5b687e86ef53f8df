#include "ui/TextMetric.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace cadhost::ui {
namespace {

constexpr int kReferenceHeight = 11;  // of the widths below
constexpr int kReferenceCell = 13;
constexpr int kOtherWidth = 6;  // characters beyond the table

// Advance widths at the reference height for the characters 32 to 126.
constexpr unsigned char kWidths[95] = {
    3, 3, 4, 6, 6, 9, 7, 2, 3, 3, 4, 6, 3, 4, 3, 3,   // space ! " # $ % & ' ( ) * + , - . /
    6, 6, 6, 6, 6, 6, 6, 6, 6, 6,                     // 0 to 9
    3, 3, 6, 6, 6, 6, 11,                             // : ; < = > ? @
    7, 7, 8, 8, 7, 6, 8, 8, 3, 5, 7, 6, 9,            // A to M
    8, 8, 7, 8, 8, 7, 7, 8, 7, 11, 7, 7, 7,           // N to Z
    3, 3, 3, 5, 6, 3,                                 // [ \ ] ^ _ `
    6, 6, 5, 6, 6, 3, 6, 6, 2, 2, 5, 2, 8,            // a to m
    6, 6, 6, 6, 3, 5, 3, 6, 5, 8, 5, 5, 5,            // n to z
    4, 3, 4, 7,                                       // { | } ~
};

int Scaled(int width, int height) {
    return static_cast<int>(std::lround(static_cast<double>(width) * height / kReferenceHeight));
}

}  // namespace

int CharacterHeight(const LOGFONTW& font) {
    if (font.lfHeight < 0) return std::min<int>(-font.lfHeight, 4096);
    if (font.lfHeight > 0)
        return std::max(1, static_cast<int>(std::lround(static_cast<double>(std::min<LONG>(font.lfHeight, 4096)) *
                                                        kReferenceHeight / kReferenceCell)));
    return kReferenceHeight;
}

int CellHeight(const LOGFONTW& font) {
    if (font.lfHeight > 0) return std::min<int>(font.lfHeight, 4096);
    return static_cast<int>(std::lround(static_cast<double>(CharacterHeight(font)) * kReferenceCell / kReferenceHeight));
}

int CharacterWidth(const LOGFONTW& font, wchar_t c) {
    int height = CharacterHeight(font);
    if (c < 32) return 0;
    if (c <= 126) return Scaled(kWidths[c - 32], height);
    return Scaled(kOtherWidth, height);
}

int TextWidth(const LOGFONTW& font, std::wstring_view text) {
    int width = 0;
    for (wchar_t c : text) width += CharacterWidth(font, c);
    return width;
}

SIZE DialogBaseUnits(const LOGFONTW& font) {
    int letters = TextWidth(font, L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    SIZE size;
    size.cx = (letters / 26 + 1) / 2;
    size.cy = CellHeight(font);
    return size;
}

TEXTMETRICW TextMetrics(const LOGFONTW& font) {
    TEXTMETRICW metrics{};
    int cell = CellHeight(font);
    int height = CharacterHeight(font);
    metrics.tmHeight = cell;
    metrics.tmDescent = static_cast<LONG>(std::lround(cell * 2.0 / kReferenceCell));
    metrics.tmAscent = cell - metrics.tmDescent;
    metrics.tmInternalLeading = cell - height;
    metrics.tmAveCharWidth = DialogBaseUnits(font).cx;
    metrics.tmMaxCharWidth = Scaled(11, height);
    metrics.tmWeight = font.lfWeight ? font.lfWeight : FW_NORMAL;
    metrics.tmDigitizedAspectX = 96;
    metrics.tmDigitizedAspectY = 96;
    metrics.tmFirstChar = 32;
    metrics.tmLastChar = 0xFFFF;
    metrics.tmDefaultChar = L'?';
    metrics.tmBreakChar = L' ';
    metrics.tmItalic = font.lfItalic;
    metrics.tmUnderlined = font.lfUnderline;
    metrics.tmStruckOut = font.lfStrikeOut;
    metrics.tmCharSet = font.lfCharSet;
    return metrics;
}

}  // namespace cadhost::ui
