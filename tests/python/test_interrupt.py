"""Long Monte Carlo runs answer Ctrl-C promptly, stay flat in memory and report progress."""
import json
import math
import os
import signal
import subprocess
import sys
import time

import pytest

import zep

HERE = os.path.dirname(os.path.abspath(__file__))


def child_environment(threads):
    return dict(os.environ, ZEP_LOGLEVEL="off", ZEP_NUM_THREADS=str(threads),
                PYTHONPATH=os.path.dirname(os.path.dirname(zep.__file__)))


def expect_line(child, line):
    """The child's next line; if it ended instead, what it said on standard error."""
    answer = child.stdout.readline()
    if answer != line:
        child.kill()
        pytest.fail(f"expected {line!r}, got {answer!r}; exit {child.wait()}, stderr: {child.stderr.read()[-2000:]}")


@pytest.mark.parametrize("threads", [1, 2])
def test_ctrl_c_stops_a_billion_path_run_within_half_a_second(threads):
    child = subprocess.Popen([sys.executable, os.path.join(HERE, "interrupt_probe.py"), str(10**9)],
                             env=child_environment(threads), stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
    try:
        delays = {}
        for name in ("Price", "BasicGreeks"):
            expect_line(child, f"running {name}\n")
            time.sleep(0.5)  # well inside the run, which would take minutes
            sent = time.perf_counter()
            child.send_signal(signal.SIGINT)
            expect_line(child, "interrupted\n")
            delays[name] = time.perf_counter() - sent
        figures = json.loads(child.stdout.readline())
        assert child.wait(timeout=60) == 0, child.stderr.read()[-2000:]
    finally:
        child.kill()
    assert max(delays.values()) < 0.5, delays
    # A billion paths kept as values would take gigabytes; the run keeps sums only.
    assert figures["resident_after"] - figures["resident_before"] < 20 * 1024, figures
    assert figures["forward"] == pytest.approx(100 * math.exp(0.03), rel=1e-3)


def call_with_paths(paths):
    return zep.MXScriptStructure("2024-01-02", 100.0, 0.2, 0.03, 0.0, 1, [], ["2025-01-02"],
                                 ["C PAYS MAX(SPOT() - 100, 0)"], paths)


@pytest.fixture
def progress_reset():
    yield
    zep.SetProgress(None)


def test_a_failing_progress_callable_stops_the_run_with_its_exception(progress_reset):
    def refuse(done, total):
        raise ZeroDivisionError(f"{done} of {total}")

    zep.SetProgress(refuse)
    with pytest.raises(ZeroDivisionError, match=r"of 30000000$"):
        call_with_paths(30_000_000).Price()


def test_progress_reports_paths_done_in_order(progress_reset):
    reports = []
    zep.SetProgress(lambda done, total: reports.append((done, total)))
    call_with_paths(12_000_000).Price()
    assert reports, "a run of more than a second reports"
    assert all(total == 12_000_000 for _, total in reports)
    assert [done for done, _ in reports] == sorted(done for done, _ in reports)


@pytest.mark.parametrize("setting", ["yes", 1.5, [print]])
def test_progress_setting_is_a_flag_or_a_callable(setting):
    with pytest.raises(TypeError, match="SetProgress expects True, False, None or a callable"):
        zep.SetProgress(setting)


def test_progress_bar_goes_to_standard_error_and_ends_its_line():
    script = ("import zep; zep.SetProgress(True); "
              "zep.MXScriptStructure('2024-01-02', 100.0, 0.2, 0.03, 0.0, 1, [], ['2025-01-02'], "
              "['C PAYS MAX(SPOT() - 100, 0)'], 12_000_000).Price()")
    run = subprocess.run([sys.executable, "-c", script], env=child_environment(1), capture_output=True, timeout=120)
    assert run.returncode == 0, run.stderr[-2000:]
    assert run.stdout == b""
    assert b"\rMonte Carlo [" in run.stderr and b"/ 12000000 paths" in run.stderr
    assert run.stderr.endswith(b"\n")
