// Positions in instruments, each with an identifier, a quantity and free tags (desk, book,
// currency, counterparty), and the aggregation of a metric over the positions that share a tag
// value, by the metric's own rule. A group whose figure cannot be formed (a position without
// the metric, a metric that does not add up) is unavailable with the reason, naming the trade.
#pragma once

#include <map>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "lum-risk-metrics/InstrumentAdapter.hpp"

namespace zep::metrics {

struct Position {
    std::string id;
    boost::shared_ptr<const InstrumentAdapter> instrument;
    double quantity = 1.0;
    std::map<std::string, std::string> tags;
};

class Portfolio {
public:
    // Fails on a missing instrument, a non-finite quantity or an identifier already held.
    void Add(Position position);
    const std::vector<Position>& Positions() const { return m_positions; }
    std::size_t Size() const { return m_positions.size(); }

    // The metric of every position, scaled by its quantity where the metric adds up.
    MetricResult Aggregate(Metric metric) const;
    // One result per value of the tag; positions without the tag form the group "".
    std::map<std::string, MetricResult> AggregateBy(Metric metric, const std::string& tag) const;

private:
    MetricResult AggregateOver(Metric metric, const std::vector<const Position*>& group) const;

    std::vector<Position> m_positions;
};

}  // namespace zep::metrics
