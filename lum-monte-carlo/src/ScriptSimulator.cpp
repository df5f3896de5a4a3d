#include "lum-monte-carlo/ScriptSimulator.hpp"

#include <algorithm>

#include "lum-auxiliary/Error.hpp"

namespace zep {

template <class T>
ScriptSimulator<T>::ScriptSimulator(std::vector<ScriptMarket<T>> markets,
                                    std::unique_ptr<RandomGen> generator,
                                    std::shared_ptr<const PathPayoff> payoff, bool smoothed)
    : MonteCarloSimulator<T>(std::move(generator), markets.size() * payoff->VariableNames().size()),
      m_markets(std::move(markets)),
      m_payoff(std::move(payoff)),
      m_smoothed(smoothed) {
    for (ScriptMarket<T>& market : m_markets) {
        ZEP_REQUIRE(market.grid.Steps() == Steps(), "Markets simulated together need grids of as many steps");
        ZEP_REQUIRE(market.source < static_cast<std::ptrdiff_t>(m_markets.size()) &&
                        (market.source < 0 || (m_markets[market.source].source < 0 &&
                                               market.pathFactors.size() == Steps())),
                    "A market moved by the forward needs a market with its own model");
        market.model->SetGrid(market.grid.times);
    }
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
          m_steps(simulator.Steps()),
          m_normals(kBlockPaths * m_draws),
          m_evaluator(simulator.m_payoff->NewEvaluator(simulator.m_smoothed)) {
        // The paths of the markets that run their own model, one area each, kept while the
        // markets moved from them read them: those markets go first, the others after them.
        const std::vector<ScriptMarket<T>>& markets = simulator.m_markets;
        m_spotArea.resize(markets.size());
        std::size_t areas = 0;
        for (std::size_t k = 0; k < markets.size(); ++k)
            if (markets[k].source < 0) {
                m_spotArea[k] = areas++;
                m_order.push_back(k);
            }
        for (std::size_t k = 0; k < markets.size(); ++k)
            if (markets[k].source >= 0) {
                m_spotArea[k] = m_spotArea[markets[k].source];
                m_order.push_back(k);
            }
        m_spots.resize(areas * kBlockPaths * m_steps);
        // Each market's numeraires and the spots of events before its grid are the same on
        // every path: set once, so that a path writes only its grid spots.
        for (const ScriptMarket<T>& market : markets) {
            const std::vector<std::int32_t>& eventStep = market.grid.eventStep;
            std::vector<ScenarioPoint> scenario(eventStep.size());
            std::vector<GridRun> simulated;
            for (std::size_t e = 0; e < eventStep.size(); ++e) {
                scenario[e] = {market.spot, market.numeraires[e]};
                if (eventStep[e] < 0) continue;
                const auto step = static_cast<std::size_t>(eventStep[e]);
                if (!simulated.empty() && simulated.back().event + simulated.back().count == e &&
                    simulated.back().step + simulated.back().count == step)
                    ++simulated.back().count;
                else
                    simulated.push_back({e, step, 1});
            }
            m_scenarios.push_back(std::move(scenario));
            m_simulatedEvents.push_back(std::move(simulated));
        }
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
            for (const std::size_t k : m_order) {
                const ScriptMarket<T>& market = markets[k];
                T* const area = m_spots.data() + m_spotArea[k] * kBlockPaths * m_steps;
                if (market.source < 0) market.model->SimulatePaths(m_normals.data(), paths, m_steps, area);
                ScenarioPoint* scenario = m_scenarios[k].data();
                for (std::size_t p = 0; p < paths; ++p) {
                    const T* spots = area + p * m_steps;
                    for (const auto [event, step, count] : m_simulatedEvents[k]) {
                        ScenarioPoint* to = scenario + event;
                        const T* from = spots + step;
                        if (market.source < 0) {
                            for (std::size_t i = 0; i < count; ++i) to[i].spot = from[i];
                        } else {
                            const T* factors = market.pathFactors.data() + step;
                            for (std::size_t i = 0; i < count; ++i) to[i].spot = from[i] * factors[i];
                        }
                    }
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
    std::vector<std::size_t> m_spotArea;  // per market, the area of m_spots its paths are read from
    std::vector<std::size_t> m_order;     // the markets in the order a block runs them
    std::unique_ptr<PathEvaluator> m_evaluator;
    // Events event .. event + count - 1 see steps step .. step + count - 1: on a grid of one
    // step per event, all of a path's simulated events are one such run.
    struct GridRun {
        std::size_t event;
        std::size_t step;
        std::size_t count;
    };
    // Per market: its scenario, and the runs of events on its grid.
    std::vector<std::vector<ScenarioPoint>> m_scenarios;
    std::vector<std::vector<GridRun>> m_simulatedEvents;
};

template <class T>
auto ScriptSimulator<T>::NewWorker() const -> std::unique_ptr<PathWorker> {
    return std::make_unique<Worker>(*this);
}

template class ScriptSimulator<double>;

}  // namespace zep
