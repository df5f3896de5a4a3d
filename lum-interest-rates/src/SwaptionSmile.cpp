#include "lum-interest-rates/SwaptionSmile.hpp"

#include <cmath>
#include <string>

#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

SabrExpansion ExpansionOf(RateVolatilityModel model) {
    return model == RateVolatilityModel::Bachelier ? SabrExpansion::Normal : SabrExpansion::Lognormal;
}

// The shift the expansion's rates carry: shifted Black's, none otherwise.
double RateShift(RateVolatilityModel model, double shift) {
    return model == RateVolatilityModel::ShiftedBlack ? shift : 0.0;
}

// Every expansion but the normal one at beta 0 takes powers and logarithms of the (shifted) rates.
bool NeedsPositiveRates(RateVolatilityModel model, double beta) {
    return !(model == RateVolatilityModel::Bachelier && beta == 0.0);
}

const char* SmileName(RateVolatilityModel model) {
    switch (model) {
        case RateVolatilityModel::Black: return "lognormal SABR smile";
        case RateVolatilityModel::ShiftedBlack: return "shifted lognormal SABR smile (rate plus shift)";
        case RateVolatilityModel::Bachelier: return "normal SABR smile unless beta is 0";
    }
    return "SABR smile";
}

void RequireSlice(double forward, double expiry, double beta, RateVolatilityModel model, double shift) {
    ZEP_REQUIRE(model == RateVolatilityModel::Black || model == RateVolatilityModel::ShiftedBlack ||
                    model == RateVolatilityModel::Bachelier,
                "the SABR smile's volatility model must be BLACK, SHIFTEDBLACK or BACHELIER");
    ZEP_REQUIRE(std::isfinite(shift) && shift >= 0.0,
                "the shift " + std::to_string(shift) + " must be finite and not negative");
    ZEP_REQUIRE(beta >= 0.0 && beta <= 1.0, "beta " + std::to_string(beta) + " must lie in [0, 1]");
    const bool positive = forward + RateShift(model, shift) > 0.0 || !NeedsPositiveRates(model, beta);
    ZEP_REQUIRE(std::isfinite(forward) && positive,
                "the forward swap rate " + std::to_string(forward) + " must be positive for the " + SmileName(model));
    ZEP_REQUIRE(std::isfinite(expiry) && expiry > 0.0, "the expiry " + std::to_string(expiry) + " must be positive");
}

bool StrikeAllowed(double strike, double rateShift, bool needsPositiveRates) {
    return std::isfinite(strike) && (strike + rateShift > 0.0 || !needsPositiveRates);
}

SabrSmile FittedSlice(double forward, double expiry, const std::vector<double>& strikes,
                      const std::vector<double>& volatilities, double beta, RateVolatilityModel model, double shift) {
    RequireSlice(forward, expiry, beta, model, shift);
    ZEP_REQUIRE(strikes.size() == volatilities.size(), "one volatility per strike");
    ZEP_REQUIRE(strikes.size() >= 3, "the SABR fit needs at least three quotes");
    const double rateShift = RateShift(model, shift);
    const bool needsPositiveRates = NeedsPositiveRates(model, beta);
    for (std::size_t i = 0; i < strikes.size(); ++i)
        ZEP_REQUIRE(StrikeAllowed(strikes[i], rateShift, needsPositiveRates) && std::isfinite(volatilities[i]) &&
                        volatilities[i] > 0.0,
                    "quote " + std::to_string(i) + " needs a positive strike and volatility for the " +
                        SmileName(model));
    const double shiftedForward = forward + rateShift;
    std::vector<double> shiftedStrikes(strikes);
    for (double& strike : shiftedStrikes) strike += rateShift;
    const SabrExpansion expansion = ExpansionOf(model);
    const double middle = volatilities[strikes.size() / 2];
    const double level = expansion == SabrExpansion::Normal ? middle * std::pow(shiftedForward, -beta)
                                                            : middle * std::pow(shiftedForward, 1.0 - beta);
    return SabrSmile::Fit(shiftedStrikes, volatilities, shiftedForward, expiry, {level, beta, 0.0, 0.5}, expansion);
}

}  // namespace

SwaptionSmile::SwaptionSmile(double forward, double expiry, const std::vector<double>& strikes,
                             const std::vector<double>& volatilities, double beta, RateVolatilityModel model,
                             double shift)
    : m_sabr(FittedSlice(forward, expiry, strikes, volatilities, beta, model, shift)),
      m_forward(forward),
      m_expiry(expiry),
      m_model(model),
      m_shift(shift),
      m_rateShift(RateShift(model, shift)),
      m_needsPositiveRates(NeedsPositiveRates(model, beta)) {
    double squares = 0.0;
    for (std::size_t i = 0; i < strikes.size(); ++i) {
        const double error = Volatility(strikes[i]) - volatilities[i];
        squares += error * error;
    }
    m_fitError = std::sqrt(squares / strikes.size());
    for (double parameter : m_sabr.Parameters())
        ZEP_REQUIRE(std::isfinite(parameter) && std::isfinite(m_fitError),
                    "the SABR calibration of the slice did not converge (a parameter is not finite)");
}

SwaptionSmile::SwaptionSmile(double forward, double expiry, double alpha, double beta, double rho, double nu,
                             RateVolatilityModel model, double shift)
    : m_sabr({alpha, beta, rho, nu}),
      m_forward(forward),
      m_expiry(expiry),
      m_model(model),
      m_shift(shift),
      m_rateShift(RateShift(model, shift)),
      m_needsPositiveRates(NeedsPositiveRates(model, beta)) {
    RequireSlice(forward, expiry, beta, model, shift);
    ZEP_REQUIRE(alpha > 0.0 && nu >= 0.0 && rho > -1.0 && rho < 1.0,
                "the SABR parameters need alpha > 0, nu >= 0 and rho in (-1, 1)");
}

double SwaptionSmile::Volatility(double strike) const {
    ZEP_REQUIRE(StrikeAllowed(strike, m_rateShift, m_needsPositiveRates),
                "the strike " + std::to_string(strike) + " must be positive for the " + SmileName(m_model));
    return m_sabr.Volatility(strike + m_rateShift, m_forward + m_rateShift, m_expiry, ExpansionOf(m_model));
}

}  // namespace zep
