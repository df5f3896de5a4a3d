"""Discount curves at the edges of their domain: pillars out to 50 years, zero rates of -50% to
+50%, every stored variable and interpolation method, queried from 1e-10 years to 50 years. Every
discount factor, zero, par and forward rate is a finite number or a library exception with a
message; discount factors are positive, and the array form answers as the point form does."""
import datetime
import math

import numpy as np
from hypothesis import given, strategies as st

import zep
from extreme_inputs import EXTREMES, RATES, TIMES, built_or_refused, figure_or_library_error

REFERENCE = datetime.date(2024, 1, 2)
FIFTY_YEARS = 365 * 50
VARIABLES = [zep.AnnualZeroRates, zep.SimpleZeroRates, zep.ContinuousZeroRates, zep.DiscountFactors]
METHODS = list(range(10))  # the nine interpolation methods and the forward-rate spline table
FREQUENCIES = [zep.Continuous, zep.Annual, zep.Semiannual, zep.Monthly]


@st.composite
def curves(draw):
    """A curve as a desk would build it, from discount factors or from continuous or simple zero
    rates; None where the library refuses the inputs."""
    days = sorted(draw(st.sets(st.integers(1, FIFTY_YEARS), min_size=1, max_size=8)))
    dates = [REFERENCE + datetime.timedelta(days=d) for d in days]
    rates = draw(st.lists(RATES, min_size=len(days), max_size=len(days)))
    variable, method = draw(st.sampled_from(VARIABLES)), draw(st.sampled_from(METHODS))
    counter = draw(st.sampled_from(["act/365", "act/360", "30/360"]))
    form = draw(st.sampled_from(["discount factors", zep.Continuous, zep.NoFrequency]))
    if form == "discount factors":
        factors = [math.exp(-r * d / 365) for r, d in zip(rates, days)]
        curve = built_or_refused(zep.YieldCurve, REFERENCE, dates, factors, counter, variable, method)
    else:
        curve = built_or_refused(zep.YieldCurve.FromZeroRates, REFERENCE, dates, rates, form, counter, variable, method)
    return curve, (form, rates, days, counter, variable, method)


QUERY_TIMES = st.lists(st.just(0.0) | TIMES, min_size=1, max_size=6)


@EXTREMES
@given(built=curves(), times=QUERY_TIMES)
def test_curve_queries_by_time_are_finite_or_refused(built, times):
    curve, inputs = built
    if curve is None:
        return
    for t in times:
        factor = figure_or_library_error(curve.DiscountFactor, t)
        assert factor is None or factor > 0.0, (inputs, t, factor)
        figure_or_library_error(curve.Rate, t)
        figure_or_library_error(curve.ParRate, t)
        figure_or_library_error(curve.ZeroRate, t, False, zep.Continuous)
        for frequency in FREQUENCIES:
            figure_or_library_error(curve.ZeroRate, t, True, frequency)


@EXTREMES
@given(built=curves(), times=QUERY_TIMES)
def test_array_of_times_answers_as_the_point_form(built, times):
    curve, inputs = built
    if curve is None:
        return
    points = [figure_or_library_error(curve.DiscountFactor, t) for t in times]
    try:
        array = curve.DiscountFactors(np.array(times))
    except (RuntimeError, ValueError) as error:
        assert str(error).strip() and None in points, (inputs, times, points, error)
        return
    assert None not in points, (inputs, times, array)
    np.testing.assert_allclose(array, points, rtol=1e-14, err_msg=str((inputs, times)))


@EXTREMES
@given(built=curves(), offsets=st.lists(st.integers(0, FIFTY_YEARS), min_size=2, max_size=6),
       counter=st.sampled_from([-1, zep.Act360, zep.Act365Fixed]), compounded=st.booleans(),
       frequency=st.sampled_from(FREQUENCIES))
def test_curve_queries_by_date_are_finite_or_refused(built, offsets, counter, compounded, frequency):
    curve, inputs = built
    if curve is None:
        return
    dates = [REFERENCE + datetime.timedelta(days=d) for d in offsets]
    for date in dates:
        factor = figure_or_library_error(curve.DiscountFactor, date)
        assert factor is None or factor > 0.0, (inputs, date, factor)
        figure_or_library_error(curve.ZeroRate, date, counter, compounded, frequency)
    for start, end in zip(dates, dates[1:]):
        figure_or_library_error(curve.ForwardRate, min(start, end), max(start, end), counter, compounded, frequency)
