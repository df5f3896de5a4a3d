"""Caps, swaptions and credit default swaps from Python: zep against QuantLib in one run, on the
same curves and conventions; each pair is checked to agree before it is timed. QuantLib caches
results, so every timed QuantLib call asks for the valuation again (recalculate).

    ZEP_PYTHONPATH=build/dev/python python bench/rate_derivatives_vs_quantlib.py
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
PILLARS = ["2024-01-15", "2025-01-15", "2027-01-15", "2030-01-15", "2034-01-15"]
ZEROS = [0.031, 0.0318, 0.0295, 0.0301, 0.0312]


def report(name, ours, theirs, zep_call, ql_call, repeats, tolerance=1e-6):
    assert abs(ours - theirs) <= tolerance * abs(theirs), (name, ours, theirs)
    zep_time, ql_time = best_of(zep_call, repeats), best_of(ql_call, repeats)
    print(f"{name:<34} zep {zep_time * 1e6:9.2f} us   QuantLib {ql_time * 1e6:9.2f} us   "
          f"ratio {ql_time / zep_time:5.1f}")


def main():
    ql.Settings.instance().evaluationDate = ql_date(REFERENCE)
    curve = zep.YieldCurve.FromZeroRates(REFERENCE, PILLARS, ZEROS, zep.Continuous, zep.DayCounter(zep.Act365Fixed))
    handle = ql.YieldTermStructureHandle(ql.ZeroCurve([ql_date(p) for p in PILLARS], ZEROS, ql.Actual365Fixed(),
                                                      ql.TARGET(), ql.Linear(), ql.Continuous))
    vol = ql.SimpleQuote(0.25)

    # A 5-year quarterly cap, 20 caplets, Black.
    cap = zep.MCapFloor("CAP", 1e6, 0.03, "2024-04-17", "2029-04-17", curve, curve, 0.25)
    schedule = ql.Schedule(ql.Date(17, 4, 2024), ql.Date(17, 4, 2029), ql.Period("3M"), ql.TARGET(),
                           ql.ModifiedFollowing, ql.ModifiedFollowing, ql.DateGeneration.Backward, False)
    ql_cap = ql.Cap(ql.IborLeg([1e6], schedule, ql.Euribor3M(handle), ql.Actual360()), [0.03])
    ql_cap.setPricingEngine(ql.BlackCapFloorEngine(handle, ql.QuoteHandle(vol)))
    report("cap 5y quarterly, Black", cap.PV(), ql_cap.NPV(), cap.PV,
           lambda: (ql_cap.recalculate(), ql_cap.NPV()), 2000)

    # 1y into 5y payer swaption, Black.
    swaption = zep.MSwaption("PAYER", 1e6, 0.03, "2025-01-15", "2025-01-17", "2030-01-17", curve, curve, 0.25)
    fixed = ql.Schedule(ql.Date(17, 1, 2025), ql.Date(17, 1, 2030), ql.Period("1Y"), ql.TARGET(),
                        ql.ModifiedFollowing, ql.ModifiedFollowing, ql.DateGeneration.Backward, False)
    floating = ql.Schedule(ql.Date(17, 1, 2025), ql.Date(17, 1, 2030), ql.Period("6M"), ql.TARGET(),
                           ql.ModifiedFollowing, ql.ModifiedFollowing, ql.DateGeneration.Backward, False)
    swap = ql.VanillaSwap(ql.VanillaSwap.Payer, 1e6, fixed, 0.03, ql.Thirty360(ql.Thirty360.BondBasis), floating,
                          ql.Euribor6M(handle), 0.0, ql.Actual360())
    ql_swaption = ql.Swaption(swap, ql.EuropeanExercise(ql.Date(15, 1, 2025)))
    ql_swaption.setPricingEngine(ql.BlackSwaptionEngine(handle, ql.QuoteHandle(vol)))
    report("swaption 1y into 5y, Black", swaption.PV(), ql_swaption.NPV(), swaption.PV,
           lambda: (ql_swaption.recalculate(), ql_swaption.NPV()), 5000)

    # A 5-year CDS par spread on a seven-quote credit curve; QuantLib on zep's survival nodes.
    tenors = ["6M", "1Y", "2Y", "3Y", "5Y", "7Y", "10Y"]
    credit = zep.CreditCurve(REFERENCE, tenors, [0.005, 0.006, 0.0075, 0.009, 0.011, 0.012, 0.0125], 0.4, curve)
    cds = zep.MCreditDefaultSwap("BUYER", 1e7, 0.01, REFERENCE, "2029-01-15", credit, curve)
    today = ql_date(REFERENCE)
    days = [round(t * 365) for t in [0.0] + list(credit.Times())]
    survival = ql.SurvivalProbabilityCurve([today + d for d in days],
                                           [credit.SurvivalProbability(zep.Date(REFERENCE) + d) for d in days],
                                           ql.Actual365Fixed(), ql.TARGET())
    premium = ql.Schedule(today, ql.Date(15, 1, 2029), ql.Period("3M"), ql.TARGET(), ql.ModifiedFollowing,
                          ql.ModifiedFollowing, ql.DateGeneration.Backward, False)
    ql_cds = ql.CreditDefaultSwap(ql.Protection.Buyer, 1e7, 0.01, premium, ql.ModifiedFollowing, ql.Actual360(),
                                  True, True, today, ql.FaceValueClaim(), ql.Actual360())
    ql_cds.setPricingEngine(ql.MidPointCdsEngine(ql.DefaultProbabilityTermStructureHandle(survival), 0.4, handle))
    # The two models differ by a few parts in ten thousand (accrual on default and where it is discounted).
    report("CDS 5y par spread", cds.ParSpread(), ql_cds.fairSpread(), cds.ParSpread,
           lambda: (ql_cds.recalculate(), ql_cds.fairSpread()), 2000, tolerance=5e-4)


if __name__ == "__main__":
    main()
