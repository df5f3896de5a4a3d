// Scripted products priced by Monte Carlo: MXScriptStructure, and the progress and Ctrl-C
// handling of long runs.
%{
#include "MXScriptStructure.hpp"
#include "RunProgress.hpp"
%}

%init %{
zep::python::InstallRunObserver();
%}

%feature("docstring") zep::python::SetProgress
"Progress of long Monte Carlo runs (prices and Greeks), reported between chunks of paths.

SetProgress(True): a progress bar on standard error; SetProgress(False): none;
SetProgress(None): the bar in interactive sessions only (the default); SetProgress(callable):
callable(done, total) with the numbers of paths. Reports start after a second of running and
come at most ten times a second. Ctrl-C stops a run within a chunk of paths with
KeyboardInterrupt; an exception raised by the callable stops it too and propagates.";
namespace zep::python {
PyObject* SetProgress(PyObject* setting);
}

%template(DoubleVector) std::vector<double>;
%template(StringVector) std::vector<std::string>;

// Results by name travel as plain dicts.
%typemap(out) std::map<std::string, double> {
    $result = PyDict_New();
    if (!$result) SWIG_fail;
    for (const auto& [name, value] : static_cast<const std::map<std::string, double>&>($1)) {
        PyObject* figure = PyFloat_FromDouble(value);
        if (!figure || PyDict_SetItemString($result, name.c_str(), figure) < 0) {
            Py_XDECREF(figure);
            Py_DECREF($result);
            SWIG_fail;
        }
        Py_DECREF(figure);
    }
}

%feature("docstring") zep::python::MXScriptStructure
"A structured product written in the payoff script language, priced by Monte Carlo.

MXScriptStructure(today, spot, volatility, rate1, rate2, model, modelParameters, eventDates,
                  eventScripts, numSimulations=10000, seed=12345, dayBasis=365.0,
                  adaptiveShift=False, adaptiveShiftBarrier=0.0, priceVariable='',
                  quasiRandom=False, notional=1.0)
MXScriptStructure.FromDefinition(json_or_yaml_text), MXScriptStructure.FromFile(path)
MXScriptStructure.OnLocalVolatility(product, surface): the same product under Dupire on the
market smile, the local volatility of an FXVolSurface (tabulated per step at the step's middle
on 129 log-spot nodes, read by linear interpolation); quote the surface on the product's spot
and rates.

model: 1 Black-Scholes (volatility), 2 Bachelier (normal volatility), 3 Heston (kappa, theta,
xi, rho, v0), 4 Dupire (atmVol, skew, curvature, termSlope, minVol, maxVol). rate1 is the
risk-free rate (drift and discounting), rate2 the underlying's yield. Payments are discounted
by exp(-rate1 t). Price reports priceVariable, or the first variable that receives PAYS.
Environment: ZEP_RUNMODE, ZEP_NUM_THREADS, ZEP_BS_DAILY_STEPS, ZEP_SDP_NUMSIMULATION.";

%ignore zep::python::MWrapper;
%rename(_WriteReport) zep::python::MXScriptStructure::WriteReport;
%include "MXScriptStructure.hpp"

%extend zep::python::MXScriptStructure {
    %pythoncode %{
        def WriteReport(self, directory: "str", reportName: "str", levels: "dict[str, float] | None" = None,
                        greeks: "dict[str, float] | None" = None) -> "str":
            """Prices the product and writes its Markdown report to
            <directory>/<reportName>_xscript.md; returns the path. levels: {name: value} drawn
            beside the simulated paths (barriers, triggers); greeks: {name: value} to show,
            BasicGreeks when not given."""
            levels = dict(levels or {})
            greeks = dict(greeks or {})
            return self._WriteReport(directory, reportName, list(levels), [float(v) for v in levels.values()],
                                     list(greeks), [float(v) for v in greeks.values()])
    %}
}
