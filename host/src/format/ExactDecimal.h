// Decimal digits of a double, rounded as the platform's runtime rounds them:
// from the exact binary value, halves away from zero (0.5 gives 1, 2.5 gives 3).
#pragma once

#include <string>

namespace cadhost::format {

// A finite, non-negative value with a fixed number of decimals: "15.5000"
// for (15.5, 4), "16" for (15.5, 0). Negative decimals count as 0.
std::string FixedDigits(double magnitude, int decimals);

// A finite, non-negative value as a mantissa with a number of decimals and a
// power of ten: (15.5, 4) gives "1.5500" and 1; zero gives "0.0000" and 0.
struct ScientificDigits {
    std::string mantissa;
    int exponent = 0;
};
ScientificDigits ScientificParts(double magnitude, int decimals);

// Whether a digit text ("0.000", "12") stands for zero.
bool AllZeroDigits(const std::string& digits);

}  // namespace cadhost::format
