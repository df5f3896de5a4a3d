// Monte Carlo simulation of a scripted product: the model draws each path's spots on the grid,
// the event dates pick their spots out of it, and the payoff script runs on the scenario.
//
// Several markets can share one simulation: the re-pricings of the Greeks move the spot, the
// volatility or the rates but not the time grid, so each path's normals are drawn once and every
// market's model steps on them. Market k's values of a path are exactly those a simulation of
// that market alone gives (the same normals, the same model, the same script), and the threading
// frame sums them per market in path order.
//
// Paths go through the models a few at a time (their normals drawn path by path from the
// path's own stream), so that a model can interleave their recursions; the script then runs
// path by path.
#pragma once

#include <memory>
#include <vector>

#include "lum-monte-carlo/MonteCarloSimulator.hpp"
#include "lum-monte-carlo/PathPayoff.hpp"
#include "lum-monte-carlo/ScriptModelApi.hpp"
#include "lum-monte-carlo/SimulationGrid.hpp"

namespace zep {

template <class T>
struct ScriptMarket {
    std::unique_ptr<ScriptModelApi<T>> model;
    std::vector<T> numeraires;  // per event date, the factor its payments are multiplied by
    T spot;
};

template <class T>
class ScriptSimulator final : public MonteCarloSimulator<T> {
public:
    // Every market's model is of one type (they differ in their inputs only).
    ScriptSimulator(std::vector<ScriptMarket<T>> markets, std::unique_ptr<RandomGen> generator,
                    SimulationGrid grid, std::shared_ptr<const PathPayoff> payoff, bool smoothed);

    std::size_t DrawsPerPath() const { return m_grid.Steps() * m_markets.front().model->FactorsPerStep(); }
    // One result per market, in the order given.
    std::vector<SimulationResult> RunMarkets(std::size_t paths, std::size_t threads);

private:
    using PathWorker = typename MonteCarloSimulator<T>::PathWorker;
    class Worker;
    std::unique_ptr<PathWorker> NewWorker() const override;

    std::vector<ScriptMarket<T>> m_markets;
    SimulationGrid m_grid;
    std::shared_ptr<const PathPayoff> m_payoff;
    bool m_smoothed;
};

}  // namespace zep
