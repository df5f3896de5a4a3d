"""Times the historical VaR of the example book (examples/risk: 1 000 trades, 519 daily scenarios)
in this process on 1 and 2 threads, and on a Dask LocalCluster of two workers, threads in this
process and worker processes, with the overhead of the cluster against the in-process run on
every hardware thread. Every run's P&L is checked to be the one-thread P&L bit for bit. Median of 3.

    ZEP_PYTHONPATH=build/dev/python python bench/risk_scale_out.py
"""
import os
import statistics
import sys
import time

sys.path.insert(0, os.environ.get("ZEP_PYTHONPATH", ""))
import numpy  # noqa: E402
import zep  # noqa: E402
import zep.risk  # noqa: E402
from dask.distributed import Client, LocalCluster  # noqa: E402

EXAMPLE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "examples", "risk")
REPEATS = 3


def timed(work):
    times, result = [], None
    for _ in range(REPEATS):
        start = time.perf_counter()
        result = work()
        times.append(time.perf_counter() - start)
    return statistics.median(times), result


def main():
    market_path = os.path.join(EXAMPLE, "market.yaml")
    loaded = zep.risk.load_portfolio(os.path.join(EXAMPLE, "portfolio.yaml"), zep.risk.load_market(market_path),
                                     market_path)
    _, factors, levels = zep.risk.load_history(os.path.join(EXAMPLE, "history.csv"))
    trades, scenarios = loaded.portfolio.Size(), len(levels) - 1

    def var(**options):
        return zep.HistoricalVaR(loaded.portfolio, factors, levels, [0.95, 0.99], "desk", **options)

    rows = []
    for threads in ("1", "2"):
        os.environ["ZEP_NUM_THREADS"] = threads
        rows.append((f"in-process, {threads} thread{'s' if threads != '1' else ''}", *timed(var)))
    del os.environ["ZEP_NUM_THREADS"]
    # Worker processes inherit the environment: one revaluation thread each, two workers on two cores.
    for processes in (False, True):
        if processes:
            os.environ["ZEP_NUM_THREADS"] = "1"
            os.environ["PYTHONPATH"] = os.path.dirname(os.path.dirname(zep.__file__))
        with LocalCluster(processes=processes, n_workers=2, threads_per_worker=1, dashboard_address=":0") as cluster, \
                Client(cluster) as client:
            var(client=client)  # workers warm: the library loaded, the holiday file read
            label = "Dask LocalCluster, 2 worker " + ("processes" if processes else "threads in this process")
            rows.append((label, *timed(lambda: var(client=client))))

    reference = numpy.asarray(rows[0][2]["pnl"])
    best_in_process = min(rows[0][1], rows[1][1])
    print(f"{trades} trades x {scenarios} scenarios, full revaluation, median of {REPEATS}")
    for label, seconds, result in rows:
        same = numpy.array_equal(numpy.asarray(result["pnl"]), reference)
        overhead = "" if label.startswith("in-process") else f", overhead {seconds - best_in_process:+.2f} s"
        print(f"{label}: {seconds:.2f} s ({trades * scenarios / seconds / 1e6:.2f} million trades x scenarios "
              f"per second{overhead}); P&L {'identical' if same else 'DIFFERENT'} to one thread")


if __name__ == "__main__":
    main()
