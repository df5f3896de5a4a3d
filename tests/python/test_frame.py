"""How library failures reach Python: the module frame's translation paths."""
import pytest

import zep


def test_bare_text_failure_is_runtime_error_with_the_text():
    with pytest.raises(RuntimeError) as info:
        zep.Date("2024-02-30")
    assert str(info.value) == "Day outside of month range"


def test_library_error_carries_function_file_and_line():
    with pytest.raises(RuntimeError) as info:
        zep.Date(5)
    text = str(info.value)
    assert text.startswith(" Date (5) outside of range. (zep::Date::Date: Date.cpp, l.")
    assert text.endswith(")")


@pytest.mark.parametrize(
    "kind, python_type",
    [
        ("text", RuntimeError),
        ("invalid_argument", ValueError),
        ("out_of_range", IndexError),
        ("runtime_error", RuntimeError),
        ("exception", RuntimeError),
        ("error", RuntimeError),
        ("unknown", RuntimeError),
    ],
)
def test_each_failure_form_maps_to_its_python_exception(kind, python_type):
    with pytest.raises(python_type) as info:
        zep.RaiseLibraryFailure(kind, "library says no")
    assert type(info.value) is python_type
    if kind in ("text", "invalid_argument", "out_of_range", "runtime_error"):
        assert str(info.value) == "library says no"
    if kind == "error":
        assert str(info.value).startswith("library says no (zep::python::RaiseLibraryFailure: ")
    if kind == "unknown":
        assert "Unknown" in str(info.value)


def test_m_wrapper_prefixes_the_operation():
    with pytest.raises(RuntimeError) as info:
        zep.MFrameProbe("out_of_range", "too far").Fail()
    assert str(info.value) == "MFrameProbe::Fail failed: too far"


def test_m_wrapper_without_library_object_is_not_initialized():
    with pytest.raises(RuntimeError) as info:
        zep.MFrameProbe().Fail()
    assert str(info.value).startswith(
        "MFrameProbe::Fail failed: not initialized! (zep::python::MFrameProbe::Fail: ")


def test_wrong_argument_type_names_function_argument_and_type():
    with pytest.raises(TypeError) as info:
        zep.Date("2024-01-01").TenorString(3.5)
    assert str(info.value) == "in method 'Date_TenorString', argument 2 of type 'zep::Date const &'"


def test_none_for_a_reference_is_an_invalid_null_reference():
    with pytest.raises(TypeError) as info:
        zep.Date("2024-01-01").TenorString(None)
    assert str(info.value) == (
        "invalid null reference in method 'Date_TenorString', argument 2 of type 'zep::Date const &'")


def test_overload_mismatch_lists_every_signature():
    with pytest.raises(TypeError) as info:
        zep.Date(1, 2)
    lines = str(info.value).splitlines()
    assert lines[0] == "Wrong number or type of arguments for overloaded function 'new_Date'."
    assert "    zep::Date::Date(std::int32_t,std::int32_t,std::int32_t)" in lines


def test_module_constants_are_numbered_in_group_order():
    assert (zep.ProductType_CASH_RATES, zep.ProductType_OIS, zep.ProductType_NON_STANDARD) == (0, 4, 56)
    assert (zep.Metric_PV, zep.Metric_MARKET_VALUE, zep.Metric_NPV) == (0, 1, 2)
    assert zep.UnitCode_COUNT == 10 and zep.MetricAggregationType_LAST == 10
    assert zep.BondAdapter_PricingMode_MODEL == 2
    assert zep.Scenario_ScenarioType_CUSTOM == 3
    assert zep.ScenarioGroupApplyMode_PARALLEL == 1


def test_cvar_exposes_the_library_version():
    assert zep.cvar.LibraryVersion.count(".") == 2


@pytest.mark.parametrize("call, where", [
    (lambda: zep.Date.DayOfMonth(None), "Date_DayOfMonth"),
    (lambda: zep.YieldCurve.Rate(None, 1.0), "YieldCurve_Rate"),
    (lambda: zep.MVanillaOption.PV(None), "MVanillaOption_PV"),
    (lambda: zep.Calendar.IsBusinessDay(None, "2024-01-02", "LON"), "Calendar_IsBusinessDay"),
])
def test_method_called_on_none_is_a_null_reference_type_error(call, where):
    with pytest.raises(TypeError, match=f"^invalid null reference in method '{where}', argument 1 of type "):
        call()


def test_keyword_arguments_reach_the_library_under_the_documented_names():
    engine = zep.BSVanilla(optionType=0, strike=100.0, volatility=0.2, timeToExpiry=1.0, timeToDelivery=1.0,
                           domesticRate=0.03, foreignRate=0.01, spot=100.0)
    assert engine.Price() == zep.BSVanilla(0, 100.0, 0.2, 1.0, 1.0, 0.03, 0.01, 100.0).Price()
    curve = zep.YieldCurve.FromZeroRates(referenceDate="2024-01-02", dates=["2025-01-02"], zeroRates=[0.03],
                                         compounding=zep.Continuous)
    positional = zep.YieldCurve.FromZeroRates("2024-01-02", ["2025-01-02"], [0.03], zep.Continuous)
    assert curve.DiscountFactor("2025-01-02") == positional.DiscountFactor("2025-01-02")
    calendar = zep.Calendar()
    assert calendar.BusinessDaysBetween(start="2024-01-02", end="2024-01-09", centres="") == 5


@pytest.mark.parametrize("call", [
    lambda: zep.Period("1M").Months(unit=1),
    lambda: zep.BSVanilla(0, 100.0, 0.2, 1.0, 1.0, 0.03, 0.01, spot=100.0, forward=101.0),
    lambda: zep.YieldCurve.FromZeroRates("2024-01-02", ["2025-01-02"], [0.03], zep.Continuous, basis=1),
])
def test_unknown_keyword_is_a_type_error_naming_it(call):
    with pytest.raises(TypeError, match=r"\b(unit|forward|basis)\b"):
        call()


def test_overloaded_calls_list_every_positional_form_in_their_docstring():
    lines = [line.strip() for line in zep.MVanillaOption.__init__.__doc__.splitlines() if line.strip()]
    assert [line.split("(")[0] for line in lines[:3]] == ["__init__"] * 3
    assert "double accRate" in lines[1] and "accCurve" in lines[2]
