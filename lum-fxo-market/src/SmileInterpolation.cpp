#include "lum-fxo-market/SmileInterpolation.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

// Code 19's name starts with a blank: it has always been written so, and files match on it.
constexpr std::array<std::pair<int, const char*>, 16> kNames{{
    {SmileLinear, "LINEAR"},
    {SmileSVI, "SVI"},
    {SmileCubicSpline, "CUBICSPLINE"},
    {SmileVannaVolga, "VANNAVOLGA"},
    {SmileSABR, "SABR"},
    {SmileVarianceOnLogMoneyness, "Q_VARIANCE_ON_LOG_MONEYNESS"},
    {SmileOriginalLum, "Q_ORIGINAL_LUM"},
    {SmileForwardDeltaNaturalSpline, "Q_FORWARD_DELTA_NATURAL_SPLINE"},
    {SmileModifiedLum, "Q_MODIFIED_LUM"},
    {SmileForwardDeltaImplicitSpline, "Q_FORWARD_DELTA_IMPLICIT_SPLINE"},
    {SmileStrikeNaturalSpline, "Q_STRIKE_NATURAL_SPLINE"},
    {SmileInvertedSurfaceLogMoneyness, "Q_INVERTED_SURFACE_LOG_MONEYNESS"},
    {SmileInvertedSurface, "Q_INVERTED_SURFACE"},
    {SmileStrikeExtendedSpline, "Q_STRIKE_EXTENDED_SPLINE"},
    {SmileVarianceExtendedSpline, " Q_VARIANCE_EXTENDED_SPLINE"},
    {SmileMurexLogMoneyness, "Q_MUREX_LOG_MONEYNESS"},
}};

std::string TrimmedUpper(const std::string& text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string::npos) return {};
    std::string result = text.substr(first, text.find_last_not_of(" \t") - first + 1);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return result;
}

}  // namespace

std::string SmileInterpolationToString(int code) {
    for (const auto& [known, name] : kNames)
        if (known == code) return name;
    ZEP_FAIL("Extrapolation method is an invalid enumeration: " + std::to_string(code));
}

SmileInterpolation stringToSmileInterpolation(const std::string& text) {
    const std::string wanted = TrimmedUpper(text);
    for (const auto& [code, name] : kNames)
        if (TrimmedUpper(name) == wanted || std::to_string(code) == wanted)
            return static_cast<SmileInterpolation>(code);
    ZEP_FAIL("'" + text + "' is an invalid smile interpolation.");
}

}  // namespace zep
