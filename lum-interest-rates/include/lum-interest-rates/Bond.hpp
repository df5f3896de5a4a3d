// A fixed-rate bond, bullet or amortising: coupons on the outstanding notional, principal paid as
// the notional steps down and at maturity. Prices are per 100 of the notional outstanding at
// settlement; the yield compounds at the coupon frequency and discounts each flow over whole
// coupon periods plus the fraction of the current one left (ICMA, and the US street convention
// before the last period), and duration and convexity are the yield derivatives of that price.
// In its last period a US Treasury quotes a money-market yield: simple interest to maturity.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "lum-interest-rates/CashFlow.hpp"
#include "lum-interest-rates/YieldCurve.hpp"
#include "lum-time/DayCounter.hpp"
#include "lum-time/Frequency.hpp"
#include "lum-time/Schedule.hpp"

namespace zep {

struct BondTerms {
    double couponRate = 0.0;
    std::vector<double> notionals{100.0};  // one, or one per coupon period (amortising)
    // Coupons and accrued interest count with this convention over each coupon's reference
    // period (Act/Act ICMA needs it); the schedule contributes only its dates.
    DayCounter dayCounter = DayCounter(ActActICMA);
    Frequency frequency = Semiannual;
    bool simpleYieldInLastPeriod = false;  // the US street convention; ICMA compounds to the end
};

class Bond {
public:
    Bond(const Schedule& schedule, BondTerms terms);

    double AccruedAmount(const Date& settlement) const;  // per 100 outstanding
    double DirtyPrice(double yield, const Date& settlement) const;
    double CleanPrice(double yield, const Date& settlement) const;
    // The yield at which the clean price is repaid; fails when no yield in (-100%, 1000%] does.
    double Yield(double cleanPrice, const Date& settlement) const;
    double MacaulayDuration(double yield, const Date& settlement) const;  // years
    double ModifiedDuration(double yield, const Date& settlement) const;
    double Convexity(double yield, const Date& settlement) const;
    // Dirty value of the flows after the curve's reference date, per 100 outstanding there.
    double PV(const YieldCurve& discount) const;
    // The continuous spread over the curve's zero rates that reprices the clean price.
    double ZSpread(double cleanPrice, const YieldCurve& discount, const Date& settlement) const;
    std::vector<CashFlow> CashFlows(const YieldCurve& discount) const;
    // Coupons and principal per 100 outstanding at `after`, paid in (after, upTo].
    std::vector<std::pair<Date, double>> PaymentsBetween(const Date& after, const Date& upTo) const;
    std::string Describe() const;

    Date MaturityDate() const { return m_flows.back().accrualEnd; }

private:
    struct Flow {
        Date accrualStart, accrualEnd, payment;
        double notional = 0.0, couponFraction = 0.0, coupon = 0.0, principal = 0.0;
    };
    // The first flow after settlement and the fraction of its coupon period still to run.
    struct Position {
        std::size_t first = 0;
        double periodsToFirst = 0.0;
        double outstanding = 0.0;
    };
    Position PositionAt(const Date& settlement) const;
    // Dirty price per 100 and its first two yield derivatives, in one pass over the flows.
    struct PriceAndSlopes {
        double price = 0.0, slope = 0.0, curvature = 0.0, timeWeighted = 0.0;
    };
    PriceAndSlopes PriceAt(double yield, const Position& position) const;

    BondTerms m_terms;
    std::vector<Flow> m_flows;
};

}  // namespace zep
