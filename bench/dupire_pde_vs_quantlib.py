"""The forward Dupire equation against QuantLib's local-volatility finite differences, in one run.
An SVI EUR/USD surface prices 7 strikes at 4 expiries: zep marches Dupire's forward equation
once for all 28 (400 strikes x 200 steps, and 800 x 400); QuantLib rolls each option back under its own Dupire
local volatility (FdBlackScholesVanillaEngine with localVol=True, 200 spots x 100 steps each) read
from a BlackVarianceSurface of the same surface's volatilities. Both are checked against the
surface's own Black prices, as errors in implied volatility (price error over vega).

    ZEP_PYTHONPATH=build/dev/python python bench/dupire_pde_vs_quantlib.py
"""
import math
import os
import sys
import time

import numpy as np
import QuantLib as ql

_build = os.environ.get("ZEP_PYTHONPATH")
if _build:
    sys.path.insert(0, os.path.abspath(_build))
import zep  # noqa: E402

REFERENCE = "2026-11-16"
SPOT, USD, EUR = 1.0850, 0.043, 0.026
TENORS = ["1W", "1M", "3M", "6M", "1Y", "2Y"]
QUOTES = [[0.0720, -0.0020, 0.0018, -0.0036, 0.0060], [0.0750, -0.0030, 0.0020, -0.0055, 0.0068],
          [0.0780, -0.0040, 0.0022, -0.0072, 0.0075], [0.0800, -0.0045, 0.0024, -0.0082, 0.0082],
          [0.0820, -0.0050, 0.0026, -0.0090, 0.0090], [0.0840, -0.0052, 0.0027, -0.0095, 0.0095]]
EXPIRY_DAYS = [91, 182, 365, 730]
STRIKES = np.array([0.98, 1.03, 1.07, 1.10, 1.13, 1.17, 1.22])


def flat(rate):
    return zep.YieldCurve.FromTenors(REFERENCE, ["1Y", "10Y"], [rate, rate], zep.Continuous, zep.Act365Fixed)


def black(t, strike, vol):
    forward, discount, total = SPOT * math.exp((USD - EUR) * t), math.exp(-USD * t), vol * math.sqrt(t)
    d1 = math.log(forward / strike) / total + total / 2
    normal = lambda x: 0.5 * math.erfc(-x / math.sqrt(2))
    price = discount * (forward * normal(d1) - strike * normal(d1 - total))
    vega = discount * forward * math.sqrt(t) * math.exp(-d1 * d1 / 2) / math.sqrt(2 * math.pi)
    return price, vega


def quantlib_prices(surface, times):
    today = ql.Date(16, 11, 2026)
    ql.Settings.instance().evaluationDate = today
    day_count = ql.Actual365Fixed()
    # The surface's volatilities on a fine grid, so QuantLib's Dupire formula sees the same smile.
    grid_days = [7, 14, 30, 60, 91, 120, 150, 182, 240, 300, 365, 450, 540, 630, 730, 800]
    grid_strikes = list(np.exp(np.linspace(math.log(0.5), math.log(2.6), 60)))
    vols = ql.Matrix(len(grid_strikes), len(grid_days))
    for j, days in enumerate(grid_days):
        for i, k in enumerate(grid_strikes):
            vols[i][j] = surface.GetVolatility(days / 365.0, k)
    flat_wings = ql.BlackVarianceSurface.ConstantExtrapolation
    variance = ql.BlackVarianceSurface(today, ql.NullCalendar(), [today + d for d in grid_days], grid_strikes, vols,
                                       day_count, flat_wings, flat_wings)
    variance.setInterpolation("bicubic")
    process = ql.BlackScholesMertonProcess(
        ql.QuoteHandle(ql.SimpleQuote(SPOT)), ql.YieldTermStructureHandle(ql.FlatForward(today, EUR, day_count)),
        ql.YieldTermStructureHandle(ql.FlatForward(today, USD, day_count)), ql.BlackVolTermStructureHandle(variance))
    engine = ql.FdBlackScholesVanillaEngine(process, 100, 200, 0, ql.FdmSchemeDesc.Douglas(), True)
    prices = np.empty((len(times), len(STRIKES)))
    for j, days in enumerate(EXPIRY_DAYS):
        for i, k in enumerate(STRIKES):
            option = ql.VanillaOption(ql.PlainVanillaPayoff(ql.Option.Call, float(k)),
                                      ql.EuropeanExercise(today + days))
            option.setPricingEngine(engine)
            prices[j, i] = option.NPV()
    return prices


def vol_errors(surface, times, prices):
    errors = []
    for j, t in enumerate(times):
        for i, k in enumerate(STRIKES):
            price, vega = black(t, k, surface.GetVolatility(t, k))
            errors.append((prices[j, i] - price) / vega)
    return np.abs(errors)


def main():
    surface = zep.FXVolSurface.FromTenors(REFERENCE, REFERENCE, SPOT, TENORS, ["ATM", "25RR", "25BF", "10RR", "10BF"],
                                          QUOTES, flat(USD), flat(EUR), smileInterpolation=zep.SmileSVI)
    local = zep.FXLocalVolSurface(surface)
    times = [d / 365.0 for d in EXPIRY_DAYS]
    runs = []
    for nodes, steps in ((400, 200), (800, 400)):
        start = time.perf_counter()
        prices = zep.DupireForwardPde(local, times, 0, nodes, steps).Prices(STRIKES)
        runs.append((f"zep forward Dupire, one solve {nodes} x {steps}", time.perf_counter() - start, prices))
    start = time.perf_counter()
    prices = quantlib_prices(surface, times)
    runs.append(("QuantLib local-vol FD, 200 x 100 per option", time.perf_counter() - start, prices))
    print(f"{len(times) * len(STRIKES)} calls, 4 expiries to 2Y, strikes {STRIKES[0]} to {STRIKES[-1]}")
    for name, seconds, prices in runs:
        errors = vol_errors(surface, times, prices)
        print(f"{name:46s} {seconds * 1e3:8.1f} ms  implied-vol error max {errors.max() * 1e4:.3f} bp, "
              f"mean {errors.mean() * 1e4:.3f} bp")


if __name__ == "__main__":
    main()
