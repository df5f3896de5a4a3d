import json
import math
import os
import re

import numpy as np
import pytest
import yaml
from scipy import integrate
from scipy.stats import norm

import zep

TODAY = "2024-01-02"
ONE_YEAR = "2025-01-01"  # 365 days later
EXAMPLE = os.path.join(os.path.dirname(__file__), "..", "..", "examples", "autocallable.yaml")


def product(script, model=1, vol=0.2, params=(), dates=(ONE_YEAR,), paths=100000, seed=12345,
            adaptiveShift=False, adaptiveShiftBarrier=0.0, quasiRandom=False, notional=1.0):
    scripts = [script] if isinstance(script, str) else list(script)
    return zep.MXScriptStructure(TODAY, 100.0, vol, 0.03, 0.01, model, list(params), list(dates),
                                 scripts, paths, seed, 365.0, adaptiveShift, adaptiveShiftBarrier, "",
                                 quasiRandom, notional)


def bs_call(s, k, t, r, q, vol):
    d1 = (math.log(s / k) + (r - q + vol * vol / 2) * t) / (vol * math.sqrt(t))
    return s * math.exp(-q * t) * norm.cdf(d1) - k * math.exp(-r * t) * norm.cdf(d1 - vol * math.sqrt(t))


def bachelier_call(s, k, t, r, q, vol):
    mu = r - q
    forward = s * math.exp(mu * t)
    sd = vol * math.sqrt(math.expm1(2 * mu * t) / (2 * mu))
    d = (forward - k) / sd
    return math.exp(-r * t) * ((forward - k) * norm.cdf(d) + sd * norm.pdf(d))


def heston_call(s, k, t, r, q, kappa, theta, xi, rho, v0):
    def phi(u):
        a = kappa - rho * xi * 1j * u
        d = np.sqrt(a * a + xi * xi * (1j * u + u * u))
        g = (a - d) / (a + d)
        e = np.exp(-d * t)
        return np.exp(1j * u * (math.log(s) + (r - q) * t)
                      + kappa * theta / xi ** 2 * ((a - d) * t - 2 * np.log((1 - g * e) / (1 - g)))
                      + v0 / xi ** 2 * (a - d) * (1 - e) / (1 - g * e))

    forward = s * math.exp((r - q) * t)
    p1 = 0.5 + integrate.quad(lambda u: (np.exp(-1j * u * math.log(k)) * phi(u - 1j) / (1j * u * forward)).real,
                              0, 200, limit=400)[0] / math.pi
    p2 = 0.5 + integrate.quad(lambda u: (np.exp(-1j * u * math.log(k)) * phi(u) / (1j * u)).real,
                              0, 200, limit=400)[0] / math.pi
    return s * math.exp(-q * t) * p1 - k * math.exp(-r * t) * p2


@pytest.mark.parametrize("strike", [80.0, 100.0, 125.0])
def test_black_scholes_call_matches_closed_form(strike):
    p = product(f"C PAYS MAX(SPOT() - {strike}, 0)")
    expected = bs_call(100, strike, 1, 0.03, 0.01, 0.2)
    assert abs(p.Price() - expected) < 4 * p.PriceStandardError(), (strike, p.Price(), expected)


@pytest.mark.parametrize("strike", [90.0, 100.0, 110.0])
def test_bachelier_call_matches_normal_model_closed_form(strike):
    p = product(f"C PAYS MAX(SPOT() - {strike}, 0)", model=2, vol=20.0)
    expected = bachelier_call(100, strike, 1, 0.03, 0.01, 20.0)
    assert abs(p.Price() - expected) < 4 * p.PriceStandardError(), (strike, p.Price(), expected)


def test_heston_call_matches_characteristic_function_reference():
    params = (1.5, 0.04, 0.4, -0.6, 0.05)
    p = product("C PAYS MAX(SPOT() - 100, 0)", model=3, params=params, paths=60000)
    expected = heston_call(100, 100, 1, 0.03, 0.01, *params)
    assert abs(p.Price() - expected) < 4 * p.PriceStandardError(), (p.Price(), expected)


def quantlib_heston_price(option_type, strike, kappa, theta, xi, rho, v0):
    import QuantLib as ql
    today = ql.Date(2, 1, 2024)
    ql.Settings.instance().evaluationDate = today
    day_count = ql.Actual365Fixed()
    process = ql.HestonProcess(ql.YieldTermStructureHandle(ql.FlatForward(today, 0.03, day_count)),
                               ql.YieldTermStructureHandle(ql.FlatForward(today, 0.01, day_count)),
                               ql.QuoteHandle(ql.SimpleQuote(100.0)), v0, kappa, theta, xi, rho)
    option = ql.VanillaOption(ql.PlainVanillaPayoff(ql.Option.Call if option_type == 0 else ql.Option.Put, strike),
                              ql.EuropeanExercise(today + 365))
    option.setPricingEngine(ql.AnalyticHestonEngine(ql.HestonModel(process), 1e-10, 100000))
    return option.NPV()


@pytest.mark.parametrize("params", [(0.5, 0.04, 1.2, -0.9, 0.04), (1.0, 0.06, 0.9, 0.6, 0.03)])
@pytest.mark.parametrize("strike", [80.0, 120.0])
def test_heston_far_past_feller_matches_quantlib(params, strike):
    """Volatilities of variance well past Feller's bound, where the variance often touches 0: the
    quadratic-exponential scheme still prices out-of-the-money options within 4 standard errors."""
    option_type, payoff = (1, f"MAX({strike} - SPOT(), 0)") if strike < 100 else (0, f"MAX(SPOT() - {strike}, 0)")
    p = product(f"C PAYS {payoff}", model=3, params=params, paths=100000)
    expected = quantlib_heston_price(option_type, strike, *params)
    assert abs(p.Price() - expected) < 4 * p.PriceStandardError(), (p.Price(), expected)


def test_calibrated_heston_reprices_its_quotes():
    """Heston calibrated to half-year and one-year quotes of a known model, its parameters read by
    the script: each one-year out-of-the-money option at its quoted volatility within 4 standard
    errors."""
    truth = zep.HestonModel(0.03, 2.0, 0.05, 0.4, -0.6)
    quotes = []
    for t in (0.5, 1.0):
        for strike in (85.0, 95.0, 100.0, 105.0, 115.0):
            option_type = 0 if strike >= 100.0 * math.exp(0.02 * t) else 1
            price = truth.Price(option_type, strike, t, t, 0.03, 0.01, 100.0)
            quotes.append((t, strike, zep.BSVanilla.VolImpliedFromPrice(option_type, strike, t, t, 0.03, 0.01, 100.0,
                                                                        price)))
    model, report = zep.CalibrateHeston(quotes, 100.0, 0.03, 0.01)
    assert report.converged
    for t, strike, vol in quotes[5::2]:
        option_type = 0 if strike >= 100.0 * math.exp(0.02 * t) else 1
        payoff = f"MAX(SPOT() - {strike}, 0)" if option_type == 0 else f"MAX({strike} - SPOT(), 0)"
        p = product(f"C PAYS {payoff}", model=3, params=model.ScriptParameters(), paths=60000)
        market = zep.BSVanilla(option_type, strike, vol, t, t, 0.03, 0.01, 100.0).Price()
        assert abs(p.Price() - market) < 4 * p.PriceStandardError(), (strike, p.Price(), market)


def test_flat_dupire_prices_as_black_scholes():
    p = product("C PAYS MAX(SPOT() - 100, 0)", model=4, params=(0.25, 0, 0, 0, 0.01, 3.0), paths=40000)
    expected = bs_call(100, 100, 1, 0.03, 0.01, 0.25)
    assert abs(p.Price() - expected) < 4 * p.PriceStandardError()


@pytest.mark.parametrize("days,date", [(0, TODAY), (31, "2024-02-02"), (365, ONE_YEAR)])
def test_unit_payment_is_the_discount_factor(days, date):
    p = product("X PAYS 1", dates=[date], paths=100)
    assert p.Price() == pytest.approx(math.exp(-0.03 * days / 365), rel=1e-13)


def test_halton_prices_converge():
    expected = bs_call(100, 100, 1, 0.03, 0.01, 0.2)
    errors = [abs(product("C PAYS MAX(SPOT() - 100, 0)", paths=n, quasiRandom=True).Price() - expected)
              for n in (500, 50000)]
    assert errors[1] < 0.01
    assert errors[1] < errors[0]


def test_price_does_not_depend_on_thread_count(monkeypatch):
    p = product("C PAYS MAX(SPOT() - 100, 0)", model=3, params=(1.5, 0.04, 0.4, -0.6, 0.05), paths=2001)
    prices = []
    for threads in ("1", "2", "5"):
        monkeypatch.setenv("ZEP_NUM_THREADS", threads)
        prices.append(p.Price())
    monkeypatch.setenv("ZEP_RUNMODE", "SINGLETHREAD")
    prices.append(p.Price())
    monkeypatch.setenv("ZEP_RUNMODE", "GPU")
    prices.append(p.Price())
    assert len(set(prices)) == 1, prices


@pytest.mark.parametrize("model", ["BlackScholes", "Heston"])
def test_greeks_of_one_pass_do_not_depend_on_thread_count(monkeypatch, model):
    # Markets that read another's paths do so inside each worker's chunk of paths.
    monkeypatch.setenv("ZEP_SDP_NUMSIMULATION", "3001")
    definition = yaml.safe_load(open(EXAMPLE))
    if model == "Heston":
        definition["model"] = {"type": model, "parameters": [1.5, 0.04, 0.4, -0.6, 0.04]}
    text = json.dumps(definition, default=str)
    greeks = []
    for threads in ("1", "2", "3"):
        monkeypatch.setenv("ZEP_NUM_THREADS", threads)
        greeks.append(zep.MXScriptStructure.FromDefinition(text).AllGreeks())
    assert greeks[0] == greeks[1] == greeks[2]


def test_daily_steps_setting_keeps_european_price(monkeypatch):
    monkeypatch.setenv("ZEP_BS_DAILY_STEPS", "1")
    p = product("C PAYS MAX(SPOT() - 100, 0)", paths=20000)
    assert "numPath: 365" in p.Description()
    assert abs(p.Price() - bs_call(100, 100, 1, 0.03, 0.01, 0.2)) < 4 * p.PriceStandardError()


def test_gpu_pricing_reports_missing_build():
    with pytest.raises(RuntimeError, match="CudaMonteCarloPricer: GPU scripting not available in this build. "
                                           "Use CUDA-enabled build for GPU pricing."):
        product("X PAYS 1", paths=10).GpuPrice()


def test_result_by_variable_gives_each_variable_mean():
    p = product("IF SPOT() > 100 THEN UP = 1 ENDIF\nC PAYS MAX(SPOT() - 100, 0)")
    result = p.ResultByVariable()
    assert set(result) == {"UP", "C"}
    d2 = (math.log(1) + (0.02 - 0.02)) / 0.2
    assert abs(result["UP"] - norm.cdf(d2)) < 4 * math.sqrt(0.25 / 100000)
    assert result["C"] == p.Price()


def test_greeks_match_black_scholes_and_repeat_exactly():
    p = product("C PAYS MAX(SPOT() - 100, 0)", paths=50000)
    greeks = p.AllGreeks()
    assert greeks == p.AllGreeks()
    d1 = (0.03 - 0.01 + 0.02) / 0.2
    assert greeks["Delta"] == pytest.approx(-math.exp(-0.01) * norm.cdf(d1), abs=0.01)
    assert greeks["ForwardDelta"] == pytest.approx(greeks["Delta"] * math.exp(-0.02))
    assert greeks["Gamma"] == pytest.approx(math.exp(-0.01) * norm.pdf(d1) / 20, abs=0.003)
    vega = (bs_call(100, 100, 1, 0.03, 0.01, 0.21) - bs_call(100, 100, 1, 0.03, 0.01, 0.19)) / 2
    assert greeks["Vega"] == pytest.approx(vega, abs=0.02)
    rho = (bs_call(100, 100, 1, 0.0301, 0.01, 0.2) - bs_call(100, 100, 1, 0.0299, 0.01, 0.2)) / 2
    assert greeks["Rho"] == pytest.approx(rho, abs=0.0005)
    assert greeks["Theta"] < 0


def test_delta_is_zero_at_maturity():
    p = zep.MXScriptStructure(ONE_YEAR, 100.0, 0.2, 0.03, 0.01, 1, [], [ONE_YEAR], ["X PAYS SPOT()"], 100)
    assert p.Delta() == 0.0


def test_rates_forward_and_annualized_price():
    p = product("X PAYS 1", paths=10, notional=1000.0)
    assert (p.GetRate1(), p.GetRate2()) == (0.03, 0.01)
    assert p.GetForward() == pytest.approx(100 * math.exp(0.02))
    assert p.AnnualizedPrice() == pytest.approx(p.Price())
    assert p.PV() == pytest.approx(1000 * p.Price())
    assert p.MarketValue() == p.PV()


def test_distance_to_barrier_in_standard_deviations():
    p = product("X PAYS 1", paths=10, adaptiveShift=True, adaptiveShiftBarrier=70.0)
    assert p.DistanceToBarrierSigma() == pytest.approx(math.log(100 / 70) / 0.2)
    assert p.DistanceToBarrierSigma(110.0) == pytest.approx(math.log(1.1) / 0.2)


@pytest.mark.parametrize("kwargs,message", [
    (dict(vol=0.0), "Valid Volatility and RiskfreeRate required for BlackSchole/Bachelier!"),
    (dict(model=3, params=(1, 0.04, 0.3, 0.5)), "Size of Heston parameters should be 6!"),
    (dict(model=4, params=(0.2, 0, 0, 0, 0.1)), "Size of Dupire parameters should be 5!"),
    (dict(model=3, params=(1, 0.04, 0.3, 1.0000001, 0.04)),
     "One or more of the Heston Parameters are incorrectly defined."),
    (dict(model=3, params=(-1, 0.04, 0.3, 0.5, 0.04)),
     "One or more of the Heston Parameters are incorrectly defined."),
    (dict(model=7), "Unknown model type!"),
    (dict(dates=["2023-12-29"]), "Event date 29/12/2023 is before the valuation date 02/01/2024"),
    (dict(dates=[]), "XScriptStructure needs"),
    (dict(script="X PAYS (1"), "Opening ( has not matching closing )"),
])
def test_construction_failures_raise_the_library_message(kwargs, message):
    script = kwargs.pop("script", "X PAYS 1")
    dates = kwargs.get("dates", [ONE_YEAR])
    with pytest.raises(RuntimeError) as caught:
        product([script] * max(len(dates), 1) if dates else [script], paths=10, **kwargs)
    assert str(caught.value).startswith("MXScriptStructure::MXScriptStructure failed: ")
    assert message in str(caught.value)


def test_heston_correlation_of_one_is_accepted():
    product("X PAYS 1", model=3, params=(1, 0.04, 0.3, 1.0, 0.04), paths=10)


def test_default_constructed_product_is_not_initialized():
    empty = zep.MXScriptStructure()
    for name in ("Price", "Delta", "AllGreeks", "GetRate1"):
        with pytest.raises(RuntimeError, match=f"MXScriptStructure::{name} failed: not initialized! "
                                               rf"\(zep::MXScriptStructure::{name}:"):
            getattr(empty, name)()


def test_repricing_field_names_and_time_limits():
    p = product("C PAYS MAX(SPOT() - 100, 0)", paths=2000)
    with pytest.raises(RuntimeError, match="MXScriptStructure::Reprice failed: not supported fieldName: strike"):
        p.Reprice("strike", 1.0)
    with pytest.raises(RuntimeError, match=r"Invalid date: today \+ delta_days < 1 in spot_time calculation"):
        p.Reprice("spot_time", -100000)
    with pytest.raises(RuntimeError, match=r"Invalid date: today \+ delta_days < 1 in time calculation"):
        p.Reprice("time", -100000)
    assert p.Reprice("spot_Volatility", 0.01) == p.Reprice("spot_volatility", 0.01)
    assert p.Reprice("spot", 1.0) > p.Reprice("spot", 0.0) > p.Reprice("spot", -1.0)
    assert p.Reprice("discount", 0.01) < p.Reprice("discount", 0.0)


def test_missing_price_variable_raises_not_find_result():
    p = product("X = SPOT()", paths=10)
    with pytest.raises(RuntimeError, match="not find result!"):
        p.Price()
    with pytest.raises(RuntimeError, match="greeks not find result when pricing!"):
        p.Reprice("spot", 1.0)


DEFINITION = """
valuation_date: 2024-01-02
market: {spot: 100, volatility: 0.2, rate1: 0.03, rate2: 0.01}
model: {type: BlackScholes}
simulation: {paths: 20000, seed: 3}
fields: {Strike: 100}
events:
  - date: 2025-01-01
    script: C PAYS MAX(SPOT() - STRIKE, 0)
"""


def test_json_and_yaml_definitions_price_alike():
    import json
    import yaml
    from_yaml = zep.MXScriptStructure.FromDefinition(DEFINITION)
    from_json = zep.MXScriptStructure.FromDefinition(json.dumps(yaml.safe_load(DEFINITION), default=str))
    assert from_yaml.Price() == from_json.Price()
    expected = bs_call(100, 100, 1, 0.03, 0.01, 0.2)
    assert abs(from_yaml.Price() - expected) < 4 * from_yaml.PriceStandardError()


@pytest.mark.parametrize("old,new,field", [
    ("spot: 100", "spot: abc", "market.spot"),
    ("rate1: 0.03, ", "", "market.rate1"),
    ("type: BlackScholes", "type: Merton", "model.type"),
    ("valuation_date: 2024-01-02", "valuation_date: 2024-02-30", "valuation_date"),
    ("paths: 20000", "paths: many", "simulation.paths"),
    ("Strike: 100", "Strike: high", "fields.Strike"),
    ("    script: C PAYS", "    scrip: C PAYS", "events[0].script"),
])
def test_malformed_definition_names_the_field(old, new, field):
    with pytest.raises(RuntimeError, match=re.escape(f"MXScriptStructure::FromDefinition failed: Product definition: "
                                                     f"field '{field}'")):
        zep.MXScriptStructure.FromDefinition(DEFINITION.replace(old, new))


def test_definition_field_names_are_checked():
    with pytest.raises(RuntimeError, match="Invalid product field name 'Spot'"):
        zep.MXScriptStructure.FromDefinition(DEFINITION.replace("Strike: 100", "Spot: 100"))


def test_example_autocallable_prices_sensibly(monkeypatch):
    monkeypatch.setenv("ZEP_SDP_NUMSIMULATION", "4000")
    note = zep.MXScriptStructure.FromFile(EXAMPLE)
    assert "numPath: " in note.Description()
    price = note.Price()
    assert 0.9 < price < 1.05
    greeks = note.BasicGreeks()
    assert greeks == note.BasicGreeks()
    assert greeks["Delta"] < 0  # the note gains with the spot; Delta carries the minus sign
    assert 0 < note.ResultByVariable()["KI"] < 0.3


def test_greeks_of_one_pass_equal_separate_repricings(monkeypatch):
    # AllGreeks simulates every moved market in one pass over the paths; each repricing below
    # runs alone on a note of its own, with the same seed. Spot and rate moves of Black-Scholes
    # reuse the unmoved paths moved by the forward, so they agree to rounding, not bit for bit.
    monkeypatch.setenv("ZEP_SDP_NUMSIMULATION", "2000")
    greeks = zep.MXScriptStructure.FromFile(EXAMPLE).AllGreeks()

    def alone(field, shift):
        return zep.MXScriptStructure.FromFile(EXAMPLE).Reprice(field, shift)

    h, g, point, bp = 0.01, 1.0, 0.01, 1e-4  # Delta's shift here is spot * 1e-4
    base = alone("spot", 0.0)
    separate = {
        "Delta": -(alone("spot", h) - alone("spot", -h)) / (2 * h),
        "Gamma": (alone("spot", g) - 2 * base + alone("spot", -g)) / (g * g),
        "Vega": (alone("spot_volatility", point) - alone("spot_volatility", -point)) / 2,
        "Volga": alone("spot_volatility", point) - 2 * base + alone("spot_volatility", -point),
        "Rho": (alone("rate1", bp) - alone("rate1", -bp)) / 2,
        "Theta": alone("time", 1) - base,
    }
    for name, value in separate.items():
        assert greeks[name] == pytest.approx(value, rel=1e-10, abs=0), name
    assert (greeks["Vega"], greeks["Volga"], greeks["Theta"]) == (
        separate["Vega"], separate["Volga"], separate["Theta"])
