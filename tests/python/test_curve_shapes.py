"""Slope, twist and curvature shocks of a curve: a scenario's PV of a trade against the trade on a
curve rebuilt with the shaped pillar moves computed by hand, and the explain's rates term against
the key-rate DV01s times those moves."""
import pytest

import zep

REFERENCE = "2024-01-15"
PILLARS = ["2024-01-15", "2025-01-15", "2027-01-15", "2030-01-15", "2034-01-15", "2044-01-15"]
ZEROS = [0.031, 0.0318, 0.0295, 0.0301, 0.0312, 0.0325]
BP = 1e-4


def days(date):
    return zep.Date(date).SerialNumber() - zep.Date(PILLARS[0]).SerialNumber()


T = [days(p) for p in PILLARS]


def slope(bp, pivot):
    return [bp * t / T[-1] for t in T]


def twist(bp, pivot):
    return [bp * (t - T[pivot]) / (T[-1] - T[pivot]) for t in T]


def curvature(bp, belly):
    return [bp * (t / T[belly] if t <= T[belly] else (T[-1] - t) / (T[-1] - T[belly])) for t in T]


def swap(moves_bp=None):
    rates = [z + (m * BP if moves_bp else 0.0) for z, m in zip(ZEROS, moves_bp or [0.0] * len(ZEROS))]
    curve = zep.YieldCurve.FromZeroRates(REFERENCE, PILLARS, rates, zep.Continuous, zep.DayCounter(zep.Act365Fixed),
                                         label="EUR")
    return zep.SwapAdapter(zep.MVanillaSwap(-1, 1e7, 0.03, "2024-01-17", "2044-01-17", curve))


SHAPES = [(zep.YieldCurveFactor_SLOPE, slope, 0), (zep.YieldCurveFactor_TWIST_SHORT_LONG, twist, 2),
          (zep.YieldCurveFactor_CURVATURE, curvature, 3)]


@pytest.mark.parametrize("factor, shape, pillar", SHAPES)
@pytest.mark.parametrize("bp", [10.0, -25.0])
def test_a_shaped_shock_revalues_like_the_curve_rebuilt_with_its_pillar_moves(factor, shape, pillar, bp):
    scenario = zep.Scenario("shape", [zep.Shock.Curve("EUR", factor, bp, pillar)])
    assert scenario.PV(swap()) == pytest.approx(swap(shape(bp, pillar)).Compute(zep.Metric_PV).Value(), rel=1e-12)


@pytest.mark.parametrize("factor, shape, pillar", SHAPES)
def test_the_explains_rates_term_is_the_key_rate_dv01s_times_the_pillar_moves(factor, shape, pillar):
    portfolio = zep.Portfolio()
    portfolio.Add("S", swap())
    explain = zep.ExplainPnL(portfolio, [zep.Scenario("shape", [zep.Shock.Curve("EUR", factor, 5.0, pillar)])])
    key_rates = [r.Value() for r in swap().Profile(zep.Metric_KEY_RATE_DV01)]
    expected = sum(k * m for k, m in zip(key_rates, shape(5.0, pillar)))
    assert explain["rates"][0] == pytest.approx(expected, rel=1e-12)


@pytest.mark.parametrize("factor, pillar, error, message", [
    (zep.YieldCurveFactor_CURVATURE, 0, ValueError, "no pillar 0 inside its first and last"),
    (zep.YieldCurveFactor_TWIST_SHORT_LONG, 5, ValueError, "no pillar 5 inside its first and last"),
    (zep.YieldCurveFactor_CURVATURE, 9, IndexError, "no pillar 9"),
])
def test_a_shape_about_a_pillar_the_curve_cannot_turn_on_is_refused(factor, pillar, error, message):
    with pytest.raises(error, match=message):
        zep.Scenario("bad", [zep.Shock.Curve("EUR", factor, 5.0, pillar)]).PV(swap())


def test_shaped_shocks_say_what_they_are_and_pickle():
    import pickle
    shock = zep.Shock.Curve("EUR", zep.YieldCurveFactor_CURVATURE, 5.0, 3)
    assert shock.Describe() == "EUR CURVATURE pillar 3"
    assert zep.Shock.Curve("EUR", zep.YieldCurveFactor_SLOPE, 5.0, 3).Describe() == "EUR SLOPE"
    copy = pickle.loads(pickle.dumps(shock))
    assert (copy.factor, copy.size, copy.pillar) == (shock.factor, shock.size, shock.pillar)
