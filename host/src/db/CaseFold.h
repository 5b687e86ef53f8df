// Upper case for comparing names without regard to case, the same in every
// locale: Latin, Greek and Cyrillic letters.
#pragma once

namespace cadhost {

inline wchar_t UpperLetter(wchar_t c) {
    if (c < 0x80) return (c >= L'a' && c <= L'z') ? static_cast<wchar_t>(c - 32) : c;
    if ((c >= 0xE0 && c <= 0xFE && c != 0xF7)) return static_cast<wchar_t>(c - 32);
    if (c == 0xFF) return 0x178;
    // Latin Extended-A: pairs of upper and lower case.
    if ((c >= 0x100 && c <= 0x137) || (c >= 0x14A && c <= 0x177)) return static_cast<wchar_t>(c & ~1);
    if ((c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E)) return (c & 1) ? c : static_cast<wchar_t>(c - 1);
    if (c >= 0x3B1 && c <= 0x3C9 && c != 0x3C2) return static_cast<wchar_t>(c - 32);  // Greek
    if (c == 0x3C2) return 0x3A3;
    if (c >= 0x430 && c <= 0x44F) return static_cast<wchar_t>(c - 32);  // Cyrillic
    if (c >= 0x450 && c <= 0x45F) return static_cast<wchar_t>(c - 80);
    return c;
}

}  // namespace cadhost
