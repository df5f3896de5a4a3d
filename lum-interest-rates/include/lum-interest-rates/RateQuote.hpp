// The market quotes a discount or projection curve is bootstrapped from, and the conventions
// that turn them into cash flows. Every instrument starts at the spot date (reference date +
// spotLagDays business days on the centres); dates roll by the roll rule.
// - Deposit "3M": DF(spot) / DF(end) = 1 + rate * tau(spot, end), tau by the money-market count.
// - FRA with start "3M" and tenor "6M" (a 3x6): the same over (spot + start, spot + tenor).
// - Future with start "3M" and tenor "3M": the money-market future on the first IMM date (third
//   Wednesday of March, June, September, December) on or after spot + start, over the next
//   three months. The quote is the price, 100 * (1 - futures rate); the futures rate exceeds the
//   forward rate by the convexity adjustment given with the quote (daily margining pays the
//   holder of a short future when rates rise, when money is dear).
// - Swap "5Y": the par rate of a fixed leg paying every fixedTenor (fixed day count) against a
//   floating leg resetting every floatTenor.
// - Overnight-index swap "2Y": the par rate of a fixed leg paying every oisTenor (the overnight
//   index's day count) against the compounded overnight rate over the same periods.
// On one curve the floating legs are worth DF(spot) - DF(maturity), whatever their frequency.
// Against a given discount curve, each floating period pays the projection curve's forward
// DF_p(start) / DF_p(end) - 1 (the index period taken as the accrual period), discounted on the
// given curve, and the fixed leg is discounted on the given curve.
#pragma once

#include <cstdint>
#include <string>

#include "lum-auxiliary/Interpolation.hpp"
#include "lum-interest-rates/InterpolatedVariable.hpp"
#include "lum-time/Calendar.hpp"
#include "lum-time/DayCounter.hpp"
#include "lum-time/Period.hpp"

namespace zep {

enum class RateInstrument : std::int32_t { Deposit = 0, FRA = 1, Swap = 2, Future = 3, OIS = 4 };

struct RateQuote {
    RateInstrument instrument = RateInstrument::Deposit;
    Period start;  // FRA: from the spot date to the accrual start; future: to the earliest IMM date
    Period tenor;  // FRA and future: the accrual period's end, from spot and from the IMM date;
                   // the others: from the spot date to maturity
    double rate = 0.0;  // as the market quotes it: a rate, or a future's price
    double convexityAdjustment = 0.0;  // futures only: futures rate minus forward rate
    Period fixedTenor;  // swaps: the fixed leg's period when not the conventions' (length 0)
};

struct BootstrapConventions {
    std::int32_t spotLagDays = 2;
    std::string centres = "TARGET";
    std::int32_t rollRule = ModifiedFollowing;
    DayCounter depositDayCounter = DayCounter(Act360);  // deposits, FRAs, futures
    Period fixedTenor = Period(1, Years);
    DayCounter fixedDayCounter = DayCounter(Thirty360);
    Period floatTenor = Period(6, Months);  // read only against a given discount curve
    Period oisTenor = Period(1, Years);
    DayCounter oisDayCounter = DayCounter(Act360);
    DayCounter curveDayCounter = DayCounter(Act365Fixed);
    std::int32_t interpolatedVariable = ContinuousZeroRates;
    std::int32_t interpolationMethod = LinearInterpolation;
    // A non-local interpolation (cubic, Lagrange, the spline table) moves the earlier stretches of
    // the curve as each pillar is added, so the earlier quotes drift off; the global fit then
    // solves every pillar's rate together (Levenberg-Marquardt from the pillar-by-pillar curve)
    // until every quote reprices. Local interpolations reprice pillar by pillar and skip it.
    bool globalFit = true;
};

// "deposit 3M", "FRA 3Mx6M", "future 3M+3M", "swap 5Y", "OIS 2Y": how messages name a quote.
std::string Describe(const RateQuote& quote);

}  // namespace zep
