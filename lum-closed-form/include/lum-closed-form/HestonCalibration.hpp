// Heston calibrated to implied volatility quotes: Levenberg-Marquardt on the vega-weighted price
// errors (close to the volatility errors, and cheap: no implied volatility inside the loop) of the
// out-of-the-money option at each quote, parameters kept in a box; optionally from a start found
// by a global search (NLopt's DIRECT or differential evolution) on the same sum of squares.
// A calibration that stops short at its iteration cap hands back the best point it reached with
// `converged` false, never silently: the fit error per quote says how good that point is. A
// Feller violation is allowed and stated by the model.
#pragma once

#include <string>
#include <vector>

#include "lum-closed-form/HestonModel.hpp"

namespace zep {

struct HestonQuote {
    double expiry;      // years
    double strike;
    double volatility;  // Black-Scholes implied
};

struct HestonFit {
    HestonModel model;
    std::vector<double> modelVolatilities;  // the calibrated model's implied volatility per quote
    double rootMeanSquareError;             // of model - market volatilities
    int evaluations;                        // of the whole set of quotes
    bool converged;                         // false: the iteration cap stopped Levenberg-Marquardt
};

// start: "none" (a start from the quotes' mean variance), "direct" or "evolution";
// maxIterations: of Levenberg-Marquardt, in [1, 10000].
HestonFit CalibrateHeston(const std::vector<HestonQuote>& quotes, double spot, double domesticRate,
                          double foreignRate, const std::string& start = "none", int maxIterations = 100);

}  // namespace zep
