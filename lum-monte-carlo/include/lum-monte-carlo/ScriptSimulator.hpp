// Monte Carlo simulation of a scripted product: the model draws each path's spots on the grid,
// the event dates pick their spots out of it, and the payoff script runs on the scenario.
#pragma once

#include <memory>

#include "lum-monte-carlo/MonteCarloSimulator.hpp"
#include "lum-monte-carlo/PathPayoff.hpp"
#include "lum-monte-carlo/ScriptModelApi.hpp"
#include "lum-monte-carlo/SimulationGrid.hpp"

namespace zep {

template <class T>
class ScriptSimulator final : public MonteCarloSimulator<T> {
public:
    // `numeraires`: per event date, the factor its payments are multiplied by.
    ScriptSimulator(std::unique_ptr<ScriptModelApi<T>> model, std::unique_ptr<RandomGen> generator,
                    SimulationGrid grid, std::vector<T> numeraires,
                    std::shared_ptr<const PathPayoff> payoff, T spot, bool smoothed);

    std::size_t DrawsPerPath() const { return m_grid.Steps() * m_model->FactorsPerStep(); }

private:
    void SimulatePaths(RandomGen& generator, std::uint64_t first, std::uint64_t last,
                       T* out) const override;

    std::unique_ptr<ScriptModelApi<T>> m_model;
    SimulationGrid m_grid;
    std::vector<T> m_numeraires;
    std::shared_ptr<const PathPayoff> m_payoff;
    T m_spot;
    bool m_smoothed;
};

}  // namespace zep
