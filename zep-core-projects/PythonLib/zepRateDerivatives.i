// Rate and credit derivatives: caps and floors and European swaptions, valued under a lognormal,
// shifted lognormal or normal volatility, and credit default swaps on a credit curve.
%{
#include "MCreditDefaultSwap.hpp"
#include "MCapFloor.hpp"
#include "MSwaption.hpp"
#include "MCapletVolatilityStrip.hpp"
#include "lum-interest-rates/SwaptionSmile.hpp"
%}

%feature("docstring") zep::python::MCapFloor
"A cap or floor: MCapFloor(capFloor, notional, strike, startDate, endDate, discountCurve,
projectionCurve, volatility, model='BLACK', shift=0, tenor='3M', dayCounter='Act360',
centres='TARGET', fixingLagDays=2). capFloor 'CAP' or 'FLOOR'; model 'BLACK', 'SHIFTEDBLACK'
(with shift) or 'BACHELIER' (volatility in rate units); projectionCurve None: the discount
curve projects. A caplet pays notional * accrual * max(L - K, 0) at its period's end, L the simple
forward of the period. PV, CapletPVs, ForwardRates, ImpliedVolatility(price) under the same model;
CashFlows() (a table) or CashFlowSchedule() (rows): per caplet its forward as the rate and its
option value at payment as the amount.
Failures read 'MCapFloor::<operation> failed: ...'.";
%feature("docstring") zep::python::MSwaption
"A European swaption: MSwaption(payerReceiver, notional, strike, expiryDate, startDate, endDate,
discountCurve, projectionCurve, volatility, model='BLACK', shift=0, settlement='PHYSICAL',
fixedTenor='1Y', fixedDayCounter='30/360', floatTenor='6M', floatDayCounter='Act360',
centres='TARGET', fixingLagDays=2, index='EURIBOR6M'). payerReceiver 'PAYER' or 'RECEIVER';
settlement 'PHYSICAL' or 'CASH' (par-yield annuity). PV, ForwardRate, Annuity, ForwardSwapValue,
ImpliedVolatility(price) under the same model; CashFlows() or CashFlowSchedule(): one row fixed on
the expiry, worth PV / D(start) at the swap's start date. Failures read 'MSwaption::<operation> failed: ...'.";

%feature("docstring") zep::python::MCreditDefaultSwap
"A credit default swap: MCreditDefaultSwap(buySell, notional, coupon, startDate, maturityDate,
creditCurve, discountCurve, premiumTenor='3M', dayCounter='Act360', centres='TARGET'). buySell
'BUYER' or 'SELLER' of protection; the recovery rate is the credit curve's; protection from the
curve's reference date, half the accrual paid on default. PV, ParSpread, Upfront (buyer's,
fraction of notional), ProtectionLegPV, PremiumLegPV, RiskyAnnuity, RiskyPV01, CS01 (all par
spreads of the curve + 1 bp, bootstrapped again), UpfrontFromQuotedSpread(spread) and
QuotedSpreadFromUpfront(upfront) on a flat hazard rate; CashFlows() or CashFlowSchedule(): per
premium period a coupon row (discount factor times survival) and a CashFlowKind_Protection row
paying (1 - R) * notional at the period's middle (discount factor times default probability),
signed for the holder. Failures read
'MCreditDefaultSwap::<operation> failed: ...'.";

%{
#include "lum-closed-form/ForwardOption.hpp"
%}
%feature("docstring") zep::python::ForwardImpliedVolatility
"ForwardImpliedVolatility(isCall, forward, strike, expiry, value, model='BLACK', shift=0): the
volatility under the model (BLACK, SHIFTEDBLACK with its shift, BACHELIER) at which a call (put)
on the forward rate is worth `value` per unit annuity, `expiry` in years. ForwardOptionValue(isCall,
forward, strike, expiry, volatility, model='BLACK', shift=0) is the value itself.";
%inline %{
namespace zep::python {
double ForwardOptionValue(bool isCall, double forward, double strike, double expiry, double volatility,
                          const std::string& model = "BLACK", double shift = 0.0) {
    return zep::ForwardOptionValue(isCall, forward, strike, expiry,
                                   {zep::RateVolatilityModelOf(model.c_str()), volatility, shift});
}
double ForwardImpliedVolatility(bool isCall, double forward, double strike, double expiry, double value,
                                const std::string& model = "BLACK", double shift = 0.0) {
    return zep::ImpliedForwardVolatility(isCall, forward, strike, expiry, value,
                                         zep::RateVolatilityModelOf(model.c_str()), shift);
}
}  // namespace zep::python
%}

%pythoncode %{
def ForwardImpliedVolatilities(isCall: bool, forwards: "numpy.typing.ArrayLike", strikes: "numpy.typing.ArrayLike",
                               expiries: "numpy.typing.ArrayLike", values: "numpy.typing.ArrayLike",
                               model: str = "BLACK", shift: float = 0.0) -> "numpy.typing.NDArray[numpy.float64]":
    """ForwardImpliedVolatility over arrays (or broadcast scalars) of forwards, strikes, expiries
    and values; returns a float64 array of their broadcast shape. A value no volatility reaches
    raises, naming it."""
    import numpy
    columns = numpy.broadcast_arrays(*(numpy.asarray(a, dtype=numpy.float64) for a in (forwards, strikes, expiries,
                                                                                       values)))
    out = numpy.empty(columns[0].shape)
    for index in numpy.ndindex(out.shape):
        out[index] = ForwardImpliedVolatility(bool(isCall), *(float(c[index]) for c in columns), model, shift)
    return out
%}

%ignore zep::SwaptionSmile::SwaptionSmile(double, double, const std::vector<double>&, const std::vector<double>&, double,
                                          RateVolatilityModel, double);
%ignore zep::SwaptionSmile::SwaptionSmile(double, double, double, double, double, double, RateVolatilityModel,
                                          double);
%ignore zep::SwaptionSmile::QuoteAt;
%ignore zep::SwaptionSmile::Model;
%feature("docstring") zep::SwaptionSmile
"The SABR smile of one swaption slice (an expiry into a tenor): SwaptionSmile(forward, expiry,
strikes, volatilities, beta=0.5, model='BLACK', shift=0) fits alpha, rho and nu to at least three
volatility quotes of the model: 'BLACK' (Hagan's lognormal expansion), 'SHIFTEDBLACK' (the same
on rates plus shift) or 'BACHELIER' (Hagan's normal expansion, quotes in rate units; with beta 0
rates may be negative); SwaptionSmile.FromParameters(forward, expiry, alpha, beta, rho, nu,
model='BLACK', shift=0). Volatility(strike) is the model's volatility to price a swaption of
that strike with, Volatilities(strikes) the same over a NumPy array; Parameters() (alpha, beta,
rho, nu), FitError() (root mean square volatility error), ModelName(), Shift().";
%include "lum-interest-rates/SwaptionSmile.hpp"
%extend zep::SwaptionSmile {
    SwaptionSmile(double forward, double expiry, const std::vector<double>& strikes,
                  const std::vector<double>& volatilities, double beta = 0.5, const std::string& model = "BLACK",
                  double shift = 0.0) {
        return new zep::SwaptionSmile(forward, expiry, strikes, volatilities, beta,
                                      zep::RateVolatilityModelOf(model.c_str()), shift);
    }
    static zep::SwaptionSmile FromParameters(double forward, double expiry, double alpha, double beta, double rho,
                                             double nu, const std::string& model = "BLACK", double shift = 0.0) {
        return zep::SwaptionSmile(forward, expiry, alpha, beta, rho, nu, zep::RateVolatilityModelOf(model.c_str()),
                                  shift);
    }
    std::string ModelName() const { return zep::RateVolatilityModelName($self->Model()); }
    std::vector<double> _Volatilities(const std::vector<double>& strikes) const {
        std::vector<double> volatilities(strikes.size());
        for (std::size_t i = 0; i < strikes.size(); ++i) volatilities[i] = $self->Volatility(strikes[i]);
        return volatilities;
    }
}

%{
#include "lum-interest-rates/SwaptionCube.hpp"
%}
%ignore zep::SwaptionCube::SwaptionCube(const std::vector<double>&, const std::vector<double>&,
                                        const std::vector<double>&, const std::vector<double>&,
                                        const std::vector<double>&, double, RateVolatilityModel, double);
%ignore zep::SwaptionCube::Smile;
%ignore zep::SwaptionCube::Model;
%feature("docstring") zep::SwaptionCube
"A swaption volatility cube: SwaptionCube(expiries, tenors, strikeSpreads, forwards, volatilities,
beta=0.5, model='BLACK', shift=0). Expiries and tenors in years, rising; forwards the forward swap
rate of each (expiry, tenor) slice, an expiries x tenors array; volatilities the quotes at each
spread over the slice's forward, an expiries x tenors x spreads array (nested lists, NumPy arrays
or the same numbers flat). Each slice is a SABR smile fitted to its quotes (SliceSmile(i, j));
Volatility(expiry, tenor, forward, strike) reads the neighbouring slices at the same spread over
their forwards, bilinear in expiry and tenor and flat outside the quoted ones;
Volatilities(expiry, tenor, forward, strikes) over a NumPy array of strikes. FitError() is the
worst slice's root mean square error; ModelName(), Shift(), Expiries(), Tenors().";
%include "lum-interest-rates/SwaptionCube.hpp"
%extend zep::SwaptionCube {
    SwaptionCube(const std::vector<double>& expiries, const std::vector<double>& tenors,
                 const std::vector<double>& strikeSpreads, const std::vector<double>& forwards,
                 const std::vector<double>& volatilities, double beta = 0.5, const std::string& model = "BLACK",
                 double shift = 0.0) {
        return new zep::SwaptionCube(expiries, tenors, strikeSpreads, forwards, volatilities, beta,
                                     zep::RateVolatilityModelOf(model.c_str()), shift);
    }
    zep::SwaptionSmile SliceSmile(std::size_t expiryIndex, std::size_t tenorIndex) const {
        return $self->Smile(expiryIndex, tenorIndex);
    }
    std::string ModelName() const { return zep::RateVolatilityModelName($self->Model()); }
    std::vector<double> _Volatilities(double expiry, double tenor, double forward,
                                      const std::vector<double>& strikes) const {
        std::vector<double> volatilities(strikes.size());
        for (std::size_t i = 0; i < strikes.size(); ++i)
            volatilities[i] = $self->Volatility(expiry, tenor, forward, strikes[i]);
        return volatilities;
    }
}
%pythoncode %{
def _strike_array(strikes):
    import numpy
    strikes = numpy.asarray(strikes, dtype=numpy.float64)
    return strikes.shape, strikes.ravel().tolist()


def _smile_volatilities(self, strikes: "numpy.typing.ArrayLike") -> "numpy.typing.NDArray[numpy.float64]":
    """Volatility(strike) over an array of strikes, in one call; a float64 array of its shape."""
    import numpy
    shape, flat = _strike_array(strikes)
    return numpy.array(self._Volatilities(flat), dtype=numpy.float64).reshape(shape)


def _cube_volatilities(self, expiry: float, tenor: float, forward: float,
                       strikes: "numpy.typing.ArrayLike") -> "numpy.typing.NDArray[numpy.float64]":
    """Volatility(expiry, tenor, forward, strike) over an array of strikes, in one call; a
    float64 array of its shape."""
    import numpy
    shape, flat = _strike_array(strikes)
    return numpy.array(self._Volatilities(expiry, tenor, forward, flat), dtype=numpy.float64).reshape(shape)


SwaptionSmile.Volatilities = _smile_volatilities
SwaptionCube.Volatilities = _cube_volatilities
_swaption_cube_flat_init = SwaptionCube.__init__


def _swaption_cube_init(self, expiries, tenors, strikeSpreads, forwards, volatilities, beta=0.5, model="BLACK",
                        shift=0.0):
    import numpy

    def flat(values):
        return [float(v) for v in numpy.asarray(values, dtype=numpy.float64).ravel()]

    _swaption_cube_flat_init(self, flat(expiries), flat(tenors), flat(strikeSpreads), flat(forwards),
                             flat(volatilities), beta, model, shift)


# The constructor keeps the signature SWIG wrote (flat vectors); nested arrays are flattened first.
_swaption_cube_init.__doc__ = _swaption_cube_flat_init.__doc__
SwaptionCube.__init__ = _swaption_cube_init
%}

%include "MCapFloor.hpp"
%include "MSwaption.hpp"
%include "MCreditDefaultSwap.hpp"

%feature("docstring") zep::python::MCapletVolatilityStrip
"Caplet volatilities stripped from flat cap quotes: MCapletVolatilityStrip(capFloor, strike,
startDate, maturityDates, flatVolatilities, discountCurve, projectionCurve, model='BLACK', shift=0,
tenor='3M', dayCounter='Act360', centres='TARGET', fixingLagDays=2). One cap (or floor) of the
strike from startDate to each maturity, by rising maturity, at its flat volatility under the model;
each longer cap's added caplets take the one volatility that reprices it. CapletExpiries() (years,
Act/365F) and CapletVolatilities() per caplet of the longest cap still to pay, Volatility(expiry)
(that of the first caplet expiring at or after it), CapPVs() (each quoted cap on a notional of 1
valued at the stripped volatilities). Failures read 'MCapletVolatilityStrip::<operation> failed: ...'.";
%include "MCapletVolatilityStrip.hpp"

%pythoncode %{
for _instrument in (MCapFloor, MSwaption, MCreditDefaultSwap):
    _instrument.CashFlows = _cash_flows
    _instrument.__repr__ = _instrument_repr
del _instrument

# Product definitions name these too; a credit curve is one of the named curves ("creditCurve").
_RATE_PRODUCTS.update({"CapFloor": MCapFloor, "Swaption": MSwaption, "CreditDefaultSwap": MCreditDefaultSwap})
%}
