#include "lum-closed-form/ForwardOption.hpp"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <string>

#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/NormalDistribution.hpp"
#include "lum-solvers/RootFinders.hpp"

namespace zep {

namespace {

std::string Upper(const char* name) {
    std::string text = name ? name : "";
    for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

double Intrinsic(bool isCall, double forward, double strike) {
    return std::max(isCall ? forward - strike : strike - forward, 0.0);
}

void RequireLognormalRates(double forward, double strike, double shift) {
    if (!(forward + shift > 0.0))
        ZEP_FAIL("the forward rate " + std::to_string(forward) + " plus the shift " + std::to_string(shift) +
                 " must be positive under a lognormal volatility (use a larger shift or Bachelier)");
    if (!(strike + shift > 0.0))
        ZEP_FAIL("the strike " + std::to_string(strike) + " plus the shift " + std::to_string(shift) +
                 " must be positive under a lognormal volatility (use a larger shift or Bachelier)");
}

double LognormalValue(bool isCall, double forward, double strike, double deviation) {
    const double d1 = std::log(forward / strike) / deviation + 0.5 * deviation, d2 = d1 - deviation;
    return isCall ? forward * NormalCdf(d1) - strike * NormalCdf(d2)
                  : strike * NormalCdf(-d2) - forward * NormalCdf(-d1);
}

double NormalValue(bool isCall, double forward, double strike, double deviation) {
    const double moneyness = isCall ? forward - strike : strike - forward;
    const double d = moneyness / deviation;
    return moneyness * NormalCdf(d) + deviation * NormalPdf(d);
}

}  // namespace

RateVolatilityModel RateVolatilityModelOf(const char* name) {
    const std::string text = Upper(name);
    if (text == "BLACK" || text == "LOGNORMAL") return RateVolatilityModel::Black;
    if (text == "SHIFTEDBLACK" || text == "SHIFTED" || text == "SHIFTEDLOGNORMAL") return RateVolatilityModel::ShiftedBlack;
    if (text == "BACHELIER" || text == "NORMAL") return RateVolatilityModel::Bachelier;
    ZEP_FAIL("'" + std::string(name ? name : "") + "' is not a volatility model (BLACK, SHIFTEDBLACK or BACHELIER)");
}

const char* RateVolatilityModelName(RateVolatilityModel model) {
    switch (model) {
        case RateVolatilityModel::Black: return "BLACK";
        case RateVolatilityModel::ShiftedBlack: return "SHIFTEDBLACK";
        case RateVolatilityModel::Bachelier: return "BACHELIER";
    }
    ZEP_FAIL("unknown volatility model code " + std::to_string(static_cast<int>(model)));
}

double ForwardOptionValue(bool isCall, double forward, double strike, double expiry, const RateVolatility& volatility) {
    ZEP_REQUIRE(std::isfinite(forward) && std::isfinite(strike), "the forward rate and the strike must be finite");
    ZEP_REQUIRE(std::isfinite(volatility.volatility) && volatility.volatility >= 0.0,
                "the volatility " + std::to_string(volatility.volatility) + " must be finite and not negative");
    ZEP_REQUIRE(std::isfinite(expiry), "the time to expiry must be finite");
    const bool normal = volatility.model == RateVolatilityModel::Bachelier;
    const double shift = volatility.model == RateVolatilityModel::ShiftedBlack ? volatility.shift : 0.0;
    ZEP_REQUIRE(std::isfinite(shift), "the shift must be finite");
    if (!normal) RequireLognormalRates(forward, strike, shift);
    const double deviation = volatility.volatility * std::sqrt(std::max(expiry, 0.0));
    if (deviation == 0.0) return Intrinsic(isCall, forward, strike);
    return normal ? NormalValue(isCall, forward, strike, deviation)
                  : LognormalValue(isCall, forward + shift, strike + shift, deviation);
}

// The value rises strictly with the volatility from the intrinsic value (zero volatility) to its
// supremum (the shifted forward, or strike, under a lognormal model; unbounded under the normal
// one), so a bracket on the volatility holds exactly one root.
double ImpliedForwardVolatility(bool isCall, double forward, double strike, double expiry, double value,
                                RateVolatilityModel model, double shift) {
    ZEP_REQUIRE(std::isfinite(value), "the option value must be finite");
    ZEP_REQUIRE(std::isfinite(expiry) && expiry > 0.0, "the time to expiry must be positive to imply a volatility");
    if (model != RateVolatilityModel::ShiftedBlack) shift = 0.0;
    const RateVolatility probe{model, 0.0, shift};
    ForwardOptionValue(isCall, forward, strike, expiry, probe);  // the rates must suit the model
    if (model != RateVolatilityModel::Bachelier) {
        const double supremum = isCall ? forward + shift : strike + shift;
        ZEP_REQUIRE(value < supremum, "the option value " + std::to_string(value) +
                                          " is not below its lognormal upper bound " + std::to_string(supremum));
    }
    return SolveImpliedVolatility(
        [&](double sigma) { return ForwardOptionValue(isCall, forward, strike, expiry, {model, sigma, shift}); }, value,
        model, "option");
}

double SolveImpliedVolatility(const std::function<double(double)>& valueAt, double target, RateVolatilityModel model,
                              const char* what) {
    ZEP_REQUIRE(std::isfinite(target), std::string("the ") + what + " price must be finite");
    const double atZero = valueAt(0.0) - target;
    ZEP_REQUIRE(atZero <= 0.0, std::string("the ") + what + " price " + std::to_string(target) +
                                   " is below its value at zero volatility " + std::to_string(atZero + target));
    if (atZero == 0.0) return 0.0;
    // Lognormal volatilities above 1000% or normal ones above 100% in rate units price nothing real.
    const bool normal = model == RateVolatilityModel::Bachelier;
    double high = normal ? 0.01 : 1.0;
    const double ceiling = normal ? 1.0 : 10.0;
    double atHigh = valueAt(high) - target;
    while (atHigh < 0.0 && high < ceiling) atHigh = valueAt(high *= 2.0) - target;
    ZEP_REQUIRE(atHigh >= 0.0, std::string("implied volatility (Brent): the ") + what + " price " +
                                   std::to_string(target) + " needs a volatility above " + std::to_string(high));
    return BrentSolve([&](double sigma) { return valueAt(sigma) - target; }, 0.0, high, atZero, atHigh,
                      RootSearch{1e-14, 200});
}

}  // namespace zep
