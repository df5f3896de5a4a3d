// A quote's cash flows laid out once, as times on the curve being built (and as discount factors
// of a given discount curve, which does not move), and the quote they imply on a trial curve.
#pragma once

#include <vector>

#include "lum-interest-rates/RateQuote.hpp"
#include "lum-interest-rates/YieldCurve.hpp"

namespace zep::detail {

// Where the flows of every quote of one bootstrap start from.
struct QuoteSetting {
    Date referenceDate;
    Date spotDate;
    const BootstrapConventions& conventions;
    const Calendar& calendar;
    const YieldCurve* discountCurve;  // null: the curve built discounts too
};

struct QuoteFlows {
    double start = 0.0;    // the spot date, or the accrual start of an FRA or future
    double end = 0.0;      // the accrual end, or a swap's last fixed payment
    double accrual = 0.0;  // deposit, FRA, future: tau(start, end)
    // Swaps: the fixed leg's payments, accrual fractions and given discount factors.
    std::vector<double> payments, fractions, paymentDiscounts;
    // Swaps against a given discount curve: the floating periods and their discount factors.
    std::vector<double> floatStarts, floatEnds, floatDiscounts;
};

// The part of a swap's legs that the pillars already solved fix: the fixed payments before
// `fixedOpen` and the floating periods before `floatOpen`.
struct SettledFlows {
    std::size_t fixedOpen = 0;
    double annuity = 0.0;
    std::size_t floatOpen = 0;
    double floating = 0.0;
};

Date MaturityOf(const RateQuote& quote, const QuoteSetting& setting);
QuoteFlows LayOutFlows(const RateQuote& quote, const QuoteSetting& setting);
// The quote in its own terms (a rate, a future's price) on the trial curve.
double ImpliedQuote(const RateQuote& quote, const QuoteFlows& flows, const YieldCurve& curve,
                    const SettledFlows& settled);
// The flows on or before `solvedUpTo` (years on the curve) read off the curve, and, against a
// given discount curve, the whole fixed leg.
SettledFlows SettleFlows(const RateQuote& quote, const QuoteFlows& flows, const YieldCurve& curve, double solvedUpTo);

}  // namespace zep::detail
