#include "view/AciColors.h"

#include <cstdlib>

namespace cadhost::view {
namespace {

// The fully saturated colour of a hue in steps of 15 degrees, as a
// fraction 0 to 1 of each channel.
void Hue(int step, double& r, double& g, double& b) {
    double h = step * 15.0 / 60.0;  // sextant and fraction
    int sextant = static_cast<int>(h);
    double f = h - sextant;
    switch (sextant % 6) {
    case 0: r = 1, g = f, b = 0; break;
    case 1: r = 1 - f, g = 1, b = 0; break;
    case 2: r = 0, g = 1, b = f; break;
    case 3: r = 0, g = 1 - f, b = 1; break;
    case 4: r = f, g = 0, b = 1; break;
    default: r = 1, g = 0, b = 1 - f; break;
    }
}

}  // namespace

Rgb AciColor(int index) {
    index = std::abs(index);
    static constexpr Rgb kFirst[] = {{255, 0, 0},   {255, 255, 0}, {0, 255, 0},     {0, 255, 255}, {0, 0, 255},
                                     {255, 0, 255}, {255, 255, 255}, {128, 128, 128}, {192, 192, 192}};
    static constexpr Rgb kGreys[] = {{51, 51, 51}, {80, 80, 80}, {105, 105, 105},
                                     {130, 130, 130}, {190, 190, 190}, {255, 255, 255}};
    if (index >= 1 && index <= 9) return kFirst[index - 1];
    if (index >= 250 && index <= 255) return kGreys[index - 250];
    if (index < 10 || index > 255) return {255, 255, 255};
    // Ten shades of each of 24 hues: five brightnesses, each full and
    // half-saturated.
    static constexpr double kBrightness[] = {255, 165, 127, 76, 38};
    int shade = index % 10;
    double value = kBrightness[shade / 2];
    double r, g, b;
    Hue(index / 10 - 1, r, g, b);
    auto channel = [&](double c) {
        double level = shade % 2 ? value * (0.5 + 0.5 * c) : value * c;
        return static_cast<std::uint8_t>(level);  // the palette truncates
    };
    return {channel(r), channel(g), channel(b)};
}

}  // namespace cadhost::view
