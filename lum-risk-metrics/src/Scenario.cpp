#include "lum-risk-metrics/Scenario.hpp"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace zep::scenario {
namespace {

void RequireShock(const std::string& target, double size, const char* what) {
    if (target.empty()) throw std::invalid_argument(std::string("A ") + what + " shock needs the name of what it moves.");
    if (!std::isfinite(size))
        throw std::invalid_argument("The " + std::string(what) + " shock of '" + target + "' is not a finite number.");
}

constexpr const char* kCurveFactors[] = {"LEVEL", "SLOPE", "CURVATURE", "KEY_RATE", "TWIST_SHORT_LONG"};
constexpr const char* kFXFactors[] = {"SPOT_SHOCK", "FORWARD_POINTS_LEVEL", "FORWARD_POINTS_SLOPE", "KEY_TENOR_SHOCK"};
constexpr const char* kCreditFactors[] = {"CDS_SPREAD_LEVEL", "CDS_SPREAD_SLOPE", "HAZARD_RATE_LEVEL",
                                          "DEFAULT_PROB_SHOCK", "RECOVERY_RATE_SHOCK"};
constexpr const char* kVolFactors[] = {"ATM_VOL_LEVEL", "VOL_TERM_STRUCTURE", "RISK_REVERSAL_25D", "BUTTERFLY_25D",
                                       "RISK_REVERSAL_10D", "BUTTERFLY_10D", "VOL_SMILE_SHIFT"};

template <std::size_t N>
std::string FactorName(const char* const (&names)[N], int code) {
    if (code < 0 || static_cast<std::size_t>(code) >= N) return "factor " + std::to_string(code);
    return names[code];
}

std::string FactorName(FactorFamily family, int code) {
    switch (family) {
        case FactorFamily::YIELD_CURVE: return FactorName(kCurveFactors, code);
        case FactorFamily::FX: return FactorName(kFXFactors, code);
        case FactorFamily::CREDIT_CURVE: return FactorName(kCreditFactors, code);
        default: return FactorName(kVolFactors, code);
    }
}

// The factors a shock can move today; the other codes of each group are refused by name.
void RequireSupported(bool supported, FactorFamily family, int code, const char* supportedNames) {
    if (!supported)
        throw std::invalid_argument("The factor " + FactorName(family, code) + " is not supported as a shock: " +
                                    supportedNames + ".");
}

}  // namespace

Shock Shock::Curve(std::string curve, YieldCurveFactor factor, double basisPoints, std::size_t pillar) {
    RequireShock(curve, basisPoints, "curve");
    const int code = static_cast<int>(factor);
    RequireSupported(code >= 0 && static_cast<std::size_t>(code) < std::size(kCurveFactors), FactorFamily::YIELD_CURVE,
                     code, "LEVEL, SLOPE, CURVATURE, KEY_RATE and TWIST_SHORT_LONG are");
    const bool pillarShock = factor != YieldCurveFactor::LEVEL && factor != YieldCurveFactor::SLOPE;
    return {std::move(curve), FactorFamily::YIELD_CURVE, code, basisPoints, ShockType::ABSOLUTE, pillarShock ? pillar : 0};
}

Shock Shock::Spot(std::string underlying, FXForwardFactor factor, double size, ShockType type) {
    RequireShock(underlying, size, "spot");
    RequireSupported(factor == FXForwardFactor::SPOT_SHOCK, FactorFamily::FX, static_cast<int>(factor),
                     "SPOT_SHOCK is");
    return {std::move(underlying), FactorFamily::FX, static_cast<int>(factor), size, type, 0};
}

Shock Shock::Vol(std::string underlying, VolSurfaceFactor factor, double size, ShockType type) {
    RequireShock(underlying, size, "volatility");
    const bool smileQuote = factor == VolSurfaceFactor::RISK_REVERSAL_25D || factor == VolSurfaceFactor::BUTTERFLY_25D;
    RequireSupported(factor == VolSurfaceFactor::ATM_VOL_LEVEL || smileQuote, FactorFamily::VOL_SURFACE,
                     static_cast<int>(factor), "ATM_VOL_LEVEL, RISK_REVERSAL_25D and BUTTERFLY_25D are");
    if (smileQuote && type != ShockType::ABSOLUTE)
        throw std::invalid_argument("The " + FactorName(FactorFamily::VOL_SURFACE, static_cast<int>(factor)) +
                                    " shock of '" + underlying + "' moves a quote that may be zero: it is absolute.");
    return {std::move(underlying), FactorFamily::VOL_SURFACE, static_cast<int>(factor), size, type, 0};
}

Shock Shock::Credit(std::string issuer, CreditCurveFactor factor, double basisPoints) {
    RequireShock(issuer, basisPoints, "credit");
    RequireSupported(factor == CreditCurveFactor::CDS_SPREAD_LEVEL, FactorFamily::CREDIT_CURVE, static_cast<int>(factor),
                     "CDS_SPREAD_LEVEL is");
    return {std::move(issuer), FactorFamily::CREDIT_CURVE, static_cast<int>(factor), basisPoints, ShockType::ABSOLUTE, 0};
}

std::string Shock::Describe() const {
    std::string text = target + " " + FactorName(family, factor);
    const bool pillarShock = factor != static_cast<int>(YieldCurveFactor::LEVEL) &&
                             factor != static_cast<int>(YieldCurveFactor::SLOPE);
    if (family == FactorFamily::YIELD_CURVE && pillarShock) text += " pillar " + std::to_string(pillar);
    return text;
}

Scenario::Scenario(std::string name, std::vector<Shock> shocks, ScenarioType type, ScenarioGroupApplyMode mode)
    : m_name(std::move(name)), m_shocks(std::move(shocks)), m_type(type), m_mode(mode) {}

bool Scenario::Touches(const std::vector<std::string>& marketNames) const {
    return std::any_of(m_shocks.begin(), m_shocks.end(), [&](const Shock& shock) {
        return std::find(marketNames.begin(), marketNames.end(), shock.target) != marketNames.end();
    });
}

}  // namespace zep::scenario
