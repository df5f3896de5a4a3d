#include "lum-interest-rates/YearOnYearInflationSwap.hpp"

#include <cmath>
#include <sstream>

#include "lum-auxiliary/Error.hpp"

namespace zep {

YearOnYearInflationSwap::YearOnYearInflationSwap(SwapSide fixedSide, double notional, double fixedRate,
                                                 const Schedule& schedule)
    : m_fixedSide(fixedSide), m_notional(notional), m_fixedRate(fixedRate), m_periods(schedule.Periods()) {
    ZEP_REQUIRE(fixedSide == SwapSide::Pay || fixedSide == SwapSide::Receive,
                "YearOnYearInflationSwap: the fixed side must be Receive (0) or Pay (1)");
    ZEP_REQUIRE(std::isfinite(notional), "YearOnYearInflationSwap: the notional is not finite");
    ZEP_REQUIRE(std::isfinite(fixedRate), "YearOnYearInflationSwap: the fixed rate is not finite");
    ZEP_REQUIRE(!m_periods.empty(), "YearOnYearInflationSwap: the schedule has no period");
}

double YearOnYearInflationSwap::PeriodRate(const ZeroInflationCurve& inflation, const SchedulePeriod& period) {
    return inflation.ReferenceIndex(period.unadjustedEnd) / inflation.ReferenceIndex(period.unadjustedStart) - 1.0;
}

std::vector<double> YearOnYearInflationSwap::PeriodInflation(const ZeroInflationCurve& inflation) const {
    std::vector<double> rates;
    rates.reserve(m_periods.size());
    for (const SchedulePeriod& period : m_periods) rates.push_back(PeriodRate(inflation, period));
    return rates;
}

double YearOnYearInflationSwap::InflationLegPV(const ZeroInflationCurve& inflation, const YieldCurve& discount) const {
    const Date valuation = discount.ReferenceDate();
    double pv = 0.0;
    for (const SchedulePeriod& period : m_periods) {
        if (period.payment <= valuation) continue;
        pv += PeriodRate(inflation, period) * period.accrualFraction * discount.DiscountFactor(period.payment);
    }
    return m_notional * pv;
}

double YearOnYearInflationSwap::Annuity(const YieldCurve& discount) const {
    const Date valuation = discount.ReferenceDate();
    double annuity = 0.0;
    for (const SchedulePeriod& period : m_periods)
        if (period.payment > valuation) annuity += period.accrualFraction * discount.DiscountFactor(period.payment);
    return annuity;
}

double YearOnYearInflationSwap::FixedLegPV(const YieldCurve& discount) const {
    return m_notional * m_fixedRate * Annuity(discount);
}

double YearOnYearInflationSwap::PV(const ZeroInflationCurve& inflation, const YieldCurve& discount) const {
    return ReceivedSign() * (InflationLegPV(inflation, discount) - FixedLegPV(discount));
}

double YearOnYearInflationSwap::FairRate(const ZeroInflationCurve& inflation, const YieldCurve& discount) const {
    const double annuity = Annuity(discount);
    ZEP_REQUIRE(annuity > 0.0, "YearOnYearInflationSwap: every period is paid, no fair rate");
    ZEP_REQUIRE(m_notional != 0.0, "YearOnYearInflationSwap: a zero notional has no fair rate");
    return InflationLegPV(inflation, discount) / (m_notional * annuity);
}

std::vector<CashFlow> YearOnYearInflationSwap::CashFlows(const ZeroInflationCurve& inflation,
                                                         const YieldCurve& discount) const {
    const Date valuation = discount.ReferenceDate();
    std::vector<CashFlow> inflationRows, fixedRows;
    for (const SchedulePeriod& period : m_periods) {
        if (period.payment <= valuation) continue;
        const auto row = [&](double sign, double rate) {
            CashFlow flow;
            flow.accrualStart = period.accrualStart;
            flow.accrualEnd = period.accrualEnd;
            flow.paymentDate = period.payment;
            flow.accrualFraction = period.accrualFraction;
            flow.notional = m_notional;
            flow.rate = rate;
            flow.amount = sign * m_notional * rate * period.accrualFraction;
            flow.discountFactor = discount.DiscountFactor(period.payment);
            flow.presentValue = flow.amount * flow.discountFactor;
            return flow;
        };
        inflationRows.push_back(row(ReceivedSign(), PeriodRate(inflation, period)));
        fixedRows.push_back(row(-ReceivedSign(), m_fixedRate));
    }
    inflationRows.insert(inflationRows.end(), fixedRows.begin(), fixedRows.end());
    return inflationRows;
}

std::string YearOnYearInflationSwap::Describe() const {
    std::ostringstream text;
    text.precision(10);
    text << "year-on-year inflation swap, " << (m_fixedSide == SwapSide::Pay ? "pay" : "receive") << " fixed "
         << m_fixedRate << " on " << m_notional << ", " << m_periods.front().accrualStart.ToString() << " to "
         << m_periods.back().accrualEnd.ToString() << ", " << m_periods.size() << " periods";
    return text.str();
}

}  // namespace zep
