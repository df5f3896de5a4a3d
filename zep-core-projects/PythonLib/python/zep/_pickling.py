"""Pickling and copying of zep objects, so that dates, markets and instruments can travel to
worker processes (process pools, Dask) and be deep-copied.

Two kinds of state:
- value types save what they are: a date its serial number, a period its length, unit and
  spelling, a day counter its convention (and the calendar Act252 counts on), a calendar its
  holidays, a curve its saved fields (the same JSON that YieldCurve.ToJson writes);
- engines and instruments save how they were built: the constructor or factory call with its
  arguments, then every setter called since, replayed in order when the object is rebuilt. The
  arguments are kept by reference, as the object was given them.

Every pickle carries the zep version that wrote it; another version refuses it with a clear
error instead of guessing at a layout it does not know.
"""
import functools

from . import zeplib

_RECIPE = "_zep_recipe"  # the instance attribute holding the construction record


def _restore(version, rebuild, payload):
    from . import __version__
    if version != __version__:
        import pickle
        raise pickle.UnpicklingError(f"this zep object was pickled by zep {version}; "
                                     f"zep {__version__} cannot read it")
    return rebuild(payload)


def _saved(rebuild, payload):
    from . import __version__
    return _restore, (__version__, rebuild, payload)


# Value types -------------------------------------------------------------------------------

def _date(serial):
    return zeplib.Date(serial)


def _period(state):
    length, units, text = state
    period = zeplib.Period(text) if text else zeplib.Period(length, units)
    if (period.Length(), period.Units()) != (length, units):
        import pickle
        raise pickle.UnpicklingError(f"saved period {text!r} does not read as {length} of unit {units}")
    return period


def _day_counter(state):
    code, calendar = state
    return zeplib.DayCounter(code) if calendar is None else zeplib.DayCounter(code, calendar)


def _calendar(holidays):
    return zeplib.Calendar._FromHolidays(holidays)


def _yield_curve(fields):
    return zeplib.YieldCurve.FromJson(fields)


def _parametric_curve(arguments):
    return zeplib.ParametricYieldCurve(*arguments)


def _hooked_curve(state):
    fields, hooks = state
    curve = zeplib.YieldCurve.FromJson(fields)
    for name, args in hooks:
        getattr(curve, name)(*args)
    return curve


def _curve_state(curve):
    # A curve on a formula saves the formula: its saved fields hold the pillars only. A curve
    # given a model or another currency's curve through its hooks saves the hook calls beside them.
    arguments = getattr(curve, "_zep_parametric", None)
    if arguments:
        return _parametric_curve, arguments
    hooks = curve.__dict__.get(_HOOKS)
    return (_hooked_curve, (curve.ToJson(), list(hooks))) if hooks else (_yield_curve, curve.ToJson())


_HOOKS = "_zep_hooks"  # the hook calls a curve was given, in order


def _recording_hook(name, hook):
    @functools.wraps(hook)
    def record(self, *args):
        result = hook(self, *args)
        self.__dict__.setdefault(_HOOKS, []).append((name, args))
        return result
    return record


def _sequence(state):
    cls, items = state
    return cls(items)


_VALUE_STATE = {
    zeplib.Date: lambda d: (_date, d.SerialNumber()),
    zeplib.Period: lambda p: (_period, (p.Length(), p.Units(), p.Text())),
    zeplib.DayCounter: lambda d: (_day_counter, (d.Convention(), d.GetCalendar())),
    zeplib.Calendar: lambda c: (_calendar, {centre: [d.SerialNumber() for d in c.Dates(centre)]
                                            for centre in c.Centres()}),
    zeplib.YieldCurve: _curve_state,
    zeplib.DoubleVector: lambda v: (_sequence, (zeplib.DoubleVector, tuple(v))),
    zeplib.StringVector: lambda v: (_sequence, (zeplib.StringVector, tuple(v))),
    zeplib.DoubleMatrix: lambda v: (_sequence, (zeplib.DoubleMatrix, tuple(tuple(row) for row in v))),
    zeplib.StringMap: lambda m: (_sequence, (zeplib.StringMap, dict(m))),
}


def _value_reduce(self):
    rebuild, payload = _VALUE_STATE[type(self)](self)
    return _saved(rebuild, payload)


# Objects saved by how they were built ------------------------------------------------------

def _rebuild(recipe):
    cls, factory, args, kwargs, steps = recipe
    obj = cls(*args, **kwargs) if factory is None else getattr(cls, factory)(*args, **kwargs)
    for setter, setter_args, setter_kwargs in steps:
        getattr(obj, setter)(*setter_args, **setter_kwargs)
    return obj


def _recipe_reduce(self):
    recipe = self.__dict__.get(_RECIPE)
    if recipe is None:
        raise TypeError(f"cannot pickle this {type(self).__module__}.{type(self).__name__}: it was "
                        "never built (its construction failed or it came from a library call)")
    return _saved(_rebuild, recipe)


def _recording_init(cls):
    build = cls.__init__

    @functools.wraps(build)
    def __init__(self, *args, **kwargs):
        build(self, *args, **kwargs)
        self.__dict__[_RECIPE] = (type(self), None, args, kwargs, [])  # a subclass rebuilds as itself
    return __init__


def _recording_factory(cls, name, as_definition=None):
    make = getattr(cls, name)

    @functools.wraps(make)
    def factory(*args, **kwargs):
        obj = make(*args, **kwargs)
        recipe = (name, args, kwargs) if as_definition is None else as_definition(*args, **kwargs)
        obj.__dict__[_RECIPE] = (cls, *recipe, [])
        return obj
    return staticmethod(factory)


def _recording_setter(name, setter):
    @functools.wraps(setter)
    def record(self, *args, **kwargs):
        result = setter(self, *args, **kwargs)
        recipe = self.__dict__.get(_RECIPE)
        if recipe is not None:
            recipe[-1].append((name, args, kwargs))
        return result
    return record


def _product_file_as_definition(path):
    # A worker need not see the file: the product travels as the definition text it held.
    with open(path, "rb") as definition:
        return "FromDefinition", (definition.read().decode("utf-8"),), {}


def _product_files_as_texts(definition_path, market_path):
    # The booked product travels as the two texts its files held.
    texts = []
    for path in (definition_path, market_path):
        with open(path, "rb") as text:
            texts.append(text.read().decode("utf-8"))
    return "FromText", tuple(texts), {}


_RECORDED = {
    # class: (factories, setters)
    zeplib.Interpolation: ((), ("autoSetBoundaryDerivatives", "SetBoundaryDerivatives", "SetShortRate",
                                "SetNodeSlopes")),
    zeplib.BSVanilla: (("FromForward",), ("SetBasicParameters", "SetSpot", "SetForward")),
    zeplib.MBSVanilla: (("FromForward",), ()),
    zeplib.HistVols: ((), ("setAll",)),
    zeplib.MVanillaOption: (("FromForward",), ("SetPremium", "Dispose")),
    zeplib.MScriptProduct: ((), ()),
    zeplib.FXVolConventions: ((), ()),
    zeplib.FXVolSurface: (("FromTenors", "FromPillars"), ()),
    zeplib.MFXVolSurface: (("FromTenors", "FromPillars"), ("Dispose",)),
    zeplib.FXVolSurface2: ((), ()),
    zeplib.FXLocalVolSurface: ((), ()),
    zeplib.ForwardCurve2: ((), ()),
    zeplib.VolSurface2: ((), ()),
    zeplib.MXScriptStructure: (("FromDefinition", "OnLocalVolatility"), ()),
    zeplib.MStructuredDerivativeProduct: (("FromText",), ()),
    zeplib.EuropeanBarrierBS: ((), ()),
    zeplib.EuropeanBarrierVV_Fisher: ((), ("SetTrace",)),
    zeplib.DigitalOptionBS: ((), ()),
    zeplib.DigitalOptionVV: ((), ("SetTrace",)),
    zeplib.DoubleDigitalOption: ((), ()),
    zeplib.FdmBarrierEngine: ((), ()),
    zeplib.FdmDoubleDigitalEngine: ((), ()),
    zeplib.FdmDoubleCumulativeEngine: ((), ()),
    zeplib.Schedule: ((), ()),
    zeplib.VanillaBarriers: ((), ()),
    zeplib.MVanillaBarriers: ((), ()),
    zeplib.MDigitalOption: ((), ()),
    zeplib.MDoubleDigitalOption: ((), ()),
    zeplib.NelsonSiegel: ((), ()),
    zeplib.Svensson: ((), ()),
    zeplib.Vasicek: ((), ()),
    zeplib.CoxIngersollRoss: ((), ()),
    zeplib.CreditCurve: ((), ()),
    zeplib.YieldCurve2: ((), ()),
    zeplib.QuotedForwardPoints: ((), ()),
    zeplib.SpreadRateModel: ((), ()),
    zeplib.OvernightRateCurve: ((), ()),
    zeplib.MYieldCurve2: ((), ()),
    zeplib.FixingStore: ((), ("Add",)),
    zeplib.MVanillaSwap: ((), ()),
    zeplib.MXCurrencySwap: ((), ()),
    zeplib.MBasisSwap: ((), ()),
    zeplib.MFloatingRateNote: ((), ()),
    zeplib.MBill: ((), ()),
    zeplib.MFRA: ((), ()),
    zeplib.MBond: ((), ()),
    zeplib.MBondFuture: ((), ()),
    zeplib.MFXForwardOutright: ((), ()),
    zeplib.MFXSwap: ((), ()),
    zeplib.MFXNDF: ((), ()),
    zeplib.MCapFloor: ((), ()),
    zeplib.MSwaption: ((), ()),
    zeplib.MCreditDefaultSwap: ((), ()),
    zeplib.ZeroInflationCurve: ((), ()),
    zeplib.MZeroCouponInflationSwap: ((), ()),
    zeplib.MYearOnYearInflationSwap: ((), ()),
    zeplib.MInflationLinkedBond: ((), ()),
    zeplib.MHullWhite: (("Calibrate",), ()),
    zeplib.MBermudanSwaption: ((), ()),
    zeplib.MCallableBond: ((), ()),
    zeplib.SwaptionSmile: (("FromParameters",), ()),
    zeplib.SwaptionCube: ((), ()),
    zeplib.MCapletVolatilityStrip: ((), ()),
    zeplib.HestonModel: ((), ()),
    zeplib.AmericanOption: ((), ()),
    zeplib.DupireForwardPde: ((), ()),
    zeplib.AsianOption: ((), ()),
    # The risk layer: adapters from the instruments they wrap, a portfolio from its trades.
    zeplib.BondAdapter: ((), ()),
    zeplib.SwapAdapter: ((), ()),
    zeplib.FXForwardAdapter: ((), ()),
    zeplib.VanillaOptionAdapter: ((), ()),
    zeplib.FRAAdapter: ((), ()),
    zeplib.FloatingRateNoteAdapter: ((), ()),
    zeplib.BillAdapter: ((), ()),
    zeplib.FXSwapAdapter: ((), ()),
    zeplib.NDFAdapter: ((), ()),
    zeplib.CrossCurrencySwapAdapter: ((), ()),
    zeplib.CreditDefaultSwapAdapter: ((), ()),
    zeplib.BarrierOptionAdapter: ((), ()),
    zeplib.DigitalOptionAdapter: ((), ()),
    zeplib.ScriptedProductAdapter: ((), ()),
    zeplib.Portfolio: ((), ("Add",)),
}


def install():
    """Gives every class above its __reduce__ (pickle, copy and deepcopy all go through it)."""
    for cls in _VALUE_STATE:
        cls.__reduce__ = _value_reduce
    for cls, (factories, setters) in _RECORDED.items():
        cls.__init__ = _recording_init(cls)
        for name in factories:
            setattr(cls, name, _recording_factory(cls, name))
        for name in setters:
            setattr(cls, name, _recording_setter(name, getattr(cls, name)))
        cls.__reduce__ = _recipe_reduce
    for name in ("SetParametricModel", "SetImpliedCurve"):
        setattr(zeplib.YieldCurve, name, _recording_hook(name, getattr(zeplib.YieldCurve, name)))
    zeplib.MXScriptStructure.FromFile = _recording_factory(zeplib.MXScriptStructure, "FromFile",
                                                           _product_file_as_definition)
    zeplib.MStructuredDerivativeProduct.FromFiles = _recording_factory(
        zeplib.MStructuredDerivativeProduct, "FromFiles", _product_files_as_texts)
