#include "lum-interest-rates/CreditCurve.hpp"

#include <cmath>

#include "lum-auxiliary/Error.hpp"
#include "lum-solvers/RootFinders.hpp"
#include "lum-time/Schedule.hpp"

namespace zep {

CreditCurve::CreditCurve(const Date& referenceDate, const std::vector<Period>& tenors, const std::vector<double>& spreads,
                         double recovery, boost::shared_ptr<const YieldCurve> discountCurve,
                         const CreditConventions& conventions, const Calendar& calendar)
    : m_referenceDate(referenceDate),
      m_recovery(recovery),
      m_discountCurve(std::move(discountCurve)),
      m_conventions(conventions),
      m_calendar(calendar),
      m_tenors(tenors),
      m_spreads(spreads) {
    ZEP_REQUIRE(m_discountCurve != nullptr, "CreditCurve: no discount curve");
    ZEP_REQUIRE(!tenors.empty(), "CreditCurve: no CDS quotes");
    ZEP_REQUIRE(tenors.size() == spreads.size(), "CreditCurve: one spread per tenor");
    ZEP_REQUIRE(recovery >= 0.0 && recovery < 1.0, "CreditCurve: the recovery rate must lie in [0, 1)");
    for (std::size_t k = 0; k < tenors.size(); ++k) {
        const std::string name = "the CDS " + tenors[k].Text() + " quote";
        ZEP_REQUIRE(std::isfinite(spreads[k]) && spreads[k] > 0.0, "CreditCurve: " + name + " needs a positive spread");
        const Date maturity = referenceDate + tenors[k];
        ZEP_REQUIRE(maturity > referenceDate, "CreditCurve: " + name + " has no tenor");
        if (k > 0 && !(calendar.Adjust(maturity, ModifiedFollowing, conventions.centres) >
                       calendar.Adjust(m_maturities.back(), ModifiedFollowing, conventions.centres)))
            ZEP_FAIL("CreditCurve: " + name + " does not mature after the CDS " + tenors[k - 1].Text() + " quote");
        m_maturities.push_back(maturity);
    }
    for (std::size_t k = 0; k < tenors.size(); ++k) {
        const std::vector<PremiumPeriod> periods = PeriodsOf(m_maturities[k]);
        // Protection runs to the rolled end of the last premium period: the stretch of this hazard.
        m_times.push_back(periods.back().end);
        m_hazards.push_back(0.0);
        const auto mismatch = [&](double hazard) {
            m_hazards.back() = hazard;
            return ParSpread(periods) - spreads[k];
        };
        try {
            m_hazards.back() = BrentSolve(mismatch, 0.0, 50.0, {1e-14, 200});
        } catch (const Error& error) {
            ZEP_FAIL("CreditCurve: no non-negative hazard rate reprices the CDS " + tenors[k].Text() + " spread (" +
                     error.Message() + ")");
        }
    }
}

std::vector<CreditCurve::PremiumPeriod> CreditCurve::PeriodsOf(const Date& maturity) const {
    ScheduleRules rules;
    rules.tenor = m_conventions.premiumTenor;
    rules.centres = m_conventions.centres;
    rules.dayCounter = m_conventions.premiumDayCounter;
    rules.fixingLagDays = 0;
    const Schedule schedule(m_referenceDate, maturity, rules, m_calendar);
    const DayCounter& curveDays = m_conventions.curveDayCounter;
    std::vector<PremiumPeriod> periods;
    for (const SchedulePeriod& period : schedule.Periods()) {
        const double start = curveDays.YearFraction(m_referenceDate, period.accrualStart);
        const double end = curveDays.YearFraction(m_referenceDate, period.accrualEnd);
        const Date mid((period.accrualStart.SerialNumber() + period.accrualEnd.SerialNumber()) / 2);
        periods.push_back({start, end, period.accrualFraction, m_discountCurve->DiscountFactor(period.payment),
                           m_discountCurve->DiscountFactor(mid)});
    }
    return periods;
}

double CreditCurve::ParSpread(const std::vector<PremiumPeriod>& periods) const {
    double premium = 0.0, protection = 0.0;
    for (const PremiumPeriod& p : periods) {
        const double q0 = SurvivalProbability(p.start), q1 = SurvivalProbability(p.end);
        premium += p.accrual * p.paymentDiscount * 0.5 * (q0 + q1);
        protection += p.midDiscount * (q0 - q1);
    }
    return (1.0 - m_recovery) * protection / premium;
}

double CreditCurve::ParSpread(const Period& tenor) const { return ParSpread(PeriodsOf(m_referenceDate + tenor)); }

CreditCurve CreditCurve::WithSpreadsShifted(double shift) const {
    std::vector<double> shifted = m_spreads;
    for (double& spread : shifted) spread += shift;
    return CreditCurve(m_referenceDate, m_tenors, shifted, m_recovery, m_discountCurve, m_conventions, m_calendar);
}

double CreditCurve::CumulativeHazard(double t) const {
    double integral = 0.0, from = 0.0;
    for (std::size_t k = 0; k < m_hazards.size(); ++k) {
        const bool last = k + 1 == m_hazards.size();
        const double to = last ? t : std::min(t, m_times[k]);
        integral += m_hazards[k] * (to - from);
        if (t <= m_times[k] || last) break;
        from = m_times[k];
    }
    return integral;
}

double CreditCurve::SurvivalProbability(double t) const { return t <= 0.0 ? 1.0 : std::exp(-CumulativeHazard(t)); }

double CreditCurve::SurvivalProbability(const Date& date) const {
    return SurvivalProbability(m_conventions.curveDayCounter.YearFraction(m_referenceDate, date));
}

double CreditCurve::HazardRate(double t) const {
    for (std::size_t k = 0; k < m_times.size(); ++k)
        if (t <= m_times[k]) return m_hazards[k];
    return m_hazards.back();
}

}  // namespace zep
