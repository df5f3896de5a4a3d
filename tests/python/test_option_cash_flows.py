"""Cash flows of caps, swaptions and credit default swaps in the rows every instrument reports:
their present values add up to the PV, caplet rows carry their forwards and dates, a CDS's
coupon rows carry the survival and its protection rows the default probability (against the
credit curve's own survival), signed for the holder; and cash-settled swaptions against QuantLib."""
import pytest
import QuantLib as ql

import zep
from test_credit_default_swap import NOTIONAL, cds, credit, discount as cds_discount  # noqa: F401
from test_rate_options import (DISCOUNT_ZEROS, MODELS, ZEROS, cap, discount, ql_curve,  # noqa: F401
                               projection, swaption)


def total(rows):
    return sum(row.presentValue for row in rows)


@pytest.mark.parametrize("model, vol, shift", MODELS)
@pytest.mark.parametrize("kind", ["CAP", "FLOOR"])
def test_caplet_rows_add_up_to_the_cap(discount, projection, model, vol, shift, kind):
    instrument = cap(kind, discount, projection, model, vol, shift)
    rows = instrument.CashFlowSchedule()
    assert total(rows) == pytest.approx(instrument.PV(), rel=1e-13)
    assert [row.presentValue for row in rows] == pytest.approx(list(instrument.CapletPVs()), rel=1e-13)
    assert [row.rate for row in rows] == pytest.approx(list(instrument.ForwardRates()), rel=1e-15)
    for row in rows:
        assert row.amount * row.discountFactor == pytest.approx(row.presentValue, rel=1e-13)
        assert row.fixingDate < row.accrualStart < row.accrualEnd <= row.paymentDate
        assert row.discountFactor == pytest.approx(discount.DiscountFactor(row.paymentDate), rel=1e-15)
    assert len(instrument.CashFlows()) == len(rows)


@pytest.mark.parametrize("kind, settlement", [("PAYER", "PHYSICAL"), ("RECEIVER", "CASH")])
def test_a_swaption_is_one_row_at_the_swap_start(discount, projection, kind, settlement):
    instrument = swaption(kind, discount, projection, settlement=settlement)
    (row,) = instrument.CashFlowSchedule()
    assert row.presentValue == pytest.approx(instrument.PV(), rel=1e-15)
    assert row.rate == pytest.approx(instrument.ForwardRate(), rel=1e-15)
    assert (str(row.fixingDate), str(row.paymentDate), str(row.accrualEnd)) == ("15/01/2025", "17/01/2025",
                                                                                "17/01/2030")
    assert row.amount * row.discountFactor == pytest.approx(row.presentValue, rel=1e-14)


@pytest.mark.parametrize("side", ["BUYER", "SELLER"])
def test_cds_rows_are_its_premium_and_protection(credit, cds_discount, side):  # noqa: F811
    instrument = cds(credit, cds_discount, "5Y", coupon=0.01, side=side)
    rows = instrument.CashFlowSchedule()
    coupons = [row for row in rows if row.kind == zep.CashFlowKind_Coupon]
    protections = [row for row in rows if row.kind == zep.CashFlowKind_Protection]
    assert len(coupons) == len(protections) == len(rows) // 2 == 20
    assert total(rows) == pytest.approx(instrument.PV(), rel=1e-12)
    sign = 1.0 if side == "BUYER" else -1.0
    assert total(coupons) == pytest.approx(-sign * instrument.PremiumLegPV(), rel=1e-12)
    assert total(protections) == pytest.approx(sign * instrument.ProtectionLegPV(), rel=1e-12)
    for row in coupons:
        assert row.amount == pytest.approx(-sign * 0.01 * row.accrualFraction * NOTIONAL, rel=1e-15)
    for row in protections:
        assert row.amount == pytest.approx(sign * 0.6 * NOTIONAL, rel=1e-15)
        default_probability = (credit.SurvivalProbability(row.accrualStart)
                               - credit.SurvivalProbability(row.accrualEnd))
        assert row.discountFactor == pytest.approx(
            cds_discount.DiscountFactor(row.paymentDate) * default_probability, rel=1e-12)


@pytest.mark.parametrize("model, vol, shift", MODELS)
@pytest.mark.parametrize("kind", ["PAYER", "RECEIVER"])
def test_cash_settled_swaption_agrees_with_quantlib(discount, projection, model, vol, shift, kind):
    ql_discount, quote = ql_curve(DISCOUNT_ZEROS), ql.QuoteHandle(ql.SimpleQuote(vol))
    start, end = ql.Date(17, 1, 2025), ql.Date(17, 1, 2030)
    fixed, floating = (ql.Schedule(start, end, ql.Period(tenor), ql.TARGET(), ql.ModifiedFollowing,
                                   ql.ModifiedFollowing, ql.DateGeneration.Backward, False) for tenor in ("1Y", "6M"))
    side = ql.VanillaSwap.Payer if kind == "PAYER" else ql.VanillaSwap.Receiver
    swap = ql.VanillaSwap(side, 1e6, fixed, 0.03, ql.Thirty360(ql.Thirty360.BondBasis), floating,
                          ql.Euribor6M(ql_curve(ZEROS)), 0.0, ql.Actual360())
    reference = ql.Swaption(swap, ql.EuropeanExercise(ql.Date(15, 1, 2025)), ql.Settlement.Cash,
                            ql.Settlement.ParYieldCurve)
    reference.setPricingEngine(ql.BachelierSwaptionEngine(ql_discount, quote) if model == "BACHELIER"
                               else ql.BlackSwaptionEngine(ql_discount, quote, ql.Actual365Fixed(), shift))
    ours = swaption(kind, discount, projection, model, vol, shift, settlement="CASH")
    # The option per unit of annuity is the same; the annuities differ only in the par yield's
    # exponents: whole fixed periods here, the 30/360 year fraction from the start in QuantLib,
    # which the business days that move a payment date off its anniversary make a little longer.
    assert ours.PV() / ours.Annuity() == pytest.approx(reference.NPV() / reference.annuity(), rel=1e-10)
    assert ours.Annuity() == pytest.approx(reference.annuity(), rel=1e-4)
