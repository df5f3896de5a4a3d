// A European FX or equity vanilla as a trader books it: side, notional, strike, the trade's dates
// and its market (spot or forward, two rates or two curves, a volatility source), priced by the
// Black-Scholes engine with the year fractions and carry rates it derives from them. Every figure
// is a finite number or raises a zep::Error naming it, as the engine's do (see BSVanilla.hpp).
#pragma once

#include <optional>
#include <string>

#include <boost/shared_ptr.hpp>

#include "lum-auxiliary/SourceLine.hpp"
#include "lum-closed-form/BSVanilla.hpp"
#include "lum-closed-form/VolatilitySource.hpp"
#include "lum-interest-rates/YieldCurve.hpp"
#include "lum-time/Calendar.hpp"
#include "lum-time/Date.hpp"
#include "lum-time/DayCounter.hpp"

namespace zep {

class VanillaOption {
public:
    enum BuySell : int { Sell = -1, Buy = 1 };
    enum ExerciseKind : int { European = 0, American = 1, Bermudan = 2 };
    // Pricing-method codes. 0 and 1 are the closed form (1 names it as Garman-Kohlhagen for
    // callers of FX books; the figures are the same). The others name engines for early
    // exercise that this library does not carry yet:
    //   European: any code but 0 and 1 fails "not support Trinominal or BAW!";
    //   American: code 2 fails "not support Trinominal!", every other code "not support
    //             Trinominal or BAW!" (the closed form has no early exercise);
    //   Bermudan: every code fails "Not support BERMUDAN!".
    enum PricingMethod : int {
        ClosedForm = 0,
        GarmanKohlhagen = 1,
        Trinomial = 2,
        BaroneAdesiWhaley = 3,
        FiniteDifference = 4,
        LeastSquaresMonteCarlo = 5,
    };

    // The contract: who pays, what and when. Times are measured from the reference date with
    // the day counter; the calendar (optional) holds the holidays of the option's centres.
    struct Terms {
        int buySell = Buy;
        int callPut = BSVanilla::Call;
        double faceValue = 1.0;
        double strike = 0.0;
        Date referenceDate;
        Date expiryDate;
        Date settlementDate;
        Date deliveryDate;
        DayCounter dayCounter = DayCounter(Act365Fixed);
        int exerciseKind = European;
        boost::shared_ptr<const Calendar> calendar;
    };

    // The carry of the underlying: the domestic (accrual, premium currency) rate and the foreign
    // (underlying: foreign currency or dividend yield) rate, either as continuously compounded
    // numbers or as curves, read as continuous zero rates to the delivery date.
    struct Carry {
        static Carry Rates(double accRate, double undRate);
        static Carry Curves(boost::shared_ptr<const YieldCurve> accCurve,
                            boost::shared_ptr<const YieldCurve> undCurve);
        double accRate = 0.0;
        double undRate = 0.0;
        boost::shared_ptr<const YieldCurve> accCurve;
        boost::shared_ptr<const YieldCurve> undCurve;
        bool fromCurves = false;
    };

    // Quoted on spot; the engine carries it to the forward at delivery.
    VanillaOption(const Terms& terms, double spot, const Carry& carry,
                  boost::shared_ptr<const VolatilitySource> volatility);
    // Quoted on the forward to delivery; without a forward it fails "No input forward!". A spot
    // of BSVanilla::kSpotFromForward derives the spot as the engine does.
    static VanillaOption FromForward(const Terms& terms, std::optional<double> forward,
                                     const Carry& carry,
                                     boost::shared_ptr<const VolatilitySource> volatility,
                                     double spot = BSVanilla::kSpotFromForward);

    // Figures per unit of underlying, in domestic currency, for the long option:
    // Price: the premium valued on the reference date, paid on delivery (the engine's price).
    double Price(int pricingMethod = ClosedForm);
    // PV = side (+1 buy, -1 sell) * face value * Price.
    double PV(int pricingMethod = ClosedForm);
    // MarketValue = PV / DFd(delivery): the position's value in delivery-date money, the figure
    // marked against a forward-quoted premium.
    double MarketValue(int pricingMethod = ClosedForm);
    // DiscMarketValue = MarketValue discounted from delivery to the premium settlement date
    // (= PV / DFd(settlement)): the cash that settles the position's value on that date.
    double DiscMarketValue(int pricingMethod = ClosedForm);
    // PnL = MarketValue - side * face value * premium: the traded premium (per unit, see
    // SetPremium) taken as an undiscounted amount, as MarketValue is.
    double PnL(int pricingMethod = ClosedForm);
    // DiscPnL = PV - side * face value * premium * DFd(settlement): both legs on the reference
    // date, the premium discounted from its settlement date.
    double DiscPnL(int pricingMethod = ClosedForm);
    // Payoff = side * face value * max(phi (S - K), 0): exercise value on today's spot.
    double Payoff() const;

    // The engine's Greeks for one unit of the long option (see BSVanilla for each definition).
    double Delta(bool spotDelta = true, int pricingMethod = ClosedForm);
    double ForwardDelta(bool spotDelta = true, int pricingMethod = ClosedForm);
    double Gamma(int pricingMethod = ClosedForm);
    double Vega(int pricingMethod = ClosedForm);
    double Theta(int pricingMethod = ClosedForm);
    double Rho(int pricingMethod = ClosedForm);
    double Phi(int pricingMethod = ClosedForm);
    double Vanna(int pricingMethod = ClosedForm);
    double Volga(int pricingMethod = ClosedForm);
    double DvegaDspot(int pricingMethod = ClosedForm);
    double DvegaDvol(int pricingMethod = ClosedForm);
    double DvegaDvol2(int pricingMethod = ClosedForm);
    double Dd1Dvol(int pricingMethod = ClosedForm);
    double VegaDigital(int pricingMethod = ClosedForm);
    double VegaIDDigital(int pricingMethod = ClosedForm);

    // Bumped risk of Price to a market field; only "spot_Volatility" (a parallel shift of the
    // volatility, additive, each bumped volatility floored at 0) is known. With up = sigma + bump
    // and down = sigma - bump after flooring:
    //   DeltaPrice = (P(up) - P(down)) / (up - down)         (compare Vega);
    //   GammaPrice = the three-point second difference of P over (down, sigma, up) (compare Volga).
    // A bump of 0 gives 0.
    double DeltaPrice(const std::string& fieldName, double bump);
    double GammaPrice(const std::string& fieldName, double bump);

    // The solvers of the engine on this option's market (volatility read at the option's strike).
    double StrikeImpliedFromDelta(double targetDelta, bool spotDelta = true);
    double StrikeImpliedFromForwardDelta(double targetDelta, bool spotDelta = true);
    // On an FX surface the strike is solved on the smile (FuncFor_StrikeImpliedFromPrice).
    double StrikeImpliedFromPrice(double targetPrice);
    // Price at the strike, at the surface's volatility there, minus the target: the function
    // whose root is the strike of a premium on a smile. Only an FX surface has that smile
    // ("Support FXVolSurface only!").
    double FuncFor_StrikeImpliedFromPrice(double strike, double targetPrice) const;
    double VolImpliedFromPrice(double targetPrice) const;
    double DeltaImpliedFromStrike(double strike, bool spotDelta = true) const;

    // The strike a quote denotes for a side ("CALL"/"PUT"; see StrikeFromQuote for the forms)
    // and the volatility the source gives there at this option's expiry.
    double StrikeFromQuote(const std::string& side, const std::string& strikeQuote) const;
    double getVolSurfaceData(const std::string& side, const std::string& strikeQuote) const;

    // The traded premium per unit of underlying, paid on the settlement date (0 until set).
    void SetPremium(double premium) { m_premium = premium; }
    double GetPremium() const { return m_premium; }

    double GetAccRate() const { return m_accRate; }
    double GetUndRate() const { return m_undRate; }
    int GetBuySell() const { return m_terms.buySell; }
    int GetCallPutType() const { return m_terms.callPut; }
    int GetExerciseKind() const { return m_terms.exerciseKind; }
    const Date& GetReferenceDate() const { return m_terms.referenceDate; }
    const Date& GetExpiryDate() const { return m_terms.expiryDate; }
    const Date& GetSettlementDate() const { return m_terms.settlementDate; }
    const Date& GetDeliveryDate() const { return m_terms.deliveryDate; }
    const DayCounter& GetDayCounter() const { return m_terms.dayCounter; }
    const boost::shared_ptr<const Calendar>& GetCalendar() const { return m_terms.calendar; }
    double GetFaceValue() const { return m_terms.faceValue; }
    double GetStrike() const { return m_terms.strike; }
    double GetSpot() const { return m_engine.GetSpot(); }
    double GetForward() const { return m_engine.GetForward(); }
    double GetTimeToExpiry() const { return m_timeToExpiry; }
    double GetTimeToSettlement() const { return m_timeToSettlement; }
    double GetTimeToDelivery() const { return m_timeToDelivery; }
    double GetVol() const { return m_volatility; }

private:
    struct Market;
    VanillaOption(const Terms& terms, const Market& market, BSVanilla engine,
                  boost::shared_ptr<const VolatilitySource> volatility);
    static Market Validate(const Terms& terms, const Carry& carry,
                           const boost::shared_ptr<const VolatilitySource>& volatility,
                           const char* expiryMessage);

    // The engine for a pricing-method code, after the exercise-kind checks.
    BSVanilla& Engine(int pricingMethod);
    // A fresh engine on this option's market at another volatility.
    BSVanilla EngineAt(double volatility) const;
    double SignedNotional() const { return m_terms.buySell * m_terms.faceValue; }
    // The figure, or a zep::Error naming it and the trade when it is not a finite number.
    double Finite(double value, const char* figure,
                  const SourceLine& where = SourceLine::Current()) const;

    Terms m_terms;
    boost::shared_ptr<const VolatilitySource> m_volatilitySource;
    double m_timeToExpiry;
    double m_timeToSettlement;
    double m_timeToDelivery;
    double m_accRate;
    double m_undRate;
    double m_settlementDiscount;  // domestic discount factor to the settlement date
    double m_volatility;          // the source's volatility at the strike and expiry
    double m_premium = 0.0;
    BSVanilla m_engine;
};

}  // namespace zep
