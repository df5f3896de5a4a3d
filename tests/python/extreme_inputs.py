"""Extreme but valid market inputs for the property tests, and the rule every figure obeys on
them: a finite number, or a library exception that says what went wrong."""
import math

from hypothesis import settings, strategies as st

# Fixed examples (derandomize) and no example database: the same cases in every run, in both
# trees; no deadline, as run times are no part of what is checked.
EXTREMES = settings(max_examples=150, deadline=None, derandomize=True, database=None)


def log_uniform(low, high):
    """Both ends, and values spread evenly over the decades between them."""
    return st.sampled_from([low, high]) | st.floats(math.log10(low), math.log10(high)).map(lambda e: 10.0 ** e)


VOLATILITIES = log_uniform(1e-8, 5.0)
TIMES = log_uniform(1e-10, 50.0)
RATES = st.sampled_from([-0.5, 0.0, 0.5]) | st.floats(-0.5, 0.5)
SPOTS = log_uniform(1e-300, 1e300)
# A strike near the spot, or anywhere in the same range as the spot.
MONEYNESS = log_uniform(1e-3, 1e3)


def figure_or_library_error(call, *args):
    """The figure, or None when the library refused with a message; fails on NaN, inf or a bare
    exception."""
    try:
        value = call(*args)
    except (RuntimeError, ValueError) as error:
        assert str(error).strip(), f"{call.__name__}{args} raised {type(error).__name__} without a message"
        return None
    assert isinstance(value, float) and math.isfinite(value), f"{call.__name__}{args} gave {value!r}"
    return value


def built_or_refused(build, *args):
    """The object, or None when the library refused to build it with a message."""
    try:
        return build(*args)
    except (RuntimeError, ValueError) as error:
        assert str(error).strip(), f"{build.__name__}{args} raised {type(error).__name__} without a message"
        return None


def within(value, low, high, scale, label):
    """low <= value <= high up to rounding relative to the figures' magnitude."""
    slack = 1e-9 * scale
    assert low - slack <= value <= high + slack, f"{label}: {value!r} outside [{low!r}, {high!r}]"

