"""Callable fixed-rate bonds on the Hull-White tree: price and option-adjusted spread against
QuantLib's TreeCallableFixedRateBondEngine, the non-callable twin against QuantLib's discounting
engine, the bound a call puts on the price, OAS round trips, pickling and the refusals."""
import pickle

import pytest
import QuantLib as ql

import zep

from quantlib_reference import ql_date, ql_zero_curve

REFERENCE = "2024-01-15"
PILLARS = ["2024-01-15", "2024-07-15", "2025-01-15", "2027-01-15", "2030-01-15", "2034-01-15", "2044-01-15"]
ZEROS = [0.031, 0.0325, 0.0318, 0.0295, 0.0301, 0.0312, 0.033]
ISSUE, MATURITY = "2024-01-15", "2034-01-15"
CALLS = ["2027-01-15", "2028-01-17", "2029-01-15", "2030-01-15", "2031-01-15", "2032-01-15", "2033-01-17"]
ACT365 = zep.DayCounter(zep.Act365Fixed)


@pytest.fixture(scope="module")
def curve():
    return zep.YieldCurve.FromZeroRates(REFERENCE, PILLARS, ZEROS, zep.Continuous, ACT365)


@pytest.fixture(scope="module")
def ql_curve():
    return ql_zero_curve(REFERENCE, PILLARS, ZEROS)


def callable_bond(curve, coupon, a=0.05, sigma=0.01, calls=CALLS, prices=None, steps=500, model=None):
    model = model or zep.MHullWhite(curve, a, sigma)
    return zep.MCallableBond(coupon, ISSUE, MATURITY, calls, prices or [100.0] * len(calls), model, steps, "1Y",
                             ACT365)


def ql_schedule():
    return ql.Schedule(ql_date(ISSUE), ql_date(MATURITY), ql.Period(1, ql.Years), ql.TARGET(), ql.Unadjusted,
                       ql.Unadjusted, ql.DateGeneration.Forward, False)


def ql_callable(ql_curve, coupon, a, sigma):
    calls = ql.CallabilitySchedule()
    for date in CALLS:
        calls.append(ql.Callability(ql.BondPrice(100.0, ql.BondPrice.Clean), ql.Callability.Call, ql_date(date)))
    bond = ql.CallableFixedRateBond(0, 100.0, ql_schedule(), [coupon], ql.Actual365Fixed(), ql.Following, 100.0,
                                    ql_date(ISSUE), calls)
    bond.setPricingEngine(ql.TreeCallableFixedRateBondEngine(ql.HullWhite(ql_curve, a, sigma), 500))
    return bond


@pytest.mark.parametrize("a, sigma", [(0.05, 0.01), (0.15, 0.012), (0.02, 0.006)])
@pytest.mark.parametrize("coupon", [0.025, 0.04, 0.06])
def test_price_and_oas_agree_with_quantlib(curve, ql_curve, a, sigma, coupon):
    ours, theirs = callable_bond(curve, coupon, a, sigma), ql_callable(ql_curve, coupon, a, sigma)
    assert ours.CleanPrice() == pytest.approx(theirs.cleanPrice(), abs=2e-3)
    for oas in (0.004, 0.012):
        assert ours.CleanPrice(oas) == pytest.approx(
            theirs.cleanPriceOAS(oas, ql_curve, ql.Actual365Fixed(), ql.Continuous, ql.NoFrequency), abs=2e-3)
    quoted = theirs.cleanPrice() - 1.5
    assert ours.OAS(quoted) == pytest.approx(
        theirs.OAS(quoted, ql_curve, ql.Actual365Fixed(), ql.Continuous, ql.NoFrequency), abs=5e-6)


@pytest.mark.parametrize("coupon", [0.025, 0.04, 0.06])
@pytest.mark.parametrize("oas", [0.0, 0.01])
def test_without_its_calls_the_bond_is_its_discounted_flows(curve, ql_curve, coupon, oas):
    bond = ql.FixedRateBond(0, 100.0, ql_schedule(), [coupon], ql.Actual365Fixed(), ql.Following)
    spread = ql.YieldTermStructureHandle(ql.ZeroSpreadedTermStructure(ql_curve, ql.QuoteHandle(ql.SimpleQuote(oas)),
                                                                     ql.Continuous, ql.NoFrequency,
                                                                     ql.Actual365Fixed()))
    bond.setPricingEngine(ql.DiscountingBondEngine(spread))
    assert callable_bond(curve, coupon).StraightCleanPrice(oas) == pytest.approx(bond.cleanPrice(), abs=1e-9)


@pytest.mark.parametrize("coupon", [0.025, 0.04, 0.06])
def test_callable_is_worth_at_most_its_straight_twin_and_oas_round_trips(curve, coupon):
    bond = callable_bond(curve, coupon, steps=200)
    assert bond.CleanPrice() <= bond.StraightCleanPrice()
    assert bond.OAS(bond.CleanPrice(0.0075)) == pytest.approx(0.0075, abs=1e-10)
    assert bond.DirtyPrice() == pytest.approx(bond.CleanPrice() + bond.AccruedAmount(), abs=1e-12)


def test_callable_bonds_pickle_and_describe_themselves(curve):
    bond = callable_bond(curve, 0.04, steps=100)
    copy = pickle.loads(pickle.dumps(bond))
    assert copy.CleanPrice() == bond.CleanPrice()
    assert repr(copy) == repr(bond)
    assert "callable bond, coupon 0.04, 15/01/2024 to 15/01/2034, 7 call dates" in repr(bond)


@pytest.mark.parametrize("build, message", [
    (lambda c: callable_bond(c, 0.04, calls=["2035-01-15"]),
     "MCallableBond::MCallableBond failed: .*call date 0 is on or after the bond's maturity"),
    (lambda c: callable_bond(c, 0.04, calls=["2023-01-16"]), "call date 0 is not after today"),
    (lambda c: callable_bond(c, 0.04, calls=["2030-01-15", "2029-01-15"]),
     "the call dates must be in increasing order"),
    (lambda c: callable_bond(c, 0.04, calls=CALLS, prices=[100.0]), "give one call price for every call date"),
    (lambda c: callable_bond(c, 0.04, calls=["2030-01-15"], prices=[-1.0]), "call price 0 must be positive"),
    (lambda c: zep.MCallableBond(0.04, ISSUE, MATURITY, CALLS, [100.0] * 7, None), "model is None"),
    (lambda c: callable_bond(c, 0.04, steps=50).OAS(1e7),
     "MCallableBond::OAS failed: .*no spread in \\[-100%, 100%\\]"),
    (lambda c: callable_bond(c, 0.04, steps=50).OAS(float("nan")), "the clean price nan must be positive"),
    (lambda c: callable_bond(c, 0.04, steps=50).CleanPrice(float("nan")),
     "the option-adjusted spread nan must be finite"),
])
def test_bad_input_raises_with_the_library_message(curve, build, message):
    with pytest.raises(Exception, match=message):
        build(curve)


def test_product_definition_builds_the_callable_bond(curve):
    model = zep.MHullWhite(curve, 0.05, 0.01)
    built = zep.RateInstrumentFromDefinition({
        "type": "CallableBond", "couponRate": 0.04, "issueDate": ISSUE, "maturityDate": MATURITY,
        "callDates": CALLS, "callPrices": [100.0] * len(CALLS), "model": model, "steps": 100,
        "dayCounter": ACT365})
    assert built.CleanPrice() == callable_bond(curve, 0.04, steps=100, model=model).CleanPrice()
