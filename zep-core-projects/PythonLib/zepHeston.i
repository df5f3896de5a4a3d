// Heston's stochastic volatility model: European prices by its characteristic function, one at a
// time or over a strike array, and by the Carr-Madan FFT over a strike array.
%{
#include "lum-closed-form/HestonModel.hpp"
#include "lum-closed-form/HestonFftPricer.hpp"
%}

%ignore zep::HestonModel::CharacteristicFunction;
%feature("docstring") zep::HestonModel
"Heston's model: dv = kappa (theta - v) dt + sigma sqrt(v) dW2, dS/S = (rd - rf) dt + sqrt(v) dW1,
d<W1, W2> = rho dt. v0 and theta are variances (0.04 for 20%), sigma the volatility of variance.
A model violating the Feller condition 2 kappa theta >= sigma^2 is allowed (SatisfiesFeller()).

HestonModel(v0, kappa, theta, sigma, rho)
Price(optionType, strike, timeToExpiry, timeToDelivery, domesticRate, foreignRate, spot): a
European call (0) or put (1) by the characteristic function (Lewis's integral, adaptive
Gauss-Lobatto to about 1e-11 of the forward).
Prices(optionType, strikes, ...): the same over a NumPy array of strikes.
FftPrices(optionType, strikes, ..., points=2048, spacing=0.2, damping=1.5): over a strike array
by the Carr-Madan FFT, cubic interpolation in log-strike between its grid points.";
%include "lum-closed-form/HestonModel.hpp"

%inline %{
namespace zep::python {
// Raw entry points behind HestonModel.Prices and HestonModel.FftPrices.
void HestonPricesInto(const zep::HestonModel& model, int optionType, std::span<const double> strikes,
                      double timeToExpiry, double timeToDelivery, double domesticRate,
                      double foreignRate, double spot, std::span<double> prices) {
    ZEP_REQUIRE(strikes.size() == prices.size(), "strikes and prices must have the same length");
    for (std::size_t i = 0; i < strikes.size(); ++i)
        prices[i] = model.Price(optionType, strikes[i], timeToExpiry, timeToDelivery, domesticRate, foreignRate, spot);
}
void HestonFftPricesInto(const zep::HestonModel& model, int optionType, std::span<const double> strikes,
                         double timeToExpiry, double timeToDelivery, double domesticRate,
                         double foreignRate, double spot, std::span<double> prices, int points,
                         double spacing, double damping) {
    zep::HestonFftPricer pricer(model, timeToExpiry, zep::FftSettings{points, spacing, damping});
    pricer.Prices(optionType, strikes, timeToDelivery, domesticRate, foreignRate, spot, prices);
}
}
%}

%pythoncode %{
def _heston_prices(self, optionType: int, strikes: "numpy.typing.ArrayLike", timeToExpiry: float,
                   timeToDelivery: float, domesticRate: float, foreignRate: float, spot: float
                   ) -> "numpy.typing.NDArray[numpy.float64]":
    """European prices over an array of strikes by the characteristic function."""
    import numpy
    flat = numpy.ascontiguousarray(numpy.asarray(strikes, dtype=numpy.float64).reshape(-1))
    prices = numpy.empty(flat.size)
    HestonPricesInto(self, optionType, flat, timeToExpiry, timeToDelivery, domesticRate, foreignRate, spot, prices)
    return prices.reshape(numpy.shape(strikes))


def _heston_fft_prices(self, optionType: int, strikes: "numpy.typing.ArrayLike", timeToExpiry: float,
                       timeToDelivery: float, domesticRate: float, foreignRate: float, spot: float,
                       points: int = 2048, spacing: float = 0.2, damping: float = 1.5
                       ) -> "numpy.typing.NDArray[numpy.float64]":
    """European prices over an array of strikes by the Carr-Madan FFT (points a power of two,
    spacing eta of the frequency grid, damping alpha); log-strikes are spaced 2 pi / (points
    spacing) around the forward, with cubic interpolation between them."""
    import numpy
    flat = numpy.ascontiguousarray(numpy.asarray(strikes, dtype=numpy.float64).reshape(-1))
    prices = numpy.empty(flat.size)
    HestonFftPricesInto(self, optionType, flat, timeToExpiry, timeToDelivery, domesticRate, foreignRate,
                        spot, prices, points, spacing, damping)
    return prices.reshape(numpy.shape(strikes))


HestonModel.Prices = _heston_prices
HestonModel.FftPrices = _heston_fft_prices
%}
