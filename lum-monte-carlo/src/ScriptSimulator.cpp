#include "lum-monte-carlo/ScriptSimulator.hpp"

#include <algorithm>

namespace zep {

template <class T>
ScriptSimulator<T>::ScriptSimulator(std::vector<ScriptMarket<T>> markets,
                                    std::unique_ptr<RandomGen> generator, SimulationGrid grid,
                                    std::shared_ptr<const PathPayoff> payoff, bool smoothed)
    : MonteCarloSimulator<T>(std::move(generator), markets.size() * payoff->VariableNames().size()),
      m_markets(std::move(markets)),
      m_grid(std::move(grid)),
      m_payoff(std::move(payoff)),
      m_smoothed(smoothed) {
    for (auto& market : m_markets) market.model->SetGrid(m_grid.times);
}

template <class T>
std::vector<SimulationResult> ScriptSimulator<T>::RunMarkets(std::size_t paths, std::size_t threads) {
    // The frame averages market after market: columns [k * variables, (k + 1) * variables).
    const SimulationResult all = this->Run(paths, threads);
    const std::size_t variables = m_payoff->VariableNames().size();
    std::vector<SimulationResult> results(m_markets.size());
    for (std::size_t k = 0; k < m_markets.size(); ++k) {
        const auto first = static_cast<std::ptrdiff_t>(k * variables);
        const auto last = first + static_cast<std::ptrdiff_t>(variables);
        results[k].mean.assign(all.mean.begin() + first, all.mean.begin() + last);
        results[k].standardError.assign(all.standardError.begin() + first, all.standardError.begin() + last);
        results[k].paths = all.paths;
        results[k].threads = all.threads;
    }
    return results;
}

template <class T>
void ScriptSimulator<T>::SimulatePaths(RandomGen& generator, std::uint64_t first,
                                       std::uint64_t last, T* out) const {
    // Scratch for the whole thread, allocated once: the path loop allocates nothing.
    std::vector<T> normals(DrawsPerPath());
    std::vector<T> spots(m_grid.Steps());
    const std::size_t events = m_grid.eventStep.size();
    std::vector<ScenarioPoint> scenario(events);
    const std::size_t variables = m_payoff->VariableNames().size();
    const auto evaluator = m_payoff->NewEvaluator(m_smoothed);

    for (std::uint64_t path = first; path < last; ++path) {
        generator.StartPath(path);
        generator.NextPath(normals.data(), normals.size());
        T* row = out + (path - first) * variables * m_markets.size();
        for (const ScriptMarket<T>& market : m_markets) {
            market.model->SimulatePath(normals.data(), spots.data());
            for (std::size_t e = 0; e < events; ++e) {
                const std::int32_t step = m_grid.eventStep[e];
                scenario[e] = {step < 0 ? market.spot : spots[step], market.numeraires[e]};
            }
            std::fill(row, row + variables, T(0));
            evaluator->Evaluate(scenario.data(), row);
            row += variables;
        }
    }
}

template class ScriptSimulator<double>;

}  // namespace zep
