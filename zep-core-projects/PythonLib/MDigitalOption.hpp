// The Python face of the booked digital option: dates as the user gives them, two rates and a
// volatility (one number or a surface); every call reports which operation failed
// ("MDigitalOption::<operation> failed: ").
#pragma once

#include "DateInput.hpp"
#include "MWrapper.hpp"
#include "VolatilityInput.hpp"
#include "lum-closed-form/DigitalOption.hpp"

namespace zep::python {

class MDigitalOption : public MWrapper<zep::DigitalOption> {
public:
    MDigitalOption() = default;  // an empty object: every call reports "not initialized!"
    MDigitalOption(int buySell, int digitalType, double payout, double strike, double spot,
                   const DateInput& referenceDate, const DateInput& expiryDate, const DateInput& deliveryDate,
                   double rd, double rf, const VolatilityInput& volatility,
                   const zep::DayCounter& dayCounter = zep::DayCounter(zep::Act365Fixed));

    double Price(int pricingMethod = 0) const;
    double PV(int pricingMethod = 0) const;
    double Delta() const;
    double Gamma() const;
    double Vega() const;
    double Theta() const;
    double Rho() const;
    double GetVolatility() const;

private:
    friend struct RiskAdapters;  // hands the instrument and its market to the risk layer
};

}  // namespace zep::python
