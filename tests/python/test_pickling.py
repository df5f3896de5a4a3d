"""Every object a user builds pickles, deep-copies and travels to a worker process, and comes back
pricing exactly as it did; pickles of another version and damaged pickles fail cleanly."""
import concurrent.futures
import copy
import multiprocessing
import operator
import pathlib
import pickle

import pytest

import zep

CURVE = ("2024-01-02", ["2025-01-02", "2026-01-02"], [0.97, 0.94])
DATES = ["2024-01-02", "2024-01-03", "2024-01-04", "2024-01-05", "2024-01-08", "2024-01-09"]


def tweaked_engine():
    engine = zep.BSVanilla(0, 100.0, 0.2, 1.0, 1.0, 0.03, 0.01, 100.0)
    engine.SetSpot(104.0)  # state set after construction must travel too
    return engine


def premium_option():
    option = zep.MVanillaOption(1, 0, 1e6, 1.1, 1.08, "2024-01-15", "2024-07-15", "2024-07-17", "2024-07-17",
                                zep.YieldCurve(*CURVE), zep.YieldCurve(*CURVE), 0.09)
    option.SetPremium(12345.0)
    return option


# (what to build, what it must still answer: a method name and its arguments)
CASES = {
    "date": (lambda: zep.Date("2024-02-29"), "SerialNumber", ()),
    "null date": (zep.Date, "SerialNumber", ()),
    "period": (lambda: zep.Period("O/N"), "Text", ()),
    "period by unit": (lambda: zep.Period(18, zep.Months), "Months", ()),
    "day counter": (lambda: zep.DayCounter("act/360"), "YearFraction", ("2024-01-02", "2024-07-02")),
    "calendar": (zep.Calendar, "Adjust", ("2025-12-25", "following", "LON")),
    "interpolation": (lambda: zep.Interpolation([1.0, 2.0, 3.0], [1.0, 4.0, 9.0], zep.CubicInterpolation,
                                                zep.FlatExtrapolation), "Evaluate", (2.5,)),
    "curve": (lambda: zep.YieldCurve(*CURVE), "DiscountFactor", ("2025-07-02",)),
    "engine": (tweaked_engine, "Price", ()),
    "engine from forward": (lambda: zep.BSVanilla.FromForward(1, 100.0, 0.2, 1.0, 1.0, 0.03, 0.01, 102.0), "Price", ()),
    "guarded engine": (lambda: zep.MBSVanilla(0, 1.12, 0.11, 0.5, 0.505, 0.045, 0.03, 1.10), "Vega", ()),
    "option on curves": (premium_option, "PnL", ()),
    "historical volatility": (lambda: zep.HistVols(DATES, [1.0, 1.01, 0.99, 1.02, 1.0, 1.03]), "setAll", (3,)),
    "script": (lambda: zep.ScriptProduct(["2024-01-02", "2024-06-02"], ["X = SPOT()", "P = MAX(X - 1, 0)"]),
               "Evaluate", ([(1.2, 1.0), (1.5, 1.0)],)),
    "scripted product": (lambda: zep.MXScriptStructure("2024-01-02", 100.0, 0.2, 0.03, 0.0, 1, [], ["2025-01-02"],
                                                       ["C PAYS MAX(SPOT() - 100, 0)"], 512), "Price", ()),
    "barrier": (lambda: zep.EuropeanBarrierBS(0, 7, 1.1, 1.0, 1.2, 0.09, 0.5, 0.505, 0.035, 0.02, 1.08), "Price", ()),
    "vanna-volga barrier": (lambda: zep.EuropeanBarrierVV_Fisher(1.08, 0.035, 0.02, 0.09, 0.5, 0.505, -0.01, 0.003,
                                                                 1.1, 0, 4, 1.16, 0, False), "Price", ()),
    "digital": (lambda: zep.DigitalOptionBS(2, 1.1, 0.09, 0.5, 0.505, 0.035, 0.02, 1.08, 1e6, 1), "Vega", ()),
    "range digital": (lambda: zep.DoubleDigitalOption("2024-01-15", "2024-07-15", "2024-07-17", 1.0, 1.15, 1e6,
                                                      1.08, 0.09, 0.035, 0.02), "Price", ()),
    "finite differences": (lambda: zep.FdmBarrierEngine(0, 3, 1.1, 1.02, 0.09, 0.5, 0.505, 0.035, 0.02, 1.08, 50, 50),
                           "Greek", ("delta",)),
    "heston": (lambda: zep.HestonModel(0.04, 1.5, 0.05, 0.6, -0.7), "Price", (0, 100.0, 1.0, 1.0, 0.03, 0.01, 100.0)),
    "american": (lambda: zep.AmericanOption(1, 100.0, 0.2, 1.0, 0.05, 0.0, 100.0), "Price", ("baw",)),
    "asian": (lambda: zep.AsianOption(0, 100.0, 0.2, [0.5, 1.0], 0.05, 0.0, 100.0, [99.0]), "Price", ("tw",)),
    "schedule": (lambda: zep.Schedule("2024-01-10", "2025-03-15", "3M", "TARGET", stub=1), "PaymentDates", ()),
    "parametric curve": (lambda: zep.ParametricYieldCurve("2024-01-15", zep.Svensson(0.03, -0.01, 0.02, 0.01, 1.5, 8.0)),
                         "DiscountFactor", ("2034-01-15",)),
    "bootstrapped curve": (lambda: zep.BootstrapYieldCurve("2024-01-15", [("DEPOSIT", "6M", 0.035), ("SWAP", "5Y", 0.03)]),
                           "DiscountFactor", ("2027-01-15",)),
}


def answer(obj, method, args):
    return getattr(obj, method)(*args)


@pytest.mark.parametrize("case", CASES)
@pytest.mark.parametrize("duplicate", [lambda o: pickle.loads(pickle.dumps(o)), copy.deepcopy, copy.copy],
                         ids=["pickle", "deepcopy", "copy"])
def test_duplicate_answers_exactly_as_the_original(case, duplicate):
    build, method, args = CASES[case]
    original = build()
    twin = duplicate(original)
    assert type(twin) is type(original) and twin is not original
    assert answer(twin, method, args) == answer(original, method, args)


def test_every_kind_travels_to_a_worker_process_and_back():
    objects = {case: build() for case, (build, _, _) in CASES.items()}
    context = multiprocessing.get_context("spawn")  # a fresh interpreter, as on a cluster node
    with concurrent.futures.ProcessPoolExecutor(max_workers=1, mp_context=context) as pool:
        remote = {case: pool.submit(operator.methodcaller(CASES[case][1], *CASES[case][2]), obj)
                  for case, obj in objects.items()}
        for case, future in remote.items():
            _, method, args = CASES[case]
            assert future.result(timeout=120) == answer(objects[case], method, args), case


def test_scripted_product_read_from_a_file_travels_as_its_definition(tmp_path):
    source = tmp_path / "autocallable.yaml"
    source.write_text((pathlib.Path(__file__).parents[2] / "examples" / "autocallable.yaml").read_text())
    product = zep.MXScriptStructure.FromFile(str(source))
    saved = pickle.dumps(product)
    source.unlink()  # a worker need not see the file
    assert pickle.loads(saved).Description() == product.Description()


def test_pickle_of_another_version_is_refused_by_name():
    saved = pickle.dumps(zep.Date("2024-01-02")).replace(zep.__version__.encode(), b"0.0.0"[:len(zep.__version__)])
    with pytest.raises(pickle.UnpicklingError, match="pickled by zep 0.0.0"):
        pickle.loads(saved)


def test_damaged_pickle_raises_the_library_message():
    serial = pickle.dumps(367, protocol=2)[2:-1]
    saved = pickle.dumps(zep.Date(367), protocol=2).replace(serial, pickle.dumps(5, protocol=2)[2:-1])
    with pytest.raises(RuntimeError, match=r"^ Date \(5\) outside of range\."):
        pickle.loads(saved)


def test_object_whose_construction_failed_does_not_pickle():
    class Failing(zep.MVanillaOption):
        def __init__(self):
            raise ValueError("no")

    with pytest.raises(TypeError, match="never built"):
        pickle.dumps(Failing.__new__(Failing))
