// Finite-difference engines: single barriers, the range digital and the daily range accrual; the
// booked double digital priced in closed form or by them; and the forward Dupire equation that
// reprices an FX surface's vanillas under its local volatility.
%{
#include "lum-closed-form/DoubleDigitalOption.hpp"
#include "MDoubleDigitalOption.hpp"
#include "zep-pde/FdmBarrierEngine.hpp"
#include "zep-pde/FdmDoubleDigitalEngine.hpp"
#include "zep-pde/FdmDoubleCumulativeEngine.hpp"
#include "zep-pde/DupireForwardPde.hpp"
%}

%feature("docstring") zep::FdmDoubleDigitalEngine
"A European range digital by finite differences (Crank-Nicolson after two implicit half steps,
the payoff averaged over each node's cell): payout at delivery when the spot at expiry ends
inside [barrierLow, barrierHigh]. The grid has `nodes` spots on [spotMin, spotMax] and
`timeSteps` steps; its ends hold the payoff, so put them far from the spot.

FdmDoubleDigitalEngine(spot, barrierLow, barrierHigh, volatility, timeToExpiry, timeToDelivery,
                       domesticRate, foreignRate, nodes, timeSteps, spotMin, spotMax, payout=1.0,
                       interpolation='linear')
Price(); Greek(name) with name 'price', 'delta', 'gamma' or 'theta' (per calendar day).";
%include "zep-pde/FdmDoubleDigitalEngine.hpp"

%feature("docstring") zep::FdmDoubleCumulativeEngine
"A daily range accrual by finite differences: payout / timeSteps accrues at each step's close
inside [barrierLow, barrierHigh], paid at delivery. Meant for day-by-day observation:
timeSteps should equal tradingDays (a different count is logged as a warning).

FdmDoubleCumulativeEngine(spot, barrierLow, barrierHigh, volatility, timeToExpiry, timeToDelivery,
                          domesticRate, foreignRate, nodes, timeSteps, spotMin, spotMax,
                          tradingDays, payout=1.0, interpolation='linear')";
%include "zep-pde/FdmDoubleCumulativeEngine.hpp"

%feature("docstring") zep::FdmBarrierEngine
"A single-barrier European option by finite differences: the knock-out on a grid ending at the
barrier (held at zero) and reaching spot * exp(+-6 sigma sqrt T) on the other side, Crank-
Nicolson after two implicit half steps; knock-ins by parity with the Black-Scholes vanilla.

FdmBarrierEngine(optionType, barrierType, strike, barrier, volatility, timeToExpiry,
                 timeToDelivery, domesticRate, foreignRate, spot, nodes, timeSteps,
                 interpolation='linear')
barrierType 2 to 5 as EuropeanBarrierBS. Greek(name): the knock-out leg's 'price', 'delta',
'gamma' or 'theta'.";
%include "zep-pde/FdmBarrierEngine.hpp"

%feature("docstring") zep::DoubleDigitalOption
"A double (range) digital as booked: payout at delivery when the spot at expiry ends inside
[lowBarrier, highBarrier].

DoubleDigitalOption(referenceDate, expiryDate, deliveryDate, lowBarrier, highBarrier, payout,
                    spot, volatility, domesticRate, foreignRate, dayCounter=DayCounter(Act365Fixed))
Price(pricingMethod=0): 0 closed form, 1 finite differences.";
%include "lum-closed-form/DoubleDigitalOption.hpp"

%feature("docstring") zep::python::MDoubleDigitalOption
"The booked range digital behind the M-class frame: MDoubleDigitalOption(referenceDate,
expiryDate, deliveryDate, lowBarrier, highBarrier, payout, spot, vol, rd, rf,
dayCounter=DayCounter(Act365Fixed)), dates as zep.Date, text or datetime.date.
Price(method): 0 closed form, 1 finite differences. Failures read
'MDoubleDigitalOption::<operation> failed: ...'.";
%include "MDoubleDigitalOption.hpp"

%feature("docstring") zep::DupireForwardPde
"Vanilla prices for every strike and expiry at once under the local volatility of an FX surface,
by Dupire's forward equation dC/dT = 1/2 sigma_loc(T, K)^2 K^2 d2C/dK2 - (rd - rf) K dC/dK - rf C
from C(0, K) = (S - K)+ (puts from (K - S)+), forwards and domestic discount factors read from the
surface. Crank-Nicolson after two implicit half steps on strikeNodes strikes gathered at the spot
and about timeSteps steps, one ending on every expiry.

DupireForwardPde(localVolatility, expiries, optionType=0, strikeNodes=400, timeSteps=200)
localVolatility a zep.FXLocalVolSurface, expiries increasing years from the reference date,
optionType 0 call or 1 put. Price(expiryIndex, strike); Prices(strikes): a NumPy array with one
row per expiry and one column per strike; MinStrike(), MaxStrike(): the strike grid's ends.
A surface whose local variance turns negative inside the grid (butterfly or calendar arbitrage)
is refused, naming the time and strike.";
%ignore zep::DupireMarket;
%ignore zep::DupireForwardPde::DupireForwardPde(const DupireMarket&, std::vector<double>, int, int, int);
%include "zep-pde/DupireForwardPde.hpp"

%extend zep::DupireForwardPde {
    DupireForwardPde(boost::shared_ptr<const zep::FXLocalVolSurface> localVolatility,
                     const std::vector<double>& expiries, int optionType = 0, int strikeNodes = 400,
                     int timeSteps = 200) {
        ZEP_REQUIRE(localVolatility, "FXLocalVolSurface is Null!");
        return new zep::DupireForwardPde(localVolatility->ForwardEquationMarket(), expiries, optionType,
                                         strikeNodes, timeSteps);
    }
    // Fills `out` (expiries x strikes, row by row) with the price at each expiry and strike.
    void _FillPrices(std::span<const double> strikes, std::span<double> out) const {
        ZEP_REQUIRE(out.size() == strikes.size() * $self->Expiries().size(),
                    "DupireForwardPde: one price per expiry and strike");
        for (std::size_t j = 0; j < $self->Expiries().size(); ++j)
            for (std::size_t i = 0; i < strikes.size(); ++i) out[j * strikes.size() + i] = $self->Price(j, strikes[i]);
    }
    %pythoncode %{
        def Prices(self, strikes: "numpy.typing.ArrayLike") -> "numpy.typing.NDArray[numpy.float64]":
            """The price at every expiry (rows) and strike (columns): a float64 array of shape
            (number of expiries, number of strikes)."""
            import numpy
            flat_strikes = numpy.ascontiguousarray(numpy.ravel(strikes), dtype=numpy.float64)
            out = numpy.empty(len(self.Expiries()) * flat_strikes.size)
            self._FillPrices(flat_strikes, out)
            return out.reshape(len(self.Expiries()), flat_strikes.size)

        def __repr__(self):
            try:
                return "zep.DupireForwardPde(%d expiries to %gY, strikes %g to %g)" % (
                    len(self.Expiries()), self.Expiries()[-1], self.MinStrike(), self.MaxStrike())
            except Exception:
                return "zep.DupireForwardPde(<unreadable>)"
    %}
}
