// Module-wide pieces: the library version, the codes shared with the risk-metrics layer and
// the probe that exercises the error translation.
%{
#include "FrameProbe.hpp"
#include "lum-risk-metrics/MetricCodes.hpp"

namespace zep {
std::string LibraryVersion = ZEP_VERSION;
}
%}

namespace zep {
%immutable;
std::string LibraryVersion;
%mutable;
}

%rename(BondAdapter_PricingMode) zep::metrics::BondAdapterPricingMode;
%rename(Scenario_ScenarioType) zep::metrics::ScenarioType;
%include "lum-risk-metrics/MetricCodes.hpp"

%feature("docstring") zep::python::MFrameProbe
"Raises a chosen library failure form, to check how failures reach Python.";
%ignore zep::python::FailureSource;
%ignore zep::python::MWrapper;
%include "FrameProbe.hpp"
