"""Hull-White from Python: zep against QuantLib in one run, on the same curve and conventions; each
pair is checked to agree before it is timed (closed forms to 1e-8, trees' prices to 1%, OAS to 0.1 bp).
QuantLib caches results, so every timed QuantLib call asks for the valuation again (recalculate).

    ZEP_PYTHONPATH=build/dev/python python bench/hull_white_vs_quantlib.py
"""
import os
import sys

import QuantLib as ql

_build = os.environ.get("ZEP_PYTHONPATH")
if _build:
    sys.path.insert(0, os.path.abspath(_build))
import zep  # noqa: E402
from bench_support import best_of, ql_date  # noqa: E402

REFERENCE = "2024-01-15"
PILLARS = ["2024-01-15", "2025-01-15", "2027-01-15", "2030-01-15", "2034-01-15", "2044-01-15"]
ZEROS = [0.031, 0.0318, 0.0295, 0.0301, 0.0312, 0.033]
START, END = "2025-01-15", "2035-01-15"
A, SIGMA, STRIKE = 0.05, 0.01, 0.031


def report(name, ours, theirs, zep_call, ql_call, repeats, tolerance):
    assert abs(ours - theirs) <= tolerance, (name, ours, theirs)
    zep_time, ql_time = best_of(zep_call, repeats), best_of(ql_call, repeats)
    print(f"{name:<44} zep {zep_time * 1e6:9.2f} us   QuantLib {ql_time * 1e6:9.2f} us   "
          f"ratio {ql_time / zep_time:5.1f}")


def main():
    ql.Settings.instance().evaluationDate = ql_date(REFERENCE)
    act365 = zep.DayCounter(zep.Act365Fixed)
    curve = zep.YieldCurve.FromZeroRates(REFERENCE, PILLARS, ZEROS, zep.Continuous, act365)
    handle = ql.YieldTermStructureHandle(ql.ZeroCurve([ql_date(p) for p in PILLARS], ZEROS, ql.Actual365Fixed(),
                                                      ql.TARGET(), ql.Linear(), ql.Continuous))
    model, ql_model = zep.MHullWhite(curve, A, SIGMA), ql.HullWhite(handle, A, SIGMA)

    report("zero-bond option 2y on 7y", model.DiscountBondOption("CALL", 0.9, 2.0, 7.0),
           ql_model.discountBondOption(ql.Option.Call, 0.9, 2.0, 7.0),
           lambda: model.DiscountBondOption("CALL", 0.9, 2.0, 7.0),
           lambda: ql_model.discountBondOption(ql.Option.Call, 0.9, 2.0, 7.0), 20000, 1e-12)

    def schedule(tenor):
        return ql.Schedule(ql_date(START), ql_date(END), ql.Period(tenor), ql.TARGET(), ql.ModifiedFollowing,
                           ql.ModifiedFollowing, ql.DateGeneration.Forward, False)
    swap = ql.VanillaSwap(ql.Swap.Receiver, 1.0, schedule("1Y"), STRIKE, ql.Actual365Fixed(), schedule("6M"),
                          ql.Euribor6M(handle), 0.0, ql.Actual360())
    european = ql.Swaption(swap, ql.EuropeanExercise(ql_date(START)))
    european.setPricingEngine(ql.JamshidianSwaptionEngine(ql_model, handle))

    def ql_value(option):
        option.recalculate()
        return option.NPV()
    ours = model.EuropeanSwaption("RECEIVER", 1.0, STRIKE, START, START, END, "1Y", act365)
    report("1y into 10y receiver, Jamshidian", ours, ql_value(european),
           lambda: model.EuropeanSwaption("RECEIVER", 1.0, STRIKE, START, START, END, "1Y", act365),
           lambda: ql_value(european), 2000, 1e-8)

    exercises = [d.ISO() for d in schedule("1Y")][:-1]
    bermudan = ql.Swaption(swap, ql.BermudanExercise([ql_date(d) for d in exercises]))
    bermudan.setPricingEngine(ql.TreeSwaptionEngine(ql_model, 200))

    def zep_bermudan():
        return zep.MBermudanSwaption("RECEIVER", 1.0, STRIKE, exercises, START, END, model, 200, "1Y", act365).PV()
    report("Bermudan, 10 exercise dates, 200-step tree", zep_bermudan(), ql_value(bermudan), zep_bermudan,
           lambda: ql_value(bermudan), 20, 1e-2 * ql_value(bermudan))

    # A bond issued today (QuantLib prices a bond not yet issued as of its issue date), calls from year 3.
    issue, maturity = REFERENCE, "2034-01-15"
    bond_schedule = ql.Schedule(ql_date(issue), ql_date(maturity), ql.Period("1Y"), ql.TARGET(), ql.Unadjusted,
                                ql.Unadjusted, ql.DateGeneration.Forward, False)
    calls = [ql.TARGET().adjust(d).ISO() for d in bond_schedule][3:-1]
    ql_calls = ql.CallabilitySchedule()
    for date in calls:
        ql_calls.append(ql.Callability(ql.BondPrice(100.0, ql.BondPrice.Clean), ql.Callability.Call, ql_date(date)))
    ql_bond = ql.CallableFixedRateBond(0, 100.0, bond_schedule, [0.04], ql.Actual365Fixed(), ql.Following, 100.0,
                                       ql_date(issue), ql_calls)
    ql_bond.setPricingEngine(ql.TreeCallableFixedRateBondEngine(ql_model, 200))

    def ql_bond_price():
        ql_bond.recalculate()
        return ql_bond.cleanPrice()

    def zep_bond():
        return zep.MCallableBond(0.04, issue, maturity, calls, [100.0] * len(calls), model, 200, "1Y", act365)
    report("callable bond, 7 calls, 200-step tree", zep_bond().CleanPrice(), ql_bond_price(),
           lambda: zep_bond().CleanPrice(), ql_bond_price, 20, 1e-2)
    bond, quoted = zep_bond(), ql_bond_price() - 1.0
    report("its OAS from a clean price (tree built once)", bond.OAS(quoted),
           ql_bond.OAS(quoted, handle, ql.Actual365Fixed(), ql.Continuous, ql.NoFrequency),
           lambda: bond.OAS(quoted),
           lambda: ql_bond.OAS(quoted, handle, ql.Actual365Fixed(), ql.Continuous, ql.NoFrequency), 5, 1e-5)


if __name__ == "__main__":
    main()
