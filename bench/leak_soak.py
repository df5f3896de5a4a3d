"""Leak soak: builds and drops every kind of wrapped object many times, with failed constructions
and raised exceptions in every round, and reports how much the resident memory grew.

    ZEP_LOGLEVEL=off ZEP_PYTHONPATH=build/dev/python python bench/leak_soak.py [scale]

A round builds one object (two for the option on curves), calls a few of its methods, converts
it to text, and ends in two failures: a construction the library refuses and a call that raises
(or an ill-typed call that SWIG refuses). Each case runs a million rounds, fewer where a round is
expensive (`scale` multiplies every count, e.g. 0.01 for a quick look). Every case first runs a
short warm-up, so that caches, the interpreter's free lists and the C allocator's arenas reach
their working size before the measurement starts; resident memory is read from /proc after a
garbage collection, after the warm-ups and after each case.
"""
import gc
import os
import pickle
import sys
import time

import numpy as np

_build = os.environ.get("ZEP_PYTHONPATH")
if _build:
    sys.path.insert(0, os.path.abspath(_build))
import zep  # noqa: E402

MILLION = 1_000_000
WARM_UP = 2_000
TIMES = np.linspace(0.0, 3.0, 8)
DATES = ["2024-01-02", "2024-01-03", "2024-01-04", "2024-01-05", "2024-01-08", "2024-01-09"]
PRICES = [1.10, 1.11, 1.09, 1.12, 1.13, 1.11]
# A curve as another zep version pickles it: refused by name when read.
OTHER_VERSION_PICKLE = pickle.dumps(zep.YieldCurve("2024-01-02", ["2025-01-02"], [0.97])).replace(
    zep.__version__.encode(), b"0.0.0")
VANILLA = (1, 0, 1e6, 1.10, 1.08, "2024-01-15", "2024-07-15", "2024-07-17", "2024-07-17")


def refused(call, *args):
    try:
        call(*args)
    except (RuntimeError, ValueError, TypeError, IndexError, pickle.UnpicklingError):
        return
    raise AssertionError(f"{call} did not raise")


def date_round():
    date = zep.Date("2024-01-31")
    later = date + zep.Period("1M")
    str(later), repr(date), later - date, date.to_datetime64()
    refused(zep.Date, "2024-02-30")
    refused(zep.Date, None)


def period_round():
    period = zep.Period("18M")
    str(period), repr(period), period.Length()
    refused(zep.Period, "3X")
    refused(zep.Period, [1])


def calendar_round():
    calendar = zep.Calendar()
    calendar.Adjust("2025-12-25", "following", "LON")
    calendar.IsBusinessDay("2025-12-26", "LON+NYC")
    repr(calendar)
    refused(calendar.Adjust, "2025-12-25", "following", "NOWHERE")
    refused(calendar.LoadHolidaysFromFile, "/nonexistent/Holidays.txt")


def day_counter_round():
    counter = zep.DayCounter(zep.stringToConvention("act/360"))
    counter.YearFraction("2024-01-01", "2024-07-01")
    repr(counter)
    refused(zep.stringToConvention, "act/999")
    refused(counter.YearFraction, "2024-01-01", "2024-13-01")


def curve_round():
    curve = zep.YieldCurve("2024-01-02", ["2025-01-02", "2026-01-02"], [0.97, 0.94])
    curve.DiscountFactor("2025-06-02"), curve.DiscountFactors(TIMES)
    curve.ForwardRate("2024-06-03", "2025-06-02", -1, True, zep.Continuous)
    repr(curve)
    refused(zep.YieldCurve, "2024-01-02", ["2025-01-02", "2026-01-02"], [0.97])
    refused(curve.ZeroRate, 1.0, True, zep.NoFrequency)


def interpolation_round():
    spline = zep.Interpolation([1.0, 2.0, 3.0, 4.0], [1.0, 4.0, 9.0, 16.0], zep.CubicInterpolation,
                               zep.FlatExtrapolation)
    spline.Evaluate(2.5), spline.Y()
    refused(zep.Interpolation([1.0, 2.0], [1.0, 2.0], zep.LinearInterpolation, zep.NoExtrapolation).Evaluate, 3.0)
    refused(zep.Interpolation, [1.0, 2.0], "xy", zep.LinearInterpolation, zep.FlatExtrapolation)


def engine_round():
    engine = zep.BSVanilla(0, 100.0, 0.2, 1.0, 1.0, 0.03, 0.01, 100.0)
    engine.Price(), engine.Delta(False), engine.Gamma(), engine.Vega(), engine.Volga()
    zep.BSVanilla.VolImpliedFromPrice(0, 100.0, 1.0, 1.0, 0.03, 0.01, 100.0, 9.0)
    refused(zep.BSVanilla, 0, 100.0, 0.0, 1.0, 1.0, 0.03, 0.01, 100.0)
    refused(zep.BSVanilla.StrikeImpliedFromDelta, 0, -0.25, 0.1, 1.0, 1.0, 0.0, 0.0, 1.2, 1.2)


def m_engine_round():
    engine = zep.MBSVanilla.FromForward(1, 100.0, 0.2, 1.0, 1.0, 0.03, 0.01, 101.0)
    engine.Price(), engine.Theta(), zep.MBSVanilla.OptionPrice(0, 100.0, 0.2, 1.0, 1.0, 0.03, 0.01, 100.0)
    refused(zep.MBSVanilla, 0, 100.0, 0.2, 1.0, 1.0, 0.03, 0.01, -1.0)
    refused(zep.MBSVanilla().Price)


def option_round():
    option = zep.MVanillaOption(*VANILLA, 0.035, 0.02, 0.09)
    option.PV(), option.Delta(False), option.Vega(), option.GetExpiryDate()
    repr(option)
    refused(zep.MVanillaOption, 1, 0, 1e6, 1.10, 1.08, "2024-07-15", "2024-01-15", "2024-07-17",
            "2024-07-17", 0.035, 0.02, 0.09)
    refused(option.Price, 7)


def option_on_curves_round():
    domestic = zep.YieldCurve("2024-01-15", ["2025-01-15"], [0.965])
    foreign = zep.YieldCurve("2024-01-15", ["2025-01-15"], [0.98])
    option = zep.MVanillaOption(*VANILLA, domestic, foreign, 0.09)
    option.PV(), option.Rho()
    refused(zep.MVanillaOption, *VANILLA, domestic, None, 0.09)
    refused(option.DeltaPrice, "spot_Rate", 0.01)


def book_round():
    prices, *_ = zep.PriceVanillaBook(0, [90.0, 100.0, 110.0, 120.0], 0.2, 1.0, 1.0, 0.03, 0.01, 100.0)
    zep.ImpliedVolatilityBook(0, [90.0, 100.0, 110.0, 120.0], 1.0, 1.0, 0.03, 0.01, 100.0, prices)
    refused(zep.PriceVanillaBook, [0, 1, 0], [100.0, 100.0], 0.2, 1.0, 1.0, 0.0, 0.0, 100.0)
    refused(zep.ImpliedVolatilityBook, 0, 100.0, 1.0, 1.0, 0.0, 0.0, 100.0, ["x"])


def hist_vols_round():
    vols = zep.HistVols(DATES, PRICES)
    vols.setAll(3), vols.Dates()
    refused(zep.HistVols, DATES, PRICES[:-1])
    refused(zep.HistVols, DATES, ["x"] * len(DATES))


def script_round():
    product = zep.ScriptProduct(["2024-01-02", "2024-06-02"], ["X = SPOT()", "IF X > 1 THEN C PAYS 1 ENDIF"])
    product.VariableNames(), product.EventDates(), product.Evaluate([(1.5, 1.0), (1.2, 1.0)])
    refused(zep.ScriptProduct, ["2024-01-02"], ["IF X > THEN"])
    refused(product.Evaluate, [(1.5, 1.0)])


def scripted_product_round():
    call = zep.MXScriptStructure("2024-01-02", 100.0, 0.2, 0.03, 0.0, 1, [], ["2025-01-02"],
                                 ["C PAYS MAX(SPOT() - 100, 0)"], 16)
    call.Price(), call.PriceStandardError(), call.ResultByVariable()
    refused(zep.MXScriptStructure, "2024-01-02", 100.0, 0.2, 0.03, 0.0, 1, [], ["2025-01-02"],
            ["C PAYS MAX(SPOT( - 100, 0)"], 16)
    refused(zep.MXScriptStructure.FromDefinition, "{not a definition")


def pickle_round():
    for value in (zep.Date("2024-01-31"), zep.YieldCurve("2024-01-02", ["2025-01-02"], [0.97]),
                  zep.MVanillaOption(*VANILLA, 0.035, 0.02, 0.09)):
        pickle.loads(pickle.dumps(value))
    refused(pickle.loads, OTHER_VERSION_PICKLE)


# (name, rounds, what a round does); rounds below a million where a round is expensive.
CASES = [
    ("Date", MILLION, date_round),
    ("Period", MILLION, period_round),
    ("Calendar (loads the holiday file: 1.5 ms)", 10_000, calendar_round),
    ("DayCounter", MILLION, day_counter_round),
    ("YieldCurve", MILLION, curve_round),
    ("Interpolation", MILLION, interpolation_round),
    ("BSVanilla", MILLION, engine_round),
    ("MBSVanilla", MILLION, m_engine_round),
    ("MVanillaOption on rates", MILLION, option_round),
    ("MVanillaOption on two YieldCurves", MILLION, option_on_curves_round),
    ("PriceVanillaBook + ImpliedVolatilityBook", MILLION, book_round),
    ("HistVols", MILLION, hist_vols_round),
    ("ScriptProduct", MILLION, script_round),
    ("MXScriptStructure, 16 paths, priced", 200_000, scripted_product_round),
    ("pickle round trips (Date, YieldCurve, MVanillaOption)", 100_000, pickle_round),
]


def resident_bytes():
    gc.collect()
    with open("/proc/self/statm") as statm:
        return int(statm.read().split()[1]) * os.sysconf("SC_PAGE_SIZE")


def main():
    scale = float(sys.argv[1]) if len(sys.argv) > 1 else 1.0
    for _, _, one_round in CASES:
        for _ in range(WARM_UP):
            one_round()
    start = before = resident_bytes()
    print(f"zep {zep.__version__} from {os.path.dirname(zep.__file__)}; after the warm-ups "
          f"{start / 2**20:.1f} MiB resident")
    print(f"| case | rounds | seconds | resident growth |\n|---|---|---|---|")
    for name, rounds, one_round in CASES:
        rounds = max(1, int(rounds * scale))
        began = time.perf_counter()
        for _ in range(rounds):
            one_round()
        seconds = time.perf_counter() - began
        after = resident_bytes()
        print(f"| {name} | {rounds:,} | {seconds:.1f} | {(after - before) / 2**10:+,.0f} KiB |", flush=True)
        before = after
    print(f"| **all cases** | | | **{(before - start) / 2**20:+.2f} MiB** (target < 5 MiB) |")


if __name__ == "__main__":
    main()
