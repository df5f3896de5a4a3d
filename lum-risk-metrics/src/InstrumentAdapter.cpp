#include "lum-risk-metrics/InstrumentAdapter.hpp"

#include <exception>

namespace zep::metrics {
namespace {

// Runs a computation; a failure becomes the unavailable result of the metric.
template <class Computation>
auto Guarded(Metric metric, Computation&& computation) -> decltype(computation()) {
    UnitOf(metric);  // an unknown code is the caller's error, not an unavailable metric
    try {
        return computation();
    } catch (const char* text) {
        return {MetricResult::Unavailable(metric, text, MetricProvenance::ERROR_FALLBACK)};
    } catch (const std::exception& e) {
        return {MetricResult::Unavailable(metric, e.what(), MetricProvenance::ERROR_FALLBACK)};
    }
}

}  // namespace

MetricResult InstrumentAdapter::Compute(Metric metric) const {
    return Guarded(metric, [&] { return Evaluate(metric); });
}

MetricResultVector InstrumentAdapter::Compute(const std::vector<Metric>& metrics) const {
    MetricResultVector results;
    results.reserve(metrics.size());
    for (Metric metric : metrics) results.push_back(Compute(metric));
    return results;
}

MetricResultVector InstrumentAdapter::Profile(Metric metric) const {
    return Guarded(metric, [&] { return EvaluateProfile(metric); });
}

}  // namespace zep::metrics
