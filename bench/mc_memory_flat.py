"""Peak resident memory of a Monte Carlo pricing against its number of paths: each run prices a
one-year call (one event date, Black-Scholes) in a child process and reports its peak; the
billion-path run is stopped with SIGINT after three seconds, as a user would press Ctrl-C.

    ZEP_PYTHONPATH=build/dev/python python bench/mc_memory_flat.py
"""
import os
import signal
import subprocess
import sys
import time

CHILD = """
import resource, sys, time
import zep
call = zep.MXScriptStructure("2024-01-02", 100.0, 0.2, 0.03, 0.0, 1, [], ["2025-01-02"],
                             ["C PAYS MAX(SPOT() - 100, 0)"], int(sys.argv[1]))
baseline = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
print("started", flush=True)
start = time.perf_counter()
try:
    call.Price()
    outcome = "priced"
except KeyboardInterrupt:
    outcome = "interrupted"
peak = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
print(f"{outcome} {time.perf_counter() - start:.2f} {baseline} {peak}", flush=True)
"""


def run(paths, interrupt_after=None):
    environment = dict(os.environ, ZEP_LOGLEVEL="off")
    build = os.environ.get("ZEP_PYTHONPATH")
    if build:
        environment["PYTHONPATH"] = os.path.abspath(build)
    child = subprocess.Popen([sys.executable, "-c", CHILD, str(paths)], env=environment,
                             stdout=subprocess.PIPE, text=True)
    assert child.stdout.readline() == "started\n"
    if interrupt_after:
        time.sleep(interrupt_after)
        child.send_signal(signal.SIGINT)
    outcome, seconds, baseline, peak = child.stdout.readline().split()
    child.wait()
    print(f"{paths:>14,} paths: {outcome} after {seconds} s, peak resident {int(peak) / 1024:6.1f} MiB "
          f"(before the run {int(baseline) / 1024:6.1f} MiB)")


def main():
    for paths in (10**5, 10**6, 10**7, 10**8):
        run(paths)
    run(10**9, interrupt_after=3.0)


if __name__ == "__main__":
    main()
