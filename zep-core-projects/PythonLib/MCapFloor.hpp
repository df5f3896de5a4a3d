// The Python face of a cap or floor on a term index: caplets over [startDate, endDate] every
// `tenor`, each fixing fixingLagDays business days before its period, valued at one flat
// volatility under BLACK, SHIFTEDBLACK or BACHELIER on a discount and a projection curve (the
// discount curve projects when no projection curve is given). Failures read
// "MCapFloor::<operation> failed: ".
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "MWrapper.hpp"
#include "RateInputs.hpp"
#include "lum-interest-rates/CapFloor.hpp"

namespace zep::python {

class MCapFloor : public MWrapper<zep::CapFloor> {
public:
    MCapFloor(const std::string& capFloor, double notional, double strike, const DateInput& startDate,
              const DateInput& endDate, boost::shared_ptr<zep::YieldCurve> discountCurve,
              boost::shared_ptr<zep::YieldCurve> projectionCurve, double volatility, const std::string& model = "BLACK",
              double shift = 0.0, const std::string& tenor = "3M",
              const zep::DayCounter& dayCounter = zep::DayCounter(zep::Act360), const std::string& centres = "TARGET",
              int fixingLagDays = 2);

    double PV() const;
    double NPV() const { return PV(); }
    // Each caplet's (floorlet's) value and forward rate, in schedule order, those still to pay.
    std::vector<double> CapletPVs() const;
    std::vector<double> ForwardRates() const;
    // The rows of CashFlows(): one CashflowScheduleRow each, in a CashFlowVector.
    std::vector<zep::CashFlow> CashFlowSchedule() const;
    // The flat volatility of this instrument's model (and shift) at which it is worth `price`.
    double ImpliedVolatility(double price) const;
    std::string Describe() const;

private:
    std::optional<CurvePair> m_curves;
    zep::RateVolatility m_volatility;
};

}  // namespace zep::python
