// Options on rates: caps and floors, European swaptions, valued under a lognormal, shifted
// lognormal or normal volatility.
%{
#include "MCapFloor.hpp"
#include "MSwaption.hpp"
%}

%feature("docstring") zep::python::MCapFloor
"A cap or floor: MCapFloor(capFloor, notional, strike, startDate, endDate, discountCurve,
projectionCurve, volatility, model='BLACK', shift=0, tenor='3M', dayCounter='Act360',
centres='TARGET', fixingLagDays=2). capFloor 'CAP' or 'FLOOR'; model 'BLACK', 'SHIFTEDBLACK'
(with shift) or 'BACHELIER' (volatility in rate units); projectionCurve None: the discount
curve projects. A caplet pays notional * accrual * max(L - K, 0) at its period's end, L the simple
forward of the period. PV, CapletPVs, ForwardRates, ImpliedVolatility(price) under the same model.
Failures read 'MCapFloor::<operation> failed: ...'.";
%feature("docstring") zep::python::MSwaption
"A European swaption: MSwaption(payerReceiver, notional, strike, expiryDate, startDate, endDate,
discountCurve, projectionCurve, volatility, model='BLACK', shift=0, settlement='PHYSICAL',
fixedTenor='1Y', fixedDayCounter='30/360', floatTenor='6M', floatDayCounter='Act360',
centres='TARGET', fixingLagDays=2, index='EURIBOR6M'). payerReceiver 'PAYER' or 'RECEIVER';
settlement 'PHYSICAL' or 'CASH' (par-yield annuity). PV, ForwardRate, Annuity, ForwardSwapValue,
ImpliedVolatility(price) under the same model. Failures read 'MSwaption::<operation> failed: ...'.";

%include "MCapFloor.hpp"
%include "MSwaption.hpp"

%pythoncode %{
for _instrument in (MCapFloor, MSwaption):
    _instrument.__repr__ = _instrument_repr
del _instrument
%}
