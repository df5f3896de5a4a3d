"""American options: the finite-difference engine, Barone-Adesi-Whaley and the Leisen-Reimer
tree against QuantLib's engines, against each other, and the call that is never exercised early."""
import numpy as np
import pytest
import QuantLib as ql

import zep
from quantlib_reference import black_scholes_process

TODAY = ql.Date(2, 1, 2024)
CASES = [  # option type, strike, volatility, days, rd, rf, spot
    (1, 100.0, 0.20, 365, 0.05, 0.00, 100.0),
    (1, 110.0, 0.35, 180, 0.03, 0.01, 100.0),
    (0, 1.10, 0.10, 730, 0.01, 0.04, 1.12),
    (0, 95.0, 0.25, 90, 0.02, 0.06, 100.0),
]


def quantlib_american(option_type, strike, vol, days, rd, rf, spot, engine):
    process = black_scholes_process(TODAY, spot, rd, rf, vol)
    payoff = ql.PlainVanillaPayoff(ql.Option.Call if option_type == 0 else ql.Option.Put, strike)
    option = ql.VanillaOption(payoff, ql.AmericanExercise(TODAY, TODAY + days))
    option.setPricingEngine({"baw": lambda: ql.BaroneAdesiWhaleyApproximationEngine(process),
                             "bjerksund": lambda: ql.BjerksundStenslandApproximationEngine(process),
                             "lr": lambda: ql.BinomialVanillaEngine(process, "lr", 2001),
                             "fd": lambda: ql.FdBlackScholesVanillaEngine(process, 400, 400)}[engine]())
    return option.NPV()


def american(option_type, strike, vol, days, rd, rf, spot):
    return zep.AmericanOption(option_type, strike, vol, days / 365.0, rd, rf, spot)


@pytest.mark.parametrize("case", CASES)
def test_barone_adesi_whaley_matches_quantlib(case):
    """Both stop the critical-spot search at about 1e-6 of the strike."""
    assert american(*case).Price("baw") == pytest.approx(quantlib_american(*case, "baw"), abs=1e-6)


@pytest.mark.parametrize("case", CASES)
def test_bjerksund_stensland_lies_between_quantlib_single_boundary_and_the_finite_differences(case):
    """QuantLib's engine is the 1993 approximation (one flat boundary); the 2002 approximation
    (two) exercises at least as well, so it is not below it, and stays below the American price
    (finite differences, 400 x 400) by a few basis points of the strike."""
    price = american(*case).Price("bjerksund-stensland")
    single_boundary = quantlib_american(*case, "bjerksund")
    accurate = american(*case).Price("fd", 400, 400)
    assert single_boundary - 1e-9 <= price <= accurate + 1e-4
    assert accurate - price < 2e-3 * case[1]


@pytest.mark.parametrize("case, expected", zip(CASES, [6.015933827823886, 15.355603632404282,
                                                      0.048967238671532076, 7.175185539595759]))
def test_bjerksund_stensland_matches_an_independent_evaluation(case, expected):
    """The published 2002 formulas evaluated separately in Python with SciPy's bivariate normal."""
    assert american(*case).Price("bjerksund-stensland") == pytest.approx(expected, abs=1e-9)


def test_bjerksund_stensland_call_without_dividends_is_european():
    option = zep.AmericanOption(0, 100.0, 0.2, 1.0, 0.05, 0.0, 100.0)
    assert option.Price("bjerksund-stensland") == pytest.approx(option.EuropeanPrice(), abs=1e-14)


def test_barone_adesi_whaley_over_arrays_matches_quantlib_row_by_row():
    """The test cases as columns, and one row with a negative volatility that comes back NaN."""
    columns = [np.array([c[i] for c in CASES] + [v]) for i, v in enumerate((1, 100.0, -0.2, 365, 0.05, 0.0, 100.0))]
    types, strikes, vols, days, rd, rf, spots = columns
    prices = zep.BaroneAdesiWhaleyPrices(types, strikes, vols, days / 365.0, rd, rf, spots)
    expected = [quantlib_american(*case, "baw") for case in CASES]
    np.testing.assert_allclose(prices[:-1], expected, rtol=0, atol=1e-6)
    assert np.isnan(prices[-1])


ARRAY_ENGINES = [(zep.BaroneAdesiWhaleyPrices, "baw"), (zep.BjerksundStenslandPrices, "bjerksund-stensland")]


@pytest.mark.parametrize("prices_of, engine", ARRAY_ENGINES)
def test_approximations_over_arrays_equal_the_single_prices_row_by_row(prices_of, engine):
    """The test cases plus refused rows (negative volatility, option type 2, negative spot): NaN
    exactly where AmericanOption refuses the terms."""
    rows = CASES + [(1, 100.0, -0.2, 365, 0.05, 0.0, 100.0), (2, 100.0, 0.2, 365, 0.05, 0.0, 100.0),
                    (0, 100.0, 0.2, 365, 0.05, 0.02, -1.0)]
    types, strikes, vols, days, rd, rf, spots = (np.array(column, dtype=float) for column in zip(*rows))
    prices = prices_of(types, strikes, vols, days / 365.0, rd, rf, spots)
    for row, price in zip(CASES, prices):
        assert price == american(*row).Price(engine)
    assert np.isnan(prices[len(CASES):]).all()


@pytest.mark.parametrize("prices_of, engine", ARRAY_ENGINES)
def test_approximations_over_arrays_broadcast_scalars(prices_of, engine):
    strikes = np.array([[90.0, 100.0], [110.0, 120.0]])
    prices = prices_of(1, strikes, 0.3, 0.5, 0.05, 0.01, 100.0)
    assert prices.shape == (2, 2)
    for k, price in zip(strikes.ravel(), prices.ravel()):
        assert price == zep.AmericanOption(1, k, 0.3, 0.5, 0.05, 0.01, 100.0).Price(engine)


def test_approximations_over_arrays_refuse_columns_of_different_lengths():
    with pytest.raises(Exception, match="broadcast|same length"):
        zep.BjerksundStenslandPrices([1, 1], [100.0, 110.0, 120.0], 0.2, 1.0, 0.05, 0.0, 100.0)


@pytest.mark.parametrize("case", CASES)
def test_leisen_reimer_tree_matches_quantlib(case):
    assert american(*case).Price("binomial", timeSteps=2001) == pytest.approx(
        quantlib_american(*case, "lr"), abs=1e-6)


@pytest.mark.parametrize("case", CASES)
def test_finite_differences_match_quantlib_and_the_tree(case):
    reference = quantlib_american(*case, "lr")
    price = american(*case).Price("fd", 800, 800)
    assert price == pytest.approx(reference, abs=2e-3 * case[6] / 100.0)
    assert quantlib_american(*case, "fd") == pytest.approx(reference, abs=2e-3 * case[6] / 100.0)


def test_finite_difference_error_falls_with_the_grid():
    option = american(*CASES[0])
    reference = option.Price("binomial", timeSteps=10001)
    errors = [abs(option.Price("fd", n, n) - reference) for n in (50, 100, 200, 400)]
    assert all(later < earlier for earlier, later in zip(errors, errors[1:])), errors


@pytest.mark.parametrize("case", CASES)
def test_the_three_methods_agree(case):
    """Barone-Adesi-Whaley is an approximation: within 0.5% of the price here."""
    option = american(*case)
    tree = option.Price("binomial", timeSteps=2001)
    assert option.Price("fd", 400, 400) == pytest.approx(tree, abs=3e-3 * case[6] / 100.0)
    assert option.Price("baw") == pytest.approx(tree, rel=5e-3)


@pytest.mark.parametrize("rf", [0.0, -0.01])
def test_call_without_dividends_is_european(rf):
    option = zep.AmericanOption(0, 100.0, 0.25, 1.5, 0.04, rf, 100.0)
    european = option.EuropeanPrice()
    assert option.Price("baw") == european
    assert option.Price("binomial", timeSteps=2001) == pytest.approx(european, abs=1e-3)
    assert option.Price("fd", 800, 800) == pytest.approx(european, abs=1e-3)


def test_put_exercise_boundary_lies_below_the_strike_and_rises_to_it():
    boundary = zep.AmericanOption(1, 100.0, 0.2, 1.0, 0.05, 0.0, 100.0).ExerciseBoundary(400, 400)
    times = [t for t, _ in boundary]
    spots = [s for _, s in boundary]
    assert times == sorted(times) and times[0] == 0.0
    assert all(s < 100.0 for s in spots)
    assert all(later >= earlier for earlier, later in zip(spots, spots[1:]))
    assert spots[-1] > 95.0


@pytest.mark.parametrize("call, message", [
    (lambda o: o.Price("trinomial"), "unknown American engine"),
    (lambda o: o.Price("fd", 3, 200), "at least 5 spot nodes"),
    (lambda o: o.Price("fd", 200, 1), "at least 2 time steps"),
    (lambda o: o.Price("fd", 200, 10**9), "at most 100000"),
    (lambda o: o.Price("binomial", timeSteps=0), "steps must lie"),
])
def test_bad_engine_settings_raise(call, message):
    with pytest.raises(Exception, match=message):
        call(zep.AmericanOption(1, 100.0, 0.2, 1.0, 0.05, 0.0, 100.0))


def test_bad_terms_raise():
    with pytest.raises(Exception):
        zep.AmericanOption(1, -100.0, 0.2, 1.0, 0.05, 0.0, 100.0)
    with pytest.raises(Exception):
        zep.AmericanOption(1, 100.0, 0.0, 1.0, 0.05, 0.0, 100.0)
    with pytest.raises(TypeError):
        zep.AmericanOption.Price(None, "fd")


def booked_vanilla(call_put, rf):
    return zep.MVanillaOption(1, call_put, 1.0, 1.10, 1.08, "2024-01-15", "2025-01-15", "2025-01-17",
                              "2025-01-17", 0.05, rf, 0.10)


def test_vanilla_exercise_boundaries_are_the_american_engines():
    option = booked_vanilla(1, 0.01)
    boundary = option.AmericanExerciseBoundaries(300, 300)
    engine = zep.AmericanOption(1, 1.10, 0.10, option.GetTimeToExpiry(), 0.05, 0.01, 1.08)
    assert boundary == engine.ExerciseBoundary(300, 300)
    assert all(spot < 1.10 for _, spot in boundary)


def test_call_without_dividends_has_no_exercise_boundary():
    assert booked_vanilla(0, 0.0).AmericanExerciseBoundaries() == []


def test_exercise_boundaries_of_a_disposed_option_raise():
    option = booked_vanilla(1, 0.0)
    option.Dispose()
    with pytest.raises(Exception, match="not initialized"):
        option.AmericanExerciseBoundaries()
