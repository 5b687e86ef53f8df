// The number format text of a measurement or count field (the text of its
// \f option): composing it from a page's choices and reading it back.
#pragma once

#include "StdAfx.h"

// The values behind the additional piece of a format text; each page that
// formats numbers holds one, the Additional Format dialog edits a copy.
struct AdditionalFormat {
    double m_factor = 1.0;
    CString m_prefix;
    CString m_suffix;
    int m_leadingZero = 0;
    int m_trailingZero = 0;
    int m_zeroFeet = 0;
    int m_zeroInches = 0;
};

// ---- Composing -------------------------------------------------------------

// The additional piece: %ps[prefix,suffix] when either text is given (both
// escaped), %ct8[factor] unless the factor is nearly 1, %ds<n> and %th<n>
// for separators above 0, %zs<n> with n = 1 zero feet + 2 zero inches + 4
// leading + 8 trailing when above 0. A flag counts when it is not 0.
CString ComposeAdditionalFormat(double factor, CString prefix, CString suffix, int decimalSeparator,
                                int thousandsSeparator, int zeroFeet, int zeroInches, int leadingZero,
                                int trailingZero);
// The same for a page's set, without separators.
CString ComposeAdditionalFormat(const AdditionalFormat& format);

// Escapes a prefix or suffix for %ps[...] (backslash, comma and brackets
// get a backslash) when the host's major release is above 16; older hosts
// take the text as it is.
void EscapeFormatText(CString& text);
// Undoes the escapes: \\ \, \[ \] become \ , [ ].
void UnescapeFormatText(CString& text);

// The units piece of the Objects Area and Objects Length pages for the
// selected entry of the units list, by its item data (-1 current units, 0
// none, 1 to 5 a unit code); empty when no entry is selected.
CString GetAreaUnitsFormat(BOOL selected, int itemData);
CString GetLengthUnitsFormat(BOOL selected, int itemData);

// The precision piece: %pr<n> with the item data of the selected entry, or
// empty when the combo box is disabled, nothing is selected or the item data
// is negative ("Current precision").
CString GetPrecisionFormat(BOOL enabled, BOOL selected, int itemData);

// The format text of a measurement page: units, precision and additional
// piece, in that order, with nothing between them.
CString JoinFormat(const CString& unitsPiece, const CString& precisionPiece, const CString& additionalPiece);

// ---- Reading ---------------------------------------------------------------

// Reads the prefix and suffix of %ps[...]. The last unescaped comma before
// the closing bracket parts them; an escaped character has an odd number of
// backslashes before it. Without "%ps[" both are emptied; an output that
// the text does not reach keeps its value. Hosts below release 17 have no
// escapes: the first comma and the next closing bracket part them. Always
// TRUE.
BOOL ParsePrefixSuffix(const CString& format, CString& prefix, CString& suffix);

// What the format text of a measurement page says, to be applied to the
// page: the unit and precision codes to select, and its additional values.
struct MeasureFormatState {
    BOOL m_hasUnits = FALSE;
    int m_units = 0;
    BOOL m_hasPrecision = FALSE;
    int m_precision = 0;
    AdditionalFormat m_additional;
};

// Reads units, precision, prefix and suffix, factor and zero suppression,
// in that order. A directive that the text lacks leaves its part of state
// alone, as does a factor beyond the doubles, except that a text
// without "%ps[" empties prefix and suffix; the
// page applies units before precision, since the units choice rebuilds the
// precision list.
void ReadMeasureFormat(const CString& format, MeasureFormatState& state);

// Reads prefix and suffix, factor and zero suppression, in that order: the
// Block Count page's format text, which has no units or precision.
void ReadAdditionalFormat(const CString& format, AdditionalFormat& additional);
