#include "format/ExactDecimal.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <vector>

namespace cadhost::format {
namespace {

// The exact decimal expansion of a finite, non-negative double: all its
// digits, and how many of them stand before the point.
struct Expansion {
    std::string digits;
    int whole = 0;
};

Expansion Expand(double magnitude) {
    // A double is m * 2^e with a 53-bit m, so it has exactly -e decimals when
    // e is negative; printing that many decimals rounds nothing.
    int exponent = 0;
    std::frexp(magnitude, &exponent);
    int decimals = std::clamp(53 - exponent, 0, 1074);
    std::vector<char> buffer(static_cast<size_t>(decimals) + 400);
    auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), magnitude, std::chars_format::fixed,
                                decimals);
    Expansion out;
    if (result.ec != std::errc()) {
        out.digits = "0";
        out.whole = 1;
        return out;
    }
    std::string text(buffer.data(), result.ptr);
    size_t point = text.find('.');
    out.whole = static_cast<int>(point == std::string::npos ? text.size() : point);
    if (point != std::string::npos) text.erase(point, 1);
    out.digits = std::move(text);
    return out;
}

// Keeps the first count digits and rounds by the next one; answers true
// when the carry ran over the first digit (a "1" was put in front).
bool RoundDigits(std::string& digits, size_t count) {
    bool up = count < digits.size() && digits[count] >= '5';
    digits.resize(count, '0');
    if (!up) return false;
    for (size_t i = digits.size(); i-- > 0;) {
        if (digits[i] != '9') {
            ++digits[i];
            return false;
        }
        digits[i] = '0';
    }
    digits.insert(digits.begin(), '1');
    return true;
}

}  // namespace

std::string FixedDigits(double magnitude, int decimals) {
    decimals = std::max(decimals, 0);
    if (!std::isfinite(magnitude) || magnitude < 0) magnitude = 0;
    Expansion exact = Expand(magnitude);
    std::string digits = exact.digits;
    int whole = exact.whole;
    if (RoundDigits(digits, static_cast<size_t>(whole + decimals))) ++whole;
    std::string integer = digits.substr(0, static_cast<size_t>(whole));
    size_t first = integer.find_first_not_of('0');
    integer = first == std::string::npos ? "0" : integer.substr(first);
    if (decimals == 0) return integer;
    return integer + "." + digits.substr(static_cast<size_t>(whole));
}

ScientificDigits ScientificParts(double magnitude, int decimals) {
    decimals = std::max(decimals, 0);
    ScientificDigits out;
    if (!std::isfinite(magnitude) || magnitude <= 0) {
        out.mantissa = decimals ? "0." + std::string(static_cast<size_t>(decimals), '0') : "0";
        return out;
    }
    Expansion exact = Expand(magnitude);
    size_t first = exact.digits.find_first_not_of('0');
    std::string significant = exact.digits.substr(first);
    out.exponent = exact.whole - static_cast<int>(first) - 1;
    if (RoundDigits(significant, static_cast<size_t>(decimals) + 1)) {
        significant.pop_back();  // 9.99 became 10.00: one digit more, one power more
        ++out.exponent;
    }
    out.mantissa = significant.substr(0, 1);
    if (decimals) out.mantissa += "." + significant.substr(1);
    return out;
}

bool AllZeroDigits(const std::string& digits) {
    return std::all_of(digits.begin(), digits.end(), [](char c) { return c == '0' || c == '.'; });
}

}  // namespace cadhost::format
