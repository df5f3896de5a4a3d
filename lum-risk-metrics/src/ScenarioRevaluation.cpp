#include "lum-risk-metrics/ScenarioRevaluation.hpp"

#include <algorithm>
#include <exception>
#include <set>
#include <stdexcept>
#include <string>

#include "lum-risk-metrics/ShockedMarket.hpp"

namespace zep::scenario {
namespace {

void RequireKnownTargets(const std::vector<std::vector<std::string>>& namesByPosition,
                         const std::vector<Scenario>& scenarios) {
    std::set<std::string> known;
    for (const auto& names : namesByPosition) known.insert(names.begin(), names.end());
    for (const Scenario& scenario : scenarios)
        for (const Shock& shock : scenario.Shocks())
            if (!known.count(shock.target))
                throw std::invalid_argument("Scenario '" + scenario.Name() + "' shocks " + shock.Describe() +
                                            ", but no trade of the portfolio reads '" + shock.target + "'.");
}

double PVOf(const metrics::Position& position, ShockedMarket& market, const std::string& scenarioName) {
    try {
        return position.instrument->PVUnder(market);
    } catch (const std::exception& e) {
        throw std::runtime_error("Trade " + position.id + " under scenario '" + scenarioName + "': " + e.what());
    } catch (const char* text) {
        throw std::runtime_error("Trade " + position.id + " under scenario '" + scenarioName + "': " + text);
    }
}

}  // namespace

std::vector<double> ScenarioPnL::Total() const {
    std::vector<double> totals(scenarios, 0.0);
    for (std::size_t s = 0; s < scenarios; ++s)
        for (std::size_t p = 0; p < positions; ++p) totals[s] += At(p, s);
    return totals;
}

ScenarioPnL Revalue(const metrics::Portfolio& portfolio, const std::vector<Scenario>& scenarios) {
    const auto& positions = portfolio.Positions();
    std::vector<std::vector<std::string>> names;
    names.reserve(positions.size());
    for (const auto& position : positions) names.push_back(position.instrument->MarketNames());
    RequireKnownTargets(names, scenarios);

    std::vector<double> basePVs;
    basePVs.reserve(positions.size());
    {
        ShockedMarket unshocked(Scenario("base", {}));
        for (const auto& position : positions) basePVs.push_back(PVOf(position, unshocked, "base"));
    }

    ScenarioPnL pnl{positions.size(), scenarios.size(), std::vector<double>(positions.size() * scenarios.size(), 0.0)};
    for (std::size_t s = 0; s < scenarios.size(); ++s) {
        ShockedMarket market(scenarios[s]);
        double* row = pnl.values.data() + s * positions.size();
        for (std::size_t p = 0; p < positions.size(); ++p) {
            if (!scenarios[s].Touches(names[p])) continue;
            row[p] = positions[p].quantity * (PVOf(positions[p], market, scenarios[s].Name()) - basePVs[p]);
        }
    }
    return pnl;
}

}  // namespace zep::scenario
