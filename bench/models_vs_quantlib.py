"""The volatility models and engines from Python, QuantLib beside each in one run: Heston's
characteristic-function price and its FFT over 100 strikes against AnalyticHestonEngine
(Gauss-Laguerre, its default); the American put by finite differences (200 x 200) and by
Barone-Adesi-Whaley and Bjerksund-Stensland, one at a time and over NumPy arrays; the arithmetic Asian by Turnbull-Wakeman. Each figure includes the Python
call (about 1 us); the C++ figures are bench/*_bench.cpp.

    ZEP_PYTHONPATH=build/dev/python python bench/models_vs_quantlib.py
"""
import os
import sys
import time

import numpy as np
import QuantLib as ql

_build = os.environ.get("ZEP_PYTHONPATH")
if _build:
    sys.path.insert(0, os.path.abspath(_build))
import zep  # noqa: E402

PARAMS = (0.04, 1.5, 0.05, 0.6, -0.7)
STRIKES = np.linspace(70.0, 140.0, 100)
RD, RF, SPOT, T = 0.03, 0.01, 100.0, 1.0


def per_call(function, repeats):
    start = time.perf_counter()
    for _ in range(repeats):
        function()
    return (time.perf_counter() - start) / repeats


def black_scholes_process(today, spot, vol, rd, rf):
    day_count = ql.Actual365Fixed()
    return ql.BlackScholesMertonProcess(
        ql.QuoteHandle(spot), ql.YieldTermStructureHandle(ql.FlatForward(today, rf, day_count)),
        ql.YieldTermStructureHandle(ql.FlatForward(today, rd, day_count)),
        ql.BlackVolTermStructureHandle(ql.BlackConstantVol(today, ql.NullCalendar(), vol, day_count)))


def timed_npv(option, spot, repeats):
    """QuantLib caches an NPV: each timed call changes the spot first, a full re-price."""
    return per_call(lambda: (spot.setValue(spot.value() + 1e-9), option.NPV()), repeats)


def american_and_asian():
    today = ql.Date(2, 1, 2024)
    ql.Settings.instance().evaluationDate = today
    spot = ql.SimpleQuote(100.0)
    process = black_scholes_process(today, spot, 0.2, 0.05, 0.0)
    put = ql.VanillaOption(ql.PlainVanillaPayoff(ql.Option.Put, 100.0), ql.AmericanExercise(today, today + 365))
    put.setPricingEngine(ql.FdBlackScholesVanillaEngine(process, 200, 200))
    ql_fd = timed_npv(put, spot, 200)
    put.setPricingEngine(ql.BaroneAdesiWhaleyApproximationEngine(process))
    ql_baw = timed_npv(put, spot, 20000)
    put.setPricingEngine(ql.BjerksundStenslandApproximationEngine(process))
    ql_bjs = timed_npv(put, spot, 20000)
    option = zep.AmericanOption(1, 100.0, 0.2, 1.0, 0.05, 0.0, 100.0)
    zep_fd = per_call(lambda: option.Price("fd", 200, 200), 200)
    zep_baw = per_call(lambda: option.Price("baw"), 20000)
    zep_bjs = per_call(lambda: option.Price("bjerksund-stensland"), 20000)
    print(f"American put FD 200x200: zep {zep_fd * 1e6:8.1f} us   QuantLib {ql_fd * 1e6:8.1f} us")
    print(f"American put BAW:        zep {zep_baw * 1e6:8.2f} us   QuantLib {ql_baw * 1e6:8.2f} us")
    print(f"American put Bjerksund-Stensland: zep (2002) {zep_bjs * 1e6:8.2f} us   QuantLib (1993) {ql_bjs * 1e6:8.2f} us")

    spot.setValue(100.0)
    asian_process = black_scholes_process(today, spot, 0.3, 0.05, 0.02)
    days = [30 * i for i in range(1, 13)]
    asian = ql.DiscreteAveragingAsianOption(ql.Average.Arithmetic, 0.0, 0, [today + d for d in days],
                                            ql.PlainVanillaPayoff(ql.Option.Call, 100.0),
                                            ql.EuropeanExercise(today + days[-1]))
    asian.setPricingEngine(ql.TurnbullWakemanAsianEngine(asian_process))
    ql_tw = timed_npv(asian, spot, 20000)
    zep_asian = zep.AsianOption(0, 100.0, 0.3, [d / 365.0 for d in days], 0.05, 0.02, 100.0)
    zep_tw = per_call(lambda: zep_asian.Price("tw"), 20000)
    print(f"Asian Turnbull-Wakeman (12 fixings): zep {zep_tw * 1e6:6.2f} us   QuantLib {ql_tw * 1e6:6.2f} us")

    # The array entry points: 10000 rows in one call, per row (QuantLib has no array form).
    strikes = np.linspace(80.0, 120.0, 10000)
    baw_rows = per_call(lambda: zep.BaroneAdesiWhaleyPrices(1, strikes, 0.2, 1.0, 0.05, 0.0, 100.0), 20) / 1e4
    bjs_rows = per_call(lambda: zep.BjerksundStenslandPrices(1, strikes, 0.2, 1.0, 0.05, 0.0, 100.0), 20) / 1e4
    tw_rows = per_call(lambda: zep.AsianPrices(0, strikes, 0.3, 0.05, 0.02, 100.0, [d / 365.0 for d in days]),
                       20) / 1e4
    print(f"over arrays of 10000 rows, per row: BAW {baw_rows * 1e9:6.0f} ns   "
          f"Bjerksund-Stensland {bjs_rows * 1e9:6.0f} ns   Turnbull-Wakeman {tw_rows * 1e9:6.0f} ns")


def main():
    today = ql.Date(2, 1, 2024)
    ql.Settings.instance().evaluationDate = today
    day_count = ql.Actual365Fixed()
    spot = ql.SimpleQuote(SPOT)
    process = ql.HestonProcess(ql.YieldTermStructureHandle(ql.FlatForward(today, RD, day_count)),
                               ql.YieldTermStructureHandle(ql.FlatForward(today, RF, day_count)),
                               ql.QuoteHandle(spot), *PARAMS)
    engine = ql.AnalyticHestonEngine(ql.HestonModel(process))
    options = []
    for strike in STRIKES:
        option = ql.VanillaOption(ql.PlainVanillaPayoff(ql.Option.Call, strike),
                                  ql.EuropeanExercise(today + 365))
        option.setPricingEngine(engine)
        options.append(option)

    def quantlib_book():
        spot.setValue(SPOT + 1e-9)  # invalidates every option: a full re-price
        spot.setValue(SPOT)
        return [o.NPV() for o in options]

    model = zep.HestonModel(*PARAMS)
    zep_single = per_call(lambda: model.Price(0, 100.0, T, T, RD, RF, SPOT), 20000)
    ql_single = per_call(lambda: (spot.setValue(SPOT), options[50].NPV(), spot.setValue(SPOT + 1e-9)), 2000)
    zep_fft = per_call(lambda: model.FftPrices(0, STRIKES, T, T, RD, RF, SPOT), 2000)
    zep_integral = per_call(lambda: model.Prices(0, STRIKES, T, T, RD, RF, SPOT), 200)
    ql_book = per_call(quantlib_book, 50)
    gap = np.max(np.abs(model.FftPrices(0, STRIKES, T, T, RD, RF, SPOT) - np.array(quantlib_book())))
    print(f"one price:   zep {zep_single * 1e6:8.2f} us   QuantLib {ql_single * 1e6:8.2f} us (NPV after a spot change)")
    print(f"100 strikes: zep FFT {zep_fft * 1e6:8.1f} us   zep integral {zep_integral * 1e6:8.1f} us   "
          f"QuantLib {ql_book * 1e6:8.1f} us")
    print(f"largest gap FFT - QuantLib over the 100 strikes: {gap:.2e}")
    american_and_asian()


if __name__ == "__main__":
    main()
