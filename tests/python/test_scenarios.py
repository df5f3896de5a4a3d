"""Scenarios and historical VaR: scenario P&Ls against DV01 and against instruments rebuilt on the
moved market, VaR and expected shortfall of a linear trade against the quantile of its P&L worked
out by hand, component VaRs against the VaR they split, and bad input against its messages."""
import math
import pickle

import numpy
import pytest

import zep

REFERENCE = "2024-01-15"
PILLARS = ["2024-01-15", "2025-01-15", "2027-01-15", "2030-01-15", "2034-01-15"]
ZEROS = [0.031, 0.0318, 0.0295, 0.0301, 0.0312]


def curve(label, level=0.0):
    return zep.YieldCurve.FromZeroRates(REFERENCE, PILLARS, [z + level for z in ZEROS], zep.Continuous,
                                        zep.DayCounter(zep.Act365Fixed), label=label)


def bond():
    return zep.BondAdapter(zep.MBond(0.04, "2023-06-15", "2033-06-15", discountCurve=curve("EUR")), 1e6)


def swap():
    return zep.SwapAdapter(zep.MVanillaSwap(-1, 1e6, 0.03, "2024-01-17", "2034-01-17", curve("EUR")))


def forward_at(spot):
    return zep.MFXForwardOutright(1, 1e6, 1.10, "2025-01-17", spot, "2024-01-17", curve("USD"), curve("EUR", -0.01))


def option_at(spot, vol):
    return zep.MVanillaOption(1, 0, 1e6, 1.1, spot, REFERENCE, "2024-07-15", "2024-07-17", "2024-07-17",
                              0.035, 0.02, vol)


def portfolio_of(*trades):
    portfolio = zep.Portfolio()
    for i, (adapter, quantity, desk) in enumerate(trades):
        portfolio.Add(f"T{i}", adapter, quantity, {"desk": desk})
    return portfolio


def level(bp, curves=("EUR",)):
    return zep.Scenario("level", [zep.Shock.Curve(name, zep.YieldCurveFactor_LEVEL, bp) for name in curves])


def tail_by_hand(pnl, confidence):
    """The loss at rank ceil((1 - c) N) of the P&Ls sorted from the worst, and the mean loss up to it."""
    rank = math.ceil(round((1 - confidence) * len(pnl), 9))
    worst = numpy.sort(pnl)[:rank]
    return -worst[-1], -worst.mean()


@pytest.mark.parametrize("adapter, curves", [
    (bond, ["EUR"]),
    (swap, ["EUR"]),
    (lambda: zep.FXForwardAdapter(forward_at(1.08)), ["EUR", "USD"]),  # DV01 moves both currencies' curves
], ids=["bond", "swap", "fx forward"])
def test_one_basis_point_parallel_scenarios_reproduce_dv01(adapter, curves):
    trade = adapter()
    portfolio = portfolio_of((trade, 1.0, "rates"))
    dv01 = trade.Compute(zep.Metric_DV01).Value()
    up, down = level(1.0, curves).PnL(portfolio), level(-1.0, curves).PnL(portfolio)
    assert (up - down) / 2 == pytest.approx(dv01, rel=1e-9, abs=1e-9)
    assert up == pytest.approx(dv01, rel=2e-3)  # up to the convexity term


@pytest.mark.parametrize("spot_shock, vol_shock", [(0.05, 0.0), (-0.03, 0.02), (0.0, -0.04)])
def test_an_option_under_a_spot_and_vol_scenario_is_worth_the_option_on_the_moved_market(spot_shock, vol_shock):
    adapter = zep.VanillaOptionAdapter(option_at(1.08, 0.09), "EURUSD")
    scenario = zep.Scenario("fx", [
        zep.Shock.Spot("EURUSD", zep.FXForwardFactor_SPOT_SHOCK, spot_shock, zep.ShockType_RELATIVE),
        zep.Shock.Vol("EURUSD", zep.VolSurfaceFactor_ATM_VOL_LEVEL, vol_shock, zep.ShockType_ABSOLUTE)])
    expected = option_at(1.08 * (1 + spot_shock), 0.09 + vol_shock).PV()
    assert scenario.PV(adapter) == pytest.approx(expected, rel=1e-12)


@pytest.mark.parametrize("mode, moved_spot", [
    (zep.ScenarioGroupApplyMode_PARALLEL, 1.08 * (1 + 0.04 + 0.03) + 0.01),
    (zep.ScenarioGroupApplyMode_SEQUENTIAL, (1.08 * 1.04 + 0.01) * 1.03),
], ids=["parallel", "sequential"])
def test_parallel_shocks_add_their_moves_and_sequential_ones_apply_in_turn(mode, moved_spot):
    shocks = [zep.Shock.Spot("EURUSD", zep.FXForwardFactor_SPOT_SHOCK, 0.04, zep.ShockType_RELATIVE),
              zep.Shock.Spot("EURUSD", zep.FXForwardFactor_SPOT_SHOCK, 0.01, zep.ShockType_ABSOLUTE),
              zep.Shock.Spot("EURUSD", zep.FXForwardFactor_SPOT_SHOCK, 0.03, zep.ShockType_RELATIVE)]
    scenario = zep.Scenario("fx", shocks, type=zep.Scenario_ScenarioType_CUSTOM, mode=mode)
    adapter = zep.VanillaOptionAdapter(option_at(1.08, 0.09), "EURUSD")
    assert scenario.PV(adapter) == pytest.approx(option_at(moved_spot, 0.09).PV(), rel=1e-12)


def test_var_of_a_single_linear_trade_is_the_quantile_of_its_hand_computed_pnl():
    rng = numpy.random.default_rng(7)
    spots = 1.08 * numpy.exp(numpy.cumsum(rng.normal(0.0, 0.006, 251)))
    portfolio = portfolio_of((zep.FXForwardAdapter(forward_at(1.08), "EURUSD"), 2.0, "fx"))
    factors = [zep.Shock.Spot("EURUSD", zep.FXForwardFactor_SPOT_SHOCK, 0.0, zep.ShockType_RELATIVE)]
    report = zep.HistoricalVaR(portfolio, factors, spots[:, None], [0.95, 0.99])

    # The forward is linear in spot: its P&L is the day's return times its PV change per unit return.
    per_unit_return = (forward_at(1.08 * 1.01).NPV() - forward_at(1.08).NPV()) / 0.01
    pnl = 2.0 * (spots[1:] / spots[:-1] - 1) * per_unit_return
    numpy.testing.assert_allclose(report["pnl"], pnl, rtol=1e-9, atol=1e-6)
    for i, confidence in enumerate([0.95, 0.99]):
        var, es = tail_by_hand(pnl, confidence)
        assert report["summary"]["var"][i] == pytest.approx(var, rel=1e-9)
        assert report["summary"]["es"][i] == pytest.approx(es, rel=1e-9)
    assert list(report["scenario"][:2]) == ["day 1", "day 2"]


def test_component_vars_add_up_to_the_portfolio_var():
    rng = numpy.random.default_rng(11)
    days = 120
    history = numpy.column_stack([
        0.0318 + numpy.cumsum(rng.normal(0, 4e-4, days)),  # EUR 1Y pillar
        0.0312 + numpy.cumsum(rng.normal(0, 5e-4, days)),  # EUR 10Y pillar
        1.08 * numpy.exp(numpy.cumsum(rng.normal(0, 0.006, days))),
        0.09 + numpy.cumsum(rng.normal(0, 0.002, days)),
    ])
    factors = [zep.Shock.Curve("EUR", zep.YieldCurveFactor_KEY_RATE, 0.0, 1),
               zep.Shock.Curve("EUR", zep.YieldCurveFactor_KEY_RATE, 0.0, 4),
               zep.Shock.Spot("EURUSD", zep.FXForwardFactor_SPOT_SHOCK, 0.0, zep.ShockType_RELATIVE),
               zep.Shock.Vol("EURUSD", zep.VolSurfaceFactor_ATM_VOL_LEVEL, 0.0, zep.ShockType_ABSOLUTE)]
    portfolio = portfolio_of((bond(), 1.0, "rates"), (swap(), -2.0, "rates"),
                             (zep.FXForwardAdapter(forward_at(1.08), "EURUSD"), 1.0, "fx"),
                             (zep.VanillaOptionAdapter(option_at(1.08, 0.09), "EURUSD"), -3.0, "options"))
    report = zep.HistoricalVaR(portfolio, factors, history, [0.9, 0.95, 0.99], tag="desk")
    assert set(report["components"]) == {"rates", "fx", "options"}
    total = sum(report["components"].values())
    numpy.testing.assert_allclose(total, report["summary"]["var"], rtol=1e-9)
    var, _ = tail_by_hand(report["pnl"], 0.95)
    assert report["summary"]["var"][1] == var
    assert report["pnl"][report["summary"]["var_scenario"][1]] == -var


@pytest.mark.parametrize("confidences", [[0.0], [1.0], [0.95, 1.5], [float("nan")]])
def test_a_confidence_outside_the_open_unit_interval_is_refused(confidences):
    factors = [zep.Shock.Curve("EUR", zep.YieldCurveFactor_LEVEL, 0.0)]
    with pytest.raises(ValueError, match=r"The confidence level .* is outside \(0, 1\)\."):
        zep.HistoricalVaR(portfolio_of((bond(), 1.0, "rates")), factors, [[0.03], [0.031]], confidences)


@pytest.mark.parametrize("history, message", [
    ([[0.03], [None], [0.031]], "The history of EUR LEVEL has a gap or a non-number on day 1."),
    ([[0.03], [float("inf")]], "The history of EUR LEVEL has a gap or a non-number on day 1."),
    ([[0.03]], "The history needs at least two days to make one scenario; it has 1."),
])
def test_a_history_with_gaps_or_non_numbers_is_refused_naming_the_factor_and_day(history, message):
    factors = [zep.Shock.Curve("EUR", zep.YieldCurveFactor_LEVEL, 0.0)]
    with pytest.raises(ValueError, match=message.replace(".", r"\.")):
        zep.HistoricalVaR(portfolio_of((bond(), 1.0, "rates")), factors, history)


def test_a_shock_naming_a_curve_no_trade_reads_is_refused():
    portfolio = portfolio_of((bond(), 1.0, "rates"))
    scenario = zep.Scenario("jpy", [zep.Shock.Curve("JPY", zep.YieldCurveFactor_LEVEL, 10.0)])
    with pytest.raises(ValueError, match="Scenario 'jpy' shocks JPY LEVEL, but no trade of the portfolio reads 'JPY'"):
        scenario.PnL(portfolio)
    with pytest.raises(ValueError, match="no trade of the portfolio reads 'GBP'"):
        zep.HistoricalVaR(portfolio, [zep.Shock.Curve("GBP", zep.YieldCurveFactor_LEVEL, 0.0)], [[0.03], [0.031]])


def test_unsupported_factors_and_missing_objects_are_refused():
    with pytest.raises(ValueError, match="The factor FORWARD_POINTS_LEVEL is not supported as a shock"):
        zep.Shock.Spot("EURUSD", zep.FXForwardFactor_FORWARD_POINTS_LEVEL, 1.0, zep.ShockType_ABSOLUTE)
    with pytest.raises(ValueError, match="The factor RISK_REVERSAL_10D is not supported as a shock"):
        zep.Shock.Vol("EURUSD", zep.VolSurfaceFactor_RISK_REVERSAL_10D, 0.01, zep.ShockType_ABSOLUTE)
    with pytest.raises(TypeError):
        level(1.0).PnL(None)
    with pytest.raises(TypeError):
        zep.HistoricalVaR(None, [zep.Shock.Curve("EUR", zep.YieldCurveFactor_LEVEL, 0.0)], [[0.03], [0.031]])
    with pytest.raises(ValueError, match="one row per day, one column per factor"):
        zep.HistoricalVaR(portfolio_of((bond(), 1.0, "rates")), [], [0.03, 0.031])


@pytest.mark.parametrize("mode", [zep.ScenarioGroupApplyMode_PARALLEL, zep.ScenarioGroupApplyMode_SEQUENTIAL])
def test_scenarios_pickle_to_the_same_moves(mode):
    shocks = [zep.Shock.Curve("EUR", zep.YieldCurveFactor_KEY_RATE, 2.5, 3),
              zep.Shock.Spot("EURUSD", zep.FXForwardFactor_SPOT_SHOCK, 0.04, zep.ShockType_RELATIVE),
              zep.Shock.Vol("EURUSD", zep.VolSurfaceFactor_ATM_VOL_LEVEL, 0.01, zep.ShockType_ABSOLUTE)]
    scenario = zep.Scenario("mixed", shocks, type=zep.Scenario_ScenarioType_HISTORICAL, mode=mode)
    copy = pickle.loads(pickle.dumps(scenario))
    assert (copy.Name(), copy.Type(), copy.Mode()) == ("mixed", zep.Scenario_ScenarioType_HISTORICAL, mode)
    assert [repr(shock) for shock in copy.Shocks()] == [repr(shock) for shock in shocks]
    adapter = zep.VanillaOptionAdapter(option_at(1.08, 0.09), "EURUSD")
    assert copy.PV(adapter) == scenario.PV(adapter)


def test_shocks_and_scenarios_say_what_they_are():
    shock = zep.Shock.Curve("EUR", zep.YieldCurveFactor_KEY_RATE, 2.5, 3)
    assert repr(shock) == "<Shock EUR KEY_RATE pillar 3: 2.5 bp absolute>"
    assert repr(level(1.0)) == "<Scenario level: 1 shocks>"
    assert zep.Scenario("s", []).Type() == zep.Scenario_ScenarioType_DETERMINISTIC
    assert sorted(zep.FXForwardAdapter(forward_at(1.08), "EURUSD").MarketNames()) == ["EUR", "EURUSD", "USD"]
