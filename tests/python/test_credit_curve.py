"""Credit curves bootstrapped from CDS par spreads: every spread reprices on a premium and
protection leg summed here from the survival probabilities, a flat spread gives a flat hazard
near the credit triangle s / (1 - R), bad quotes are refused naming the quote, curves pickle."""
import math
import pickle

import pytest

import zep

REFERENCE = "2024-03-20"
TENORS = ["6M", "1Y", "2Y", "3Y", "5Y", "7Y", "10Y"]
SPREADS = [0.0050, 0.0060, 0.0075, 0.0090, 0.0110, 0.0120, 0.0125]


@pytest.fixture(scope="module")
def discount():
    return zep.YieldCurve.FromTenors(REFERENCE, [zep.Period(t) for t in ("1Y", "5Y", "10Y")], [0.03, 0.032, 0.035],
                                     zep.Continuous)


def par_spread(credit, discount, tenor, recovery):
    """The par spread from the legs written out period by period."""
    reference = zep.Date(REFERENCE)
    schedule = zep.Schedule(reference, reference + zep.Period(tenor), "3M", "TARGET", fixingLagDays=0)
    premium = protection = 0.0
    for start, end, pay, tau in zip(schedule.AccrualStartDates(), schedule.AccrualEndDates(), schedule.PaymentDates(),
                                    schedule.AccrualFractions()):
        q0, q1 = credit.SurvivalProbability(start), credit.SurvivalProbability(end)
        middle = zep.Date((start.SerialNumber() + end.SerialNumber()) // 2)
        premium += tau * discount.DiscountFactor(pay) * (q0 + q1) / 2
        protection += discount.DiscountFactor(middle) * (q0 - q1)
    return (1 - recovery) * protection / premium


@pytest.mark.parametrize("recovery", [0.0, 0.4, 0.75])
def test_every_cds_spread_reprices(discount, recovery):
    credit = zep.CreditCurve(REFERENCE, TENORS, SPREADS, recovery, discount)
    for tenor, spread in zip(TENORS, SPREADS):
        assert par_spread(credit, discount, tenor, recovery) == pytest.approx(spread, abs=1e-12), tenor
        assert credit.ParSpread(tenor) == pytest.approx(spread, abs=1e-12), tenor


def test_survival_is_the_exponential_of_the_integrated_hazard(discount):
    credit = zep.CreditCurve(REFERENCE, TENORS, SPREADS, 0.4, discount)
    times, hazards = list(credit.Times()), list(credit.HazardRates())
    t = 4.0  # between the 3Y and 5Y maturities
    integral = sum(h * (min(t, end) - start) for h, start, end in zip(hazards, [0.0] + times[:-1], times) if start < t)
    date = zep.Date(REFERENCE) + round(t * 365)
    assert credit.SurvivalProbability(date) == pytest.approx(math.exp(-integral), rel=1e-12)
    assert credit.DefaultProbability(date) == pytest.approx(1 - math.exp(-integral), rel=1e-12)
    assert credit.HazardRate(t) == hazards[4]


def test_a_flat_spread_gives_a_flat_hazard_near_the_credit_triangle(discount):
    credit = zep.CreditCurve(REFERENCE, ["1Y", "3Y", "5Y", "10Y"], [0.01] * 4, 0.4, discount)
    hazards = list(credit.HazardRates())
    assert max(hazards) - min(hazards) < 2e-5
    # Premiums accrue Act/360, hazards Act/365.
    assert hazards[0] == pytest.approx(0.01 / 0.6 * 365 / 360, rel=1e-2)


def test_a_credit_curve_pickles(discount):
    credit = zep.CreditCurve(REFERENCE, TENORS, SPREADS, 0.4, discount)
    copy = pickle.loads(pickle.dumps(credit))
    assert copy.SurvivalProbability("2031-01-15") == credit.SurvivalProbability("2031-01-15")


@pytest.mark.parametrize("tenors, spreads, recovery, message", [
    (["1Y", "1Y"], [0.01, 0.01], 0.4, "the CDS 1Y quote does not mature after the CDS 1Y quote"),
    (["1Y", "5Y"], [0.01, -0.01], 0.4, "the CDS 5Y quote needs a positive spread"),
    (["1Y", "5Y"], [0.05, 0.001], 0.4, "no non-negative hazard rate reprices the CDS 5Y spread"),
    (["1Y"], [0.01], 1.0, "the recovery rate must lie in \\[0, 1\\)"),
])
def test_bad_quotes_are_refused(discount, tenors, spreads, recovery, message):
    with pytest.raises((RuntimeError, ValueError), match=message):
        zep.CreditCurve(REFERENCE, tenors, spreads, recovery, discount)


def test_no_discount_curve_is_refused():
    with pytest.raises((RuntimeError, ValueError, TypeError), match="no discount curve"):
        zep.CreditCurve(REFERENCE, ["1Y"], [0.01], 0.4, None)
