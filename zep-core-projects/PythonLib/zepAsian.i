// Asian options: geometric and arithmetic averages, closed forms, approximations and Monte Carlo.
%{
#include "lum-closed-form/AsianOption.hpp"
#include "RowPriceOrNaN.hpp"
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

%inline %{
namespace zep::python {
// Behind AsianPrices: one schedule, one price a row by a closed form or approximation, NaN where
// a row is refused.
void AsianPricesInto(std::span<const double> types, std::span<const double> strikes, std::span<const double> vols,
                     std::span<const double> domesticRates, std::span<const double> foreignRates,
                     std::span<const double> spots, std::span<const double> fixingTimes,
                     std::span<const double> pastFixings, const std::string& engine, const std::string& average,
                     std::span<double> prices) {
    const std::size_t n = prices.size();
    ZEP_REQUIRE(types.size() == n && strikes.size() == n && vols.size() == n && domesticRates.size() == n &&
                    foreignRates.size() == n && spots.size() == n,
                "Asian book columns must have the same length");
    const bool arithmetic = average == "arithmetic";
    ZEP_REQUIRE(arithmetic || average == "geometric", "average must be 'arithmetic' or 'geometric'");
    ZEP_REQUIRE(arithmetic ? engine == "tw" || engine == "levy" : engine == "closed-form" || engine == "continuous",
                "AsianPrices engine must be 'tw' or 'levy' for an arithmetic average, 'closed-form' or "
                "'continuous' for a geometric one");
    const std::vector<double> times(fixingTimes.begin(), fixingTimes.end());
    const std::vector<double> past(pastFixings.begin(), pastFixings.end());
    for (std::size_t i = 0; i < n; ++i) {
        prices[i] = RowPriceOrNaN([&] {
            ZEP_REQUIRE(types[i] == 0.0 || types[i] == 1.0, "option type must be 0 (call) or 1 (put)");
            return zep::AsianOption(static_cast<int>(types[i]), strikes[i], vols[i], times, domesticRates[i],
                                    foreignRates[i], spots[i], past, average)
                .Price(engine);
        });
    }
}
}
%}

%pythoncode %{
def AsianPrices(types: "numpy.typing.ArrayLike", strikes: "numpy.typing.ArrayLike",
                vols: "numpy.typing.ArrayLike", rd: "numpy.typing.ArrayLike", rf: "numpy.typing.ArrayLike",
                spots: "numpy.typing.ArrayLike", fixingTimes: "list[float]", pastFixings: "list[float]" = (),
                engine: str = "tw", average: str = "arithmetic") -> "numpy.typing.NDArray[numpy.float64]":
    """Asian prices over arrays (or broadcast scalars) of option type 0 call / 1 put, strike,
    volatility, domestic and foreign continuous rates and spot, all on one fixing schedule (future
    fixingTimes in years, pastFixings already fixed). engine 'tw' or 'levy' for an arithmetic
    average, 'closed-form' or 'continuous' for a geometric one. A float64 array of the broadcast
    shape; NaN where a row is refused (as AsianOption would)."""
    import numpy
    columns, shape = _book_columns(types, strikes, vols, rd, rf, spots)
    times = numpy.ascontiguousarray(numpy.asarray(fixingTimes, dtype=numpy.float64).reshape(-1))
    past = numpy.ascontiguousarray(numpy.asarray(pastFixings, dtype=numpy.float64).reshape(-1))
    prices = numpy.empty(columns[0].size)
    AsianPricesInto(*columns, times, past, engine, average, prices)
    return prices.reshape(shape)
%}
