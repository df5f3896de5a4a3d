"""The booked barrier, digital and range digital behind the M-class frame: the same figures as
the library classes, dates in every form a user has them, the smile-consistent digital as the
strike derivative of the booked vanilla on the same surface, and failures under their prefixes."""
import datetime

import pytest

import zep

REF, EXPIRY, DELIVERY = "2024-01-15", "2024-07-15", "2024-07-17"
SPOT, RD, RF = 1.08, 0.035, 0.02
DOWN_OUT = 3


@pytest.fixture(scope="module")
def surface():
    usd = zep.YieldCurve.FromZeroRates(REF, ["2025-01-15"], [RD], zep.Continuous, 1)
    eur = zep.YieldCurve.FromZeroRates(REF, ["2025-01-15"], [RF], zep.Continuous, 1)
    return zep.FXVolSurface.FromTenors(REF, "2024-01-17", SPOT, ["3M", "6M", "1Y"], ["ATM", "25RR", "25BF"],
                                       [[0.076, -0.0037, 0.0021], [0.079, -0.0043, 0.0023], [0.0815, -0.005, 0.0026]],
                                       usd, eur)


def booked_barrier(vol, reference=REF, *quotes):
    # Positional only: the M classes have an empty constructor beside the full one.
    return zep.MVanillaBarriers(-1, 0, 2e6, 1.10, DOWN_OUT, 1.02, 0.0, SPOT, reference, EXPIRY, DELIVERY, DELIVERY,
                                DELIVERY, RD, RF, vol, *quotes)


@pytest.mark.parametrize("reference", [REF, zep.Date(REF), datetime.date(2024, 1, 15)])
def test_the_booked_barrier_prices_as_the_library_instrument_on_one_volatility(reference):
    booked = booked_barrier(0.08, reference, -0.004, 0.002)
    library = zep.VanillaBarriers(1, 0, 1.0, 1.10, DOWN_OUT, 1.02, 0.0, SPOT, zep.Date(REF), zep.Date(EXPIRY),
                                  zep.Date(DELIVERY), zep.Date(DELIVERY), zep.Date(DELIVERY), RD, RF, 0.08, -0.004, 0.002)
    for method in (0, 1, 2):
        assert booked.Price(method) == library.Price(method)
        assert booked.PV(method) == pytest.approx(-2e6 * library.Price(method), rel=1e-15)
    assert booked.DeltaPrice("spot_Volatility", 1e-4, 1) == library.DeltaPrice("spot_Volatility", 1e-4, 1)


def test_the_booked_barrier_on_a_surface_takes_its_vanna_volga_quotes_from_it(surface):
    booked = booked_barrier(surface)
    library = zep.VanillaBarriers(1, 0, 1.0, 1.10, DOWN_OUT, 1.02, 0.0, SPOT, zep.Date(REF), zep.Date(EXPIRY),
                                  zep.Date(DELIVERY), zep.Date(DELIVERY), zep.Date(DELIVERY), RD, RF, surface)
    assert booked.Price(1) == library.Price(1)
    assert booked.Price(0) == library.Price(0)


@pytest.mark.parametrize("call, message", [
    (lambda: booked_barrier(0.08).Price(3), "MVanillaBarriers::Price failed: BSREPLICATE not supported for VanillaBarrier!"),
    (lambda: booked_barrier(0.08).Price(1), "MVanillaBarriers::Price failed: VanillaBarriers: Vanna-Volga needs"),
    (lambda: booked_barrier(0.08, "2024-02-30"), "MVanillaBarriers::MVanillaBarriers failed: Day outside of month range"),
    (lambda: booked_barrier(None), "MVanillaBarriers::MVanillaBarriers failed: VanillaBarriers: no volatility source"),
    (lambda: zep.MVanillaBarriers().Price(), "MVanillaBarriers::Price failed: not initialized!"),
])
def test_booked_barrier_failures_carry_the_wrapper_prefix(call, message):
    with pytest.raises(RuntimeError) as raised:
        call()
    assert str(raised.value).startswith(message)


def booked_digital(kind, strike, vol, side=1, payout=1e6):
    return zep.MDigitalOption(side, kind, payout, strike, SPOT, REF, EXPIRY, DELIVERY, RD, RF, vol)


def booked_vanilla(call_put, strike, vol):
    return zep.MVanillaOption(1, call_put, 1.0, strike, SPOT, REF, EXPIRY, DELIVERY, DELIVERY, RD, RF, vol)


@pytest.mark.parametrize("strike", [1.02, 1.08, 1.15])
def test_the_smile_digital_is_the_strike_derivative_of_the_booked_vanilla_on_the_surface(surface, strike):
    h = 1e-4
    call_slope = (booked_vanilla(0, strike + h, surface).Price() - booked_vanilla(0, strike - h, surface).Price()) / (2 * h)
    put_slope = (booked_vanilla(1, strike + h, surface).Price() - booked_vanilla(1, strike - h, surface).Price()) / (2 * h)
    assert booked_digital(0, strike, surface, payout=1.0).Price(2) == pytest.approx(-call_slope, abs=2e-7)
    assert booked_digital(1, strike, surface, payout=1.0).Price(2) == pytest.approx(put_slope, abs=2e-7)
    # Asset digitals by parity with the smile vanilla: C = AssetCall - K CashCall, P = K CashPut - AssetPut.
    call = booked_vanilla(0, strike, surface).Price()
    put = booked_vanilla(1, strike, surface).Price()
    assert booked_digital(2, strike, surface, payout=1.0).Price(2) == pytest.approx(call - strike * call_slope, abs=2e-7)
    assert booked_digital(3, strike, surface, payout=1.0).Price(2) == pytest.approx(strike * put_slope - put, abs=2e-7)


@pytest.mark.parametrize("kind", [0, 1, 2, 3])
def test_on_one_volatility_the_booked_digital_is_the_black_scholes_digital(kind):
    booked = booked_digital(kind, 1.09, 0.08, side=-1)
    t = zep.DayCounter(zep.Act365Fixed).YearFraction(zep.Date(REF), zep.Date(EXPIRY))
    td = zep.DayCounter(zep.Act365Fixed).YearFraction(zep.Date(REF), zep.Date(DELIVERY))
    engine = zep.DigitalOptionBS(kind, 1.09, 0.08, t, td, RD, RF, SPOT, 1e6)
    assert booked.Price(0) == engine.Price()
    assert booked.Price(2) == pytest.approx(engine.Price(), rel=1e-12)
    assert booked.PV(0) == -engine.Price()
    assert (booked.Delta(), booked.Gamma(), booked.Vega(), booked.Rho()) == (
        engine.Delta(), engine.Gamma(), engine.Vega(), engine.Rho())


def test_the_booked_range_digital_prices_as_the_library_instrument():
    booked = zep.MDoubleDigitalOption(datetime.date(2024, 1, 15), EXPIRY, DELIVERY, 1.02, 1.14, 1e6, SPOT, 0.08, RD, RF)
    library = zep.DoubleDigitalOption(zep.Date(REF), zep.Date(EXPIRY), zep.Date(DELIVERY), 1.02, 1.14, 1e6, SPOT, 0.08,
                                      RD, RF)
    assert booked.Price(0) == library.Price(0)
    assert booked.Price(1) == pytest.approx(library.Price(0), rel=1e-3)


@pytest.mark.parametrize("call, message", [
    (lambda: booked_digital(4, 1.09, 0.08), "MDigitalOption::MDigitalOption failed: Unsupported digital option type"),
    (lambda: booked_digital(0, 1.09, 0.08).Price(7), "MDigitalOption::Price failed: Unknown pricing method for DigitalOptionBS!"),
    (lambda: booked_digital(0, -1.0, 0.08), "MDigitalOption::MDigitalOption failed: DigitalOptionBS: strike must be positive"),
    (lambda: zep.MDoubleDigitalOption(REF, EXPIRY, DELIVERY, 1.14, 1.02, 1.0, SPOT, 0.08, RD, RF),
     "MDoubleDigitalOption::MDoubleDigitalOption failed: Low barrier must be less than high barrier"),
    (lambda: zep.MDoubleDigitalOption().Price(), "MDoubleDigitalOption::Price failed: not initialized!"),
])
def test_booked_digital_failures_carry_the_wrapper_prefix(call, message):
    with pytest.raises(RuntimeError) as raised:
        call()
    assert str(raised.value).startswith(message)
