"""The interpolation engine at the edges of its domain: nodes from 0 to 50 years, some 1e-10 years
apart, values that are rates (-50% to +50%), volatilities (1e-8 to 5) or spot levels (up to
1e300), every method and extrapolation. Every value is a finite number or a library exception
with a message; inside an interval the linear and log-linear values lie between its two nodes."""
import bisect

import pytest
from hypothesis import given, strategies as st

import zep
from extreme_inputs import EXTREMES, RATES, SPOTS, TIMES, VOLATILITIES, built_or_refused, figure_or_library_error

METHODS = list(range(9))
EXTRAPOLATIONS = [zep.NoExtrapolation, zep.FlatExtrapolation, zep.LinearExtrapolation, zep.TaylorExtrapolation,
                  zep.CubicExtrapolation]
BETWEEN_NODES = {zep.LinearInterpolation, zep.LogLinearInterpolation, zep.FlatInterpolation,
                 zep.ClosestInterpolation}


@st.composite
def tables(draw):
    nodes = sorted(draw(st.sets(st.just(0.0) | TIMES, min_size=1, max_size=8)))
    values = st.sampled_from([RATES, VOLATILITIES, SPOTS])
    return nodes, draw(st.lists(draw(values), min_size=len(nodes), max_size=len(nodes)))


# Each method draws its own examples: a fault of one method is not diluted among nine.
@pytest.mark.parametrize("method", METHODS)
@EXTREMES
@given(table=tables(), extrapolation=st.sampled_from(EXTRAPOLATIONS),
       points=st.lists(st.just(0.0) | st.just(60.0) | TIMES, min_size=1, max_size=6))
def test_values_are_finite_or_refused_and_stay_between_their_nodes(method, table, extrapolation, points):
    nodes, values = table
    interpolation = built_or_refused(zep.Interpolation, nodes, values, method, extrapolation)
    if interpolation is None:
        return
    for x in points + nodes:
        value = figure_or_library_error(interpolation.Evaluate, x)
        inside = nodes[0] < x < nodes[-1]
        if value is None or not inside or method not in BETWEEN_NODES:
            continue
        right = bisect.bisect_right(nodes, x)
        low, high = sorted(values[right - 1:right + 1])
        slack = 1e-12 * max(abs(low), abs(high))
        assert low - slack <= value <= high + slack, (nodes, values, method, x, value)


@EXTREMES
@given(table=tables(), left=RATES, right=RATES, points=st.lists(TIMES, min_size=1, max_size=4))
def test_clamped_spline_with_its_end_slopes_is_finite_or_refused(table, left, right, points):
    nodes, values = table
    spline = built_or_refused(zep.Interpolation, nodes, values, zep.ClampedCubicInterpolation,
                              zep.FlatExtrapolation, {}, left, right)
    if spline is not None:
        for x in points:
            figure_or_library_error(spline.Evaluate, x)
