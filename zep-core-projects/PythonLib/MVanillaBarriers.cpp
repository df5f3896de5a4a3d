#include "MVanillaBarriers.hpp"

#include <boost/make_shared.hpp>

#include "lum-fxo-market/FXVolSurface.hpp"

namespace zep::python {

zep::VanillaBarriers::Terms BarrierTerms(int buySell, int callPut, double faceValue, double strike, int barrierType,
                                         double barrier, double barrierUp, const zep::Date& referenceDate,
                                         const zep::Date& expiryDate, const zep::Date& settlementDate,
                                         const zep::Date& premiumDate, const zep::Date& deliveryDate,
                                         const zep::DayCounter& dayCounter) {
    zep::VanillaBarriers::Terms terms;
    terms.buySell = buySell;
    terms.callPut = callPut;
    terms.faceValue = faceValue;
    terms.strike = strike;
    terms.barrierType = barrierType;
    terms.barrier = barrier;
    terms.barrierUp = barrierUp;
    terms.referenceDate = referenceDate;
    terms.expiryDate = expiryDate;
    terms.settlementDate = settlementDate;
    terms.premiumDate = premiumDate;
    terms.deliveryDate = deliveryDate;
    terms.dayCounter = dayCounter;
    return terms;
}

zep::VanillaBarriers::SmileQuotes SurfaceSmileQuotes(const zep::VolatilitySource& source, const zep::Date& expiry) {
    const auto& surface = dynamic_cast<const zep::FXVolSurface&>(source);
    const double call25 = surface.GetVolatility(expiry, surface.GetStrike(expiry, "25C"));
    const double put25 = surface.GetVolatility(expiry, surface.GetStrike(expiry, "25P"));
    const double atm = surface.GetATMVol(expiry);
    return {call25 - put25, (call25 + put25) / 2.0 - atm, surface.findClosestDeltaType(expiry),
            surface.findClosestPremiumAdjusted(expiry) != 0, atm};
}

MVanillaBarriers::MVanillaBarriers(int buySell, int callPut, double faceValue, double strike, int barrierType,
                                   double barrier, double barrierUp, double spot, const DateInput& referenceDate,
                                   const DateInput& expiryDate, const DateInput& settlementDate,
                                   const DateInput& premiumDate, const DateInput& deliveryDate, double rd, double rf,
                                   const VolatilityInput& volatility, double riskReversal25, double butterfly25,
                                   int deltaType, bool premiumAdjusted, const zep::DayCounter& dayCounter)
    : MWrapper(Guarded("MVanillaBarriers::MVanillaBarriers", [&] {
          const auto terms = BarrierTerms(buySell, callPut, faceValue, strike, barrierType, barrier, barrierUp,
                                          referenceDate.Value(), expiryDate.Value(), settlementDate.Value(),
                                          premiumDate.Value(), deliveryDate.Value(), dayCounter);
          const auto& source = volatility.Source();
          std::optional<zep::VanillaBarriers::SmileQuotes> smile;
          if (source && source->IsFXVolSurface())
              smile = SurfaceSmileQuotes(*source, terms.expiryDate);
          else if (std::isfinite(riskReversal25) && std::isfinite(butterfly25))
              smile = zep::VanillaBarriers::SmileQuotes{riskReversal25, butterfly25, deltaType, premiumAdjusted, {}};
          return boost::make_shared<zep::VanillaBarriers>(terms, spot, rd, rf, source, smile);
      })) {}

double MVanillaBarriers::Price(int method) const { return ZEP_M_OPERATION(MVanillaBarriers, Price, method); }
double MVanillaBarriers::PV(int method) const { return ZEP_M_OPERATION(MVanillaBarriers, PV, method); }
double MVanillaBarriers::DeltaPrice(const std::string& fieldName, double bump, int method) const {
    return ZEP_M_OPERATION(MVanillaBarriers, DeltaPrice, fieldName, bump, method);
}
double MVanillaBarriers::GetTimeToExpiry() const { return ZEP_M_OPERATION(MVanillaBarriers, GetTimeToExpiry); }
double MVanillaBarriers::GetTimeToDelivery() const { return ZEP_M_OPERATION(MVanillaBarriers, GetTimeToDelivery); }

}  // namespace zep::python
