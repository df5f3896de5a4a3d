"""One million discount factors on a 30-pillar curve: zep's vectorised entry point against
numpy.interp on the same pillars and times, timed in one run (best of several repeats, CPU time).

    ZEP_PYTHONPATH=build/dev/python python bench/curve_vs_numpy.py
"""
import os
import sys
import time

import numpy as np

sys.path.insert(0, os.path.abspath(os.environ.get("ZEP_PYTHONPATH", "build/dev/python")))
import zep  # noqa: E402

POINTS = 1_000_000
REPEATS = 7


def best_time(call):
    best = float("inf")
    for _ in range(REPEATS):
        start = time.process_time()
        call()
        best = min(best, time.process_time() - start)
    return best


def main():
    reference = zep.Date("2024-01-02")
    dates = [reference + 365 * i for i in range(1, 31)]
    rates = [0.02 + 0.0005 * i for i in range(1, 31)]
    curve = zep.YieldCurve.FromZeroRates(reference, dates, rates, zep.Continuous, 1)  # Act365Fixed
    pillar_times = np.array(curve.Times())
    pillar_factors = np.array([curve.DiscountFactor(t) for t in pillar_times])
    times = np.random.default_rng(2024).uniform(0.0, 30.0, POINTS)

    numpy_seconds = best_time(lambda: np.interp(times, pillar_times, pillar_factors))
    zep_seconds = best_time(lambda: curve.DiscountFactors(times))
    print(f"numpy.interp            {numpy_seconds * 1e9 / POINTS:6.1f} ns/point")
    print(f"YieldCurve.DiscountFactors {zep_seconds * 1e9 / POINTS:6.1f} ns/point")
    print(f"speed-up                {numpy_seconds / zep_seconds:6.2f}x")


if __name__ == "__main__":
    main()
