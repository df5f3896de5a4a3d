#include "MZeroCouponInflationSwap.hpp"

#include <boost/make_shared.hpp>

#include "lum-time/Calendar.hpp"

namespace zep::python {

MZeroCouponInflationSwap::MZeroCouponInflationSwap(int payFixed, double notional, double fixedRate,
                                                   const DateInput& startDate, const DateInput& maturityDate,
                                                   boost::shared_ptr<zep::ZeroInflationCurve> inflationCurve,
                                                   boost::shared_ptr<zep::YieldCurve> discountCurve,
                                                   const std::string& centres) {
    Guarded("MZeroCouponInflationSwap::MZeroCouponInflationSwap", [&] {
        if (payFixed != 1 && payFixed != -1) throw std::invalid_argument("payFixed must be +1 (pay) or -1 (receive).");
        if (!inflationCurve) throw std::invalid_argument("MZeroCouponInflationSwap: the inflation curve is None.");
        if (!discountCurve) throw std::invalid_argument("MZeroCouponInflationSwap: the discount curve is None.");
        const zep::Date start = startDate.Value(), maturity = maturityDate.Value();
        const zep::Date payment = zep::Calendar::Shared().Adjust(maturity, zep::ModifiedFollowing, centres);
        auto swap = boost::make_shared<zep::ZeroCouponInflationSwap>(
            payFixed == 1 ? zep::SwapSide::Pay : zep::SwapSide::Receive, notional, fixedRate, start, maturity,
            payment);
        swap->PV(*inflationCurve, *discountCurve);  // a missing fixing fails here, not at the first query
        m_inflation = std::move(inflationCurve);
        m_discount = std::move(discountCurve);
        m_object = std::move(swap);
    });
}

double MZeroCouponInflationSwap::PV() const {
    return ZEP_M_OPERATION(MZeroCouponInflationSwap, PV, *m_inflation, *m_discount);
}

double MZeroCouponInflationSwap::FairRate() const { return ZEP_M_OPERATION(MZeroCouponInflationSwap, FairRate, *m_inflation); }

double MZeroCouponInflationSwap::InflationLegPV() const {
    return ZEP_M_OPERATION(MZeroCouponInflationSwap, InflationLegPV, *m_inflation, *m_discount);
}

double MZeroCouponInflationSwap::FixedLegPV() const {
    return ZEP_M_OPERATION(MZeroCouponInflationSwap, FixedLegPV, *m_inflation, *m_discount);
}

std::vector<zep::CashFlow> MZeroCouponInflationSwap::CashFlowSchedule() const {
    return Guarded("MZeroCouponInflationSwap::CashFlowSchedule", [&] {
        return Object("zep::python::MZeroCouponInflationSwap::CashFlowSchedule").CashFlows(*m_inflation, *m_discount);
    });
}

std::string MZeroCouponInflationSwap::Describe() const { return ZEP_M_OPERATION(MZeroCouponInflationSwap, Describe); }

}  // namespace zep::python
