"""Black-Scholes barrier options from Python: zep's book entry point (one call for the whole
book, NumPy arrays in) against QuantLib's AnalyticBarrierEngine priced option by option, and
the per-call cost of a single zep price, in one run; prices checked to agree.

    ZEP_PYTHONPATH=build/dev/python python bench/barrier_vs_quantlib.py
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

QUANTLIB_OPTIONS = 2_000
BOOK = 1_000_000


def random_book(n, seed=7):
    rng = np.random.default_rng(seed)
    types = rng.integers(0, 2, n).astype(float)
    barrier_types = rng.integers(2, 6, n).astype(float)
    strikes = rng.uniform(90.0, 110.0, n)
    down = barrier_types < 4
    barriers = np.where(down, rng.uniform(70.0, 95.0, n), rng.uniform(105.0, 130.0, n))
    vols = rng.uniform(0.1, 0.4, n)
    days = rng.integers(30, 720, n)
    return types, barrier_types, strikes, barriers, vols, days


def quantlib_prices(types, barrier_types, strikes, barriers, vols, days):
    today = ql.Date(2, 1, 2024)
    ql.Settings.instance().evaluationDate = today
    day_count = ql.Actual365Fixed()
    spot = ql.SimpleQuote(100.0)
    vol = ql.SimpleQuote(0.2)
    process = ql.BlackScholesMertonProcess(
        ql.QuoteHandle(spot), ql.YieldTermStructureHandle(ql.FlatForward(today, 0.01, day_count)),
        ql.YieldTermStructureHandle(ql.FlatForward(today, 0.03, day_count)),
        ql.BlackVolTermStructureHandle(ql.BlackConstantVol(today, ql.NullCalendar(), ql.QuoteHandle(vol), day_count)))
    engine = ql.AnalyticBarrierEngine(process)
    kinds = {2: ql.Barrier.DownIn, 3: ql.Barrier.DownOut, 4: ql.Barrier.UpIn, 5: ql.Barrier.UpOut}
    prices = np.empty(len(types))
    for i in range(len(types)):
        vol.setValue(vols[i])
        payoff = ql.PlainVanillaPayoff(ql.Option.Call if types[i] == 0 else ql.Option.Put, strikes[i])
        option = ql.BarrierOption(kinds[int(barrier_types[i])], barriers[i], 0.0, payoff,
                                  ql.EuropeanExercise(today + int(days[i])))
        option.setPricingEngine(engine)
        prices[i] = option.NPV()
    return prices


def zep_book(types, barrier_types, strikes, barriers, vols, days):
    t = days / 365.0
    return zep.PriceBarrierBook(types, barrier_types, strikes, barriers, 0.0, vols, t, t, 0.03, 0.01, 100.0)


def main():
    book = random_book(QUANTLIB_OPTIONS)
    start = time.perf_counter()
    expected = quantlib_prices(*book)
    quantlib_seconds = time.perf_counter() - start
    start = time.perf_counter()
    prices = zep_book(*book)
    zep_small = time.perf_counter() - start
    assert np.allclose(prices, expected, rtol=1e-10, atol=1e-10)
    big = random_book(BOOK, seed=11)
    zep_book(*random_book(1000))
    start = time.perf_counter()
    zep_book(*big)
    zep_seconds = time.perf_counter() - start
    option = zep.EuropeanBarrierBS(0, 3, 100.0, 90.0, 0.2, 0.5, 0.5, 0.03, 0.01, 100.0)
    calls = 200_000
    start = time.perf_counter()
    for _ in range(calls):
        option.Price()
    per_call = (time.perf_counter() - start) / calls
    per_quantlib = quantlib_seconds / QUANTLIB_OPTIONS
    per_zep = zep_seconds / BOOK
    print(f"zep {zep.__version__}, QuantLib {ql.__version__}; prices agree to 1e-10 on {QUANTLIB_OPTIONS} options")
    print(f"QuantLib AnalyticBarrierEngine, option by option: {per_quantlib * 1e6:.2f} us per option")
    print(f"zep PriceBarrierBook, {QUANTLIB_OPTIONS} options: {zep_small * 1e3:.2f} ms")
    print(f"zep PriceBarrierBook, {BOOK} options: {zep_seconds:.3f} s, {per_zep * 1e9:.0f} ns per option, "
          f"{per_quantlib / per_zep:.0f}x QuantLib per option")
    print(f"zep EuropeanBarrierBS.Price() on a built option, per call: {per_call * 1e6:.2f} us")


if __name__ == "__main__":
    main()
