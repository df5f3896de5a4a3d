// The Python face of a basis swap: receive one term index (plus a spread), pay another, each
// projected on its own curve and both discounted on one. Failures read "MBasisSwap::<operation>
// failed: ".
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "MWrapper.hpp"
#include "RateInputs.hpp"
#include "lum-interest-rates/Swap.hpp"

namespace zep::python {

class MBasisSwap : public MWrapper<zep::Swap> {
public:
    MBasisSwap(double notional, const DateInput& startDate, const DateInput& endDate,
               boost::shared_ptr<zep::YieldCurve> discountCurve, boost::shared_ptr<zep::YieldCurve> receivedCurve,
               boost::shared_ptr<zep::YieldCurve> paidCurve, const std::string& receivedIndex = "EURIBOR3M",
               const std::string& receivedTenor = "3M", const std::string& paidIndex = "EURIBOR6M",
               const std::string& paidTenor = "6M", double receivedSpread = 0.0, double paidSpread = 0.0,
               const zep::DayCounter& dayCounter = zep::DayCounter(zep::Act360), const std::string& centres = "TARGET",
               int fixingLagDays = 2,
               boost::shared_ptr<zep::FixingStore> fixings = boost::shared_ptr<zep::FixingStore>());

    double PV() const;
    double NPV() const { return PV(); }
    // The spread on the received leg that makes the swap worth nothing.
    double ParSpread() const;
    std::vector<zep::CashFlow> CashFlowSchedule() const;
    std::string Describe() const;

private:
    friend struct RiskAdapters;  // hands the instrument and its market to the risk layer
    std::optional<CurvePair> m_received, m_paid;
};

}  // namespace zep::python
