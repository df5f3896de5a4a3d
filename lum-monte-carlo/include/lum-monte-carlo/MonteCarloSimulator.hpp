// The threading frame of Monte Carlo pricing: splits the paths over native threads, each with
// its own generator derived from the master one, joins them and averages per variable.
#pragma once

#include <cstdint>
#include <memory>

#include "lum-monte-carlo/RandomGen.hpp"
#include "lum-monte-carlo/Simulator.hpp"

namespace zep {

template <class T>
class MonteCarloSimulator : public Simulator {
public:
    // Each of `threads` threads runs paths / threads paths; the last one also runs the
    // remainder. Every path's values are kept and summed in path order after the join, so the
    // result is bit-for-bit the same whatever the number of threads.
    SimulationResult Run(std::size_t paths, std::size_t threads) override;

protected:
    MonteCarloSimulator(std::unique_ptr<RandomGen> generator, std::size_t variables);

    // One thread's work: paths [first, last), writing `variables` values per path into `out`.
    virtual void SimulatePaths(RandomGen& generator, std::uint64_t first, std::uint64_t last,
                               T* out) const = 0;

private:
    std::unique_ptr<RandomGen> m_generator;
    std::size_t m_variables;
};

}  // namespace zep
