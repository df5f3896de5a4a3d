#include "lum-interest-rates/CapFloor.hpp"

#include <cmath>
#include <sstream>

#include "lum-auxiliary/Error.hpp"

namespace zep {

CapFloor::CapFloor(const Schedule& schedule, CapFloorKind kind, double strike, double notional)
    : m_periods(schedule.Periods()), m_kind(kind), m_strike(strike), m_notional(notional) {
    ZEP_REQUIRE(kind == CapFloorKind::Cap || kind == CapFloorKind::Floor, "the kind must be a cap or a floor");
    ZEP_REQUIRE(std::isfinite(strike), "the strike must be finite");
    ZEP_REQUIRE(std::isfinite(notional), "the notional must be finite");
    ZEP_REQUIRE(!m_periods.empty(), "the schedule has no period");
}

// Calls visit(period, forward, expiry, annuity) for every caplet still to pay.
template <class Visit>
void CapFloor::ForEachCaplet(const YieldCurve& discount, const YieldCurve& projection, Visit&& visit) const {
    const Date& today = discount.ReferenceDate();
    const DayCounter expiryCounter(Act365Fixed);
    for (const SchedulePeriod& period : m_periods) {
        if (period.payment <= today) continue;
        const double forward =
            (projection.DiscountFactor(period.accrualStart) / projection.DiscountFactor(period.accrualEnd) - 1.0) /
            period.accrualFraction;
        const double expiry = period.fixing > today ? expiryCounter.YearFraction(today, period.fixing) : 0.0;
        const double annuity = m_notional * period.accrualFraction * discount.DiscountFactor(period.payment);
        visit(period, forward, expiry, annuity);
    }
}

double CapFloor::PV(const YieldCurve& discount, const YieldCurve& projection, const RateVolatility& volatility) const {
    double pv = 0.0;
    const bool isCall = m_kind == CapFloorKind::Cap;
    ForEachCaplet(discount, projection, [&](const SchedulePeriod&, double forward, double expiry, double annuity) {
        pv += annuity * ForwardOptionValue(isCall, forward, m_strike, expiry, volatility);
    });
    return pv;
}

std::vector<CapletValue> CapFloor::Caplets(const YieldCurve& discount, const YieldCurve& projection,
                                           const RateVolatility& volatility) const {
    std::vector<CapletValue> caplets;
    const bool isCall = m_kind == CapFloorKind::Cap;
    ForEachCaplet(discount, projection, [&](const SchedulePeriod& period, double forward, double expiry, double annuity) {
        caplets.push_back({period.fixing, period.payment, forward, expiry, annuity,
                           annuity * ForwardOptionValue(isCall, forward, m_strike, expiry, volatility)});
    });
    return caplets;
}

std::vector<CashFlow> CapFloor::CashFlows(const YieldCurve& discount, const YieldCurve& projection,
                                          const RateVolatility& volatility) const {
    std::vector<CashFlow> rows;
    const bool isCall = m_kind == CapFloorKind::Cap;
    ForEachCaplet(discount, projection, [&](const SchedulePeriod& period, double forward, double expiry,
                                            double annuity) {
        const double discountFactor = discount.DiscountFactor(period.payment);
        const double value = annuity * ForwardOptionValue(isCall, forward, m_strike, expiry, volatility);
        rows.push_back({CashFlowKind::Coupon, period.accrualStart, period.accrualEnd, period.fixing, period.payment,
                        period.accrualFraction, m_notional, forward, value / discountFactor, discountFactor, value});
    });
    return rows;
}

double CapFloor::ImpliedVolatility(double price, const YieldCurve& discount, const YieldCurve& projection,
                                   RateVolatilityModel model, double shift) const {
    return SolveImpliedVolatility(
        [&](double sigma) { return PV(discount, projection, {model, sigma, shift}); }, price, model,
        m_kind == CapFloorKind::Cap ? "cap" : "floor");
}

std::string CapFloor::Describe() const {
    std::ostringstream text;
    text.precision(10);
    text << (m_kind == CapFloorKind::Cap ? "cap" : "floor") << ", notional " << m_notional << ", strike " << m_strike
         << ", " << m_periods.size() << " periods, " << m_periods.front().accrualStart.ToString() << " to "
         << m_periods.back().accrualEnd.ToString();
    return text.str();
}

}  // namespace zep
