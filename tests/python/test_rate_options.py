"""Caps, floors and European swaptions: cap - floor and payer - receiver parities against the
swaps they replicate, QuantLib's Black and Bachelier engines on the same conventions, implied
volatility round trips, the par-yield annuity of cash settlement, pickling and every refusal."""
import pickle

import pytest
import QuantLib as ql

import zep

from quantlib_reference import ql_date

REFERENCE = "2024-01-15"
PILLARS = ["2024-01-15", "2024-07-15", "2025-01-15", "2027-01-15", "2030-01-15", "2034-01-15"]
ZEROS = [0.031, 0.0325, 0.0318, 0.0295, 0.0301, 0.0312]
DISCOUNT_ZEROS = [0.029, 0.030, 0.0295, 0.0275, 0.0280, 0.0290]
NEGATIVE_ZEROS = [-0.004, -0.005, -0.003, -0.002, -0.001, 0.0]
MODELS = [("BLACK", 0.25, 0.0), ("SHIFTEDBLACK", 0.18, 0.01), ("BACHELIER", 0.0085, 0.0)]


def zep_curve(zeros):
    return zep.YieldCurve.FromZeroRates(REFERENCE, PILLARS, zeros, zep.Continuous, zep.DayCounter(zep.Act365Fixed))


def ql_curve(zeros):
    ql.Settings.instance().evaluationDate = ql_date(REFERENCE)
    return ql.YieldTermStructureHandle(ql.ZeroCurve([ql_date(p) for p in PILLARS], zeros, ql.Actual365Fixed(),
                                                    ql.TARGET(), ql.Linear(), ql.Continuous))


@pytest.fixture(scope="module")
def projection():
    return zep_curve(ZEROS)


@pytest.fixture(scope="module")
def discount():
    return zep_curve(DISCOUNT_ZEROS)


def cap(kind, discount, projection, model="BLACK", vol=0.25, shift=0.0, strike=0.03, **kwargs):
    return zep.MCapFloor(kind, 1e6, strike, "2024-04-17", "2029-04-17", discount, projection, vol, model, shift,
                         **kwargs)


def swaption(kind, discount, projection, model="BLACK", vol=0.25, shift=0.0, strike=0.03, **kwargs):
    return zep.MSwaption(kind, 1e6, strike, "2025-01-15", "2025-01-17", "2030-01-17", discount, projection, vol,
                         model, shift, **kwargs)


# --- caps and floors -------------------------------------------------------------------------

@pytest.mark.parametrize("model, vol, shift", MODELS)
@pytest.mark.parametrize("strike", [0.02, 0.03, 0.045])
def test_cap_minus_floor_is_the_payer_swap(discount, projection, model, vol, shift, strike):
    parity = (cap("CAP", discount, projection, model, vol, shift, strike).PV()
              - cap("FLOOR", discount, projection, model, vol, shift, strike).PV())
    swap = zep.MVanillaSwap(1, 1e6, strike, "2024-04-17", "2029-04-17", discount, projection, index="EURIBOR3M",
                            fixedTenor="3M", fixedDayCounter=zep.DayCounter(zep.Act360), floatTenor="3M")
    assert parity == pytest.approx(swap.PV(), abs=1e-8)


def ql_cap(kind, strike, engine):
    curve = ql_curve(ZEROS)
    schedule = ql.Schedule(ql.Date(17, 4, 2024), ql.Date(17, 4, 2029), ql.Period("3M"), ql.TARGET(),
                           ql.ModifiedFollowing, ql.ModifiedFollowing, ql.DateGeneration.Backward, False)
    leg = ql.IborLeg([1e6], schedule, ql.Euribor3M(curve), ql.Actual360())
    instrument = (ql.Cap if kind == "CAP" else ql.Floor)(leg, [strike])
    instrument.setPricingEngine(engine)
    return instrument, [ql.as_floating_rate_coupon(c).indexFixing() for c in leg]


@pytest.mark.parametrize("model, vol, shift", MODELS)
@pytest.mark.parametrize("kind", ["CAP", "FLOOR"])
def test_cap_floor_agrees_with_quantlib(discount, projection, model, vol, shift, kind):
    ql_discount, quote = ql_curve(DISCOUNT_ZEROS), ql.QuoteHandle(ql.SimpleQuote(vol))
    engine = (ql.BachelierCapFloorEngine(ql_discount, quote) if model == "BACHELIER"
              else ql.BlackCapFloorEngine(ql_discount, quote, ql.Actual365Fixed(), shift))
    reference, forwards = ql_cap(kind, 0.03, engine)
    ours = cap(kind, discount, projection, model, vol, shift)
    assert ours.PV() == pytest.approx(reference.NPV(), rel=1e-8)
    assert list(ours.CapletPVs()) == pytest.approx(list(reference.optionletsPrice()), rel=1e-8, abs=1e-9)
    assert list(ours.ForwardRates()) == pytest.approx(forwards, rel=1e-10)


@pytest.mark.parametrize("model, vol, shift", MODELS)
@pytest.mark.parametrize("kind, strike", [("CAP", 0.025), ("FLOOR", 0.035), ("CAP", 0.05)])
def test_cap_implied_volatility_round_trip(discount, projection, model, vol, shift, kind, strike):
    instrument = cap(kind, discount, projection, model, vol, shift, strike)
    assert instrument.ImpliedVolatility(instrument.PV()) == pytest.approx(vol, rel=1e-9)


def test_cap_is_the_sum_of_its_caplets(discount, projection):
    instrument = cap("CAP", discount, projection)
    assert sum(instrument.CapletPVs()) == pytest.approx(instrument.PV(), rel=1e-14)
    assert len(instrument.CapletPVs()) == 20


def test_shifted_and_normal_models_price_negative_rates():
    negative = zep_curve(NEGATIVE_ZEROS)
    floor = cap("FLOOR", negative, negative, "SHIFTEDBLACK", 0.2, 0.02, strike=0.0)
    assert floor.PV() > 0.0
    assert cap("FLOOR", negative, negative, "BACHELIER", 0.006, strike=0.0).PV() > 0.0
    with pytest.raises(RuntimeError, match=r"^MCapFloor::MCapFloor failed: .*the forward rate -0\.00"):
        cap("FLOOR", negative, negative, "BLACK", 0.2, strike=0.01)


# --- swaptions -------------------------------------------------------------------------------

@pytest.mark.parametrize("model, vol, shift", MODELS)
@pytest.mark.parametrize("strike", [0.02, 0.03, 0.04])
def test_payer_minus_receiver_is_the_forward_swap(discount, projection, model, vol, shift, strike):
    payer = swaption("PAYER", discount, projection, model, vol, shift, strike)
    receiver = swaption("RECEIVER", discount, projection, model, vol, shift, strike)
    swap = zep.MVanillaSwap(1, 1e6, strike, "2025-01-17", "2030-01-17", discount, projection)
    assert payer.PV() - receiver.PV() == pytest.approx(swap.PV(), abs=1e-8)
    assert payer.ForwardSwapValue() == pytest.approx(swap.PV(), rel=1e-12)
    assert payer.ForwardRate() == pytest.approx(swap.ParRate(), rel=1e-12)


@pytest.mark.parametrize("model, vol, shift", MODELS)
@pytest.mark.parametrize("kind", ["PAYER", "RECEIVER"])
def test_swaption_agrees_with_quantlib(discount, projection, model, vol, shift, kind):
    ql_discount, quote = ql_curve(DISCOUNT_ZEROS), ql.QuoteHandle(ql.SimpleQuote(vol))
    target = ql.TARGET()
    start, end = ql.Date(17, 1, 2025), ql.Date(17, 1, 2030)
    fixed = ql.Schedule(start, end, ql.Period("1Y"), target, ql.ModifiedFollowing, ql.ModifiedFollowing,
                        ql.DateGeneration.Backward, False)
    floating = ql.Schedule(start, end, ql.Period("6M"), target, ql.ModifiedFollowing, ql.ModifiedFollowing,
                           ql.DateGeneration.Backward, False)
    side = ql.VanillaSwap.Payer if kind == "PAYER" else ql.VanillaSwap.Receiver
    swap = ql.VanillaSwap(side, 1e6, fixed, 0.03, ql.Thirty360(ql.Thirty360.BondBasis), floating,
                          ql.Euribor6M(ql_curve(ZEROS)), 0.0, ql.Actual360())
    reference = ql.Swaption(swap, ql.EuropeanExercise(ql.Date(15, 1, 2025)))
    reference.setPricingEngine(ql.BachelierSwaptionEngine(ql_discount, quote) if model == "BACHELIER"
                               else ql.BlackSwaptionEngine(ql_discount, quote, ql.Actual365Fixed(), shift))
    assert swaption(kind, discount, projection, model, vol, shift).PV() == pytest.approx(reference.NPV(), rel=1e-8)


def test_cash_settlement_uses_the_par_yield_annuity(discount, projection):
    physical = swaption("PAYER", discount, projection)
    cash = swaption("PAYER", discount, projection, settlement="CASH")
    forward = cash.ForwardRate()
    schedule = ql.Schedule(ql.Date(17, 1, 2025), ql.Date(17, 1, 2030), ql.Period("1Y"), ql.TARGET(),
                           ql.ModifiedFollowing, ql.ModifiedFollowing, ql.DateGeneration.Backward, False)
    dates, day_counter = list(schedule), ql.Thirty360(ql.Thirty360.BondBasis)
    level = sum(day_counter.yearFraction(a, b) / (1.0 + forward) ** (i + 1)
                for i, (a, b) in enumerate(zip(dates[:-1], dates[1:])))
    expected = 1e6 * level * ql_curve(DISCOUNT_ZEROS).discount(ql.Date(17, 1, 2025))
    assert cash.Annuity() == pytest.approx(expected, rel=1e-12)
    assert cash.PV() / physical.PV() == pytest.approx(cash.Annuity() / physical.Annuity(), rel=1e-12)


@pytest.mark.parametrize("model, vol, shift", MODELS)
@pytest.mark.parametrize("kind, settlement", [("PAYER", "PHYSICAL"), ("RECEIVER", "CASH")])
def test_swaption_implied_volatility_round_trip(discount, projection, model, vol, shift, kind, settlement):
    instrument = swaption(kind, discount, projection, model, vol, shift, settlement=settlement)
    assert instrument.ImpliedVolatility(instrument.PV()) == pytest.approx(vol, rel=1e-9)


# --- shape -----------------------------------------------------------------------------------

def test_options_pickle_and_describe_themselves(discount, projection):
    for instrument in (cap("FLOOR", discount, projection, "BACHELIER", 0.008),
                       swaption("RECEIVER", discount, projection, settlement="CASH")):
        copy = pickle.loads(pickle.dumps(instrument))
        assert copy.PV() == instrument.PV()
        assert repr(copy) == repr(instrument)
    assert "floor, notional 1000000, strike 0.03" in repr(cap("FLOOR", discount, projection))


@pytest.mark.parametrize("build, message", [
    (lambda d: cap("CAPP", d, d), "MCapFloor::MCapFloor failed: 'CAPP' is an invalid cap or floor (CAP or FLOOR)."),
    (lambda d: cap("CAP", None, d), "MCapFloor::MCapFloor failed: MCapFloor: the discount curve is None."),
    (lambda d: cap("CAP", d, d, "SABR"), "MCapFloor::MCapFloor failed: .*'SABR' is not a volatility model"),
    (lambda d: cap("CAP", d, d, vol=-0.1), "MCapFloor::MCapFloor failed: .*volatility -0.100000 must be finite"),
    (lambda d: cap("CAP", d, d, vol=float("nan")), "MCapFloor::MCapFloor failed: .*volatility nan must be finite"),
    (lambda d: cap("CAP", d, d).ImpliedVolatility(-1.0), "MCapFloor::ImpliedVolatility failed: .*below its value at zero"),
    (lambda d: cap("CAP", d, d).ImpliedVolatility(float("inf")), "MCapFloor::ImpliedVolatility failed: .*must be finite"),
    (lambda d: swaption("CALL", d, d), "MSwaption::MSwaption failed: 'CALL' is an invalid swaption kind"),
    (lambda d: swaption("PAYER", d, d, settlement="NET"), "MSwaption::MSwaption failed: 'NET' is an invalid settlement"),
    (lambda d: zep.MSwaption("PAYER", 1e6, 0.03, "2026-01-15", "2025-01-17", "2030-01-17", d, d, 0.2),
     "MSwaption::MSwaption failed: .*expiry 15/01/2026 must not be after the swap's start date 17/01/2025"),
    (lambda d: swaption("PAYER", d, d, settlement="CASH", fixedTenor="5M"),
     "MSwaption::MSwaption failed: .*tenor 5M must divide a year"),
    (lambda d: swaption("PAYER", d, d, "BLACK").ImpliedVolatility(1e9),
     "MSwaption::ImpliedVolatility failed: .*upper bound"),
])
def test_bad_input_raises_with_the_library_message(discount, build, message):
    with pytest.raises(RuntimeError, match="^" + message.replace("(", r"\(").replace(")", r"\)")):
        build(discount)


# --- SABR smile of a swaption slice ----------------------------------------------------------

def hagan_lognormal(strike, forward, expiry, alpha, beta, rho, nu):
    """Hagan, Kumar, Lesniewski and Woodward (2002), equation (2.17a), written out here."""
    import math
    one_minus_beta = 1.0 - beta
    log_fk = math.log(forward / strike)
    fk_power = (forward * strike) ** (one_minus_beta / 2)
    z = nu / alpha * fk_power * log_fk
    x = math.log((math.sqrt(1 - 2 * rho * z + z * z) + z - rho) / (1 - rho))
    z_over_x = 1.0 if abs(z) < 1e-12 else z / x
    series = 1 + one_minus_beta ** 2 / 24 * log_fk ** 2 + one_minus_beta ** 4 / 1920 * log_fk ** 4
    drift = (one_minus_beta ** 2 / 24 * alpha ** 2 / fk_power ** 2 + rho * beta * nu * alpha / (4 * fk_power)
             + (2 - 3 * rho ** 2) / 24 * nu ** 2)
    return alpha / (fk_power * series) * z_over_x * (1 + drift * expiry)


@pytest.mark.parametrize("beta, rho, nu", [(0.5, -0.3, 0.4), (1.0, 0.2, 0.6), (0.0, -0.1, 0.3)])
def test_sabr_slice_reproduces_its_quotes(beta, rho, nu):
    forward, expiry = 0.031, 5.0
    alpha = 0.2 * forward ** (1 - beta)
    strikes = [forward + d for d in (-0.015, -0.01, -0.005, 0.0, 0.005, 0.01, 0.02)]
    quotes = [hagan_lognormal(k, forward, expiry, alpha, beta, rho, nu) for k in strikes]
    smile = zep.SwaptionSmile(forward, expiry, strikes, quotes, beta)
    assert [smile.Volatility(k) for k in strikes] == pytest.approx(quotes, abs=1e-7)
    assert smile.FitError() < 1e-7
    assert list(smile.Parameters()) == pytest.approx([alpha, beta, rho, nu], rel=1e-4, abs=1e-5)


def test_sabr_without_vol_of_vol_is_black():
    smile = zep.SwaptionSmile.FromParameters(0.03, 5.0, 0.22, 1.0, -0.4, 0.0)
    assert [smile.Volatility(k) for k in (0.01, 0.03, 0.06)] == pytest.approx([0.22] * 3, rel=1e-15)
    copy = pickle.loads(pickle.dumps(smile))
    assert copy.Volatility(0.02) == smile.Volatility(0.02)


def test_swaption_priced_on_its_slice_smile(discount, projection):
    atm = swaption("PAYER", discount, projection)
    forward = atm.ForwardRate()
    smile = zep.SwaptionSmile.FromParameters(forward, 1.0, 0.2 * forward ** 0.5, 0.5, -0.3, 0.4)
    low, high = (swaption("RECEIVER", discount, projection, vol=smile.Volatility(k), strike=k)
                 for k in (forward - 0.01, forward - 0.005))
    assert high.PV() > low.PV() > 0.0


@pytest.mark.parametrize("build, message", [
    (lambda: zep.SwaptionSmile(0.03, 5.0, [0.02, 0.03], [0.2, 0.19]), "the SABR fit needs at least three quotes"),
    (lambda: zep.SwaptionSmile(0.03, 5.0, [-0.01, 0.02, 0.03], [0.2, 0.2, 0.19]), "quote 0 needs a positive strike"),
    (lambda: zep.SwaptionSmile(-0.001, 5.0, [0.01, 0.02, 0.03], [0.2, 0.2, 0.19]), "the forward swap rate -0.001000"),
    (lambda: zep.SwaptionSmile.FromParameters(0.03, 5.0, 0.2, 0.5, 1.5, 0.3), "rho in \\(-1, 1\\)"),
    (lambda: zep.SwaptionSmile.FromParameters(0.03, 5.0, 0.2, 0.5, 0.0, 0.3).Volatility(0.0), "the strike 0.000000"),
])
def test_sabr_slice_refusals(build, message):
    with pytest.raises(Exception, match=message):
        build()


def test_implied_volatilities_over_arrays():
    import numpy
    forwards = numpy.array([[0.02, 0.03, 0.04], [-0.005, 0.0, 0.01]])
    vols = numpy.array([[0.006, 0.007, 0.008], [0.005, 0.0065, 0.009]])
    values = numpy.vectorize(lambda f, v: zep.ForwardOptionValue(True, f, 0.01, 2.0, v, "BACHELIER"))(forwards, vols)
    implied = zep.ForwardImpliedVolatilities(True, forwards, 0.01, 2.0, values, "BACHELIER")
    assert implied.shape == (2, 3)
    assert implied == pytest.approx(vols, rel=1e-9)
    with pytest.raises(Exception, match="below its value at zero volatility"):
        zep.ForwardImpliedVolatilities(True, [0.03], 0.01, 2.0, [0.001])
