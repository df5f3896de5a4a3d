#include "lum-interest-rates/InterpolatedVariable.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <stdexcept>
#include <string_view>

namespace zep {

namespace {

constexpr std::array<std::string_view, 21> kNames = {
    "Simple Zero Rates", "Continuous Zero Rates", "Discount Factors", "Hazard rates",
    "No Default Probability", "Continuous Zero Rate Spreads", "Yield vols", "Price vols",
    "Total yield variance", "Total price variance", "Overnight rates", "Normalised yield vol",
    "Normalised price vol", "Yield vol pts per day", "Price vol pts per day",
    "Simple inflation rate", "Simple inflation rate time", "Continuous inflation rate",
    "Continuous inflation rate time", "Inflation index", "Fxforwardpoints"};

bool SameIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](unsigned char x, unsigned char y) {
        return std::tolower(x) == std::tolower(y);
    });
}

}  // namespace

std::string InterpolatedVariableToString(std::int32_t variable) {
    if (variable < 0 || variable >= static_cast<std::int32_t>(kNames.size()))
        throw std::runtime_error("Interpolated variable is an invalid enumeration: " +
                                 std::to_string(variable));
    return std::string(kNames[variable]);
}

InterpolatedVariable stringToInterpolatedVariable(const std::string& text) {
    for (std::int32_t code = -1; code < static_cast<std::int32_t>(kNames.size()); ++code) {
        if (text == std::to_string(code) || (code >= 0 && SameIgnoringCase(text, kNames[code])))
            return static_cast<InterpolatedVariable>(code);
    }
    throw std::runtime_error("'" + text + "' is an invalid interpolated variable.");
}

}  // namespace zep
