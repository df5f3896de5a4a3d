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

// Scratch for one thread, allocated once: the path loop allocates nothing.
template <class T>
class ScriptSimulator<T>::Worker final : public PathWorker {
public:
    static constexpr std::size_t kBlockPaths = 4;

    explicit Worker(const ScriptSimulator& simulator)
        : m_simulator(simulator),
          m_draws(simulator.DrawsPerPath()),
          m_steps(simulator.m_grid.Steps()),
          m_normals(kBlockPaths * m_draws),
          m_spots(kBlockPaths * m_steps),
          m_scenario(simulator.m_grid.eventStep.size()),
          m_evaluator(simulator.m_payoff->NewEvaluator(simulator.m_smoothed)) {}

    void SimulatePaths(RandomGen& generator, std::uint64_t first, std::uint64_t last, T* out) override {
        const std::vector<ScriptMarket<T>>& markets = m_simulator.m_markets;
        const std::vector<std::int32_t>& eventStep = m_simulator.m_grid.eventStep;
        const std::size_t variables = m_simulator.m_payoff->VariableNames().size();
        for (std::uint64_t block = first; block < last; block += kBlockPaths) {
            const auto paths = static_cast<std::size_t>(std::min<std::uint64_t>(kBlockPaths, last - block));
            for (std::size_t p = 0; p < paths; ++p) {
                generator.StartPath(block + p);
                generator.NextPath(m_normals.data() + p * m_draws, m_draws);
            }
            for (std::size_t k = 0; k < markets.size(); ++k) {
                const ScriptMarket<T>& market = markets[k];
                market.model->SimulatePaths(m_normals.data(), paths, m_steps, m_spots.data());
                for (std::size_t p = 0; p < paths; ++p) {
                    const T* spots = m_spots.data() + p * m_steps;
                    for (std::size_t e = 0; e < eventStep.size(); ++e) {
                        const std::int32_t step = eventStep[e];
                        m_scenario[e] = {step < 0 ? market.spot : spots[step], market.numeraires[e]};
                    }
                    T* row = out + ((block + p - first) * markets.size() + k) * variables;
                    std::fill(row, row + variables, T(0));
                    m_evaluator->Evaluate(m_scenario.data(), row);
                }
            }
        }
    }

private:
    const ScriptSimulator& m_simulator;
    std::size_t m_draws;
    std::size_t m_steps;
    std::vector<T> m_normals;
    std::vector<T> m_spots;
    std::vector<ScenarioPoint> m_scenario;
    std::unique_ptr<PathEvaluator> m_evaluator;
};

template <class T>
auto ScriptSimulator<T>::NewWorker() const -> std::unique_ptr<PathWorker> {
    return std::make_unique<Worker>(*this);
}

template class ScriptSimulator<double>;

}  // namespace zep
