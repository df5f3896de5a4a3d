#include "lum-risk-metrics/MetricResult.hpp"

#include <cmath>
#include <stdexcept>

namespace zep::metrics {
namespace {

struct Convention {
    const char* name;
    UnitCode unit;
    MetricAggregationType aggregation;
};

// Indexed by the metric's code. Values and sensitivities add up across positions; a par rate
// means nothing summed; a duration averages with the market values as weights.
constexpr Convention kConventions[] = {
    {"PV", UnitCode::CCY, MetricAggregationType::SUM},
    {"MARKET_VALUE", UnitCode::CCY, MetricAggregationType::SUM},
    {"NPV", UnitCode::CCY, MetricAggregationType::SUM},
    {"DELTA", UnitCode::CCY_PER_PCT, MetricAggregationType::SUM},
    {"GAMMA", UnitCode::CCY_PER_PCT, MetricAggregationType::SUM},
    {"VEGA", UnitCode::CCY_PER_PCT, MetricAggregationType::SUM},
    {"THETA", UnitCode::CCY_PER_DAY, MetricAggregationType::SUM},
    {"RHO", UnitCode::CCY_PER_BP, MetricAggregationType::SUM},
    {"DV01", UnitCode::CCY_PER_BP, MetricAggregationType::SUM},
    {"FX_DELTA", UnitCode::CCY_PER_PCT, MetricAggregationType::SUM},
    {"PAR_RATE", UnitCode::PCT, MetricAggregationType::NO_AGGREGATION},
    {"MODIFIED_DURATION", UnitCode::YEAR, MetricAggregationType::MARKET_VALUE_WEIGHTED},
    {"KEY_RATE_DV01", UnitCode::CCY_PER_BP, MetricAggregationType::SUM},
    {"CS01", UnitCode::CCY_PER_BP, MetricAggregationType::SUM},
};

const Convention& ConventionOf(Metric metric) {
    const auto code = static_cast<std::size_t>(metric);
    if (code >= std::size(kConventions))
        throw std::invalid_argument("Unknown metric code " + std::to_string(code) + ".");
    return kConventions[code];
}

}  // namespace

UnitCode UnitOf(Metric metric) { return ConventionOf(metric).unit; }
MetricAggregationType AggregationOf(Metric metric) { return ConventionOf(metric).aggregation; }
std::string MetricName(Metric metric) { return ConventionOf(metric).name; }

MetricResult MetricResult::Computed(Metric metric, double value) {
    if (!std::isfinite(value))
        return Unavailable(metric, MetricName(metric) + " is not a finite number.", MetricProvenance::ERROR_FALLBACK);
    MetricResult result;
    result.metric = metric;
    result.value = value;
    result.unit = UnitOf(metric);
    result.aggregation = AggregationOf(metric);
    result.available = true;
    return result;
}

MetricResult MetricResult::Unavailable(Metric metric, std::string reason, MetricProvenance provenance) {
    MetricResult result;
    result.metric = metric;
    result.unit = UnitOf(metric);
    result.aggregation = AggregationOf(metric);
    result.provenance = provenance;
    result.reason = std::move(reason);
    return result;
}

double MetricResult::Value() const {
    if (!available) throw std::runtime_error(MetricName(metric) + " is unavailable: " + reason);
    return value;
}

}  // namespace zep::metrics
