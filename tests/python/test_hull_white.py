"""Hull-White one-factor: bond options and Jamshidian swaptions against QuantLib's HullWhite and
JamshidianSwaptionEngine, the tree's Bermudan against QuantLib's tree and finite-difference
engines, the bounds a Bermudan must respect, calibration, pickling and the refusals."""
import math
import pickle

import pytest
import QuantLib as ql

import zep

from quantlib_reference import ql_date, ql_zero_curve

REFERENCE = "2024-01-15"
PILLARS = ["2024-01-15", "2024-07-15", "2025-01-15", "2027-01-15", "2030-01-15", "2034-01-15", "2044-01-15"]
ZEROS = [0.031, 0.0325, 0.0318, 0.0295, 0.0301, 0.0312, 0.033]
START, END = "2026-01-15", "2031-01-15"
# The fixed periods' starts (business days under TARGET): the Bermudan's exercise dates.
EXERCISES = ["2026-01-15", "2027-01-15", "2028-01-17", "2029-01-15", "2030-01-15"]
ACT365 = zep.DayCounter(zep.Act365Fixed)
PARAMETERS = [(0.05, 0.01), (0.2, 0.012), (0.01, 0.006)]


@pytest.fixture(scope="module")
def curve():
    return zep.YieldCurve.FromZeroRates(REFERENCE, PILLARS, ZEROS, zep.Continuous, ACT365)


@pytest.fixture(scope="module")
def ql_curve():
    return ql_zero_curve(REFERENCE, PILLARS, ZEROS)


def ql_swaption(ql_curve, kind, strike, exercise):
    def schedule(tenor):
        return ql.Schedule(ql_date(START), ql_date(END), tenor, ql.TARGET(), ql.ModifiedFollowing,
                           ql.ModifiedFollowing, ql.DateGeneration.Forward, False)
    swap = ql.VanillaSwap(ql.Swap.Payer if kind == "PAYER" else ql.Swap.Receiver, 1.0, schedule(ql.Period("1Y")),
                          strike, ql.Actual365Fixed(), schedule(ql.Period("6M")), ql.Euribor6M(ql_curve), 0.0,
                          ql.Actual360())
    return ql.Swaption(swap, exercise)


def bermudan(curve_model, kind, strike, exercises=EXERCISES, steps=200):
    return zep.MBermudanSwaption(kind, 1.0, strike, exercises, START, END, curve_model, steps, "1Y", ACT365)


@pytest.mark.parametrize("a, sigma", PARAMETERS)
@pytest.mark.parametrize("call_put, ql_type", [("CALL", ql.Option.Call), ("PUT", ql.Option.Put)])
@pytest.mark.parametrize("strike, expiry, maturity", [(0.9, 2.0, 7.0), (0.75, 5.0, 15.0), (0.97, 0.5, 1.5)])
def test_bond_options_agree_with_quantlib(curve, ql_curve, a, sigma, call_put, ql_type, strike, expiry, maturity):
    ours = zep.MHullWhite(curve, a, sigma).DiscountBondOption(call_put, strike, expiry, maturity)
    theirs = ql.HullWhite(ql_curve, a, sigma).discountBondOption(ql_type, strike, expiry, maturity)
    assert ours == pytest.approx(theirs, abs=1e-12)


@pytest.mark.parametrize("a, sigma", PARAMETERS)
@pytest.mark.parametrize("kind", ["PAYER", "RECEIVER"])
@pytest.mark.parametrize("strike", [0.0, 0.02, 0.03, 0.05])
def test_jamshidian_swaptions_agree_with_quantlib(curve, ql_curve, a, sigma, kind, strike):
    ours = zep.MHullWhite(curve, a, sigma).EuropeanSwaption(kind, 1.0, strike, START, START, END, "1Y", ACT365)
    reference = ql_swaption(ql_curve, kind, strike, ql.EuropeanExercise(ql_date(START)))
    reference.setPricingEngine(ql.JamshidianSwaptionEngine(ql.HullWhite(ql_curve, a, sigma), ql_curve))
    assert ours == pytest.approx(reference.NPV(), abs=1e-8)


@pytest.mark.parametrize("t, T", [(0.0, 3.0), (0.0, 12.5), (2.0, 2.0)])
def test_model_reprices_the_curve_at_todays_state(curve, t, T):
    model = zep.MHullWhite(curve, 0.05, 0.01)
    expected = curve.DiscountFactor(T) / curve.DiscountFactor(t) if t == 0.0 else 1.0
    assert model.DiscountBond(t, T) == pytest.approx(expected, abs=1e-15)


@pytest.mark.parametrize("a, sigma", PARAMETERS)
@pytest.mark.parametrize("kind", ["PAYER", "RECEIVER"])
@pytest.mark.parametrize("strike", [0.02, 0.03, 0.045])
def test_bermudan_agrees_with_quantlib_tree_and_finite_differences(curve, ql_curve, a, sigma, kind, strike):
    ours = bermudan(zep.MHullWhite(curve, a, sigma), kind, strike).PV()
    reference = ql_swaption(ql_curve, kind, strike, ql.BermudanExercise([ql_date(d) for d in EXERCISES]))
    # QuantLib's tree at 200 steps is 1.3% off deep out of the money at a = 0.2; at 600 it is within 0.4%.
    for engine in (ql.TreeSwaptionEngine(ql.HullWhite(ql_curve, a, sigma), 600),
                   ql.FdHullWhiteSwaptionEngine(ql.HullWhite(ql_curve, a, sigma))):
        reference.setPricingEngine(engine)
        assert ours == pytest.approx(reference.NPV(), rel=4e-3), type(engine).__name__


@pytest.mark.parametrize("a, sigma", PARAMETERS)
@pytest.mark.parametrize("kind", ["PAYER", "RECEIVER"])
def test_bermudan_bounds(curve, a, sigma, kind):
    model = zep.MHullWhite(curve, a, sigma)
    option = bermudan(model, kind, 0.03)
    single = bermudan(model, kind, 0.03, [START], 400)
    european = model.EuropeanSwaption(kind, 1.0, 0.03, START, START, END, "1Y", ACT365)
    assert single.PV() == pytest.approx(european, rel=2e-3)
    assert option.PV() >= max(option.EuropeanPVs())
    assert option.EuropeanPVs()[0] == pytest.approx(european, abs=1e-15)


@pytest.mark.parametrize("a, sigma", PARAMETERS)
def test_exercise_boundary_lies_beyond_the_strike_until_the_last_date(curve, a, sigma):
    # Before the last date waiting is worth something: a payer exercises only above the strike, a
    # receiver only below. On the last date exercise is worth it wherever the swap is in the money:
    # the boundary is the strike, to within the swap rates of two neighbouring nodes.
    payer = bermudan(zep.MHullWhite(curve, a, sigma), "PAYER", 0.03, steps=400).ExerciseBoundary()
    receiver = bermudan(zep.MHullWhite(curve, a, sigma), "RECEIVER", 0.03, steps=400).ExerciseBoundary()
    assert len(payer) == len(receiver) == len(EXERCISES)
    assert all(rate > 0.03 for rate in payer[:-1]) and all(rate < 0.03 for rate in receiver[:-1])
    assert payer[-1] == pytest.approx(0.03, abs=2e-3) and receiver[-1] == pytest.approx(0.03, abs=2e-3)
    assert payer[-1] >= 0.03 >= receiver[-1]


@pytest.mark.parametrize("fit_mean_reversion", [False, True])
def test_calibration_reproduces_prices_made_by_a_known_model(curve, fit_mean_reversion):
    # Quotes made by a=0.04, sigma=0.009: at-the-money normal volatilities implied from its prices.
    truth = zep.MHullWhite(curve, 0.04, 0.009)
    expiries, ends = ["2025-01-15", "2026-01-15", "2029-01-15"], ["2030-01-15", "2031-01-15", "2034-01-15"]
    volatilities = []
    for expiry, end in zip(expiries, ends):
        swaption = zep.MSwaption("PAYER", 1.0, 0.03, expiry, expiry, end, curve, None, 0.01, "BACHELIER",
                                 fixedDayCounter=zep.DayCounter(zep.Thirty360), fixingLagDays=0)
        forward = swaption.ForwardRate()
        at_the_money = zep.MSwaption("PAYER", 1.0, forward, expiry, expiry, end, curve, None, 0.01, "BACHELIER",
                                     fixedDayCounter=zep.DayCounter(zep.Thirty360), fixingLagDays=0)
        volatilities.append(at_the_money.ImpliedVolatility(truth.EuropeanSwaption("PAYER", 1.0, forward, expiry,
                                                                                  expiry, end)))
    fit = zep.MHullWhite.Calibrate(curve, expiries, ends, volatilities, "BACHELIER", meanReversion=0.04 if not
                                   fit_mean_reversion else 0.1, fitMeanReversion=fit_mean_reversion)
    assert fit.Sigma() == pytest.approx(0.009, rel=1e-5)
    assert fit.MeanReversion() == pytest.approx(0.04, abs=1e-5)
    assert fit.CalibrationError() < 1e-6


def test_models_and_bermudans_pickle(curve):
    model = zep.MHullWhite.Calibrate(curve, ["2026-01-15"], ["2031-01-15"], [0.009])
    option = bermudan(model, "RECEIVER", 0.03)
    copy = pickle.loads(pickle.dumps(option))
    assert copy.PV() == option.PV()
    assert repr(copy) == repr(option)
    assert pickle.loads(pickle.dumps(model)).Sigma() == model.Sigma()
    assert "receiver Bermudan swaption, notional 1, strike 0.03, 5 exercise dates" in repr(option)


@pytest.mark.parametrize("build, message", [
    (lambda c: zep.MHullWhite(c, 0.05, 0.0),
     "MHullWhite::MHullWhite failed: .*volatility 0.000000 must be finite and > 0"),
    (lambda c: zep.MHullWhite(c, float("nan"), 0.01), "MHullWhite::MHullWhite failed: .*mean reversion nan"),
    (lambda c: zep.MHullWhite(None, 0.05, 0.01), "MHullWhite::MHullWhite failed: .*the curve is None"),
    (lambda c: zep.MHullWhite(c, 0.05, 0.01).DiscountBondOption("CALL", -1.0, 1.0, 2.0),
     "strike -1.000000 must be positive"),
    (lambda c: zep.MHullWhite(c, 0.05, 0.01).DiscountBondOption("CAP", 0.9, 1.0, 2.0),
     "'CAP' is an invalid option kind"),
    (lambda c: zep.MHullWhite(c, 0.05, 0.01).DiscountBond(2.0, 1.0), "MHullWhite::DiscountBond failed: .*0 <= t <= T"),
    (lambda c: zep.MHullWhite(c, 0.05, 0.01).EuropeanSwaption("PAYER", 1.0, -0.01, START, START, END),
     "MHullWhite::EuropeanSwaption failed: .*needs a strike >= 0"),
    (lambda c: zep.MHullWhite.Calibrate(c, ["2026-01-15"], [], [0.01]), "MHullWhite::Calibrate failed: give as many"),
    (lambda c: zep.MHullWhite(c, 0.05, 1e6).EuropeanSwaption("PAYER", 1.0, 0.03, START, START, END),
     "bond prices at time .* are not positive numbers: sigma 1000000.000000 is out of scale"),
    (lambda c: bermudan(zep.MHullWhite(c, 0.05, 1e-300), "PAYER", 0.03), "node spacing 0.000000 .* is unusable"),
    (lambda c: bermudan(None, "PAYER", 0.03), "MBermudanSwaption::MBermudanSwaption failed: .*model is None"),
    (lambda c: bermudan(zep.MHullWhite(c, 0.05, 0.01), "PAYER", 0.03, ["2023-01-16"]),
     "MBermudanSwaption::MBermudanSwaption failed: .*must lie after the curve's reference date"),
    (lambda c: bermudan(zep.MHullWhite(c, 0.05, 0.01), "PAYER", 0.03, ["2032-01-15"]),
     "MBermudanSwaption::MBermudanSwaption failed: .*no fixed period starts on or after"),
    (lambda c: bermudan(zep.MHullWhite(c, 0.05, 0.01), "PAYER", 0.03, EXERCISES, 0),
     "MBermudanSwaption::MBermudanSwaption failed: .*at least one step"),
])
def test_bad_input_raises_with_the_library_message(curve, build, message):
    with pytest.raises(Exception, match=message):
        build(curve)
