"""Inflation from Python: zep against QuantLib in one run, on the same fixings, quotes and
conventions (flat monthly observation, three months' lag, 30/360); each pair is checked to agree
before it is timed. QuantLib caches results, so every timed QuantLib call values again.

    ZEP_PYTHONPATH=build/dev/python python bench/inflation_vs_quantlib.py
"""
import os
import sys

import QuantLib as ql

_build = os.environ.get("ZEP_PYTHONPATH")
if _build:
    sys.path.insert(0, os.path.abspath(_build))
import zep  # noqa: E402
from bench_support import best_of, ql_date  # noqa: E402

REFERENCE = "2024-03-20"
TENORS = ["1Y", "2Y", "3Y", "4Y", "5Y", "7Y", "10Y"]
RATES = [0.021, 0.0235, 0.024, 0.0239, 0.0238, 0.0245, 0.025]
PUBLISHED = [(2022 + k // 12, 1 + k % 12, 100.0 * 1.004 ** k) for k in range(25)]  # January 2022 to January 2024


def report(name, ours, theirs, zep_call, ql_call, repeats, tolerance=1e-10):
    assert abs(ours - theirs) <= tolerance * abs(theirs), (name, ours, theirs)
    zep_time, ql_time = best_of(zep_call, repeats), best_of(ql_call, repeats)
    print(f"{name:<40} zep {zep_time * 1e6:9.2f} us   QuantLib {ql_time * 1e6:9.2f} us   "
          f"ratio {ql_time / zep_time:5.1f}")


def main():
    today = ql_date(REFERENCE)
    ql.Settings.instance().evaluationDate = today
    fixings = zep.FixingStore()
    handle = ql.RelinkableZeroInflationTermStructureHandle()
    index = ql.EUHICPXT(handle)
    for year, month, level in PUBLISHED:
        fixings.Add("CPI", zep.Date(1, month, year), level)
        index.addFixing(ql.Date(1, month, year), level)
    day_counter = ql.Thirty360(ql.Thirty360.BondBasis)
    quotes = [ql.SimpleQuote(rate) for rate in RATES]
    helpers = [ql.ZeroCouponInflationSwapHelper(ql.QuoteHandle(quote), ql.Period(3, ql.Months),
                                                today + ql.Period(tenor), ql.TARGET(), ql.ModifiedFollowing,
                                                day_counter, index, ql.CPI.Flat)
               for tenor, quote in zip(TENORS, quotes)]

    def ql_curve():
        return ql.PiecewiseZeroInflation(today, ql.Date(1, 1, 2024), ql.Monthly, day_counter, helpers)

    def zep_curve():
        return zep.ZeroInflationCurve(REFERENCE, "CPI", TENORS, RATES, fixings, "3M", "FLAT")

    curve = zep_curve()
    handle.linkTo(ql_curve())
    last = curve.PillarMonths()[-1]
    last_ql = ql.Date(1, last.Month(), last.Year())

    def ql_bootstrap():
        fresh = ql_curve()
        fresh.nodes()  # the bootstrap runs on first use
        return fresh

    report("zero-coupon curve, 7 quotes (bootstrap)", curve.PillarLevels()[-1], index.fixing(last_ql),
           zep_curve, ql_bootstrap, 300)

    pillars = ["2024-03-20", "2025-03-20", "2029-03-20", "2034-03-20"]
    zeros = [0.03, 0.03, 0.031, 0.033]
    discount = zep.YieldCurve.FromZeroRates(REFERENCE, pillars, zeros, zep.Continuous, zep.DayCounter(zep.Act365Fixed))
    ql_discount = ql.YieldTermStructureHandle(ql.ZeroCurve([ql_date(p) for p in pillars], zeros, ql.Actual365Fixed(),
                                                           ql.TARGET(), ql.Linear(), ql.Continuous))

    swap = zep.MZeroCouponInflationSwap(1, 1e6, 0.02, REFERENCE, "2029-03-20", curve, discount)
    ql_swap = ql.ZeroCouponInflationSwap(ql.Swap.Receiver, 1e6, today, ql.Date(20, 3, 2029), ql.TARGET(),
                                         ql.ModifiedFollowing, day_counter, 0.02, index, ql.Period(3, ql.Months),
                                         ql.CPI.Flat)
    ql_swap.setPricingEngine(ql.DiscountingSwapEngine(ql_discount))
    report("zero-coupon swap 5y, PV", swap.PV(), ql_swap.NPV(), swap.PV,
           lambda: (ql_swap.recalculate(), ql_swap.NPV()), 20000)

    # Annual coupons on the quoted anniversaries: both curves fix those months alike.
    bond = zep.MInflationLinkedBond(0.01, REFERENCE, "2029-03-20", curve, discount, dayCounter="30/360",
                                    centres="TARGET")
    schedule = ql.Schedule(today, ql.Date(20, 3, 2029), ql.Period("1Y"), ql.TARGET(), ql.Unadjusted, ql.Unadjusted,
                           ql.DateGeneration.Backward, False)
    ql_bond = ql.CPIBond(0, 100.0, False, index.fixing(ql.Date(1, 12, 2023)), ql.Period(3, ql.Months), index,
                         ql.CPI.Flat, schedule, [0.01], day_counter, ql.Following, today, ql.TARGET())
    ql_bond.setPricingEngine(ql.DiscountingBondEngine(ql_discount))
    report("inflation-linked bond 5y annual, PV", bond.PV(), ql_bond.NPV(), bond.PV,
           lambda: (ql_bond.recalculate(), ql_bond.NPV()), 5000)


if __name__ == "__main__":
    main()
