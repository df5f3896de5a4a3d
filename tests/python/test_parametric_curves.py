"""Curves given by a formula: Nelson-Siegel and Svensson fits recover the curve they were fed,
Vasicek and Cox-Ingersoll-Ross discount factors match their deterministic limit and a Monte
Carlo of the short rate, and a parametric YieldCurve discounts with the model's rates."""
import math

import numpy
import pytest

import zep

TIMES = [0.25, 0.5, 1, 2, 3, 5, 7, 10, 15, 20, 30]


def test_nelson_siegel_recovers_its_own_parameters():
    truth = zep.NelsonSiegel(0.035, -0.012, 0.025, 2.5)
    fit = zep.FitNelsonSiegel(TIMES, [truth.Rate(t) for t in TIMES])
    assert list(fit.Parameters()) == pytest.approx([0.035, -0.012, 0.025, 2.5], rel=1e-6)


def test_svensson_reproduces_the_curve_it_was_fed():
    truth = zep.Svensson(0.03, -0.01, 0.02, -0.015, 1.5, 8.0)
    fit = zep.FitSvensson(TIMES, [truth.Rate(t) for t in TIMES])
    for t in TIMES + [4.0, 25.0]:
        assert fit.Rate(t) == pytest.approx(truth.Rate(t), abs=1e-6)


@pytest.mark.parametrize("model", [zep.Vasicek, zep.CoxIngersollRoss])
def test_short_rate_models_without_volatility_follow_the_mean_reverting_path(model):
    r0, a, b, t = 0.02, 0.7, 0.045, 6.0
    integral = b * t + (r0 - b) * (1 - math.exp(-a * t)) / a
    assert model(r0, a, b, 0.0).DiscountFactor(t) == pytest.approx(math.exp(-integral), rel=1e-13)


@pytest.mark.parametrize("model, diffusion", [(zep.Vasicek, lambda r: 1.0), (zep.CoxIngersollRoss, numpy.sqrt)])
def test_short_rate_discount_factors_match_a_monte_carlo_of_the_rate(model, diffusion):
    r0, a, b, sigma, horizon, steps, paths = 0.03, 0.8, 0.05, 0.08, 2.0, 400, 40_000
    rng = numpy.random.default_rng(3)
    dt = horizon / steps
    r = numpy.full(paths, r0)
    integral = numpy.zeros(paths)
    for _ in range(steps):
        step = a * (b - r) * dt + sigma * diffusion(numpy.maximum(r, 0.0)) * math.sqrt(dt) * rng.standard_normal(paths)
        integral += (r + numpy.maximum(r + step, 0.0 if model is zep.CoxIngersollRoss else -numpy.inf)) * dt / 2
        r = r + step if model is zep.Vasicek else numpy.maximum(r + step, 0.0)
    discounts = numpy.exp(-integral)
    error = discounts.std() / math.sqrt(paths)
    assert abs(discounts.mean() - model(r0, a, b, sigma).DiscountFactor(horizon)) < 4 * error + 2e-5


def test_a_parametric_curve_discounts_with_the_models_rates():
    model = zep.NelsonSiegel(0.03, -0.01, 0.02, 2.0)
    curve = zep.ParametricYieldCurve("2024-01-15", model)
    t = 1826 / 365
    assert curve.DiscountFactor("2029-01-14") == pytest.approx(math.exp(-model.Rate(t) * t), rel=1e-14)


def test_fits_refuse_too_few_rates():
    with pytest.raises(RuntimeError, match="NelsonSiegel: fewer zero rates than parameters"):
        zep.FitNelsonSiegel([1.0, 2.0], [0.03, 0.031])
