"""Swaps, bonds and FX forwards: par conditions on their own curves, QuantLib on the same
conventions, bond yield algebra against closed forms and finite differences, worked Treasury and
Bund figures, FX parity, cash-flow tables, pickling and every refusal."""
import datetime
import math
import pickle

import numpy
import pytest
import QuantLib as ql

import zep

from quantlib_reference import ql_date

REFERENCE = "2024-01-15"
PILLARS = ["2024-01-15", "2024-07-15", "2025-01-15", "2027-01-15", "2030-01-15", "2034-01-15", "2045-01-15"]
ZEROS = [0.031, 0.0325, 0.0318, 0.0295, 0.0301, 0.0312, 0.0330]


@pytest.fixture(scope="module")
def curve():
    return zep.YieldCurve.FromZeroRates(REFERENCE, PILLARS, ZEROS, zep.Continuous, zep.DayCounter(zep.Act365Fixed))


@pytest.fixture(scope="module")
def ql_curve():
    today = ql.Date(15, 1, 2024)
    ql.Settings.instance().evaluationDate = today
    dates = [ql.Date(int(p[8:]), int(p[5:7]), int(p[:4])) for p in PILLARS]
    return ql.YieldTermStructureHandle(ql.ZeroCurve(dates, ZEROS, ql.Actual365Fixed(), ql.TARGET(), ql.Linear(),
                                                    ql.Continuous))


def swap(curve, fixed_rate=0.03, pay_fixed=1, **kwargs):
    return zep.MVanillaSwap(pay_fixed, 1e6, fixed_rate, "2024-01-17", "2034-01-17", curve, **kwargs)


# --- swaps -----------------------------------------------------------------------------------

@pytest.mark.parametrize("pay_fixed", [1, -1])
def test_swap_agrees_with_quantlib(curve, ql_curve, pay_fixed):
    target = ql.TARGET()
    start, end = ql.Date(17, 1, 2024), ql.Date(17, 1, 2034)
    fixed = ql.Schedule(start, end, ql.Period("1Y"), target, ql.ModifiedFollowing, ql.ModifiedFollowing,
                        ql.DateGeneration.Backward, False)
    floating = ql.Schedule(start, end, ql.Period("6M"), target, ql.ModifiedFollowing, ql.ModifiedFollowing,
                           ql.DateGeneration.Backward, False)
    index = ql.Euribor6M(ql_curve)
    side = ql.VanillaSwap.Payer if pay_fixed == 1 else ql.VanillaSwap.Receiver
    reference = ql.VanillaSwap(side, 1e6, fixed, 0.03, ql.Thirty360(ql.Thirty360.BondBasis), floating, index, 0.001,
                               ql.Actual360())
    reference.setPricingEngine(ql.DiscountingSwapEngine(ql_curve))
    ours = swap(curve, pay_fixed=pay_fixed, spread=0.001)
    assert ours.NPV() == pytest.approx(reference.NPV(), rel=1e-8)
    assert ours.ParRate() == pytest.approx(reference.fairRate(), rel=1e-8)
    assert ours.ParSpread() == pytest.approx(reference.fairSpread(), rel=1e-8)
    assert ours.FixedLegBPS() == pytest.approx(abs(reference.fixedLegBPS()), rel=1e-8)


@pytest.mark.parametrize("lookback, lockout, shift", [(0, 0, False), (2, 0, False), (2, 0, True), (0, 3, False),
                                                     (2, 2, True)])
def test_an_ois_agrees_with_quantlib_under_lookback_lockout_and_observation_shift(curve, ql_curve, lookback, lockout,
                                                                                 shift):
    schedule = ql.Schedule(ql.Date(17, 1, 2024), ql.Date(17, 1, 2027), ql.Period("1Y"), ql.TARGET(),
                           ql.ModifiedFollowing, ql.ModifiedFollowing, ql.DateGeneration.Backward, False)
    reference = ql.OvernightIndexedSwap(ql.Swap.Payer, 1e6, schedule, 0.03, ql.Actual360(), ql.Estr(ql_curve), 0.0, 0,
                                        ql.Following, ql.TARGET(), False, ql.RateAveraging.Compound, lookback, lockout,
                                        shift)
    reference.setPricingEngine(ql.DiscountingSwapEngine(ql_curve))
    ours = zep.MVanillaSwap(1, 1e6, 0.03, "2024-01-17", "2027-01-17", curve, index="ESTR", floatingKind="OVERNIGHT",
                            floatTenor="1Y", fixedDayCounter="Act360", fixingLagDays=0, lookbackDays=lookback,
                            lockoutDays=lockout, observationShift=shift)
    assert ours.NPV() == pytest.approx(reference.NPV(), rel=1e-10)
    assert ours.ParRate() == pytest.approx(reference.fairRate(), rel=1e-12)


def test_a_swap_at_its_par_rate_on_its_bootstrap_curve_is_worth_nothing():
    quotes = [("DEPOSIT", "6M", 0.0365), ("SWAP", "2Y", 0.0320), ("SWAP", "5Y", 0.0295), ("SWAP", "10Y", 0.0301)]
    built = zep.BootstrapYieldCurve(REFERENCE, quotes)
    for tenor, quote in [("2Y", 0.0320), ("5Y", 0.0295), ("10Y", 0.0301)]:
        end = zep.Date("2024-01-17") + zep.Period(tenor)
        at_par = zep.MVanillaSwap(1, 1e7, quote, "2024-01-17", end, built)
        assert at_par.NPV() == pytest.approx(0.0, abs=1e-6), tenor
        assert at_par.ParRate() == pytest.approx(quote, abs=1e-12), tenor


def test_a_floating_leg_without_spread_is_worth_par_on_its_own_curve(curve):
    for kind in ("IBOR", "OVERNIGHT"):
        ours = swap(curve, floatingKind=kind, floatTenor="1Y" if kind == "OVERNIGHT" else "6M", index="ESTR")
        par = 1e6 * (curve.DiscountFactor(zep.Date("2024-01-17")) - curve.DiscountFactor(zep.Date("2034-01-17")))
        assert ours.FloatingLegPV() == pytest.approx(par, rel=1e-12), kind


def test_gearing_scales_the_index_and_in_arrears_reads_the_period_after_the_accrual(curve):
    par = 1e6 * (curve.DiscountFactor(zep.Date("2024-01-17")) - curve.DiscountFactor(zep.Date("2034-01-17")))
    assert swap(curve, gearing=2.0).FloatingLegPV() == pytest.approx(2 * par, rel=1e-12)
    arrears = swap(curve, inArrears=True).CashFlowSchedule()
    calendar = zep.Calendar()
    for row in [r for r in arrears if r.fixingDate.SerialNumber()][:6]:
        start = row.accrualEnd
        end = calendar.Adjust(start + zep.Period("6M"), zep.ModifiedFollowing, "TARGET")
        forward = (curve.DiscountFactor(start) / curve.DiscountFactor(end) - 1) / (zep.DayCounter(zep.Act360)
                                                                                     .YearFraction(start, end))
        assert row.rate == pytest.approx(forward, rel=1e-12), str(row.paymentDate)


def test_an_ois_compounds_published_fixings_before_the_valuation_date(curve):
    fixings = zep.FixingStore()
    day = datetime.date(2024, 1, 2)
    while day < datetime.date(2024, 1, 15):
        fixings.Add("ESTR", day, 0.039)
        day += datetime.timedelta(days=1)
    ois = zep.MVanillaSwap(1, 1e6, 0.03, "2024-01-02", "2025-01-02", curve, index="ESTR", floatingKind="OVERNIGHT",
                           floatTenor="1Y", fixedTenor="1Y", fixings=fixings)
    assert math.isfinite(ois.NPV())
    with pytest.raises(RuntimeError, match=r"^MVanillaSwap::MVanillaSwap failed: Missing fixing of index 'ESTR' on "
                                           r"02/01/2024\."):
        zep.MVanillaSwap(1, 1e6, 0.03, "2024-01-02", "2025-01-02", curve, index="ESTR", floatingKind="OVERNIGHT",
                         floatTenor="1Y")


def test_a_cross_currency_swap_of_flat_floating_legs_is_worth_nothing(curve):
    foreign = zep.YieldCurve.FromZeroRates(REFERENCE, PILLARS, [z + 0.01 for z in ZEROS], zep.Continuous,
                                           zep.DayCounter(zep.Act365Fixed))
    spot = 1.10
    xccy = zep.MXCurrencySwap(1.1e6, 1e6, "2024-01-17", "2029-01-17", spot, curve, foreign)
    # Each leg pays its notional at the start and gets back par coupons and the notional: nothing.
    assert xccy.DomesticLegPV() == pytest.approx(0.0, abs=1e-6)
    assert xccy.ForeignLegPV() == pytest.approx(0.0, abs=1e-6)
    assert xccy.NPV() == pytest.approx(0.0, abs=1e-6)
    par = zep.MXCurrencySwap(1.1e6, 1e6, "2024-01-17", "2029-01-17", spot, curve, foreign,
                             domesticRate=0.0025)
    flat = zep.MXCurrencySwap(1.1e6, 1e6, "2024-01-17", "2029-01-17", spot, curve, foreign,
                              domesticRate=par.ParSpread())
    assert flat.NPV() == pytest.approx(0.0, abs=1e-6)


# Five years, the fixed leg yearly and the floating leg half-yearly, amortising 3m, 3m, 2m, 2m, 1m.
FIXED_STEPS = [3e6, 3e6, 2e6, 2e6, 1e6]
FLOAT_STEPS = [n for n in FIXED_STEPS for _ in range(2)]


def amortising(curve, pay_fixed=1, **kwargs):
    return zep.MVanillaSwap(pay_fixed, 1e6, 0.03, "2024-01-17", "2029-01-17", curve, fixedNotionals=FIXED_STEPS,
                            floatNotionals=FLOAT_STEPS, **kwargs)


@pytest.mark.parametrize("pay_fixed", [1, -1])
def test_an_amortising_swap_is_the_sum_of_bullet_swaps_on_its_notional_steps(curve, pay_fixed):
    # 1m to 2029, 1m more to 2028 and 1m more to 2026 outstanding period by period.
    bullets = [zep.MVanillaSwap(pay_fixed, 1e6, 0.03, "2024-01-17", end, curve, spread=0.001)
               for end in ("2029-01-17", "2028-01-17", "2026-01-17")]
    ours = amortising(curve, pay_fixed, spread=0.001)
    assert ours.NPV() == pytest.approx(sum(b.NPV() for b in bullets), rel=1e-12)
    assert ours.FixedLegBPS() == pytest.approx(sum(b.FixedLegBPS() for b in bullets), rel=1e-12)
    assert ours.FloatingLegPV() == pytest.approx(sum(b.FloatingLegPV() for b in bullets), rel=1e-12)
    at_par = amortising(curve, pay_fixed, spread=0.001)
    assert zep.MVanillaSwap(pay_fixed, 1e6, at_par.ParRate(), "2024-01-17", "2029-01-17", curve, spread=0.001,
                            fixedNotionals=FIXED_STEPS, floatNotionals=FLOAT_STEPS).NPV() == pytest.approx(0, abs=1e-7)


def test_an_amortising_swap_agrees_with_quantlib_on_its_notional_schedule(curve, ql_curve):
    target = ql.TARGET()
    schedule = lambda tenor: ql.Schedule(ql.Date(17, 1, 2024), ql.Date(17, 1, 2029), ql.Period(tenor), target,
                                         ql.ModifiedFollowing, ql.ModifiedFollowing, ql.DateGeneration.Backward, False)
    fixed = ql.FixedRateLeg(schedule("1Y"), ql.Thirty360(ql.Thirty360.BondBasis), FIXED_STEPS, [0.03],
                            ql.ModifiedFollowing)
    floating = ql.IborLeg(FLOAT_STEPS, schedule("6M"), ql.Euribor6M(ql_curve), ql.Actual360(), ql.ModifiedFollowing,
                          [2], [1.0], [0.001])
    reference = ql.Swap(fixed, floating)  # pays the first leg
    reference.setPricingEngine(ql.DiscountingSwapEngine(ql_curve))
    ours = amortising(curve, spread=0.001)
    assert ours.NPV() == pytest.approx(reference.NPV(), rel=1e-8)
    fixed_bps = reference.legBPS(0)
    assert ours.FixedLegBPS() == pytest.approx(abs(fixed_bps), rel=1e-8)
    assert ours.ParRate() == pytest.approx(0.03 - reference.NPV() / fixed_bps * 1e-4, rel=1e-8)  # NPV linear in the rate
    rows = [r for r in ours.CashFlowSchedule() if r.accrualFraction > 0 and r.fixingDate.SerialNumber() == 0]
    assert [r.notional for r in rows] == FIXED_STEPS


# --- mark-to-market cross-currency swaps ------------------------------------------------------

SPOT = 1.10  # domestic per foreign: the domestic leg's first notional is the foreign one at spot


def mtm_swap(curve, foreign, resetting="DOMESTIC", **kwargs):
    return zep.MXCurrencySwap(SPOT * 1e6, 1e6, "2024-01-17", "2029-01-17", SPOT, curve, foreign, resettingLeg=resetting,
                              **kwargs)


def coupons(swap):
    """The coupons of the received domestic leg, then those of the paid foreign leg (as many)."""
    rows = [r for r in swap.CashFlowSchedule() if r.kind == zep.CashFlowKind_Coupon]
    return rows[:len(rows) // 2], rows[len(rows) // 2:]


@pytest.mark.parametrize("resetting", ["DOMESTIC", "FOREIGN"])
def test_mark_to_market_notionals_reset_to_the_fx_forward_of_each_period(curve, eur_curve, resetting):
    domestic, foreign = coupons(mtm_swap(curve, eur_curve, resetting))
    resets, constant = (domestic, foreign) if resetting == "DOMESTIC" else (foreign, domestic)
    assert [row.notional for row in constant] == [constant[0].notional] * 20
    assert (domestic[0].notional, foreign[0].notional) == (SPOT * 1e6, 1e6)
    for row in resets[1:]:
        forward = SPOT * eur_curve.DiscountFactor(row.accrualStart) / curve.DiscountFactor(row.accrualStart)
        expected = 1e6 * forward if resetting == "DOMESTIC" else SPOT * 1e6 / forward
        assert row.notional == pytest.approx(expected, rel=1e-14), str(row.accrualStart)


@pytest.mark.parametrize("resetting", ["DOMESTIC", "FOREIGN"])
def test_a_mark_to_market_swap_of_flat_floating_legs_on_their_own_curves_is_worth_nothing(curve, eur_curve, resetting):
    # Each period lends its reset notional and gets it back with the period's own forward rate.
    ours = mtm_swap(curve, eur_curve, resetting)
    assert ours.DomesticLegPV() == pytest.approx(0.0, abs=1e-6)
    assert ours.ForeignLegPV() == pytest.approx(0.0, abs=1e-6)
    assert ours.NPV() == pytest.approx(0.0, abs=1e-6)


def test_a_mark_to_market_swap_with_a_basis_is_its_expected_flows_and_worth_nothing_at_par(curve, eur_curve):
    projection = zep.YieldCurve.FromZeroRates(REFERENCE, PILLARS, [z + 0.002 for z in ZEROS], zep.Continuous,
                                              zep.DayCounter(zep.Act365Fixed))
    ours = mtm_swap(curve, eur_curve, domesticRate=0.0015, domesticProjectionCurve=projection)
    # The independent reference: lend each period's forward notional at its start, get it back
    # with the projected rate plus the spread at its end.
    d = lambda c, x: c.DiscountFactor(x)
    act360 = zep.DayCounter(zep.Act360)
    pv = 0.0
    for i, row in enumerate(coupons(ours)[0]):
        start, end = row.accrualStart, row.accrualEnd
        notional = SPOT * 1e6 if i == 0 else 1e6 * SPOT * d(eur_curve, start) / d(curve, start)
        forward = (d(projection, start) / d(projection, end) - 1) / act360.YearFraction(start, end)
        interest = notional * (forward + 0.0015) * act360.YearFraction(start, end)
        pv += (notional + interest) * d(curve, end) - notional * d(curve, start)
    assert ours.DomesticLegPV() == pytest.approx(pv, rel=1e-10)
    at_par = mtm_swap(curve, eur_curve, domesticRate=ours.ParSpread(), domesticProjectionCurve=projection)
    assert at_par.NPV() == pytest.approx(0.0, abs=1e-6)


def test_a_started_mark_to_market_swap_reads_its_published_fx_reset(curve, eur_curve):
    fixings = zep.FixingStore()
    for index, rate in [("DOMESTIC", 0.034), ("FOREIGN", 0.024)]:
        fixings.Add(index, "2023-10-13", rate)
    build = lambda: zep.MXCurrencySwap(1.05e6, 1e6, "2023-07-17", "2028-07-17", SPOT, curve, eur_curve,
                                       resettingLeg="DOMESTIC", fxIndex="EURUSD", fixings=fixings)
    with pytest.raises(RuntimeError, match=r"^MXCurrencySwap::MXCurrencySwap failed: Missing fixing of index 'EURUSD' "
                                           r"on 13/10/2023\."):
        build()
    fixings.Add("EURUSD", "2023-10-13", 1.06)
    current = build().CashFlowSchedule()[0]
    assert current.accrualStart == zep.Date("2023-10-17")
    assert (current.notional, current.rate) == (pytest.approx(1.06e6, rel=1e-15), 0.034)
    foreign_resets = zep.MXCurrencySwap(1.05e6, 1e6, "2023-07-17", "2028-07-17", SPOT, curve, eur_curve,
                                        resettingLeg="FOREIGN", fxIndex="EURUSD", fixings=fixings)
    current = coupons(foreign_resets)[1][0]
    assert (current.accrualStart, current.notional) == (zep.Date("2023-10-17"), pytest.approx(1.05e6 / 1.06, rel=1e-15))

# --- bonds -----------------------------------------------------------------------------------

TREASURY = dict(couponRate=0.045, issueDate="2023-11-15", maturityDate="2033-11-15", tenor="6M",
                dayCounter="ActActICMA")
BUND = dict(couponRate=0.026, issueDate="2023-08-15", maturityDate="2033-08-15", tenor="1Y", dayCounter="ActActICMA")


@pytest.mark.parametrize("terms, settlement, accrued", [
    (TREASURY, "2024-01-16", 2.25 * 62 / 182),   # 62 of the 182 days from 15 Nov 2023 to 15 May 2024
    (BUND, "2023-12-20", 2.6 * 127 / 366),       # 127 of the 366 days from 15 Aug 2023 to 15 Aug 2024
])
def test_accrued_interest_of_a_treasury_and_a_bund(terms, settlement, accrued):
    assert zep.MBond(**terms).AccruedAmount(settlement) == pytest.approx(accrued, abs=1e-12)


@pytest.mark.parametrize("terms, frequency", [(TREASURY, 2), (BUND, 1)])
def test_a_bond_at_par_on_a_coupon_date_yields_its_coupon_with_the_annuity_duration(terms, frequency):
    bond = zep.MBond(**terms)
    coupon = terms["couponRate"]
    assert bond.Yield(100.0, terms["issueDate"]) == pytest.approx(coupon, abs=1e-12)
    periods, per_period = 10 * frequency, coupon / frequency
    modified = (1 - (1 + per_period) ** -periods) / coupon  # the par bond's closed form
    assert bond.ModifiedDuration(coupon, terms["issueDate"]) == pytest.approx(modified, rel=1e-12)
    assert bond.MacaulayDuration(coupon, terms["issueDate"]) == pytest.approx(modified * (1 + per_period), rel=1e-12)


@pytest.mark.parametrize("yield_", [-0.005, 0.0, 0.02, 0.045, 0.11])
@pytest.mark.parametrize("settlement", ["2024-01-16", "2027-06-30", "2033-11-14"])
def test_price_to_yield_to_price_round_trips(yield_, settlement):
    bond = zep.MBond(**TREASURY)
    clean = bond.CleanPrice(yield_, settlement)
    assert bond.CleanPrice(bond.Yield(clean, settlement), settlement) == pytest.approx(clean, abs=1e-12)


@pytest.mark.parametrize("yield_", [0.01, 0.045, 0.09])
def test_duration_and_convexity_are_the_yield_derivatives_of_the_price(yield_):
    bond = zep.MBond(**TREASURY)
    settle, h = "2024-03-01", 1e-5
    up, mid, down = (bond.DirtyPrice(yield_ + s, settle) for s in (h, 0.0, -h))
    assert bond.ModifiedDuration(yield_, settle) == pytest.approx(-(up - down) / (2 * h) / mid, rel=1e-8)
    assert bond.Convexity(yield_, settle) == pytest.approx((up - 2 * mid + down) / (h * h) / mid, rel=1e-5)


@pytest.mark.parametrize("terms, frequency, settlement, yield_", [
    (TREASURY, ql.Semiannual, "2024-01-16", 0.0437),
    (TREASURY, ql.Semiannual, "2031-02-28", 0.0512),
    (BUND, ql.Annual, "2023-12-20", 0.0241),
    (BUND, ql.Annual, "2030-03-03", 0.0187),
])
def test_bond_figures_agree_with_quantlib(terms, frequency, settlement, yield_):
    ql.Settings.instance().evaluationDate = ql_date(settlement)
    schedule = ql.Schedule(ql_date(terms["issueDate"]), ql_date(terms["maturityDate"]), ql.Period(terms["tenor"]),
                           ql.NullCalendar(), ql.Unadjusted, ql.Unadjusted, ql.DateGeneration.Backward, False)
    day_count = ql.ActualActual(ql.ActualActual.ISMA)
    reference = ql.FixedRateBond(0, 100.0, schedule, [terms["couponRate"]], day_count, ql.Unadjusted)
    settle = ql_date(settlement)
    rate = ql.InterestRate(yield_, day_count, ql.Compounded, frequency)
    ours = zep.MBond(**terms)
    clean = ql.BondFunctions.cleanPrice(reference, rate, settle)
    assert ours.AccruedAmount(settlement) == pytest.approx(ql.BondFunctions.accruedAmount(reference, settle), rel=1e-12)
    assert ours.CleanPrice(yield_, settlement) == pytest.approx(clean, rel=1e-10)
    assert ours.Yield(clean, settlement) == pytest.approx(
        ql.BondFunctions.bondYield(reference, ql.BondPrice(clean, ql.BondPrice.Clean), day_count, ql.Compounded,
                                   frequency, settle, 1e-14, 100), rel=1e-8)
    assert ours.ModifiedDuration(yield_, settlement) == pytest.approx(
        ql.BondFunctions.duration(reference, rate, ql.Duration.Modified, settle), rel=1e-8)
    assert ours.MacaulayDuration(yield_, settlement) == pytest.approx(
        ql.BondFunctions.duration(reference, rate, ql.Duration.Macaulay, settle), rel=1e-8)
    assert ours.Convexity(yield_, settlement) == pytest.approx(
        ql.BondFunctions.convexity(reference, rate, settle), rel=1e-8)


# Worked by hand from the definitions: each flow discounted over the coupon periods to it, the
# first one counted in days left over days in the period (Act/Act ICMA), compounding at the
# coupon frequency; accrued is the coupon times days run over days in the period.
def test_a_bund_in_its_last_coupon_period_is_its_last_flow_discounted_over_the_part_year_left():
    bund = zep.MBond(**BUND)
    # 15 Aug 2032 to 15 Aug 2033 has 365 days; on 15 Feb 2033, 184 have run and 181 are left.
    dirty = 102.6 / 1.03 ** (181 / 365)
    assert bund.AccruedAmount("2033-02-15") == pytest.approx(2.6 * 184 / 365, abs=1e-12)
    assert bund.CleanPrice(0.03, "2033-02-15") == pytest.approx(dirty - 2.6 * 184 / 365, abs=1e-12)
    assert bund.Yield(dirty - 2.6 * 184 / 365, "2033-02-15") == pytest.approx(0.03, abs=1e-12)
    assert bund.MacaulayDuration(0.03, "2033-02-15") == pytest.approx(181 / 365, rel=1e-12)
    assert bund.ModifiedDuration(0.03, "2033-02-15") == pytest.approx(181 / 365 / 1.03, rel=1e-12)


def test_a_treasury_two_coupons_from_maturity_discounts_at_half_its_yield_per_period():
    treasury = zep.MBond(**TREASURY)
    # 15 Nov 2032 to 15 May 2033 has 181 days; on 1 Feb 2033, 78 have run and 103 are left.
    per_period, left = 1 + 0.05 / 2, 103 / 181
    flows = [(left, 2.25), (left + 1, 102.25)]
    dirty = sum(amount / per_period ** periods for periods, amount in flows)
    accrued = 2.25 * 78 / 181
    assert treasury.AccruedAmount("2033-02-01") == pytest.approx(accrued, abs=1e-12)
    assert treasury.CleanPrice(0.05, "2033-02-01") == pytest.approx(dirty - accrued, abs=1e-12)
    macaulay = sum(periods / 2 * amount / per_period ** periods for periods, amount in flows) / dirty
    assert treasury.MacaulayDuration(0.05, "2033-02-01") == pytest.approx(macaulay, rel=1e-12)
    assert treasury.ModifiedDuration(0.05, "2033-02-01") == pytest.approx(macaulay / per_period, rel=1e-12)


def test_a_treasury_in_its_last_coupon_period_quotes_a_simple_yield_on_request():
    treasury = zep.MBond(simpleYieldInLastPeriod=True, **TREASURY)
    # 15 May to 15 Nov 2033 has 184 days; on 1 Aug 2033, 78 have run and 106 are left.
    years, accrued = 106 / 184 / 2, 2.25 * 78 / 184
    growth = 1 + 0.05 * years
    assert treasury.CleanPrice(0.05, "2033-08-01") == pytest.approx(102.25 / growth - accrued, abs=1e-12)
    assert treasury.Yield(102.25 / growth - accrued, "2033-08-01") == pytest.approx(0.05, abs=1e-12)
    assert treasury.MacaulayDuration(0.05, "2033-08-01") == pytest.approx(years, rel=1e-12)
    assert treasury.ModifiedDuration(0.05, "2033-08-01") == pytest.approx(years / growth, rel=1e-12)
    assert treasury.Convexity(0.05, "2033-08-01") == pytest.approx(2 * years ** 2 / growth ** 2, rel=1e-12)
    # Before the last period, and without the request, the yield compounds as ever.
    assert treasury.CleanPrice(0.05, "2033-02-01") == zep.MBond(**TREASURY).CleanPrice(0.05, "2033-02-01")
    compounded = 102.25 / (1 + 0.05 / 2) ** (106 / 184) - accrued
    assert zep.MBond(**TREASURY).CleanPrice(0.05, "2033-08-01") == pytest.approx(compounded, abs=1e-12)


def test_the_z_spread_reprices_the_bond_over_its_curve(curve):
    bond = zep.MBond(discountCurve=curve, **TREASURY)
    assert bond.ZSpread(bond.PV() - bond.AccruedAmount(REFERENCE), REFERENCE) == pytest.approx(0.0, abs=1e-10)
    spread = bond.ZSpread(95.0, REFERENCE)
    assert spread > 0.0


def test_an_amortising_bond_prices_per_hundred_outstanding():
    bond = zep.MBond(0.05, "2024-01-15", "2026-01-15", "6M", "30/360", [100.0, 100.0, 50.0, 50.0])
    assert bond.Yield(100.0, "2024-01-15") == pytest.approx(0.05, abs=1e-12)  # par at the coupon rate
    assert bond.Yield(100.0, "2025-03-01") == pytest.approx(0.05, abs=1e-3)


# --- FX --------------------------------------------------------------------------------------

@pytest.fixture(scope="module")
def eur_curve():
    return zep.YieldCurve.FromZeroRates(REFERENCE, PILLARS, [z - 0.01 for z in ZEROS], zep.Continuous,
                                        zep.DayCounter(zep.Act365Fixed))


def test_an_fx_forward_at_the_parity_outright_is_worth_nothing(curve, eur_curve):
    spot, spot_date, delivery = 1.0950, "2024-01-17", "2025-01-17"
    d = lambda c, x: c.DiscountFactor(zep.Date(x))
    parity = spot * (d(eur_curve, delivery) / d(eur_curve, spot_date)) / (d(curve, delivery) / d(curve, spot_date))
    forward = zep.MFXForwardOutright(1, 1e6, 1.10, delivery, spot, spot_date, curve, eur_curve)
    assert forward.Outright() == pytest.approx(parity, rel=1e-14)
    assert forward.NPV() == pytest.approx(1e6 * (parity - 1.10) * d(curve, delivery), rel=1e-12)
    fair = zep.MFXForwardOutright(-1, 1e6, parity, delivery, spot, spot_date, curve, eur_curve)
    assert fair.NPV() == pytest.approx(0.0, abs=1e-8)
    points = zep.MFXForwardOutright(1, 1e6, 1.10, delivery, spot, spot_date, curve, eur_curve, forwardPoints=120.5)
    assert points.Outright() == pytest.approx(1.0950 + 0.01205, abs=1e-15)


def test_an_fx_swap_at_its_fair_far_rate_is_worth_nothing(curve, eur_curve):
    build = lambda far: zep.MFXSwap(1, 1e6, 1.0960, "2024-02-15", far, "2024-08-15", 1.0950, "2024-01-17", curve,
                                    eur_curve)
    assert build(build(1.10).FairFarRate()).NPV() == pytest.approx(0.0, abs=1e-8)


def test_an_ndf_settles_on_the_fixing_once_published(curve, eur_curve):
    ndf = zep.MFXNDF(1, 1e6, 1.10, "2024-06-13", "2024-06-17", 1.0950, "2024-01-17", curve, eur_curve, "EURUSD")
    outright = zep.MFXForwardOutright(1, 1e6, 1.10, "2024-06-17", 1.0950, "2024-01-17", curve, eur_curve).Outright()
    assert ndf.Price() == pytest.approx(outright, rel=1e-14)
    assert ndf.NPV() == pytest.approx(1e6 * (outright - 1.10) / outright * eur_curve.DiscountFactor(zep.Date("2024-06-17")),
                                      rel=1e-12)
    fixings = zep.FixingStore()
    fixings.Add("EURUSD", "2024-01-10", 1.12)
    fixed = zep.MFXNDF(1, 1e6, 1.10, "2024-01-10", "2024-01-19", 1.0950, "2024-01-17", curve, eur_curve, "EURUSD",
                       fixings)
    assert fixed.Price() == 1.12
    unfixed = zep.MFXNDF(1, 1e6, 1.10, "2024-01-10", "2024-01-19", 1.0950, "2024-01-17", curve, eur_curve, "EURUSD")
    with pytest.raises(RuntimeError, match=r"^MFXNDF::NPV failed: Missing fixing of index 'EURUSD' on 10/01/2024\."):
        unfixed.NPV()
    with pytest.raises(RuntimeError, match=r"^MFXNDF::Price failed: Missing fixing"):
        unfixed.Price()


# --- the Python shape ------------------------------------------------------------------------

def test_cash_flows_come_as_a_table_and_as_a_vector_of_rows(curve):
    ours = swap(curve)
    table = ours.CashFlows()
    rows = ours.CashFlowSchedule()
    assert isinstance(rows, zep.CashFlowVector) and len(rows) == 30
    assert isinstance(rows[0], zep.CashflowScheduleRow)
    assert len(table) == len(rows)
    total = sum(row.presentValue for row in rows)
    assert total == pytest.approx(ours.NPV(), rel=1e-12)
    columns = table.columns if hasattr(table, "columns") else table.dtype.names
    assert list(columns) == ["kind", "accrualStart", "accrualEnd", "fixingDate", "paymentDate", "accrualFraction",
                             "notional", "rate", "amount", "discountFactor", "presentValue"]
    assert numpy.datetime64(table["paymentDate"][0], "D") == numpy.datetime64("2024-07-17")
    iterator = iter(rows)
    assert next(iterator).paymentDate == rows[0].paymentDate


@pytest.mark.parametrize("date", ["2024-01-17", datetime.date(2024, 1, 17), numpy.datetime64("2024-01-17")])
def test_dates_arrive_as_text_date_or_datetime64(curve, date):
    assert zep.MVanillaSwap(1, 1e6, 0.03, date, "2034-01-17", curve).NPV() == pytest.approx(swap(curve).NPV(), rel=1e-14)
    fixings = zep.FixingStore()
    fixings.Add("ESTR", date, 0.04)
    assert fixings.Fixing("ESTR", "2024-01-17") == 0.04


def test_instruments_pickle_and_show_themselves(curve, eur_curve):
    instruments = [
        swap(curve), zep.MBond(discountCurve=curve, **TREASURY),
        zep.MFXForwardOutright(1, 1e6, 1.10, "2025-01-17", 1.0950, "2024-01-17", curve, eur_curve),
        zep.MXCurrencySwap(1.1e6, 1e6, "2024-01-17", "2029-01-17", 1.1, curve, eur_curve, domesticRate=0.001),
        amortising(curve), mtm_swap(curve, eur_curve, domesticRate=0.001),
        zep.MBond(discountCurve=curve, simpleYieldInLastPeriod=True, **TREASURY),
        zep.MBasisSwap(1e6, "2024-01-17", "2029-01-17", curve, curve, eur_curve, receivedSpread=0.001),
        zep.MFloatingRateNote(100.0, 0.002, "2024-01-17", "2029-01-17", curve),
        zep.MBill(1e6, "2024-07-15", discountCurve=curve),
        zep.MFRA(1, 1e6, 0.03, "2024-04-17", "2024-07-17", curve),
        zep.MFXSwap(1, 1e6, 1.0960, "2024-02-15", 1.10, "2024-08-15", 1.0950, "2024-01-17", curve, eur_curve),
        zep.MFXNDF(1, 1e6, 1.10, "2024-06-13", "2024-06-17", 1.0950, "2024-01-17", curve, eur_curve, "EURUSD"),
    ]
    for instrument in instruments:
        copy = pickle.loads(pickle.dumps(instrument))
        assert copy.NPV() == instrument.NPV(), type(instrument).__name__
        assert repr(copy) == repr(instrument) == f"<{type(instrument).__name__}: {instrument.Describe()}>"
        assert len(copy.CashFlows()) == len(instrument.CashFlowSchedule()) > 0
    future = zep.MBondFuture("2024-03-11", **BASKET)
    assert pickle.loads(pickle.dumps(future)).ConversionFactor(1) == future.ConversionFactor(1)


@pytest.mark.parametrize("build, message", [
    (lambda c: swap(c, floatingKind="CMS"),
     "MVanillaSwap::MVanillaSwap failed: 'CMS' is an invalid floating rate kind (IBOR or OVERNIGHT)."),
    (lambda c: zep.MVanillaSwap(1, 1e6, 0.03, "2034-01-17", "2024-01-17", c),
     "MVanillaSwap::MVanillaSwap failed: Schedule: termination date must be after effective date"),
    (lambda c: zep.MVanillaSwap(1, -1e6, 0.03, "2024-01-17", "2034-01-17", c),
     "MVanillaSwap::MVanillaSwap failed: Leg: notional '-1000000.000000' must be a finite number >= 0."),
    (lambda c: zep.MVanillaSwap(2, 1e6, 0.03, "2024-01-17", "2034-01-17", c),
     "MVanillaSwap::MVanillaSwap failed: payFixed must be +1 (pay) or -1 (receive)."),
    (lambda c: zep.MVanillaSwap(1, 1e6, 0.03, "2024-01-17", "2034-01-17", None),
     "MVanillaSwap::MVanillaSwap failed: MVanillaSwap: the discount curve is None."),
    (lambda c: zep.MVanillaSwap(1, 1e6, 0.03, "2024-01-17", "2029-01-17", c, fixedNotionals=[1e6, 1e6]),
     "MVanillaSwap::MVanillaSwap failed: Leg: give one notional, or one per period (5)."),
    (lambda c: zep.MXCurrencySwap(1e6, 0.0, "2024-01-17", "2029-01-17", 1.1, c, c, resettingLeg="DOMESTIC"),
     "MXCurrencySwap::MXCurrencySwap failed: Leg: the notional a leg resets from '0.000000' must be a positive number."),
    (lambda c: zep.MXCurrencySwap(1e6, 1e6, "2024-01-17", "2029-01-17", 1.1, c, c, resettingLeg="BOTH"),
     "MXCurrencySwap::MXCurrencySwap failed: 'BOTH' is an invalid resetting leg (NONE or DOMESTIC or FOREIGN)."),
    (lambda c: zep.MXCurrencySwap(1e6, 1e6, "2024-01-17", "2029-01-17", 1.1, c, c, resettingLeg="FOREIGN", fxIndex=""),
     "MXCurrencySwap::MXCurrencySwap failed: a mark-to-market swap needs the name of its FX fixing (fxIndex)."),
    (lambda c: zep.MXCurrencySwap(1e6, 1e6, "2024-01-17", "2029-01-17", -1.0, c, c),
     "MXCurrencySwap::MXCurrencySwap failed: FX spot '-1.000000' must be a positive number."),
    (lambda c: zep.MBond(0.04, "2024-01-15", "2034-01-15", "5M"),
     "MBond::MBond failed: Bond: coupon tenor '5M' must divide a year (1Y, 6M, 3M, 1M ...)."),
    (lambda c: zep.MBond(0.04, "2024-01-15", "2034-01-15", notionals=[100.0, -5.0]),
     "MBond::MBond failed: Bond: give one notional, or one per period (20)."),
    (lambda c: zep.MBond(**TREASURY).Yield(-3.0, "2024-01-16"),
     "MBond::Yield failed: Bond: clean price '-3.000000' must be a positive number."),
    (lambda c: zep.MBond(**TREASURY).Yield(0.001, "2023-11-15"),
     "MBond::Yield failed: Bond: no yield between -99% a period and 1000% gives the clean price '0.001000'."),
    (lambda c: zep.MBond(**TREASURY).AccruedAmount("2040-01-01"),
     "MBond::AccruedAmount failed: Bond: settlement 01/01/2040 is outside the bond's life 15/11/2023 to 15/11/2033."),
    (lambda c: zep.MBond(**TREASURY).PV(),
     "MBond::PV failed: MBond::PV: the bond was built without a discount curve."),
    (lambda c: zep.MFXForwardOutright(1, 0.0, 1.1, "2025-01-17", 1.09, "2024-01-17", c, c),
     "MFXForwardOutright::MFXForwardOutright failed: FX forward: notional '0.000000' must be positive; the side says "
     "buy or sell."),
    (lambda c: zep.MFXForwardOutright(1, 1e6, 1.1, "2025-01-17", 1.09, "2024-01-17", c, None),
     "MFXForwardOutright::MFXForwardOutright failed: MFXForwardOutright: a currency curve is None."),
    (lambda c: zep.MFXForwardOutright(1, 1e6, 1.1, "2024-01-16", 1.09, "2024-01-17", c, c).NPV(),
     "MFXForwardOutright::NPV failed: FX forward: delivery 16/01/2024 is before the spot date 17/01/2024."),
    (lambda c: zep.MFXSwap(1, 1e6, 1.1, "2024-08-15", 1.1, "2024-02-15", 1.09, "2024-01-17", c, c),
     "MFXSwap::MFXSwap failed: FX swap: the far date 15/02/2024 must be after the near date 15/08/2024."),
    (lambda c: zep.MFXNDF(1, 1e6, 1.1, "2024-06-20", "2024-06-17", 1.09, "2024-01-17", c, c),
     "MFXNDF::MFXNDF failed: NDF: the fixing date 20/06/2024 is after the settlement date 17/06/2024."),
])
def test_bad_input_is_refused_with_a_message_naming_it(curve, build, message):
    with pytest.raises((RuntimeError, ValueError)) as failure:
        build(curve)
    assert str(failure.value).startswith(message), str(failure.value)


def test_an_unknown_day_count_name_is_refused(curve):
    with pytest.raises((RuntimeError, ValueError), match="invalid day count convention"):
        swap(curve, fixedDayCounter="Thirty-ish")


# --- money market, basis and floating-rate notes ---------------------------------------------

def test_a_bill_from_its_discount_yield_and_money_market_yield():
    bill = zep.MBill(100.0, "2024-07-15")  # 182 days from 15 Jan 2024, Act/360
    price = bill.PriceFromDiscountYield(0.05, "2024-01-15")
    assert price == pytest.approx(100.0 * (1 - 0.05 * 182 / 360), abs=1e-12)
    assert bill.DiscountYield(price, "2024-01-15") == pytest.approx(0.05, abs=1e-14)
    mm = bill.MoneyMarketYield(price, "2024-01-15")
    assert mm == pytest.approx((100.0 / price - 1) * 360 / 182, abs=1e-14)
    assert bill.PriceFromMoneyMarketYield(mm, "2024-01-15") == pytest.approx(price, abs=1e-12)


def test_a_bill_on_a_curve_is_its_face_discounted(curve):
    bill = zep.MBill(1e6, "2024-07-15", discountCurve=curve)
    assert bill.PV() == pytest.approx(1e6 * curve.DiscountFactor(zep.Date("2024-07-15")), rel=1e-14)


def test_an_fra_pays_the_forward_less_the_contract_rate(curve):
    fra = zep.MFRA(1, 1e6, 0.03, "2024-04-17", "2024-07-17", curve)
    start, end = zep.Date("2024-04-17"), zep.Date("2024-07-17")
    tau = 91 / 360
    forward = (curve.DiscountFactor(start) / curve.DiscountFactor(end) - 1) / tau
    assert fra.ParRate() == pytest.approx(forward, rel=1e-14)
    # Settled at the start with the forward's own discounting: worth the same as paid at the end.
    assert fra.NPV() == pytest.approx(1e6 * (forward - 0.03) * tau * curve.DiscountFactor(end), rel=1e-12)
    assert zep.MFRA(1, 1e6, forward, "2024-04-17", "2024-07-17", curve).NPV() == pytest.approx(0.0, abs=1e-9)


def test_a_basis_swap_at_its_par_spread_is_worth_nothing(curve, eur_curve):
    build = lambda spread: zep.MBasisSwap(1e6, "2024-01-17", "2029-01-17", curve, curve, eur_curve,
                                          receivedSpread=spread)
    assert build(build(0.0).ParSpread()).NPV() == pytest.approx(0.0, abs=1e-7)
    same = zep.MBasisSwap(1e6, "2024-01-17", "2029-01-17", curve, curve, curve)
    assert same.NPV() == pytest.approx(0.0, abs=1e-7)  # both legs worth par on one curve


def test_a_floating_rate_note_on_its_own_curve_is_worth_par_at_the_start(curve):
    note = zep.MFloatingRateNote(100.0, 0.0, "2024-01-17", "2029-01-17", curve)
    assert note.PV() == pytest.approx(100.0 * curve.DiscountFactor(zep.Date("2024-01-17")), rel=1e-12)
    assert note.DiscountMargin(note.PV()) == pytest.approx(0.0, abs=1e-12)
    shifted = zep.YieldCurve.FromZeroRates(REFERENCE, PILLARS, [z + 0.002 for z in ZEROS], zep.Continuous,
                                           zep.DayCounter(zep.Act365Fixed))
    # The margin shifts discounting only: price the note on the shifted curve, projecting on the original.
    on_shifted = zep.MFloatingRateNote(100.0, 0.0, "2024-01-17", "2029-01-17", shifted, curve)
    assert note.DiscountMargin(on_shifted.PV()) == pytest.approx(0.002, abs=1e-10)


@pytest.mark.parametrize("build, message", [
    (lambda c: zep.MBill(-100.0, "2024-07-15"), "MBill::MBill failed: Bill: face value '-100.000000' must be a positive number."),
    (lambda c: zep.MBill(100.0, "2024-07-15").DiscountYield(99.0, "2024-08-01"),
     "MBill::DiscountYield failed: Bill: settlement 01/08/2024 is not before the maturity 15/07/2024."),
    (lambda c: zep.MFRA(1, 1e6, 0.03, "2024-07-17", "2024-04-17", c),
     "MFRA::MFRA failed: FRA: the end date 17/04/2024 is not after the start 17/07/2024."),
    (lambda c: zep.MFloatingRateNote(100.0, 0.0, "2024-01-17", "2029-01-17", c).DiscountMargin(0.0),
     "MFloatingRateNote::DiscountMargin failed: FRN: price '0.000000' must be a positive number."),
    (lambda c: zep.MBasisSwap(1e6, "2024-01-17", "2029-01-17", None, c, c),
     "MBasisSwap::MBasisSwap failed: MBasisSwap: the discount curve is None."),
])
def test_money_market_and_note_inputs_are_refused_naming_them(curve, build, message):
    with pytest.raises((RuntimeError, ValueError)) as failure:
        build(curve)
    assert str(failure.value).startswith(message), str(failure.value)


# --- bond futures ----------------------------------------------------------------------------

BASKET = dict(coupons=[0.026, 0.022, 0.06], issueDates=["2023-08-15", "2023-02-15", "2022-06-10"],
              maturityDates=["2033-08-15", "2033-02-15", "2032-06-10"])


def test_conversion_factors_are_clean_prices_at_the_notional_coupon():
    future = zep.MBondFuture("2024-03-11", **BASKET)
    ql.Settings.instance().evaluationDate = ql.Date(11, 3, 2024)
    for i, (coupon, issue, maturity) in enumerate(zip(*BASKET.values())):
        to_ql = lambda text: ql.Date(int(text[8:]), int(text[5:7]), int(text[:4]))
        schedule = ql.Schedule(to_ql(issue), to_ql(maturity), ql.Period("1Y"), ql.NullCalendar(), ql.Unadjusted,
                               ql.Unadjusted, ql.DateGeneration.Backward, False)
        bond = ql.FixedRateBond(0, 100.0, schedule, [coupon], ql.ActualActual(ql.ActualActual.ISMA), ql.Unadjusted)
        expected = ql.BondFunctions.cleanPrice(bond, 0.06, ql.ActualActual(ql.ActualActual.ISMA), ql.Compounded,
                                               ql.Annual, ql.Date(11, 3, 2024)) / 100
        assert future.ConversionFactor(i) == pytest.approx(expected, rel=1e-10), i
    on_coupon_date = zep.MBondFuture("2024-06-10", [0.06], ["2022-06-10"], ["2032-06-10"])
    assert on_coupon_date.ConversionFactor(0) == pytest.approx(1.0, abs=1e-14)  # a 6% bond at 6% is at par


def test_the_implied_repo_finances_the_bond_into_delivery():
    future = zep.MBondFuture("2024-09-10", **BASKET)
    bond = zep.MBond(0.026, "2023-08-15", "2033-08-15", "1Y")
    settle, clean, futures_price = "2024-03-11", 97.5, 131.2
    repo = future.ImpliedRepo(0, futures_price, clean, settle)
    dirty = clean + bond.AccruedAmount(settle)
    invoice = futures_price * future.ConversionFactor(0) + bond.AccruedAmount("2024-09-10")
    # A coupon of 2.6 on 15 Aug 2024 is received and invested at the repo rate to delivery (26 days).
    assert dirty * (1 + repo * 183 / 360) == pytest.approx(invoice + 2.6 * (1 + repo * 26 / 360), rel=1e-13)


def test_the_cheapest_to_deliver_has_the_highest_implied_repo():
    future = zep.MBondFuture("2024-03-11", **BASKET)
    settle = "2024-01-15"
    prices = [zep.MBond(c, i, m, "1Y").CleanPrice(0.03, settle) for c, i, m in zip(*BASKET.values())]
    for cheap in range(3):
        marked = [p - (0.5 if k == cheap else 0.0) for k, p in enumerate(prices)]
        repos = [future.ImpliedRepo(k, 133.0, marked[k], settle) for k in range(3)]
        assert future.CheapestToDeliver(133.0, marked, settle) == repos.index(max(repos))
    with pytest.raises(RuntimeError, match=r"^MBondFuture::CheapestToDeliver failed: Bond future: give one clean "
                                           r"price per bond of the basket \(3\)\."):
        future.CheapestToDeliver(133.0, prices[:2], settle)
    with pytest.raises(RuntimeError, match=r"^MBondFuture::ConversionFactor failed: Bond future: bond 3 is not in "
                                           r"the basket of 3\."):
        future.ConversionFactor(3)


# --- product definitions ---------------------------------------------------------------------

SWAP_YAML = """
type: VanillaSwap
payFixed: 1
notional: 1000000
fixedRate: 0.03
startDate: 2024-01-17
endDate: 2034-01-17
discountCurve: EUR
"""


def test_a_swap_from_its_yaml_or_json_definition_is_the_swap_built_directly(curve):
    direct = swap(curve)
    from_yaml = zep.RateInstrumentFromDefinition(SWAP_YAML, {"EUR": curve})
    import json
    as_json = json.dumps({"type": "VanillaSwap", "payFixed": 1, "notional": 1e6, "fixedRate": 0.03,
                          "startDate": "2024-01-17", "endDate": "2034-01-17", "discountCurve": "EUR"})
    from_json = zep.RateInstrumentFromDefinition(as_json, {"EUR": curve})
    assert from_yaml.NPV() == pytest.approx(direct.NPV(), rel=1e-14)
    assert from_json.NPV() == pytest.approx(direct.NPV(), rel=1e-14)
    assert pickle.loads(pickle.dumps(from_json)).NPV() == from_json.NPV()


def test_amortising_and_mark_to_market_swaps_come_from_their_definitions(curve, eur_curve):
    amortising_yaml = """
type: VanillaSwap
payFixed: 1
notional: 1000000
fixedRate: 0.03
startDate: 2024-01-17
endDate: 2029-01-17
discountCurve: EUR
fixedNotionals: [3.0e+6, 3.0e+6, 2.0e+6, 2.0e+6, 1.0e+6]
floatNotionals: [3.0e+6, 3.0e+6, 3.0e+6, 3.0e+6, 2.0e+6, 2.0e+6, 2.0e+6, 2.0e+6, 1.0e+6, 1.0e+6]
"""
    loaded = zep.RateInstrumentFromDefinition(amortising_yaml, {"EUR": curve})
    assert loaded.NPV() == pytest.approx(amortising(curve).NPV(), rel=1e-14)
    mtm = {"type": "XCurrencySwap", "domesticNotional": SPOT * 1e6, "foreignNotional": 1e6, "startDate": "2024-01-17",
           "endDate": "2029-01-17", "spot": SPOT, "domesticDiscountCurve": "USD", "foreignDiscountCurve": "EUR",
           "domesticRate": 0.001, "resettingLeg": "DOMESTIC"}
    loaded = zep.RateInstrumentFromDefinition(mtm, {"USD": curve, "EUR": eur_curve})
    assert loaded.NPV() == pytest.approx(mtm_swap(curve, eur_curve, domesticRate=0.001).NPV(), rel=1e-14)


@pytest.mark.parametrize("definition, curves, message", [
    ({"type": "RangeAccrual"}, {}, "unknown product type 'RangeAccrual'"),
    ({"type": "Bill", "faceValue": 100.0, "maturityDate": "2024-07-15", "discountCurve": "USD"}, {},
     "curve 'USD' of discountCurve is not among the curves given"),
    ("[1, 2]", {}, "a definition is a mapping"),
])
def test_a_bad_definition_is_refused_naming_what_is_wrong(definition, curves, message):
    with pytest.raises(ValueError, match=message):
        zep.RateInstrumentFromDefinition(definition, curves)
