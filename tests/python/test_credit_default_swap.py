"""Credit default swaps: worth nothing at the par spread of the curve bootstrapped from it, the
legs and their signs, upfront and quoted spread round trips and the flat-curve identity, CS01
against the risky PV01, QuantLib's midpoint engine on the same survival curve, every refusal."""
import pickle

import pytest
import QuantLib as ql

import zep

REFERENCE = "2024-03-20"
TENORS = ["6M", "1Y", "2Y", "3Y", "5Y", "7Y", "10Y"]
SPREADS = [0.0050, 0.0060, 0.0075, 0.0090, 0.0110, 0.0120, 0.0125]
NOTIONAL = 1e7


@pytest.fixture(scope="module")
def discount():
    return zep.YieldCurve.FromTenors(REFERENCE, [zep.Period(t) for t in ("1Y", "5Y", "10Y")], [0.03, 0.032, 0.035],
                                     zep.Continuous)


@pytest.fixture(scope="module")
def credit(discount):
    return zep.CreditCurve(REFERENCE, TENORS, SPREADS, 0.4, discount)


def cds(credit, discount, tenor="5Y", coupon=0.01, side="BUYER"):
    maturity = zep.Date(REFERENCE) + zep.Period(tenor)
    return zep.MCreditDefaultSwap(side, NOTIONAL, coupon, REFERENCE, maturity, credit, discount)


@pytest.mark.parametrize("tenor, spread", list(zip(TENORS, SPREADS)))
def test_cds_at_its_par_spread_is_worth_zero(credit, discount, tenor, spread):
    at_par = cds(credit, discount, tenor, coupon=spread)
    assert at_par.ParSpread() == pytest.approx(spread, abs=1e-12)
    assert at_par.PV() == pytest.approx(0.0, abs=1e-12 * NOTIONAL)
    assert at_par.Upfront() == pytest.approx(0.0, abs=1e-12)


def test_legs_and_sides(credit, discount):
    buyer, seller = cds(credit, discount), cds(credit, discount, side="SELLER")
    assert buyer.PV() == pytest.approx(buyer.ProtectionLegPV() - buyer.PremiumLegPV(), rel=1e-14)
    assert seller.PV() == -buyer.PV()
    assert buyer.PremiumLegPV() == pytest.approx(0.01 * buyer.RiskyAnnuity(), rel=1e-14)
    assert buyer.RiskyPV01() == pytest.approx(1e-4 * buyer.RiskyAnnuity(), rel=1e-14)
    assert buyer.Upfront() * NOTIONAL == pytest.approx(buyer.PV(), rel=1e-14)
    # The coupon below the 5Y par spread of 110 bp: the buyer pays upfront.
    assert buyer.PV() == pytest.approx((0.011 - 0.01) * buyer.RiskyAnnuity(), rel=1e-10)


@pytest.mark.parametrize("quoted", [0.003, 0.01, 0.025, 0.08])
@pytest.mark.parametrize("coupon", [0.01, 0.05])
def test_upfront_and_quoted_spread_round_trip(credit, discount, quoted, coupon):
    instrument = cds(credit, discount, coupon=coupon)
    upfront = instrument.UpfrontFromQuotedSpread(quoted)
    assert instrument.QuotedSpreadFromUpfront(upfront) == pytest.approx(quoted, rel=1e-10)
    assert (upfront > 0) == (quoted > coupon)


@pytest.mark.parametrize("quoted", [0.004, 0.02])
def test_quoted_spread_upfront_is_the_upfront_on_the_flat_curve_it_implies(discount, quoted):
    flat = zep.CreditCurve(REFERENCE, ["5Y"], [quoted], 0.4, discount)
    instrument = cds(flat, discount, coupon=0.01)
    assert instrument.UpfrontFromQuotedSpread(quoted) == pytest.approx(instrument.Upfront(), abs=1e-12)


def test_cs01_of_a_par_cds_is_about_its_risky_pv01(credit, discount):
    at_par = cds(credit, discount, coupon=0.011)
    # One more basis point on every quote moves the 5Y par spread by one: the PV by about an annuity's worth.
    assert at_par.CS01() == pytest.approx(at_par.RiskyPV01(), rel=0.01)
    assert cds(credit, discount, side="SELLER").CS01() < 0


def test_agrees_with_quantlib_midpoint_engine(credit, discount):
    ql.Settings.instance().evaluationDate = ql.Date(20, 3, 2024)
    today, day_counter = ql.Date(20, 3, 2024), ql.Actual365Fixed()
    days = [round(t * 365) for t in [0.0] + list(credit.Times())]  # the hazard nodes, whole days in Act/365F
    survival = ql.SurvivalProbabilityCurve([today + d for d in days],
                                           [credit.SurvivalProbability(zep.Date(REFERENCE) + d) for d in days],
                                           day_counter, ql.TARGET())
    discount_dates = [today + d for d in range(0, 3700, 30)]
    ql_discount = ql.YieldTermStructureHandle(ql.DiscountCurve(
        discount_dates, [discount.DiscountFactor(zep.Date(REFERENCE) + d) for d in range(0, 3700, 30)], day_counter))
    schedule = ql.Schedule(today, ql.Date(20, 3, 2029), ql.Period("3M"), ql.TARGET(), ql.ModifiedFollowing,
                           ql.ModifiedFollowing, ql.DateGeneration.Backward, False)
    reference = ql.CreditDefaultSwap(ql.Protection.Buyer, NOTIONAL, 0.01, schedule, ql.ModifiedFollowing,
                                     ql.Actual360(), True, True, today, ql.FaceValueClaim(), ql.Actual360())
    reference.setPricingEngine(ql.MidPointCdsEngine(ql.DefaultProbabilityTermStructureHandle(survival), 0.4,
                                                    ql_discount))
    ours = cds(credit, discount)
    # The midpoint engine accrues to the middle day and discounts there, where this model pays
    # half the accrual at the period's end: a few parts in ten thousand on the spread.
    assert ours.ParSpread() == pytest.approx(reference.fairSpread(), rel=5e-4)
    assert ours.ProtectionLegPV() == pytest.approx(reference.defaultLegNPV(), rel=5e-4)


def test_cds_pickles(credit, discount):
    instrument = cds(credit, discount)
    copy = pickle.loads(pickle.dumps(instrument))
    assert copy.PV() == instrument.PV()
    assert repr(copy) == repr(instrument)


@pytest.mark.parametrize("build, message", [
    (lambda c, d: cds(c, d, side="LONG"),
     "MCreditDefaultSwap::MCreditDefaultSwap failed: 'LONG' is an invalid protection side (BUYER or SELLER)."),
    (lambda c, d: cds(None, d), "MCreditDefaultSwap::MCreditDefaultSwap failed: MCreditDefaultSwap: the credit curve is None."),
    (lambda c, d: cds(c, None), "MCreditDefaultSwap::MCreditDefaultSwap failed: MCreditDefaultSwap: the discount curve is None."),
    (lambda c, d: cds(c, d, coupon=-0.01), "MCreditDefaultSwap::MCreditDefaultSwap failed: .*coupon -0.010000 must be finite"),
    (lambda c, d: cds(c, d).QuotedSpreadFromUpfront(-1.0),
     "MCreditDefaultSwap::QuotedSpreadFromUpfront failed: .*no flat hazard rate in \\[0, 50\\] reprices the upfront"),
    (lambda c, d: cds(c, d).UpfrontFromQuotedSpread(float("nan")),
     "MCreditDefaultSwap::UpfrontFromQuotedSpread failed: .*the quoted spread must be finite"),
])
def test_bad_input_raises_with_the_library_message(credit, discount, build, message):
    with pytest.raises(RuntimeError, match="^" + message.replace("(", r"\(").replace(")", r"\)")):
        build(credit, discount)


def test_cds_and_swaption_from_product_definitions(credit, discount):
    cds_text = ('{"type": "CreditDefaultSwap", "buySell": "BUYER", "notional": 1e7, "coupon": 0.01, '
                '"startDate": "2024-03-20", "maturityDate": "2029-03-20", "creditCurve": "ISSUER", '
                '"discountCurve": "EUR"}')
    booked = zep.RateInstrumentFromDefinition(cds_text, {"ISSUER": credit, "EUR": discount})
    assert booked.PV() == cds(credit, discount).PV()
    swaption = zep.RateInstrumentFromDefinition(
        {"type": "Swaption", "payerReceiver": "PAYER", "notional": 1e6, "strike": 0.03, "expiryDate": "2025-03-18",
         "startDate": "2025-03-20", "endDate": "2030-03-20", "discountCurve": "EUR", "projectionCurve": "EUR",
         "volatility": 0.008, "model": "BACHELIER"}, {"EUR": discount})
    assert swaption.PV() > 0
