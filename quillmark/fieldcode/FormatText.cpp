#include "fieldcode/FormatText.h"

#include "ArxUtils/ArxUtils.h"

#include <cmath>

namespace {

// Hosts above release 16 read escapes inside %ps[...].
bool HostEscapesFormatText() { return acdbHostApplicationServices()->releaseMajorVersion() > 16; }

}  // namespace

// ---- Composing -------------------------------------------------------------

CString ComposeAdditionalFormat(double factor, CString prefix, CString suffix, int decimalSeparator,
                                int thousandsSeparator, int zeroFeet, int zeroInches, int leadingZero,
                                int trailingZero) {
    CString format;
    if (!prefix.IsEmpty() || !suffix.IsEmpty()) {
        EscapeFormatText(prefix);
        EscapeFormatText(suffix);
        format.AppendFormat(L"%%ps[%s,%s]", prefix.GetString(), suffix.GetString());
    }
    if (!IsNearlyEqual(factor, 1.0)) format.AppendFormat(L"%%ct8[%g]", factor);
    if (decimalSeparator > 0) format.AppendFormat(L"%%ds%d", decimalSeparator);
    if (thousandsSeparator > 0) format.AppendFormat(L"%%th%d", thousandsSeparator);
    int zeros = (zeroFeet ? 1 : 0) + (zeroInches ? 2 : 0) + (leadingZero ? 4 : 0) + (trailingZero ? 8 : 0);
    if (zeros > 0) format.AppendFormat(L"%%zs%d", zeros);
    return format;
}

CString ComposeAdditionalFormat(const AdditionalFormat& format) {
    return ComposeAdditionalFormat(format.m_factor, format.m_prefix, format.m_suffix, 0, 0, format.m_zeroFeet,
                                   format.m_zeroInches, format.m_leadingZero, format.m_trailingZero);
}

void EscapeFormatText(CString& text) {
    if (!HostEscapesFormatText()) return;
    text.Replace(L"\\", L"\\\\");
    text.Replace(L",", L"\\,");
    text.Replace(L"[", L"\\[");
    text.Replace(L"]", L"\\]");
}

void UnescapeFormatText(CString& text) {
    text.Replace(L"\\\\", L"\\");
    text.Replace(L"\\,", L",");
    text.Replace(L"\\[", L"[");
    text.Replace(L"\\]", L"]");
}

CString GetAreaUnitsFormat(BOOL selected, int itemData) {
    if (!selected) return CString();
    switch (itemData) {
    case -1: return L"%lu6%qf1";
    case 1: return L"%lu1";
    case 2: return L"%lu2";
    case 3:
    case 4: return L"%lu2%ct4%qf1 SQ. FT.";  // areas in square feet, not in feet and inches
    case 5: return L"%lu5";
    default: return CString();
    }
}

CString GetLengthUnitsFormat(BOOL selected, int itemData) {
    if (!selected) return CString();
    if (itemData == -1) return L"%lu6";
    CString format;
    if (itemData >= 1 && itemData <= 5) format.Format(L"%%lu%d", itemData);
    return format;
}

CString GetPrecisionFormat(BOOL enabled, BOOL selected, int itemData) {
    CString format;
    if (enabled && selected && itemData >= 0) format.Format(L"%%pr%d", itemData);
    return format;
}

CString JoinFormat(const CString& unitsPiece, const CString& precisionPiece, const CString& additionalPiece) {
    return unitsPiece + precisionPiece + additionalPiece;
}

// ---- Reading ---------------------------------------------------------------

BOOL ParsePrefixSuffix(const CString& format, CString& prefix, CString& suffix) {
    int at = format.Find(L"%ps[");
    if (at < 0) {
        prefix.Empty();
        suffix.Empty();
        return TRUE;
    }
    const bool escapes = HostEscapesFormatText();
    const int start = at + 4, length = format.GetLength();
    int comma = -1;
    bool gotPrefix = false, gotSuffix = false;
    int backslashes = 0;
    for (int i = start; i < length; ++i) {
        wchar_t c = format[i];
        bool escaped = escapes && backslashes % 2 == 1;
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        if (escaped) continue;
        if (c == L',' && (escapes || comma < 0)) {
            comma = i;
            prefix = format.Mid(start, i - start);
            gotPrefix = true;
        } else if (c == L']' && comma >= 0) {
            suffix = format.Mid(comma + 1, i - comma - 1);
            gotSuffix = true;
            break;
        }
    }
    if (escapes) {
        if (gotPrefix && !prefix.IsEmpty()) UnescapeFormatText(prefix);
        if (gotSuffix && !suffix.IsEmpty()) UnescapeFormatText(suffix);
    }
    return TRUE;
}

namespace {

// Capture 0 of a pattern in the format text, when it matched with one.
bool ReadCapture(const CString& format, LPCTSTR pattern, CString& capture) {
    CStringArray captures;
    if (!MatchPattern(format, pattern, captures) || captures.GetSize() < 1) return false;
    capture = captures[0];
    return true;
}

}  // namespace

void ReadAdditionalFormat(const CString& format, AdditionalFormat& additional) {
    ParsePrefixSuffix(format, additional.m_prefix, additional.m_suffix);
    CString capture;
    if (ReadCapture(format, L"%ct8\\[{.*}\\]", capture)) {
        // A factor beyond the doubles ("1e400") is not taken: it would go
        // into every code composed from now on as "inf".
        double factor = _wtof(capture);
        if (std::isfinite(factor)) additional.m_factor = factor;
    }
    if (ReadCapture(format, L"%zs{[0-9]+}", capture)) {
        int zeros = _wtoi(capture);
        additional.m_zeroFeet = (zeros & 1) ? 1 : 0;
        additional.m_zeroInches = (zeros & 2) ? 1 : 0;
        additional.m_leadingZero = (zeros & 4) ? 1 : 0;
        additional.m_trailingZero = (zeros & 8) ? 1 : 0;
    }
}

void ReadMeasureFormat(const CString& format, MeasureFormatState& state) {
    CString capture;
    if (ReadCapture(format, L"%lu{[0-9]+}", capture)) {
        state.m_hasUnits = TRUE;
        state.m_units = _wtoi(capture);
    }
    if (ReadCapture(format, L"%pr{[0-9]+}", capture)) {
        state.m_hasPrecision = TRUE;
        state.m_precision = _wtoi(capture);
    }
    ReadAdditionalFormat(format, state.m_additional);
}
