"""The yield curve's hooks from Python: a rate model in place of the pillars, or rates implied
from another currency's curve and forward points; None is refused, hooked curves pickle."""
import math
import pickle

import pytest

import zep

REFERENCE = "2024-01-15"


def pillar_curve(rate=0.03):
    return zep.YieldCurve.FromTenors(REFERENCE, [zep.Period("1Y"), zep.Period("10Y")], [rate, rate], zep.Continuous,
                                     zep.DayCounter(zep.Act365Fixed))


def test_a_model_replaces_the_pillars():
    curve = pillar_curve()
    model = zep.NelsonSiegel(0.04, -0.01, 0.005, 2.0)
    curve.SetParametricModel(model)
    assert curve.IsParametricCurve()
    assert curve.DiscountFactor(5.0) == pytest.approx(math.exp(-model.Rate(5.0) * 5.0), rel=1e-14)


def test_implied_rates_follow_the_points():
    domestic = pillar_curve(0.04)
    points = zep.QuotedForwardPoints(1.10, 10000.0, [1.0, 2.0], [200.0, 400.0])
    foreign = pillar_curve(0.0)
    foreign.SetImpliedCurve(domestic, points, False)
    forward = 1.10 + 200.0 / 10000
    assert foreign.Rate(1.0) == pytest.approx(((1 + domestic.Rate(1.0)) * 1.10 / forward - 1), rel=1e-12)


@pytest.mark.parametrize("hook", [
    lambda curve: curve.SetParametricModel(None),
    lambda curve: curve.SetImpliedCurve(None, zep.QuotedForwardPoints(1.1, 10000.0, [1.0], [100.0]), False),
    lambda curve: curve.SetImpliedCurve(pillar_curve(), None, True),
])
def test_none_is_refused(hook):
    with pytest.raises((RuntimeError, ValueError, TypeError)):
        hook(pillar_curve())


@pytest.mark.parametrize("hook", [
    lambda curve: curve.SetParametricModel(zep.Vasicek(0.03, 0.5, 0.04, 0.01)),
    lambda curve: curve.SetImpliedCurve(pillar_curve(0.04), zep.QuotedForwardPoints(1.1, 10000.0, [1.0], [100.0]),
                                        True),
])
def test_hooked_curves_pickle(hook):
    curve = pillar_curve()
    hook(curve)
    copy = pickle.loads(pickle.dumps(curve))
    assert copy.DiscountFactor(3.0) == curve.DiscountFactor(3.0)
