"""Finite-difference range engines against their closed forms: second-order convergence of the
range digital, the daily accrual as the average of the daily range probabilities, and the
engines' checks and messages."""
import math
import os
import subprocess
import sys
from statistics import NormalDist

import pytest

import zep

S, L, H, VOL, T, TD, RD, RF = 1.08, 1.02, 1.14, 0.1, 0.5, 0.51, 0.035, 0.02
N = NormalDist().cdf


def range_probability(t):
    """P(L < S_t < H) with the spot carried to the delivery forward over [0, T]."""
    forward = S * math.exp((RD - RF) * TD * t / T)

    def d2(k):
        return (math.log(forward / k) - VOL * VOL * t / 2) / (VOL * math.sqrt(t))

    return N(d2(L)) - N(d2(H))


def digital_error(nodes):
    engine = zep.FdmDoubleDigitalEngine(S, L, H, VOL, T, TD, RD, RF, nodes, nodes, 0.6, 1.8)
    return abs(engine.Price() - math.exp(-RD * TD) * range_probability(T))


def test_the_range_digital_converges_at_second_order():
    errors = [digital_error(n) for n in (101, 201, 401)]
    assert errors[-1] < 2e-5
    for coarse, fine in zip(errors, errors[1:]):
        assert 3.0 < coarse / fine < 5.0, errors


def test_the_daily_accrual_averages_the_daily_range_probabilities():
    days = 126
    exact = math.exp(-RD * TD) * sum(range_probability(T * k / days) for k in range(1, days + 1)) / days
    engine = zep.FdmDoubleCumulativeEngine(S, L, H, VOL, T, TD, RD, RF, 401, days, 0.6, 1.8, days)
    assert engine.Price() == pytest.approx(exact, rel=2e-4)


@pytest.mark.parametrize("interpolation", ["linear", "cubic"])
def test_greeks_from_the_grid_agree_with_the_closed_form(interpolation):
    engine = zep.FdmDoubleDigitalEngine(S, L, H, VOL, T, TD, RD, RF, 801, 400, 0.6, 1.8, 1.0, interpolation)
    forward, root = S * math.exp((RD - RF) * TD), VOL * math.sqrt(T)
    density = NormalDist().pdf
    d1 = {k: math.log(forward / k) / root + root / 2 for k in (L, H)}
    d2 = {k: d1[k] - root for k in (L, H)}
    discount = math.exp(-RD * TD)
    delta = discount * (density(d2[L]) - density(d2[H])) / (S * root)
    gamma = discount * (-density(d2[L]) * d1[L] + density(d2[H]) * d1[H]) / (S * root) ** 2
    assert engine.Greek("price") == engine.Price()
    assert engine.Greek("delta") == pytest.approx(delta, rel=1e-3)
    assert engine.Greek("gamma") == pytest.approx(gamma, rel=1e-3, abs=1e-3)


@pytest.mark.parametrize("make, message", [
    (lambda: zep.FdmDoubleDigitalEngine(S, H, L, VOL, T, TD, RD, RF, 100, 100, 0.6, 1.8), "FdmDoubleDigitalEngine: L must be < H"),
    (lambda: zep.FdmDoubleDigitalEngine(S, L, H, VOL, T, TD, RD, RF, 1, 100, 0.6, 1.8), "FdmDoubleDigitalEngine: N must be >= 2"),
    (lambda: zep.FdmDoubleDigitalEngine(S, L, H, VOL, T, TD, RD, RF, 100, 0, 0.6, 1.8), "FdmDoubleDigitalEngine: M must be >= 1"),
    (lambda: zep.FdmDoubleDigitalEngine(S, L, H, VOL, T, TD, RD, RF, 100, 100, 1.8, 0.6), "Invalid domain, Smax <= Smin!"),
    (lambda: zep.FdmDoubleCumulativeEngine(S, L, H, VOL, T, TD, RD, RF, 1, 100, 0.6, 1.8, 100), r"N must be >= 2\."),
    (lambda: zep.FdmDoubleCumulativeEngine(S, L, H, VOL, T, TD, RD, RF, 100, 0, 0.6, 1.8, 100), r"M must be >= 1\."),
    (lambda: zep.FdmDoubleCumulativeEngine(S, L, H, VOL, T, TD, RD, RF, 100, 10, 1.8, 1.8, 10), "Invalid domain, Smax <= Smin!"),
    (lambda: zep.FdmDoubleDigitalEngine(S, L, H, VOL, T, TD, RD, RF, 100, 10, 0.6, 1.8, 1.0, "spline"),
     "Only 'linear' and 'cubic' interpolation implemented."),
    (lambda: zep.FdmDoubleDigitalEngine(S, L, H, VOL, T, TD, RD, RF, 3, 10, 0.6, 1.8, 1.0, "cubic"),
     "Cubic interpolation requires at least 4 points."),
    (lambda: zep.FdmDoubleDigitalEngine(S, L, H, VOL, T, TD, RD, RF, 100, 10, 0.6, 1.8).Greek("vomma"), "Unknown Greek: vomma"),
])
def test_engines_refuse_bad_grids_with_their_message(make, message):
    with pytest.raises(RuntimeError, match=message):
        make()


def test_an_accrual_stepped_otherwise_than_daily_says_so_in_the_log():
    script = ("import zep; zep.FdmDoubleCumulativeEngine(1.08, 1.02, 1.14, 0.1, 0.5, 0.51, 0.035, 0.02, "
              "101, 50, 0.6, 1.8, 126).Price()")
    environment = dict(os.environ, ZEP_LOGLEVEL="warning", PYTHONPATH=os.path.dirname(os.path.dirname(zep.__file__)))
    run = subprocess.run([sys.executable, "-c", script], env=environment, capture_output=True, text=True, timeout=60)
    assert run.returncode == 0, run.stderr
    assert "[FdmDoubleCumulativeEngine] WARNING: M_ != tradingDays_!" in run.stderr
    assert "  For day-by-day cumulative logic, best set M = tradingDays." in run.stderr


BARRIER_CASES = [(option_type, barrier_type, level) for option_type in (0, 1)
                 for barrier_type, level in ((2, 1.02), (3, 1.02), (4, 1.16), (5, 1.16))]


@pytest.mark.parametrize("option_type, barrier_type, level", BARRIER_CASES)
def test_the_barrier_engine_converges_to_the_closed_form(option_type, barrier_type, level):
    exact = zep.EuropeanBarrierBS(option_type, barrier_type, 1.10, level, 0.09, 0.5, 0.505, 0.035, 0.02, 1.08).Price()

    def error(nodes):
        engine = zep.FdmBarrierEngine(option_type, barrier_type, 1.10, level, 0.09, 0.5, 0.505, 0.035, 0.02, 1.08,
                                      nodes, nodes)
        return abs(engine.Price() - exact)

    assert error(400) < 3e-6
    if barrier_type in (4, 5):  # the spot sits between nodes the same way at both sizes
        assert error(200) / error(400) > 3.0


def test_a_barrier_already_touched_leaves_the_knock_in_as_the_vanilla():
    vanilla = zep.BSVanilla(0, 1.10, 0.09, 0.5, 0.505, 0.035, 0.02, 1.08).Price()
    assert zep.FdmBarrierEngine(0, 3, 1.10, 1.09, 0.09, 0.5, 0.505, 0.035, 0.02, 1.08, 100, 100).Price() == 0.0
    assert zep.FdmBarrierEngine(0, 2, 1.10, 1.09, 0.09, 0.5, 0.505, 0.035, 0.02, 1.08, 100, 100).Price() == vanilla


def booked_range(expiry="2024-07-15", delivery="2024-07-17", low=1.02, high=1.14, spot=S):
    return zep.DoubleDigitalOption("2024-01-15", expiry, delivery, low, high, 1e6, spot, VOL, RD, RF)


def test_a_booked_range_digital_prices_alike_in_closed_form_and_on_the_grid():
    option = booked_range()
    t, td = option.GetTimeToExpiry(), option.GetTimeToDelivery()
    assert (t, td) == (182 / 365, 184 / 365)
    forward = S * math.exp((RD - RF) * td)

    def above(level):
        return N(math.log(forward / level) / (VOL * math.sqrt(t)) - VOL * math.sqrt(t) / 2)

    exact = 1e6 * math.exp(-RD * td) * (above(1.02) - above(1.14))
    assert option.Price() == pytest.approx(exact, rel=1e-13)
    assert option.Price(1) == pytest.approx(exact, rel=1e-4)
    assert booked_range(expiry="2024-01-15", delivery="2024-01-15").Price() == 1e6  # expired inside the range


@pytest.mark.parametrize("arguments, message", [
    ({"low": 1.14, "high": 1.02}, "Low barrier must be less than high barrier"),
    ({"expiry": "2024-01-12"}, "Expiry date must be on or after reference date"),
    ({"delivery": "2024-07-12"}, "Delivery date must be on or after expiry date"),
    ({"spot": 0.0}, "Invalid spot price, time or volatility"),
])
def test_a_booked_range_digital_refuses_bad_terms(arguments, message):
    with pytest.raises(RuntimeError, match=message):
        booked_range(**arguments)
