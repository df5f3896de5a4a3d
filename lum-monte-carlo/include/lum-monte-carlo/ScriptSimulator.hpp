// Monte Carlo simulation of a scripted product: the model draws each path's spots on the grid,
// the event dates pick their spots out of it, and the payoff script runs on the scenario.
//
// Several markets can share one simulation: the re-pricings of the Greeks move the spot, the
// volatility, the rates or the valuation date, and each path's normals are drawn once as long as
// every market's grid takes as many draws (a valuation date one day later moves every grid time
// but, stepping event to event, keeps the count). Every market's model steps on its own grid with
// those normals. Market k's values of a path are exactly those a simulation of that market alone
// gives (the same normals, the same model, the same script), and the threading frame sums them
// per market in path order.
//
// Paths go through the models in blocks (their normals drawn path by path from the path's own
// stream), so that a model can interleave their recursions; the script then runs over the
// block's paths side by side, each instruction once for the block. A market that moves another's paths by the forward (ScriptMarket::source) takes
// them as they are put into its scenario: its values agree with its own model's to rounding
// (a few units in the last place of each spot), not bit for bit.
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
    T spot = 0;
    SimulationGrid grid;
    // A market whose paths are those of market `source` (earlier in the list, running its own
    // model) times pathFactors[step] at each grid step: a spot or rate move of a model whose
    // paths move with the forward. -1: the market runs its own model.
    std::ptrdiff_t source = -1;
    std::vector<T> pathFactors;
};

template <class T>
class ScriptSimulator final : public MonteCarloSimulator<T> {
public:
    // Every market's model is of one type (they differ in their inputs only) and every grid has
    // as many steps.
    ScriptSimulator(std::vector<ScriptMarket<T>> markets, std::unique_ptr<RandomGen> generator,
                    std::shared_ptr<const PathPayoff> payoff, bool smoothed);

    std::size_t Steps() const { return m_markets.front().grid.Steps(); }
    std::size_t DrawsPerPath() const { return Steps() * m_markets.front().model->FactorsPerStep(); }
    // One result per market, in the order given.
    std::vector<SimulationResult> RunMarkets(std::size_t paths, std::size_t threads);

private:
    using PathWorker = typename MonteCarloSimulator<T>::PathWorker;
    class Worker;
    std::unique_ptr<PathWorker> NewWorker() const override;

    std::vector<ScriptMarket<T>> m_markets;
    std::shared_ptr<const PathPayoff> m_payoff;
    bool m_smoothed;
};

}  // namespace zep
