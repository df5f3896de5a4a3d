// Names of interpolation and extrapolation methods, as users type them in market files.
#include <algorithm>
#include <array>
#include <cctype>
#include <stdexcept>
#include <string_view>

#include "lum-auxiliary/Interpolation.hpp"

namespace zep {

namespace {

struct Alias {
    std::string_view text;
    std::uint32_t code;
};

constexpr std::array<std::string_view, 9> kMethodNames = {
    "flat", "closest", "linear", "linearxy", "loglinear", "lagrange", "cubic", "ffq", "clampedcubic"};

// Historical spellings kept because saved market files still use them.
constexpr std::array<Alias, 9> kMethodAliases = {{{"flatinterpolation", 0},
                                                  {"closestinterpolation", 1},
                                                  {"linearinterpolation", 2},
                                                  {"lagrangepolynomial", 5},
                                                  {"cubicinterpolation", 6},
                                                  {"explicitcubic", 8},
                                                  {"explicitclampedcubic", 8},
                                                  {"explicit clamped cubic", 8},
                                                  {"clamped cubic", 8}}};

constexpr std::array<std::string_view, 5> kExtrapolationNames = {"none", "flat", "linear",
                                                                 "taylor", "cubic"};

std::string Lower(const std::string& text) {
    std::string lower = text;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

template <std::size_t N>
int Find(const std::array<std::string_view, N>& names, const std::string& lower) {
    for (std::size_t code = 0; code < N; ++code) {
        if (names[code] == lower || std::to_string(code) == lower) return static_cast<int>(code);
    }
    return -1;
}

}  // namespace

std::string InterpolationMethodToString(std::uint32_t method) {
    if (method >= kMethodNames.size())
        throw std::runtime_error("Interpolation method is an invalid enumeration: " +
                                 std::to_string(method));
    return std::string(kMethodNames[method]);
}

InterpolationMethod stringToInterpolationMethod(const std::string& text) {
    const std::string lower = Lower(text);
    if (const int code = Find(kMethodNames, lower); code >= 0)
        return static_cast<InterpolationMethod>(code);
    for (const Alias& alias : kMethodAliases) {
        if (alias.text == lower) return static_cast<InterpolationMethod>(alias.code);
    }
    throw std::runtime_error("'" + text + "' is an invalid interpolation method.");
}

std::string ExtrapolationMethodToString(std::uint32_t extrapolation) {
    if (extrapolation >= kExtrapolationNames.size())
        throw std::runtime_error("Extrapolation method is an invalid enumeration: " +
                                 std::to_string(extrapolation));
    return std::string(kExtrapolationNames[extrapolation]);
}

ExtrapolationMethod stringToExtrapolationMethod(const std::string& text) {
    if (const int code = Find(kExtrapolationNames, Lower(text)); code >= 0)
        return static_cast<ExtrapolationMethod>(code);
    throw std::runtime_error("'" + text + "' is an invalid extrapolation method.");
}

}  // namespace zep
