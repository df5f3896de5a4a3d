// How an FX desk quotes each expiry: delta against spot or forward, premium-adjusted or not
// (premium paid in the foreign currency), and which strike "at the money" names. Strikes from
// deltas and deltas from strikes under those conventions.
#pragma once

namespace zep {

// Codes cross the Python boundary.
enum FXDeltaType : int { SpotDelta = 0, ForwardDelta = 1 };
enum FXPremiumAdjusted : int { PremiumExcluded = 0, PremiumIncluded = 1 };
enum FXATMType : int {
    ATMForward = 0,       // K = F
    ATMDeltaNeutral = 1,  // call and put deltas cancel (the delta-neutral straddle)
    ATMSpot = 2,          // K = S
};

// Raises "unknown pa/deltatype/atmtype!" for a combination outside the codes above.
void CheckFXConventions(int deltaType, int premiumAdjusted, int atmType);

// The market of one expiry as delta conversion needs it. Delivery is taken at expiry, so the
// spot delta is the forward delta times the foreign discount factor from spot date to expiry.
struct FXDeltaMarket {
    double spot;
    double forward;
    double foreignDiscount;  // DFf(expiry) / DFf(spot date)
    double timeToExpiry;
};

// Signed delta (calls positive, puts negative) of the strike at the volatility.
double FXDeltaOfStrike(double strike, double volatility, const FXDeltaMarket& market,
                       int deltaType, int premiumAdjusted, bool isCall);

// The strike whose delta is `delta` (> 0 a call, < 0 a put) at the volatility. Closed form
// without premium adjustment; with it the delta is not monotone in the strike for calls, so the
// strike is solved numerically on the branch right of the delta's maximum.
double FXStrikeFromDelta(double delta, double volatility, const FXDeltaMarket& market,
                         int deltaType, int premiumAdjusted);

// The at-the-money strike of the convention at the volatility (closed forms).
double FXAtmStrike(double volatility, const FXDeltaMarket& market, int premiumAdjusted, int atmType);

}  // namespace zep
