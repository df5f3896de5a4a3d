// A European or American call or put on the Leisen-Reimer (1996) binomial tree: the up
// probabilities are the Peizer-Pratt inversions of the Black-Scholes N(d2) and N(d1), so that the
// tree converges smoothly at second order with the step count (odd counts, centred on the
// strike). Meant for cross-checks of the American engines. Garman-Kohlhagen conventions, expiry
// and delivery as one date.
#pragma once

namespace zep {

// `steps` is rounded up to the next odd number; 1 to 100000.
double LeisenReimerPrice(int optionType, double strike, double volatility, double timeToExpiry, double domesticRate,
                         double foreignRate, double spot, int steps, bool american);

}  // namespace zep
