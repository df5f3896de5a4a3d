// The Python face of the booked vanilla option: built from date texts, numbers and either two
// rates or two curves, with a flat volatility or a surface; every call reports which operation
// failed ("MVanillaOption::<operation> failed: ").
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "DateInput.hpp"
#include "MWrapper.hpp"
#include "VolatilityInput.hpp"
#include "lum-closed-form/VanillaOption.hpp"

namespace zep::python {

class MVanillaOption : public MWrapper<zep::VanillaOption> {
public:
    MVanillaOption() = default;  // an empty object: every call reports "not initialized!"
    // Side +1 buy / -1 sell, type 0 call / 1 put; rates continuously compounded; the day
    // counter a code, a name or a zep.DayCounter; exercise 0 European, 1 American, 2 Bermudan.
    MVanillaOption(int buySell, int callPut, double faceValue, double strike, double spot,
                   const DateInput& referenceDate, const DateInput& expiryDate,
                   const DateInput& settlementDate, const DateInput& deliveryDate,
                   double accRate, double undRate, const VolatilityInput& volatility,
                   const zep::DayCounter& dayCounter = zep::DayCounter(zep::Act365Fixed),
                   int exerciseKind = 0);
    // The same on a domestic (accrual) and a foreign (underlying) curve.
    MVanillaOption(int buySell, int callPut, double faceValue, double strike, double spot,
                   const DateInput& referenceDate, const DateInput& expiryDate,
                   const DateInput& settlementDate, const DateInput& deliveryDate,
                   boost::shared_ptr<zep::YieldCurve> accCurve,
                   boost::shared_ptr<zep::YieldCurve> undCurve,
                   const VolatilityInput& volatility,
                   const zep::DayCounter& dayCounter = zep::DayCounter(zep::Act365Fixed),
                   int exerciseKind = 0);
    // Quoted on the forward to delivery (None fails "No input forward!"); spot -1 derives it.
    static MVanillaOption FromForward(int buySell, int callPut, double faceValue, double strike,
                                      std::optional<double> forward, const DateInput& referenceDate,
                                      const DateInput& expiryDate, const DateInput& settlementDate,
                                      const DateInput& deliveryDate, double accRate, double undRate,
                                      const VolatilityInput& volatility,
                                      const zep::DayCounter& dayCounter =
                                          zep::DayCounter(zep::Act365Fixed),
                                      int exerciseKind = 0, double spot = -1.0);
    static MVanillaOption FromForward(int buySell, int callPut, double faceValue, double strike,
                                      std::optional<double> forward, const DateInput& referenceDate,
                                      const DateInput& expiryDate, const DateInput& settlementDate,
                                      const DateInput& deliveryDate,
                                      boost::shared_ptr<zep::YieldCurve> accCurve,
                                      boost::shared_ptr<zep::YieldCurve> undCurve,
                   const VolatilityInput& volatility,
                                      const zep::DayCounter& dayCounter =
                                          zep::DayCounter(zep::Act365Fixed),
                                      int exerciseKind = 0, double spot = -1.0);

    double Price(int pricingMethod = 0);
    double PV(int pricingMethod = 0);
    double MarketValue(int pricingMethod = 0);
    double DiscMarketValue(int pricingMethod = 0);
    double PnL(int pricingMethod = 0);
    double DiscPnL(int pricingMethod = 0);
    double Payoff() const;
    // Spot delta (true) or premium-adjusted (false); an integer selects the pricing method.
    double Delta(bool spotDelta = true, int pricingMethod = 0);
    double Delta(int pricingMethod);
    double ForwardDelta(bool spotDelta = true, int pricingMethod = 0);
    double ForwardDelta(int pricingMethod);
    double Gamma(int pricingMethod = 0);
    double Vega(int pricingMethod = 0);
    double Theta(int pricingMethod = 0);
    double Rho(int pricingMethod = 0);
    double Phi(int pricingMethod = 0);
    double Vanna(int pricingMethod = 0);
    double Volga(int pricingMethod = 0);
    double DvegaDspot(int pricingMethod = 0);
    double DvegaDvol(int pricingMethod = 0);
    double DvegaDvol2(int pricingMethod = 0);
    double Dd1Dvol(int pricingMethod = 0);
    double VegaDigital(int pricingMethod = 0);
    double VegaIDDigital(int pricingMethod = 0);
    double DeltaPrice(const std::string& fieldName, double bump);
    double GammaPrice(const std::string& fieldName, double bump);

    double StrikeImpliedFromDelta(double targetDelta, bool spotDelta = true);
    double StrikeImpliedFromForwardDelta(double targetDelta, bool spotDelta = true);
    double StrikeImpliedFromPrice(double targetPrice);
    double VolImpliedFromPrice(double targetPrice);
    double DeltaImpliedFromStrike(double strike, bool spotDelta = true);
    double StrikeFromQuote(const std::string& side, const std::string& strikeQuote);
    double getVolSurfaceData(const std::string& side, const std::string& strikeQuote);
    // The early-exercise boundary of the same option exercised American: (years from the
    // reference date, critical spot) per time step of the finite-difference engine, at the
    // option's volatility and rates.
    std::vector<std::pair<double, double>> AmericanExerciseBoundaries(int nodes = 200, int timeSteps = 200) const;

    void SetPremium(double premium);
    double GetPremium() const;
    double GetAccRate() const;
    double GetUndRate() const;
    int GetBuySell() const;
    int GetCallPutType() const;
    zep::Date GetReferenceDate() const;
    zep::Date GetExpiryDate() const;
    zep::Date GetSettlementDate() const;
    zep::Date GetDeliveryDate() const;
    double GetFaceValue() const;
    double GetStrike() const;
    double GetSpot() const;
    double GetForward() const;
    double GetTimeToExpiry() const;
    double GetTimeToSettlement() const;
    double GetTimeToDelivery() const;
    double GetVol() const;

    // Releases the option; later calls report "not initialized!".
    void Dispose() { m_object.reset(); }

private:
    friend struct RiskAdapters;  // hands the instrument and its market to the risk layer
    explicit MVanillaOption(boost::shared_ptr<zep::VanillaOption> option)
        : MWrapper(std::move(option)) {}
};

}  // namespace zep::python
