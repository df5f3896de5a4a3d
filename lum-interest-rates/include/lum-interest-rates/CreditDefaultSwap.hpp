// A credit default swap: the protection buyer pays a running coupon on the premium schedule until
// default or maturity, the seller pays (1 - recovery) * notional at default. Valued in the model
// the credit curve is bootstrapped with, for each premium period (t0, t1] with accrual tau:
//   premium leg    coupon * sum tau * D(payment) * (Q(t0) + Q(t1)) / 2   (half the accrual paid on default)
//   protection leg (1 - R) * sum D(middle) * (Q(t0) - Q(t1))           (default at the period's middle day)
// Protection starts at the curve's reference date: a period that began earlier counts its
// survival from there, while its premium still accrues from its start (the buyer pays it in full;
// the upfront settles that accrual). A CDS at the par spread of its own curve is therefore worth
// zero. Quoted spreads convert to upfronts (and back) on a flat hazard rate, the market's rule.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "lum-interest-rates/CashFlow.hpp"
#include "lum-interest-rates/CreditCurve.hpp"
#include "lum-time/Schedule.hpp"

namespace zep {

enum class CdsSide : std::int32_t { Buyer = 0, Seller = 1 };

class CreditDefaultSwap {
public:
    CreditDefaultSwap(const Schedule& premiumSchedule, CdsSide side, double coupon, double notional, double recovery);

    // To the holder: protection less premium for the buyer, the reverse for the seller.
    double PV(const CreditCurve& credit, const YieldCurve& discount) const;
    double ProtectionLegPV(const CreditCurve& credit, const YieldCurve& discount) const;
    double PremiumLegPV(const CreditCurve& credit, const YieldCurve& discount) const;
    // Per premium period still to pay, signed for the holder: the coupon row (its discount
    // factor times the survival the model pays it on, half accrual on default included) and a
    // Protection row paying (1 - R) * notional at the period's middle day, its discount factor
    // times the probability of default in the period. The rows' present values sum to PV.
    std::vector<CashFlow> CashFlows(const CreditCurve& credit, const YieldCurve& discount) const;
    // The premium leg per unit coupon (times the notional): the risky annuity; 1e-4 of it is the risky PV01.
    double RiskyAnnuity(const CreditCurve& credit, const YieldCurve& discount) const;
    double ParSpread(const CreditCurve& credit, const YieldCurve& discount) const;
    // The buyer's upfront payment as a fraction of the notional: (par spread - coupon) * annuity / notional.
    double Upfront(const CreditCurve& credit, const YieldCurve& discount) const;
    // The upfront (fraction of notional) a quoted spread means, and the quoted spread an upfront
    // means, both on the flat hazard rate that reprices the quote; times from `referenceDate`, Act/365F.
    double UpfrontFromQuotedSpread(double quotedSpread, const Date& referenceDate, const YieldCurve& discount) const;
    double QuotedSpreadFromUpfront(double upfront, const Date& referenceDate, const YieldCurve& discount) const;
    // The PV change when every par spread of the credit curve rises by one basis point (the curve
    // bootstrapped again).
    double CS01(const CreditCurve& credit, const YieldCurve& discount) const;
    double Coupon() const { return m_coupon; }
    std::string Describe() const;

private:
    struct Legs {
        double protection = 0.0;  // per unit notional, before (1 - R)
        double annuity = 0.0;     // per unit notional and coupon
    };
    struct PremiumPeriod {
        Date start, end, payment;
        double accrual;
    };
    // Calls visit(period, from, middle, q0, q1) per period still to pay: protection from `from`,
    // survival q0 there and q1 at the period's end, default counted at `middle`.
    template <class Survival, class Visit>
    void ForEachPeriod(const Survival& survival, const Date& referenceDate, Visit&& visit) const;
    template <class Survival>
    Legs LegsOn(const Survival& survival, const Date& referenceDate, const YieldCurve& discount) const;
    Legs LegsOn(const CreditCurve& credit, const YieldCurve& discount) const;
    Legs FlatHazardLegs(double hazard, const Date& referenceDate, const YieldCurve& discount) const;
    double SolveFlatHazard(double target, bool byUpfront, const Date& referenceDate, const YieldCurve& discount) const;

    std::vector<PremiumPeriod> m_periods;
    CdsSide m_side;
    double m_coupon;
    double m_notional;
    double m_recovery;
};

}  // namespace zep
