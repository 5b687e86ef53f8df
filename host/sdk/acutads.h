// Conversions of the platform's utility interface between numbers and text.
#pragma once

#include <cstddef>

#include "adsdef.h"

// The text of a real in linear units: 1 scientific (1.5500E+01), 2 decimal
// (15.5000), 3 engineering (1'-3.5000"), 4 architectural (1'-3 1/2"), 5
// fractional (15 1/2); -1 takes LUNITS of the working drawing. The precision
// is the number of decimals, or for units 4 and 5 the power of two of the
// denominator; -1 takes LUPREC, more than 8 counts as 8. Zeros are left out
// as DIMZIN of the working drawing says. RTNORM, or RTERROR with an empty
// text for bad units or precision, a value that is not a finite number, or
// a text that does not fit. The first form writes at most
// ACDB_RTOS_TEXT_MAX characters with the end zero; the second at most size.
#define ACDB_RTOS_TEXT_MAX 256
CADHOST_API int acdbRToS(ads_real value, int units, int precision, ACHAR* text);
CADHOST_API int acdbRToS(ads_real value, int units, int precision, ACHAR* text, size_t size);
