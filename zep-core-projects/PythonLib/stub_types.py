"""The Python type a stub gives each C++ type of zep's SWIG signatures, as an argument and as a
result. Arguments are typed by what the interface's typemaps accept (a date may be a text or a
datetime.date), results by what they hand back."""
import re

# Names the stub's header defines, so that the table and the signatures stay short.
DATE_LIKE = "_DateLike"
DATE_LIST = "_DateList"
DAY_COUNTER_LIKE = "_DayCounterLike"
FLOATS = "_Floats"

_INTEGER = ("int", "int")
_FLOAT = ("float", "float")
_TEXT = ("str", "str")
_DATE = (DATE_LIKE, "Date")
_DATES = (DATE_LIST, "Sequence[Date]")
# Library enumerations cross the boundary as their integer codes (zep.Act360, zep.Following, ...).
_ENUMERATION = _INTEGER
# A C++ iterator is an opaque SWIG object to Python, handed back to the container it came from.
_OPAQUE = ("Any", "Any")
# No Python object converts to a C++ comparator or a raw pointer: such overloads are not callable.
_UNREACHABLE = ("Never", "Any")

# Keys are C++ types as normalised below: no const, no reference, no namespace zep, no default
# template arguments. Values are (argument type, result type).
CPP_TO_PYTHON = {
    "void": ("None", "None"),
    "bool": ("bool", "bool"),
    "double": _FLOAT,
    "int": _INTEGER,
    "long": _INTEGER,
    "longlong": _INTEGER,
    "unsignedlonglong": _INTEGER,
    "std::int32_t": _INTEGER,
    "std::uint32_t": _INTEGER,
    "std::size_t": _INTEGER,
    "size_t": _INTEGER,
    "ptrdiff_t": _INTEGER,
    "size_type": _INTEGER,
    "difference_type": _INTEGER,
    "std::string": _TEXT,
    "std::string_view": _TEXT,
    "str": _TEXT,  # the interface's docstrings already name some types the Python way
    "Date": _DATE,
    "DateInput": _DATE,
    "VolatilityInput": ("float | FXVolSurface | MFXVolSurface | VolSurface2 | None", "float"),
    "DayCounter": (DAY_COUNTER_LIKE, "DayCounter"),
    "Frequency": _ENUMERATION,
    "TimeUnit": _ENUMERATION,
    "DateAdjusterRule": _ENUMERATION,
    "DeltaKind": _ENUMERATION,
    "InterpolationMethod": _ENUMERATION,
    "ExtrapolationMethod": _ENUMERATION,
    "InterpolatedVariable": _ENUMERATION,
    "SmileInterpolation": _ENUMERATION,
    "DoubleVector": (FLOATS, "Sequence[float]"),
    "std::vector<double>": (FLOATS, "Sequence[float]"),
    "DoubleMatrix": (f"Sequence[{FLOATS}]", "Sequence[Sequence[float]]"),
    "StringVector": ("Sequence[str]", "Sequence[str]"),
    "std::vector<Date>": _DATES,
    "std::vector<DateInput>": _DATES,
    "DateVector": _DATES,
    "std::vector<Period>": ("Sequence[Period | str]", "Sequence[Period]"),
    "IntVector": ("Sequence[int]", "Sequence[int]"),
    "std::vector<int>": ("Sequence[int]", "Sequence[int]"),
    "IntMatrix": ("Sequence[Sequence[int]]", "Sequence[Sequence[int]]"),
    "std::vector<std::vector<int>>": ("Sequence[Sequence[int]]", "Sequence[Sequence[int]]"),
    # Data members of a struct (FXVolConventions) travel as pointers to their vectors.
    "std::vector<Date>*": _DATES,
    "std::vector<Period>*": ("Sequence[Period | str]", "Sequence[Period]"),
    "std::vector<int>*": ("Sequence[int]", "Sequence[int]"),
    "std::vector<double>*": (FLOATS, "Sequence[float]"),
    "std::vector<ScenarioPoint>": ("Sequence[tuple[float, float]]", "Sequence[tuple[float, float]]"),
    "std::vector<std::pair<std::string,double>>": ("dict[str, float]", "dict[str, float]"),
    "std::pair<Date,Date>": (f"tuple[{DATE_LIKE}, {DATE_LIKE}]", "tuple[Date, Date]"),
    "std::map<std::string,double>": ("dict[str, float]", "dict[str, float]"),
    "InterpolationMethodMap": ("dict[float, int]", "dict[float, int]"),
    # NumPy arrays read or filled in place through their float64 buffer.
    "std::span<double>": ("numpy.typing.NDArray[numpy.float64]", "numpy.typing.NDArray[numpy.float64]"),
    "std::optional<double>": ("float | None", "float | None"),
    "std::vector<ArbitrageViolation>": ("Never", "list[tuple[Date, float, str, float]]"),
    # The risk layer: metric and product codes are integers (zep.Metric_DV01), results its classes.
    "metrics::Metric": _ENUMERATION,
    "metrics::ProductType": _ENUMERATION,
    "metrics::UnitCode": _ENUMERATION,
    "metrics::MetricAggregationType": _ENUMERATION,
    "metrics::MetricProvenance": _ENUMERATION,
    "metrics::MetricResult": ("MetricResult", "MetricResult"),
    "metrics::MetricResultVector": ("MetricResultVector", "MetricResultVector"),
    "std::vector<metrics::MetricResult>": ("MetricResultVector", "MetricResultVector"),
    "std::map<std::string,metrics::MetricResult>": ("dict[str, MetricResult]", "dict[str, MetricResult]"),
    "metrics::InstrumentAdapter": ("InstrumentAdapter", "InstrumentAdapter"),
    # Scenarios: factor, shock and scenario codes are integers (zep.YieldCurveFactor_LEVEL).
    "scenario::YieldCurveFactor": _ENUMERATION,
    "scenario::FXForwardFactor": _ENUMERATION,
    "scenario::VolSurfaceFactor": _ENUMERATION,
    "scenario::FactorFamily": _ENUMERATION,
    "scenario::CreditCurveFactor": _ENUMERATION,
    "scenario::ShockType": _ENUMERATION,
    "scenario::ScenarioType": _ENUMERATION,
    "scenario::ScenarioGroupApplyMode": _ENUMERATION,
    "std::vector<scenario::Shock>": ("Sequence[Shock]", "ShockVector"),
    "ShockVector": ("Sequence[Shock]", "ShockVector"),
    "scenario::HistoricalVaRReport": ("Never", "dict[str, Any]"),
    "std::vector<scenario::Scenario>": ("Sequence[Scenario]", "list[Scenario]"),
    "std::vector<scenario::PnLExplain>": ("Never", "dict[str, list[Any]]"),
    "std::map<std::string,std::string>": ("dict[str, str]", "StringMap"),
    "StringMap": ("dict[str, str]", "StringMap"),
    "SWIGPY_SLICEOBJECT*": ("slice", "slice"),
    "PyObject*": ("Any", "Any"),
    "double*": _UNREACHABLE,
    "std::less<std::string>": _UNREACHABLE,
    "iterator": _OPAQUE,
    "reverse_iterator": _OPAQUE,
}

_DEFAULT_TEMPLATE_ARGUMENT = re.compile(r",std::(allocator|less)<")
_CONTAINER_MEMBER = re.compile(r"^std::(vector|map)<(.*)>::(\w+)$")


def _without_default_template_arguments(text):
    while match := _DEFAULT_TEMPLATE_ARGUMENT.search(text):
        depth, end = 1, match.end()
        while depth:
            depth += {"<": 1, ">": -1}.get(text[end], 0)
            end += 1
        text = text[:match.start()] + text[end:]
    return text


def _container_member(text):
    # std::vector<double>::value_type is double, std::map<K,V>::mapped_type is V.
    match = _CONTAINER_MEMBER.match(text)
    if not match:
        return text
    kind, parameters, member = match.groups()
    if member in ("value_type", "key_type", "mapped_type"):
        key, _, mapped = parameters.partition(",")
        return mapped if kind == "map" and member == "mapped_type" else key
    return member


def normalise(cpp_type):
    text = re.sub(r"\bconst\b|&", "", cpp_type)
    text = re.sub(r"\s+", "", text)
    text = re.sub(r"\b(zep::python::|zep::|swig::)", "", text)
    text = re.sub(r"^boost::shared_ptr<(.*)>$", r"\1", text)
    return _container_member(_without_default_template_arguments(text))


def python_type(cpp_type, classes, as_result, unmapped):
    """The stub's type for cpp_type; Any, noted in unmapped, when the table does not know it.
    A class the module exports stands for itself."""
    key = normalise(cpp_type)
    if key in CPP_TO_PYTHON:
        return CPP_TO_PYTHON[key][as_result]
    if key in classes:
        return key
    unmapped.add(cpp_type)
    return "Any"
