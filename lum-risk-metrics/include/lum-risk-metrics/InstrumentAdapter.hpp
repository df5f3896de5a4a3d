// The one face every instrument shows the risk layer: ask for a metric by its code, get a
// MetricResult. An adapter holds the instrument and the market it is valued in; a metric the
// instrument has no exposure to, or whose computation fails, comes back unavailable with the
// reason instead of a number.
#pragma once

#include <limits>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "lum-risk-metrics/MetricResult.hpp"

namespace zep {
class YieldCurve;
}

namespace zep::scenario {
class ShockedMarket;
}

namespace zep::metrics {

// The market levels a trade's sensitivities are taken at, so that a scenario's moves can be read
// in the same terms (P&L attribution): the spot and volatility of its underlying, NaN when it has
// none, its curves in the order of its key-rate profile, and the issuer whose credit spreads it reads.
struct MarketExposure {
    std::string underlying;
    double spot = std::numeric_limits<double>::quiet_NaN();
    double volatility = std::numeric_limits<double>::quiet_NaN();
    std::vector<boost::shared_ptr<const YieldCurve>> curves;
    std::string issuer;
};

class InstrumentAdapter {
public:
    virtual ~InstrumentAdapter() = default;

    virtual ProductType Product() const = 0;
    virtual std::string Describe() const = 0;
    // Never throws for a failing computation: the failure becomes an unavailable result
    // (provenance ERROR_FALLBACK) carrying the library's message.
    MetricResult Compute(Metric metric) const;
    MetricResultVector Compute(const std::vector<Metric>& metrics) const;
    // A bucketed metric, one labelled result per bucket (KEY_RATE_DV01: per curve pillar); any
    // other metric gives its one result.
    MetricResultVector Profile(Metric metric) const;

    // Full revaluation: the PV on the market a scenario leaves. Unlike Compute it throws, with
    // the library's message, since a scenario P&L has no unavailable form.
    virtual double PVUnder(scenario::ShockedMarket& market) const = 0;
    // The names of the market objects the PV reads (curve labels, the underlying), by which a
    // scenario tells whether it touches the trade.
    virtual std::vector<std::string> MarketNames() const = 0;
    virtual MarketExposure Exposure() const { return {}; }

protected:
    // The family's own computation; metrics it does not know are unavailable.
    virtual MetricResult Evaluate(Metric metric) const = 0;
    virtual MetricResultVector EvaluateProfile(Metric metric) const { return {Evaluate(metric)}; }
};

}  // namespace zep::metrics
