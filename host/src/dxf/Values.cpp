#include "dxf/Values.h"

#include <charconv>
#include <cmath>

namespace cadhost::dxf {
namespace {
std::string_view Trim(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r')) text.remove_suffix(1);
    return text;
}
}  // namespace

ValueType ValueTypeOf(int code) {
    if (code >= 10 && code <= 59) return ValueType::kReal;
    if ((code >= 60 && code <= 99) || (code >= 160 && code <= 179) || (code >= 270 && code <= 299) ||
        (code >= 370 && code <= 389) || (code >= 400 && code <= 409) || (code >= 420 && code <= 429) ||
        (code >= 440 && code <= 459) || (code >= 1060 && code <= 1071))
        return ValueType::kInteger;
    if ((code >= 110 && code <= 149) || (code >= 210 && code <= 239) || (code >= 460 && code <= 469) ||
        (code >= 1010 && code <= 1059))
        return ValueType::kReal;
    if (code == 105 || (code >= 320 && code <= 369) || (code >= 390 && code <= 399) || (code >= 480 && code <= 481) ||
        code == 1005)
        return ValueType::kHandle;
    if ((code >= 310 && code <= 319) || code == 1004) return ValueType::kBinary;
    return ValueType::kText;
}

bool ParseReal(std::string_view text, double& value) {
    text = Trim(text);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    if (text.empty()) return false;
    double parsed = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), parsed);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(parsed)) return false;
    value = parsed;
    return true;
}

bool ParseInteger(std::string_view text, long long& value) {
    text = Trim(text);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    if (text.empty()) return false;
    long long parsed = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), parsed);
    if (error != std::errc() || end != text.data() + text.size()) return false;
    value = parsed;
    return true;
}

bool ParseHandle(std::string_view text, uint64_t& value) {
    text = Trim(text);
    if (text.empty() || text.size() > 16) return false;
    uint64_t parsed = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), parsed, 16);
    if (error != std::errc() || end != text.data() + text.size()) return false;
    value = parsed;
    return true;
}

void AppendReal(std::string& out, double value) {
    char buffer[64];
    auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value);
    std::string_view text(buffer, error == std::errc() ? static_cast<size_t>(end - buffer) : 0);
    out.append(text);
    if (text.find_first_of(".eEn") == std::string_view::npos) out.append(".0");
}

std::string FormatHandle(uint64_t value) {
    char buffer[17];
    auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value, 16);
    std::string text(buffer, static_cast<size_t>(end - buffer));
    for (char& c : text)
        if (c >= 'a' && c <= 'f') c = static_cast<char>(c - 'a' + 'A');
    return text;
}

}  // namespace cadhost::dxf
