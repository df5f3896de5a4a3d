// The Python face of a fixed-against-floating swap: a term-rate leg (IBOR) or a daily compounded
// overnight leg (OVERNIGHT, the OIS) against a fixed leg, on a discount and a projection curve
// (the same curve when no projection curve is given). An amortising swap lists each leg's
// notional period by period; an empty list keeps the constant notional. Failures read
// "MVanillaSwap::<operation> failed: ".
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "MWrapper.hpp"
#include "RateInputs.hpp"
#include "lum-interest-rates/Swap.hpp"

namespace zep::python {

class MVanillaSwap : public MWrapper<zep::Swap> {
public:
    // payFixed +1 pays the fixed rate, -1 receives it.
    MVanillaSwap(int payFixed, double notional, double fixedRate, const DateInput& startDate, const DateInput& endDate,
                 boost::shared_ptr<zep::YieldCurve> discountCurve,
                 boost::shared_ptr<zep::YieldCurve> projectionCurve = boost::shared_ptr<zep::YieldCurve>(),
                 const std::string& index = "EURIBOR6M", const std::string& floatingKind = "IBOR",
                 double spread = 0.0, const std::string& fixedTenor = "1Y",
                 const zep::DayCounter& fixedDayCounter = zep::DayCounter(zep::Thirty360),
                 const std::string& floatTenor = "6M",
                 const zep::DayCounter& floatDayCounter = zep::DayCounter(zep::Act360),
                 const std::string& centres = "TARGET", int fixingLagDays = 2, int paymentLagDays = 0,
                 double gearing = 1.0, bool inArrears = false, int lookbackDays = 0, int lockoutDays = 0,
                 bool observationShift = false,
                 boost::shared_ptr<zep::FixingStore> fixings = boost::shared_ptr<zep::FixingStore>(),
                 const std::vector<double>& fixedNotionals = std::vector<double>(),
                 const std::vector<double>& floatNotionals = std::vector<double>());

    double PV() const;
    double NPV() const { return PV(); }
    double ParRate() const;
    double ParSpread() const;
    double FixedLegPV() const;
    double FloatingLegPV() const;
    // The fixed leg's PV change for a one basis point higher fixed rate.
    double FixedLegBPS() const;
    std::vector<zep::CashFlow> CashFlowSchedule() const;
    std::string Describe() const;

private:
    friend struct RiskAdapters;  // hands the instrument and its market to the risk layer
    std::optional<CurvePair> m_curves;
    bool m_payFixed = true;
};

}  // namespace zep::python
