// American call or put by the approximation of Bjerksund and Stensland (2002): the exercise
// boundary is taken flat on each of two periods, [0, t1] and [t1, T] with t1 = (sqrt(5) - 1) T / 2,
// each level given by their trigger formula; exercising at those flat boundaries is a feasible
// strategy, so the price is a lower bound, above the single-period (1993) figure and usually
// within a few basis points of the true American price. The put comes from the call by the
// put-call transformation P(S, K, r, b) = C(K, S, r - b, -b). Garman-Kohlhagen conventions: rd
// discounts, b = rd - rf carries the spot; a call with rf <= 0 or a put with rd <= 0 is never
// exercised early and is worth the European price.
#pragma once

namespace zep {

// Option type 0 call, 1 put; times are year fractions, expiry and delivery taken as one date.
double BjerksundStenslandPrice(int optionType, double strike, double volatility, double timeToExpiry,
                               double domesticRate, double foreignRate, double spot);

}  // namespace zep
