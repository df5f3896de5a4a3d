// Strikes as the market quotes them on a smile: a number, an at-the-money convention, a
// distance in or out of the money, or a delta ("25D"). Turns the text into a strike.
#pragma once

#include <string>

#include "lum-closed-form/VolatilitySource.hpp"

namespace zep {

// The market a quote is read against; rates continuously compounded, times in years.
struct StrikeQuoteMarket {
    double spot;
    double forward;
    double timeToExpiry;
    double timeToDelivery;
    double domesticRate;
    double foreignRate;
};

// Option type (0 call, 1 put) of a side text: "CALL" or "C", "PUT" or "P", any case; anything
// else fails with "unknow side".
int OptionTypeFromSide(const std::string& side);

// The strike a quote denotes for a call (0) or put (1), case and surrounding blanks ignored:
//   "1.2345"                     that number;
//   "ATM", "ATMF"                the forward F;
//   "ATMS"                       the spot S;
//   "ATMD"                       the delta-neutral straddle strike F exp(sigma(K)^2 T / 2);
//   "ATMF+25", "ATMF - 10 BP"    F plus or minus the offset in pips (PIP) or basis points (BP,
//                                BPS), both 0.0001 of the price (a bare number counts in pips);
//   "5% OTM", "OTM 5"            out of the money by 5% of spot: S (1 + 5%) for a call, S (1 - 5%)
//                                for a put; ITM mirrors it; OTMF and ITMF measure from F;
//   "25D", "25.5D"               the strike whose spot delta is 0.25 for a call, -0.25 for a put;
//   "D25D"                       the same on the forward (driftless) delta.
// Smile-dependent forms (ATMD, deltas) iterate strike and volatility to a fixed point.
double StrikeFromQuote(int optionType, const std::string& quote, const StrikeQuoteMarket& market,
                       const VolatilitySource& volatility);

}  // namespace zep
