// Black-Scholes vanilla options: the engine (BSVanilla, MBSVanilla), the booked option
// (MVanillaOption), historical volatility (HistVols) and the NumPy book entry points
// (PriceVanillaBook, ImpliedVolatilityBook). Included after the curves: options take them.
%{
#include "lum-closed-form/BSVanilla.hpp"
#include "lum-closed-form/HistVols.hpp"
#include "lum-closed-form/VanillaBook.hpp"
#include "DoubleBuffer.hpp"
#include "MBSVanilla.hpp"
#include "MVanillaOption.hpp"
%}

// A forward that may be missing: None, or a number.
%typemap(in) std::optional<double> {
    if ($input == Py_None) {
        $1 = std::nullopt;
    } else {
        const double value = PyFloat_AsDouble($input);
        if (value == -1.0 && PyErr_Occurred()) SWIG_fail;
        $1 = value;
    }
}
%typemap(typecheck, precedence=SWIG_TYPECHECK_DOUBLE) std::optional<double> {
    $1 = $input == Py_None || PyFloat_Check($input) || PyLong_Check($input);
}

// An option's volatility: a number, a zep.FXVolSurface, a zep.MFXVolSurface, a zep.VolSurface2,
// or None (refused by the option with "VolSurface is Null!").
namespace zep::python {
class VolatilityInput;
}
%typemap(doc, type="VolatilityInput") const zep::python::VolatilityInput& "$1_name: VolatilityInput";
%typemap(in) const zep::python::VolatilityInput& (std::optional<zep::python::VolatilityInput> converted) {
    void* pointer = nullptr;
    if ($input == Py_None) {
        converted.emplace(boost::shared_ptr<const zep::VolatilitySource>());
    } else if (PyFloat_Check($input) || PyLong_Check($input)) {
        const double value = PyFloat_AsDouble($input);
        if (value == -1.0 && PyErr_Occurred()) SWIG_fail;
        converted.emplace(value);
    } else if (SWIG_IsOK(SWIG_ConvertPtr($input, &pointer, $descriptor(boost::shared_ptr<zep::FXVolSurface>*), 0)) && pointer) {
        converted.emplace(*static_cast<boost::shared_ptr<zep::FXVolSurface>*>(pointer));
    } else if (SWIG_IsOK(SWIG_ConvertPtr($input, &pointer, $descriptor(boost::shared_ptr<zep::VolSurface2>*), 0)) && pointer) {
        converted.emplace(*static_cast<boost::shared_ptr<zep::VolSurface2>*>(pointer));
    } else if (SWIG_IsOK(SWIG_ConvertPtr($input, &pointer, $descriptor(zep::python::MFXVolSurface*), 0)) && pointer) {
        try {
            converted.emplace(static_cast<zep::python::MFXVolSurface*>(pointer)->Surface());
        } catch (...) {
            zep::python::SetPythonErrorFromActiveException();
            SWIG_fail;
        }
    } else {
        SWIG_exception_fail(SWIG_TypeError, "in method '" "$symname" "', argument " "$argnum" " of type 'float | FXVolSurface | MFXVolSurface | VolSurface2'");
    }
    $1 = &*converted;
}
%typemap(typecheck, precedence=SWIG_TYPECHECK_DOUBLE) const zep::python::VolatilityInput& {
    $1 = $input == Py_None || PyFloat_Check($input) || PyLong_Check($input) ||
         SWIG_CheckState(SWIG_ConvertPtr($input, 0, $descriptor(boost::shared_ptr<zep::FXVolSurface>*), SWIG_POINTER_NO_NULL)) ||
         SWIG_CheckState(SWIG_ConvertPtr($input, 0, $descriptor(boost::shared_ptr<zep::VolSurface2>*), SWIG_POINTER_NO_NULL)) ||
         SWIG_CheckState(SWIG_ConvertPtr($input, 0, $descriptor(zep::python::MFXVolSurface*), SWIG_POINTER_NO_NULL));
}

// NumPy arrays travel as spans over their own memory: read for inputs, filled in place for outputs.
%typemap(in) std::span<const double> (zep::python::DoubleBuffer buffer) {
    if (!buffer.Acquire($input, false)) SWIG_fail;
    $1 = buffer.Span();
}
%typemap(in) std::span<double> (zep::python::DoubleBuffer buffer) {
    if (!buffer.Acquire($input, true)) SWIG_fail;
    $1 = buffer.Span();
}

// HistVols takes its series as any Python sequences (dates as zep.Date, text or datetime.date)
// and hands its results back as lists.
%typemap(in) std::vector<zep::Date> dates (std::vector<zep::Date> values) {
    const auto outcome = zep::python::DatesFromPython($input, values);
    if (outcome == zep::python::Conversion::Failed) SWIG_fail;
    if (outcome == zep::python::Conversion::NotADate) {
        PyErr_SetString(PyExc_TypeError, "expected a sequence of dates");
        SWIG_fail;
    }
    $1 = values;
}
%typemap(in) std::vector<double> quotes (std::vector<double> values) {
    PyObject* items = PySequence_Fast($input, "expected a sequence of numbers");
    if (!items) SWIG_fail;
    for (Py_ssize_t i = 0; i < PySequence_Fast_GET_SIZE(items); ++i) {
        const double value = PyFloat_AsDouble(PySequence_Fast_GET_ITEM(items, i));
        if (value == -1.0 && PyErr_Occurred()) {
            Py_DECREF(items);
            SWIG_fail;
        }
        values.push_back(value);
    }
    Py_DECREF(items);
    $1 = values;
}
%typemap(out) const std::vector<double>& setAll, const std::vector<double>& Vols,
              const std::vector<double>& Quotes {
    $result = PyList_New($1->size());
    for (std::size_t i = 0; i < $1->size(); ++i) PyList_SET_ITEM($result, i, PyFloat_FromDouble((*$1)[i]));
}
%typemap(out) const std::vector<zep::Date>& VolDates, const std::vector<zep::Date>& Dates {
    $result = PyList_New($1->size());
    for (std::size_t i = 0; i < $1->size(); ++i)
        PyList_SET_ITEM($result, i, SWIG_NewPointerObj(new zep::Date((*$1)[i]), $descriptor(zep::Date*), SWIG_POINTER_OWN));
}

namespace zep {
%ignore BSVanilla::kMinimumVolatility;
%ignore BSVanilla::kExpiryThreshold;
%ignore VanillaBookInputs;
%ignore PriceVanillaBook;
%ignore ImpliedVolatilityBook;
}
namespace zep::python {
%ignore MWrapper;
}

%feature("docstring") zep::BSVanilla
"European call (type 0) or put (type 1) under Black-Scholes with a domestic and a foreign rate:
BSVanilla(type, strike, vol, timeToExpiry, timeToDelivery, rd, rf, spot), or
BSVanilla.FromForward(..., forward, spot=-1). Theta is per day, ThetaPerYear per year.";
%feature("docstring") zep::python::MBSVanilla
"The engine behind the M-class frame: failures read 'MBSVanilla::<operation> failed: ...'.";
%feature("docstring") zep::python::MVanillaOption
"A booked European vanilla priced by the Black-Scholes engine:
MVanillaOption(buySell, callPut, faceValue, strike, spot, referenceDate, expiryDate,
settlementDate, deliveryDate, rd, rf, vol[, dayCounter=Act365Fixed, exerciseKind=0]) with
rd, rf continuously compounded numbers or two zep.YieldCurve objects (domestic, foreign) and
vol a number or a surface (zep.FXVolSurface, zep.MFXVolSurface) read at the strike and expiry;
MVanillaOption.FromForward(..., forward, ..., spot=-1) quotes it on the forward. Side +1 buy,
-1 sell; type 0 call, 1 put; exercise 0 European, 1 American, 2 Bermudan. Figures take no
argument or an integer pricing method (0 and 1 closed form); Delta also takes a boolean (True
spot delta, False premium-adjusted). AmericanExerciseBoundaries(nodes=200, timeSteps=200): the
early-exercise boundary of the same option exercised American, [(years, critical spot)] from
the finite-difference engine. Failures read 'MVanillaOption::<operation> failed: ...'.";
%feature("docstring") zep::HistVols
"Rolling-window historical volatility: HistVols(dates, prices); setAll(sampleNum, model=0,
lambda=0.94, returnKind=1, annualisationFactor=252); models 0 equal weights, 1 EWMA recursion
from zero, 2 EWMA with weights normalised by 1 - lambda^n; returnKind 1 log, 0 simple.";

%include "lum-closed-form/BSVanilla.hpp"
%include "lum-closed-form/HistVols.hpp"
%include "MBSVanilla.hpp"
// Exercise boundaries come back as lists of (time in years, critical spot) tuples.
%typemap(out) std::vector<std::pair<double, double>> {
    const std::vector<std::pair<double, double>>& points = $1;
    $result = PyList_New(points.size());
    for (std::size_t i = 0; i < points.size(); ++i)
        PyList_SET_ITEM($result, i, Py_BuildValue("(dd)", points[i].first, points[i].second));
}
%include "MVanillaOption.hpp"

%inline %{
namespace zep::python {
// Raw entry points behind PriceVanillaBook and ImpliedVolatilityBook below.
void PriceVanillaBookInto(std::span<const double> types, std::span<const double> strikes,
                          std::span<const double> vols, std::span<const double> expiries,
                          std::span<const double> deliveries, std::span<const double> domesticRates,
                          std::span<const double> foreignRates, std::span<const double> spots,
                          std::span<double> prices, std::span<double> deltas,
                          std::span<double> gammas, std::span<double> vegas,
                          std::span<double> thetas) {
    zep::PriceVanillaBook({types, strikes, expiries, deliveries, domesticRates, foreignRates, spots},
                          vols, prices, deltas, gammas, vegas, thetas);
}
void ImpliedVolatilityBookInto(std::span<const double> types, std::span<const double> strikes,
                               std::span<const double> expiries, std::span<const double> deliveries,
                               std::span<const double> domesticRates,
                               std::span<const double> foreignRates, std::span<const double> spots,
                               std::span<const double> premiums, std::span<double> vols,
                               double volatilityLimit) {
    zep::ImpliedVolatilityBook({types, strikes, expiries, deliveries, domesticRates, foreignRates, spots},
                               premiums, vols, volatilityLimit);
}
}
%}

%pythoncode %{
def _book_columns(*columns):
    import numpy
    arrays = numpy.broadcast_arrays(*[numpy.asarray(c, dtype=numpy.float64) for c in columns])
    return [numpy.ascontiguousarray(a.reshape(-1)) for a in arrays], arrays[0].shape


def PriceVanillaBook(types: "numpy.typing.ArrayLike", strikes: "numpy.typing.ArrayLike",
                     vols: "numpy.typing.ArrayLike", expiries: "numpy.typing.ArrayLike",
                     deliveries: "numpy.typing.ArrayLike", rd: "numpy.typing.ArrayLike",
                     rf: "numpy.typing.ArrayLike", spots: "numpy.typing.ArrayLike"
                     ) -> "tuple[numpy.typing.NDArray[numpy.float64], ...]":
    """Price a book of vanillas in one call.

    Arguments are arrays (or scalars, broadcast): option type 0 call / 1 put, strike, volatility,
    years to expiry, years to delivery, domestic and foreign continuous rates, spot. Returns
    (price, delta, gamma, vega, theta per day) as float64 arrays of the book's shape; a row the
    engine would refuse (bad type, volatility below 1e-10, strike not positive, negative spot, a
    figure beyond double precision) gives NaN."""
    import numpy
    columns, shape = _book_columns(types, strikes, vols, expiries, deliveries, rd, rf, spots)
    outputs = [numpy.empty(columns[0].size) for _ in range(5)]
    PriceVanillaBookInto(*columns, *outputs)
    return tuple(o.reshape(shape) for o in outputs)


def ImpliedVolatilityBook(types: "numpy.typing.ArrayLike", strikes: "numpy.typing.ArrayLike",
                          expiries: "numpy.typing.ArrayLike", deliveries: "numpy.typing.ArrayLike",
                          rd: "numpy.typing.ArrayLike", rf: "numpy.typing.ArrayLike",
                          spots: "numpy.typing.ArrayLike", premiums: "numpy.typing.ArrayLike",
                          volatilityLimit: "float" = 1e-4) -> "numpy.typing.NDArray[numpy.float64]":
    """Implied volatilities of a book of premiums (BSVanilla.VolImpliedFromPrice row by row).

    Arrays or broadcast scalars as for PriceVanillaBook, plus each premium; NaN where the
    solver fails or a row is invalid."""
    import numpy
    columns, shape = _book_columns(types, strikes, expiries, deliveries, rd, rf, spots, premiums)
    vols = numpy.empty(columns[0].size)
    ImpliedVolatilityBookInto(*columns, vols, volatilityLimit)
    return vols.reshape(shape)
%}
