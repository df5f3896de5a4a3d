// American options: finite differences, Barone-Adesi-Whaley and the Leisen-Reimer tree.
%{
#include "lum-closed-form/BaroneAdesiWhaley.hpp"
#include "lum-closed-form/BjerksundStensland.hpp"
#include "zep-pde/AmericanOption.hpp"
#include "RowPriceOrNaN.hpp"
%}

%feature("docstring") zep::AmericanOption
"An American call (0) or put (1), expiry and delivery as one date (years), continuous domestic
and foreign rates.

AmericanOption(optionType, strike, volatility, timeToExpiry, domesticRate, foreignRate, spot)
Price(engine='fd', nodes=200, timeSteps=200): engine 'fd' (Crank-Nicolson after two implicit
half steps on nodes x timeSteps, spots gathered at the strike, early exercise by projection after
each step), 'baw'
(Barone-Adesi-Whaley), 'bjerksund-stensland' (Bjerksund-Stensland 2002: two flat exercise
boundaries, a lower bound) or 'binomial' (Leisen-Reimer tree of timeSteps steps).
EuropeanPrice(): the Black-Scholes price of the same terms.
ExerciseBoundary(nodes=200, timeSteps=200): [(time in years, critical spot)] from the grid.";
%include "zep-pde/AmericanOption.hpp"

%inline %{
namespace zep::python {
// Behind the American approximations over arrays: one price a row by the named approximation,
// NaN where it refuses the row.
void AmericanApproximationPricesInto(const std::string& engine, std::span<const double> types,
                                     std::span<const double> strikes, std::span<const double> vols,
                                     std::span<const double> expiries, std::span<const double> domesticRates,
                                     std::span<const double> foreignRates, std::span<const double> spots,
                                     std::span<double> prices) {
    using Approximation = double (*)(int, double, double, double, double, double, double);
    const Approximation approximation = engine == "baw"                   ? &zep::BaroneAdesiWhaleyPrice
                                        : engine == "bjerksund-stensland" ? &zep::BjerksundStenslandPrice
                                                                          : nullptr;
    ZEP_REQUIRE(approximation != nullptr, "American approximation must be 'baw' or 'bjerksund-stensland'");
    const std::size_t n = prices.size();
    ZEP_REQUIRE(types.size() == n && strikes.size() == n && vols.size() == n && expiries.size() == n &&
                    domesticRates.size() == n && foreignRates.size() == n && spots.size() == n,
                "American book columns must have the same length");
    for (std::size_t i = 0; i < n; ++i) {
        prices[i] = RowPriceOrNaN([&] {
            ZEP_REQUIRE(types[i] == 0.0 || types[i] == 1.0, "option type must be 0 (call) or 1 (put)");
            return approximation(static_cast<int>(types[i]), strikes[i], vols[i], expiries[i], domesticRates[i],
                                 foreignRates[i], spots[i]);
        });
    }
}
}
%}

%pythoncode %{
def _american_approximation_prices(engine, types, strikes, vols, expiries, rd, rf, spots):
    import numpy
    columns, shape = _book_columns(types, strikes, vols, expiries, rd, rf, spots)
    prices = numpy.empty(columns[0].size)
    AmericanApproximationPricesInto(engine, *columns, prices)
    return prices.reshape(shape)


def BaroneAdesiWhaleyPrices(types: "numpy.typing.ArrayLike", strikes: "numpy.typing.ArrayLike",
                            vols: "numpy.typing.ArrayLike", expiries: "numpy.typing.ArrayLike",
                            rd: "numpy.typing.ArrayLike", rf: "numpy.typing.ArrayLike",
                            spots: "numpy.typing.ArrayLike") -> "numpy.typing.NDArray[numpy.float64]":
    """American prices by Barone-Adesi-Whaley over arrays (or broadcast scalars): option type 0
    call / 1 put, strike, volatility, years to expiry, domestic and foreign continuous rates, spot.
    A float64 array of the broadcast shape; NaN where a row is refused (as AmericanOption would)."""
    return _american_approximation_prices("baw", types, strikes, vols, expiries, rd, rf, spots)


def BjerksundStenslandPrices(types: "numpy.typing.ArrayLike", strikes: "numpy.typing.ArrayLike",
                             vols: "numpy.typing.ArrayLike", expiries: "numpy.typing.ArrayLike",
                             rd: "numpy.typing.ArrayLike", rf: "numpy.typing.ArrayLike",
                             spots: "numpy.typing.ArrayLike") -> "numpy.typing.NDArray[numpy.float64]":
    """American prices by Bjerksund-Stensland (2002) over arrays (or broadcast scalars), with the
    columns of BaroneAdesiWhaleyPrices. A float64 array of the broadcast shape; NaN where a row is
    refused (as AmericanOption would)."""
    return _american_approximation_prices("bjerksund-stensland", types, strikes, vols, expiries, rd, rf, spots)
%}
