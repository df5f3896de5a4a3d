// The Python face of a forward rate agreement: pay (+1) or receive (-1) the contract rate
// against the index over [startDate, endDate], the index fixing fixingLagDays business days
// before the start. Failures read "MFRA::<operation> failed: ".
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "MWrapper.hpp"
#include "RateInputs.hpp"
#include "lum-interest-rates/FRA.hpp"

namespace zep::python {

class MFRA : public MWrapper<zep::FRA> {
public:
    MFRA(int buySell, double notional, double contractRate, const DateInput& startDate, const DateInput& endDate,
         boost::shared_ptr<zep::YieldCurve> discountCurve,
         boost::shared_ptr<zep::YieldCurve> projectionCurve = boost::shared_ptr<zep::YieldCurve>(),
         const std::string& index = "EURIBOR3M", const zep::DayCounter& dayCounter = zep::DayCounter(zep::Act360),
         const std::string& centres = "TARGET", int fixingLagDays = 2,
         boost::shared_ptr<zep::FixingStore> fixings = boost::shared_ptr<zep::FixingStore>());

    double PV() const;
    double NPV() const { return PV(); }
    double ParRate() const;
    std::vector<zep::CashFlow> CashFlowSchedule() const;
    std::string Describe() const;

private:
    friend struct RiskAdapters;  // hands the instrument and its market to the risk layer
    std::optional<CurvePair> m_curves;
};

}  // namespace zep::python
