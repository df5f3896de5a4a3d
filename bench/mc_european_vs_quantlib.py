"""A one-year European call by Monte Carlo with 252 time steps and 100 000 paths: zep's script
pricer (price and standard error, one thread, best of 3) against QuantLib's MCEuropeanEngine (pseudo-random,
the same steps and paths) in one run, per path-step, each price checked against Black-Scholes
within 4 standard errors.

    ZEP_PYTHONPATH=build/dev/python python bench/mc_european_vs_quantlib.py
"""
import datetime as dt
import math
import os
import sys
import time

import QuantLib as ql

_build = os.environ.get("ZEP_PYTHONPATH")
if _build:
    sys.path.insert(0, os.path.abspath(_build))
os.environ.setdefault("ZEP_NUM_THREADS", "1")
import zep  # noqa: E402

SPOT, STRIKE, VOL, RATE = 100.0, 100.0, 0.2, 0.03
TODAY, EXPIRY = dt.date(2024, 1, 2), dt.date(2025, 1, 2)
STEPS, PATHS = 252, 100_000
DAYS = (EXPIRY - TODAY).days
T = DAYS / 365.0


def black_scholes_call():
    d1 = (math.log(SPOT / STRIKE) + (RATE + VOL * VOL / 2) * T) / (VOL * math.sqrt(T))
    n = lambda x: 0.5 * math.erfc(-x / math.sqrt(2))  # noqa: E731
    return SPOT * n(d1) - STRIKE * math.exp(-RATE * T) * n(d1 - VOL * math.sqrt(T))


def zep_call():
    # 252 observation dates spread over the year, the payoff on the last: a path of 252 steps.
    dates = [(TODAY + dt.timedelta(days=round(DAYS * k / STEPS))).isoformat() for k in range(1, STEPS + 1)]
    scripts = [""] * (STEPS - 1) + [f"C PAYS MAX(SPOT() - {STRIKE}, 0)"]
    product = zep.MXScriptStructure(TODAY.isoformat(), SPOT, VOL, RATE, 0.0, 1, [], dates, scripts, PATHS)
    start = time.perf_counter()
    price, error = product.Price(), product.PriceStandardError()
    return time.perf_counter() - start, price, error


def quantlib_call():
    today = ql.Date(TODAY.day, TODAY.month, TODAY.year)
    ql.Settings.instance().evaluationDate = today
    day_count = ql.Actual365Fixed()
    process = ql.BlackScholesMertonProcess(
        ql.QuoteHandle(ql.SimpleQuote(SPOT)),
        ql.YieldTermStructureHandle(ql.FlatForward(today, 0.0, day_count)),
        ql.YieldTermStructureHandle(ql.FlatForward(today, RATE, day_count)),
        ql.BlackVolTermStructureHandle(ql.BlackConstantVol(today, ql.NullCalendar(), VOL, day_count)))
    option = ql.VanillaOption(ql.PlainVanillaPayoff(ql.Option.Call, STRIKE),
                              ql.EuropeanExercise(ql.Date(EXPIRY.day, EXPIRY.month, EXPIRY.year)))
    option.setPricingEngine(ql.MCEuropeanEngine(process, "pseudorandom", timeSteps=STEPS,
                                                requiredSamples=PATHS, seed=42))
    start = time.perf_counter()
    price, error = option.NPV(), option.errorEstimate()
    return time.perf_counter() - start, price, error


def main():
    exact = black_scholes_call()
    print(f"zep {zep.__version__}, QuantLib {ql.__version__}; {PATHS} paths x {STEPS} steps; "
          f"Black-Scholes {exact:.5f}")
    # Best of three runs each: a product keeps its results, so each run builds a new one.
    results = {"zep": min(zep_call() for _ in range(3)), "QuantLib": min(quantlib_call() for _ in range(3))}
    for name, (seconds, price, error) in results.items():
        ns = seconds / (PATHS * STEPS) * 1e9
        print(f"{name:9s} {seconds:7.3f} s  {ns:6.2f} ns per path-step  price {price:.5f} +- {error:.5f} "
              f"({abs(price - exact) / error:.1f} standard errors from Black-Scholes)")
        assert abs(price - exact) < 4 * error, name
    print(f"zep is {results['QuantLib'][0] / results['zep'][0]:.1f}x QuantLib per path-step")


if __name__ == "__main__":
    main()
