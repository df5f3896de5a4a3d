"""Scripted products under Dupire on the market smile: the local volatility of an FX surface
reprices the surface's own vanillas, a flat surface gives Black-Scholes, and the product keeps
every other input."""
import math
import pickle

import pytest
from scipy.stats import norm

import zep

REF, SPOT, RD, RF = "2024-01-15", 1.08, 0.035, 0.02
QUOTES = [[0.076, -0.0037, 0.0021, -0.007, 0.0068], [0.079, -0.0043, 0.0023, -0.008, 0.0074],
          [0.0815, -0.005, 0.0026, -0.009, 0.0082]]
SVI = 1


def surface(quotes=QUOTES):
    usd = zep.YieldCurve.FromZeroRates(REF, ["2026-01-15"], [RD], zep.Continuous, 1)
    eur = zep.YieldCurve.FromZeroRates(REF, ["2026-01-15"], [RF], zep.Continuous, 1)
    return zep.FXVolSurface.FromTenors(REF, REF, SPOT, ["3M", "6M", "1Y"], ["ATM", "25RR", "25BF", "10RR", "10BF"],
                                       quotes, usd, eur, zep.FXVolConventions(), SVI)


def call_on(smile, expiry, strike, paths=100000):
    product = zep.MXScriptStructure(REF, SPOT, 0.08, RD, RF, 1, [], [expiry], [f"C PAYS MAX(SPOT() - {strike}, 0)"],
                                    paths)
    return zep.MXScriptStructure.OnLocalVolatility(product, smile)


@pytest.fixture(scope="module")
def market():
    return surface()


@pytest.mark.parametrize("expiry", ["2024-07-15", "2025-01-15"])
@pytest.mark.parametrize("strike", [1.0, 1.08, 1.16])
def test_local_volatility_reprices_the_surface_vanillas(market, expiry, strike):
    product = call_on(market, expiry, strike)
    vanilla = zep.MVanillaOption(1, 0, 1.0, strike, SPOT, REF, expiry, expiry, expiry, RD, RF, market).Price()
    assert abs(product.Price() - vanilla) < 4 * product.PriceStandardError()


def test_a_flat_surface_gives_black_scholes():
    flat = surface([[0.1, 0.0, 0.0, 0.0, 0.0]] * 3)
    product = call_on(flat, "2025-01-15", 1.1)
    t = 366 / 365  # the product counts years on its 365-day basis
    forward = SPOT * math.exp((RD - RF) * t)
    d1 = (math.log(forward / 1.1) + 0.005 * t) / (0.1 * math.sqrt(t))
    expected = math.exp(-RD * t) * (forward * norm.cdf(d1) - 1.1 * norm.cdf(d1 - 0.1 * math.sqrt(t)))
    assert abs(product.Price() - expected) < 4 * product.PriceStandardError()
    # The vega bump moves the whole local volatility: the Black-Scholes vega per unit of volatility.
    vega = math.exp(-RD * t) * forward * norm.pdf(d1) * math.sqrt(t)
    assert product.Vega() == pytest.approx(vega / 100, rel=0.05)


def test_the_product_keeps_its_inputs_and_pickles(market):
    product = call_on(market, "2024-07-15", 1.08, paths=20000)
    assert "Dupire" in product.Description()
    again = pickle.loads(pickle.dumps(product))
    assert again.Price() == product.Price()


def test_a_missing_surface_is_refused():
    product = zep.MXScriptStructure(REF, SPOT, 0.08, RD, RF, 1, [], ["2024-07-15"], ["C PAYS SPOT()"], 100)
    with pytest.raises(RuntimeError, match="MXScriptStructure::OnLocalVolatility failed: Dupire on the market needs"):
        zep.MXScriptStructure.OnLocalVolatility(product, None)
