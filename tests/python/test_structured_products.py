import datetime
import json
import math
import os

import pytest
import QuantLib as ql

import zep

TODAY = datetime.date(2024, 1, 2)
R1, R2, VOL, SPOT = 0.03, 0.01, 0.2, 100.0
MARKET = {"valuation_date": TODAY, "market": {"spot": SPOT, "volatility": VOL, "rate1": R1, "rate2": R2},
          "model": {"type": "BlackScholes"}, "simulation": {"paths": 20000, "seed": 99}}
EXAMPLES = os.path.join(os.path.dirname(__file__), "..", "..", "examples", "products")


def years(date):
    return (date - TODAY).days / 365.0


def monthly(count):
    return [datetime.date(2024 + (m // 12), m % 12 + 1, 2) for m in range(1, count + 1)]


def note_terms(**changes):
    terms = dict(initial_level=SPOT, strike_date=TODAY, observation_dates=monthly(6),
                 autocall_levels=[1.0, 1.0, 0.98, 0.96, 0.94, 0.92], coupons=0.01, coupon_barrier=0.8,
                 memory=True, knock_in_barrier=0.6, knock_in_monitoring="discrete")
    terms.update(changes)
    return terms


def test_keyword_constructor_and_definition_file_book_the_same_product(tmp_path):
    path = tmp_path / "note.json"
    path.write_text(json.dumps({"type": "AutoCall", **note_terms(strike_date="2024-01-02",
                                                                 observation_dates=[d.isoformat() for d in monthly(6)])}))
    from_file = zep.load_product(str(path), MARKET | {"valuation_date": "2024-01-02"})
    booked = zep.AutoCall(MARKET, **note_terms())
    assert isinstance(booked, zep.MStructuredDerivativeProduct)
    assert booked.ProductType() == "AutoCall"
    assert booked.Script() == from_file.Script()
    assert booked.Price() == from_file.Price()


def test_zep_dates_are_accepted():
    dates = [zep.Date(d.isoformat()) for d in monthly(6)]
    assert zep.AutoCall(MARKET, **note_terms(observation_dates=dates)).Script() == zep.AutoCall(MARKET, **note_terms()).Script()


def test_uncallable_note_without_knock_in_is_a_bond_with_its_coupons():
    dates = monthly(6)
    note = zep.AutoCall(MARKET, **note_terms(autocall_levels=1e6, coupon_barrier=0.0, knock_in_barrier=0.0,
                                             coupons=0.02, notional=1000))
    expected = math.exp(-R1 * years(dates[-1])) + sum(0.02 * math.exp(-R1 * years(d)) for d in dates)
    assert note.Price() == pytest.approx(expected, abs=1e-12)
    assert note.PV() == pytest.approx(1000 * expected, rel=1e-12)


@pytest.mark.parametrize("pivot", [None, 101.0])
def test_forward_without_reachable_target_is_a_strip_of_forwards(pivot):
    dates = monthly(12)
    terms = dict(trade_date=TODAY, fixing_dates=dates, strike=101.0, target_amount=1e9)
    if pivot:
        terms["pivot"] = pivot
    tarf = zep.TargetRedemptionForward(MARKET, **terms)
    strip = sum(math.exp(-R1 * years(d)) * (SPOT * math.exp((R1 - R2) * years(d)) - 101.0) for d in dates)
    assert tarf.Price() == pytest.approx(strip, abs=4 * tarf.PriceStandardError())


def quantlib_geometric_asian(fixings, strike):
    today = ql.Date(TODAY.day, TODAY.month, TODAY.year)
    ql.Settings.instance().evaluationDate = today
    day_count = ql.Actual365Fixed()
    process = ql.BlackScholesMertonProcess(
        ql.QuoteHandle(ql.SimpleQuote(SPOT)), ql.YieldTermStructureHandle(ql.FlatForward(today, R2, day_count)),
        ql.YieldTermStructureHandle(ql.FlatForward(today, R1, day_count)),
        ql.BlackVolTermStructureHandle(ql.BlackConstantVol(today, ql.NullCalendar(), VOL, day_count)))
    dates = [ql.Date(d.day, d.month, d.year) for d in fixings]
    option = ql.DiscreteAveragingAsianOption(ql.Average.Geometric, 1.0, 0, dates,
                                             ql.PlainVanillaPayoff(ql.Option.Call, strike), ql.EuropeanExercise(dates[-1]))
    option.setPricingEngine(ql.AnalyticDiscreteGeometricAveragePriceAsianEngine(process))
    return option.NPV()


@pytest.mark.parametrize("count", [1, 6, 12])
def test_geometric_asian_matches_the_closed_form(count):
    fixings = monthly(count)
    asian = zep.AsianPayoff(MARKET, fixing_dates=fixings, average="geometric", strike=100.0)
    assert asian.Price() == pytest.approx(quantlib_geometric_asian(fixings, 100.0), abs=4 * asian.PriceStandardError())


def test_asian_with_one_fixing_prices_path_for_path_like_the_vanilla_script():
    date = monthly(12)[-1]
    asian = zep.AsianPayoff(MARKET, fixing_dates=[date], strike=100.0)
    vanilla = zep.MXScriptStructure("2024-01-02", SPOT, VOL, R1, R2, 1, [], [date.isoformat()],
                                    ["C PAYS MAX(SPOT() - 100, 0)"], 20000, 99)
    assert asian.Price() == vanilla.Price()
    assert asian.Greeks() == vanilla.BasicGreeks()


def test_snowball_knocked_out_on_its_first_date_pays_its_first_coupon():
    dates = monthly(12)
    note = zep.Snowball(MARKET, initial_level=SPOT, strike_date=TODAY, observation_dates=dates, knock_out_levels=0.0,
                        coupon_rate=0.12)
    assert note.Price() == pytest.approx((1 + 0.12 * years(dates[0])) * math.exp(-R1 * years(dates[0])), abs=1e-12)


@pytest.mark.parametrize("build, message", [
    (lambda: zep.AutoCall(MARKET, **note_terms(colour="red")), "AutoCall: field 'colour' is not a known field"),
    (lambda: zep.AutoCall(MARKET, initial_level=100), "AutoCall: field 'strike_date' is missing"),
    (lambda: zep.AutoCall(MARKET, **note_terms(coupons="high")), "AutoCall: field 'coupons' must be a number or a list"),
    (lambda: zep.AutoCall(MARKET, **note_terms(knock_in_barrier=0.99)),
     "AutoCall: field 'knock_in_barrier' (0.99) must be below every autocall level (0.92)"),
    (lambda: zep.AutoCall(MARKET, **note_terms(coupons=[0.01, 0.02])),
     "AutoCall: field 'coupons' has 2 values for 6 observation dates"),
    (lambda: zep.AutoCall(MARKET, **note_terms(underlyings=2)), "a worst-of needs a Monte Carlo of several underlyings"),
    (lambda: zep.TargetRedemptionForward(MARKET, trade_date=TODAY, fixing_dates=monthly(3), strike=1.0, target_count=4),
     "TargetRedemptionForward: field 'target_count' (4) is never reached"),
    (lambda: zep.AsianPayoff(MARKET, fixing_dates=monthly(3), strike=100.0, past_fixings={monthly(3)[0]: 99.0}),
     "AsianPayoff: field 'past_fixings.02/02/2024' is after the valuation date 02/01/2024"),
    (lambda: zep.AutoCall(MARKET | {"model": {}}, **note_terms()), "Market: field 'model.type' is missing"),
    (lambda: zep.AutoCall(MARKET, **note_terms(memory=False, missed_coupons=0.02)),
     "AutoCall: field 'missed_coupons' needs coupons with memory"),
    (lambda: zep.AutoCall(MARKET | {"valuation_date": "2024-12-02"}, **note_terms()),
     "AutoCall: every date is before the valuation date 02/12/2024: the product has matured"),
])
def test_bad_terms_raise_with_the_field_path(build, message):
    with pytest.raises(RuntimeError, match="MStructuredDerivativeProduct::FromText failed") as error:
        build()
    assert message in str(error.value)


def test_missing_market_and_unknown_type_are_refused(tmp_path):
    with pytest.raises(TypeError, match="AutoCall: a market is needed"):
        zep.AutoCall(None, **note_terms())
    with pytest.raises(TypeError, match="market must be a dict"):
        zep.AutoCall(3, **note_terms())
    path = tmp_path / "swap.yaml"
    path.write_text("type: Swap\n")
    with pytest.raises(RuntimeError, match="unknown product type \"Swap\""):
        zep.load_product(str(path), MARKET)


def test_load_market_checks_the_schema(tmp_path):
    market = zep.load_market(os.path.join(EXAMPLES, "fx_market.yaml"))
    assert market["market"]["spot"] == 1.10 and market["valuation_date"] == "2024-01-02"
    path = tmp_path / "market.yaml"
    path.write_text("valuation_date: 2024-01-02\nmarket: {spot: -1, rate1: 0, rate2: 0}\nmodel: {type: 1}\n")
    with pytest.raises(RuntimeError, match="Market: field 'market.spot' must be above 0"):
        zep.load_market(str(path))


def test_scripted_definition_loads_as_a_booked_product():
    product = zep.load_product(os.path.join(EXAMPLES, "..", "autocallable.yaml"))
    assert product.ProductType() == "Scripted"
    assert "# Scripted" in product.Script()


def test_report_ends_with_the_generated_script(tmp_path):
    note = zep.AutoCall(MARKET | {"simulation": {"paths": 500}}, **note_terms())
    with open(note.WriteReport(str(tmp_path), "note"), encoding="utf-8") as report:
        text = report.read()
    assert text.endswith("```\n" + note.Script() + "```\n")


def test_empty_product_answers_not_initialized():
    with pytest.raises(RuntimeError, match="not initialized"):
        zep.MStructuredDerivativeProduct().Script()


@pytest.mark.parametrize("name", ["autocall", "snowball", "tarf", "asian"])
def test_every_example_prices(name):
    market = "fx_market.yaml" if name == "tarf" else "equity_market.yaml"
    product = zep.load_product(os.path.join(EXAMPLES, name + ".yaml"), os.path.join(EXAMPLES, market))
    assert math.isfinite(product.Price())


def test_autocall_class_prices_path_for_path_like_the_hand_written_example():
    hand = zep.MXScriptStructure.FromFile(os.path.join(EXAMPLES, "..", "autocallable.yaml"))
    market = {"valuation_date": TODAY, "market": {"spot": 100.0, "volatility": 0.2, "rate1": 0.03, "rate2": 0.01},
              "model": {"type": 1}, "simulation": {"paths": 100000, "seed": 20240102}}
    # Monthly calls at 100% paying 0.75% a month elapsed: coupons with memory above the call level.
    note = zep.AutoCall(market, initial_level=100.0, strike_date=TODAY,
                        observation_dates=[datetime.date(2024 + m // 12, m % 12 + 1, 2) for m in range(1, 13)],
                        autocall_levels=1.0, coupons=0.0075, coupon_barrier=1.0, memory=True, knock_in_barrier=0.7,
                        notional=1000000)
    assert note.PV() == pytest.approx(hand.PV(), rel=1e-12)


def test_cash_flows_are_dated_and_add_up_to_the_price():
    note = zep.AutoCall(MARKET, **note_terms())
    flows = note.CashFlows()
    assert [day for day, _ in flows] == monthly(6)
    assert sum(value for _, value in flows) == pytest.approx(note.Price(), abs=1e-12)


def black_scholes_put_and_digital(strike, t):
    """Black-Scholes put and cash-or-nothing digital put (pays 1 below the strike), discounted."""
    sd = VOL * math.sqrt(t)
    d1 = (math.log(SPOT / strike) + (R1 - R2 + VOL * VOL / 2) * t) / sd
    n = lambda x: 0.5 * math.erfc(-x / math.sqrt(2))  # noqa: E731
    digital = math.exp(-R1 * t) * n(-(d1 - sd))
    return strike * digital - SPOT * math.exp(-R2 * t) * n(-d1), digital


def test_leverage_below_the_pivot_adds_puts_and_digitals():
    # Below the pivot P the fixing settles L (S - K): the forward plus (L - 1) (S - K) 1{S < P},
    # that is (L - 1) times a short put struck at P and (P - K) digital puts.
    dates, strike, pivot, leverage = monthly(12), 101.0, 95.0, 2.5
    tarf = zep.TargetRedemptionForward(MARKET, trade_date=TODAY, fixing_dates=dates, strike=strike, pivot=pivot,
                                       leverage=leverage, target_amount=1e9)
    expected = 0.0
    for d in dates:
        put, digital = black_scholes_put_and_digital(pivot, years(d))
        forward = math.exp(-R1 * years(d)) * (SPOT * math.exp((R1 - R2) * years(d)) - strike)
        expected += forward + (leverage - 1) * (-put + (pivot - strike) * digital)
    assert tarf.Price() == pytest.approx(expected, abs=4 * tarf.PriceStandardError())


def test_report_draws_the_product_levels():
    note = zep.AutoCall(MARKET, **note_terms())
    assert note.ReportLevels() == {"Autocall (first)": 100.0, "Autocall (last)": pytest.approx(92.0),
                                   "Coupon barrier": 80.0, "Knock-in": 60.0}
    tarf = zep.TargetRedemptionForward(MARKET, trade_date=TODAY, fixing_dates=monthly(2), strike=101.0, target_count=1)
    assert tarf.ReportLevels() == {"Strike": 101.0, "Pivot": 101.0}


def test_note_valued_after_its_strike_starts_from_its_state():
    # Knocked in, with two memory coupons owed, priced between the 2nd and 3rd observations at a
    # spot the coupon barrier of 0.8 is met on: the next coupon pays the missed ones too.
    seasoned = MARKET | {"valuation_date": "2024-03-10", "market": MARKET["market"] | {"spot": 85.0}}
    note = zep.AutoCall(seasoned, **note_terms(knocked_in=True, missed_coupons=0.02))
    script = note.Script()
    assert "# 02/04/2024: the note's state at the valuation date, then observation 3 of 6" in script
    assert "KI = 1\nMISSED = 0.02\n" in script
    fresh = zep.AutoCall(seasoned, **note_terms(knocked_in=True))
    assert note.Price() > fresh.Price()
