"""One million FXVolSurface.GetVolatility queries from Python in one array call (CPU time, best of
several repeats), against one call per point on a sample.

    ZEP_PYTHONPATH=build/dev/python python bench/fxvol_array_call.py
"""
import os
import sys
import time

import numpy as np

sys.path.insert(0, os.path.abspath(os.environ.get("ZEP_PYTHONPATH", "build/dev/python")))
import zep  # noqa: E402

POINTS = 1_000_000
REPEATS = 5


def best_time(call):
    best = float("inf")
    for _ in range(REPEATS):
        start = time.process_time()
        call()
        best = min(best, time.process_time() - start)
    return best


def main():
    reference = "2026-11-16"
    curve = lambda rate: zep.YieldCurve.FromTenors(reference, ["1Y", "10Y"], [rate, rate], zep.Continuous, 1)
    tenors = ["1W", "2W", "1M", "2M", "3M", "6M", "9M", "1Y", "18M", "2Y"]
    quotes = [[0.070 + 0.0015 * i, -0.002 - 0.0004 * i, 0.0018 + 0.0001 * i, -0.0036 - 0.0007 * i, 0.006 + 0.0004 * i]
              for i in range(10)]
    rng = np.random.default_rng(2026)
    times, strikes = rng.uniform(0.01, 2.2, POINTS), rng.uniform(0.95, 1.25, POINTS)
    for mode in (zep.SmileLinear, zep.SmileCubicSpline, zep.SmileSVI):
        surface = zep.FXVolSurface.FromTenors(reference, reference, 1.085, tenors, ["ATM", "25RR", "25BF", "10RR", "10BF"],
                                              quotes, curve(0.043), curve(0.026), zep.FXVolConventions(), mode)
        seconds = best_time(lambda: surface.GetVolatility(times, strikes))
        one_by_one = best_time(lambda: [surface.GetVolatility(float(t), float(k)) for t, k in zip(times[:10000], strikes[:10000])])
        name = zep.SmileInterpolationToString(mode)
        print(f"{name:<12} one array call of {POINTS:,}: {seconds * 1e3:6.1f} ms   "
              f"one call per point: {one_by_one * 1e9 / 10000:6.0f} ns/point")


if __name__ == "__main__":
    main()
