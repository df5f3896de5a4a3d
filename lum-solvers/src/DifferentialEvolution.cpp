#include "lum-solvers/DifferentialEvolution.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "lum-auxiliary/Error.hpp"

namespace zep {

OptimizationResult DifferentialEvolution::Minimize(const Objective& objective, std::vector<double> start,
                                                   const Box& box) const {
    detail::CheckBox("DifferentialEvolution", start, box);
    const std::size_t n = start.size();
    const std::size_t size = std::max<std::size_t>(4, static_cast<std::size_t>(m_settings.populationPerParameter) * n);
    std::mt19937_64 random(m_settings.seed);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    OptimizationResult result;
    const auto evaluate = [&](const std::vector<double>& x) {
        ++result.evaluations;
        const double value = objective(x);
        return std::isfinite(value) ? value : std::numeric_limits<double>::infinity();
    };
    std::vector<std::vector<double>> population(size, std::vector<double>(n));
    std::vector<double> values(size);
    population[0] = start;
    for (std::size_t p = 1; p < size; ++p)
        for (std::size_t j = 0; j < n; ++j) population[p][j] = box.lower[j] + unit(random) * (box.upper[j] - box.lower[j]);
    for (std::size_t p = 0; p < size; ++p) values[p] = evaluate(population[p]);

    std::uniform_int_distribution<std::size_t> pick(0, size - 1), dimension(0, n - 1);
    std::vector<double> trial(n);
    for (int generation = 0; generation < m_settings.generations; ++generation) {
        for (std::size_t p = 0; p < size; ++p) {
            std::size_t a, b, c;
            do a = pick(random); while (a == p);
            do b = pick(random); while (b == p || b == a);
            do c = pick(random); while (c == p || c == a || c == b);
            const std::size_t forced = dimension(random);  // at least one coordinate crosses over
            for (std::size_t j = 0; j < n; ++j) {
                const bool cross = j == forced || unit(random) < m_settings.crossover;
                const double mutant = population[a][j] + m_settings.weight * (population[b][j] - population[c][j]);
                trial[j] = cross ? std::clamp(mutant, box.lower[j], box.upper[j]) : population[p][j];
            }
            const double value = evaluate(trial);
            if (value <= values[p]) {
                population[p] = trial;
                values[p] = value;
            }
        }
    }
    const std::size_t best = static_cast<std::size_t>(std::min_element(values.begin(), values.end()) - values.begin());
    if (!std::isfinite(values[best])) ZEP_FAIL("DifferentialEvolution: the objective is not finite anywhere it looked");
    result.x = population[best];
    result.value = values[best];
    return result;
}

}  // namespace zep
