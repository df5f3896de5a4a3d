#include "lum-risk-metrics/Portfolio.hpp"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace zep::metrics {
namespace {

struct Figure {
    const Position* position;
    double value;  // per unit of the position
};

MetricResult Sum(Metric metric, const std::vector<Figure>& figures) {
    double total = 0.0;
    for (const Figure& figure : figures) total += figure.position->quantity * figure.value;
    return MetricResult::Computed(metric, total);
}

// Weights are the positions' market values: a duration of the whole group, not of the average trade.
MetricResult MarketValueWeighted(Metric metric, const std::vector<Figure>& figures) {
    double weighted = 0.0, weights = 0.0;
    for (const Figure& figure : figures) {
        const MetricResult marketValue = figure.position->instrument->Compute(Metric::MARKET_VALUE);
        if (!marketValue.available)
            return MetricResult::Unavailable(metric, "Trade " + figure.position->id + " has no market value to weight by: " + marketValue.reason);
        const double weight = figure.position->quantity * marketValue.value;
        weighted += weight * figure.value;
        weights += weight;
    }
    if (weights == 0.0) return MetricResult::Unavailable(metric, "The market values of the group add up to zero.");
    return MetricResult::Computed(metric, weighted / weights);
}

MetricResult WeightedByQuantity(Metric metric, const std::vector<Figure>& figures) {
    double weighted = 0.0, weights = 0.0;
    for (const Figure& figure : figures) {
        weighted += std::abs(figure.position->quantity) * figure.value;
        weights += std::abs(figure.position->quantity);
    }
    if (weights == 0.0) return MetricResult::Unavailable(metric, "The quantities of the group add up to zero.");
    return MetricResult::Computed(metric, weighted / weights);
}

}  // namespace

void Portfolio::Add(Position position) {
    if (!position.instrument) throw std::invalid_argument("Portfolio: trade " + position.id + " has no instrument (None).");
    if (!std::isfinite(position.quantity))
        throw std::invalid_argument("Portfolio: the quantity of trade " + position.id + " is not a finite number.");
    for (const Position& held : m_positions)
        if (held.id == position.id) throw std::invalid_argument("Portfolio: trade " + position.id + " is already held.");
    m_positions.push_back(std::move(position));
}

MetricResult Portfolio::Aggregate(Metric metric) const {
    std::vector<const Position*> all;
    all.reserve(m_positions.size());
    for (const Position& position : m_positions) all.push_back(&position);
    return AggregateOver(metric, all);
}

std::map<std::string, MetricResult> Portfolio::AggregateBy(Metric metric, const std::string& tag) const {
    std::map<std::string, std::vector<const Position*>> groups;
    for (const Position& position : m_positions) {
        const auto found = position.tags.find(tag);
        groups[found == position.tags.end() ? std::string() : found->second].push_back(&position);
    }
    std::map<std::string, MetricResult> results;
    for (const auto& [value, group] : groups) results.emplace(value, AggregateOver(metric, group));
    return results;
}

MetricResult Portfolio::AggregateOver(Metric metric, const std::vector<const Position*>& group) const {
    const MetricAggregationType rule = AggregationOf(metric);
    if (group.empty()) return MetricResult::Unavailable(metric, "No trade to aggregate.");
    std::vector<Figure> figures;
    figures.reserve(group.size());
    for (const Position* position : group) {
        const MetricResult result = position->instrument->Compute(metric);
        if (!result.available)
            return MetricResult::Unavailable(metric, "Trade " + position->id + ": " + result.reason, result.provenance);
        figures.push_back({position, result.value});
    }
    const auto byValue = [](const Figure& a, const Figure& b) { return a.value < b.value; };
    switch (rule) {
        case MetricAggregationType::SUM:
        case MetricAggregationType::COMPONENT_SUM: return Sum(metric, figures);
        case MetricAggregationType::MARKET_VALUE_WEIGHTED: return MarketValueWeighted(metric, figures);
        case MetricAggregationType::WEIGHTED_AVERAGE: return WeightedByQuantity(metric, figures);
        case MetricAggregationType::MAX:
            return MetricResult::Computed(metric, std::max_element(figures.begin(), figures.end(), byValue)->value);
        case MetricAggregationType::MIN:
            return MetricResult::Computed(metric, std::min_element(figures.begin(), figures.end(), byValue)->value);
        case MetricAggregationType::FIRST: return MetricResult::Computed(metric, figures.front().value);
        case MetricAggregationType::LAST: return MetricResult::Computed(metric, figures.back().value);
        case MetricAggregationType::NO_AGGREGATION:
            if (figures.size() == 1) return MetricResult::Computed(metric, figures.front().value);
            return MetricResult::Unavailable(metric, MetricName(metric) + " does not aggregate over several trades.");
        default:
            return MetricResult::Unavailable(metric, MetricName(metric) + " needs a revaluation of the whole portfolio.");
    }
}

}  // namespace zep::metrics
