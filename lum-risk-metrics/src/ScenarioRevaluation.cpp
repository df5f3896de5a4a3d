#include "lum-risk-metrics/ScenarioRevaluation.hpp"

#include <algorithm>
#include <exception>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>

#include "lum-monte-carlo/RunSettings.hpp"
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

std::size_t RevaluationThreads(std::size_t scenarios) {
    if (EffectiveRunMode(EnvironmentValue("ZEP_RUNMODE")) == RunMode::SingleThread) return 1;
    const std::size_t hardware = std::max(std::thread::hardware_concurrency(), 1u);
    const auto configured = ConfiguredThreadCount(EnvironmentValue("ZEP_NUM_THREADS"));
    const std::size_t wanted = configured ? static_cast<std::size_t>(*configured) : hardware;
    return std::max<std::size_t>(std::min(wanted, scenarios), 1);
}

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
    // Each scenario fills its own row, so the rows can be shared out in contiguous blocks: no
    // two threads write the same element and the result is the same for every thread count.
    const auto revalueBlock = [&](std::size_t begin, std::size_t end) {
        for (std::size_t s = begin; s < end; ++s) {
            ShockedMarket market(scenarios[s]);
            double* row = pnl.values.data() + s * positions.size();
            for (std::size_t p = 0; p < positions.size(); ++p) {
                if (!scenarios[s].Touches(names[p])) continue;
                row[p] = positions[p].quantity * (PVOf(positions[p], market, scenarios[s].Name()) - basePVs[p]);
            }
        }
    };
    const std::size_t threads = RevaluationThreads(scenarios.size());
    std::vector<std::exception_ptr> failures(threads);
    std::vector<std::thread> workers;
    workers.reserve(threads - 1);
    const auto runBlock = [&](std::size_t block) {
        try {
            revalueBlock(block * scenarios.size() / threads, (block + 1) * scenarios.size() / threads);
        } catch (...) {
            failures[block] = std::current_exception();
        }
    };
    for (std::size_t block = 1; block < threads; ++block) workers.emplace_back(runBlock, block);
    runBlock(0);
    for (std::thread& worker : workers) worker.join();
    // The earliest block's failure is the one a single thread would have met first.
    for (const std::exception_ptr& failure : failures)
        if (failure) std::rethrow_exception(failure);
    return pnl;
}

}  // namespace zep::scenario
