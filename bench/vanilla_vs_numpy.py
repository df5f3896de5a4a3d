"""Times zep's vanilla book entry points against vectorised NumPy/SciPy formulas, in one run.

    PYTHONPATH=build/dev/python python bench/vanilla_vs_numpy.py [rows]
"""
import math
import sys
import time

import numpy as np
from scipy.special import ndtr

import zep


def numpy_book(phi, strike, vol, expiry, delivery, rd, rf, spot):
    dfd, dff = np.exp(-rd * delivery), np.exp(-rf * delivery)
    forward = spot * dff / dfd
    root_t = np.sqrt(expiry)
    sigma_root_t = vol * root_t
    d1 = (np.log(forward / strike) + 0.5 * vol * vol * expiry) / sigma_root_t
    d2 = d1 - sigma_root_t
    cdf1, cdf2 = ndtr(phi * d1), ndtr(phi * d2)
    density = np.exp(-0.5 * d1 * d1) / math.sqrt(2 * math.pi)
    price = phi * dfd * (forward * cdf1 - strike * cdf2)
    delta = dff * phi * cdf1
    gamma = dff * density * dff / (dfd * forward * sigma_root_t)
    vega = dfd * forward * density * root_t
    theta = (-spot * np.exp(-rf * expiry) * density * vol / (2 * root_t)
             + phi * rf * spot * np.exp(-rf * expiry) * cdf1
             - phi * rd * strike * np.exp(-rd * expiry) * cdf2) / 365.0
    return price, delta, gamma, vega, theta


def numpy_newton_vols(phi, strike, expiry, delivery, rd, rf, spot, premium, steps=8):
    """Vectorised Newton on the forward premium from the Brenner-Subrahmanyam start."""
    dfd = np.exp(-rd * delivery)
    forward = spot * np.exp(-rf * delivery) / dfd
    target = premium / dfd
    root_t = np.sqrt(expiry)
    log_moneyness = np.log(forward / strike)
    vol = np.full_like(premium, 0.3)
    for _ in range(steps):
        d1 = (log_moneyness + 0.5 * vol * vol * expiry) / (vol * root_t)
        d2 = d1 - vol * root_t
        model = phi * (forward * ndtr(phi * d1) - strike * ndtr(phi * d2))
        vega = forward * np.exp(-0.5 * d1 * d1) / math.sqrt(2 * math.pi) * root_t
        vol = np.clip(vol - (model - target) / vega, 1e-4, 5.0)
    return vol


def best_of(repeats, action):
    times = []
    for _ in range(repeats):
        start = time.perf_counter()
        result = action()
        times.append(time.perf_counter() - start)
    return min(times), result


def main():
    rows = int(sys.argv[1]) if len(sys.argv) > 1 else 1_000_000
    rng = np.random.default_rng(2024)
    spot = rng.uniform(50, 150, rows)
    expiry = rng.uniform(0.05, 3.0, rows)
    types = rng.integers(0, 2, rows).astype(float)
    phi = np.where(types == 0, 1.0, -1.0)
    strike = spot * rng.uniform(0.8, 1.2, rows)
    vol = rng.uniform(0.05, 0.6, rows)
    delivery = expiry + rng.uniform(0, 0.02, rows)
    rd, rf = rng.uniform(0, 0.06, rows), rng.uniform(0, 0.06, rows)

    t_numpy, expected = best_of(3, lambda: numpy_book(phi, strike, vol, expiry, delivery, rd, rf, spot))
    t_zep, got = best_of(3, lambda: zep.PriceVanillaBook(types, strike, vol, expiry, delivery, rd, rf, spot))
    worst = max(float(np.max(np.abs(g - e) / (1 + np.abs(e)))) for g, e in zip(got, expected))
    print(f"book of {rows} (price, delta, gamma, vega, theta): numpy/scipy {t_numpy * 1e3:.1f} ms, "
          f"zep {t_zep * 1e3:.1f} ms, ratio {t_numpy / t_zep:.1f}x, max rel diff {worst:.1e}")

    premium = got[0]
    solve_rows = min(rows, 200_000)
    cut = slice(0, solve_rows)
    columns = [a[cut] for a in (types, strike, expiry, delivery, rd, rf, spot, premium)]
    t_newton, newton = best_of(3, lambda: numpy_newton_vols(phi[cut], *columns[1:]))
    t_zep_vols, vols = best_of(3, lambda: zep.ImpliedVolatilityBook(*columns))
    live = vol[cut] > 0
    print(f"implied vols of {solve_rows}: numpy Newton (8 steps) {t_newton * 1e3:.1f} ms, zep bracketed Newton "
          f"+ bisection replay (2 threads) {t_zep_vols * 1e3:.1f} ms, ratio {t_newton / t_zep_vols:.1f}x, "
          f"median |vol error| numpy {np.median(np.abs(newton - vol[cut])):.1e} "
          f"zep {np.median(np.abs(vols[live] - vol[cut][live])):.1e}")

    calls = 200_000
    engine = zep.MBSVanilla(0, 100.0, 0.2, 1.0, 1.0, 0.05, 0.0, 100.0)
    price_of = zep.MBSVanilla.OptionPrice
    t_static, _ = best_of(3, lambda: [price_of(0, 100.0, 0.2, 1.0, 1.0, 0.05, 0.0, 100.0) for _ in range(calls)])
    t_method, _ = best_of(3, lambda: [engine.Price() for _ in range(calls)])
    t_build, _ = best_of(3, lambda: [zep.MBSVanilla(0, 100.0, 0.2, 1.0, 1.0, 0.05, 0.0, 100.0).Price()
                                     for _ in range(calls // 4)])
    print(f"per call from Python: MBSVanilla.OptionPrice {t_static / calls * 1e6:.2f} us, "
          f"engine.Price() {t_method / calls * 1e6:.2f} us, "
          f"MBSVanilla(...).Price() {t_build / (calls // 4) * 1e6:.2f} us")


if __name__ == "__main__":
    main()
