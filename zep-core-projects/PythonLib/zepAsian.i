// Asian options: geometric and arithmetic averages, closed forms, approximations and Monte Carlo.
%{
#include "lum-closed-form/AsianOption.hpp"
%}

%typemap(doc, type="list[float]") const std::vector<double>& fixingTimes, const std::vector<double>& pastFixings "$1_name: list[float]";
%typemap(in) const std::vector<double>& fixingTimes (std::vector<double> values),
             const std::vector<double>& pastFixings (std::vector<double> values) {
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
    $1 = &values;
}
%typemap(freearg) const std::vector<double>& fixingTimes, const std::vector<double>& pastFixings "";
%typemap(typecheck, precedence=SWIG_TYPECHECK_POINTER) const std::vector<double>& fixingTimes,
                                                       const std::vector<double>& pastFixings {
    $1 = PySequence_Check($input) ? 1 : 0;
}

%ignore zep::AverageKind;
%feature("docstring") zep::McEstimate "A Monte Carlo price and its standard error.";
%feature("docstring") zep::AsianOption
"A call (0) or put (1) on the average of the spot over fixings, paid at the last one. fixingTimes:
the future fixings in years (increasing, > 0); pastFixings: the spots already fixed, which count
in the average; average 'arithmetic' or 'geometric'. Continuous domestic and foreign rates.

AsianOption(optionType, strike, volatility, fixingTimes, domesticRate, foreignRate, spot,
            pastFixings=[], average='arithmetic')
Price(engine): geometric 'closed-form' (exact), 'continuous' (future fixings as a continuous
average), 'mc'; arithmetic 'tw' (Turnbull-Wakeman), 'levy' (Levy, continuous average), 'mc'.
MonteCarlo(paths, seed=42): McEstimate with price and standardError; the arithmetic average uses
the geometric one as control variate.";
%include "lum-closed-form/AsianOption.hpp"
