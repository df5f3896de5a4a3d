"""Futures and overnight-index swaps in the bootstrap, and projection curves bootstrapped against
a given discount curve: the quotes reprice, the OIS-discounted swap curve agrees with QuantLib's
on the same quotes and conventions, the quote helpers and tables give the same curve."""
import pickle

import pytest
import QuantLib as ql

import zep

REFERENCE = "2024-01-15"
OIS = [("OIS", "1W", 0.0390), ("OIS", "1M", 0.0389), ("OIS", "3M", 0.0385), ("OIS", "6M", 0.0375),
       ("OIS", "1Y", 0.0355), ("OIS", "2Y", 0.0320), ("OIS", "3Y", 0.0305), ("OIS", "5Y", 0.0290),
       ("OIS", "10Y", 0.0285), ("OIS", "20Y", 0.0280), ("OIS", "30Y", 0.0270)]
SWAPS = [("DEPOSIT", "6M", 0.0395), ("SWAP", "2Y", 0.0335), ("SWAP", "3Y", 0.0320), ("SWAP", "5Y", 0.0305),
         ("SWAP", "7Y", 0.0302), ("SWAP", "10Y", 0.0300), ("SWAP", "15Y", 0.0298), ("SWAP", "20Y", 0.0293),
         ("SWAP", "30Y", 0.0285)]


@pytest.fixture(scope="module")
def ois_curve():
    return zep.BootstrapYieldCurve(REFERENCE, OIS)


@pytest.fixture(scope="module")
def projection_curve(ois_curve):
    return zep.BootstrapYieldCurve(REFERENCE, SWAPS, discountCurve=ois_curve)


def spot_date():
    return zep.Calendar().Adjust(zep.Date(REFERENCE) + 2, zep.Following, "TARGET")  # Monday + 2 = Wednesday


def par_rate(fixed, floating, discount, projection):
    annuity = sum(tau * discount.DiscountFactor(pay) for tau, pay in zip(fixed.AccrualFractions(), fixed.PaymentDates()))
    legs = sum(discount.DiscountFactor(pay) * (projection.DiscountFactor(s) / projection.DiscountFactor(e) - 1)
               for s, e, pay in zip(floating.AccrualStartDates(), floating.AccrualEndDates(), floating.PaymentDates()))
    return legs / annuity


def test_every_ois_reprices_on_its_own_curve(ois_curve):
    spot = spot_date()
    for _, tenor, rate in OIS:
        leg = zep.Schedule(spot, spot + zep.Period(tenor), "1Y", "TARGET", fixingLagDays=0)
        assert par_rate(leg, leg, ois_curve, ois_curve) == pytest.approx(rate, abs=1e-10), tenor


def test_every_swap_reprices_discounted_on_the_ois_curve(ois_curve, projection_curve):
    spot = spot_date()
    for instrument, tenor, rate in SWAPS:
        end = spot + zep.Period(tenor)
        if instrument == "DEPOSIT":
            end = zep.Calendar().Adjust(end, zep.ModifiedFollowing, "TARGET")
            implied = (projection_curve.DiscountFactor(spot) / projection_curve.DiscountFactor(end) - 1) / \
                zep.DayCounter(zep.Act360).YearFraction(spot, end)
        else:
            fixed = zep.Schedule(spot, end, "1Y", "TARGET", fixingLagDays=0, dayCounter=zep.DayCounter(zep.Thirty360))
            floating = zep.Schedule(spot, end, "6M", "TARGET", fixingLagDays=0)
            implied = par_rate(fixed, floating, ois_curve, projection_curve)
        assert implied == pytest.approx(rate, abs=1e-10), tenor


def quantlib_curves():
    today = ql.Date(15, 1, 2024)
    ql.Settings.instance().evaluationDate = today
    estr = ql.Estr()
    ois_helpers = [ql.OISRateHelper(2, ql.Period(tenor), ql.QuoteHandle(ql.SimpleQuote(rate)), estr)
                   for _, tenor, rate in OIS]
    ois = ql.PiecewiseLinearZero(today, ois_helpers, ql.Actual365Fixed())
    discount = ql.YieldTermStructureHandle(ois)
    helpers = [ql.DepositRateHelper(ql.QuoteHandle(ql.SimpleQuote(SWAPS[0][2])), ql.Period("6M"), 2, ql.TARGET(),
                                    ql.ModifiedFollowing, False, ql.Actual360())]
    for _, tenor, rate in SWAPS[1:]:
        helpers.append(ql.SwapRateHelper(ql.QuoteHandle(ql.SimpleQuote(rate)), ql.Period(tenor), ql.TARGET(), ql.Annual,
                                         ql.ModifiedFollowing, ql.Thirty360(ql.Thirty360.BondBasis), ql.Euribor6M(),
                                         ql.QuoteHandle(), ql.Period(0, ql.Days), discount))
    projection = ql.PiecewiseLinearZero(today, helpers, ql.Actual365Fixed())
    return ois, projection


@pytest.mark.parametrize("globalFit, worst", [(True, 1e-10), (False, None)])
def test_a_cubic_curve_reprices_every_quote_through_the_global_fit(globalFit, worst):
    curve = zep.BootstrapYieldCurve(REFERENCE, OIS, interpolationMethod=6, globalFit=globalFit)
    spot = spot_date()
    errors = []
    for _, tenor, rate in OIS:
        leg = zep.Schedule(spot, spot + zep.Period(tenor), "1Y", "TARGET", fixingLagDays=0)
        errors.append(abs(par_rate(leg, leg, curve, curve) - rate))
    if worst:
        assert max(errors) <= worst
    else:  # pillar by pillar only the last quote is exact
        assert errors[-1] <= 1e-10 < max(errors)


@pytest.mark.parametrize("which", ["ois", "projection"])
def test_the_curves_agree_with_quantlib(ois_curve, projection_curve, which):
    ours = {"ois": ois_curve, "projection": projection_curve}[which]
    theirs = dict(zip(("ois", "projection"), quantlib_curves()))[which]
    today = ql.Date(15, 1, 2024)
    for days in (5, 20, 60, 150, 300, 500, 800, 1500, 2600, 3700, 5500, 7300, 10900):
        date = today + days
        assert ours.DiscountFactor(date.ISO()) == pytest.approx(theirs.discount(date), abs=1e-8), date.ISO()


def test_futures_reprice_their_prices():
    quotes = [zep.DepositQuote("2M", 0.036), zep.FutureQuote("2M", 96.45), zep.FutureQuote("5M", 96.60, 0.0001),
              zep.FutureQuote("8M", 96.72, 0.0002), zep.SwapQuote("3Y", 0.033)]
    curve = zep.BootstrapYieldCurve(REFERENCE, quotes)
    # The contracts run from the IMM dates of March, June and September 2024, three months each.
    for (start, end, days), quote in zip([("2024-03-20", "2024-06-20", 92), ("2024-06-19", "2024-09-19", 92),
                                          ("2024-09-18", "2024-12-18", 91)], quotes[1:4]):
        forward = (curve.DiscountFactor(start) / curve.DiscountFactor(end) - 1) / (days / 360)
        assert 100 * (1 - forward - quote["convexity"]) == pytest.approx(quote["rate"], abs=1e-8), start


def test_helpers_tuples_and_tables_give_one_curve():
    helpers = [zep.DepositQuote("3M", 0.031), zep.FraQuote("3x6", 0.032), zep.SwapQuote("5Y", 0.034),
               zep.OisQuote("7Y", 0.033)]
    tuples = [("DEPOSIT", "3M", 0.031), ("FRA", "3x6", 0.032), ("SWAP", "5Y", 0.034), ("OIS", "7Y", 0.033)]

    class Table:  # what the bootstrap reads of a pandas DataFrame
        def to_dict(self, orient):
            assert orient == "records"
            return [{"instrument": i, "tenor": t, "rate": r, "convexity": 0.0, "fixedTenor": float("nan")}
                    for i, t, r in tuples]
    curves = [zep.BootstrapYieldCurve(REFERENCE, quotes) for quotes in (helpers, tuples, Table())]
    for date in ("2024-03-01", "2027-01-15", "2031-01-15"):
        assert curves[0].DiscountFactor(date) == curves[1].DiscountFactor(date) == curves[2].DiscountFactor(date)


def test_a_swap_may_set_its_own_fixed_period():
    curve = zep.BootstrapYieldCurve(REFERENCE, [zep.SwapQuote("2Y", 0.034), zep.SwapQuote("5Y", 0.034, fixedTenor="6M")])
    spot = spot_date()
    leg = zep.Schedule(spot, spot + zep.Period("5Y"), "6M", "TARGET", fixingLagDays=0,
                       dayCounter=zep.DayCounter(zep.Thirty360))
    annuity = sum(tau * curve.DiscountFactor(pay) for tau, pay in zip(leg.AccrualFractions(), leg.PaymentDates()))
    implied = (curve.DiscountFactor(spot) - curve.DiscountFactor(leg.PaymentDates()[-1])) / annuity
    assert implied == pytest.approx(0.034, abs=1e-10)


def test_a_projection_curve_pickles(projection_curve):
    copy = pickle.loads(pickle.dumps(projection_curve))
    assert copy.DiscountFactor("2040-01-15") == projection_curve.DiscountFactor("2040-01-15")


@pytest.mark.parametrize("quotes, message", [
    ([("OIS", "2Y", 0.03), ("OIS", "2Y", 0.031)], "the OIS 2Y quote matures on the date of the OIS 2Y quote"),
    ([("FUTURE", "3M", 250.0)], "no discount factor reprices the future 3M\\+3M quote \\(Brent: "),
    ([("OIS", "5Y", 0.03), ("OIS", "2Y", 0.031)],
     "the OIS 2Y quote matures before the OIS 5Y quote listed ahead of it: quotes go in maturity order"),
    ([("SWAP", "5Y", 0.03, 0.0, 1.0)], "a quote reads \\(instrument, tenor, rate\\[, convexity\\]\\)"),
])
def test_bad_quotes_are_refused_naming_the_quote(quotes, message):
    with pytest.raises((RuntimeError, ValueError), match=message):
        zep.BootstrapYieldCurve(REFERENCE, quotes)


def test_a_kept_bootstrap_requotes_to_the_fresh_curve(ois_curve):
    bootstrap = zep.BootstrapCurve(REFERENCE, SWAPS, discountCurve=ois_curve)
    before = bootstrap.Curve()
    bootstrap.Requote(3, 0.0310)
    moved = list(SWAPS)
    moved[3] = ("SWAP", "5Y", 0.0310)
    fresh = zep.BootstrapYieldCurve(REFERENCE, moved, discountCurve=ois_curve)
    for date in ("2025-01-15", "2029-01-15", "2040-01-15"):
        assert bootstrap.Curve().DiscountFactor(date) == pytest.approx(fresh.DiscountFactor(date), abs=1e-14)
    assert before.DiscountFactor("2029-01-15") != bootstrap.Curve().DiscountFactor("2029-01-15")
    assert list(bootstrap.ImpliedQuotes())[3] == pytest.approx(0.0310, abs=1e-10)
    with pytest.raises(RuntimeError, match="no discount factor reprices the deposit 6M quote"):
        bootstrap.Requote(0, 25.0)
    assert bootstrap.Curve().DiscountFactor("2029-01-15") == pytest.approx(fresh.DiscountFactor("2029-01-15"),
                                                                           abs=1e-14)
