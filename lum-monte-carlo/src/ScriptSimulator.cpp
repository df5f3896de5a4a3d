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
          m_evaluator(simulator.m_payoff->NewEvaluator(simulator.m_smoothed)) {
        // Each market's numeraires and the spots of events before the grid are the same on
        // every path: set once, so that a path writes only its grid spots.
        const std::vector<std::int32_t>& eventStep = simulator.m_grid.eventStep;
        for (const ScriptMarket<T>& market : simulator.m_markets) {
            std::vector<ScenarioPoint> scenario(eventStep.size());
            for (std::size_t e = 0; e < eventStep.size(); ++e) scenario[e] = {market.spot, market.numeraires[e]};
            m_scenarios.push_back(std::move(scenario));
        }
        for (std::size_t e = 0; e < eventStep.size(); ++e)
            if (eventStep[e] >= 0) m_simulatedEvents.push_back({e, static_cast<std::size_t>(eventStep[e])});
    }

    void SimulatePaths(RandomGen& generator, std::uint64_t first, std::uint64_t last, T* out) override {
        const std::vector<ScriptMarket<T>>& markets = m_simulator.m_markets;
        const std::size_t variables = m_simulator.m_payoff->VariableNames().size();
        for (std::uint64_t block = first; block < last; block += kBlockPaths) {
            const auto paths = static_cast<std::size_t>(std::min<std::uint64_t>(kBlockPaths, last - block));
            for (std::size_t p = 0; p < paths; ++p) {
                generator.StartPath(block + p);
                generator.NextPath(m_normals.data() + p * m_draws, m_draws);
            }
            for (std::size_t k = 0; k < markets.size(); ++k) {
                markets[k].model->SimulatePaths(m_normals.data(), paths, m_steps, m_spots.data());
                ScenarioPoint* scenario = m_scenarios[k].data();
                for (std::size_t p = 0; p < paths; ++p) {
                    const T* spots = m_spots.data() + p * m_steps;
                    for (const auto [event, step] : m_simulatedEvents) scenario[event].spot = spots[step];
                    T* row = out + ((block + p - first) * markets.size() + k) * variables;
                    std::fill(row, row + variables, T(0));
                    m_evaluator->Evaluate(scenario, row);
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
    std::unique_ptr<PathEvaluator> m_evaluator;
    std::vector<std::vector<ScenarioPoint>> m_scenarios;  // per market
    struct SimulatedEvent {
        std::size_t event;
        std::size_t step;
    };
    std::vector<SimulatedEvent> m_simulatedEvents;  // the events on the grid, with their steps
};

template <class T>
auto ScriptSimulator<T>::NewWorker() const -> std::unique_ptr<PathWorker> {
    return std::make_unique<Worker>(*this);
}

template class ScriptSimulator<double>;

}  // namespace zep
