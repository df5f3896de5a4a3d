// The one face every instrument shows the risk layer: ask for a metric by its code, get a
// MetricResult. An adapter holds the instrument and the market it is valued in; a metric the
// instrument has no exposure to, or whose computation fails, comes back unavailable with the
// reason instead of a number.
#pragma once

#include <string>
#include <vector>

#include "lum-risk-metrics/MetricResult.hpp"

namespace zep::scenario {
class ShockedMarket;
}

namespace zep::metrics {

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

protected:
    // The family's own computation; metrics it does not know are unavailable.
    virtual MetricResult Evaluate(Metric metric) const = 0;
    virtual MetricResultVector EvaluateProfile(Metric metric) const { return {Evaluate(metric)}; }
};

}  // namespace zep::metrics
