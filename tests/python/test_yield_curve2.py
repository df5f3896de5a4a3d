"""A currency pair's curves: the forward by covered interest parity from two curves, the foreign
curve implied from quoted points, the M-class face MYieldCurve2 with its failure prefix, and
pickling."""
import math
import pickle

import pytest

import zep

REFERENCE = "2024-01-15"


def flat(rate):
    return zep.YieldCurve.FromTenors(REFERENCE, [zep.Period("1Y"), zep.Period("10Y")], [rate, rate], zep.Continuous,
                                     zep.DayCounter(zep.Act365Fixed))


def test_the_forward_follows_covered_interest_parity():
    pair = zep.MYieldCurve2(flat(0.04), flat(0.02), 1.10)
    date = zep.Date("2026-01-15")
    t = 731 / 365
    assert pair.Forward(date) == pytest.approx(1.10 * math.exp((0.04 - 0.02) * t), rel=1e-12)
    assert pair.ForwardPoints(date) == pytest.approx((pair.Forward(date) - 1.10) * 10000, rel=1e-12)
    assert pair.Spot() == 1.10 and pair.Scale() == 10000


def test_quoted_points_imply_the_foreign_curve():
    domestic = flat(0.04)
    pair = zep.MYieldCurve2(domestic, 1.10, 10000.0, [0.5, 1.0, 2.0], [110.0, 220.0, 450.0])
    # Linear in time between the quotes: 548 days on from 220 points at one year to 450 at two.
    date = zep.Date(REFERENCE) + 548
    assert pair.ForwardPoints(date) == pytest.approx(220.0 + (548 / 365 - 1) * 230.0, rel=1e-12)
    # The implied foreign rate: (1 + t r_domestic) * spot / forward = 1 + t r_foreign, simple rates
    # on the domestic curve's rate, as the yield curve's implied-curve rule reads them.
    t = 1.0
    forward = 1.10 + 220.0 / 10000
    foreign_rate = ((1 + t * domestic.Rate(t)) * 1.10 / forward - 1) / t
    assert pair.ForeignCurve().Rate(t) == pytest.approx(foreign_rate, rel=1e-12)
    assert pair.ForeignCurve().IsImpliedCurve()


@pytest.mark.parametrize("arguments, message", [
    ((None, 1.1, 10000.0, [1.0], [100.0]), "no domestic curve"),
    ((flat(0.04), -1.0, 10000.0, [1.0], [100.0]), "the spot must be positive"),
    ((flat(0.04), 1.1, 10000.0, [1.0, 0.5], [100.0, 50.0]), "times must be positive and increasing"),
])
def test_constructor_failures_carry_the_prefix(arguments, message):
    with pytest.raises(RuntimeError) as failure:
        zep.MYieldCurve2(*arguments)
    assert str(failure.value).startswith("MYieldCurve2::MYieldCurve2 failed: ")
    assert message in str(failure.value)


def test_an_empty_pair_reports_not_initialized():
    with pytest.raises(RuntimeError, match="MYieldCurve2::Spot failed: .*not initialized!"):
        zep.MYieldCurve2().Spot()


def test_wrapping_a_library_pair():
    pair = zep.MYieldCurve2(zep.YieldCurve2(flat(0.04), flat(0.02), 1.10))
    assert pair.Forward("2025-01-15") == zep.MYieldCurve2(flat(0.04), flat(0.02), 1.10).Forward("2025-01-15")


@pytest.mark.parametrize("make", [
    lambda: zep.MYieldCurve2(flat(0.04), flat(0.02), 1.10),
    lambda: zep.MYieldCurve2(flat(0.04), 1.10, 10000.0, [0.5, 1.0], [110.0, 220.0]),
])
def test_pairs_pickle(make):
    pair = make()
    copy = pickle.loads(pickle.dumps(pair))
    assert copy.Forward("2025-06-15") == pair.Forward("2025-06-15")
