import math
import pickle
import re

import numpy as np
import pytest

import zep

REFERENCE = "2026-11-16"
SPOT = 1.0850
USD, EUR = 0.043, 0.026
LABELS = ["ATM", "25RR", "25BF", "10RR", "10BF"]
TENORS = ["1W", "1M", "3M", "6M", "1Y", "2Y"]
QUOTES = np.array([[0.0720, -0.0020, 0.0018, -0.0036, 0.0060], [0.0750, -0.0030, 0.0020, -0.0055, 0.0068],
                   [0.0780, -0.0040, 0.0022, -0.0072, 0.0075], [0.0800, -0.0045, 0.0024, -0.0082, 0.0082],
                   [0.0820, -0.0050, 0.0026, -0.0090, 0.0090], [0.0840, -0.0052, 0.0027, -0.0095, 0.0095]])
FLAT_QUOTES = np.tile([0.08, 0.0, 0.0, 0.0, 0.0], (len(TENORS), 1))


def flat(rate):
    return zep.YieldCurve.FromTenors(REFERENCE, ["1Y", "10Y"], [rate, rate], zep.Continuous, zep.Act365Fixed)


def surface(mode, quotes):
    return zep.FXVolSurface.FromTenors(REFERENCE, REFERENCE, SPOT, TENORS, LABELS, quotes, flat(USD), flat(EUR),
                                       smileInterpolation=mode)


def black(option_type, t, strike, vol):
    """Garman-Kohlhagen on flat continuous rates, spot date on the reference date."""
    forward, discount = SPOT * math.exp((USD - EUR) * t), math.exp(-USD * t)
    total = vol * math.sqrt(t)
    d1 = math.log(forward / strike) / total + total / 2
    phi = 1.0 if option_type == 0 else -1.0
    normal = lambda x: 0.5 * math.erfc(-x / math.sqrt(2))
    return discount * phi * (forward * normal(phi * d1) - strike * normal(phi * (d1 - total)))


def vega(t, strike, vol):
    forward, discount = SPOT * math.exp((USD - EUR) * t), math.exp(-USD * t)
    d1 = math.log(forward / strike) / (vol * math.sqrt(t)) + vol * math.sqrt(t) / 2
    return discount * forward * math.sqrt(t) * math.exp(-d1 * d1 / 2) / math.sqrt(2 * math.pi)


@pytest.fixture(scope="module")
def smile():
    return surface(zep.SmileSVI, QUOTES)


@pytest.mark.parametrize("option_type", [0, 1])
def test_flat_surface_gives_black_scholes_prices_for_every_strike_and_expiry(option_type):
    expiries = [0.25, 1.0]
    pde = zep.DupireForwardPde(zep.FXLocalVolSurface(surface(zep.SmileCubicSpline, FLAT_QUOTES)), expiries,
                               option_type, 800, 400)
    strikes = np.array([1.03, 1.06, 1.09, 1.12, 1.15])
    prices = pde.Prices(strikes)
    assert prices.shape == (2, 5)
    for j, t in enumerate(expiries):
        for i, k in enumerate(strikes):
            exact = black(option_type, t, k, 0.08)
            assert prices[j, i] == pytest.approx(exact, rel=2e-4), f"T {t}, K {k}"
            assert pde.Price(j, k) == prices[j, i]


# Under its own local volatility the surface's vanillas come back: within half a basis point of
# implied volatility (price error over vega) from the 10-delta put to the 10-delta call.
@pytest.mark.parametrize("tenor_index", [2, 4])
def test_smile_surface_vanillas_are_repriced_under_its_local_volatility(smile, tenor_index):
    expiry = zep.Date(REFERENCE) + zep.Period(TENORS[tenor_index])
    t = smile.TimeToExpiry(expiry)
    pde = zep.DupireForwardPde(zep.FXLocalVolSurface(smile), [t / 2, t], 0, 400, 200)
    for label in ["10P", "25P", "ATM", "25C", "10C"]:
        strike = smile.GetStrike(expiry, label)
        vol = smile.GetVolatility(t, strike)
        error = (pde.Price(1, strike) - black(0, t, strike, vol)) / vega(t, strike, vol)
        assert abs(error) < 5e-5, f"{TENORS[tenor_index]} {label}: strike {strike}, vol error {error}"


def test_smile_calls_less_puts_are_the_discounted_forward_less_the_strike(smile):
    expiries = [0.3, 1.2]
    strikes = np.linspace(0.95, 1.25, 7)
    calls = zep.DupireForwardPde(zep.FXLocalVolSurface(smile), expiries, 0, 200, 100).Prices(strikes)
    puts = zep.DupireForwardPde(zep.FXLocalVolSurface(smile), expiries, 1, 200, 100).Prices(strikes)
    for j, t in enumerate(expiries):
        parity = math.exp(-USD * t) * (SPOT * math.exp((USD - EUR) * t) - strikes)
        np.testing.assert_allclose(calls[j] - puts[j], parity, atol=1e-6, err_msg=f"T {t}")


def test_pickles_and_shows_its_grid(smile):
    pde = zep.DupireForwardPde(zep.FXLocalVolSurface(smile), [0.5], 0, 50, 20)
    assert pickle.loads(pickle.dumps(pde)).Price(0, 1.1) == pde.Price(0, 1.1)
    assert repr(pde).startswith("zep.DupireForwardPde(1 expiries to 0.5Y, strikes ")


@pytest.mark.parametrize("args, message", [
    ((None, [1.0]), "FXLocalVolSurface is Null!"),
    ((zep.FXLocalVolSurface(surface(zep.SmileLinear, QUOTES)), [1.0, 0.5]),
     "DupireForwardPde: expiries must be finite, positive and increasing"),
    ((zep.FXLocalVolSurface(surface(zep.SmileLinear, QUOTES)), [1.0], 0, 4),
     "DupireForwardPde: the grid needs at least 5 strike nodes, at most 100000"),
    ((zep.FXLocalVolSurface(surface(zep.SmileLinear, QUOTES)), [1.0], 3),
     "DupireForwardPde: option type must be 0 (call) or 1 (put)"),
])
def test_bad_input_raises_the_library_message(args, message):
    with pytest.raises(Exception, match=re.escape(message)):
        zep.DupireForwardPde(*args)


def test_a_strike_off_the_grid_raises(smile):
    pde = zep.DupireForwardPde(zep.FXLocalVolSurface(smile), [0.5], 0, 50, 20)
    with pytest.raises(Exception, match="lies outside the grid"):
        pde.Prices([1.1, 50.0])


def test_a_surface_with_butterfly_arbitrage_is_refused_naming_the_point():
    quotes = QUOTES.copy()
    quotes[2, 2], quotes[2, 4] = -0.012, -0.004  # a concave 3M smile
    local = zep.FXLocalVolSurface(surface(zep.SmileLinear, quotes))
    with pytest.raises(Exception, match="Local variance is negative at time .*: the surface has arbitrage there"):
        zep.DupireForwardPde(local, [0.5], 0, 100, 50)
