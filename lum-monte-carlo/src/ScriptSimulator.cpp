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
    // Paths per block: the block's normals, one model's paths and one market's scenario stay in
    // the caches, and the script's instructions are decoded once for all of them.
    static constexpr std::size_t kBlockPaths = 64;

    explicit Worker(const ScriptSimulator& simulator)
        : m_simulator(simulator),
          m_draws(simulator.DrawsPerPath()),
          m_steps(simulator.Steps()),
          m_events(simulator.m_markets.front().grid.eventStep.size()),
          m_variables(simulator.m_payoff->VariableNames().size()),
          m_normals(kBlockPaths * m_draws),
          m_spots(kBlockPaths * m_steps),
          m_sourceScenario(kBlockPaths * m_events),
          m_movedScenario(kBlockPaths * m_events),
          m_values(kBlockPaths * m_variables),
          m_evaluator(simulator.m_payoff->NewEvaluator(simulator.m_smoothed)) {
        // Each market that runs its own model is followed by the markets moved from its paths,
        // which read them while they are at hand.
        const std::vector<ScriptMarket<T>>& markets = simulator.m_markets;
        for (std::size_t k = 0; k < markets.size(); ++k) {
            if (markets[k].source >= 0) continue;
            m_order.push_back(k);
            for (std::size_t moved = 0; moved < markets.size(); ++moved)
                if (markets[moved].source == static_cast<std::ptrdiff_t>(k)) m_order.push_back(moved);
        }
        for (const ScriptMarket<T>& market : markets) {
            const std::vector<std::int32_t>& eventStep = market.grid.eventStep;
            std::vector<GridRun> simulated;
            std::vector<std::size_t> before;
            for (std::size_t e = 0; e < eventStep.size(); ++e) {
                if (eventStep[e] < 0) {
                    before.push_back(e);
                    continue;
                }
                const auto step = static_cast<std::size_t>(eventStep[e]);
                if (!simulated.empty() && simulated.back().event + simulated.back().count == e &&
                    simulated.back().step + simulated.back().count == step)
                    ++simulated.back().count;
                else
                    simulated.push_back({e, step, 1});
            }
            m_simulatedEvents.push_back(std::move(simulated));
            m_eventsBeforeGrid.push_back(std::move(before));
        }
        for (const ScriptMarket<T>& market : markets)
            m_sourceGrid.push_back(market.source >= 0 && market.grid.eventStep == markets[market.source].grid.eventStep);
    }

    void SimulatePaths(RandomGen& generator, std::uint64_t first, std::uint64_t last, T* out) override {
        const std::vector<ScriptMarket<T>>& markets = m_simulator.m_markets;
        for (std::uint64_t block = first; block < last; block += kBlockPaths) {
            const auto paths = static_cast<std::size_t>(std::min<std::uint64_t>(kBlockPaths, last - block));
            for (std::size_t p = 0; p < paths; ++p) {
                generator.StartPath(block + p);
                generator.NextPath(m_normals.data() + p * m_draws, m_draws);
            }
            for (const std::size_t k : m_order) {
                const ScriptMarket<T>& market = markets[k];
                if (market.source < 0) market.model->SimulatePaths(m_normals.data(), paths, m_steps, m_spots.data());
                const T* const scenario = FillScenario(k, paths);
                std::fill_n(m_values.data(), paths * m_variables, T(0));
                m_evaluator->EvaluateBlock({scenario, market.numeraires.data(), m_events, paths}, m_variables,
                                           m_values.data());
                for (std::size_t p = 0; p < paths; ++p) {
                    T* row = out + ((block + p - first) * markets.size() + k) * m_variables;
                    for (std::size_t v = 0; v < m_variables; ++v) row[v] = m_values[v * paths + p];
                }
            }
        }
    }

private:
    // Market k's event spots of the block, lane by lane, from the paths of its model (times
    // the forward's move for a market moved from another's paths); returns them.
    const T* FillScenario(std::size_t k, std::size_t paths) {
        const ScriptMarket<T>& market = m_simulator.m_markets[k];
        T* const scenario = market.source < 0 ? m_sourceScenario.data() : m_movedScenario.data();
        for (const std::size_t event : m_eventsBeforeGrid[k])
            std::fill_n(scenario + event * paths, paths, market.spot);
        if (m_sourceGrid[k]) {
            // The source's scenario, just filled from the same paths on the same grid, moved
            // row by row: the same products as from the paths.
            for (const auto [event, step, count] : m_simulatedEvents[k]) {
                for (std::size_t i = 0; i < count; ++i) {
                    const T factor = market.pathFactors[step + i];
                    const T* const from = m_sourceScenario.data() + (event + i) * paths;
                    T* const to = scenario + (event + i) * paths;
                    for (std::size_t p = 0; p < paths; ++p) to[p] = from[p] * factor;
                }
            }
            return scenario;
        }
        // By tiles of eight paths: each event's row of a tile is one line of the scenario,
        // read from eight paths that stay in the cache over the tile's events.
        constexpr std::size_t kTile = 8;
        const T* const factors = market.source < 0 ? nullptr : market.pathFactors.data();
        for (std::size_t p0 = 0; p0 < paths; p0 += kTile) {
            const std::size_t tile = std::min(kTile, paths - p0);
            for (const auto [event, step, count] : m_simulatedEvents[k]) {
                for (std::size_t i = 0; i < count; ++i) {
                    T* const to = scenario + (event + i) * paths + p0;
                    const T* const from = m_spots.data() + p0 * m_steps + step + i;
                    if (factors == nullptr) {
                        for (std::size_t j = 0; j < tile; ++j) to[j] = from[j * m_steps];
                    } else {
                        const T factor = factors[step + i];
                        for (std::size_t j = 0; j < tile; ++j) to[j] = from[j * m_steps] * factor;
                    }
                }
            }
        }
        return scenario;
    }

    const ScriptSimulator& m_simulator;
    std::size_t m_draws;
    std::size_t m_steps;
    std::size_t m_events;
    std::size_t m_variables;
    std::vector<T> m_normals;
    std::vector<T> m_spots;     // the block's paths of the market last simulated, path by path
    // Event spots of the block, event by event: of the last market run by its own model, and of
    // a market moved from it.
    std::vector<T> m_sourceScenario;
    std::vector<T> m_movedScenario;
    std::vector<T> m_values;    // its variables, variable by variable
    std::vector<std::size_t> m_order;  // the markets in the order a block runs them
    std::unique_ptr<PathEvaluator> m_evaluator;
    // Events event .. event + count - 1 see steps step .. step + count - 1: on a grid of one
    // step per event, all of a path's simulated events are one such run.
    struct GridRun {
        std::size_t event;
        std::size_t step;
        std::size_t count;
    };
    // Per market: the runs of events on its grid, and the events before it (at today's spot).
    std::vector<std::vector<GridRun>> m_simulatedEvents;
    std::vector<std::vector<std::size_t>> m_eventsBeforeGrid;
    std::vector<bool> m_sourceGrid;  // per market: moved from a market with the same grid
};

template <class T>
auto ScriptSimulator<T>::NewWorker() const -> std::unique_ptr<PathWorker> {
    return std::make_unique<Worker>(*this);
}

template class ScriptSimulator<double>;

}  // namespace zep
