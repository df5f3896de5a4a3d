// Differential evolution (rand/1/bin) over a box: a population of candidate points, each trial
// made from three others, kept when it improves. Slow but global, so calibrations use it for a
// start point that a local method then refines. Seeded: the same call gives the same point.
#pragma once

#include <cstdint>

#include "lum-solvers/Optimizer.hpp"

namespace zep {

struct EvolutionSettings {
    int populationPerParameter = 15;
    int generations = 300;
    double weight = 0.7;     // F, the scale of the difference vector
    double crossover = 0.9;  // CR
    std::uint64_t seed = 20240101;
};

class DifferentialEvolution final : public Optimizer {
public:
    explicit DifferentialEvolution(EvolutionSettings settings = {}) : m_settings(settings) {}
    // The start point joins the first population.
    OptimizationResult Minimize(const Objective& objective, std::vector<double> start, const Box& box) const override;
    std::string Name() const override { return "DifferentialEvolution"; }

private:
    EvolutionSettings m_settings;
};

}  // namespace zep
