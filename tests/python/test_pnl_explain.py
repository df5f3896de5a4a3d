"""P&L explain against full revaluation: on a vanilla option the delta and gamma terms are the
Black-Scholes Taylor terms and the remainder is of third order in the spot move (of second in
the volatility move for vega alone); on a bond under a parallel move the rates term is DV01 times
the move; a portfolio's explain is the sum of its trades'."""
import numpy
import pytest

import zep

REFERENCE = "2024-01-15"
PILLARS = ["2024-01-15", "2025-01-15", "2027-01-15", "2030-01-15", "2034-01-15"]
ZEROS = [0.031, 0.0318, 0.0295, 0.0301, 0.0312]
SPOT, VOL, NOTIONAL = 1.08, 0.09, 1e6


def option():
    return zep.VanillaOptionAdapter(zep.MVanillaOption(1, 0, NOTIONAL, 1.1, SPOT, REFERENCE, "2024-07-15",
                                                       "2024-07-17", "2024-07-17", 0.035, 0.02, VOL), "EURUSD")


def bond():
    curve = zep.YieldCurve.FromZeroRates(REFERENCE, PILLARS, ZEROS, zep.Continuous, zep.DayCounter(zep.Act365Fixed),
                                         label="EUR")
    return zep.BondAdapter(zep.MBond(0.04, "2023-06-15", "2033-06-15", discountCurve=curve), 1e6)


def book(*adapters):
    portfolio = zep.Portfolio()
    for i, adapter in enumerate(adapters):
        portfolio.Add(f"T{i}", adapter)
    return portfolio


def spot_move(relative):
    return zep.Scenario(f"spot {relative}",
                        [zep.Shock.Spot("EURUSD", zep.FXForwardFactor_SPOT_SHOCK, relative, zep.ShockType_RELATIVE)])


def vol_move(points):
    return zep.Scenario(f"vol {points}",
                        [zep.Shock.Vol("EURUSD", zep.VolSurfaceFactor_ATM_VOL_LEVEL, points, zep.ShockType_ABSOLUTE)])


def columns(explain):
    return {name: numpy.asarray(explain[name])
            for name in ("full", "delta", "gamma", "vega", "rates", "credit", "unexplained")}


def test_delta_and_gamma_terms_are_the_black_scholes_taylor_terms():
    t = zep.DayCounter(zep.Act365Fixed).YearFraction(zep.Date(REFERENCE), zep.Date("2024-07-15"))
    td = zep.DayCounter(zep.Act365Fixed).YearFraction(zep.Date(REFERENCE), zep.Date("2024-07-17"))
    bs = zep.BSVanilla(0, 1.1, VOL, t, td, 0.035, 0.02, SPOT)
    move = 0.01
    explain = columns(zep.ExplainPnL(book(option()), [spot_move(move)]))
    dS = SPOT * move
    assert explain["delta"][0] == pytest.approx(NOTIONAL * bs.Delta() * dS, rel=1e-6)
    assert explain["gamma"][0] == pytest.approx(NOTIONAL * 0.5 * bs.Gamma() * dS**2, rel=1e-6)
    assert explain["vega"][0] == 0.0 and explain["rates"][0] == 0.0


@pytest.mark.parametrize("move", [0.002, -0.002])
def test_the_unexplained_remainder_of_a_spot_move_is_of_third_order(move):
    explain = columns(zep.ExplainPnL(book(option()), [spot_move(move), spot_move(move / 2), spot_move(move / 4)]))
    remainder = explain["unexplained"]
    # Halving a third-order remainder divides it by eight, the fourth-order part fading.
    assert remainder[0] / remainder[1] == pytest.approx(8.0, rel=0.1)
    assert remainder[1] / remainder[2] == pytest.approx(8.0, rel=0.05)
    assert abs(remainder[0]) < 1e-4 * abs(explain["full"][0])


def test_the_remainder_of_a_volatility_move_is_of_second_order():
    explain = columns(zep.ExplainPnL(book(option()), [vol_move(0.02), vol_move(0.01)]))
    assert explain["delta"].tolist() == [0.0, 0.0]
    assert explain["unexplained"][0] / explain["unexplained"][1] == pytest.approx(4.0, rel=0.1)
    assert explain["vega"][1] == pytest.approx(option().Compute(zep.Metric_VEGA).Value(), rel=1e-12)


def test_a_parallel_curve_move_is_explained_by_dv01_up_to_convexity():
    adapter = bond()
    scenarios = [zep.Scenario(f"up {bp}bp", [zep.Shock.Curve("EUR", zep.YieldCurveFactor_LEVEL, bp)]) for bp in (5.0, 2.5)]
    explain = columns(zep.ExplainPnL(book(adapter), scenarios))
    dv01 = adapter.Compute(zep.Metric_DV01).Value()
    assert explain["rates"] == pytest.approx([5 * dv01, 2.5 * dv01], rel=1e-5)
    assert explain["full"][0] == pytest.approx(scenarios[0].PnL(book(adapter)), rel=1e-14)
    # What DV01 leaves is the bond's convexity, of second order in the move.
    assert explain["unexplained"][0] / explain["unexplained"][1] == pytest.approx(4.0, rel=0.02)


def test_a_portfolio_is_explained_as_the_sum_of_its_trades():
    spot_and_vol = [zep.Shock.Spot("EURUSD", zep.FXForwardFactor_SPOT_SHOCK, -0.015, zep.ShockType_RELATIVE),
                    zep.Shock.Vol("EURUSD", zep.VolSurfaceFactor_ATM_VOL_LEVEL, 0.004, zep.ShockType_ABSOLUTE)]
    key_rate = [zep.Shock.Curve("EUR", zep.YieldCurveFactor_KEY_RATE, 3.0, 2)]
    together = columns(zep.ExplainPnL(book(option(), bond()), [zep.Scenario("mixed", spot_and_vol + key_rate)]))
    # Each trade reads only its own part of the scenario.
    alone = [columns(zep.ExplainPnL(book(option()), [zep.Scenario("fx", spot_and_vol)])),
             columns(zep.ExplainPnL(book(bond()), [zep.Scenario("rates", key_rate)]))]
    for name, values in together.items():
        assert values[0] == pytest.approx(alone[0][name][0] + alone[1][name][0], rel=1e-12, abs=1e-9), name
    assert together["rates"][0] == pytest.approx(3 * bond().Profile(zep.Metric_KEY_RATE_DV01)[2].Value(), rel=1e-12)


def test_without_pandas_the_columns_are_arrays_with_the_scenario_names(monkeypatch):
    import sys
    monkeypatch.setitem(sys.modules, "pandas", None)
    explain = zep.ExplainPnL(book(option()), [spot_move(0.01)])
    assert list(explain["scenario"]) == ["spot 0.01"] and isinstance(explain["full"], numpy.ndarray)


def test_bad_input_raises():
    with pytest.raises(TypeError, match="sequence of Scenario"):
        zep.ExplainPnL(book(option()), [None])


def test_a_credit_spread_move_is_explained_by_cs01_up_to_second_order():
    rates = [0.03, 0.032, 0.035]
    discount = zep.YieldCurve.FromTenors("2024-03-20", [zep.Period(t) for t in ("1Y", "5Y", "10Y")], rates,
                                         zep.Continuous)
    credit = zep.CreditCurve("2024-03-20", ["1Y", "3Y", "5Y", "7Y"], [0.006, 0.008, 0.011, 0.012], 0.4, discount)
    adapter = zep.CreditDefaultSwapAdapter(zep.MCreditDefaultSwap("BUYER", 1e7, 0.01, "2024-03-20", "2029-06-20",
                                                                  credit, discount), "ACME")
    scenarios = [zep.Scenario(f"{bp}bp", [zep.Shock.Credit("ACME", zep.CreditCurveFactor_CDS_SPREAD_LEVEL, bp)])
                 for bp in (10.0, 5.0)]
    explain = columns(zep.ExplainPnL(book(adapter), scenarios))
    cs01 = adapter.Compute(zep.Metric_CS01).Value()
    assert explain["credit"] == pytest.approx([10 * cs01, 5 * cs01], rel=1e-12)
    # CS01 is a one-sided difference, so the remainder is of second order in the move.
    assert explain["unexplained"][0] / explain["unexplained"][1] == pytest.approx(4.0, rel=0.2)
