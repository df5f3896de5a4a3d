#include "lum-monte-carlo/MonteCarloSimulator.hpp"

#include <cmath>
#include <exception>
#include <thread>

#include "lum-auxiliary/Error.hpp"

namespace zep {

template <class T>
MonteCarloSimulator<T>::MonteCarloSimulator(std::unique_ptr<RandomGen> generator,
                                            std::size_t variables)
    : m_generator(std::move(generator)), m_variables(variables) {}

template <class T>
SimulationResult MonteCarloSimulator<T>::Run(std::size_t paths, std::size_t threads) {
    ZEP_REQUIRE(paths > 0, "number of simulations must be positive");
    threads = std::max<std::size_t>(1, std::min(threads, paths));
    std::vector<T> values(paths * m_variables);

    if (threads == 1) {
        m_generator->StartPath(0);
        SimulatePaths(*m_generator, 0, paths, values.data());
    } else {
        std::vector<std::unique_ptr<RandomGen>> generators;
        for (std::size_t t = 0; t < threads; ++t) generators.push_back(m_generator->ForThread());
        std::vector<std::exception_ptr> failures(threads);
        std::vector<std::thread> workers;
        const std::size_t share = paths / threads;
        for (std::size_t t = 0; t < threads; ++t) {
            const std::uint64_t first = t * share;
            const std::uint64_t last = t + 1 == threads ? paths : first + share;
            workers.emplace_back([&, t, first, last] {
                try {
                    SimulatePaths(*generators[t], first, last, values.data() + first * m_variables);
                } catch (...) {
                    failures[t] = std::current_exception();
                }
            });
        }
        for (auto& worker : workers) worker.join();
        for (const auto& failure : failures)
            if (failure) std::rethrow_exception(failure);
    }

    SimulationResult result;
    result.paths = paths;
    result.threads = threads;
    result.mean.assign(m_variables, 0.0);
    result.standardError.assign(m_variables, 0.0);
    std::vector<double> squares(m_variables, 0.0);
    for (std::size_t p = 0; p < paths; ++p) {
        const T* row = values.data() + p * m_variables;
        for (std::size_t v = 0; v < m_variables; ++v) {
            result.mean[v] += row[v];
            squares[v] += row[v] * row[v];
        }
    }
    const double n = static_cast<double>(paths);
    for (std::size_t v = 0; v < m_variables; ++v) {
        result.mean[v] /= n;
        const double variance = std::max(squares[v] / n - result.mean[v] * result.mean[v], 0.0);
        result.standardError[v] = paths > 1 ? std::sqrt(variance / (n - 1)) : 0.0;
    }
    return result;
}

template class MonteCarloSimulator<double>;

}  // namespace zep
