"""A very long Monte Carlo run for the parent process to interrupt with SIGINT.

Run by test_interrupt.py in a child process, so that the interrupt never reaches the test
runner. Before each long call it prints "running <call>", after the KeyboardInterrupt
"interrupted"; the parent times the gap from its signal. The signal must come from outside:
this process holds the interpreter lock for the whole call, as a terminal's Ctrl-C would find it.
Ends with one line of JSON: resident memory before and after, and a call on the same product.
"""
import json
import os
import signal
import sys

import zep


def resident_kib():
    with open("/proc/self/statm") as statm:
        return int(statm.read().split()[1]) * os.sysconf("SC_PAGE_SIZE") // 1024


# A process started in the background inherits SIGINT ignored (CI runners, "cmd &" in scripts),
# and Python then leaves it so; an interactive session has the KeyboardInterrupt handler.
signal.signal(signal.SIGINT, signal.default_int_handler)

call = zep.MXScriptStructure("2024-01-02", 100.0, 0.2, 0.03, 0.0, 1, [], ["2025-01-02"],
                             ["C PAYS MAX(SPOT() - 100, 0)"], int(sys.argv[1]))
before = resident_kib()
for name in ("Price", "BasicGreeks"):
    try:
        # Inside the try: on a loaded machine the signal may come before the call has begun.
        print("running", name, flush=True)
        getattr(call, name)()
        raise SystemExit(f"{name} ended before the interrupt")
    except KeyboardInterrupt:
        print("interrupted", flush=True)
print(json.dumps({"resident_before": before, "resident_after": resident_kib(), "forward": call.GetForward()}))
