"""Schedules and bootstrapped curves from Python: zep against QuantLib in one run, on the same
30 quotes (3 deposits, 6 FRAs, 21 swaps to 80 years) and the same conventions (spot T+2 on
TARGET, Modified Following, Act/360 money market, annual 30/360 fixed leg, linear zero rates on
Act/365 Fixed); the curves are checked to agree before anything is timed.

    ZEP_PYTHONPATH=build/dev/python python bench/curves_vs_quantlib.py
"""
import os
import sys

import QuantLib as ql

_build = os.environ.get("ZEP_PYTHONPATH")
if _build:
    sys.path.insert(0, os.path.abspath(_build))
import zep  # noqa: E402
from bench_support import best_of  # noqa: E402

REFERENCE = "2024-01-15"
QUOTES = ([("DEPOSIT", f"{m}M", 0.035) for m in (1, 2, 3)]
          + [("FRA", f"{s}x{s + 3}", 0.034) for s in (3, 6, 9, 12, 15, 18)]
          + [("SWAP", f"{y}Y", 0.03 + 0.0001 * y)
             for y in (6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 20, 25, 30, 35, 40, 45, 50, 55, 60, 70, 80)])


def quantlib_curve():
    today = ql.Date(15, 1, 2024)
    ql.Settings.instance().evaluationDate = today
    target = ql.TARGET()
    quotes, helpers = [], []
    for instrument, tenor, rate in QUOTES:
        quote = ql.SimpleQuote(rate)
        quotes.append(quote)
        handle = ql.QuoteHandle(quote)
        if instrument == "DEPOSIT":
            helpers.append(ql.DepositRateHelper(handle, ql.Period(tenor), 2, target, ql.ModifiedFollowing, False,
                                                ql.Actual360()))
        elif instrument == "FRA":
            start, end = (int(m) for m in tenor.split("x"))
            helpers.append(ql.FraRateHelper(handle, start, end, 2, target, ql.ModifiedFollowing, False,
                                            ql.Actual360()))
        else:
            helpers.append(ql.SwapRateHelper(handle, ql.Period(tenor), target, ql.Annual, ql.ModifiedFollowing,
                                             ql.Thirty360(ql.Thirty360.BondBasis), ql.Euribor6M()))
    curve = ql.PiecewiseLinearZero(today, helpers, ql.Actual365Fixed())
    return curve, quotes


def main():
    zep_curve = zep.BootstrapYieldCurve(REFERENCE, QUOTES)
    ql_curve, ql_quotes = quantlib_curve()
    gap = max(abs(zep_curve.DiscountFactor(d.ISO()) - ql_curve.discount(d))
              for d in (ql.Date(15, 1, 2024) + days for days in range(30, 29000, 90)))
    print(f"largest discount factor difference against QuantLib: {gap:.1e}")

    zep_build = best_of(lambda: zep.BootstrapYieldCurve(REFERENCE, QUOTES), 200)

    def quantlib_build():
        curve, _ = quantlib_curve()
        curve.discount(1.0)  # QuantLib bootstraps lazily, at the first query
    ql_build = best_of(quantlib_build, 50)

    bumps = iter(range(10**9))
    kept = zep.BootstrapCurve(REFERENCE, QUOTES)

    def zep_requote():
        kept.Requote(15, 0.0315 + 1e-4 * (next(bumps) % 2))
        kept.Curve()
    zep_requote_time = best_of(zep_requote, 500)

    def quantlib_requote():
        ql_quotes[15].setValue(0.0315 + 1e-4 * (next(bumps) % 2))
        ql_curve.discount(1.0)
    ql_requote = best_of(quantlib_requote, 50)

    effective, termination = zep.Date("2024-01-15"), zep.Date("2054-01-15")
    zep_schedule = best_of(lambda: zep.Schedule(effective, termination, "3M", "TARGET"), 2000)
    ql_effective, ql_termination = ql.Date(15, 1, 2024), ql.Date(15, 1, 2054)
    ql_schedule = best_of(lambda: ql.Schedule(ql_effective, ql_termination, ql.Period(3, ql.Months), ql.TARGET(),
                                              ql.ModifiedFollowing, ql.ModifiedFollowing,
                                              ql.DateGeneration.Backward, False), 2000)

    print(f"{'what':<58}{'zep':>12}{'QuantLib':>12}")
    print(f"{'30-quote curve bootstrapped, from Python':<58}{zep_build * 1e6:>10.0f}us{ql_build * 1e6:>10.0f}us")
    print(f"{'30-quote curve after the 15th quote changes':<58}{zep_requote_time * 1e6:>10.0f}us"
          f"{ql_requote * 1e6:>10.0f}us")
    print(f"{'120-period quarterly schedule on TARGET, from Python':<58}{zep_schedule * 1e6:>10.1f}us"
          f"{ql_schedule * 1e6:>10.1f}us")


if __name__ == "__main__":
    main()
