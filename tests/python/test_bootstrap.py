"""Curves bootstrapped from deposits, FRAs and swaps: every quote reprices on the curve, the curve
agrees with QuantLib's piecewise zero curve on the same quotes and conventions, bad quote sets are
refused naming the quote."""
import math

import pytest
import QuantLib as ql

import zep

QUOTES = [("DEPOSIT", "1M", 0.0350), ("DEPOSIT", "3M", 0.0360), ("DEPOSIT", "6M", 0.0365), ("FRA", "6x12", 0.0340),
          ("SWAP", "2Y", 0.0320), ("SWAP", "3Y", 0.0305), ("SWAP", "5Y", 0.0295), ("SWAP", "7Y", 0.0292),
          ("SWAP", "10Y", 0.0295), ("SWAP", "15Y", 0.0300), ("SWAP", "20Y", 0.0298), ("SWAP", "30Y", 0.0285)]
REFERENCE = "2024-01-15"


@pytest.fixture(scope="module")
def curve():
    return zep.BootstrapYieldCurve(REFERENCE, QUOTES)


def rolled(date):
    return zep.Calendar().Adjust(date, zep.ModifiedFollowing, "TARGET")


def test_every_quote_reprices_on_the_curve(curve):
    calendar = zep.Calendar()
    spot = zep.Date(REFERENCE)
    for _ in range(2):  # two TARGET business days
        spot = spot + 1
        while not calendar.IsBusinessDay(spot, "TARGET"):
            spot = spot + 1
    act360 = zep.DayCounter(zep.Act360)
    for instrument, tenor, rate in QUOTES:
        if instrument == "SWAP":
            leg = zep.Schedule(spot, spot + zep.Period(tenor), "1Y", "TARGET", fixingLagDays=0,
                               dayCounter=zep.DayCounter(zep.Thirty360))
            annuity = sum(tau * curve.DiscountFactor(pay) for tau, pay in zip(leg.AccrualFractions(), leg.PaymentDates()))
            implied = (curve.DiscountFactor(spot) - curve.DiscountFactor(leg.PaymentDates()[-1])) / annuity
        else:
            start_months, end = (0, tenor) if instrument == "DEPOSIT" else (int(tenor.split("x")[0]), tenor.split("x")[1] + "M")
            start = rolled(spot + zep.Period(f"{start_months}M")) if start_months else spot
            finish = rolled(spot + zep.Period(end))
            implied = (curve.DiscountFactor(start) / curve.DiscountFactor(finish) - 1) / act360.YearFraction(start, finish)
        assert implied == pytest.approx(rate, abs=1e-10), (instrument, tenor)


def test_the_curve_agrees_with_quantlib_on_the_same_quotes(curve):
    today = ql.Date(15, 1, 2024)
    ql.Settings.instance().evaluationDate = today
    target = ql.TARGET()
    helpers = []
    for instrument, tenor, rate in QUOTES:
        quote = ql.QuoteHandle(ql.SimpleQuote(rate))
        if instrument == "DEPOSIT":
            helpers.append(ql.DepositRateHelper(quote, ql.Period(tenor), 2, target, ql.ModifiedFollowing, False,
                                                ql.Actual360()))
        elif instrument == "FRA":
            start, end = (int(m) for m in tenor.split("x"))
            helpers.append(ql.FraRateHelper(quote, start, end, 2, target, ql.ModifiedFollowing, False, ql.Actual360()))
        else:
            helpers.append(ql.SwapRateHelper(quote, ql.Period(tenor), target, ql.Annual, ql.ModifiedFollowing,
                                             ql.Thirty360(ql.Thirty360.BondBasis), ql.Euribor6M()))
    reference = ql.PiecewiseLinearZero(today, helpers, ql.Actual365Fixed())
    for days in (10, 45, 183, 400, 800, 1500, 2600, 3700, 5500, 7300, 10900):
        date = today + days
        assert curve.DiscountFactor(date.ISO()) == pytest.approx(reference.discount(date), abs=1e-10), date.ISO()


@pytest.mark.parametrize("quotes, message", [
    ([("BOND", "2Y", 0.03)], "unknown instrument 'BOND'"),
    ([("FRA", "6-12", 0.03)], "an FRA tenor reads like '3x6'"),
    ([("DEPOSIT", "12M", 0.03), ("SWAP", "1Y", 0.03)], "the swap 1Y quote matures on the date of the deposit 12M quote"),
    ([("DEPOSIT", "3M", math.nan)], "the deposit 3M quote is not a number"),
    ([("DEPOSIT", "3M", 25.0)], "no discount factor reprices the deposit 3M quote"),
])
def test_bad_quote_sets_are_refused_naming_the_quote(quotes, message):
    with pytest.raises((RuntimeError, ValueError), match=message):
        zep.BootstrapYieldCurve(REFERENCE, quotes)


def test_quotes_also_come_as_dicts():
    rows = [{"instrument": i, "tenor": t, "rate": r} for i, t, r in QUOTES]
    assert zep.BootstrapYieldCurve(REFERENCE, rows).DiscountFactor("2030-01-15") == \
        zep.BootstrapYieldCurve(REFERENCE, QUOTES).DiscountFactor("2030-01-15")
