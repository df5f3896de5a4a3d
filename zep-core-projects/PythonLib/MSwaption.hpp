// The Python face of a European swaption: the right to enter, on expiryDate, a swap from startDate
// to endDate paying (PAYER) or receiving (RECEIVER) the strike on its fixed leg against a term
// index, settled PHYSICAL or in CASH (par-yield annuity), valued at one volatility under BLACK,
// SHIFTEDBLACK or BACHELIER. Failures read "MSwaption::<operation> failed: ".
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "MWrapper.hpp"
#include "RateInputs.hpp"
#include "lum-interest-rates/Swaption.hpp"

namespace zep::python {

class MSwaption : public MWrapper<zep::Swaption> {
public:
    MSwaption(const std::string& payerReceiver, double notional, double strike, const DateInput& expiryDate,
              const DateInput& startDate, const DateInput& endDate, boost::shared_ptr<zep::YieldCurve> discountCurve,
              boost::shared_ptr<zep::YieldCurve> projectionCurve, double volatility, const std::string& model = "BLACK",
              double shift = 0.0, const std::string& settlement = "PHYSICAL", const std::string& fixedTenor = "1Y",
              const zep::DayCounter& fixedDayCounter = zep::DayCounter(zep::Thirty360),
              const std::string& floatTenor = "6M",
              const zep::DayCounter& floatDayCounter = zep::DayCounter(zep::Act360),
              const std::string& centres = "TARGET", int fixingLagDays = 2, const std::string& index = "EURIBOR6M");

    double PV() const;
    double NPV() const { return PV(); }
    double ForwardRate() const;
    // The rows of CashFlows(): one CashflowScheduleRow each, in a CashFlowVector.
    std::vector<zep::CashFlow> CashFlowSchedule() const;
    double Annuity() const;
    // The underlying swap's value today, from the holder's side (pays the strike for a payer).
    double ForwardSwapValue() const;
    // The volatility of this swaption's model (and shift) at which it is worth `price`.
    double ImpliedVolatility(double price) const;
    std::string Describe() const;

private:
    std::optional<CurvePair> m_curves;
    zep::RateVolatility m_volatility;
};

}  // namespace zep::python
