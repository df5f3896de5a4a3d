// Heston's stochastic volatility model: European prices by its characteristic function, one at a
// time or over a strike array, and by the Carr-Madan FFT over a strike array.
%{
#include "lum-closed-form/HestonModel.hpp"
#include "lum-closed-form/HestonFftPricer.hpp"
#include "lum-closed-form/HestonCalibration.hpp"
%}

%ignore zep::HestonModel::CharacteristicFunction;
%ignore zep::HestonModel::LogCharacteristicFunction;
%ignore zep::HestonModel::Prices;  // wrapped below over NumPy arrays
%ignore zep::HestonModel::Greeks;  // wrapped below as a dict
%ignore zep::HestonGreeks;
%feature("docstring") zep::HestonModel
"Heston's model: dv = kappa (theta - v) dt + sigma sqrt(v) dW2, dS/S = (rd - rf) dt + sqrt(v) dW1,
d<W1, W2> = rho dt. v0 and theta are variances (0.04 for 20%), sigma the volatility of variance.
A model violating the Feller condition 2 kappa theta >= sigma^2 is allowed (SatisfiesFeller()).

HestonModel(v0, kappa, theta, sigma, rho)
Price(optionType, strike, timeToExpiry, timeToDelivery, domesticRate, foreignRate, spot,
tolerance=1e-11): a European call (0) or put (1) by the characteristic function (Lewis's integral,
adaptive Gauss-Kronrod to about tolerance times the forward).
Prices(optionType, strikes, ...): the same over a NumPy array of strikes.
Greeks(optionType, strike, ...): a dict of price, delta, gamma (in the spot) and vega (in the
initial volatility sqrt(v0)).
FftPrices(optionType, strikes, ..., points=2048, spacing=0.2, damping=1.5): over a strike array
by the Carr-Madan FFT, cubic interpolation in log-strike between its grid points.
ScriptParameters(): [kappa, theta, sigma, rho, v0], the parameters of the scripted Monte Carlo's
Heston model (model 3).";
%include "lum-closed-form/HestonModel.hpp"

%inline %{
namespace zep::python {
// Raw entry points behind HestonModel.Prices and HestonModel.FftPrices.
void HestonPricesInto(const zep::HestonModel& model, int optionType, std::span<const double> strikes,
                      double timeToExpiry, double timeToDelivery, double domesticRate,
                      double foreignRate, double spot, std::span<double> prices) {
    model.Prices(optionType, strikes, timeToExpiry, timeToDelivery, domesticRate, foreignRate, spot, prices);
}
// Behind HestonModel.Greeks: price, delta, gamma, vega into `greeks`.
void HestonGreeksInto(const zep::HestonModel& model, int optionType, double strike, double timeToExpiry,
                      double timeToDelivery, double domesticRate, double foreignRate, double spot,
                      std::span<double> greeks) {
    ZEP_REQUIRE(greeks.size() == 4, "Heston Greeks fill four numbers");
    const zep::HestonGreeks g =
        model.Greeks(optionType, strike, timeToExpiry, timeToDelivery, domesticRate, foreignRate, spot);
    greeks[0] = g.price;
    greeks[1] = g.delta;
    greeks[2] = g.gamma;
    greeks[3] = g.vega;
}
// The calibration behind CalibrateHeston: quotes as three arrays, model volatilities filled in.
zep::HestonModel HestonCalibrateInto(std::span<const double> expiries, std::span<const double> strikes,
                                     std::span<const double> volatilities, double spot, double domesticRate,
                                     double foreignRate, const std::string& start, int maxIterations,
                                     std::span<double> modelVolatilities, std::span<double> summary) {
    ZEP_REQUIRE(strikes.size() == expiries.size() && volatilities.size() == expiries.size() &&
                    modelVolatilities.size() == expiries.size() && summary.size() == 3,
                "expiries, strikes, volatilities and model volatilities must have the same length");
    std::vector<zep::HestonQuote> quotes;
    for (std::size_t i = 0; i < expiries.size(); ++i) quotes.push_back({expiries[i], strikes[i], volatilities[i]});
    const zep::HestonFit fit = zep::CalibrateHeston(quotes, spot, domesticRate, foreignRate, start, maxIterations);
    std::copy(fit.modelVolatilities.begin(), fit.modelVolatilities.end(), modelVolatilities.begin());
    summary[0] = fit.rootMeanSquareError;
    summary[1] = fit.evaluations;
    summary[2] = fit.converged ? 1.0 : 0.0;
    return fit.model;
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


def _heston_greeks(self, optionType: int, strike: float, timeToExpiry: float, timeToDelivery: float,
                   domesticRate: float, foreignRate: float, spot: float) -> "dict[str, float]":
    """Price, delta and gamma in the spot (taken under the integral) and vega, per unit of the
    initial volatility sqrt(v0) (by re-pricing), as a dict with those four keys."""
    import numpy
    values = numpy.empty(4)
    HestonGreeksInto(self, optionType, strike, timeToExpiry, timeToDelivery, domesticRate, foreignRate, spot,
                     values)
    return dict(zip(("price", "delta", "gamma", "vega"), (float(v) for v in values)))


def _heston_script_parameters(self) -> "list[float]":
    """The model as the scripted Monte Carlo's Heston parameters (model 3): [kappa, theta, sigma,
    rho, v0], so that a calibrated model prices exotics as it is."""
    return [self.MeanReversion(), self.LongRunVariance(), self.VolOfVariance(), self.Correlation(),
            self.InitialVariance()]


HestonModel.ScriptParameters = _heston_script_parameters
HestonModel.Prices = _heston_prices
HestonModel.Greeks = _heston_greeks
HestonModel.FftPrices = _heston_fft_prices
%}

%pythoncode %{
class HestonFitReport:
    """What a Heston calibration reached: `quotes`, one row per quote (expiry, strike,
    market_vol, model_vol, error = model - market), a pandas DataFrame when pandas is installed,
    else a list of dicts; `rmse` of the errors; `feller_satisfied` (2 kappa theta >= sigma^2; a
    violation is allowed); `evaluations` of the whole quote set; `converged` (False when the
    iteration cap stopped the fit: the model is then the best point reached) and `message`, which
    says so ('' when converged)."""

    def __init__(self, rows, rmse, feller_satisfied, evaluations, message):
        try:
            import pandas
            self._quotes = pandas.DataFrame(rows)
        except ImportError:
            self._quotes = rows
        self._rmse = rmse
        self._feller_satisfied = feller_satisfied
        self._evaluations = evaluations
        self._message = message

    quotes = property(lambda self: self._quotes)
    rmse = property(lambda self: self._rmse)
    feller_satisfied = property(lambda self: self._feller_satisfied)
    evaluations = property(lambda self: self._evaluations)
    converged = property(lambda self: not self._message)
    message = property(lambda self: self._message)


def _surface_quotes(surface, spot, domesticRate, foreignRate, expiries, moneyness):
    import math
    quotes = []
    for t in expiries:
        forward = spot * math.exp((domesticRate - foreignRate) * t)
        atm = surface.GetVolatility(t, forward)
        for z in moneyness:
            strike = forward * math.exp(z * atm * math.sqrt(t))
            quotes.append((t, strike, surface.GetVolatility(t, strike)))
    return quotes


def CalibrateHeston(quotes, spot: float, domesticRate: float, foreignRate: float, start: str = "none",
                    expiries=(0.25, 0.5, 0.75, 1.0, 1.25, 1.5, 1.75, 2.0, 2.5, 3.0),
                    moneyness=(-1.5, -0.75, 0.0, 0.75, 1.5), maxIterations: int = 100
                    ) -> "tuple[HestonModel, HestonFitReport]":
    """Calibrate Heston to implied volatilities by Levenberg-Marquardt on vega-weighted price
    errors. `quotes` is a list of (expiry in years, strike, volatility) or an MFXVolSurface, read
    at `expiries` and at strikes F exp(z atm sqrt(T)) for z in `moneyness`. `start` 'none' (from the
    quotes' mean variance), 'direct' (NLopt DIRECT) or 'evolution' (differential evolution) for
    the start point. Continuous domestic and foreign rates. Returns (model, HestonFitReport).
    A fit that reaches maxIterations Levenberg-Marquardt iterations without converging returns the
    best point it reached, with report.converged False and a RuntimeWarning saying so."""
    import numpy
    import warnings
    if quotes is None:
        raise TypeError("CalibrateHeston: quotes must be a list of (expiry, strike, volatility) or an MFXVolSurface")
    if isinstance(quotes, MFXVolSurface):
        quotes = _surface_quotes(quotes, spot, domesticRate, foreignRate, expiries, moneyness)
    table = numpy.ascontiguousarray(numpy.asarray(quotes, dtype=numpy.float64))
    if table.ndim != 2 or table.shape[1] != 3:
        raise ValueError("CalibrateHeston: quotes must be (expiry, strike, volatility) triples")
    columns = [numpy.ascontiguousarray(table[:, i]) for i in range(3)]
    model_vols = numpy.empty(len(table))
    summary = numpy.empty(3)
    model = HestonCalibrateInto(*columns, spot, domesticRate, foreignRate, start, maxIterations, model_vols, summary)
    rows = [{"expiry": e, "strike": k, "market_vol": v, "model_vol": m, "error": m - v}
            for (e, k, v), m in zip(table.tolist(), model_vols.tolist())]
    rmse = float(summary[0])
    message = "" if summary[2] else (
        f"Heston calibration did not converge in {maxIterations} Levenberg-Marquardt iterations: "
        f"the model is the best point reached, rmse {rmse:.3g}")
    if message:
        warnings.warn(message, RuntimeWarning, stacklevel=2)
    return model, HestonFitReport(rows, rmse, model.SatisfiesFeller(), int(summary[1]), message)
%}
