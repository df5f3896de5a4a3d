// One computed risk figure: which metric, its value, the unit it is quoted in, how it adds up
// across positions, and whether it is a real computation. A metric an instrument cannot compute
// is unavailable with the reason, so no report ever mistakes a missing figure for a zero.
#pragma once

#include <string>
#include <vector>

#include "lum-risk-metrics/MetricCodes.hpp"

namespace zep::metrics {

struct MetricResult {
    Metric metric = Metric::PV;
    double value = 0.0;  // meaningful only when available
    UnitCode unit = UnitCode::CCY;
    MetricAggregationType aggregation = MetricAggregationType::SUM;
    MetricProvenance provenance = MetricProvenance::NORMAL;
    bool available = false;
    std::string reason;  // why the metric is unavailable; empty when it is available
    std::string label;   // the bucket of a bucketed metric (a key rate's curve and pillar)

    static MetricResult Computed(Metric metric, double value);
    static MetricResult Unavailable(Metric metric, std::string reason,
                                    MetricProvenance provenance = MetricProvenance::NORMAL);
    // The value; fails naming the metric and the reason when it is unavailable.
    double Value() const;
};

using MetricResultVector = std::vector<MetricResult>;

// Every metric has one unit and one aggregation rule, whichever instrument computes it.
UnitCode UnitOf(Metric metric);
MetricAggregationType AggregationOf(Metric metric);
std::string MetricName(Metric metric);

}  // namespace zep::metrics
