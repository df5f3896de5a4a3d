#include "lum-interest-rates/CreditDefaultSwap.hpp"

#include <algorithm>
#include <cmath>
#include <sstream>

#include "lum-auxiliary/Error.hpp"
#include "lum-solvers/RootFinders.hpp"

namespace zep {

CreditDefaultSwap::CreditDefaultSwap(const Schedule& premiumSchedule, CdsSide side, double coupon, double notional,
                                     double recovery)
    : m_side(side), m_coupon(coupon), m_notional(notional), m_recovery(recovery) {
    ZEP_REQUIRE(side == CdsSide::Buyer || side == CdsSide::Seller, "the side must be the protection buyer or seller");
    ZEP_REQUIRE(std::isfinite(coupon) && coupon >= 0.0, "the coupon " + std::to_string(coupon) + " must be finite and not negative");
    ZEP_REQUIRE(std::isfinite(notional) && notional > 0.0, "the notional must be positive");
    ZEP_REQUIRE(recovery >= 0.0 && recovery < 1.0,
                "the recovery rate " + std::to_string(recovery) + " must lie in [0, 1)");
    for (const SchedulePeriod& period : premiumSchedule.Periods())
        m_periods.push_back({period.accrualStart, period.accrualEnd, period.payment, period.accrualFraction});
    ZEP_REQUIRE(!m_periods.empty(), "the premium schedule has no period");
}

template <class Survival, class Visit>
void CreditDefaultSwap::ForEachPeriod(const Survival& survival, const Date& referenceDate, Visit&& visit) const {
    for (const PremiumPeriod& period : m_periods) {
        if (period.payment <= referenceDate) continue;
        const Date from = std::max(period.start, referenceDate);
        const double q0 = survival(from), q1 = period.end > from ? survival(period.end) : q0;
        const Date middle((from.SerialNumber() + std::max(from, period.end).SerialNumber()) / 2);
        visit(period, from, middle, q0, q1);
    }
}

template <class Survival>
CreditDefaultSwap::Legs CreditDefaultSwap::LegsOn(const Survival& survival, const Date& referenceDate,
                                                  const YieldCurve& discount) const {
    Legs legs;
    ForEachPeriod(survival, referenceDate,
                  [&](const PremiumPeriod& period, const Date&, const Date& middle, double q0, double q1) {
                      legs.annuity += period.accrual * discount.DiscountFactor(period.payment) * 0.5 * (q0 + q1);
                      legs.protection += discount.DiscountFactor(middle) * (q0 - q1);
                  });
    return legs;
}

std::vector<CashFlow> CreditDefaultSwap::CashFlows(const CreditCurve& credit, const YieldCurve& discount) const {
    const double sign = m_side == CdsSide::Buyer ? 1.0 : -1.0;
    std::vector<CashFlow> rows;
    ForEachPeriod([&](const Date& date) { return credit.SurvivalProbability(date); }, credit.ReferenceDate(),
                  [&](const PremiumPeriod& period, const Date& from, const Date& middle, double q0, double q1) {
                      const double premium = -sign * m_coupon * period.accrual * m_notional;
                      const double paidOn = discount.DiscountFactor(period.payment) * 0.5 * (q0 + q1);
                      rows.push_back({CashFlowKind::Coupon, period.start, period.end, Date(), period.payment,
                                      period.accrual, m_notional, m_coupon, premium, paidOn, premium * paidOn});
                      const double protection = sign * (1.0 - m_recovery) * m_notional;
                      const double defaultsOn = discount.DiscountFactor(middle) * (q0 - q1);
                      rows.push_back({CashFlowKind::Protection, from, period.end, Date(), middle, 0.0, m_notional,
                                      0.0, protection, defaultsOn, protection * defaultsOn});
                  });
    return rows;
}

CreditDefaultSwap::Legs CreditDefaultSwap::LegsOn(const CreditCurve& credit, const YieldCurve& discount) const {
    return LegsOn([&](const Date& date) { return credit.SurvivalProbability(date); }, credit.ReferenceDate(), discount);
}

CreditDefaultSwap::Legs CreditDefaultSwap::FlatHazardLegs(double hazard, const Date& referenceDate,
                                                          const YieldCurve& discount) const {
    const DayCounter years(Act365Fixed);
    return LegsOn([&](const Date& date) { return std::exp(-hazard * std::max(years.YearFraction(referenceDate, date), 0.0)); },
                  referenceDate, discount);
}

double CreditDefaultSwap::ProtectionLegPV(const CreditCurve& credit, const YieldCurve& discount) const {
    return m_notional * (1.0 - m_recovery) * LegsOn(credit, discount).protection;
}

double CreditDefaultSwap::RiskyAnnuity(const CreditCurve& credit, const YieldCurve& discount) const {
    return m_notional * LegsOn(credit, discount).annuity;
}

double CreditDefaultSwap::PremiumLegPV(const CreditCurve& credit, const YieldCurve& discount) const {
    return m_coupon * RiskyAnnuity(credit, discount);
}

double CreditDefaultSwap::PV(const CreditCurve& credit, const YieldCurve& discount) const {
    const double buyer = m_notional * Upfront(credit, discount);
    return m_side == CdsSide::Buyer ? buyer : -buyer;
}

double CreditDefaultSwap::CS01(const CreditCurve& credit, const YieldCurve& discount) const {
    return PV(credit.WithSpreadsShifted(1e-4), discount) - PV(credit, discount);
}

double CreditDefaultSwap::ParSpread(const CreditCurve& credit, const YieldCurve& discount) const {
    const Legs legs = LegsOn(credit, discount);
    ZEP_REQUIRE(legs.annuity > 0.0, "the CDS has no premium left to pay");
    return (1.0 - m_recovery) * legs.protection / legs.annuity;
}

double CreditDefaultSwap::Upfront(const CreditCurve& credit, const YieldCurve& discount) const {
    const Legs legs = LegsOn(credit, discount);
    return (1.0 - m_recovery) * legs.protection - m_coupon * legs.annuity;
}

// Both the par spread and the upfront rise with the hazard rate, from their values without
// default (zero, and minus the coupon's annuity) at hazard zero.
double CreditDefaultSwap::SolveFlatHazard(double target, bool byUpfront, const Date& referenceDate,
                                          const YieldCurve& discount) const {
    ZEP_REQUIRE(std::isfinite(target), byUpfront ? "the upfront must be finite" : "the quoted spread must be finite");
    const auto mismatch = [&](double hazard) {
        const Legs legs = FlatHazardLegs(hazard, referenceDate, discount);
        ZEP_REQUIRE(legs.annuity > 0.0, "the CDS has no premium left to pay");
        const double protection = (1.0 - m_recovery) * legs.protection;
        return (byUpfront ? protection - m_coupon * legs.annuity : protection / legs.annuity) - target;
    };
    const double atZero = mismatch(0.0), highest = 50.0, atHighest = mismatch(highest);
    if (!(atZero <= 0.0 && atHighest >= 0.0))
        ZEP_FAIL(std::string("no flat hazard rate in [0, 50] reprices the ") +
                 (byUpfront ? "upfront " : "quoted spread ") + std::to_string(target));
    return BrentSolve(mismatch, 0.0, highest, atZero, atHighest, RootSearch{1e-14, 200});
}

double CreditDefaultSwap::UpfrontFromQuotedSpread(double quotedSpread, const Date& referenceDate,
                                                  const YieldCurve& discount) const {
    const Legs legs = FlatHazardLegs(SolveFlatHazard(quotedSpread, false, referenceDate, discount), referenceDate, discount);
    return (1.0 - m_recovery) * legs.protection - m_coupon * legs.annuity;
}

double CreditDefaultSwap::QuotedSpreadFromUpfront(double upfront, const Date& referenceDate,
                                                  const YieldCurve& discount) const {
    const Legs legs = FlatHazardLegs(SolveFlatHazard(upfront, true, referenceDate, discount), referenceDate, discount);
    return (1.0 - m_recovery) * legs.protection / legs.annuity;
}

std::string CreditDefaultSwap::Describe() const {
    std::ostringstream text;
    text.precision(10);
    text << "CDS, protection " << (m_side == CdsSide::Buyer ? "bought" : "sold") << ", notional " << m_notional
         << ", coupon " << m_coupon << ", recovery " << m_recovery << ", " << m_periods.front().start.ToString()
         << " to " << m_periods.back().end.ToString();
    return text.str();
}

}  // namespace zep
