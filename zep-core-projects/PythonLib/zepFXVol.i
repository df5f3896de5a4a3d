// FX volatility surfaces: the volatility source options read (VolatilitySource, FlatVolatility),
// the delta conventions and smile modes (module constants), FXVolSurface and its M-class face
// MFXVolSurface. Included after the curves (a surface holds two) and before the vanilla option
// (which reads a surface).
%{
#include <stdexcept>

#include "lum-closed-form/VolatilitySource.hpp"
#include "lum-fxo-market/FXDeltaConvention.hpp"
#include "lum-fxo-market/FXLocalVolSurface.hpp"
#include "lum-fxo-market/FXVolSurface.hpp"
#include "lum-fxo-market/FXVolSurface2.hpp"
#include "lum-fxo-market/ForwardCurve2.hpp"
#include "lum-fxo-market/SmileInterpolation.hpp"
#include "lum-fxo-market/VolSurface2.hpp"
#include "DoubleBuffer.hpp"
#include "MFXVolSurface.hpp"
%}

%template(StringVector) std::vector<std::string>;
%template(IntVector) std::vector<int>;
%template(IntMatrix) std::vector<std::vector<int>>;

%shared_ptr(zep::VolatilitySource)
%shared_ptr(zep::FlatVolatility)
%shared_ptr(zep::FXVolSurface)
%shared_ptr(zep::FXVolSurface2)
%shared_ptr(zep::FXLocalVolSurface)
%shared_ptr(zep::ForwardCurve2)
%shared_ptr(zep::VolSurface2)

%typemap(out) std::vector<double> ExpiryTimes, std::vector<double> FittedParameters,
              std::vector<double> RelativePillarSpreads {
    const std::vector<double>& values = $1;
    $result = PyTuple_New(static_cast<Py_ssize_t>(values.size()));
    for (std::size_t i = 0; i < values.size(); ++i) PyTuple_SET_ITEM($result, i, PyFloat_FromDouble(values[i]));
}
%typemap(out) const std::vector<double>& PillarDeltas, const std::vector<double>& PillarVolatilities,
              const std::vector<double>& PillarStrikes, const std::vector<double>& SmileParameters,
              const std::vector<double>& ExpiryVolatilities, const std::vector<double>& ExpiryStrikes,
              const std::vector<double>& UnderlyingRates {
    $result = PyTuple_New(static_cast<Py_ssize_t>($1->size()));
    for (std::size_t i = 0; i < $1->size(); ++i) PyTuple_SET_ITEM($result, i, PyFloat_FromDouble((*$1)[i]));
}

// The arbitrage report as a list of (expiry, strike, kind, size) tuples.
%typemap(out) std::vector<zep::ArbitrageViolation> {
    const std::vector<zep::ArbitrageViolation>& violations = $1;
    $result = PyList_New(static_cast<Py_ssize_t>(violations.size()));
    for (std::size_t i = 0; i < violations.size(); ++i) {
        const zep::ArbitrageViolation& v = violations[i];
        PyList_SET_ITEM($result, i, Py_BuildValue("(NdNd)",
            SWIG_NewPointerObj(new zep::Date(v.expiry), $descriptor(zep::Date*), SWIG_POINTER_OWN),
            v.strike, PyUnicode_FromString(v.kind.c_str()), v.size));
    }
}
%ignore zep::ArbitrageViolation;

// Tenor construction is the factory FromTenors: a list of tenor texts and a list of date texts
// would be indistinguishable to a positional constructor.
%ignore zep::FXVolSurface::FXVolSurface(const Date&, const Date&, double, const std::vector<Period>&, const std::vector<std::string>&, const std::vector<std::vector<double>>&, boost::shared_ptr<const YieldCurve>, boost::shared_ptr<const YieldCurve>, const FXVolConventions&, int, const std::vector<double>&);
%ignore zep::FXVolSurface::FXVolSurface(const Date&, const Date&, double, const std::vector<Period>&, const std::vector<std::string>&, const std::vector<std::vector<double>>&, boost::shared_ptr<const YieldCurve>, boost::shared_ptr<const YieldCurve>, const FXVolConventions&, int);
%ignore zep::FXVolSurface::FXVolSurface(const Date&, const Date&, double, const std::vector<Period>&, const std::vector<std::string>&, const std::vector<std::vector<double>>&, boost::shared_ptr<const YieldCurve>, boost::shared_ptr<const YieldCurve>, const FXVolConventions&);
%ignore zep::FXVolSurface::FXVolSurface(const Date&, const Date&, double, const std::vector<Period>&, const std::vector<std::string>&, const std::vector<std::vector<double>>&, boost::shared_ptr<const YieldCurve>, boost::shared_ptr<const YieldCurve>);
// Conventions are built whole by their constructor below and read afterwards.
%immutable zep::FXVolConventions::expiryDates;
%immutable zep::FXVolConventions::deltaTypes;
%immutable zep::FXVolConventions::premiumAdjusted;
%immutable zep::FXVolConventions::atmTypes;
%immutable zep::FXVolConventions::wingTenors;
%immutable zep::FXVolConventions::putWingRatios;
%immutable zep::FXVolConventions::callWingRatios;
namespace zep {
%ignore FXVolSurface::QuoteColumns;
%ignore FXVolSurface::processDeltaStrings;
%ignore FXLocalVolSurface::ForwardEquationMarket;
%ignore FXVolSurface::CheckParameters;
%ignore FXVolSurface::GetVolatility(const double*, const double*, double*, std::size_t) const;
%ignore FXVolSurface::Conventions;
%ignore FXVolSurface::DomesticCurve;
%ignore FXVolSurface::ForeignCurve;
%ignore FXVolSurface::Quotes;
%rename(_GetVolatilityAt) FXVolSurface::GetVolatility;
}
namespace zep::python {
%ignore MFXVolSurface::MFXVolSurface(boost::shared_ptr<zep::FXVolSurface>);
}

%feature("docstring") zep::FXVolSurface
"An FX volatility surface from quotes by expiry and delta.

FXVolSurface(referenceDate, spotDate, spot, maturityDates, deltaStrings, vols, domesticCurve,
foreignCurve[, conventions, smileInterpolation, smileParameters]) from market quotes ('ATM',
'25RR', '25BF', optional '10RR'/'10BF', '05..', '02..'), one row of vols per expiry;
FXVolSurface.FromTenors(...) with tenors ('1M', '1Y') in place of dates;
FXVolSurface.FromPillars(...) from pillar volatilities ('25P', 'ATMM', '25C', ...).
conventions: a zep.FXVolConventions (delta type SpotDelta 0 / ForwardDelta 1, premium
PremiumExcluded 0 / PremiumIncluded 1, ATMForward 0 / ATMDeltaNeutral 1 / ATMSpot 2 by expiry);
smileInterpolation: SmileLinear 0, SmileSVI 1, SmileCubicSpline 2, SmileSABR 4, ...
GetVolatility(expiry, strike) takes a date or years and a strike, or NumPy arrays of both
(broadcast) and returns an array; surfaces pickle.";
%feature("docstring") zep::FXVolSurface2
"A bid and an ask FXVolSurface on one reference date: GetVolatility(side, expiry, strike) with
side zep.Bid 0, zep.Mid 1 (the average) or zep.Ask 2; GetSpread, RelativePillarSpreads.";
%feature("docstring") zep::VolSurface2
"A strike-quoted surface: VolSurface2(expiryDates, optionTypes, strikes, quotes, quoteKind,
forwards[, discountRate, interpolation]) with per expiry lists of option types (0 call, 1 put),
strikes and quotes, quoteKind 0 implied volatilities or 1 premiums (paid at expiry, discounted at
discountRate), forwards a zep.ForwardCurve2(referenceDate, spot, expiryDates, underlyingRates).
The smile is linear in strike, total variance linear in time.";
%feature("docstring") zep::python::MFXVolSurface
"FXVolSurface in the M-class frame: failures read 'MFXVolSurface::<operation> failed: ...';
after Dispose() every call reports 'not initialized!'. Surface() hands the library surface to
the options built on it.";

// The risk layer's parallel move of a source stays internal: Python moves a market by scenarios.
%ignore zep::ShiftedVolatility;
%include "lum-closed-form/VolatilitySource.hpp"
%include "lum-fxo-market/FXDeltaConvention.hpp"
%include "lum-fxo-market/SmileInterpolation.hpp"
%include "lum-fxo-market/FXVolSurface.hpp"
%include "MFXVolSurface.hpp"
%include "lum-fxo-market/FXVolSurface2.hpp"
%include "lum-fxo-market/FXLocalVolSurface.hpp"
%include "lum-fxo-market/ForwardCurve2.hpp"
%include "lum-fxo-market/VolSurface2.hpp"

%extend zep::FXVolConventions {
    FXVolConventions(const std::vector<zep::Date>& expiryDates = std::vector<zep::Date>(),
                     const std::vector<int>& deltaTypes = std::vector<int>(),
                     const std::vector<int>& premiumAdjusted = std::vector<int>(),
                     const std::vector<int>& atmTypes = std::vector<int>(),
                     const std::vector<zep::Period>& wingTenors = std::vector<zep::Period>(),
                     const std::vector<double>& putWingRatios = std::vector<double>(),
                     const std::vector<double>& callWingRatios = std::vector<double>()) {
        return new zep::FXVolConventions{expiryDates, deltaTypes, premiumAdjusted, atmTypes,
                                         wingTenors, putWingRatios, callWingRatios};
    }
}

%extend zep::FXVolSurface {
    static boost::shared_ptr<zep::FXVolSurface> FromTenors(
        const zep::Date& referenceDate, const zep::Date& spotDate, double spot,
        const std::vector<zep::Period>& tenors, const std::vector<std::string>& deltaStrings,
        const std::vector<std::vector<double>>& vols, boost::shared_ptr<zep::YieldCurve> domesticCurve,
        boost::shared_ptr<zep::YieldCurve> foreignCurve,
        const zep::FXVolConventions& conventions = zep::FXVolConventions(), int smileInterpolation = 0,
        const std::vector<double>& smileParameters = std::vector<double>()) {
        return boost::make_shared<zep::FXVolSurface>(referenceDate, spotDate, spot, tenors, deltaStrings,
                                                     vols, domesticCurve, foreignCurve, conventions,
                                                     smileInterpolation, smileParameters);
    }
    // Fills `out` with the volatility at each (time, strike) pair: three float64 arrays alike.
    void _FillVolatilities(PyObject* times, PyObject* strikes, PyObject* out) const {
        zep::python::DoubleBuffer timeBuffer, strikeBuffer, outBuffer;
        if (!timeBuffer.Acquire(times, false) || !strikeBuffer.Acquire(strikes, false) ||
            !outBuffer.Acquire(out, true))
            throw std::invalid_argument("expected three float64 arrays");
        const auto t = timeBuffer.Span(), k = strikeBuffer.Span(), v = outBuffer.Span();
        if (t.size() != k.size() || t.size() != v.size())
            throw std::invalid_argument("times, strikes and results must have the same length");
        $self->GetVolatility(t.data(), k.data(), v.data(), v.size());
    }
    %pythoncode %{
        def GetVolatility(self, expiry, strike):
            """The volatility at an expiry (a date, a date text or years from the reference date)
            and a strike; with NumPy arrays (or sequences) of expiries and strikes, broadcast
            together, an array of volatilities computed in one native loop. Array expiries are
            years, numpy.datetime64 dates, or dates and date texts."""
            if isinstance(strike, (float, int)) and isinstance(expiry, (float, int, str, Date)):
                return self._GetVolatilityAt(expiry, strike)
            import numpy
            if numpy.ndim(strike) == 0 and (isinstance(expiry, (str, Date)) or numpy.ndim(expiry) == 0):
                return self._GetVolatilityAt(expiry, float(strike))
            times = numpy.asarray(expiry)
            if times.dtype.kind == "M":
                serials = Date._serials_of_datetime64(times)
                times = (serials - self.ReferenceDate().SerialNumber()) / 365.0
            elif times.dtype.kind not in "fiub":
                times = numpy.array([self.TimeToExpiry(Date(e) if isinstance(e, str) else e)
                                     for e in times.ravel()]).reshape(times.shape)
            times, strikes = numpy.broadcast_arrays(numpy.asarray(times, dtype=numpy.float64),
                                                    numpy.asarray(strike, dtype=numpy.float64))
            flat_times = numpy.ascontiguousarray(times.ravel())
            flat_strikes = numpy.ascontiguousarray(strikes.ravel())
            out = numpy.empty(flat_times.size)
            self._FillVolatilities(flat_times, flat_strikes, out)
            return out.reshape(times.shape)

        def __repr__(self):
            try:
                return "zep.FXVolSurface(%d expiries from %s, spot %g, %s)" % (
                    self.ExpiryCount(), self.ReferenceDate(), self.Spot(),
                    SmileInterpolationToString(self.SmileMode()).strip())
            except Exception:
                return "zep.FXVolSurface(<unreadable>)"
    %}
}
