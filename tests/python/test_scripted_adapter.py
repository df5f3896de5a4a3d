"""The scripted product through the risk layer: a call written as a script, its PV, DELTA,
GAMMA and VEGA in the metric units against the Black-Scholes closed form (within the Monte Carlo
error), and its scenario PV against the closed form on the moved market."""
import pytest

import zep

TODAY, EXPIRY = "2024-01-02", "2025-01-02"
SPOT, VOL, RATE, STRIKE, NOTIONAL = 100.0, 0.2, 0.03, 100.0, 10.0
PATHS = 40_000


@pytest.fixture(scope="module")
def adapter():
    call = zep.MXScriptStructure(TODAY, SPOT, VOL, RATE, 0.0, 1, [], [EXPIRY], [f"C PAYS MAX(SPOT() - {STRIKE}, 0)"],
                                 PATHS, 12345, 365.0, False, 0.0, "", False, NOTIONAL)
    return zep.ScriptedProductAdapter(call, "SPX")


def black_scholes(spot=SPOT, vol=VOL):
    t = (zep.Date(EXPIRY) - zep.Date(TODAY)) / 365.0
    return zep.BSVanilla(0, STRIKE, vol, t, t, RATE, 0.0, spot)


def value(adapter, metric):
    return adapter.Compute(metric).Value()


def test_pv_and_greeks_are_the_closed_forms_in_metric_units(adapter):
    bs = black_scholes()
    assert adapter.Product() == zep.ProductType_WM_PRODUCT
    assert value(adapter, zep.Metric_PV) == pytest.approx(NOTIONAL * bs.Price(), rel=0.01)
    assert value(adapter, zep.Metric_DELTA) == pytest.approx(NOTIONAL * bs.Delta() * 0.01 * SPOT, rel=0.01)
    assert value(adapter, zep.Metric_GAMMA) == pytest.approx(NOTIONAL * bs.Gamma() * (0.01 * SPOT) ** 2, rel=0.05)
    assert value(adapter, zep.Metric_VEGA) == pytest.approx(NOTIONAL * bs.Vega() * 0.01, rel=0.02)


@pytest.mark.parametrize("spot_shock, vol_shock", [(0.02, 0.01), (-0.03, -0.02)])
def test_a_spot_and_vol_scenario_moves_the_pv_as_the_closed_form_does(adapter, spot_shock, vol_shock):
    scenario = zep.Scenario("day", [
        zep.Shock.Spot("SPX", zep.FXForwardFactor_SPOT_SHOCK, spot_shock, zep.ShockType_RELATIVE),
        zep.Shock.Vol("SPX", zep.VolSurfaceFactor_ATM_VOL_LEVEL, vol_shock, zep.ShockType_ABSOLUTE)])
    base = zep.Scenario("base", [])
    moved = black_scholes(SPOT * (1 + spot_shock), VOL + vol_shock).Price() - black_scholes().Price()
    # Common random numbers: the P&L is far more precise than either PV.
    assert scenario.PV(adapter) - base.PV(adapter) == pytest.approx(NOTIONAL * moved, rel=0.02)


def test_rate_curves_and_fx_metrics_are_unavailable_with_a_reason(adapter):
    for metric in (zep.Metric_DV01, zep.Metric_FX_DELTA, zep.Metric_PAR_RATE):
        result = adapter.Compute(metric)
        assert not result.available and result.reason


def test_an_empty_product_is_refused():
    with pytest.raises(RuntimeError, match="not initialized"):
        zep.ScriptedProductAdapter(zep.MXScriptStructure())


def heston_call():
    text = ("valuation_date: 2024-01-02\nmarket: {spot: 100.0, rate1: 0.03, rate2: 0.0}\n"
            "model: {type: Heston, parameters: [1.5, 0.04, 0.4, -0.6, 0.04]}\n"
            "simulation: {paths: 4000, seed: 7}\nevents:\n  - date: 2025-01-02\n"
            "    script: C PAYS MAX(SPOT() - 100, 0)\n")
    return zep.ScriptedProductAdapter(zep.MXScriptStructure.FromDefinition(text), "SPX")


def test_a_model_without_one_volatility_takes_absolute_vol_shocks_and_refuses_relative_ones():
    adapter = heston_call()
    up = zep.Scenario("up", [zep.Shock.Vol("SPX", zep.VolSurfaceFactor_ATM_VOL_LEVEL, 0.02, zep.ShockType_ABSOLUTE)])
    down = zep.Scenario("down", [zep.Shock.Vol("SPX", zep.VolSurfaceFactor_ATM_VOL_LEVEL, -0.02, zep.ShockType_ABSOLUTE)])
    base = zep.Scenario("base", []).PV(adapter)
    assert up.PV(adapter) > base > down.PV(adapter)  # a call gains with its volatility
    relative = zep.Scenario("rel", [zep.Shock.Vol("SPX", zep.VolSurfaceFactor_ATM_VOL_LEVEL, 0.1, zep.ShockType_RELATIVE)])
    with pytest.raises(ValueError, match="no single volatility for a relative shock"):
        relative.PV(adapter)
