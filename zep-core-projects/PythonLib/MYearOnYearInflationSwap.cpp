#include "MYearOnYearInflationSwap.hpp"

#include <boost/make_shared.hpp>

#include "RateInputs.hpp"

namespace zep::python {

MYearOnYearInflationSwap::MYearOnYearInflationSwap(int payFixed, double notional, double fixedRate,
                                                   const DateInput& startDate, const DateInput& endDate,
                                                   boost::shared_ptr<zep::ZeroInflationCurve> inflationCurve,
                                                   boost::shared_ptr<zep::YieldCurve> discountCurve,
                                                   const std::string& tenor, const zep::DayCounter& dayCounter,
                                                   const std::string& centres) {
    Guarded("MYearOnYearInflationSwap::MYearOnYearInflationSwap", [&] {
        if (payFixed != 1 && payFixed != -1) throw std::invalid_argument("payFixed must be +1 (pay) or -1 (receive).");
        if (!inflationCurve) throw std::invalid_argument("MYearOnYearInflationSwap: the inflation curve is None.");
        if (!discountCurve) throw std::invalid_argument("MYearOnYearInflationSwap: the discount curve is None.");
        auto swap = boost::make_shared<zep::YearOnYearInflationSwap>(
            payFixed == 1 ? zep::SwapSide::Pay : zep::SwapSide::Receive, notional, fixedRate,
            MakeSchedule(startDate, endDate, {tenor, dayCounter, centres, 0, 0}));
        swap->PV(*inflationCurve, *discountCurve);  // a missing fixing fails here, not at the first query
        m_inflation = std::move(inflationCurve);
        m_discount = std::move(discountCurve);
        m_object = std::move(swap);
    });
}

double MYearOnYearInflationSwap::PV() const {
    return ZEP_M_OPERATION(MYearOnYearInflationSwap, PV, *m_inflation, *m_discount);
}

double MYearOnYearInflationSwap::FairRate() const {
    return ZEP_M_OPERATION(MYearOnYearInflationSwap, FairRate, *m_inflation, *m_discount);
}

double MYearOnYearInflationSwap::InflationLegPV() const {
    return ZEP_M_OPERATION(MYearOnYearInflationSwap, InflationLegPV, *m_inflation, *m_discount);
}

double MYearOnYearInflationSwap::FixedLegPV() const { return ZEP_M_OPERATION(MYearOnYearInflationSwap, FixedLegPV, *m_discount); }

std::vector<double> MYearOnYearInflationSwap::PeriodInflation() const {
    return ZEP_M_OPERATION(MYearOnYearInflationSwap, PeriodInflation, *m_inflation);
}

std::vector<zep::CashFlow> MYearOnYearInflationSwap::CashFlowSchedule() const {
    return Guarded("MYearOnYearInflationSwap::CashFlowSchedule", [&] {
        return Object("zep::python::MYearOnYearInflationSwap::CashFlowSchedule").CashFlows(*m_inflation, *m_discount);
    });
}

std::string MYearOnYearInflationSwap::Describe() const { return ZEP_M_OPERATION(MYearOnYearInflationSwap, Describe); }

}  // namespace zep::python
