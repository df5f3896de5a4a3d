"""Curves over other curves: a spread curve's discount factors are the base's times the spread's,
overnight rates compound back to the discount curve's forward, both pickle."""
import math
import pickle

import pytest

import zep

REFERENCE = "2024-01-15"


def curve(rates, tenors=("1Y", "5Y", "10Y")):
    return zep.YieldCurve.FromTenors(REFERENCE, [zep.Period(t) for t in tenors], list(rates), zep.Continuous,
                                     zep.DayCounter(zep.Act365Fixed))


@pytest.mark.parametrize("t", [0.25, 1.0, 3.0, 7.5, 12.0])
def test_a_constant_spread_scales_the_discount_factors(t):
    base = curve([0.03, 0.032, 0.035])
    spread = zep.SpreadYieldCurve(base, 0.0125)
    assert spread.DiscountFactor(t) == pytest.approx(base.DiscountFactor(t) * math.exp(-0.0125 * t), rel=1e-13)


@pytest.mark.parametrize("t", [0.5, 2.0, 6.0, 15.0])
def test_a_spread_curve_multiplies_the_discount_factors(t):
    base, spreads = curve([0.03, 0.032, 0.035]), curve([0.01, 0.012, 0.015])
    spread = zep.SpreadYieldCurve(base, spreads)
    assert spread.DiscountFactor(t) == pytest.approx(base.DiscountFactor(t) * spreads.DiscountFactor(t), rel=1e-13)


def test_spread_curves_pickle_and_refuse_none():
    spread = zep.SpreadYieldCurve(curve([0.03, 0.032, 0.035]), curve([0.01, 0.012, 0.015]))
    assert pickle.loads(pickle.dumps(spread)).DiscountFactor(4.0) == spread.DiscountFactor(4.0)
    with pytest.raises((ValueError, RuntimeError, TypeError)):
        zep.SpreadYieldCurve(None, 0.01)


def test_overnight_rates_compound_to_the_period_forward():
    ois = zep.BootstrapYieldCurve(REFERENCE, [("OIS", "1M", 0.039), ("OIS", "3M", 0.0385), ("OIS", "1Y", 0.0355)])
    overnight = zep.OvernightRateCurve(ois)
    calendar = zep.Calendar()
    start, end = zep.Date("2024-02-01"), zep.Date("2024-05-02")
    growth, day = 1.0, start
    while day < end:
        following = calendar.Adjust(day + 1, zep.Following, "TARGET")
        growth *= 1 + overnight.OvernightRate(day) * (following.SerialNumber() - day.SerialNumber()) / 360
        day = following
    compounded = (growth - 1) / ((end.SerialNumber() - start.SerialNumber()) / 360)
    assert compounded == pytest.approx(overnight.CompoundedRate(start, end), abs=1e-12)
    assert compounded == pytest.approx((ois.DiscountFactor(start) / ois.DiscountFactor(end) - 1) /
                                       ((end.SerialNumber() - start.SerialNumber()) / 360), abs=1e-12)
    assert pickle.loads(pickle.dumps(overnight)).OvernightRate(start) == overnight.OvernightRate(start)


def test_overnight_rates_need_a_business_day():
    overnight = zep.OvernightRateCurve(curve([0.03, 0.03, 0.03]))
    with pytest.raises(RuntimeError, match="is not a business day"):
        overnight.OvernightRate(zep.Date("2024-01-20"))  # a Saturday
