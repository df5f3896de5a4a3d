// Discount curves. A zep.YieldCurve is held through a shared pointer, so every instrument built
// on it shares the one curve. Dates may be zep.Date, date texts or datetime.date; day counters
// a convention code, a convention name or a zep.DayCounter.
%{
#include <boost/make_shared.hpp>

#include "lum-interest-rates/YieldCurve.hpp"
#include "lum-interest-rates/QuotedForwardPoints.hpp"
#include "CurveArrays.hpp"
%}

%shared_ptr(zep::GenericCurve)
%shared_ptr(zep::YieldCurve)
// The hooks' arguments: a rate model (the parametric curves) or FX forward points.
%shared_ptr(zep::ParametricRateModel)
%shared_ptr(zep::ForwardPointsCurve)
%shared_ptr(zep::QuotedForwardPoints)

// Lists of dates arrive through the date-list typemap of zepCalendar.i.
%typemap(out) const std::vector<zep::Date>& {
    $result = PyTuple_New(static_cast<Py_ssize_t>($1->size()));
    for (std::size_t i = 0; i < $1->size(); ++i)
        PyTuple_SET_ITEM($result, i, SWIG_NewPointerObj(new zep::Date((*$1)[i]), $descriptor(zep::Date*), SWIG_POINTER_OWN));
}

%typemap(in) const std::vector<zep::Period>& (std::vector<zep::Period> tenors) {
    PyObject* sequence = PyUnicode_Check($input) ? nullptr : PySequence_Fast($input, "");
    if (sequence == nullptr) {
        PyErr_Clear();
        SWIG_exception_fail(SWIG_TypeError, "in method '" "$symname" "', argument " "$argnum" " of type '" "$type" "'");
    }
    bool converted = true;
    for (Py_ssize_t i = 0; converted && i < PySequence_Fast_GET_SIZE(sequence); ++i) {
        PyObject* item = PySequence_Fast_GET_ITEM(sequence, i);
        void* pointer = nullptr;
        if (SWIG_IsOK(SWIG_ConvertPtr(item, &pointer, $descriptor(zep::Period*), 0)) && pointer) {
            tenors.push_back(*static_cast<zep::Period*>(pointer));
        } else if (PyUnicode_Check(item)) {
            try {
                tenors.push_back(zep::Period(std::string(PyUnicode_AsUTF8(item))));
            } catch (...) {
                zep::python::SetPythonErrorFromActiveException();
                converted = false;
            }
        } else {
            PyErr_Format(PyExc_TypeError, "in method '%s', argument %d: element %zd is not a tenor", "$symname", $argnum, i);
            converted = false;
        }
    }
    Py_DECREF(sequence);
    if (!converted) SWIG_fail;
    $1 = &tenors;
}
%typemap(typecheck, precedence=SWIG_TYPECHECK_POINTER) const std::vector<zep::Period>& {
    $1 = PySequence_Check($input) && !PyUnicode_Check($input);
}

%typemap(in) const zep::DayCounter& (zep::DayCounter converted, void* pointer = nullptr) {
    if (PyLong_Check($input)) {
        const long code = PyLong_AsLong($input);
        if (PyErr_Occurred()) SWIG_fail;
        converted = zep::DayCounter(static_cast<std::int32_t>(code));
        $1 = &converted;
    } else if (PyUnicode_Check($input)) {
        try {
            converted = zep::DayCounter(std::string(PyUnicode_AsUTF8($input)));
        } catch (...) {
            zep::python::SetPythonErrorFromActiveException();
            SWIG_fail;
        }
        $1 = &converted;
    } else if (SWIG_IsOK(SWIG_ConvertPtr($input, &pointer, $descriptor, 0)) && pointer) {
        $1 = static_cast<zep::DayCounter*>(pointer);
    } else {
        SWIG_exception_fail(SWIG_TypeError, "in method '" "$symname" "', argument " "$argnum" " of type '" "$type" "'");
    }
}
%typemap(typecheck, precedence=SWIG_TYPECHECK_POINTER) const zep::DayCounter& {
    $1 = PyLong_Check($input) || PyUnicode_Check($input) ||
         SWIG_CheckState(SWIG_ConvertPtr($input, 0, $descriptor, SWIG_POINTER_NO_NULL));
}

// Zero-rate and tenor constructions are the factories FromZeroRates and FromTenors: a
// positional day-counter code and a compounding code would be indistinguishable.
%ignore zep::YieldCurve::YieldCurve(const Date&, const std::vector<Date>&, const std::vector<double>&, Frequency, const zep::DayCounter&, std::int32_t, std::int32_t, const std::string&);
%ignore zep::YieldCurve::YieldCurve(const Date&, const std::vector<Date>&, const std::vector<double>&, Frequency, const zep::DayCounter&, std::int32_t, std::int32_t);
%ignore zep::YieldCurve::YieldCurve(const Date&, const std::vector<Date>&, const std::vector<double>&, Frequency, const zep::DayCounter&, std::int32_t);
%ignore zep::YieldCurve::YieldCurve(const Date&, const std::vector<Date>&, const std::vector<double>&, Frequency, const zep::DayCounter&);
%ignore zep::YieldCurve::YieldCurve(const Date&, const std::vector<Date>&, const std::vector<double>&, Frequency);
%ignore zep::YieldCurve::YieldCurve(const Date&, const std::vector<Period>&, const std::vector<double>&, Frequency, const zep::DayCounter&, std::int32_t, std::int32_t, const std::string&);
%ignore zep::YieldCurve::YieldCurve(const Date&, const std::vector<Period>&, const std::vector<double>&, Frequency, const zep::DayCounter&, std::int32_t, std::int32_t);
%ignore zep::YieldCurve::YieldCurve(const Date&, const std::vector<Period>&, const std::vector<double>&, Frequency, const zep::DayCounter&, std::int32_t);
%ignore zep::YieldCurve::YieldCurve(const Date&, const std::vector<Period>&, const std::vector<double>&, Frequency, const zep::DayCounter&);
%ignore zep::YieldCurve::YieldCurve(const Date&, const std::vector<Period>&, const std::vector<double>&, Frequency);
namespace zep {
%ignore YieldCurve::DiscountFactorArray;
%ignore GenericCurve::GetInterpolation;
%ignore GenericCurve::GetDayCounter;
}

%feature("docstring") zep::YieldCurve
"A discount curve.

YieldCurve(referenceDate, dates, discountFactors[, dayCounter[, interpolatedVariable[,
interpolationMethod[, label]]]]) builds it from pillar discount factors;
YieldCurve.FromZeroRates(...) and YieldCurve.FromTenors(...) from zero rates compounded
continuously (zep.Continuous) or simply (zep.NoFrequency, zep.Once). Curves pickle, and
DiscountFactors(array) evaluates a whole NumPy array of times or dates in one call.";

%include "lum-interest-rates/InterpolatedVariable.hpp"
%include "lum-interest-rates/GenericCurve.hpp"
%feature("docstring") zep::QuotedForwardPoints
"FX forward points as quoted: QuotedForwardPoints(spot, scale, times, points), forward = spot +
points / scale, linear in time from zero points at time zero, flat beyond the last time.";
%include "lum-interest-rates/ParametricRateModel.hpp"
%include "lum-interest-rates/ForwardPointsCurve.hpp"
%include "lum-interest-rates/QuotedForwardPoints.hpp"
%include "lum-interest-rates/YieldCurve.hpp"

%extend zep::YieldCurve {
    static boost::shared_ptr<zep::YieldCurve> FromZeroRates(
        const zep::Date& referenceDate, const std::vector<zep::Date>& dates, const std::vector<double>& zeroRates,
        zep::Frequency compounding, const zep::DayCounter& dayCounter = zep::DayCounter(),
        std::int32_t interpolatedVariable = zep::ContinuousZeroRates,
        std::int32_t interpolationMethod = zep::LinearInterpolation, const std::string& label = "") {
        return boost::make_shared<zep::YieldCurve>(referenceDate, dates, zeroRates, compounding, dayCounter,
                                                   interpolatedVariable, interpolationMethod, label);
    }
    static boost::shared_ptr<zep::YieldCurve> FromTenors(
        const zep::Date& referenceDate, const std::vector<zep::Period>& tenors, const std::vector<double>& zeroRates,
        zep::Frequency compounding, const zep::DayCounter& dayCounter = zep::DayCounter(),
        std::int32_t interpolatedVariable = zep::ContinuousZeroRates,
        std::int32_t interpolationMethod = zep::LinearInterpolation, const std::string& label = "") {
        return boost::make_shared<zep::YieldCurve>(referenceDate, tenors, zeroRates, compounding, dayCounter,
                                                   interpolatedVariable, interpolationMethod, label);
    }
    std::int32_t DayCounterCode() const { return $self->GetDayCounter().Convention(); }
    void _FillAtTimes(PyObject* times, PyObject* out) const {
        zep::python::FillDiscountFactorsAtTimes(*$self, times, out);
    }
    void _FillAtSerials(PyObject* serials, PyObject* out) const {
        zep::python::FillDiscountFactorsAtSerials(*$self, serials, out);
    }
    %pythoncode %{
        def DiscountFactors(self, points: "numpy.typing.ArrayLike") -> "numpy.typing.NDArray[numpy.float64]":
            """Discount factors at a NumPy array (or any sequence) of times in years, of
            numpy.datetime64 dates, or of date texts / datetime.date values; returns an array
            of the same shape, computed in one native loop."""
            import numpy
            values = numpy.asarray(points)
            if values.dtype.kind in "fiub":
                times = numpy.ascontiguousarray(values, dtype=numpy.float64)
                out = numpy.empty_like(times)
                self._FillAtTimes(times, out)
                return out
            if values.dtype.kind == "M":
                serials = Date._serials_of_datetime64(values)
            else:
                serials = numpy.array([Date(p).SerialNumber() for p in values.ravel()]).reshape(values.shape)
            serials = numpy.ascontiguousarray(serials, dtype=numpy.int32)
            out = numpy.empty(serials.shape, dtype=numpy.float64)
            self._FillAtSerials(serials, out)
            return out

        def __eq__(self, other):
            if not isinstance(other, YieldCurve):
                return NotImplemented
            return self.ToJson() == other.ToJson()

        __hash__ = None

        def __repr__(self):
            return "zep.YieldCurve('%s', %d pillars from %s)" % (self.Label(), len(self.Dates()), self.ReferenceDate())
    %}
}
