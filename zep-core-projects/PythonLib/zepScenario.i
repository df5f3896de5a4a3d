// Market scenarios and historical value at risk: shocks by the factor codes (YieldCurveFactor_*,
// FXForwardFactor_*, VolSurfaceFactor_*) naming the curve or underlying they move, scenarios as
// shock lists revalued in full, and the historical VaR of a portfolio from a history of factor
// levels.
%{
#include "lum-risk-metrics/HistoricalVaR.hpp"
#include "lum-risk-metrics/PnLExplain.hpp"
#include "lum-risk-metrics/ScenarioRevaluation.hpp"
#include "lum-risk-metrics/ShockedMarket.hpp"

namespace zep::python {
inline std::vector<scenario::Scenario> HistoricalScenarios(const std::vector<scenario::Shock>& factors,
                                                           const std::vector<std::vector<double>>& levels) {
    return scenario::HistoricalScenarios({factors, levels});
}
// The history as the proxy hands it over: the factors and one row of levels per day.
inline scenario::HistoricalVaRReport HistoricalVaR(const metrics::Portfolio& portfolio,
                                                   const std::vector<scenario::Shock>& factors,
                                                   const std::vector<std::vector<double>>& levels,
                                                   const std::vector<double>& confidences, const std::string& tag) {
    return scenario::HistoricalVaR(portfolio, {factors, levels}, confidences, tag);
}
// The P&L matrix crosses to and from Python flat, scenario-major (one row of trades per scenario).
inline std::vector<double> RevaluePnL(const metrics::Portfolio& portfolio,
                                      const std::vector<scenario::Scenario>& scenarios) {
    return scenario::Revalue(portfolio, scenarios).values;
}
inline scenario::HistoricalVaRReport VaRReport(const metrics::Portfolio& portfolio,
                                               const std::vector<std::string>& scenarioNames,
                                               const std::vector<double>& pnl, const std::vector<double>& confidences,
                                               const std::string& tag) {
    return scenario::VaRReport(portfolio, scenarioNames, {portfolio.Size(), scenarioNames.size(), pnl}, confidences,
                               tag);
}
}  // namespace zep::python
%}

%feature("docstring") zep::scenario::Shock
"One market move: Shock.Curve(curve, YieldCurveFactor_*, basisPoints, pillar=0) on the curve of
that label, moving its pillars' zero rates: LEVEL all alike, KEY_RATE the pillar's, SLOPE from 0 at
the first pillar to basisPoints at the last (linear in time), TWIST_SHORT_LONG about the pivot
pillar (0 there, basisPoints at the last, the short end the other way), CURVATURE the belly pillar
by basisPoints down to 0 at both ends; Shock.Spot(underlying, FXForwardFactor_SPOT_SHOCK, size, type) and
Shock.Vol(underlying, VolSurfaceFactor_ATM_VOL_LEVEL, size, type) on the spot and volatility an
adapter names by underlying (VolSurfaceFactor_RISK_REVERSAL_25D and _BUTTERFLY_25D, absolute only,
move the smile quotes Vanna-Volga barriers are priced on); Shock.Credit(issuer,
CreditCurveFactor_CDS_SPREAD_LEVEL, basisPoints) on every par spread of the credit curve a CDS
adapter names by issuer, type ShockType_ABSOLUTE (in the quantity's units, 0.01 = one vol
point) or ShockType_RELATIVE (0.01 = 1%). Read-only fields: target, family (FactorFamily_*),
factor, size, type, pillar.";
%feature("docstring") zep::scenario::Scenario
"A named shock list: Scenario(name, shocks, type=Scenario_ScenarioType_DETERMINISTIC,
mode=ScenarioGroupApplyMode_PARALLEL). PARALLEL adds the moves of all shocks on the base market;
SEQUENTIAL applies each on the market the previous ones left (relative shocks compound).
PV(adapter) revalues one trade under it; PnL(portfolio) the portfolio's P&L (quantities times
PV changes), trades it does not touch unpriced.";
// The shock list is instantiated before Scenario, whose constructor takes it.
namespace zep {
namespace scenario {
struct Shock;
}
}
%template(ShockVector) std::vector<zep::scenario::Shock>;
// A shock is made by the factory of its factor family, which checks the factor and the size.
%nodefaultctor zep::scenario::Shock;
%immutable;
%include "lum-risk-metrics/Scenario.hpp"
%mutable;

namespace zep {
namespace scenario {
%extend Scenario {
    double PV(const zep::metrics::InstrumentAdapter& adapter) const {
        zep::scenario::ShockedMarket market(*$self);
        return adapter.PVUnder(market);
    }
    double PnL(const zep::metrics::Portfolio& portfolio) const {
        return zep::scenario::Revalue(portfolio, {*$self}).Total().front();
    }
}
}  // namespace scenario
}  // namespace zep

// The report reaches Python as a dict of lists (the proxy below makes them arrays).
%typemap(out) zep::scenario::HistoricalVaRReport {
    const zep::scenario::HistoricalVaRReport& report = $1;
    const auto doubles = [](const auto& figures, auto field) {
        PyObject* list = PyList_New(static_cast<Py_ssize_t>(figures.size()));
        for (std::size_t i = 0; i < figures.size(); ++i)
            PyList_SET_ITEM(list, static_cast<Py_ssize_t>(i), PyFloat_FromDouble(field(figures[i])));
        return list;
    };
    const auto put = [](PyObject* dict, const char* key, PyObject* value) {
        PyDict_SetItemString(dict, key, value);
        Py_DECREF(value);
    };
    using Figures = zep::scenario::VaRFigures;
    $result = PyDict_New();
    PyObject* names = PyList_New(static_cast<Py_ssize_t>(report.scenarioNames.size()));
    for (std::size_t i = 0; i < report.scenarioNames.size(); ++i)
        PyList_SET_ITEM(names, static_cast<Py_ssize_t>(i), PyUnicode_FromString(report.scenarioNames[i].c_str()));
    put($result, "scenario", names);
    put($result, "pnl", doubles(report.pnl, [](double value) { return value; }));
    put($result, "confidence", doubles(report.figures, [](const Figures& f) { return f.confidence; }));
    put($result, "var", doubles(report.figures, [](const Figures& f) { return f.valueAtRisk; }));
    put($result, "es", doubles(report.figures, [](const Figures& f) { return f.expectedShortfall; }));
    PyObject* ranks = PyList_New(static_cast<Py_ssize_t>(report.figures.size()));
    for (std::size_t i = 0; i < report.figures.size(); ++i)
        PyList_SET_ITEM(ranks, static_cast<Py_ssize_t>(i), PyLong_FromSize_t(report.figures[i].scenario));
    put($result, "var_scenario", ranks);
    PyObject* components = PyDict_New();
    if (!report.figures.empty())
        for (const auto& [group, share] : report.figures.front().components) {
            (void)share;
            put(components, group.c_str(), doubles(report.figures, [&](const Figures& f) { return f.components.at(group); }));
        }
    put($result, "components", components);
}

// Scenario lists reach Python as lists of owned Scenario objects.
%typemap(out) std::vector<zep::scenario::Scenario> {
    const std::vector<zep::scenario::Scenario>& scenarios = $1;
    $result = PyList_New(static_cast<Py_ssize_t>(scenarios.size()));
    for (std::size_t i = 0; i < scenarios.size(); ++i)
        PyList_SET_ITEM($result, static_cast<Py_ssize_t>(i),
                        SWIG_NewPointerObj(new zep::scenario::Scenario(scenarios[i]),
                                           $descriptor(zep::scenario::Scenario*), SWIG_POINTER_OWN));
}
%rename(_HistoricalVaR) zep::python::HistoricalVaR;
%feature("docstring") zep::python::HistoricalScenarios
"HistoricalScenarios(factors, history): the scenarios HistoricalVaR revalues, one per day after the
first ('day <t>'), each shocking every factor by its move from the day before (history as for
HistoricalVaR: a list of rows, one level per factor).";
namespace zep {
namespace python {
std::vector<zep::scenario::Scenario> HistoricalScenarios(const std::vector<zep::scenario::Shock>& factors,
                                                         const std::vector<std::vector<double>>& levels);
zep::scenario::HistoricalVaRReport HistoricalVaR(const zep::metrics::Portfolio& portfolio,
                                                 const std::vector<zep::scenario::Shock>& factors,
                                                 const std::vector<std::vector<double>>& levels,
                                                 const std::vector<double>& confidences, const std::string& tag);
}
}

// The explain reaches Python as a dict of columns (the proxy below makes them arrays or a frame).
%typemap(out) std::vector<zep::scenario::PnLExplain> {
    const std::vector<zep::scenario::PnLExplain>& rows = $1;
    const auto column = [&](auto field) {
        PyObject* list = PyList_New(static_cast<Py_ssize_t>(rows.size()));
        for (std::size_t i = 0; i < rows.size(); ++i)
            PyList_SET_ITEM(list, static_cast<Py_ssize_t>(i), field(rows[i]));
        return list;
    };
    const auto put = [&](const char* key, PyObject* value) {
        PyDict_SetItemString($result, key, value);
        Py_DECREF(value);
    };
    using Row = zep::scenario::PnLExplain;
    $result = PyDict_New();
    put("scenario", column([](const Row& row) { return PyUnicode_FromString(row.scenario.c_str()); }));
    put("full", column([](const Row& row) { return PyFloat_FromDouble(row.full); }));
    put("delta", column([](const Row& row) { return PyFloat_FromDouble(row.delta); }));
    put("gamma", column([](const Row& row) { return PyFloat_FromDouble(row.gamma); }));
    put("vega", column([](const Row& row) { return PyFloat_FromDouble(row.vega); }));
    put("rates", column([](const Row& row) { return PyFloat_FromDouble(row.rates); }));
    put("credit", column([](const Row& row) { return PyFloat_FromDouble(row.credit); }));
    put("unexplained", column([](const Row& row) { return PyFloat_FromDouble(row.unexplained); }));
}
// Scenarios come as any Python sequence of Scenario objects, copied (they are shock lists).
%typemap(in) const std::vector<zep::scenario::Scenario>& (std::vector<zep::scenario::Scenario> scenarios) {
    PyObject* sequence = PySequence_Fast($input, "The scenarios must be a sequence of Scenario.");
    if (!sequence) SWIG_fail;
    const Py_ssize_t count = PySequence_Fast_GET_SIZE(sequence);
    for (Py_ssize_t i = 0; i < count; ++i) {
        void* pointer = nullptr;
        if (!SWIG_IsOK(SWIG_ConvertPtr(PySequence_Fast_GET_ITEM(sequence, i), &pointer,
                                       $descriptor(zep::scenario::Scenario*), 0)) || !pointer) {
            Py_DECREF(sequence);
            SWIG_exception_fail(SWIG_TypeError, "The scenarios must be a sequence of Scenario.");
        }
        scenarios.push_back(*static_cast<zep::scenario::Scenario*>(pointer));
    }
    Py_DECREF(sequence);
    $1 = &scenarios;
}
// The pieces a distributed run is made of: the inputs checked up front, the P&L matrix of a chunk
// of scenarios, and the report from the assembled matrix.
%rename(_RevaluePnL) zep::python::RevaluePnL;
%rename(_VaRReport) zep::python::VaRReport;
%rename(_CheckVaRInputs) zep::scenario::CheckVaRInputs;
namespace zep {
namespace python {
std::vector<double> RevaluePnL(const zep::metrics::Portfolio& portfolio,
                               const std::vector<zep::scenario::Scenario>& scenarios);
zep::scenario::HistoricalVaRReport VaRReport(const zep::metrics::Portfolio& portfolio,
                                             const std::vector<std::string>& scenarioNames,
                                             const std::vector<double>& pnl, const std::vector<double>& confidences,
                                             const std::string& tag);
}
namespace scenario {
void CheckVaRInputs(const zep::metrics::Portfolio& portfolio, const std::vector<double>& confidences,
                    std::size_t scenarioCount);
}
}
%rename(_ExplainPnL) zep::scenario::ExplainPnL;
namespace zep {
namespace scenario {
std::vector<zep::scenario::PnLExplain> ExplainPnL(const zep::metrics::Portfolio& portfolio,
                                                  const std::vector<zep::scenario::Scenario>& scenarios);
}
}

%pythoncode %{
def ExplainPnL(portfolio: "Portfolio", scenarios: "Sequence[Scenario]") -> "Any":
    """P&L explain of the portfolio under each scenario: full revaluation against the P&L its
    sensitivities predict from the scenario's moves, with x the spot move in percent, v the
    volatility move in points and r_i each curve pillar's zero-rate move in basis points:
    delta = DELTA x (FX_DELTA for FX trades), gamma = GAMMA x^2 / 2, vega = VEGA v,
    rates = sum of KEY_RATE_DV01_i r_i, credit = CS01 times the credit spread move in basis
    points, unexplained = full - delta - gamma - vega - rates - credit.

    Returns a pandas DataFrame indexed by scenario with the columns full, delta, gamma, vega,
    rates, credit and unexplained when pandas is installed, else a dict of NumPy arrays (and
    "scenario", the names)."""
    import numpy
    columns = _ExplainPnL(portfolio, list(scenarios))
    names = columns.pop("scenario")
    arrays = {name: numpy.asarray(values) for name, values in columns.items()}
    try:
        import pandas
    except ImportError:
        return {"scenario": numpy.asarray(names), **arrays}
    return pandas.DataFrame(arrays, index=pandas.Index(names, name="scenario"))


def HistoricalVaR(portfolio: "Portfolio", factors: "Sequence[Shock]", history: "numpy.typing.ArrayLike",
                  confidences: "Sequence[float]" = (0.95, 0.99), tag: str = "", client: "Any" = None,
                  chunk_size: "int | None" = None) -> "dict[str, Any]":
    """Historical VaR of the portfolio: history holds one row per day (oldest first) and one
    column per factor, the factor's level that day (zero rates and volatilities as decimals,
    spots); factors[i] is a Shock saying what column i moves and whether its daily return is
    absolute or relative (its size is unused). Every day after the first becomes a scenario
    ("day <t>") of the day's moves, every trade is revalued under it in full.

    VaR at confidence c is the loss at rank ceil((1 - c) N) of the N P&Ls sorted from the worst,
    expected shortfall the mean loss of those worst scenarios; components split the VaR by the
    values of tag (by trade identifier when tag is empty) as minus each group's P&L in the
    scenario at the VaR rank, so they add up to the VaR.

    The revaluation runs in this process on every hardware thread (ZEP_NUM_THREADS sets how
    many, ZEP_RUNMODE=CPU one), or, given a dask.distributed Client, on its workers: the
    portfolio is sent to each worker once, the scenarios as shock lists in chunks of chunk_size
    (by default a few per worker thread). The P&L is the same bit for bit either way.

    Returns {"pnl", "summary", "components"}: with pandas, a Series of the P&L by scenario, a
    DataFrame of var, es and var_scenario by confidence, and a DataFrame of components by
    confidence (one column per group); without it, a NumPy array (and "scenario", the names),
    a dict of arrays and a dict of arrays by group."""
    import numpy
    levels = numpy.asarray(history, dtype=numpy.float64)
    if levels.ndim != 2:
        raise ValueError("The history must be a table: one row per day, one column per factor.")
    confidences = [float(c) for c in confidences]
    if client is None:
        report = _HistoricalVaR(portfolio, list(factors), levels.tolist(), confidences, tag)
    else:
        from .risk_dask import distributed_var_report
        report = distributed_var_report(client, portfolio, list(factors), levels.tolist(), confidences, tag,
                                        chunk_size)
    summary = {name: numpy.asarray(report[name]) for name in ("confidence", "var", "es", "var_scenario")}
    components = {group: numpy.asarray(shares) for group, shares in report["components"].items()}
    try:
        import pandas
    except ImportError:
        return {"scenario": numpy.asarray(report["scenario"]), "pnl": numpy.asarray(report["pnl"]),
                "summary": summary, "components": components}
    index = pandas.Index(summary.pop("confidence"), name="confidence")
    return {"pnl": pandas.Series(report["pnl"], index=pandas.Index(report["scenario"], name="scenario")),
            "summary": pandas.DataFrame(summary, index=index),
            "components": pandas.DataFrame(components, index=index)}


def _shock_repr(self):
    try:
        kind = "relative" if self.type == ShockType_RELATIVE else "absolute"
        unit = " bp" if self.family in (FactorFamily_YIELD_CURVE, FactorFamily_CREDIT_CURVE) else ""
        return f"<Shock {self.Describe()}: {self.size!r}{unit} {kind}>"
    except Exception:  # a repr never raises
        return "<Shock>"


def _scenario_repr(self):
    try:
        return f"<Scenario {self.Name()}: {len(self.Shocks())} shocks>"
    except Exception:  # a repr never raises
        return "<Scenario>"


def _shock_reduce(self):
    # Rebuilt through its family's factory, which checks the factor and the size again.
    if self.family == FactorFamily_YIELD_CURVE:
        return Shock.Curve, (self.target, self.factor, self.size, self.pillar)
    if self.family == FactorFamily_CREDIT_CURVE:
        return Shock.Credit, (self.target, self.factor, self.size)
    factory = Shock.Spot if self.family == FactorFamily_FX else Shock.Vol
    return factory, (self.target, self.factor, self.size, self.type)


def _scenario_reduce(self):
    return _scenario_from_parts, (self.Name(), list(self.Shocks()), self.Type(), self.Mode())


def _scenario_from_parts(name, shocks, scenario_type, apply_mode):
    return Scenario(name, shocks, type=scenario_type, mode=apply_mode)


Shock.__repr__ = _shock_repr
Shock.__reduce__ = _shock_reduce
Scenario.__repr__ = _scenario_repr
Scenario.__reduce__ = _scenario_reduce
%}
