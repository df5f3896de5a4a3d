// Risk metrics: one adapter per instrument family answering metrics by their codes (Metric_*),
// each result with its unit, aggregation rule and provenance, and portfolios that aggregate a
// metric by any tag under that rule.
%{
#include "lum-risk-metrics/Portfolio.hpp"
#include "RiskAdapters.hpp"
%}

%feature("docstring") zep::metrics::MetricResult
"One risk figure: metric (Metric_*), value, unit (UnitCode_*), aggregation
(MetricAggregationType_*), provenance (MetricProvenance_*), available, reason, and the label of
its bucket (a key rate's curve and pillar). An unavailable
metric has available False and the reason; Value() raises RuntimeError for it instead of
returning a number.";
%ignore zep::metrics::MetricResult::Computed;
%ignore zep::metrics::MetricResult::Unavailable;
// Results report what was computed: read-only in Python.
%immutable;
%include "lum-risk-metrics/MetricResult.hpp"
%mutable;
%template(MetricResultVector) std::vector<zep::metrics::MetricResult>;
// Results by tag reach Python as a plain dict of owned results: an element borrowed from a
// temporary map would dangle once the map is dropped (portfolio.AggregateBy(...)["a"]).
%typemap(out) std::map<std::string, zep::metrics::MetricResult> {
    const std::map<std::string, zep::metrics::MetricResult>& by_tag = $1;
    $result = PyDict_New();
    for (const auto& [tag, metric_result] : by_tag) {
        PyObject* item = SWIG_NewPointerObj(new zep::metrics::MetricResult(metric_result),
                                            $descriptor(zep::metrics::MetricResult*), SWIG_POINTER_OWN);
        PyDict_SetItemString($result, tag.c_str(), item);
        Py_DECREF(item);
    }
}
// Result lists reach Python as a MetricResultVector, not as a tuple of results.
%typemap(out) std::vector<zep::metrics::MetricResult> {
    $result = SWIG_NewPointerObj(new std::vector<zep::metrics::MetricResult>($1),
                                 $descriptor(std::vector<zep::metrics::MetricResult>*), SWIG_POINTER_OWN);
}

%shared_ptr(zep::metrics::InstrumentAdapter)
%shared_ptr(zep::metrics::BondAdapter)
%shared_ptr(zep::metrics::SwapAdapter)
%shared_ptr(zep::metrics::FXForwardAdapter)
%shared_ptr(zep::metrics::VanillaOptionAdapter)
%shared_ptr(zep::metrics::CurveInstrumentAdapter)
%shared_ptr(zep::metrics::CurvePricedAdapter)
%shared_ptr(zep::python::FRAAdapter)
%shared_ptr(zep::python::FloatingRateNoteAdapter)
%shared_ptr(zep::python::BillAdapter)
%shared_ptr(zep::python::FXSwapAdapter)
%shared_ptr(zep::python::NDFAdapter)
%shared_ptr(zep::python::CrossCurrencySwapAdapter)
%shared_ptr(zep::metrics::CreditDefaultSwapAdapter)
%shared_ptr(zep::metrics::SpotVolOptionAdapter)
%shared_ptr(zep::metrics::ScriptedProductAdapter)
%shared_ptr(zep::python::BarrierOptionAdapter)
%shared_ptr(zep::python::DigitalOptionAdapter)

%feature("docstring") zep::metrics::InstrumentAdapter
"What every adapter answers: Compute(metric) gives a MetricResult, Compute([metrics]) a
MetricResultVector; Profile(metric) the buckets of a bucketed metric (Metric_KEY_RATE_DV01: one
result per curve pillar, labelled '<curve>:<date>'); Product() the ProductType_* code; Describe()
the instrument in words; MarketNames() the curve labels and underlying names scenarios shock it
by.";
%feature("docstring") zep::metrics::BondAdapter
"A fixed-rate bond for the risk layer: BondAdapter(bond, faceAmount=100) from an MBond built with
its discount curve. PV, MARKET_VALUE, NPV, DV01 (per basis point up, central difference),
MODIFIED_DURATION; Profile(Metric_KEY_RATE_DV01).";
%feature("docstring") zep::metrics::SwapAdapter
"A swap for the risk layer: SwapAdapter(swap) from an MVanillaSwap or an MBasisSwap. PV,
MARKET_VALUE, NPV, DV01 (every curve of the swap one basis point up), PAR_RATE (percent,
fixed-rate swaps only);
Profile(Metric_KEY_RATE_DV01).";
%feature("docstring") zep::metrics::FXForwardAdapter
"An outright FX forward for the risk layer: FXForwardAdapter(forward, pair='') from an
MFXForwardOutright; scenarios shock its spot by the name pair.
PV, MARKET_VALUE, NPV (quote currency), FX_DELTA (per 1% on spot), DV01 (both curves);
Profile(Metric_KEY_RATE_DV01).";
%feature("docstring") zep::metrics::VanillaOptionAdapter
"A vanilla option for the risk layer: VanillaOptionAdapter(option, underlying='') from an
MVanillaOption; scenarios shock its spot and volatility by the name underlying. PV,
MARKET_VALUE, NPV, DELTA and GAMMA (per 1% on spot), VEGA (per volatility point), THETA (per
day), RHO (per basis point).";
%feature("docstring") zep::python::FRAAdapter
"A forward rate agreement for the risk layer: FRAAdapter(fra) from an MFRA. PV, MARKET_VALUE, NPV,
DV01 (discount and projection curves one basis point up), PAR_RATE (percent);
Profile(Metric_KEY_RATE_DV01).";
%feature("docstring") zep::python::FloatingRateNoteAdapter
"A floating-rate note for the risk layer: FloatingRateNoteAdapter(note, faceAmount=100) from an
MFloatingRateNote (prices per 100 of the face amount). PV, MARKET_VALUE, NPV, DV01;
Profile(Metric_KEY_RATE_DV01).";
%feature("docstring") zep::python::BillAdapter
"A bill for the risk layer: BillAdapter(bill) from an MBill built with its discount curve. PV,
MARKET_VALUE, NPV, DV01; Profile(Metric_KEY_RATE_DV01).";
%feature("docstring") zep::python::FXSwapAdapter
"An FX swap for the risk layer: FXSwapAdapter(swap, pair='') from an MFXSwap; scenarios shock its
spot by the name pair. PV, MARKET_VALUE, NPV (quote currency), FX_DELTA (per 1% on spot), DV01
(both curves); Profile(Metric_KEY_RATE_DV01).";
%feature("docstring") zep::python::NDFAdapter
"A non-deliverable forward for the risk layer: NDFAdapter(ndf, pair='') from an MFXNDF; scenarios
shock its spot by the name pair (a fixed NDF no longer moves with it). PV, MARKET_VALUE, NPV,
FX_DELTA (per 1% on spot), DV01; Profile(Metric_KEY_RATE_DV01).";
%feature("docstring") zep::python::CrossCurrencySwapAdapter
"A cross-currency swap for the risk layer: CrossCurrencySwapAdapter(swap, pair='') from an
MXCurrencySwap; scenarios shock the spot converting its foreign leg by the name pair. PV,
MARKET_VALUE, NPV (domestic currency), FX_DELTA (per 1% on spot), DV01 (every curve of both legs),
PAR_RATE (the domestic leg's par rate or spread, percent); Profile(Metric_KEY_RATE_DV01).";
%feature("docstring") zep::metrics::CreditDefaultSwapAdapter
"A credit default swap for the risk layer: CreditDefaultSwapAdapter(cds, issuer='') from an
MCreditDefaultSwap; credit scenarios (Shock.Credit) shock its credit curve by the name issuer. PV, MARKET_VALUE, NPV, CS01 (every par spread of the credit curve one basis
point up), DV01 (the discount curve, the hazard rates held), PAR_RATE (the par spread, percent);
Profile(Metric_KEY_RATE_DV01).";
%feature("docstring") zep::metrics::ScriptedProductAdapter
"A scripted product for the risk layer: ScriptedProductAdapter(product, underlying='') from an
MXScriptStructure; scenarios shock its spot and volatility by the name underlying and revalue it
on the same paths. PV, MARKET_VALUE, NPV (notional times the price), DELTA and GAMMA (per 1% on
spot, DELTA the PV change: the opposite sign of the product's own Delta), VEGA (per volatility
point), THETA (per day), RHO (per basis point), from the script engine's Greeks.";
%feature("docstring") zep::python::BarrierOptionAdapter
"A barrier option for the risk layer: BarrierOptionAdapter(option, underlying='', pricingMethod=0)
from an MVanillaBarriers, priced by its own method codes; scenarios shock its spot and its
volatility (the volatility at the strike; a surface moves in parallel) and its 25-delta smile
quotes (read by Vanna-Volga) by the name underlying. PV,
MARKET_VALUE, NPV, DELTA and GAMMA (per 1% on spot), VEGA (per volatility point), all by
revaluation.";
%feature("docstring") zep::python::DigitalOptionAdapter
"A digital option for the risk layer: DigitalOptionAdapter(option, underlying='', pricingMethod=0)
from an MDigitalOption, priced by its own method codes; scenarios shock its spot and volatility by
the name underlying. PV, MARKET_VALUE, NPV, DELTA and GAMMA (per 1% on spot), VEGA (per
volatility point), all by revaluation.";
%feature("docstring") zep::metrics::Portfolio
"Trades for aggregation: Add(id, adapter, quantity=1, tags={}); Aggregate(metric) over all trades
and AggregateBy(metric, tag) per tag value (trades without the tag under ''), each by the
metric's aggregation rule; a group that cannot be aggregated is unavailable with the reason.";

namespace zep {
namespace metrics {

%nodefaultctor InstrumentAdapter;
class InstrumentAdapter {
public:
    virtual ~InstrumentAdapter();
    virtual ProductType Product() const;
    virtual std::string Describe() const;
    MetricResult Compute(Metric metric) const;
    MetricResultVector Profile(Metric metric) const;
    std::vector<std::string> MarketNames() const;
    %extend {
        std::vector<zep::metrics::MetricResult> Compute(const std::vector<int>& metrics) const {
            std::vector<zep::metrics::Metric> codes;
            for (int code : metrics) codes.push_back(static_cast<zep::metrics::Metric>(code));
            return $self->Compute(codes);
        }
    }
};

class BondAdapter : public InstrumentAdapter {
public:
    %extend {
        BondAdapter(const zep::python::MBond& bond, double faceAmount = 100.0) {
            return zep::python::RiskAdapters::Of(bond, faceAmount).release();
        }
    }
};

class SwapAdapter : public InstrumentAdapter {
public:
    %extend {
        SwapAdapter(const zep::python::MVanillaSwap& swap) { return zep::python::RiskAdapters::Of(swap).release(); }
        SwapAdapter(const zep::python::MBasisSwap& swap) { return zep::python::RiskAdapters::Of(swap).release(); }
    }
};

class FXForwardAdapter : public InstrumentAdapter {
public:
    %extend {
        FXForwardAdapter(const zep::python::MFXForwardOutright& forward, const std::string& pair = "") {
            return zep::python::RiskAdapters::Of(forward, pair).release();
        }
    }
};

class VanillaOptionAdapter : public InstrumentAdapter {
public:
    %extend {
        VanillaOptionAdapter(const zep::python::MVanillaOption& option, const std::string& underlying = "") {
            return zep::python::RiskAdapters::Of(option, underlying).release();
        }
    }
};

%nodefaultctor CurveInstrumentAdapter;
class CurveInstrumentAdapter : public InstrumentAdapter {};
%nodefaultctor CurvePricedAdapter;
class CurvePricedAdapter : public CurveInstrumentAdapter {};
%nodefaultctor SpotVolOptionAdapter;
class SpotVolOptionAdapter : public InstrumentAdapter {};

}  // namespace metrics

namespace python {

class FRAAdapter : public zep::metrics::CurvePricedAdapter {
public:
    %extend {
        FRAAdapter(const zep::python::MFRA& fra) { return zep::python::RiskAdapters::Of(fra).release(); }
    }
};

class FloatingRateNoteAdapter : public zep::metrics::CurvePricedAdapter {
public:
    %extend {
        FloatingRateNoteAdapter(const zep::python::MFloatingRateNote& note, double faceAmount = 100.0) {
            return zep::python::RiskAdapters::Of(note, faceAmount).release();
        }
    }
};

class BillAdapter : public zep::metrics::CurvePricedAdapter {
public:
    %extend {
        BillAdapter(const zep::python::MBill& bill) { return zep::python::RiskAdapters::Of(bill).release(); }
    }
};

class FXSwapAdapter : public zep::metrics::CurvePricedAdapter {
public:
    %extend {
        FXSwapAdapter(const zep::python::MFXSwap& swap, const std::string& pair = "") {
            return zep::python::RiskAdapters::Of(swap, pair).release();
        }
    }
};

class NDFAdapter : public zep::metrics::CurvePricedAdapter {
public:
    %extend {
        NDFAdapter(const zep::python::MFXNDF& ndf, const std::string& pair = "") {
            return zep::python::RiskAdapters::Of(ndf, pair).release();
        }
    }
};

class CrossCurrencySwapAdapter : public zep::metrics::CurvePricedAdapter {
public:
    %extend {
        CrossCurrencySwapAdapter(const zep::python::MXCurrencySwap& swap, const std::string& pair = "") {
            return zep::python::RiskAdapters::Of(swap, pair).release();
        }
    }
};

class BarrierOptionAdapter : public zep::metrics::SpotVolOptionAdapter {
public:
    %extend {
        BarrierOptionAdapter(const zep::python::MVanillaBarriers& option, const std::string& underlying = "",
                             int pricingMethod = 0) {
            return zep::python::RiskAdapters::Of(option, underlying, pricingMethod).release();
        }
    }
};

class DigitalOptionAdapter : public zep::metrics::SpotVolOptionAdapter {
public:
    %extend {
        DigitalOptionAdapter(const zep::python::MDigitalOption& option, const std::string& underlying = "",
                             int pricingMethod = 0) {
            return zep::python::RiskAdapters::Of(option, underlying, pricingMethod).release();
        }
    }
};

}  // namespace python

namespace metrics {

class CreditDefaultSwapAdapter : public CurveInstrumentAdapter {
public:
    %extend {
        CreditDefaultSwapAdapter(const zep::python::MCreditDefaultSwap& cds, const std::string& issuer = "") {
            return zep::python::RiskAdapters::Of(cds, issuer).release();
        }
    }
};

class ScriptedProductAdapter : public InstrumentAdapter {
public:
    %extend {
        ScriptedProductAdapter(const zep::python::MXScriptStructure& product, const std::string& underlying = "") {
            return zep::python::RiskAdapters::Of(product, underlying).release();
        }
    }
};

class Portfolio {
public:
    Portfolio();
    std::size_t Size() const;
    MetricResult Aggregate(Metric metric) const;
    std::map<std::string, zep::metrics::MetricResult> AggregateBy(Metric metric, const std::string& tag) const;
    %extend {
        void Add(const std::string& id, boost::shared_ptr<const zep::metrics::InstrumentAdapter> instrument,
                 double quantity = 1.0,
                 const std::map<std::string, std::string>& tags = std::map<std::string, std::string>()) {
            $self->Add({id, instrument, quantity, tags});
        }
    }
};

}  // namespace metrics
}  // namespace zep

%pythoncode %{
def _metric_result_repr(self):
    try:
        name = MetricName(self.metric)
    except Exception:  # a repr never raises
        name = str(self.metric)
    if self.label:
        name += " " + self.label
    if self.available:
        return f"<MetricResult {name}: {self.value!r}>"
    return f"<MetricResult {name} unavailable: {self.reason}>"


MetricResult.__repr__ = _metric_result_repr
for _adapter in (BondAdapter, SwapAdapter, FXForwardAdapter, VanillaOptionAdapter, FRAAdapter,
                 FloatingRateNoteAdapter, BillAdapter, FXSwapAdapter, NDFAdapter, CrossCurrencySwapAdapter,
                 CreditDefaultSwapAdapter, BarrierOptionAdapter, DigitalOptionAdapter, ScriptedProductAdapter):
    _adapter.__repr__ = _instrument_repr
del _adapter
%}
