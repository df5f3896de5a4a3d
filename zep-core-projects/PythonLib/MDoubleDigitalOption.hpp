// The Python face of the booked range digital: dates as the user gives them; every call reports
// which operation failed ("MDoubleDigitalOption::<operation> failed: ").
#pragma once

#include "DateInput.hpp"
#include "MWrapper.hpp"
#include "lum-closed-form/DoubleDigitalOption.hpp"

namespace zep::python {

class MDoubleDigitalOption : public MWrapper<zep::DoubleDigitalOption> {
public:
    MDoubleDigitalOption() = default;  // an empty object: every call reports "not initialized!"
    MDoubleDigitalOption(const DateInput& referenceDate, const DateInput& expiryDate, const DateInput& deliveryDate,
                         double lowBarrier, double highBarrier, double payout, double spot, double volatility,
                         double rd, double rf, const zep::DayCounter& dayCounter = zep::DayCounter(zep::Act365Fixed));

    double Price(int pricingMethod = 0) const;
    double GetTimeToExpiry() const;
    double GetTimeToDelivery() const;
};

}  // namespace zep::python
