"""Black-Scholes barrier options against QuantLib's analytic barrier engines, and the properties
that hold beyond what QuantLib covers (delivery after expiry, strikes outside a corridor)."""
import math

import pytest
import QuantLib as ql

import zep
from quantlib_reference import black_scholes_process

TODAY = ql.Date(2, 1, 2024)
DOWN_IN, DOWN_OUT, UP_IN, UP_OUT = 2, 3, 4, 5
DOUBLE_IN, DOUBLE_OUT = 6, 7


def quantlib_barrier(option_type, barrier_type, strike, levels, vol, days, rd, rf, spot):
    process = black_scholes_process(TODAY, spot, rd, rf, vol)
    payoff = ql.PlainVanillaPayoff(ql.Option.Call if option_type == 0 else ql.Option.Put, strike)
    exercise = ql.EuropeanExercise(TODAY + days)
    if len(levels) == 1:
        kind = {DOWN_IN: ql.Barrier.DownIn, DOWN_OUT: ql.Barrier.DownOut, UP_IN: ql.Barrier.UpIn,
                UP_OUT: ql.Barrier.UpOut}[barrier_type]
        option = ql.BarrierOption(kind, levels[0], 0.0, payoff, exercise)
        option.setPricingEngine(ql.AnalyticBarrierEngine(process))
    else:
        kind = ql.DoubleBarrier.KnockIn if barrier_type == DOUBLE_IN else ql.DoubleBarrier.KnockOut
        option = ql.DoubleBarrierOption(kind, levels[0], levels[1], 0.0, payoff, exercise)
        option.setPricingEngine(ql.AnalyticDoubleBarrierEngine(process, 10))
    return option.NPV()


SINGLE_CASES = [(option_type, barrier_type, strike, vol, days)
                for option_type in (0, 1)
                for barrier_type in (DOWN_IN, DOWN_OUT, UP_IN, UP_OUT)
                for strike in (88.0, 100.0, 112.0)
                for vol, days in ((0.25, 182), (0.08, 30), (0.6, 730))]


@pytest.mark.parametrize("option_type, barrier_type, strike, vol, days", SINGLE_CASES)
def test_single_barrier_matches_quantlib(option_type, barrier_type, strike, vol, days):
    barrier = 94.0 if barrier_type in (DOWN_IN, DOWN_OUT) else 106.0
    expected = quantlib_barrier(option_type, barrier_type, strike, [barrier], vol, days, 0.05, 0.02, 100.0)
    t = days / 365.0
    price = zep.EuropeanBarrierBS(option_type, barrier_type, strike, barrier, vol, t, t, 0.05, 0.02, 100.0).Price()
    assert price == pytest.approx(expected, rel=1e-11, abs=1e-12)


@pytest.mark.parametrize("option_type", [0, 1])
@pytest.mark.parametrize("barrier_type", [DOUBLE_IN, DOUBLE_OUT])
@pytest.mark.parametrize("strike", [85.0, 100.0, 115.0])
@pytest.mark.parametrize("vol, days", [(0.25, 182), (0.1, 60), (0.4, 365)])
def test_corridor_matches_quantlib_for_strikes_inside_it(option_type, barrier_type, strike, vol, days):
    expected = quantlib_barrier(option_type, barrier_type, strike, [80.0, 120.0], vol, days, 0.05, 0.02, 100.0)
    t = days / 365.0
    price = zep.EuropeanBarrierBS(option_type, barrier_type, strike, 80.0, 120.0, vol, t, t, 0.05, 0.02, 100.0).Price()
    assert price == pytest.approx(expected, rel=1e-10, abs=1e-12)


def double_out(option_type, strike):
    return zep.EuropeanBarrierBS(option_type, DOUBLE_OUT, strike, 80.0, 120.0, 0.25, 0.5, 0.5, 0.05, 0.02,
                                 100.0).Price()


@pytest.mark.parametrize("option_type, edge, outside", [(0, 80.0, [60.0, 70.0]), (1, 120.0, [130.0, 140.0])])
def test_corridor_strike_beyond_a_level_adds_a_cash_amount_per_unit_of_strike(option_type, edge, outside):
    # Past a level the knocked-out payoff is linear in the strike, with the slope the price has
    # just inside the level: the discounted probability of surviving (and ending beyond K).
    h = 1e-4
    inside = edge + h if option_type == 0 else edge - h
    slope = (double_out(option_type, inside) - double_out(option_type, edge)) / (inside - edge)
    for strike in outside:
        expected = double_out(option_type, edge) + slope * (strike - edge)
        assert double_out(option_type, strike) == pytest.approx(expected, rel=1e-6)


@pytest.mark.parametrize("option_type", [0, 1])
@pytest.mark.parametrize("barrier_type, levels", [(DOWN_OUT, (1e-6,)), (UP_OUT, (1e6,)), (DOUBLE_OUT, (1e-6, 1e6))])
def test_barriers_out_of_reach_give_the_vanilla_with_delivery_after_expiry(option_type, barrier_type, levels):
    vanilla = zep.BSVanilla(option_type, 105.0, 0.2, 0.5, 0.52, 0.04, 0.015, 100.0).Price()
    barrier = zep.EuropeanBarrierBS(option_type, barrier_type, 105.0, *levels, 0.2, 0.5, 0.52, 0.04, 0.015, 100.0)
    assert barrier.Price() == pytest.approx(vanilla, rel=1e-12)


@pytest.mark.parametrize("barrier_type, level, alive", [(DOWN_OUT, 101.0, False), (DOWN_IN, 101.0, True),
                                                        (UP_OUT, 99.0, False), (UP_IN, 99.0, True)])
def test_a_barrier_already_touched_leaves_nothing_or_the_vanilla(barrier_type, level, alive):
    vanilla = zep.BSVanilla(0, 100.0, 0.2, 0.5, 0.5, 0.04, 0.015, 100.0).Price()
    price = zep.EuropeanBarrierBS(0, barrier_type, 100.0, level, 0.2, 0.5, 0.5, 0.04, 0.015, 100.0).Price()
    assert price == (pytest.approx(vanilla, rel=1e-15) if alive else 0.0)


def test_delivery_after_expiry_discounts_the_knock_out_to_delivery():
    # With no carry the drift does not depend on the delivery date: only the discounting moves.
    at_expiry = zep.EuropeanBarrierBS(0, UP_OUT, 100.0, 115.0, 0.2, 0.5, 0.5, 0.03, 0.03, 100.0).Price()
    later = zep.EuropeanBarrierBS(0, UP_OUT, 100.0, 115.0, 0.2, 0.5, 0.6, 0.03, 0.03, 100.0).Price()
    assert later == pytest.approx(at_expiry * math.exp(-0.03 * 0.1), rel=1e-13)


@pytest.mark.parametrize("arguments, message", [
    ((0, DOUBLE_OUT, 100.0, 120.0, 80.0, 0.2, 0.5, 0.5, 0.03, 0.01, 100.0),
     "For double barrier, barrierLow must be less than barrierUp."),
    ((0, UP_OUT, 100.0, 80.0, 120.0, 0.2, 0.5, 0.5, 0.03, 0.01, 100.0),
     "For double barrier, barrierType must be DOUBLE_KNOCK_IN or DOUBLE_KNOCK_OUT."),
    ((0, DOUBLE_IN, 100.0, 120.0, 0.2, 0.5, 0.5, 0.03, 0.01, 100.0), "Unsupported barrier type"),
    ((0, UP_OUT, -1.0, 120.0, 0.2, 0.5, 0.5, 0.03, 0.01, 100.0), "strike must be positive"),
    ((0, UP_OUT, 100.0, 120.0, 0.0, 0.5, 0.5, 0.03, 0.01, 100.0), "volatility must be a positive percentage!"),
    ((0, UP_OUT, 100.0, 120.0, 0.2, 0.5, 0.4, 0.03, 0.01, 100.0), "time to expiry <= time to delivery"),
])
def test_bad_terms_are_refused_with_their_message(arguments, message):
    with pytest.raises(RuntimeError, match=message.replace("(", r"\(").replace(")", r"\)")):
        zep.EuropeanBarrierBS(*arguments)


def test_an_unknown_barrier_type_fails_when_priced():
    option = zep.EuropeanBarrierBS(0, 9, 100.0, 120.0, 0.2, 0.5, 0.5, 0.03, 0.01, 100.0)
    with pytest.raises(RuntimeError, match=r"Unknown barrier type in EuropeanBarrierBS::Price\(\)\."):
        option.Price()


def test_a_book_prices_each_row_as_the_pricer_and_marks_bad_rows():
    import numpy

    rows = [(0, DOWN_OUT, 100.0, 90.0, 0.0, 0.2), (1, UP_IN, 95.0, 110.0, 0.0, 0.3), (0, DOUBLE_OUT, 100.0, 80.0, 125.0, 0.25),
            (1, DOUBLE_IN, 105.0, 85.0, 120.0, 0.15), (0, 9, 100.0, 90.0, 0.0, 0.2), (0, UP_OUT, 100.0, 120.0, 0.0, -0.1)]
    types, barrier_types, strikes, lows, highs, vols = map(numpy.array, zip(*rows))
    prices = zep.PriceBarrierBook(types, barrier_types, strikes, lows, highs, vols, 0.5, 0.52, 0.03, 0.01, 100.0)
    for row, price in zip(rows[:4], prices[:4]):
        option_type, barrier_type, strike, low, high, vol = row
        levels = (low, high) if barrier_type in (DOUBLE_IN, DOUBLE_OUT) else (low,)
        single = zep.EuropeanBarrierBS(option_type, barrier_type, strike, *levels, vol, 0.5, 0.52, 0.03, 0.01, 100.0)
        assert price == single.Price()
    assert numpy.isnan(prices[4:]).all()


@pytest.mark.parametrize("barrier_type, barrier, shift_sign", [(DOWN_OUT, 92.0, -1.0), (UP_OUT, 112.0, 1.0)])
def test_a_daily_monitored_barrier_in_monte_carlo_matches_the_shifted_closed_form(barrier_type, barrier, shift_sign):
    # Broadie, Glasserman and Kou: a barrier watched at steps dt prices like a continuous one moved
    # away from the spot by exp(0.5826 sigma sqrt(dt)).
    import datetime

    vol, days = 0.2, 91
    today = datetime.date(2024, 1, 2)
    dates = [(today + datetime.timedelta(days=d)).isoformat() for d in range(1, days + 1)]
    touched = "<=" if barrier_type == DOWN_OUT else ">="
    scripts = [f"IF SPOT() {touched} {barrier} THEN KO = 1 ENDIF"] * (days - 1)
    scripts.append(f"IF SPOT() {touched} {barrier} THEN KO = 1 ENDIF C PAYS (1 - KO) * MAX(SPOT() - 100, 0)")
    note = zep.MXScriptStructure(today.isoformat(), 100.0, vol, 0.03, 0.01, 1, [], dates, scripts, 200_000)
    shifted = barrier * math.exp(shift_sign * 0.5826 * vol * math.sqrt(1 / 365))
    t = days / 365
    exact = zep.EuropeanBarrierBS(0, barrier_type, 100.0, shifted, vol, t, t, 0.03, 0.01, 100.0).Price()
    assert abs(note.Price() - exact) < 4 * note.PriceStandardError()


def booked_barrier(method_dates=("2024-01-15", "2024-07-15", "2024-07-17", "2024-07-17", "2024-07-17"),
                   smile=(math.nan, math.nan)):
    reference, expiry, settlement, premium, delivery = method_dates
    # Two constructors (a volatility or a surface): arguments by position.
    return zep.VanillaBarriers(-1, 0, 2e6, 1.10, DOWN_OUT, 1.02, 0.0, 1.08, reference, expiry, settlement, premium,
                               delivery, 0.035, 0.02, 0.09, *smile)


def test_a_booked_barrier_prices_as_its_engines():
    option = booked_barrier(smile=(-0.01, 0.003))
    t, td = option.GetTimeToExpiry(), option.GetTimeToDelivery()
    closed_form = zep.EuropeanBarrierBS(0, DOWN_OUT, 1.10, 1.02, 0.09, t, td, 0.035, 0.02, 1.08).Price()
    smile = zep.EuropeanBarrierVV_Fisher(1.08, 0.035, 0.02, 0.09, t, td, -0.01, 0.003, 1.10, 0, DOWN_OUT, 1.02, 0, False)
    assert option.PV() == pytest.approx(-2e6 * closed_form, rel=1e-15)
    assert option.Price(1) == pytest.approx(smile.Price(), rel=1e-15)
    assert option.Price(2) == pytest.approx(closed_form, rel=1e-4)
    bump = 1e-4
    up = zep.EuropeanBarrierBS(0, DOWN_OUT, 1.10, 1.02, 0.09 + bump, t, td, 0.035, 0.02, 1.08).Price()
    down = zep.EuropeanBarrierBS(0, DOWN_OUT, 1.10, 1.02, 0.09 - bump, t, td, 0.035, 0.02, 1.08).Price()
    assert option.DeltaPrice("spot_Volatility", bump) == pytest.approx((up - down) / (2 * bump), rel=1e-12)


@pytest.mark.parametrize("call, message", [
    (lambda: booked_barrier().Price(3), "BSREPLICATE not supported for VanillaBarrier!"),
    (lambda: booked_barrier().Price(7), "PricingMethod not supported for VanillaBarrier!"),
    (lambda: booked_barrier().DeltaPrice("spot", 0.01), "not supported fieldName!"),
    (lambda: booked_barrier(("2024-01-15", "2024-07-15", "2024-07-17", "2024-07-18", "2024-07-17")),
     "Premium date should not later than settlement date!"),
])
def test_a_booked_barrier_refuses_what_it_lacks(call, message):
    with pytest.raises(RuntimeError, match=message):
        call()


def test_a_booked_barrier_on_an_fx_surface_reads_its_smile():
    usd = zep.YieldCurve.FromZeroRates("2024-01-15", ["2025-01-15"], [0.035], zep.Continuous, 1)
    eur = zep.YieldCurve.FromZeroRates("2024-01-15", ["2025-01-15"], [0.02], zep.Continuous, 1)
    surface = zep.FXVolSurface.FromTenors("2024-01-15", "2024-01-17", 1.08, ["3M", "6M", "1Y"], ["ATM", "25RR", "25BF"],
                                          [[0.076, -0.0037, 0.0021], [0.079, -0.0043, 0.0023], [0.0815, -0.005, 0.0026]],
                                          usd, eur)
    option = zep.VanillaBarriers(1, 0, 1.0, 1.10, DOWN_OUT, 1.02, 0.0, 1.08, "2024-01-15", "2024-07-15", "2024-07-17",
                                 "2024-07-17", "2024-07-17", 0.035, 0.02, surface)
    t, td = option.GetTimeToExpiry(), option.GetTimeToDelivery()
    expiry = zep.Date("2024-07-15")
    at_strike = surface.GetVolatility(expiry, 1.10)
    assert option.Price() == pytest.approx(
        zep.EuropeanBarrierBS(0, DOWN_OUT, 1.10, 1.02, at_strike, t, td, 0.035, 0.02, 1.08).Price(), rel=1e-14)
    call25 = surface.GetVolatility(expiry, surface.GetStrike(expiry, "25C"))
    put25 = surface.GetVolatility(expiry, surface.GetStrike(expiry, "25P"))
    atm = surface.GetATMVol(expiry)
    smile = zep.EuropeanBarrierVV_Fisher(1.08, 0.035, 0.02, atm, t, td, call25 - put25,
                                         (call25 + put25) / 2 - atm, 1.10, 0, DOWN_OUT, 1.02, 0, False)
    assert option.Price(1) == pytest.approx(smile.Price(), rel=1e-12)
