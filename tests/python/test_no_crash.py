"""Bad arguments of every kind end in a Python exception, never in a crash of the interpreter."""
import os
import subprocess
import sys

import zep

HERE = os.path.dirname(os.path.abspath(__file__))


def test_every_entry_point_survives_ill_typed_and_extreme_arguments():
    environment = dict(os.environ, ZEP_LOGLEVEL="off", ZEP_NUM_THREADS="1",
                       PYTHONPATH=os.path.dirname(os.path.dirname(zep.__file__)))
    run = subprocess.run([sys.executable, os.path.join(HERE, "no_crash_probe.py")], env=environment,
                         capture_output=True, text=True, timeout=600)
    calls = [line for line in run.stderr.splitlines() if line.startswith("CALL")]
    assert run.returncode == 0 and run.stderr.rstrip().endswith("DONE"), (
        f"exit {run.returncode} after {len(calls)} calls; last: {calls[-1:]}\n{run.stderr[-2000:]}")
    assert len(calls) > 5000
