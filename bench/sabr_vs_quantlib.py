"""SABR volatilities from Python: a swaption slice's smile in zep (lognormal and normal
expansions) against QuantLib's sabrVolatility and shiftedSabrVolatility in one run, each pair
checked to agree at the money first; and a cube volatility and a caplet strip of zep alone.

    ZEP_PYTHONPATH=build/dev/python python bench/sabr_vs_quantlib.py
"""
import os
import sys

import QuantLib as ql

_build = os.environ.get("ZEP_PYTHONPATH")
if _build:
    sys.path.insert(0, os.path.abspath(_build))
import zep  # noqa: E402
from bench_support import best_of  # noqa: E402

FORWARD, EXPIRY, BETA, RHO, NU = 0.03, 5.0, 0.5, -0.3, 0.4
STRIKES = [0.01 + 0.0005 * i for i in range(100)]


def per_strike(function):
    """Seconds per volatility over the strike grid."""
    return best_of(lambda: [function(k) for k in STRIKES], 200) / len(STRIKES)


def main():
    for model, alpha, ql_type in (("BLACK", 0.2 * FORWARD ** 0.5, ql.ShiftedLognormal),
                                  ("BACHELIER", 0.009 / FORWARD ** 0.5, ql.Normal)):
        smile = zep.SwaptionSmile.FromParameters(FORWARD, EXPIRY, alpha, BETA, RHO, NU, model)

        def theirs(k, alpha=alpha, ql_type=ql_type):
            return ql.shiftedSabrVolatility(k, FORWARD, EXPIRY, alpha, BETA, NU, RHO, 0.0, ql_type)

        assert abs(smile.Volatility(FORWARD) / theirs(FORWARD) - 1) < 1e-12
        zep_time, ql_time = per_strike(smile.Volatility), per_strike(theirs)
        array_time = best_of(lambda: smile.Volatilities(STRIKES), 200) / len(STRIKES)
        print(f"SABR volatility, {model:<9}          zep {zep_time * 1e9:7.0f} ns   QuantLib {ql_time * 1e9:7.0f} ns"
              f"   zep over an array of {len(STRIKES)} {array_time * 1e9:5.0f} ns")

    expiries, tenors, spreads = [1, 2, 5, 10], [2, 5, 10, 30], [-0.01, -0.005, 0.0, 0.005, 0.01, 0.02]
    forwards = [[0.025 + 0.0005 * e + 0.0002 * t for t in tenors] for e in expiries]
    quotes = [[[ql.sabrVolatility(f + s, f, e, 0.2 * f ** 0.5, BETA, NU, RHO) for s in spreads]
               for f in row] for row, e in zip(forwards, expiries)]
    fit_time = best_of(lambda: zep.SwaptionCube(expiries, tenors, spreads, forwards, quotes, BETA), 3)
    print(f"cube of 16 slices, SABR fits         zep {fit_time * 1e3:7.2f} ms")
    cube = zep.SwaptionCube(expiries, tenors, spreads, forwards, quotes, BETA)
    zep_time = per_strike(lambda k: cube.Volatility(3.5, 7.0, 0.031, k))
    array_time = best_of(lambda: cube.Volatilities(3.5, 7.0, 0.031, STRIKES), 200) / len(STRIKES)
    print(f"cube volatility between four slices  zep {zep_time * 1e9:7.0f} ns   "
          f"over an array {array_time * 1e9:5.0f} ns")


if __name__ == "__main__":
    main()
