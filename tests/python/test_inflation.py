"""Inflation: the zero-coupon curve reprices its quotes, reads published months and interpolates
days by hand, agrees with QuantLib's bootstrap, moves forecast months by their seasonal factors;
zero-coupon and year-on-year swaps (par, sides, telescoping of yearly inflation, QuantLib's
zero-coupon swap); inflation-linked bonds (the real bond's flows indexed, QuantLib's CPI bond);
pickling, definitions, refusals."""
import math
import pickle

import pytest
import QuantLib as ql

import zep
from quantlib_reference import ql_zero_curve

REFERENCE = "2024-03-20"
INDEX = "CPI"
TENORS = ["1Y", "2Y", "3Y", "5Y", "7Y", "10Y", "15Y"]
RATES = [0.021, 0.0235, 0.024, 0.0238, 0.0245, 0.025, 0.026]
# Published monthly levels from January 2022 to January 2024, with a seasonal wiggle.
PUBLISHED = {(2022 + (k // 12), 1 + k % 12): round(100.0 * 1.004 ** k + (0.3 if k % 12 in (3, 4) else 0.0), 2)
             for k in range(25)}
INTERPOLATIONS = ["FLAT", "LINEAR"]


def store(skip=()):
    fixings = zep.FixingStore()
    for (year, month), level in PUBLISHED.items():
        if (year, month) not in skip:
            fixings.Add(INDEX, zep.Date(1, month, year), level)
    return fixings


SEASONALITY = [0.998, 1.001, 1.003, 1.002, 1.001, 1.0, 0.999, 0.9995, 1.0005, 1.001, 0.9985, 0.997]


def curve(interpolation="LINEAR", reference=REFERENCE, fixings=None, tenors=TENORS, rates=RATES, seasonality=()):
    return zep.ZeroInflationCurve(reference, INDEX, tenors, rates, fixings or store(), "3M", interpolation,
                                  seasonality=list(seasonality))


PILLARS = ["2024-03-20", "2025-03-20", "2029-03-20", "2034-03-20", "2044-03-20"]
ZEROS = [0.03, 0.03, 0.031, 0.033, 0.034]


@pytest.fixture(scope="module")
def discount():
    return zep.YieldCurve.FromZeroRates(REFERENCE, PILLARS, ZEROS, zep.Continuous, zep.DayCounter(zep.Act365Fixed))


@pytest.mark.parametrize("seasonality", [(), SEASONALITY])
@pytest.mark.parametrize("reference", [REFERENCE, "2024-04-01", "2024-02-29"])
@pytest.mark.parametrize("interpolation", INTERPOLATIONS)
def test_curve_reprices_every_zero_coupon_quote(interpolation, reference, seasonality):
    inflation = curve(interpolation, reference, seasonality=seasonality)
    for tenor, rate in zip(TENORS, RATES):
        maturity = zep.Date(reference) + zep.Period(tenor)
        assert inflation.ZeroCouponRate(reference, maturity) == pytest.approx(rate, abs=1e-12), tenor


@pytest.mark.parametrize("date, weight", [("2024-03-20", 19 / 31), ("2024-02-29", 28 / 29), ("2023-11-16", 15 / 30)])
def test_reference_index_interpolates_the_lagged_months_by_day_of_month(date, weight):
    # Three months' lag: the first day of the date's month reads the month three months earlier.
    day = zep.Date(date)
    first_month = (day.Year() - (day.Month() <= 3), (day.Month() - 4) % 12 + 1)
    next_month = (first_month[0] + (first_month[1] == 12), first_month[1] % 12 + 1)
    low, high = PUBLISHED[first_month], PUBLISHED[next_month]
    assert curve("LINEAR").ReferenceIndex(date) == pytest.approx(low + weight * (high - low), rel=1e-15)
    assert curve("FLAT").ReferenceIndex(date) == low


@pytest.mark.parametrize("date", ["2026-07-01", "2027-02-14", "2031-12-31", "2040-03-20"])
def test_forecast_reference_index_interpolates_its_forecast_months(date):
    inflation = curve("LINEAR")
    day = zep.Date(date)
    lagged = zep.Date(1, day.Month(), day.Year()) + zep.Period("-3M")
    following = lagged + zep.Period("1M")
    low, high = inflation.MonthlyIndex(lagged), inflation.MonthlyIndex(following)
    weight = (day.DayOfMonth() - 1) / zep.Date.DaysInMonth(day.Month(), day.Year())
    assert inflation.ReferenceIndex(date) == pytest.approx(low + weight * (high - low), rel=1e-14)


def test_published_months_are_read_as_given_and_forecast_months_grow():
    inflation = curve()
    assert inflation.LatestFixingMonth() == zep.Date(1, 1, 2024)
    for (year, month), level in PUBLISHED.items():
        assert inflation.MonthlyIndex(zep.Date(15, month, year)) == level
    forecast = [inflation.MonthlyIndex(zep.Date(1, 1, 2024) + zep.Period(f"{k}M")) for k in range(1, 200)]
    assert all(later > earlier for earlier, later in zip(forecast, forecast[1:]))


def test_seasonality_reshapes_the_year_between_pillars_of_the_latest_fixing_month():
    # Fixings end in January and every quote observes a January: the pillars stay, and each
    # forecast month moves by its factor relative to January's.
    plain = curve("FLAT", "2024-04-20")
    seasonal = curve("FLAT", "2024-04-20", seasonality=SEASONALITY)
    for k in range(1, 200):
        month = zep.Date(1, 1, 2024) + zep.Period(f"{k}M")
        factor = SEASONALITY[month.Month() - 1] / SEASONALITY[0]
        assert seasonal.MonthlyIndex(month) == pytest.approx(plain.MonthlyIndex(month) * factor, rel=1e-13), month


def quantlib_flat_curve():
    today = ql.Date(20, 3, 2024)
    ql.Settings.instance().evaluationDate = today
    handle = ql.RelinkableZeroInflationTermStructureHandle()
    index = ql.EUHICPXT(handle)
    for (year, month), level in PUBLISHED.items():
        index.addFixing(ql.Date(1, month, year), level)
    day_counter = ql.Thirty360(ql.Thirty360.BondBasis)
    helpers = [ql.ZeroCouponInflationSwapHelper(ql.QuoteHandle(ql.SimpleQuote(rate)), ql.Period(3, ql.Months),
                                                today + ql.Period(tenor), ql.TARGET(), ql.ModifiedFollowing,
                                                day_counter, index, ql.CPI.Flat)
               for tenor, rate in zip(TENORS, RATES)]
    handle.linkTo(ql.PiecewiseZeroInflation(today, ql.Date(1, 1, 2024), ql.Monthly, day_counter, helpers))
    return index, day_counter


def test_pillar_months_agree_with_quantlib_bootstrap():
    # Each quote fixes the level of the month its maturity observes; QuantLib interpolates zero
    # rates between those months and this curve index levels, so only the pillars compare.
    index, _ = quantlib_flat_curve()
    inflation = curve("FLAT")
    for month, level in zip(inflation.PillarMonths(), inflation.PillarLevels()):
        assert level == pytest.approx(index.fixing(ql.Date(1, month.Month(), month.Year())), rel=1e-12), month


@pytest.mark.parametrize("tenor", ["2Y", "5Y", "10Y"])
@pytest.mark.parametrize("pay_fixed", [1, -1])
def test_zero_coupon_swap_agrees_with_quantlib(discount, tenor, pay_fixed):
    index, day_counter = quantlib_flat_curve()
    today = ql.Date(20, 3, 2024)
    ql_discount = ql_zero_curve(REFERENCE, PILLARS, ZEROS)
    # QuantLib's Payer pays the inflation leg.
    side = ql.Swap.Receiver if pay_fixed == 1 else ql.Swap.Payer
    reference = ql.ZeroCouponInflationSwap(side, 1e6, today, today + ql.Period(tenor), ql.TARGET(),
                                           ql.ModifiedFollowing, day_counter, 0.02, index, ql.Period(3, ql.Months),
                                           ql.CPI.Flat)
    reference.setPricingEngine(ql.DiscountingSwapEngine(ql_discount))
    ours = zep.MZeroCouponInflationSwap(pay_fixed, 1e6, 0.02, REFERENCE, zep.Date(REFERENCE) + zep.Period(tenor),
                                        curve("FLAT"), discount)
    assert ours.FairRate() == pytest.approx(reference.fairRate(), abs=1e-12)
    assert ours.PV() == pytest.approx(reference.NPV(), rel=1e-9)


@pytest.mark.parametrize("interpolation", INTERPOLATIONS)
def test_zero_coupon_swap_at_the_quote_is_worth_nothing_and_sides_mirror(discount, interpolation):
    inflation = curve(interpolation)
    maturity = zep.Date(REFERENCE) + zep.Period("7Y")
    at_par = zep.MZeroCouponInflationSwap(1, 1e6, 0.0245, REFERENCE, maturity, inflation, discount)
    assert at_par.PV() == pytest.approx(0.0, abs=1e-9)
    payer = zep.MZeroCouponInflationSwap(1, 1e6, 0.02, REFERENCE, maturity, inflation, discount)
    receiver = zep.MZeroCouponInflationSwap(-1, 1e6, 0.02, REFERENCE, maturity, inflation, discount)
    assert payer.PV() == -receiver.PV() > 0
    assert payer.PV() == pytest.approx(payer.InflationLegPV() - payer.FixedLegPV(), rel=1e-14)
    fixed_amount = 1e6 * (1.02 ** 7 - 1)
    assert payer.FixedLegPV() == pytest.approx(fixed_amount * discount.DiscountFactor(maturity), rel=1e-14)
    flows = payer.CashFlows()
    assert sum(flows["presentValue"]) == pytest.approx(payer.PV(), rel=1e-12)
    assert flows["amount"][1] == pytest.approx(-fixed_amount, rel=1e-14)


def test_seasoned_zero_coupon_swap_reads_its_base_from_the_fixings(discount):
    inflation = curve("FLAT")
    seasoned = zep.MZeroCouponInflationSwap(1, 1e6, 0.02, "2022-06-15", "2027-06-15", inflation, discount)
    growth = inflation.MonthlyIndex("2027-03-01") / PUBLISHED[(2022, 3)]
    assert seasoned.FairRate() == pytest.approx(growth ** (1 / 5) - 1, rel=1e-14)


def test_one_year_on_year_period_from_today_is_the_one_year_zero_coupon_swap(discount):
    one_year = zep.MYearOnYearInflationSwap(1, 1e6, 0.02, REFERENCE, "2025-03-20", curve(), discount)
    assert one_year.FairRate() == pytest.approx(RATES[0], abs=1e-12)


@pytest.mark.parametrize("interpolation", INTERPOLATIONS)
@pytest.mark.parametrize("years", [2, 5, 10])
def test_yearly_inflation_compounds_to_the_zero_coupon_growth(discount, interpolation, years):
    inflation = curve(interpolation)
    end = zep.Date(REFERENCE) + zep.Period(f"{years}Y")
    swap = zep.MYearOnYearInflationSwap(1, 1e6, 0.02, REFERENCE, end, inflation, discount)
    growth = math.prod(1 + rate for rate in swap.PeriodInflation())
    assert growth == pytest.approx((1 + RATES[TENORS.index(f"{years}Y")]) ** years, rel=1e-13)


def test_year_on_year_swap_at_its_fair_rate_is_worth_nothing(discount):
    inflation = curve()
    terms = dict(startDate=REFERENCE, endDate="2034-03-20", inflationCurve=inflation, discountCurve=discount)
    fair = zep.MYearOnYearInflationSwap(1, 1e6, 0.02, **terms).FairRate()
    assert zep.MYearOnYearInflationSwap(1, 1e6, fair, **terms).PV() == pytest.approx(0.0, abs=1e-8)
    payer, receiver = (zep.MYearOnYearInflationSwap(side, 1e6, 0.02, **terms) for side in (1, -1))
    assert payer.PV() == -receiver.PV()
    flows = payer.CashFlows()
    assert len(flows) == 20
    assert sum(flows["presentValue"]) == pytest.approx(payer.PV(), rel=1e-12)


def test_inflation_curve_and_swaps_pickle(discount):
    for original in (curve(), zep.MZeroCouponInflationSwap(1, 1e6, 0.02, REFERENCE, "2029-03-20", curve(), discount),
                     zep.MYearOnYearInflationSwap(-1, 1e6, 0.02, REFERENCE, "2029-03-20", curve(), discount),
                     zep.MInflationLinkedBond(0.01, REFERENCE, "2029-03-20", curve(), discount)):
        copy = pickle.loads(pickle.dumps(original))
        assert repr(copy) == repr(original)
        if hasattr(original, "PV"):
            assert copy.PV() == original.PV()
        else:
            assert copy.ReferenceIndex("2030-06-10") == original.ReferenceIndex("2030-06-10")


def test_inflation_swaps_from_product_definitions(discount):
    inflation = curve()
    curves = {"EUR": discount, "HICP": inflation}
    zero_coupon = zep.RateInstrumentFromDefinition(
        {"type": "ZeroCouponInflationSwap", "payFixed": 1, "notional": 1e6, "fixedRate": 0.02,
         "startDate": REFERENCE, "maturityDate": "2029-03-20", "inflationCurve": "HICP", "discountCurve": "EUR"},
        curves)
    assert zero_coupon.PV() == zep.MZeroCouponInflationSwap(1, 1e6, 0.02, REFERENCE, "2029-03-20", inflation,
                                                            discount).PV()
    year_on_year = zep.RateInstrumentFromDefinition(
        '{"type": "YearOnYearInflationSwap", "payFixed": -1, "notional": 1e6, "fixedRate": 0.02, '
        '"startDate": "2024-03-20", "endDate": "2029-03-20", "inflationCurve": "HICP", "discountCurve": "EUR"}',
        curves)
    assert year_on_year.PV() < 0


@pytest.mark.parametrize("build, message", [
    (lambda d: curve(reference="2024-06-20"), "Missing fixing of index 'CPI' for month 2024-03."),
    (lambda d: curve(fixings=store(skip={(2023, 12)})), "Missing fixing of index 'CPI' for month 2023-12."),
    (lambda d: zep.MZeroCouponInflationSwap(1, 1e6, 0.02, "2023-09-15", "2028-09-15",
                                            curve(fixings=store(skip={(2023, 6)})), d),
     "MZeroCouponInflationSwap::MZeroCouponInflationSwap failed: Missing fixing of index 'CPI' for month 2023-06."),
    (lambda d: zep.MYearOnYearInflationSwap(1, 1e6, 0.02, "2022-09-15", "2028-09-15",
                                            curve(fixings=store(skip={(2023, 6)})), d),
     "MYearOnYearInflationSwap::MYearOnYearInflationSwap failed: Missing fixing of index 'CPI' for month 2023-06."),
    (lambda d: curve(tenors=["1Y", "12M"], rates=[0.02, 0.02]),
     "ZeroInflationCurve: the zero-coupon swap 12M quote observes no month after the 1Y quote's"),
    (lambda d: curve(tenors=["1Y"], rates=[-1.5]), "ZeroInflationCurve: the zero-coupon swap 1Y quote needs a rate above -1"),
    (lambda d: curve(tenors=["1Y"], rates=[float("nan")]),
     "ZeroInflationCurve: the zero-coupon swap 1Y quote needs a rate above -1"),
    (lambda d: curve(tenors=["1Y", "2Y"], rates=[0.02]), "ZeroInflationCurve: one rate per tenor"),
    (lambda d: curve("CUBIC"), "'CUBIC' is an invalid inflation interpolation (FLAT or LINEAR)."),
    (lambda d: curve(seasonality=SEASONALITY[:11]),
     "ZeroInflationCurve: seasonality needs 12 monthly factors, January to December"),
    (lambda d: curve(seasonality=[1.0] * 11 + [0.0]), "ZeroInflationCurve: every seasonal factor must be positive"),
    (lambda d: zep.ZeroInflationCurve(REFERENCE, INDEX, ["1Y"], [0.02], None), "ZeroInflationCurve: the fixings are None."),
    (lambda d: zep.ZeroInflationCurve(REFERENCE, "RPI", ["1Y"], [0.02], store()),
     "ZeroInflationCurve: no fixings of index 'RPI'"),
    (lambda d: zep.MZeroCouponInflationSwap(1, 1e6, 0.02, REFERENCE, "2029-03-20", None, d),
     "MZeroCouponInflationSwap::MZeroCouponInflationSwap failed: MZeroCouponInflationSwap: the inflation curve is None."),
    (lambda d: zep.MYearOnYearInflationSwap(1, 1e6, 0.02, REFERENCE, "2029-03-20", curve(), None),
     "MYearOnYearInflationSwap::MYearOnYearInflationSwap failed: MYearOnYearInflationSwap: the discount curve is None."),
    (lambda d: zep.MZeroCouponInflationSwap(2, 1e6, 0.02, REFERENCE, "2029-03-20", curve(), d),
     "MZeroCouponInflationSwap::MZeroCouponInflationSwap failed: payFixed must be .1 (pay) or -1 (receive)."),
    (lambda d: zep.MZeroCouponInflationSwap(1, 1e6, 0.02, "2029-03-20", REFERENCE, curve(), d),
     "MZeroCouponInflationSwap::MZeroCouponInflationSwap failed: .*the maturity must come after the start"),
])
def test_bad_input_raises_with_the_library_message(discount, build, message):
    with pytest.raises((RuntimeError, ValueError), match="^" + message.replace("(", r"\(").replace(")", r"\)")):
        build(discount)


def test_fixing_off_the_first_of_the_month_is_refused():
    fixings = store()
    fixings.Add(INDEX, zep.Date(15, 2, 2024), 120.0)
    with pytest.raises(RuntimeError, match="fixing of index 'CPI' on .* is not on the first day of its month"):
        curve(fixings=fixings)


def linker(inflation, discount, coupon=0.01, issue=REFERENCE, maturity="2034-03-20", **terms):
    return zep.MInflationLinkedBond(coupon, issue, maturity, inflation, discount, **terms)


@pytest.mark.parametrize("issue, tenor", [(REFERENCE, "1Y"), ("2023-07-15", "6M")])
def test_linker_pays_the_real_bond_flows_scaled_by_the_index_ratio(discount, issue, tenor):
    inflation = curve()
    real = zep.MBond(0.01, issue, "2034-03-20", tenor, "ActActICMA", [100.0], discount).CashFlows()
    indexed = linker(inflation, discount, issue=issue, tenor=tenor).CashFlows()
    assert len(indexed) == len(real)
    base = inflation.ReferenceIndex(issue)
    for got, expected in zip(indexed, real):
        ratio = inflation.ReferenceIndex(str(expected["accrualEnd"])[:10]) / base
        assert got["amount"] == pytest.approx(expected["amount"] * ratio, rel=1e-14)
        assert got["rate"] == pytest.approx(expected["rate"] * ratio, rel=1e-14)
        assert got["paymentDate"] == expected["paymentDate"]


def test_linker_principal_and_pv(discount):
    inflation = curve()
    bond = linker(inflation, discount)
    flows = bond.CashFlows()
    assert flows["amount"][len(flows) - 1] == pytest.approx(100 * bond.IndexRatio("2034-03-20"), rel=1e-14)
    assert bond.IndexRatio(REFERENCE) == 1.0
    assert bond.PV() == pytest.approx(sum(flows["presentValue"]), rel=1e-14)


def test_linker_agrees_with_quantlib_cpi_bond(discount):
    # Annual coupons on the 1Y, 2Y and 3Y quotes' anniversaries observe bootstrapped months only,
    # where the two curves agree (between them QuantLib interpolates zero rates, this curve levels).
    index, day_counter = quantlib_flat_curve()
    today = ql.Date(20, 3, 2024)
    schedule = ql.Schedule(today, ql.Date(20, 3, 2027), ql.Period("1Y"), ql.TARGET(), ql.Unadjusted, ql.Unadjusted,
                           ql.DateGeneration.Backward, False)
    base = index.fixing(ql.Date(1, 12, 2023))
    reference = ql.CPIBond(0, 100.0, False, base, ql.Period(3, ql.Months), index, ql.CPI.Flat, schedule, [0.01],
                           day_counter, ql.Following, today, ql.TARGET())
    expected = sorted((cash_flow.date().serialNumber(), cash_flow.amount()) for cash_flow in reference.cashflows())
    ours = linker(curve("FLAT"), discount, maturity="2027-03-20", dayCounter="30/360", centres="TARGET").CashFlows()
    assert len(ours) == len(expected) == 4
    for (payment, amount), got in zip(expected, sorted(zip(ours["paymentDate"], ours["amount"]))):
        assert str(got[0]) == ql.Date(payment).ISO()
        assert got[1] == pytest.approx(amount, rel=1e-12)


@pytest.mark.parametrize("build, message", [
    (lambda d: linker(None, d), "MInflationLinkedBond::MInflationLinkedBond failed: MInflationLinkedBond: the inflation curve is None."),
    (lambda d: linker(curve(), None), "MInflationLinkedBond::MInflationLinkedBond failed: MInflationLinkedBond: the discount curve is None."),
    (lambda d: linker(curve(fixings=store(skip={(2022, 4)})), d, issue="2022-07-10"),
     "MInflationLinkedBond::MInflationLinkedBond failed: Missing fixing of index 'CPI' for month 2022-04."),
    (lambda d: linker(curve(), d, tenor="5M"), "MInflationLinkedBond::MInflationLinkedBond failed: Bond: coupon tenor '5M'"),
])
def test_linker_bad_input_raises_with_the_library_message(discount, build, message):
    with pytest.raises(RuntimeError, match="^" + message.replace("(", r"\(").replace(")", r"\)")):
        build(discount)
