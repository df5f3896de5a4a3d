"""Heston European prices: the characteristic-function integral against QuantLib's analytic
Heston engine, the FFT against the integral, the Black-Scholes limit and put-call parity."""
import math
import pathlib
import sys

import numpy as np
import pytest
import QuantLib as ql

import zep

TODAY = ql.Date(2, 1, 2024)
MODELS = [  # v0, kappa, theta, sigma, rho
    (0.04, 1.5, 0.05, 0.6, -0.7),
    (0.09, 0.5, 0.04, 1.2, 0.3),   # Feller violated
    (0.01, 4.0, 0.02, 0.2, -0.2),
]


def quantlib_heston(params, option_type, strike, days, rd, rf, spot):
    ql.Settings.instance().evaluationDate = TODAY
    v0, kappa, theta, sigma, rho = params
    day_count = ql.Actual365Fixed()
    process = ql.HestonProcess(ql.YieldTermStructureHandle(ql.FlatForward(TODAY, rd, day_count)),
                               ql.YieldTermStructureHandle(ql.FlatForward(TODAY, rf, day_count)),
                               ql.QuoteHandle(ql.SimpleQuote(spot)), v0, kappa, theta, sigma, rho)
    engine = ql.AnalyticHestonEngine(ql.HestonModel(process), 1e-12, 100000)
    payoff = ql.PlainVanillaPayoff(ql.Option.Call if option_type == 0 else ql.Option.Put, strike)
    option = ql.VanillaOption(payoff, ql.EuropeanExercise(TODAY + days))
    option.setPricingEngine(engine)
    return option.NPV()


@pytest.mark.parametrize("params", MODELS)
@pytest.mark.parametrize("option_type", [0, 1])
@pytest.mark.parametrize("strike", [70.0, 100.0, 135.0])
@pytest.mark.parametrize("days", [30, 365, 1825])
def test_price_matches_quantlib(params, option_type, strike, days):
    t = days / 365.0
    price = zep.HestonModel(*params).Price(option_type, strike, t, t, 0.03, 0.01, 100.0)
    assert price == pytest.approx(quantlib_heston(params, option_type, strike, days, 0.03, 0.01, 100.0),
                                  abs=1e-8)


@pytest.mark.parametrize("params", [(0.04, 3.0, 0.04, 2.0, -0.9), (0.2, 0.3, 0.1, 1.8, 0.6),
                                    (0.04, 0.1, 0.3, 0.9, -0.95)])
@pytest.mark.parametrize("strike", [50.0, 200.0])
@pytest.mark.parametrize("days", [7, 30, 3650])
def test_far_strikes_and_extreme_models_match_quantlib(params, strike, days):
    """Volatility of variance up to 2, correlation to -0.95, a week to ten years, strikes half
    and twice the spot: the integrand oscillates many times over its range, decays slowly or
    fast, and each price still holds to 1e-8."""
    t = days / 365.0
    price = zep.HestonModel(*params).Price(1, strike, t, t, 0.03, 0.01, 100.0)
    assert price == pytest.approx(quantlib_heston(params, 1, strike, days, 0.03, 0.01, 100.0), abs=1e-8)


@pytest.mark.parametrize("params", MODELS)
@pytest.mark.parametrize("option_type", [0, 1])
@pytest.mark.parametrize("days", [30, 365])
def test_a_smile_priced_together_matches_quantlib(params, option_type, days):
    """Eleven strikes of one expiry share their characteristic-function values (in groups of
    eight, the last group short): each price still holds to 1e-8."""
    t = days / 365.0
    strikes = np.linspace(70.0, 135.0, 11)
    prices = zep.HestonModel(*params).Prices(option_type, strikes, t, t, 0.03, 0.01, 100.0)
    expected = [quantlib_heston(params, option_type, k, days, 0.03, 0.01, 100.0) for k in strikes]
    np.testing.assert_allclose(prices, expected, rtol=0, atol=1e-8)


@pytest.mark.parametrize("params", MODELS)
@pytest.mark.parametrize("option_type", [0, 1])
@pytest.mark.parametrize("strike, t", [(80.0, 0.1), (100.0, 1.0), (130.0, 2.0)])
def test_greeks_match_finite_differences_of_the_price(params, option_type, strike, t):
    model = zep.HestonModel(*params)
    rd, rf, spot, h = 0.03, 0.01, 100.0, 0.01
    greeks = model.Greeks(option_type, strike, t, t, rd, rf, spot)
    up, mid, down = (model.Price(option_type, strike, t, t, rd, rf, s) for s in (spot + h, spot, spot - h))
    assert greeks["price"] == pytest.approx(mid, abs=1e-9)
    assert greeks["delta"] == pytest.approx((up - down) / (2 * h), abs=1e-6)
    assert greeks["gamma"] == pytest.approx((up - 2 * mid + down) / (h * h), abs=2e-5)
    v0, kappa, theta, sigma, rho = params
    vol_up, vol_down = (zep.HestonModel((math.sqrt(v0) + dv) ** 2, kappa, theta, sigma, rho)
                        .Price(option_type, strike, t, t, rd, rf, spot) for dv in (2e-4, -2e-4))
    assert greeks["vega"] == pytest.approx((vol_up - vol_down) / 4e-4, rel=1e-4, abs=1e-6)


@pytest.mark.parametrize("option_type", [0, 1])
@pytest.mark.parametrize("t", [0.05, 1.0, 5.0])
def test_greeks_at_vanishing_vol_of_variance_are_black_scholes_at_the_mean_variance(option_type, t):
    """The mean variance is theta + (v0 - theta) w, w = (1 - e^(-kappa t)) / (kappa t): its root
    moves with sqrt(v0) by w sqrt(v0 / mean variance), which scales the Black-Scholes vega."""
    v0, kappa, theta = 0.09, 2.0, 0.04
    model = zep.HestonModel(v0, kappa, theta, 1e-9, -0.3)
    w = (1.0 - math.exp(-kappa * t)) / (kappa * t)
    mean_variance = theta + (v0 - theta) * w
    bs = zep.BSVanilla(option_type, 105.0, math.sqrt(mean_variance), t, t, 0.02, 0.04, 100.0)
    greeks = model.Greeks(option_type, 105.0, t, t, 0.02, 0.04, 100.0)
    assert greeks["delta"] == pytest.approx(bs.Delta(), abs=1e-7)
    assert greeks["gamma"] == pytest.approx(bs.Gamma(), abs=1e-7)
    assert greeks["vega"] == pytest.approx(bs.Vega() * w * math.sqrt(v0 / mean_variance), rel=1e-5)


def test_greeks_refuse_an_expired_option():
    with pytest.raises(Exception, match="Heston Greeks need a time to expiry > 0"):
        zep.HestonModel(0.04, 1.5, 0.05, 0.6, -0.7).Greeks(0, 100.0, 0.0, 0.0, 0.0, 0.0, 100.0)


@pytest.mark.parametrize("t", [0.05, 1.0, 10.0])
@pytest.mark.parametrize("rho", [-0.8, 0.0, 0.5])
def test_vanishing_vol_of_variance_is_black_scholes_at_the_mean_variance(t, rho):
    model = zep.HestonModel(0.09, 2.0, 0.04, 1e-9, rho)
    mean_variance = 0.04 + (0.09 - 0.04) * (1.0 - math.exp(-2.0 * t)) / (2.0 * t)
    for strike in (60.0, 100.0, 160.0):
        bs = zep.BSVanilla(0, strike, math.sqrt(mean_variance), t, t, 0.02, 0.04, 100.0).Price()
        assert model.Price(0, strike, t, t, 0.02, 0.04, 100.0) == pytest.approx(bs, abs=1e-7)


@pytest.mark.parametrize("option_type, strike", [(0, 95.0), (1, 95.0), (0, 110.0), (1, 110.0)])
def test_no_variance_at_all_prices_the_certain_forward(option_type, strike):
    """v0 = theta = 0: the variance stays 0 and the option is worth its discounted intrinsic value
    on the forward."""
    forward = 100.0 * math.exp(0.02)
    expected = math.exp(-0.03) * max((forward - strike) * (1 if option_type == 0 else -1), 0.0)
    assert zep.HestonModel(0.0, 1.5, 0.0, 0.6, -0.7).Price(option_type, strike, 1.0, 1.0, 0.03, 0.01, 100.0) == \
        pytest.approx(expected, abs=1e-13)


@pytest.mark.parametrize("params", MODELS)
def test_put_call_parity(params):
    model = zep.HestonModel(*params)
    t, td, rd, rf, spot = 0.8, 0.81, 0.05, 0.02, 1.1
    strikes = np.linspace(0.8, 1.5, 8)
    calls = model.Prices(0, strikes, t, td, rd, rf, spot)
    puts = model.Prices(1, strikes, t, td, rd, rf, spot)
    parity = spot * math.exp(-rf * td) - strikes * math.exp(-rd * td)
    np.testing.assert_allclose(calls - puts, parity, atol=1e-12)


@pytest.mark.parametrize("params", MODELS)
@pytest.mark.parametrize("t", [0.25, 1.0])
def test_fft_agrees_with_the_integral(params, t):
    """On the FFT's own log-strike grid (4096 points, spacing 0.1: strikes F exp(2 pi m / 409.6))
    to 1e-8; between grid points (2048 points, spacing 0.2) the cubic interpolation holds to
    5e-6 of the spot. Damping 0.75 keeps E[S^1.75] finite and its tail light for every model
    here (the second's moment of order 1.75 explodes at 2.4 years)."""
    model = zep.HestonModel(*params)
    rd, rf, spot = 0.03, 0.01, 100.0
    forward = spot * math.exp((rd - rf) * t)
    grid = forward * np.exp(2.0 * math.pi / (4096 * 0.1) * np.arange(-30, 31))
    fft = model.FftPrices(0, grid, t, t, rd, rf, spot, points=4096, spacing=0.1, damping=0.75)
    np.testing.assert_allclose(fft, model.Prices(0, grid, t, t, rd, rf, spot), rtol=0, atol=1e-8)
    between = np.linspace(75.0, 130.0, 23)
    np.testing.assert_allclose(model.FftPrices(1, between, t, t, rd, rf, spot, damping=0.75),
                               model.Prices(1, between, t, t, rd, rf, spot), rtol=0, atol=5e-4)


def test_fft_refuses_a_damping_whose_moment_explodes():
    # kappa - rho sigma (1 + alpha) < 0: E[S^2.5] explodes near 1.53 years for this model.
    model = zep.HestonModel(0.09, 0.5, 0.04, 1.2, 0.3)
    model.FftPrices(0, [100.0], 1.0, 1.0, 0.0, 0.0, 100.0)
    with pytest.raises(Exception, match="lower the damping"):
        model.FftPrices(0, [100.0], 2.0, 2.0, 0.0, 0.0, 100.0)


@pytest.mark.parametrize("args, message", [
    ((-0.04, 1.0, 0.04, 0.5, 0.0), "v0"),
    ((0.04, -1.0, 0.04, 0.5, 0.0), "kappa"),
    ((0.04, 1.0, 0.04, 0.5, -1.0), "rho"),
])
def test_bad_parameters_raise(args, message):
    with pytest.raises(Exception, match=message):
        zep.HestonModel(*args)


def test_bad_pricing_inputs_raise():
    model = zep.HestonModel(0.04, 1.5, 0.05, 0.6, -0.7)
    with pytest.raises(Exception, match="strike"):
        model.Price(0, -1.0, 1.0, 1.0, 0.0, 0.0, 100.0)
    with pytest.raises(Exception, match="power of two"):
        model.FftPrices(0, [100.0], 1.0, 1.0, 0.0, 0.0, 100.0, points=1000)
    with pytest.raises(Exception, match="outside the FFT strike grid"):
        model.FftPrices(0, [1e-9], 1.0, 1.0, 0.0, 0.0, 100.0)
    with pytest.raises(TypeError):
        zep.HestonModel.Price(None, 0, 100.0, 1.0, 1.0, 0.0, 0.0, 100.0)


def test_feller_condition_is_reported():
    assert zep.HestonModel(0.04, 1.5, 0.05, 0.3, -0.7).SatisfiesFeller()
    assert not zep.HestonModel(0.09, 0.5, 0.04, 1.2, 0.3).SatisfiesFeller()


def generated_quotes(model, expiries, strikes, rd=0.03, rf=0.01, spot=100.0):
    quotes = []
    for t in expiries:
        forward = spot * math.exp((rd - rf) * t)
        for strike in strikes:
            option_type = 0 if strike >= forward else 1
            price = model.Price(option_type, strike, t, t, rd, rf, spot)
            quotes.append((t, strike, zep.BSVanilla.VolImpliedFromPrice(option_type, strike, t, t, rd, rf, spot, price)))
    return quotes


@pytest.mark.parametrize("start", ["none", "direct", "evolution"])
def test_calibration_recovers_the_model_that_made_its_quotes(start):
    true = (0.03, 2.0, 0.05, 0.4, -0.6)
    quotes = generated_quotes(zep.HestonModel(*true), (0.25, 0.5, 1.0, 2.0), (80.0, 90.0, 100.0, 110.0, 125.0))
    model, report = zep.CalibrateHeston(quotes, 100.0, 0.03, 0.01, start)
    fitted = (model.InitialVariance(), model.MeanReversion(), model.LongRunVariance(), model.VolOfVariance(),
              model.Correlation())
    assert fitted == pytest.approx(true, rel=1e-4)
    assert report.rmse < 1e-8
    assert len(report.quotes) == len(quotes)
    assert report.feller_satisfied


def test_calibration_report_states_a_feller_violation():
    quotes = generated_quotes(zep.HestonModel(0.04, 0.8, 0.04, 1.0, -0.3), (0.5, 1.0, 2.0), (85.0, 95.0, 100.0, 105.0, 120.0))
    model, report = zep.CalibrateHeston(quotes, 100.0, 0.03, 0.01)
    assert not report.feller_satisfied and not model.SatisfiesFeller()
    rows = report.quotes.to_dict("records") if hasattr(report.quotes, "to_dict") else report.quotes
    assert max(abs(row["error"]) for row in rows) < 1e-6


def test_calibration_to_a_surface_reads_its_grid():
    """The EUR/USD example surface: 10 expiries x 5 strikes read off it, each quote's market
    volatility the surface's, and a fit within half a volatility point."""
    sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "examples"))
    import eurusd_market as market
    surface = market.surface()
    model, report = zep.CalibrateHeston(surface, market.SPOT, market.RD, market.RF)
    rows = report.quotes.to_dict("records") if hasattr(report.quotes, "to_dict") else report.quotes
    assert len(rows) == 50
    for row in rows[::7]:
        assert row["market_vol"] == pytest.approx(surface.GetVolatility(row["expiry"], row["strike"]), abs=1e-14)
    assert report.rmse < 5e-3


def implied_vol_rmse(model, quotes, rd=0.03, rf=0.01, spot=100.0):
    errors = []
    for t, strike, vol in quotes:
        option_type = 0 if strike >= spot * math.exp((rd - rf) * t) else 1
        price = model.Price(option_type, strike, t, t, rd, rf, spot)
        errors.append(zep.BSVanilla.VolImpliedFromPrice(option_type, strike, t, t, rd, rf, spot, price) - vol)
    return math.sqrt(sum(e * e for e in errors) / len(errors))


def test_calibration_stopped_by_its_iteration_cap_returns_the_best_point_and_says_so():
    """Two iterations from the start at the quotes' mean variance (kappa 1, sigma 0.3, rho 0):
    the fit has not converged, is reported and warned as such, and is better than its start."""
    quotes = generated_quotes(zep.HestonModel(0.03, 2.0, 0.05, 0.4, -0.6), (0.25, 1.0, 2.0), (80.0, 90.0, 100.0, 110.0, 125.0))
    mean_variance = sum(vol * vol for _, _, vol in quotes) / len(quotes)
    start = zep.HestonModel(mean_variance, 1.0, mean_variance, 0.3, 0.0)
    with pytest.warns(RuntimeWarning, match="did not converge in 2 Levenberg-Marquardt iterations"):
        model, report = zep.CalibrateHeston(quotes, 100.0, 0.03, 0.01, maxIterations=2)
    assert not report.converged and "best point reached" in report.message
    assert report.rmse == pytest.approx(implied_vol_rmse(model, quotes), abs=1e-12)
    assert report.rmse < implied_vol_rmse(start, quotes)


def test_converged_calibration_reports_no_message(recwarn):
    quotes = generated_quotes(zep.HestonModel(0.03, 2.0, 0.05, 0.4, -0.6), (0.5, 1.0), (85.0, 95.0, 100.0, 105.0, 120.0))
    _, report = zep.CalibrateHeston(quotes, 100.0, 0.03, 0.01)
    assert report.converged and report.message == ""
    assert not [w for w in recwarn if issubclass(w.category, RuntimeWarning)]


@pytest.mark.parametrize("max_iterations", [0, 10001])
def test_calibration_refuses_an_iteration_cap_out_of_range(max_iterations):
    quotes = generated_quotes(zep.HestonModel(0.04, 1.0, 0.04, 0.5, -0.5), (1.0,), (80.0, 90.0, 100.0, 110.0, 125.0))
    with pytest.raises(Exception, match=r"maxIterations must lie in \[1, 10000\]"):
        zep.CalibrateHeston(quotes, 100.0, 0.03, 0.01, maxIterations=max_iterations)


@pytest.mark.parametrize("quotes, message", [
    ([(1.0, 100.0, 0.2)] * 3, "at least 5 quotes"),
    ([(1.0, 100.0, 0.2)] * 5 + [(0.0, 100.0, 0.2)], "expiries"),
    (None, "quotes must be"),
])
def test_bad_calibration_inputs_raise(quotes, message):
    with pytest.raises(Exception, match=message):
        zep.CalibrateHeston(quotes, 100.0, 0.03, 0.01)


def test_unknown_calibration_start_raises():
    quotes = generated_quotes(zep.HestonModel(0.04, 1.0, 0.04, 0.5, -0.5), (1.0,), (80.0, 90.0, 100.0, 110.0, 125.0))
    with pytest.raises(Exception, match="start must be"):
        zep.CalibrateHeston(quotes, 100.0, 0.03, 0.01, "random")
