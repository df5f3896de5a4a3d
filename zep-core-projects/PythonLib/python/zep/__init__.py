"""Zep: quantitative-finance pricing and risk.

Markets (dates, holiday calendars, day counts, yield curves) and instruments built on them
(vanilla options, products written in the payoff script language) with their prices, Greeks
and pricing reports. Every class, function and constant of the native module is here under its
own name: zep.Date, zep.YieldCurve, zep.MVanillaOption, zep.Act360, ...
"""
import os as _os
import types as _types

from . import _describe, _pickling
from . import zeplib as _zeplib
from .zeplib import *  # noqa: F403 -- the public surface is the native module's
from .products import AsianPayoff, AutoCall, Snowball, TargetRedemptionForward, load_market, load_product

__all__ = sorted([name for name, value in vars(_zeplib).items()
                  if not name.startswith("_") and not isinstance(value, _types.ModuleType)]
                 + ["AsianPayoff", "AutoCall", "Snowball", "TargetRedemptionForward", "load_market", "load_product"])

# Classes and functions report, and pickle under, the names a user imports: zep.Date, not
# zep.zeplib.Date.
_classes = []
for _name in __all__:
    _value = globals()[_name]
    if isinstance(_value, (type, _types.FunctionType)) and _value.__module__ == _zeplib.__name__:
        _value.__module__ = __name__
        if isinstance(_value, type):
            _classes.append(_value)
_describe.install(_classes)
_pickling.install()

# The package metadata and the native library take their version from the same line of the build
# (CMakeLists.txt); reading the compiled one spares every import the metadata machinery.
__version__ = cvar.LibraryVersion  # noqa: F405


def _register_packaged_holidays():
    # Only the path is registered here; the file is read when a calendar is first built.
    holidays = _os.path.join(_os.path.dirname(_os.path.abspath(__file__)), "data", "Holidays.txt")
    if not _os.path.isfile(holidays):
        raise ImportError(f"zep: the packaged holiday file {holidays} is missing", name=__name__,
                          path=holidays)
    Calendar.SetPackagedHolidayFile(holidays)  # noqa: F405


_register_packaged_holidays()
