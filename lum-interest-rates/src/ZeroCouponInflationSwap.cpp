#include "lum-interest-rates/ZeroCouponInflationSwap.hpp"

#include <cmath>
#include <sstream>

#include "lum-auxiliary/Error.hpp"

namespace zep {

ZeroCouponInflationSwap::ZeroCouponInflationSwap(SwapSide fixedSide, double notional, double fixedRate,
                                                 const Date& start, const Date& maturity, const Date& payment)
    : m_fixedSide(fixedSide), m_notional(notional), m_fixedRate(fixedRate), m_start(start), m_maturity(maturity),
      m_payment(payment) {
    ZEP_REQUIRE(fixedSide == SwapSide::Pay || fixedSide == SwapSide::Receive,
                "ZeroCouponInflationSwap: the fixed side must be Receive (0) or Pay (1)");
    ZEP_REQUIRE(std::isfinite(notional), "ZeroCouponInflationSwap: the notional is not finite");
    ZEP_REQUIRE(std::isfinite(fixedRate) && fixedRate > -1.0, "ZeroCouponInflationSwap: the fixed rate must be above -1");
    ZEP_REQUIRE(maturity > start, "ZeroCouponInflationSwap: the maturity must come after the start");
    ZEP_REQUIRE(payment >= maturity, "ZeroCouponInflationSwap: the payment cannot come before the maturity");
}

double ZeroCouponInflationSwap::InflationLegPV(const ZeroInflationCurve& inflation, const YieldCurve& discount) const {
    if (m_payment <= discount.ReferenceDate()) return 0.0;
    const double growth = inflation.ReferenceIndex(m_maturity) / inflation.ReferenceIndex(m_start) - 1.0;
    return m_notional * growth * discount.DiscountFactor(m_payment);
}

double ZeroCouponInflationSwap::FixedLegPV(const ZeroInflationCurve& inflation, const YieldCurve& discount) const {
    if (m_payment <= discount.ReferenceDate()) return 0.0;
    const double growth = std::pow(1.0 + m_fixedRate, inflation.SwapYears(m_start, m_maturity)) - 1.0;
    return m_notional * growth * discount.DiscountFactor(m_payment);
}

double ZeroCouponInflationSwap::PV(const ZeroInflationCurve& inflation, const YieldCurve& discount) const {
    return ReceivedSign() * (InflationLegPV(inflation, discount) - FixedLegPV(inflation, discount));
}

double ZeroCouponInflationSwap::FairRate(const ZeroInflationCurve& inflation) const {
    return inflation.ZeroCouponRate(m_start, m_maturity);
}

std::vector<CashFlow> ZeroCouponInflationSwap::CashFlows(const ZeroInflationCurve& inflation,
                                                         const YieldCurve& discount) const {
    if (m_payment <= discount.ReferenceDate()) return {};  // settled
    const double years = inflation.SwapYears(m_start, m_maturity);
    const double discountFactor = discount.DiscountFactor(m_payment);
    const auto row = [&](double sign, double rate, double legPV) {
        CashFlow flow;
        flow.accrualStart = m_start;
        flow.accrualEnd = m_maturity;
        flow.paymentDate = m_payment;
        flow.accrualFraction = years;
        flow.notional = m_notional;
        flow.rate = rate;
        flow.discountFactor = discountFactor;
        flow.presentValue = sign * legPV;
        flow.amount = flow.presentValue / discountFactor;
        return flow;
    };
    return {row(ReceivedSign(), FairRate(inflation), InflationLegPV(inflation, discount)),
            row(-ReceivedSign(), m_fixedRate, FixedLegPV(inflation, discount))};
}

std::string ZeroCouponInflationSwap::Describe() const {
    std::ostringstream text;
    text.precision(10);
    text << "zero-coupon inflation swap, " << (m_fixedSide == SwapSide::Pay ? "pay" : "receive") << " fixed "
         << m_fixedRate << " on " << m_notional << ", " << m_start.ToString() << " to " << m_maturity.ToString();
    return text.str();
}

}  // namespace zep
