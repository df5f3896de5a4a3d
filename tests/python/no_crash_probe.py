"""Calls every function, constructor and method of zep with ill-typed and extreme arguments.

Run by test_no_crash.py in a child process: any crash kills only the child, and the last call
written to standard error names the culprit. Every call must end in a value or an exception.
"""
import faulthandler
import inspect
import itertools
import os
import sys

import zep
from zep import _zep

faulthandler.enable()

# A count that makes a container constructor ask for terabytes: the C++ runtime refuses with
# std::bad_alloc, a Python exception, but AddressSanitizer's allocator aborts instead of throwing.
# On the sanitized tree the count exceeds every container's max_size, refused before allocating.
HUGE = 2**62 if os.environ.get("ZEP_SANITIZED") else 2**40
BAD = [None, "", "x", -1, 0, HUGE, 1e308, float("nan"), [], [None], ["2024-01-01"], [1.0, float("nan")], (1, 2), {}]
PER_ARITY = 25  # combinations tried per argument count

INSTANCES = {
    "curve": lambda: zep.YieldCurve("2024-01-02", ["2025-01-02", "2026-01-02"], [0.97, 0.94]),
    "interpolation": lambda: zep.Interpolation([1.0, 2.0, 3.0], [1.0, 4.0, 9.0], zep.CubicInterpolation, 2),
    "script": lambda: zep.ScriptProduct(["2024-01-02", "2024-06-02"], ["X = SPOT()", "IF X > 1 THEN C PAYS 1 ENDIF"]),
    "scripted": lambda: zep.MXScriptStructure("2024-01-02", 100.0, 0.2, 0.03, 0.0, 1, [], ["2025-01-02"],
                                              ["C PAYS MAX(SPOT() - 100, 0)"], 64),
    "vanilla": lambda: zep.MVanillaOption(1, 0, 1e6, 1.1, 1.08, "2024-01-15", "2024-07-15", "2024-07-17",
                                          "2024-07-17", 0.035, 0.02, 0.09),
    "engine": lambda: zep.BSVanilla(0, 100.0, 0.2, 1.0, 1.0, 0.03, 0.01, 100.0),
    "calendar": zep.Calendar,
    "day counter": lambda: zep.DayCounter(7),
    "date": lambda: zep.Date("2024-01-02"),
    "period": lambda: zep.Period("3M"),
}
# Module functions that would write files or raise on purpose are exercised by their own tests.
SKIP = {"RaiseLibraryFailure", "report_to_html"}


def attempt(call, label, arities):
    for arity in arities:
        for args in itertools.islice(itertools.product(BAD, repeat=arity), PER_ARITY):
            sys.stderr.write(f"CALL {label}{args!r:.160}\n")
            try:
                call(*args)
            except Exception:
                pass


def poke(instance, label):
    for name in sorted(dir(instance)):
        method = getattr(instance, name, None)
        if name.startswith("_") or not callable(method) or name in {"WriteReport", "GpuPrice"}:
            continue
        attempt(method, f"{label}.{name}", range(3))


def null_objects():
    """Every method with None, or a wrapped object of another class, where its object belongs; and
    every native function of the module with None and ill-typed arguments. Registration functions
    are left out: rebinding a class record is what they are for, once, at import."""
    stranger = zep.Period("1M")
    for name in sorted(zep.__all__):
        cls = getattr(zep, name)
        if not inspect.isclass(cls):
            continue
        for member in sorted(dir(cls)):
            method = inspect.getattr_static(cls, member, None)
            if isinstance(method, (staticmethod, classmethod)) or not inspect.isfunction(method):
                continue
            for args in [(None,), (None, None), (None, 1, "x"), (stranger,), (stranger, None)]:
                sys.stderr.write(f"CALL {name}.{member}{args!r}\n")
                try:
                    method(*args)
                except Exception:
                    pass
    for name in sorted(dir(_zep)):
        function = getattr(_zep, name)
        if not callable(function) or name.endswith("_swigregister") or name.startswith("_"):
            continue
        arguments = [(), (None,), (None, None), (None, 1, "x"), (stranger, None), (stranger, 5)]
        for args in arguments:
            sys.stderr.write(f"CALL _zep.{name}{args!r}\n")
            try:
                function(*args)
            except Exception:
                pass


def main():
    # Built first: the module-wide calls below include global setters (the holiday search base).
    instances = {label: build() for label, build in INSTANCES.items()}
    for name in sorted(dir(zep)):
        target = getattr(zep, name)
        if name.startswith("_") or name in SKIP or not callable(target):
            continue
        attempt(target, name, range(4))
        if inspect.isclass(target):
            try:
                poke(target(), name)  # an empty or default object: containers, M classes
            except Exception:
                pass
    for label, instance in instances.items():
        poke(instance, label)
    null_objects()
    sys.stderr.write("DONE\n")


if __name__ == "__main__":
    main()
