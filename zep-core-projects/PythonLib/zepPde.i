// Finite-difference engines: single barriers, the range digital and the daily range accrual; and
// the booked double digital priced in closed form or by them.
%{
#include "lum-closed-form/DoubleDigitalOption.hpp"
#include "MDoubleDigitalOption.hpp"
#include "zep-pde/FdmBarrierEngine.hpp"
#include "zep-pde/FdmDoubleDigitalEngine.hpp"
#include "zep-pde/FdmDoubleCumulativeEngine.hpp"
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
