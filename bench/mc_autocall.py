"""Times the example autocallable (examples/autocallable.yaml) in one run:

* zep under Black-Scholes, 100 000 paths, 2 threads, against the same product written as
  vectorised NumPy (same grid: one step per event day);
* zep with 1 thread against 2 threads;
* one thread: Price() against NumPy, Price() then PriceStandardError() (one run serves both),
  BasicGreeks() and AllGreeks() against Price() (wall and CPU time), with NumPy's price checked against zep's
  within 4 standard errors;
* the same product under Heston: its Greeks against its price on one thread (CPU time, half the
  paths), its price on 2 threads;
* path-steps per second for each model.

    ZEP_PYTHONPATH=build/dev/python python bench/mc_autocall.py
"""
import copy
import datetime as dt
import json
import os
import sys
import time

import numpy as np
import yaml

_build = os.environ.get("ZEP_PYTHONPATH")
if _build:
    sys.path.insert(0, os.path.abspath(_build))
import zep  # noqa: E402

HERE = os.path.dirname(os.path.abspath(__file__))
DEFINITION = yaml.safe_load(open(os.path.join(HERE, "..", "examples", "autocallable.yaml")))
PATHS = 100_000
REPEATS = 3


def note(model=None, parameters=(), paths=PATHS):
    definition = copy.deepcopy(DEFINITION)
    definition["simulation"]["paths"] = paths
    if model:
        definition["model"] = {"type": model, "parameters": list(parameters)}
    return zep.MXScriptStructure.FromDefinition(json.dumps(definition, default=str))


def best(action, clock=time.perf_counter):
    """Best of REPEATS calls. A product keeps its results, so timed actions price a new one."""
    times = []
    for _ in range(REPEATS):
        start = clock()
        value = action()
        times.append(clock() - start)
    return min(times), value


def numpy_autocall(paths, seed=1):
    """The same note, vectorised over paths in NumPy (event-to-event exact lognormal steps)."""
    m = DEFINITION["market"]
    f = DEFINITION["fields"]
    today = DEFINITION["valuation_date"]
    start, end = dt.date(2024, 1, 3), dt.date(2025, 1, 2)
    days = [(start + dt.timedelta(d) - today).days for d in range((end - start).days + 1)
            if (start + dt.timedelta(d)).weekday() < 5]
    monthly = [(dt.date(2024, k, 2) - today).days for k in range(2, 13)] + [(end - today).days]
    grid = np.array(sorted(set(days) | set(monthly)))
    times = grid / 365.0
    dt_steps = np.diff(np.concatenate([[0.0], times]))
    vol, r, q = m["volatility"], m["rate1"], m["rate2"]
    drift = (r - q - vol * vol / 2) * dt_steps
    dev = vol * np.sqrt(dt_steps)
    daily_idx = np.searchsorted(grid, days)
    monthly_idx = np.searchsorted(grid, monthly)
    rng = np.random.default_rng(seed)
    total = 0.0
    for chunk in range(0, paths, 25_000):
        n = min(25_000, paths - chunk)
        log_perf = np.cumsum(drift + dev * rng.standard_normal((n, len(grid))), axis=1)
        perf = np.exp(log_perf)
        knocked = (perf[:, daily_idx] < f["KnockIn"]).any(axis=1)
        alive = np.ones(n)
        value = np.zeros(n)
        for k, idx in enumerate(monthly_idx, start=1):
            discount = np.exp(-r * times[idx])
            called = perf[:, idx] >= f["AutocallLevel"]
            value += alive * called * (1 + f["Coupon"] * k) * discount
            if k == len(monthly_idx):
                final = np.where(knocked, perf[:, idx], 1.0)
                value += alive * ~called * final * discount
            alive = alive * ~called
        total += value.sum()
    return total / paths


def main():
    print(f"zep {zep.LibraryVersion}, {os.cpu_count()} hardware threads, {PATHS} paths")
    os.environ["ZEP_NUM_THREADS"] = "2"
    bs = note()
    steps = int(bs.Description().split("numPath:")[1].split()[0])
    t_zep, price = best(lambda: note().Price())
    t_numpy, numpy_price = best(lambda: numpy_autocall(PATHS))
    print(f"Black-Scholes, 2 threads: zep {t_zep:.3f} s (price {price:.5f}), "
          f"NumPy {t_numpy:.3f} s (price {numpy_price:.5f}), zep {t_numpy / t_zep:.2f}x faster")

    os.environ["ZEP_NUM_THREADS"] = "1"
    t_one, _ = best(lambda: note().Price())
    print(f"Threads: 1 thread {t_one:.3f} s, 2 threads {t_zep:.3f} s, speed-up {t_one / t_zep:.2f}x")
    # CPU seconds of one thread against NumPy's (single-threaded) CPU seconds: the work each
    # does, independent of how busy the machine's other core is.
    cpu_zep, _ = best(lambda: note().Price(), time.process_time)
    cpu_numpy, _ = best(lambda: numpy_autocall(PATHS), time.process_time)
    print(f"CPU time, 1 thread: zep {cpu_zep:.3f} s, NumPy {cpu_numpy:.3f} s, "
          f"zep does the work {cpu_numpy / cpu_zep:.2f}x cheaper")

    # Fresh products: every figure below includes its simulations (nothing cached beforehand).
    start = time.perf_counter()
    one = note()
    one_price = one.Price()
    t_price = time.perf_counter() - start
    one_error = one.PriceStandardError()
    t_with_error = time.perf_counter() - start
    print(f"1 thread: Price() {t_price:.3f} s, then PriceStandardError() {t_with_error - t_price:.4f} s more; "
          f"NumPy {t_numpy:.3f} s: zep {t_numpy / t_price:.2f}x faster")
    assert abs(numpy_price - one_price) < 4 * one_error, (numpy_price, one_price, one_error)
    print(f"  NumPy's price {numpy_price:.5f} is {abs(numpy_price - one_price) / one_error:.1f} "
          f"standard errors ({one_error:.5f}) from zep's {one_price:.5f}")
    for label, greeks in (("BasicGreeks", lambda n: n.BasicGreeks()), ("AllGreeks", lambda n: n.AllGreeks())):
        fresh = note()
        start, cpu_start = time.perf_counter(), time.process_time()
        fresh.Price()
        t_base, cpu_base = time.perf_counter() - start, time.process_time() - cpu_start
        greeks(fresh)
        t_greeks = time.perf_counter() - start - t_base
        cpu_greeks = time.process_time() - cpu_start - cpu_base
        print(f"  {label}() {t_greeks:.3f} s after Price() {t_base:.3f} s: {t_greeks / t_base:.1f}x the price "
              f"(CPU {cpu_greeks:.3f} s after {cpu_base:.3f} s: {cpu_greeks / cpu_base:.1f}x)")

    heston_parameters = (1.5, 0.04, 0.4, -0.6, 0.04)
    for label, greeks in (("BasicGreeks", lambda n: n.BasicGreeks()), ("AllGreeks", lambda n: n.AllGreeks())):
        fresh = note("Heston", heston_parameters, paths=PATHS // 2)
        cpu_start = time.process_time()
        fresh.Price()
        cpu_base = time.process_time() - cpu_start
        greeks(fresh)
        cpu_greeks = time.process_time() - cpu_start - cpu_base
        print(f"  Heston, {PATHS // 2} paths: {label}() CPU {cpu_greeks:.3f} s after Price() {cpu_base:.3f} s: "
              f"{cpu_greeks / cpu_base:.1f}x")

    os.environ["ZEP_NUM_THREADS"] = "2"
    heston = note("Heston", heston_parameters)
    t_heston, heston_price = best(lambda: note("Heston", heston_parameters).Price())
    heston_steps = int(heston.Description().split("numPath:")[1].split()[0])
    print(f"Heston, 2 threads: {t_heston:.3f} s (price {heston_price:.5f}, {heston_steps} steps)")

    print("Path-steps per second, 2 threads:")
    rows = [("BlackScholes", bs, steps, t_zep), ("Heston", heston, heston_steps, t_heston)]
    for model, params in (("Bachelier", ()), ("Dupire", (0.2, -0.1, 0.05, 0.0, 0.05, 1.0))):
        def build(model=model, params=params):
            if model != "Bachelier":
                return note(model, params)
            definition = copy.deepcopy(DEFINITION)
            definition["model"] = {"type": "Bachelier"}
            definition["market"]["volatility"] = 20.0
            definition["simulation"]["paths"] = PATHS
            return zep.MXScriptStructure.FromDefinition(json.dumps(definition, default=str))
        product = build()
        t, _ = best(lambda: build().Price())
        rows.append((model, product, int(product.Description().split("numPath:")[1].split()[0]), t))
    for model, _, n_steps, t in rows:
        print(f"  {model:<13} {PATHS * n_steps / t / 1e6:8.1f} M path-steps/s ({n_steps} steps, {t:.3f} s)")


if __name__ == "__main__":
    main()
