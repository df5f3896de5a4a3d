#include "lum-interest-rates/HullWhiteCalibration.hpp"

#include <cmath>
#include <string>

#include "lum-auxiliary/Error.hpp"
#include "lum-solvers/LevenbergMarquardt.hpp"

namespace zep {

HullWhiteSwaptionQuote AtTheMoneyQuote(const YieldCurve& curve, HullWhiteSwap swap, double expiry,
                                       const RateVolatility& volatility) {
    swap.Validate();
    ZEP_REQUIRE(expiry > 0.0, "a calibration swaption must expire after the curve's reference date");
    const std::size_t first = swap.FirstPeriodFrom(expiry);
    double annuity = 0.0;
    for (std::size_t i = first; i < swap.starts.size(); ++i)
        annuity += swap.accruals[i] * curve.DiscountFactor(swap.payments[i]);
    const double forward =
        (curve.DiscountFactor(std::max(swap.starts[first], expiry)) - curve.DiscountFactor(swap.payments.back())) /
        annuity;
    swap.strike = forward;
    swap.isPayer = true;
    const double price = swap.notional * annuity * ForwardOptionValue(true, forward, forward, expiry, volatility);
    return {std::move(swap), expiry, price};
}

HullWhiteFit CalibrateHullWhite(const boost::shared_ptr<const YieldCurve>& curve,
                                const std::vector<HullWhiteSwaptionQuote>& quotes, double meanReversion,
                                double sigmaGuess, bool fitMeanReversion) {
    ZEP_REQUIRE(!quotes.empty(), "the Hull-White calibration needs at least one swaption");
    for (std::size_t i = 0; i < quotes.size(); ++i)
        ZEP_REQUIRE(std::isfinite(quotes[i].price) && quotes[i].price > 0.0,
                    "the price of calibration swaption " + std::to_string(i) + " must be positive");
    HullWhite{curve, meanReversion, sigmaGuess};  // refuses bad starting parameters by name
    const auto modelAt = [&](const std::vector<double>& p) {
        return HullWhite(curve, fitMeanReversion ? p[1] : meanReversion, p[0]);
    };
    const Residuals residuals = [&](const std::vector<double>& p) {
        const HullWhite model = modelAt(p);
        std::vector<double> errors;
        for (const HullWhiteSwaptionQuote& quote : quotes)
            errors.push_back(JamshidianSwaption(model, quote.swap, quote.expiry) / quote.price - 1.0);
        return errors;
    };
    std::vector<double> start{sigmaGuess}, lower{1e-6}, upper{1.0};
    if (fitMeanReversion) {
        start.push_back(meanReversion);
        lower.push_back(0.0);
        upper.push_back(2.0);
    }
    const OptimizationResult fit = LevenbergMarquardt({200, 1e-12, 1e-7}).Minimize(residuals, start, {lower, upper});
    ZEP_REQUIRE(std::isfinite(fit.value), "the Hull-White calibration found no finite fit");
    return {modelAt(fit.x), std::sqrt(fit.value / static_cast<double>(quotes.size()))};
}

}  // namespace zep
