"""Heston European prices from Python: zep's characteristic-function price and its FFT over 100
strikes against QuantLib's AnalyticHestonEngine (Gauss-Laguerre, its default) in one run; prices
checked to agree.

    ZEP_PYTHONPATH=build/dev/python python bench/heston_vs_quantlib.py
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


if __name__ == "__main__":
    main()
