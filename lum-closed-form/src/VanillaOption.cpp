#include "lum-closed-form/VanillaOption.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include <fmt/format.h>

#include "FiniteFigure.hpp"
#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/StrikeQuote.hpp"
#include "lum-solvers/ModifiedSecant.hpp"

namespace zep {

// Everything the option derives from its dates, carry and volatility source before it exists.
struct VanillaOption::Market {
    double timeToExpiry;
    double timeToSettlement;
    double timeToDelivery;
    double accRate;
    double undRate;
    double settlementDiscount;
    double volatility;
};

namespace {

// The continuously compounded zero rate that reproduces the curve's discount factor to the date
// over the option's own year fraction, so the engine discounts exactly as the curve does. At a
// zero time the rate has no effect on any discount factor and is taken as 0.
double ZeroRateTo(const YieldCurve& curve, const Date& date, double time) {
    if (time < BSVanilla::kExpiryThreshold) return 0.0;
    return -std::log(curve.DiscountFactor(date)) / time;
}

}  // namespace

VanillaOption::Carry VanillaOption::Carry::Rates(double accRate, double undRate) {
    Carry carry;
    carry.accRate = accRate;
    carry.undRate = undRate;
    return carry;
}

VanillaOption::Carry VanillaOption::Carry::Curves(boost::shared_ptr<const YieldCurve> accCurve,
                                                  boost::shared_ptr<const YieldCurve> undCurve) {
    Carry carry;
    carry.accCurve = std::move(accCurve);
    carry.undCurve = std::move(undCurve);
    carry.fromCurves = true;
    return carry;
}

VanillaOption::Market VanillaOption::Validate(const Terms& terms, const Carry& carry,
                                              const boost::shared_ptr<const VolatilitySource>& volatility,
                                              const char* expiryMessage) {
    if (!volatility) ZEP_FAIL("VolSurface is Null!");
    if (terms.buySell != Buy && terms.buySell != Sell) ZEP_FAIL("unknow side");
    if (terms.exerciseKind != European && terms.exerciseKind != American &&
        terms.exerciseKind != Bermudan)
        ZEP_FAIL("unknown option type(expiry nature)!");
    // Equal dates pass: an option expiring today still has its intrinsic value.
    if (terms.expiryDate < terms.referenceDate) ZEP_FAIL(expiryMessage);
    if (terms.settlementDate < terms.expiryDate)
        ZEP_FAIL("Settlement date must on or after expiry date!");
    if (carry.fromCurves && !carry.accCurve) ZEP_FAIL("accrual (domestic) YieldCurve is Null!");
    if (carry.fromCurves && !carry.undCurve) ZEP_FAIL("underlying (foreign) YieldCurve is Null!");

    const DayCounter& counter = terms.dayCounter;
    Market market{};
    market.timeToExpiry = counter.YearFraction(terms.referenceDate, terms.expiryDate);
    market.timeToSettlement = counter.YearFraction(terms.referenceDate, terms.settlementDate);
    market.timeToDelivery = counter.YearFraction(terms.referenceDate, terms.deliveryDate);
    if (carry.fromCurves) {
        market.accRate = ZeroRateTo(*carry.accCurve, terms.deliveryDate, market.timeToDelivery);
        market.undRate = ZeroRateTo(*carry.undCurve, terms.deliveryDate, market.timeToDelivery);
        market.settlementDiscount = carry.accCurve->DiscountFactor(terms.settlementDate);
    } else {
        market.accRate = carry.accRate;
        market.undRate = carry.undRate;
        market.settlementDiscount = std::exp(-carry.accRate * market.timeToSettlement);
    }
    market.volatility = volatility->Volatility(terms.strike, market.timeToExpiry);
    return market;
}

VanillaOption::VanillaOption(const Terms& terms, const Market& market, BSVanilla engine,
                             boost::shared_ptr<const VolatilitySource> volatility)
    : m_terms(terms), m_volatilitySource(std::move(volatility)),
      m_timeToExpiry(market.timeToExpiry), m_timeToSettlement(market.timeToSettlement),
      m_timeToDelivery(market.timeToDelivery), m_accRate(market.accRate),
      m_undRate(market.undRate), m_settlementDiscount(market.settlementDiscount),
      m_volatility(market.volatility), m_engine(std::move(engine)) {}

VanillaOption::VanillaOption(const Terms& terms, double spot, const Carry& carry,
                             boost::shared_ptr<const VolatilitySource> volatility)
    : VanillaOption([&]() -> VanillaOption {
          const Market market =
              Validate(terms, carry, volatility, "Expiry date must after reference date!");
          BSVanilla engine(terms.callPut, terms.strike, market.volatility, market.timeToExpiry,
                           market.timeToDelivery, market.accRate, market.undRate, spot);
          return VanillaOption(terms, market, std::move(engine), volatility);
      }()) {}

VanillaOption VanillaOption::FromForward(const Terms& terms, std::optional<double> forward,
                                         const Carry& carry,
                                         boost::shared_ptr<const VolatilitySource> volatility,
                                         double spot) {
    if (!forward) ZEP_FAIL("No input forward!");
    // This form has always carried the misspelt message; books match on it.
    const Market market =
        Validate(terms, carry, volatility, "Expiry date must after reference datel!");
    BSVanilla engine = BSVanilla::FromForward(terms.callPut, terms.strike, market.volatility,
                                              market.timeToExpiry, market.timeToDelivery,
                                              market.accRate, market.undRate, *forward, spot);
    return VanillaOption(terms, market, std::move(engine), std::move(volatility));
}

BSVanilla& VanillaOption::Engine(int pricingMethod) {
    if (m_terms.exerciseKind == Bermudan) ZEP_FAIL("Not support BERMUDAN!");
    if (m_terms.exerciseKind == American) {
        if (pricingMethod == Trinomial) ZEP_FAIL("not support Trinominal!");
        ZEP_FAIL("not support Trinominal or BAW!");
    }
    if (pricingMethod != ClosedForm && pricingMethod != GarmanKohlhagen)
        ZEP_FAIL("not support Trinominal or BAW!");
    return m_engine;
}

BSVanilla VanillaOption::EngineAt(double volatility) const {
    // The engine already holds the spot and forward of either quotation, so a forward-quoted
    // option keeps its forward and derived spot.
    return BSVanilla::FromForward(m_terms.callPut, m_terms.strike, volatility, m_timeToExpiry,
                                  m_timeToDelivery, m_accRate, m_undRate, m_engine.GetForward(),
                                  m_engine.GetSpot());
}

double VanillaOption::Finite(double value, const char* figure, const SourceLine& where) const {
    const auto describeTrade = [this] {
        return fmt::format("{} {} on {:.6g} units struck at {:.6g}, spot {:.6g}, {:.6g} years to delivery at "
                           "rate {:.6g}", m_terms.buySell == Buy ? "a bought" : "a sold",
                           m_terms.callPut == BSVanilla::Call ? "call" : "put", m_terms.faceValue,
                           m_terms.strike, GetSpot(), m_timeToDelivery, m_accRate);
    };
    return detail::FiniteFigure(value, "zep::VanillaOption", figure, describeTrade, where);
}

double VanillaOption::Price(int pricingMethod) { return Engine(pricingMethod).Price(); }
double VanillaOption::PV(int pricingMethod) { return Finite(SignedNotional() * Price(pricingMethod), "PV"); }

double VanillaOption::MarketValue(int pricingMethod) {
    return Finite(PV(pricingMethod) / std::exp(-m_accRate * m_timeToDelivery), "MarketValue");
}

double VanillaOption::DiscMarketValue(int pricingMethod) {
    return Finite(PV(pricingMethod) / m_settlementDiscount, "DiscMarketValue");
}

double VanillaOption::PnL(int pricingMethod) {
    return Finite(MarketValue(pricingMethod) - SignedNotional() * m_premium, "PnL");
}

double VanillaOption::DiscPnL(int pricingMethod) {
    return Finite(PV(pricingMethod) - SignedNotional() * m_premium * m_settlementDiscount, "DiscPnL");
}

double VanillaOption::Payoff() const {
    const double phi = m_terms.callPut == BSVanilla::Call ? 1.0 : -1.0;
    return Finite(SignedNotional() * std::max(phi * (GetSpot() - m_terms.strike), 0.0), "Payoff");
}

double VanillaOption::Delta(bool spotDelta, int pricingMethod) {
    return Engine(pricingMethod).Delta(spotDelta);
}
double VanillaOption::ForwardDelta(bool spotDelta, int pricingMethod) {
    return Engine(pricingMethod).ForwardDelta(spotDelta);
}
double VanillaOption::Gamma(int pricingMethod) { return Engine(pricingMethod).Gamma(); }
double VanillaOption::Vega(int pricingMethod) { return Engine(pricingMethod).Vega(); }
double VanillaOption::Theta(int pricingMethod) { return Engine(pricingMethod).Theta(); }
double VanillaOption::Rho(int pricingMethod) { return Engine(pricingMethod).Rho(); }
double VanillaOption::Phi(int pricingMethod) { return Engine(pricingMethod).Phi(); }
double VanillaOption::Vanna(int pricingMethod) { return Engine(pricingMethod).Vanna(); }
double VanillaOption::Volga(int pricingMethod) { return Engine(pricingMethod).Volga(); }
double VanillaOption::DvegaDspot(int pricingMethod) { return Engine(pricingMethod).DvegaDspot(); }
double VanillaOption::DvegaDvol(int pricingMethod) { return Engine(pricingMethod).DvegaDvol(); }
double VanillaOption::DvegaDvol2(int pricingMethod) { return Engine(pricingMethod).DvegaDvol2(); }
double VanillaOption::Dd1Dvol(int pricingMethod) { return Engine(pricingMethod).Dd1Dvol(); }
double VanillaOption::VegaDigital(int pricingMethod) { return Engine(pricingMethod).VegaDigital(); }
double VanillaOption::VegaIDDigital(int pricingMethod) {
    return Engine(pricingMethod).VegaIDDigital();
}

double VanillaOption::DeltaPrice(const std::string& fieldName, double bump) {
    if (fieldName != "spot_Volatility") ZEP_FAIL("not supported fieldName!");
    Engine(ClosedForm);
    if (bump == 0.0) return 0.0;
    const double up = std::max(m_volatility + bump, 0.0);
    const double down = std::max(m_volatility - bump, 0.0);
    return Finite((EngineAt(up).Price() - EngineAt(down).Price()) / (up - down), "DeltaPrice");
}

double VanillaOption::GammaPrice(const std::string& fieldName, double bump) {
    if (fieldName != "spot_Volatility") ZEP_FAIL("not supported fieldName!");
    const double centre = Engine(ClosedForm).Price();
    if (bump == 0.0) return 0.0;
    const double up = std::max(m_volatility + bump, 0.0);
    const double down = std::max(m_volatility - bump, 0.0);
    const double slopeUp = (EngineAt(up).Price() - centre) / (up - m_volatility);
    const double slopeDown = (centre - EngineAt(down).Price()) / (m_volatility - down);
    return Finite(2.0 * (slopeUp - slopeDown) / (up - down), "GammaPrice");
}

double VanillaOption::StrikeImpliedFromDelta(double targetDelta, bool spotDelta) {
    return BSVanilla::StrikeImpliedFromDelta(
        m_terms.callPut, targetDelta, m_volatility, m_timeToExpiry, m_timeToDelivery, m_accRate,
        m_undRate, GetSpot(), m_terms.strike,
        spotDelta ? DeltaKind::Spot : DeltaKind::SpotPremiumAdjusted);
}

double VanillaOption::StrikeImpliedFromForwardDelta(double targetDelta, bool spotDelta) {
    return BSVanilla::StrikeImpliedFromDelta(
        m_terms.callPut, targetDelta, m_volatility, m_timeToExpiry, m_timeToDelivery, m_accRate,
        m_undRate, GetSpot(), m_terms.strike,
        spotDelta ? DeltaKind::Forward : DeltaKind::ForwardPremiumAdjusted);
}

double VanillaOption::FuncFor_StrikeImpliedFromPrice(double strike, double targetPrice) const {
    if (!m_volatilitySource->IsFXVolSurface()) ZEP_FAIL("Support FXVolSurface only!");
    const double volatility = m_volatilitySource->Volatility(strike, m_timeToExpiry);
    return BSVanilla::FromForward(m_terms.callPut, strike, volatility, m_timeToExpiry,
                                  m_timeToDelivery, m_accRate, m_undRate, m_engine.GetForward(),
                                  m_engine.GetSpot())
               .Price() -
           targetPrice;
}

double VanillaOption::StrikeImpliedFromPrice(double targetPrice) {
    if (m_volatilitySource->IsFXVolSurface()) {
        // The premium falls monotonically with the strike for a call and rises for a put, so a
        // bracket many standard deviations wide either side of the forward holds the root.
        const double width = 10.0 * m_volatility * std::sqrt(std::max(m_timeToExpiry, 1e-4)) + 0.5;
        ModifiedSecant secant(1e-14, 300);
        secant.SetDomain(GetForward() * std::exp(-width), GetForward() * std::exp(width));
        return secant.Solve(
            [&](double strike) { return FuncFor_StrikeImpliedFromPrice(strike, targetPrice); });
    }
    return BSVanilla::StrikeImpliedFromPrice(m_terms.callPut, targetPrice, m_volatility,
                                             m_timeToExpiry, m_timeToDelivery, m_accRate,
                                             m_undRate, GetSpot(), m_terms.strike);
}

double VanillaOption::VolImpliedFromPrice(double targetPrice) const {
    return BSVanilla::VolImpliedFromPrice(m_terms.callPut, m_terms.strike, m_timeToExpiry,
                                          m_timeToDelivery, m_accRate, m_undRate, GetSpot(),
                                          targetPrice);
}

double VanillaOption::DeltaImpliedFromStrike(double strike, bool spotDelta) const {
    return BSVanilla::DeltaImpliedFromStrike(m_terms.callPut, strike, m_volatility, m_timeToExpiry,
                                             m_timeToDelivery, m_accRate, m_undRate, GetSpot(),
                                             spotDelta);
}

double VanillaOption::StrikeFromQuote(const std::string& side, const std::string& strikeQuote) const {
    const StrikeQuoteMarket market{GetSpot(),      GetForward(), m_timeToExpiry,
                                   m_timeToDelivery, m_accRate,   m_undRate};
    return zep::StrikeFromQuote(OptionTypeFromSide(side), strikeQuote, market,
                                *m_volatilitySource);
}

double VanillaOption::getVolSurfaceData(const std::string& side,
                                        const std::string& strikeQuote) const {
    return m_volatilitySource->Volatility(StrikeFromQuote(side, strikeQuote), m_timeToExpiry);
}

}  // namespace zep
