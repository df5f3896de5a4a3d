#include "MVanillaOption.hpp"

#include <boost/make_shared.hpp>

#include "zep-pde/AmericanOption.hpp"

namespace zep::python {

namespace {

VanillaOption::Terms MakeTerms(int buySell, int callPut, double faceValue, double strike,
                               const DateInput& referenceDate, const DateInput& expiryDate,
                               const DateInput& settlementDate, const DateInput& deliveryDate,
                               const DayCounter& dayCounter, int exerciseKind) {
    VanillaOption::Terms terms;
    terms.buySell = buySell;
    terms.callPut = callPut;
    terms.faceValue = faceValue;
    terms.strike = strike;
    terms.referenceDate = referenceDate.Value();
    terms.expiryDate = expiryDate.Value();
    terms.settlementDate = settlementDate.Value();
    terms.deliveryDate = deliveryDate.Value();
    terms.dayCounter = dayCounter;
    terms.exerciseKind = exerciseKind;
    return terms;
}

}  // namespace

MVanillaOption::MVanillaOption(int buySell, int callPut, double faceValue, double strike,
                               double spot, const DateInput& referenceDate, const DateInput& expiryDate,
                               const DateInput& settlementDate, const DateInput& deliveryDate,
                               double accRate, double undRate, const VolatilityInput& volatility,
                               const DayCounter& dayCounter, int exerciseKind)
    : MWrapper(Guarded("MVanillaOption::MVanillaOption", [&] {
          return boost::make_shared<VanillaOption>(
              MakeTerms(buySell, callPut, faceValue, strike, referenceDate, expiryDate,
                        settlementDate, deliveryDate, dayCounter, exerciseKind),
              spot, VanillaOption::Carry::Rates(accRate, undRate), volatility.Source());
      })) {}

MVanillaOption::MVanillaOption(int buySell, int callPut, double faceValue, double strike,
                               double spot, const DateInput& referenceDate, const DateInput& expiryDate,
                               const DateInput& settlementDate, const DateInput& deliveryDate,
                               boost::shared_ptr<YieldCurve> accCurve,
                               boost::shared_ptr<YieldCurve> undCurve, const VolatilityInput& volatility,
                               const DayCounter& dayCounter, int exerciseKind)
    : MWrapper(Guarded("MVanillaOption::MVanillaOption", [&] {
          return boost::make_shared<VanillaOption>(
              MakeTerms(buySell, callPut, faceValue, strike, referenceDate, expiryDate,
                        settlementDate, deliveryDate, dayCounter, exerciseKind),
              spot, VanillaOption::Carry::Curves(accCurve, undCurve), volatility.Source());
      })) {}

MVanillaOption MVanillaOption::FromForward(int buySell, int callPut, double faceValue,
                                           double strike, std::optional<double> forward,
                                           const DateInput& referenceDate, const DateInput& expiryDate,
                                           const DateInput& settlementDate, const DateInput& deliveryDate,
                                           double accRate, double undRate, const VolatilityInput& volatility,
                                           const DayCounter& dayCounter, int exerciseKind,
                                           double spot) {
    return MVanillaOption(Guarded("MVanillaOption::FromForward", [&] {
        return boost::make_shared<VanillaOption>(VanillaOption::FromForward(
            MakeTerms(buySell, callPut, faceValue, strike, referenceDate, expiryDate,
                      settlementDate, deliveryDate, dayCounter, exerciseKind),
            forward, VanillaOption::Carry::Rates(accRate, undRate), volatility.Source(), spot));
    }));
}

MVanillaOption MVanillaOption::FromForward(int buySell, int callPut, double faceValue,
                                           double strike, std::optional<double> forward,
                                           const DateInput& referenceDate, const DateInput& expiryDate,
                                           const DateInput& settlementDate, const DateInput& deliveryDate,
                                           boost::shared_ptr<YieldCurve> accCurve,
                                           boost::shared_ptr<YieldCurve> undCurve,
                                           const VolatilityInput& volatility, const DayCounter& dayCounter,
                                           int exerciseKind, double spot) {
    return MVanillaOption(Guarded("MVanillaOption::FromForward", [&] {
        return boost::make_shared<VanillaOption>(VanillaOption::FromForward(
            MakeTerms(buySell, callPut, faceValue, strike, referenceDate, expiryDate,
                      settlementDate, deliveryDate, dayCounter, exerciseKind),
            forward, VanillaOption::Carry::Curves(accCurve, undCurve), volatility.Source(), spot));
    }));
}

#define ZEP_VANILLA_OPERATION(Name, ...) ZEP_M_OPERATION(MVanillaOption, Name __VA_OPT__(, ) __VA_ARGS__)

double MVanillaOption::Price(int method) { return ZEP_VANILLA_OPERATION(Price, method); }
double MVanillaOption::PV(int method) { return ZEP_VANILLA_OPERATION(PV, method); }
double MVanillaOption::MarketValue(int method) { return ZEP_VANILLA_OPERATION(MarketValue, method); }
double MVanillaOption::DiscMarketValue(int method) {
    return ZEP_VANILLA_OPERATION(DiscMarketValue, method);
}
double MVanillaOption::PnL(int method) { return ZEP_VANILLA_OPERATION(PnL, method); }
double MVanillaOption::DiscPnL(int method) { return ZEP_VANILLA_OPERATION(DiscPnL, method); }
double MVanillaOption::Payoff() const { return ZEP_VANILLA_OPERATION(Payoff); }
std::vector<std::pair<double, double>> MVanillaOption::AmericanExerciseBoundaries(int nodes, int timeSteps) const {
    return Guarded("MVanillaOption::AmericanExerciseBoundaries", [&] {
        const zep::VanillaOption& option = Object("zep::MVanillaOption::AmericanExerciseBoundaries");
        return zep::AmericanOption(option.GetCallPutType(), option.GetStrike(), option.GetVol(),
                                   option.GetTimeToExpiry(), option.GetAccRate(), option.GetUndRate(),
                                   option.GetSpot())
            .ExerciseBoundary(nodes, timeSteps);
    });
}
double MVanillaOption::Delta(bool spotDelta, int method) {
    return ZEP_VANILLA_OPERATION(Delta, spotDelta, method);
}
double MVanillaOption::Delta(int method) { return ZEP_VANILLA_OPERATION(Delta, true, method); }
double MVanillaOption::ForwardDelta(bool spotDelta, int method) {
    return ZEP_VANILLA_OPERATION(ForwardDelta, spotDelta, method);
}
double MVanillaOption::ForwardDelta(int method) {
    return ZEP_VANILLA_OPERATION(ForwardDelta, true, method);
}
double MVanillaOption::Gamma(int method) { return ZEP_VANILLA_OPERATION(Gamma, method); }
double MVanillaOption::Vega(int method) { return ZEP_VANILLA_OPERATION(Vega, method); }
double MVanillaOption::Theta(int method) { return ZEP_VANILLA_OPERATION(Theta, method); }
double MVanillaOption::Rho(int method) { return ZEP_VANILLA_OPERATION(Rho, method); }
double MVanillaOption::Phi(int method) { return ZEP_VANILLA_OPERATION(Phi, method); }
double MVanillaOption::Vanna(int method) { return ZEP_VANILLA_OPERATION(Vanna, method); }
double MVanillaOption::Volga(int method) { return ZEP_VANILLA_OPERATION(Volga, method); }
double MVanillaOption::DvegaDspot(int method) { return ZEP_VANILLA_OPERATION(DvegaDspot, method); }
double MVanillaOption::DvegaDvol(int method) { return ZEP_VANILLA_OPERATION(DvegaDvol, method); }
double MVanillaOption::DvegaDvol2(int method) { return ZEP_VANILLA_OPERATION(DvegaDvol2, method); }
double MVanillaOption::Dd1Dvol(int method) { return ZEP_VANILLA_OPERATION(Dd1Dvol, method); }
double MVanillaOption::VegaDigital(int method) { return ZEP_VANILLA_OPERATION(VegaDigital, method); }
double MVanillaOption::VegaIDDigital(int method) {
    return ZEP_VANILLA_OPERATION(VegaIDDigital, method);
}
double MVanillaOption::DeltaPrice(const std::string& fieldName, double bump) {
    return ZEP_VANILLA_OPERATION(DeltaPrice, fieldName, bump);
}
double MVanillaOption::GammaPrice(const std::string& fieldName, double bump) {
    return ZEP_VANILLA_OPERATION(GammaPrice, fieldName, bump);
}

double MVanillaOption::StrikeImpliedFromDelta(double targetDelta, bool spotDelta) {
    return ZEP_VANILLA_OPERATION(StrikeImpliedFromDelta, targetDelta, spotDelta);
}
double MVanillaOption::StrikeImpliedFromForwardDelta(double targetDelta, bool spotDelta) {
    return ZEP_VANILLA_OPERATION(StrikeImpliedFromForwardDelta, targetDelta, spotDelta);
}
double MVanillaOption::StrikeImpliedFromPrice(double targetPrice) {
    return ZEP_VANILLA_OPERATION(StrikeImpliedFromPrice, targetPrice);
}
double MVanillaOption::VolImpliedFromPrice(double targetPrice) {
    return ZEP_VANILLA_OPERATION(VolImpliedFromPrice, targetPrice);
}
double MVanillaOption::DeltaImpliedFromStrike(double strike, bool spotDelta) {
    return ZEP_VANILLA_OPERATION(DeltaImpliedFromStrike, strike, spotDelta);
}
double MVanillaOption::StrikeFromQuote(const std::string& side, const std::string& strikeQuote) {
    return ZEP_VANILLA_OPERATION(StrikeFromQuote, side, strikeQuote);
}
double MVanillaOption::getVolSurfaceData(const std::string& side, const std::string& strikeQuote) {
    return ZEP_VANILLA_OPERATION(getVolSurfaceData, side, strikeQuote);
}

void MVanillaOption::SetPremium(double premium) { ZEP_VANILLA_OPERATION(SetPremium, premium); }
double MVanillaOption::GetPremium() const { return ZEP_VANILLA_OPERATION(GetPremium); }
double MVanillaOption::GetAccRate() const { return ZEP_VANILLA_OPERATION(GetAccRate); }
double MVanillaOption::GetUndRate() const { return ZEP_VANILLA_OPERATION(GetUndRate); }
int MVanillaOption::GetBuySell() const { return ZEP_VANILLA_OPERATION(GetBuySell); }
int MVanillaOption::GetCallPutType() const { return ZEP_VANILLA_OPERATION(GetCallPutType); }
Date MVanillaOption::GetReferenceDate() const { return ZEP_VANILLA_OPERATION(GetReferenceDate); }
Date MVanillaOption::GetExpiryDate() const { return ZEP_VANILLA_OPERATION(GetExpiryDate); }
Date MVanillaOption::GetSettlementDate() const { return ZEP_VANILLA_OPERATION(GetSettlementDate); }
Date MVanillaOption::GetDeliveryDate() const { return ZEP_VANILLA_OPERATION(GetDeliveryDate); }
double MVanillaOption::GetFaceValue() const { return ZEP_VANILLA_OPERATION(GetFaceValue); }
double MVanillaOption::GetStrike() const { return ZEP_VANILLA_OPERATION(GetStrike); }
double MVanillaOption::GetSpot() const { return ZEP_VANILLA_OPERATION(GetSpot); }
double MVanillaOption::GetForward() const { return ZEP_VANILLA_OPERATION(GetForward); }
double MVanillaOption::GetTimeToExpiry() const { return ZEP_VANILLA_OPERATION(GetTimeToExpiry); }
double MVanillaOption::GetTimeToSettlement() const {
    return ZEP_VANILLA_OPERATION(GetTimeToSettlement);
}
double MVanillaOption::GetTimeToDelivery() const { return ZEP_VANILLA_OPERATION(GetTimeToDelivery); }
double MVanillaOption::GetVol() const { return ZEP_VANILLA_OPERATION(GetVol); }

#undef ZEP_VANILLA_OPERATION

}  // namespace zep::python
