"""Asian options: geometric closed forms and Turnbull-Wakeman against QuantLib's engines, one
fixing against the vanilla, and the closed forms against Monte Carlo within 4 standard errors."""
import numpy as np
import pytest
import QuantLib as ql

import zep
from quantlib_reference import black_scholes_process

TODAY = ql.Date(2, 1, 2024)
MONTHLY_DAYS = [30 * i for i in range(1, 13)]
CASES = [  # option type, strike, volatility, rd, rf, spot
    (0, 100.0, 0.30, 0.05, 0.02, 100.0),
    (1, 105.0, 0.20, 0.01, 0.03, 100.0),
    (0, 1.05, 0.12, 0.04, 0.01, 1.10),
]


def quantlib_asian(option_type, strike, vol, rd, rf, spot, days, past, average, engine):
    process = black_scholes_process(TODAY, spot, rd, rf, vol)
    payoff = ql.PlainVanillaPayoff(ql.Option.Call if option_type == 0 else ql.Option.Put, strike)
    exercise = ql.EuropeanExercise(TODAY + days[-1])
    if engine == "continuous":
        geometric = average == "geometric"
        option = ql.ContinuousAveragingAsianOption(ql.Average.Geometric if geometric else ql.Average.Arithmetic,
                                                   payoff, exercise)
        option.setPricingEngine(
            ql.AnalyticContinuousGeometricAveragePriceAsianEngine(process) if geometric
            else ql.ContinuousArithmeticAsianLevyEngine(process, ql.QuoteHandle(ql.SimpleQuote(0.0)), TODAY))
        return option.NPV()
    geometric = average == "geometric"
    accumulator = 1.0
    for fixing in past:
        accumulator *= fixing
    option = ql.DiscreteAveragingAsianOption(
        ql.Average.Geometric if geometric else ql.Average.Arithmetic,
        accumulator if geometric else sum(past), len(past), [TODAY + d for d in days], payoff, exercise)
    option.setPricingEngine(ql.AnalyticDiscreteGeometricAveragePriceAsianEngine(process) if geometric
                            else ql.TurnbullWakemanAsianEngine(process))
    return option.NPV()


def asian(case, days, past=(), average="arithmetic"):
    option_type, strike, vol, rd, rf, spot = case
    return zep.AsianOption(option_type, strike, vol, [d / 365.0 for d in days], rd, rf, spot, list(past), average)


@pytest.mark.parametrize("case", CASES)
@pytest.mark.parametrize("past", [(), (98.0, 103.0, 101.0)])
def test_geometric_discrete_matches_quantlib(case, past):
    days = MONTHLY_DAYS[len(past):]
    past = [p * case[5] / 100.0 for p in past]
    expected = quantlib_asian(*case, days, past, "geometric", "discrete")
    assert asian(case, days, past, "geometric").Price("closed-form") == pytest.approx(expected, abs=1e-10)


@pytest.mark.parametrize("case", CASES)
@pytest.mark.parametrize("average, engine", [("geometric", "continuous"), ("arithmetic", "levy")])
def test_continuous_averages_match_quantlib(case, average, engine):
    if engine == "levy" and case[0] == 1:
        pytest.skip("QuantLib's Levy engine returns NaN for puts")
    expected = quantlib_asian(*case, [365], [], average, "continuous")
    assert asian(case, [365], (), average).Price(engine) == pytest.approx(expected, abs=1e-10)


@pytest.mark.parametrize("case", CASES)
@pytest.mark.parametrize("past", [(), (98.0, 103.0, 101.0)])
def test_turnbull_wakeman_matches_quantlib(case, past):
    days = MONTHLY_DAYS[len(past):]
    past = [p * case[5] / 100.0 for p in past]
    expected = quantlib_asian(*case, days, past, "arithmetic", "discrete")
    assert asian(case, days, past).Price("tw") == pytest.approx(expected, abs=1e-10)


@pytest.mark.parametrize("average, engine", [("arithmetic", "tw"), ("geometric", "closed-form")])
def test_prices_over_arrays_match_quantlib_row_by_row(average, engine):
    """The spot-100 cases as columns on one schedule with three past fixings, and one row with a
    negative strike that comes back NaN."""
    rows = [case for case in CASES if case[5] == 100.0]
    columns = [np.array([row[i] for row in rows] + [v]) for i, v in enumerate((0, -1.0, 0.2, 0.01, 0.0, 100.0))]
    days, past = MONTHLY_DAYS[3:], [98.0, 103.0, 101.0]
    prices = zep.AsianPrices(*columns, [d / 365.0 for d in days], past, engine, average)
    expected = [quantlib_asian(*row, days, past, average, "discrete") for row in rows]
    np.testing.assert_allclose(prices[:-1], expected, rtol=0, atol=1e-10)
    assert np.isnan(prices[-1])


def test_prices_over_arrays_refuse_an_engine_that_does_not_fit_the_average():
    with pytest.raises(Exception, match="'tw' or 'levy' for an arithmetic average"):
        zep.AsianPrices(0, 100.0, 0.2, 0.01, 0.0, 100.0, [0.5, 1.0], engine="closed-form")


@pytest.mark.parametrize("case", CASES)
@pytest.mark.parametrize("average, engine", [("arithmetic", "tw"), ("geometric", "closed-form")])
def test_one_fixing_is_the_vanilla(case, average, engine):
    option_type, strike, vol, rd, rf, spot = case
    vanilla = zep.BSVanilla(option_type, strike, vol, 0.5, 0.5, rd, rf, spot).Price()
    assert asian(case, [182.5], (), average).Price(engine) == pytest.approx(vanilla, abs=1e-12)


@pytest.mark.parametrize("case", CASES)
def test_geometric_closed_form_within_four_standard_errors_of_monte_carlo(case):
    option = asian(case, MONTHLY_DAYS, (), "geometric")
    estimate = option.MonteCarlo(200000, 7)
    assert abs(estimate.price - option.Price("closed-form")) < 4.0 * estimate.standardError


@pytest.mark.parametrize("case", CASES)
def test_arithmetic_monte_carlo_with_control_variate(case):
    """The control variate shrinks the error well below the approximation's bias; TW lies within
    1% of the Monte Carlo price here."""
    option = asian(case, MONTHLY_DAYS)
    estimate = option.MonteCarlo(200000, 11)
    assert estimate.standardError < 2e-3 * case[5] / 100.0
    assert option.Price("tw") == pytest.approx(estimate.price, rel=1e-2)


def test_every_fixing_known_pays_the_known_average():
    option = zep.AsianOption(0, 100.0, 0.2, [], 0.05, 0.0, 100.0, [101.0, 104.0, 107.0])
    assert option.Price("tw") == pytest.approx(4.0, abs=1e-12)
    assert option.Price("levy") == pytest.approx(4.0, abs=1e-12)


@pytest.mark.parametrize("args, message", [
    ((0, 100.0, 0.2, [0.5, 0.25], 0.0, 0.0, 100.0), "increasing"),
    ((0, 100.0, 0.2, [], 0.0, 0.0, 100.0), "at least one fixing"),
    ((0, 100.0, 0.2, [0.5], 0.0, 0.0, 100.0, [-1.0]), "past fixings"),
    ((0, 100.0, 0.2, [0.5], 0.0, 0.0, 100.0, [], "harmonic"), "average must be"),
])
def test_bad_terms_raise(args, message):
    with pytest.raises(Exception, match=message):
        zep.AsianOption(*args)


def test_bad_engine_raises():
    option = zep.AsianOption(0, 100.0, 0.2, [0.5], 0.0, 0.0, 100.0)
    with pytest.raises(Exception, match="unknown Asian engine"):
        option.Price("closed-form")
    with pytest.raises(Exception, match="paths"):
        option.MonteCarlo(1)
    with pytest.raises(TypeError):
        zep.AsianOption.Price(None, "tw")
