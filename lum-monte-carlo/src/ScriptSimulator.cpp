#include "lum-monte-carlo/ScriptSimulator.hpp"

#include <algorithm>

namespace zep {

template <class T>
ScriptSimulator<T>::ScriptSimulator(std::unique_ptr<ScriptModelApi<T>> model,
                                    std::unique_ptr<RandomGen> generator, SimulationGrid grid,
                                    std::vector<T> numeraires,
                                    std::shared_ptr<const PathPayoff> payoff, T spot,
                                    bool smoothed)
    : MonteCarloSimulator<T>(std::move(generator), payoff->VariableNames().size()),
      m_model(std::move(model)),
      m_grid(std::move(grid)),
      m_numeraires(std::move(numeraires)),
      m_payoff(std::move(payoff)),
      m_spot(spot),
      m_smoothed(smoothed) {
    m_model->SetGrid(m_grid.times);
}

template <class T>
void ScriptSimulator<T>::SimulatePaths(RandomGen& generator, std::uint64_t first,
                                       std::uint64_t last, T* out) const {
    // Scratch for the whole thread, allocated once: the path loop allocates nothing.
    std::vector<T> normals(DrawsPerPath());
    std::vector<T> spots(m_grid.Steps());
    const std::size_t events = m_grid.eventStep.size();
    std::vector<ScenarioPoint> scenario(events);
    for (std::size_t e = 0; e < events; ++e) scenario[e].numeraire = m_numeraires[e];
    const std::size_t variables = m_payoff->VariableNames().size();
    const auto evaluator = m_payoff->NewEvaluator(m_smoothed);

    for (std::uint64_t path = first; path < last; ++path) {
        generator.StartPath(path);
        generator.NextPath(normals.data(), normals.size());
        m_model->SimulatePath(normals.data(), spots.data());
        for (std::size_t e = 0; e < events; ++e) {
            const std::int32_t step = m_grid.eventStep[e];
            scenario[e].spot = step < 0 ? m_spot : spots[step];
        }
        T* row = out + (path - first) * variables;
        std::fill(row, row + variables, T(0));
        evaluator->Evaluate(scenario.data(), row);
    }
}

template class ScriptSimulator<double>;

}  // namespace zep
