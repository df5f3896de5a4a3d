import datetime
import math
import pickle

import numpy as np
import pytest

import zep

REFERENCE = "2024-01-02"
ACT365 = 1  # Act365Fixed
RATE = 0.03


def pillar_dates():
    start = zep.Date(REFERENCE)
    return [start + days for days in (91, 182, 365, 730, 1826, 3652)]


def flat_curve(variable=zep.ContinuousZeroRates, method=zep.LinearInterpolation):
    dates = pillar_dates()
    return zep.YieldCurve.FromZeroRates(REFERENCE, dates, [RATE] * len(dates), zep.Continuous, ACT365,
                                        variable, method, "flat")


def years(date):
    return (zep.Date(date) - zep.Date(REFERENCE)) / 365.0


@pytest.mark.parametrize("variable, method", [(zep.ContinuousZeroRates, zep.LinearInterpolation),
                                              (zep.ContinuousZeroRates, zep.CubicInterpolation),
                                              (zep.DiscountFactors, zep.LogLinearInterpolation)])
@pytest.mark.parametrize("date", ["2024-01-03", "2024-07-15", "2026-03-31", "2033-12-01"])
def test_flat_curve_closed_forms(variable, method, date):
    curve = flat_curve(variable, method)
    t = years(date)
    assert curve.DiscountFactor(date) == pytest.approx(math.exp(-RATE * t), abs=1e-14)
    assert curve.ZeroRate(date, ACT365, True, zep.Continuous) == pytest.approx(RATE, abs=1e-12)
    assert curve.ZeroRate(date, ACT365, False, zep.Continuous) == pytest.approx(math.expm1(RATE * t) / t, abs=1e-12)
    end = zep.Date(date) + 30
    assert curve.ForwardRate(date, end, ACT365, True, zep.Continuous) == pytest.approx(RATE, abs=1e-12)


def test_flat_curve_par_rate():
    curve = flat_curve()
    annuity = sum(math.exp(-RATE * k) for k in (1, 2, 3, 4))
    assert curve.ParRate(4.0) == pytest.approx((1 - math.exp(-4 * RATE)) / annuity, abs=1e-14)


def test_reference_pillar_and_time_zero():
    curve = zep.YieldCurve(REFERENCE, ["2025-01-02"], [0.97], ACT365)
    assert len(curve.Dates()) == 2 and curve.Dates()[0] == REFERENCE
    assert curve.DiscountFactor(0.0) == 1.0 and curve.DiscountFactor(-1.0) == 1.0
    assert curve.ZeroRate(REFERENCE, -1, True, zep.Continuous) == pytest.approx(-math.log(0.97) / (366 / 365), abs=1e-14)
    assert curve.DiscountFactor(1.0, 2.0) == curve.DiscountFactor(2.0, 1.0)


def test_vector_arguments_accept_lists_tuples_arrays_and_dates():
    dates = ("2025-01-02", datetime.date(2026, 1, 2), zep.Date("2027-01-04"))
    a = zep.YieldCurve(REFERENCE, dates, np.array([0.97, 0.94, 0.91]), ACT365)
    b = zep.YieldCurve(REFERENCE, list(dates), [0.97, 0.94, 0.91], "Act365Fixed")
    assert a == b


def test_tenor_curve():
    curve = zep.YieldCurve.FromTenors(REFERENCE, ["1Y", zep.Period("2Y")], (0.02, 0.03), zep.Continuous, ACT365)
    assert curve.Dates()[2] == "2026-01-02"


def test_vectorised_discount_factors_agree_with_the_point_form():
    curve = flat_curve(method=zep.CubicInterpolation)
    times = np.random.default_rng(3).uniform(-1.0, 12.0, 500)
    expected = np.array([curve.DiscountFactor(float(t)) for t in times])
    assert np.array_equal(curve.DiscountFactors(times), expected)
    grid = times.reshape(20, 25)
    assert curve.DiscountFactors(grid).shape == (20, 25)
    dates = np.array(["2024-06-30", "2030-01-01"], dtype="datetime64[D]")
    assert list(curve.DiscountFactors(dates)) == [curve.DiscountFactor("2024-06-30"), curve.DiscountFactor("2030-01-01")]
    assert list(curve.DiscountFactors(["2024-06-30"])) == [curve.DiscountFactor("2024-06-30")]


def test_pickled_curve_comes_back_equal():
    curve = flat_curve(method=zep.ClampedCubicInterpolation)
    curve.SetZeroRateSpread(0.0025)
    copy = pickle.loads(pickle.dumps(curve))
    assert copy == curve
    times = np.linspace(0.0, 15.0, 301)
    assert np.array_equal(copy.DiscountFactors(times), curve.DiscountFactors(times))
    curve.SetInterpolation(9)
    assert pickle.loads(pickle.dumps(curve)).ForwardRate("2025-06-01", "2025-07-01", -1, False, 1) == \
        curve.ForwardRate("2025-06-01", "2025-07-01", -1, False, 1)


def test_curve_is_shared_not_copied():
    curve = flat_curve()
    holders = [curve, curve]
    curve.SetZeroRateSpread(0.01)
    assert holders[1].ZeroRateSpread() == 0.01


@pytest.mark.parametrize("call, message", [
    (lambda: zep.YieldCurve(REFERENCE, ["2025-01-02"], [0.9, 0.8], ACT365),
     "Must enter the same number of dates and discount factors."),
    (lambda: zep.YieldCurve(REFERENCE, [], [], ACT365), "YieldCurve: dates and discountFactors must not be empty."),
    (lambda: zep.YieldCurve(REFERENCE, [REFERENCE], [0.99], ACT365), "First discount factor must equal 1.0."),
    (lambda: zep.YieldCurve(REFERENCE, [REFERENCE], [1.0], ACT365),
     "YieldCurve: a single pillar gives no rate at the reference date."),
    (lambda: zep.YieldCurve(REFERENCE, ["2026-01-02", "2025-01-02"], [0.9, 0.95], ACT365),
     "YieldCurve: dates must be strictly increasing."),
    (lambda: zep.YieldCurve.FromZeroRates(REFERENCE, ["2025-01-02"], [0.02], zep.Annual, ACT365),
     "Compounding frequency can only be one of Once, NoFrequency or Continuous"),
    (lambda: zep.YieldCurve.FromTenors(REFERENCE, [], [], zep.Continuous, ACT365),
     "YieldCurve: MaturityDates(tenors) produced no pillars; check tenors/zeroRates."),
    (lambda: zep.YieldCurve(REFERENCE, ["2025-01-02"], [0.9], ACT365, zep.HazardRates), "Wrong interpolated variable"),
    (lambda: flat_curve().ZeroRate("2025-01-02", -1, True, zep.Once),
     "Cannot compound zero rate with no frequency or frequency once"),
    (lambda: flat_curve().ForwardRate("2025-01-02", "2025-02-03", -1, True, zep.NoFrequency),
     "Cannot compound a forward rate with no frequency or frequency once"),
    (lambda: flat_curve().ForwardRate(["2025-01-02"], [], -1, False, 1),
     "Number of start dates (1) must equal number of end dates(0"),
    (lambda: flat_curve().SetInterpolation(10), "SetInterpolation failed"),
    (lambda: zep.InterpolatedVariableToString(21), "Interpolated variable is an invalid enumeration: 21"),
])
def test_bad_input_raises_the_library_message(call, message):
    with pytest.raises(RuntimeError) as failure:
        call()
    assert str(failure.value).startswith(message)


def test_bad_arguments_raise_type_or_value_errors():
    with pytest.raises(TypeError):
        zep.YieldCurve(REFERENCE, None, [1.0])
    with pytest.raises(TypeError):
        zep.YieldCurve(REFERENCE, [3], [0.99], ACT365)
    with pytest.raises(ValueError):
        flat_curve()._FillAtTimes(np.zeros(3, dtype=np.float32), np.zeros(3))
    with pytest.raises(RuntimeError, match=r"No such node \(m_times\)"):
        pickle.loads(pickle.dumps(flat_curve()).replace(b"m_times", b"m_timez"))


def test_dump_lists_every_pillar_under_the_column_heads():
    curve = zep.YieldCurve("2024-01-02", ["2025-01-02", "2026-01-02"], [0.97, 0.94])
    lines = curve.Dump().splitlines()
    assert lines[0] == "1 - Dates\t2 - Times\t3 - Interpolation Variable\t4 - Interpolation Method"
    assert [line.split("\t")[0] for line in lines[1:]] == ["02/01/2024", "02/01/2025", "02/01/2026"]
