"""Times the file-driven risk run on the example book (examples/risk: 1 000 trades, 519 daily
scenarios), split into loading (market, trade list, history) and the historical VaR with component
VaR by desk, and the P&L explain of the same book under the same scenarios. Median of 5 runs.

    ZEP_PYTHONPATH=build/dev/python python bench/risk_run.py
"""
import os
import statistics
import sys
import time

sys.path.insert(0, os.environ.get("ZEP_PYTHONPATH", ""))
import zep  # noqa: E402
import zep.risk  # noqa: E402

EXAMPLE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "examples", "risk")


def median_seconds(work, repeats=5):
    times = []
    for _ in range(repeats):
        start = time.perf_counter()
        work()
        times.append(time.perf_counter() - start)
    return statistics.median(times)


def main():
    market_path = os.path.join(EXAMPLE, "market.yaml")
    market = zep.risk.load_market(market_path)
    loaded = zep.risk.load_portfolio(os.path.join(EXAMPLE, "portfolio.yaml"), market, market_path)
    dates, factors, levels = zep.risk.load_history(os.path.join(EXAMPLE, "history.csv"))
    scenarios = len(levels) - 1
    trades = loaded.portfolio.Size()

    load = median_seconds(lambda: zep.risk.load_portfolio(os.path.join(EXAMPLE, "portfolio.yaml"), market,
                                                          market_path))
    var = median_seconds(lambda: zep.HistoricalVaR(loaded.portfolio, factors, levels, [0.95, 0.99], "desk"))
    day_scenarios = zep.HistoricalScenarios(factors, levels)
    explain = median_seconds(lambda: zep.ExplainPnL(loaded.portfolio, day_scenarios), repeats=3)
    everything = median_seconds(lambda: zep.risk.run(os.path.join(EXAMPLE, "portfolio.yaml"), market_path,
                                                     os.path.join(EXAMPLE, "history.csv")), repeats=3)
    print(f"{trades} trades x {scenarios} scenarios")
    print(f"load the trade list (build 1 000 instruments and adapters): {load * 1e3:.0f} ms")
    print(f"historical VaR, full revaluation, components by desk: {var * 1e3:.0f} ms "
          f"({trades * scenarios / var / 1e6:.2f} million trades x scenarios per second)")
    print(f"P&L explain (sensitivities once per trade, then each scenario): {explain * 1e3:.0f} ms")
    print(f"the whole run as python -m zep.risk does it (load, VaR, explain of the VaR days): {everything * 1e3:.0f} ms")


if __name__ == "__main__":
    main()
