import numpy as np
import pytest
from scipy.interpolate import CubicSpline

import zep


def random_nodes(seed, n):
    rng = np.random.default_rng(seed)
    x = np.cumsum(rng.uniform(0.05, 2.0, n))
    y = rng.normal(0.0, 1.0, n)
    return x, y, rng.uniform(x[0], x[-1], 200)


@pytest.mark.parametrize("seed", range(8))
@pytest.mark.parametrize("n", [3, 5, 12, 30])
def test_natural_spline_matches_scipy(seed, n):
    x, y, points = random_nodes(seed, n)
    interp = zep.Interpolation(x, y, zep.CubicInterpolation, zep.FlatExtrapolation)
    reference = CubicSpline(x, y, bc_type="natural")
    for p in points:
        assert interp.Evaluate(p) == pytest.approx(reference(p), abs=1e-12), (seed, n, p)


@pytest.mark.parametrize("seed", range(8))
@pytest.mark.parametrize("n", [2, 3, 7, 30])
def test_clamped_spline_matches_scipy(seed, n):
    x, y, points = random_nodes(seed, n)
    left, right = np.random.default_rng(seed + 100).normal(0.0, 1.0, 2)
    interp = zep.Interpolation(x, y, zep.ClampedCubicInterpolation, zep.FlatExtrapolation, {}, left, right)
    reference = CubicSpline(x, y, bc_type=((1, left), (1, right)))
    for p in points:
        assert interp.Evaluate(p) == pytest.approx(reference(p), abs=1e-12), (seed, n, p)


@pytest.mark.parametrize("seed", range(5))
def test_linear_matches_numpy_interp(seed):
    x, y, points = random_nodes(seed, 25)
    interp = zep.Interpolation(list(x), tuple(y), zep.LinearInterpolation, zep.FlatExtrapolation)
    expected = np.interp(points, x, y)
    assert [interp.Evaluate(p) for p in points] == pytest.approx(list(expected), abs=1e-14)


def test_region_map_switches_to_log_linear():
    interp = zep.Interpolation([1.0, 2.0, 3.0], [1.0, 2.0, 4.0], zep.LinearInterpolation,
                               zep.FlatExtrapolation, {2.0: zep.LogLinearInterpolation})
    assert interp.Evaluate(1.5) == pytest.approx(1.5)
    assert interp.Evaluate(2.5) == pytest.approx(np.sqrt(8.0))
    assert interp.Methods() == {2.0: zep.LogLinearInterpolation}


@pytest.mark.parametrize("text, code", [("flat", 0), ("Closest", 1), ("LINEARINTERPOLATION", 2), ("3", 3),
                                        ("loglinear", 4), ("LagrangePolynomial", 5), ("cubic", 6),
                                        ("ffq", 7), ("explicit clamped cubic", 8), ("Clamped Cubic", 8)])
def test_method_names(text, code):
    assert zep.stringToInterpolationMethod(text) == code


@pytest.mark.parametrize("call, message", [
    (lambda: zep.Interpolation([], [], zep.LinearInterpolation, zep.FlatExtrapolation).Evaluate(1.0),
     "Interpolation: empty data"),
    (lambda: zep.Interpolation([1.0, 2.0], [1.0], zep.LinearInterpolation, zep.FlatExtrapolation).Evaluate(1.5),
     "Interpolation: Data dimensions don't match"),
    (lambda: zep.Interpolation([1.0, 2.0], [1.0, 2.0], zep.LinearInterpolation, zep.NoExtrapolation).Evaluate(3.0),
     "Extrapolation not possible"),
    (lambda: zep.Interpolation([1.0, 2.0], [1.0, 2.0], zep.LinearInterpolation, zep.TaylorExtrapolation).Evaluate(0.0),
     "Wrong extrapolation method"),
    (lambda: zep.InterpolationMethodToString(11), "Interpolation method is an invalid enumeration: 11"),
    (lambda: zep.ExtrapolationMethodToString(7), "Extrapolation method is an invalid enumeration: 7"),
])
def test_bad_input_raises_the_library_message(call, message):
    with pytest.raises(RuntimeError) as failure:
        call()
    assert str(failure.value).startswith(message)


def test_two_dimensional_cubic_names_the_template_instance():
    interp = zep.Interpolation([0.0, 1.0], [0.0, 1.0], [[1.0, 2.0], [3.0, 4.0]], zep.CubicInterpolation,
                               zep.FlatExtrapolation)
    with pytest.raises(RuntimeError, match=r"2D Cubic interpolation not available \(zep::Interpolation"
                                           r"<double,double,double>::cubicInterpolation"):
        interp.Evaluate(0.5, 0.5)
