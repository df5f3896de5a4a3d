// Fitting Hull-White to European swaptions: the volatility sigma (and, on request, the mean
// reversion a) that brings Jamshidian's prices closest to the quoted ones, in relative terms so
// that short and long swaptions weigh alike.
#pragma once

#include <vector>

#include "lum-closed-form/ForwardOption.hpp"
#include "lum-interest-rates/HullWhiteSwap.hpp"

namespace zep {

// One quoted swaption: the swap it exercises into, its expiry (years) and its price.
struct HullWhiteSwaptionQuote {
    HullWhiteSwap swap;
    double expiry = 0.0;
    double price = 0.0;
};

// The at-the-money payer quoted at `volatility`: strike set to the forward swap rate on the curve
// (which discounts and projects), priced with the quote's model on the swap's annuity.
HullWhiteSwaptionQuote AtTheMoneyQuote(const YieldCurve& curve, HullWhiteSwap swap, double expiry,
                                       const RateVolatility& volatility);

struct HullWhiteFit {
    HullWhite model;
    double rootMeanSquareError;  // of model price / quoted price - 1 over the quotes
};

// From `meanReversion` and `sigmaGuess`; the mean reversion stays as given unless fitMeanReversion.
HullWhiteFit CalibrateHullWhite(const boost::shared_ptr<const YieldCurve>& curve,
                                const std::vector<HullWhiteSwaptionQuote>& quotes, double meanReversion,
                                double sigmaGuess, bool fitMeanReversion);

}  // namespace zep
