// Barrier and digital options: the Black-Scholes closed forms (EuropeanBarrierBS, DigitalOptionBS),
// the barrier type codes, and the smile-aware Vanna-Volga barrier and digital.
%{
#include "lum-closed-form/EuropeanBarrierBS.hpp"
#include "lum-closed-form/EuropeanBarrierVV_Fisher.hpp"
#include "lum-closed-form/DigitalOptionBS.hpp"
#include "lum-closed-form/DigitalOptionVV.hpp"
#include "lum-closed-form/BarrierBook.hpp"
#include "lum-closed-form/VanillaBarriers.hpp"
#include "lum-closed-form/DigitalOption.hpp"
#include "lum-fxo-market/FXVolSurface.hpp"
#include "MDigitalOption.hpp"
#include "MVanillaBarriers.hpp"
#include <cmath>

%}

%feature("docstring") zep::EuropeanBarrierBS
"A European call or put knocked in or out when the spot touches a barrier, watched continuously
until expiry, under Black-Scholes (domestic and foreign rates): closed forms for one barrier,
the Ikeda-Kunitomo series for a corridor. No rebate.

EuropeanBarrierBS(optionType, barrierType, strike, barrier, volatility, timeToExpiry,
                  timeToDelivery, domesticRate, foreignRate, spot)
EuropeanBarrierBS(optionType, barrierType, strike, barrierLow, barrierUp, volatility,
                  timeToExpiry, timeToDelivery, domesticRate, foreignRate, spot)

optionType: 0 call, 1 put. barrierType: BarrierType_DOWN_AND_IN (2), BarrierType_DOWN_AND_OUT
(3), BarrierType_UP_AND_IN (4), BarrierType_UP_AND_OUT (5), BarrierType_DOUBLE_KNOCK_IN (6),
BarrierType_DOUBLE_KNOCK_OUT (7). The barrier runs to expiry; carry and discounting run to
delivery, so that a barrier out of reach gives the BSVanilla price.";

%include "lum-closed-form/EuropeanBarrierBS.hpp"

%feature("docstring") zep::EuropeanBarrierVV_Fisher
"A barrier option under the Vanna-Volga correction FX desks use: the Black-Scholes knock-out at
the at-the-money volatility plus the market cost of its vega, vanna and volga, read off the ATM,
25-delta risk reversal and butterfly pivots, scaled by the no-touch probability. Knock-ins by
parity against the vanilla at the smile through the three pivots.

EuropeanBarrierVV_Fisher(spot, domesticRate, foreignRate, atmVolatility, timeToExpiry,
    timeToDelivery, riskReversal25, butterfly25, strike, optionType, barrierType, barrier,
    deltaType, premiumAdjusted)
EuropeanBarrierVV_Fisher(..., barrierType, barrierLow, barrierUp, deltaType, premiumAdjusted)

deltaType: 0 spot, 1 forward delta for the 25-delta strikes; premiumAdjusted: premium-included.
SetTrace(True) (or ZEP_VV_TRACE=1 when built) logs every intermediate at info level.";

%ignore zep::VannaVolgaBase::Pivots;
%ignore zep::EuropeanBarrierVV_Fisher::GetPivots;
%ignore zep::EuropeanBarrierVV_Fisher::GetOmega;
%ignore zep::EuropeanBarrierVV_Fisher::GetCosts;
%include "lum-closed-form/EuropeanBarrierVV_Fisher.hpp"

%feature("docstring") zep::DigitalOptionBS
"A digital (binary) option under Black-Scholes with domestic and foreign rates.

DigitalOptionBS(digitalType, strike, volatility, timeToExpiry, timeToDelivery, domesticRate,
                foreignRate, spot, payout=1.0, pricingMethod=0)

digitalType: 0 cash-or-nothing call, 1 cash-or-nothing put, 2 asset-or-nothing call, 3 asset-or-
nothing put. pricingMethod: 0 analytic, 1 call spread (vanillas either side of the strike).
Greeks: Delta, Gamma, Vega (per unit of volatility), Theta (one day), Rho (closed form),
ComputeRhoSym (+-1bp bump of the domestic rate).";
%include "lum-closed-form/DigitalOptionBS.hpp"

%feature("docstring") zep::DigitalOptionVV
"The smile-consistent digital: the Black-Scholes digital at the strike's smile volatility minus
the vanilla vega times the smile slope there (-dC/dK on the smile). The smile passes through the
ATM and 25-delta pivots (parabola in log-moneyness, flat beyond the 25-delta strikes).

DigitalOptionVV(spot, domesticRate, foreignRate, atmVolatility, timeToExpiry, timeToDelivery,
                riskReversal25, butterfly25, strike, digitalType, deltaType, premiumAdjusted,
                payout=1.0)";
%include "lum-closed-form/DigitalOptionVV.hpp"

%ignore zep::BarrierBookInputs;
%ignore zep::PriceBarrierBook;
%inline %{
namespace zep::python {
// The raw entry point behind PriceBarrierBook below.
void PriceBarrierBookInto(std::span<const double> types, std::span<const double> barrierTypes,
                          std::span<const double> strikes, std::span<const double> barriers,
                          std::span<const double> upperBarriers, std::span<const double> vols,
                          std::span<const double> expiries, std::span<const double> deliveries,
                          std::span<const double> domesticRates, std::span<const double> foreignRates,
                          std::span<const double> spots, std::span<double> prices) {
    zep::PriceBarrierBook({types, barrierTypes, strikes, barriers, upperBarriers, vols, expiries, deliveries,
                           domesticRates, foreignRates, spots},
                          prices);
}
}
%}

%pythoncode %{
def PriceBarrierBook(types: "numpy.typing.ArrayLike", barrierTypes: "numpy.typing.ArrayLike",
                     strikes: "numpy.typing.ArrayLike", barriers: "numpy.typing.ArrayLike",
                     upperBarriers: "numpy.typing.ArrayLike", vols: "numpy.typing.ArrayLike",
                     expiries: "numpy.typing.ArrayLike", deliveries: "numpy.typing.ArrayLike",
                     rd: "numpy.typing.ArrayLike", rf: "numpy.typing.ArrayLike",
                     spots: "numpy.typing.ArrayLike") -> "numpy.typing.NDArray[numpy.float64]":
    """Price a book of Black-Scholes barrier options (EuropeanBarrierBS) in one call.

    Arrays or broadcast scalars: option type 0 call / 1 put, barrier type 2 to 7, strike, barrier
    (the lower level of a corridor), upper level (read for corridors only), volatility, years to
    expiry and to delivery, domestic and foreign continuous rates, spot. Returns the prices as a
    float64 array of the book's shape; a row the pricer would refuse gives NaN."""
    import numpy
    columns, shape = _book_columns(types, barrierTypes, strikes, barriers, upperBarriers, vols, expiries,
                                   deliveries, rd, rf, spots)
    prices = numpy.empty(columns[0].size)
    PriceBarrierBookInto(*columns, prices)
    return prices.reshape(shape)
%}

%feature("docstring") zep::VanillaBarriers
"A European barrier option as booked: side, notional, strike, barrier(s), dates and market.

VanillaBarriers(buySell, callPut, faceValue, strike, barrierType, barrier, barrierUp, spot,
                referenceDate, expiryDate, settlementDate, premiumDate, deliveryDate, rd, rf, vol,
                riskReversal25=nan, butterfly25=nan, deltaType=0, premiumAdjusted=False,
                dayCounter=DayCounter(Act365Fixed))    (arguments by position: two signatures)

or with an FXVolSurface in place of vol and the quotes: the smile at the strike, and for
Vanna-Volga the expiry's 25-delta risk reversal and butterfly read off the surface.
barrierUp is read for corridors (types 6, 7). Price(method)/PV(method): 0 Black-Scholes,
1 Vanna-Volga (needs riskReversal25 and butterfly25), 2 finite differences (single barriers),
3 BSREPLICATE refused. DeltaPrice('spot_Volatility', bump, method): the volatility sensitivity.";

%ignore zep::VanillaBarriers::VanillaBarriers(const Terms&, double, double, double, boost::shared_ptr<const VolatilitySource>, std::optional<SmileQuotes>);
%ignore zep::VanillaBarriers::Terms;
%ignore zep::VanillaBarriers::SmileQuotes;
%include "lum-closed-form/VanillaBarriers.hpp"
%extend zep::VanillaBarriers {
    VanillaBarriers(int buySell, int callPut, double faceValue, double strike, int barrierType, double barrier,
                    double barrierUp, double spot, const zep::Date& referenceDate, const zep::Date& expiryDate,
                    const zep::Date& settlementDate, const zep::Date& premiumDate, const zep::Date& deliveryDate,
                    double rd, double rf, double vol, double riskReversal25 = NAN, double butterfly25 = NAN,
                    int deltaType = 0, bool premiumAdjusted = false,
                    const zep::DayCounter& dayCounter = zep::DayCounter(zep::Act365Fixed)) {
        const zep::VanillaBarriers::Terms terms =
            zep::python::BarrierTerms(buySell, callPut, faceValue, strike, barrierType, barrier, barrierUp, referenceDate,
                                      expiryDate, settlementDate, premiumDate, deliveryDate, dayCounter);
        std::optional<zep::VanillaBarriers::SmileQuotes> smile;
        if (std::isfinite(riskReversal25) && std::isfinite(butterfly25))
            smile = zep::VanillaBarriers::SmileQuotes{riskReversal25, butterfly25, deltaType, premiumAdjusted, std::nullopt};
        return new zep::VanillaBarriers(terms, spot, rd, rf, boost::make_shared<zep::FlatVolatility>(vol), smile);
    }
    // On an FX surface: Black-Scholes and finite differences read the smile at the strike; Vanna-
    // Volga takes the expiry's 25-delta risk reversal and butterfly back off the surface
    // (RR = sigma_25C - sigma_25P, BF = (sigma_25C + sigma_25P) / 2 - sigma_ATM) with its delta
    // convention.
    VanillaBarriers(int buySell, int callPut, double faceValue, double strike, int barrierType, double barrier,
                    double barrierUp, double spot, const zep::Date& referenceDate, const zep::Date& expiryDate,
                    const zep::Date& settlementDate, const zep::Date& premiumDate, const zep::Date& deliveryDate,
                    double rd, double rf, boost::shared_ptr<zep::FXVolSurface> surface,
                    const zep::DayCounter& dayCounter = zep::DayCounter(zep::Act365Fixed)) {
        if (!surface) throw std::invalid_argument("VanillaBarriers: no volatility surface");
        const zep::VanillaBarriers::Terms terms =
            zep::python::BarrierTerms(buySell, callPut, faceValue, strike, barrierType, barrier, barrierUp, referenceDate,
                                      expiryDate, settlementDate, premiumDate, deliveryDate, dayCounter);
        const auto smile = zep::python::SurfaceSmileQuotes(*surface, expiryDate);
        return new zep::VanillaBarriers(terms, spot, rd, rf, surface, smile);
    }
}

%feature("docstring") zep::python::MVanillaBarriers
"The booked barrier option behind the M-class frame:
MVanillaBarriers(buySell, callPut, faceValue, strike, barrierType, barrier, barrierUp, spot,
referenceDate, expiryDate, settlementDate, premiumDate, deliveryDate, rd, rf, vol,
riskReversal25=nan, butterfly25=nan, deltaType=0, premiumAdjusted=False,
dayCounter=DayCounter(Act365Fixed)). Dates as zep.Date, text or datetime.date;
vol a number or an FX surface (zep.FXVolSurface, zep.MFXVolSurface), whose 25-delta quotes then
feed Vanna-Volga. Price/PV(method) with the VanillaBarriers codes (0 Black-Scholes, 1 Vanna-Volga,
2 finite differences), DeltaPrice('spot_Volatility', bump, method). Failures read
'MVanillaBarriers::<operation> failed: ...'.";
// Helpers of the wrappers' constructors, returning C++ types Python has no class for.
%ignore zep::python::BarrierTerms;
%ignore zep::python::SurfaceSmileQuotes;
%include "MVanillaBarriers.hpp"

%feature("docstring") zep::DigitalOption
"A booked digital: see MDigitalOption, which builds it from Python values.";
%ignore zep::DigitalOption::DigitalOption;
%ignore zep::DigitalOption::Terms;
%include "lum-closed-form/DigitalOption.hpp"

%feature("docstring") zep::python::MDigitalOption
"The booked digital option:
MDigitalOption(buySell, digitalType, payout, strike, spot, referenceDate, expiryDate,
deliveryDate, rd, rf, vol, dayCounter=DayCounter(Act365Fixed)). digitalType 0 cash call, 1 cash
put, 2 asset call, 3 asset put; vol a number or a surface read at the strike and expiry.
Price/PV(method): 0 analytic, 1 call spread, 2 smile-consistent (the strike derivative of the
vanilla price on the smile: the Black-Scholes digital minus vega times the smile slope). Delta,
Gamma, Vega, Theta (one day), Rho: Black-Scholes at the strike's volatility. Failures read
'MDigitalOption::<operation> failed: ...'.";
%include "MDigitalOption.hpp"
