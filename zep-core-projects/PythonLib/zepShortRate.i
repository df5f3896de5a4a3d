// Short-rate models: Hull-White one-factor on a discount curve, its closed forms and calibration,
// and the Bermudan swaptions and callable bonds valued on its trinomial tree.
%{
#include "MBermudanSwaption.hpp"
#include "MCallableBond.hpp"
#include "MHullWhite.hpp"
%}

%feature("docstring") zep::python::MHullWhite
"The Hull-White one-factor short rate fitted to a discount curve: MHullWhite(curve, meanReversion,
sigma), or MHullWhite.Calibrate(curve, expiryDates, endDates, volatilities, model='BACHELIER',
shift=0, meanReversion=0.03, fitMeanReversion=False, fixedTenor='1Y', fixedDayCounter='30/360',
centres='TARGET') fitting sigma (and the mean reversion) to at-the-money payers expiring on
expiryDates into swaps ending on endDates. Times are years under the curve's day counter (Time(date)).
DiscountBond(t, T, x=0) is P(t, T) when the factor x (the short rate less its fitted path) stands
at x; DiscountBondOption(callPut, strike, expiry, bondMaturity); EuropeanSwaption(payerReceiver,
notional, strike, expiryDate, startDate, endDate, fixedTenor='1Y', fixedDayCounter='30/360',
centres='TARGET') by Jamshidian's decomposition (one curve discounts and projects);
MeanReversion(), Sigma(), CalibrationError() (root mean square relative price error).
Failures read 'MHullWhite::<operation> failed: ...'.";
%ignore zep::python::MHullWhite::Model;
%ignore zep::python::HullWhiteSwapOf;
%include "MHullWhite.hpp"

%feature("docstring") zep::python::MBermudanSwaption
"A Bermudan swaption under Hull-White: MBermudanSwaption(payerReceiver, notional, strike,
exerciseDates, startDate, endDate, model, steps=200, fixedTenor='1Y', fixedDayCounter='30/360',
centres='TARGET'). On each exercise date the holder may enter the periods of the swap that start
on or after it. PV (trinomial tree), EuropeanPVs() (each exercise date alone, closed form),
ExerciseBoundary() (per date, the par rate of the swap entered from which exercising pays). Failures read
'MBermudanSwaption::<operation> failed: ...'.";
%include "MBermudanSwaption.hpp"

%feature("docstring") zep::python::MCallableBond
"A callable fixed-rate bond under Hull-White: MCallableBond(couponRate, issueDate, maturityDate,
callDates, callPrices, model, steps=200, tenor='1Y', dayCounter='30/360', centres='TARGET').
Face 100; coupons accrue unadjusted and pay on the following business day; on each call date
the issuer may redeem at its clean call price (per 100) plus accrued interest, and does where
that is cheaper than the bond. CleanPrice(oas=0), DirtyPrice(oas=0), StraightCleanPrice(oas=0)
(the non-callable twin), AccruedAmount(), OAS(cleanPrice): the continuously compounded spread
over every short rate at which the clean price is met. Failures read
'MCallableBond::<operation> failed: ...'.";
%include "MCallableBond.hpp"

%pythoncode %{
for _instrument in (MHullWhite, MBermudanSwaption, MCallableBond):
    _instrument.__repr__ = _instrument_repr
del _instrument

_RATE_PRODUCTS.update({"BermudanSwaption": MBermudanSwaption, "CallableBond": MCallableBond})
%}
