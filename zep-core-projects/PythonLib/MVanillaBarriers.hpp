// The Python face of the booked barrier option: dates as the user gives them, two rates and a
// volatility (one number or a surface); every call reports which operation failed
// ("MVanillaBarriers::<operation> failed: ").
#pragma once

#include <cmath>
#include <string>

#include "DateInput.hpp"
#include "MWrapper.hpp"
#include "VolatilityInput.hpp"
#include "lum-closed-form/VanillaBarriers.hpp"

namespace zep::python {

// The booked barrier's terms from constructor arguments.
zep::VanillaBarriers::Terms BarrierTerms(int buySell, int callPut, double faceValue, double strike, int barrierType,
                                         double barrier, double barrierUp, const zep::Date& referenceDate,
                                         const zep::Date& expiryDate, const zep::Date& settlementDate,
                                         const zep::Date& premiumDate, const zep::Date& deliveryDate,
                                         const zep::DayCounter& dayCounter);

// The Vanna-Volga quotes of one expiry read back off an FX surface: RR = sigma_25C - sigma_25P,
// BF = (sigma_25C + sigma_25P) / 2 - sigma_ATM, with the expiry's delta convention.
zep::VanillaBarriers::SmileQuotes SurfaceSmileQuotes(const zep::VolatilitySource& surface, const zep::Date& expiry);

class MVanillaBarriers : public MWrapper<zep::VanillaBarriers> {
public:
    MVanillaBarriers() = default;  // an empty object: every call reports "not initialized!"
    // On a surface the Vanna-Volga quotes come from the surface; on one volatility from
    // riskReversal25 and butterfly25 (Vanna-Volga is refused without them).
    MVanillaBarriers(int buySell, int callPut, double faceValue, double strike, int barrierType, double barrier,
                     double barrierUp, double spot, const DateInput& referenceDate, const DateInput& expiryDate,
                     const DateInput& settlementDate, const DateInput& premiumDate, const DateInput& deliveryDate,
                     double rd, double rf, const VolatilityInput& volatility, double riskReversal25 = NAN,
                     double butterfly25 = NAN, int deltaType = 0, bool premiumAdjusted = false,
                     const zep::DayCounter& dayCounter = zep::DayCounter(zep::Act365Fixed));

    double Price(int pricingMethod = 0) const;
    double PV(int pricingMethod = 0) const;
    double DeltaPrice(const std::string& fieldName, double bump, int pricingMethod = 0) const;
    double GetTimeToExpiry() const;
    double GetTimeToDelivery() const;

private:
    friend struct RiskAdapters;  // hands the instrument and its market to the risk layer
};

}  // namespace zep::python
