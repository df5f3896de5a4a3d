"""Adapters of barrier and digital options, whose Greeks come from revaluation: DELTA, GAMMA and
VEGA against the options rebuilt at a moved spot and volatility, the digital's DELTA against its
closed form, and scenario PVs against the option rebuilt on the shocked market."""
import pytest

import zep

REF, EXPIRY, DELIVERY = "2024-01-15", "2024-07-15", "2024-07-17"
SPOT, RD, RF, VOL = 1.08, 0.035, 0.02, 0.09
DOWN_OUT = 3


def barrier(spot=SPOT, vol=VOL):
    return zep.MVanillaBarriers(-1, 0, 2e6, 1.10, DOWN_OUT, 1.02, 0.0, spot, REF, EXPIRY, DELIVERY, DELIVERY,
                                DELIVERY, RD, RF, vol, -0.004, 0.002)


def digital(spot=SPOT, vol=VOL):
    return zep.MDigitalOption(1, 0, 1e6, 1.09, spot, REF, EXPIRY, DELIVERY, RD, RF, vol)


OPTIONS = {
    "barrier BS": (barrier, lambda o: zep.BarrierOptionAdapter(o, "EURUSD"), 0, zep.ProductType_FX_BARRIER_OPTION),
    "barrier VV": (barrier, lambda o: zep.BarrierOptionAdapter(o, "EURUSD", 1), 1, zep.ProductType_FX_BARRIER_OPTION),
    "digital": (digital, lambda o: zep.DigitalOptionAdapter(o, "EURUSD"), 0, zep.ProductType_FX_DIGITAL_OPTION),
}


def value(adapter, metric):
    return adapter.Compute(metric).Value()


@pytest.mark.parametrize("name", OPTIONS)
def test_pv_delta_gamma_and_vega_match_the_option_rebuilt_on_moved_markets(name):
    build, adapt, method, product = OPTIONS[name]
    adapter = adapt(build())
    assert adapter.Product() == product
    pv = lambda spot=SPOT, vol=VOL: build(spot, vol).PV(method)  # noqa: E731
    assert value(adapter, zep.Metric_PV) == pytest.approx(pv(), rel=1e-13)
    h = 1e-4
    slope = (pv(SPOT + h) - pv(SPOT - h)) / (2 * h)
    curvature = (pv(SPOT + h) - 2 * pv() + pv(SPOT - h)) / h**2
    assert value(adapter, zep.Metric_DELTA) == pytest.approx(slope * 0.01 * SPOT, rel=1e-5)
    assert value(adapter, zep.Metric_GAMMA) == pytest.approx(curvature * (0.01 * SPOT) ** 2, rel=1e-3)
    vega = (pv(vol=VOL + h) - pv(vol=VOL - h)) / (2 * h)
    assert value(adapter, zep.Metric_VEGA) == pytest.approx(vega * 0.01, rel=1e-6)


def test_digital_delta_and_vega_agree_with_the_closed_form():
    adapter = zep.DigitalOptionAdapter(digital())
    assert value(adapter, zep.Metric_DELTA) == pytest.approx(digital().Delta() * 0.01 * SPOT, rel=1e-5)
    assert value(adapter, zep.Metric_VEGA) == pytest.approx(digital().Vega() * 0.01, rel=1e-5)


@pytest.mark.parametrize("name", OPTIONS)
@pytest.mark.parametrize("spot_shock, vol_shock", [(-0.02, 0.01), (0.015, -0.005)])
def test_a_spot_and_vol_scenario_revalues_like_the_option_on_the_moved_market(name, spot_shock, vol_shock):
    build, adapt, method, _ = OPTIONS[name]
    scenario = zep.Scenario("day", [
        zep.Shock.Spot("EURUSD", zep.FXForwardFactor_SPOT_SHOCK, spot_shock, zep.ShockType_RELATIVE),
        zep.Shock.Vol("EURUSD", zep.VolSurfaceFactor_ATM_VOL_LEVEL, vol_shock, zep.ShockType_ABSOLUTE)])
    expected = build(SPOT * (1 + spot_shock), VOL + vol_shock).PV(method)
    assert scenario.PV(adapt(build())) == pytest.approx(expected, rel=1e-12)


@pytest.mark.parametrize("metric", [zep.Metric_DV01, zep.Metric_RHO, zep.Metric_FX_DELTA, zep.Metric_PAR_RATE])
def test_metrics_without_a_computation_are_unavailable_with_a_reason(metric):
    result = zep.BarrierOptionAdapter(barrier()).Compute(metric)
    assert not result.available and result.reason


def test_bad_input_raises_the_library_message():
    with pytest.raises(RuntimeError, match="PricingMethod not supported"):
        zep.BarrierOptionAdapter(barrier(), "EURUSD", 7)
    with pytest.raises(RuntimeError, match="not initialized"):
        zep.DigitalOptionAdapter(zep.MDigitalOption())
    with pytest.raises(TypeError):
        zep.BarrierOptionAdapter(None)


@pytest.mark.parametrize("factor, index", [(zep.VolSurfaceFactor_RISK_REVERSAL_25D, 0),
                                           (zep.VolSurfaceFactor_BUTTERFLY_25D, 1)])
def test_smile_quote_shocks_move_a_vanna_volga_barrier_as_the_moved_quotes_do(factor, index):
    quotes = [-0.004, 0.002]
    moved = list(quotes)
    moved[index] += 0.003
    rebuilt = zep.MVanillaBarriers(-1, 0, 2e6, 1.10, DOWN_OUT, 1.02, 0.0, SPOT, REF, EXPIRY, DELIVERY, DELIVERY,
                                   DELIVERY, RD, RF, VOL, *moved)
    scenario = zep.Scenario("smile", [zep.Shock.Vol("EURUSD", factor, 0.003, zep.ShockType_ABSOLUTE)])
    assert scenario.PV(zep.BarrierOptionAdapter(barrier(), "EURUSD", 1)) == pytest.approx(rebuilt.PV(1), rel=1e-12)
    # Black-Scholes reads no smile quotes.
    assert scenario.PV(zep.BarrierOptionAdapter(barrier(), "EURUSD", 0)) == pytest.approx(barrier().PV(0), rel=1e-14)
    with pytest.raises(ValueError, match="it is absolute"):
        zep.Shock.Vol("EURUSD", factor, 0.1, zep.ShockType_RELATIVE)
