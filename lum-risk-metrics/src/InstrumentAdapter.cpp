#include "lum-risk-metrics/InstrumentAdapter.hpp"

#include <exception>

namespace zep::metrics {

MetricResult InstrumentAdapter::Compute(Metric metric) const {
    UnitOf(metric);  // an unknown code is the caller's error, not an unavailable metric
    try {
        return Evaluate(metric);
    } catch (const char* text) {
        return MetricResult::Unavailable(metric, text, MetricProvenance::ERROR_FALLBACK);
    } catch (const std::exception& e) {
        return MetricResult::Unavailable(metric, e.what(), MetricProvenance::ERROR_FALLBACK);
    }
}

MetricResultVector InstrumentAdapter::Compute(const std::vector<Metric>& metrics) const {
    MetricResultVector results;
    results.reserve(metrics.size());
    for (Metric metric : metrics) results.push_back(Compute(metric));
    return results;
}

}  // namespace zep::metrics
