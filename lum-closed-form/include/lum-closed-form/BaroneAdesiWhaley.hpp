// American call or put by the quadratic approximation of Barone-Adesi and Whaley (1987): the
// early-exercise premium solves the Black-Scholes equation with its time derivative dropped,
// which leaves a power of the spot, matched smoothly to the payoff at a critical spot found by
// Newton's iteration. Accurate to a few basis points for short and medium expiries, less for long
// ones. Garman-Kohlhagen conventions: rd discounts, rd - rf carries the spot; a call with rf <= 0
// or a put with rd <= 0 is never exercised early and is worth the European price.
#pragma once

namespace zep {

// Option type 0 call, 1 put; times are year fractions, expiry and delivery taken as one date.
double BaroneAdesiWhaleyPrice(int optionType, double strike, double volatility, double timeToExpiry,
                              double domesticRate, double foreignRate, double spot);

// The critical spot: the call is exercised above it, the put below it.
double BaroneAdesiWhaleyCriticalSpot(int optionType, double strike, double volatility, double timeToExpiry,
                                     double domesticRate, double foreignRate);

}  // namespace zep
