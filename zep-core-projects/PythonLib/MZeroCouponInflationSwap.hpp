// The Python face of a zero-coupon inflation swap on an inflation curve and a discount curve:
// payFixed +1 pays (1 + K)^tau - 1 and receives the index growth, -1 the reverse, both paid on the
// maturity rolled Modified Following on the centres. Failures read
// "MZeroCouponInflationSwap::<operation> failed: ".
#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "DateInput.hpp"
#include "MWrapper.hpp"
#include "lum-interest-rates/ZeroCouponInflationSwap.hpp"

namespace zep::python {

class MZeroCouponInflationSwap : public MWrapper<zep::ZeroCouponInflationSwap> {
public:
    MZeroCouponInflationSwap(int payFixed, double notional, double fixedRate, const DateInput& startDate,
                             const DateInput& maturityDate, boost::shared_ptr<zep::ZeroInflationCurve> inflationCurve,
                             boost::shared_ptr<zep::YieldCurve> discountCurve, const std::string& centres = "TARGET");

    double PV() const;
    double NPV() const { return PV(); }
    double FairRate() const;
    double ParRate() const { return FairRate(); }
    double InflationLegPV() const;
    double FixedLegPV() const;
    std::vector<zep::CashFlow> CashFlowSchedule() const;
    std::string Describe() const;

private:
    boost::shared_ptr<zep::ZeroInflationCurve> m_inflation;
    boost::shared_ptr<zep::YieldCurve> m_discount;
};

}  // namespace zep::python
