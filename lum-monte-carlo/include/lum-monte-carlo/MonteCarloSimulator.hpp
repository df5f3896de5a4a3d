// The threading frame of Monte Carlo pricing: the paths run in chunks of a fixed size, handed to
// native threads as they come free, each thread with its own generator derived from the master
// one and its own scratch; each chunk is summed in path order and the chunks are folded in chunk
// order by the calling thread. So the result is the same bits whatever the number of threads,
// memory does not grow with the number of paths, and between chunks the calling thread can stop
// the run or report progress (RunObserver).
#pragma once

#include <cstdint>
#include <memory>

#include "lum-monte-carlo/RandomGen.hpp"
#include "lum-monte-carlo/Simulator.hpp"

namespace zep {

template <class T>
class MonteCarloSimulator : public Simulator {
public:
    // Chunk size: a few milliseconds of work, small enough to answer an interrupt quickly,
    // large enough that handing chunks out costs nothing. Fixed, because the chunk sums are
    // part of the result's rounding.
    static constexpr std::size_t kChunkPaths = 1024;

    SimulationResult Run(std::size_t paths, std::size_t threads) override;

protected:
    MonteCarloSimulator(std::unique_ptr<RandomGen> generator, std::size_t variables);

    // One thread's simulation state: created once per thread and run, run after run, on
    // chunks of paths [first, last), writing `variables` values per path into `out`.
    class PathWorker {
    public:
        virtual ~PathWorker() = default;
        virtual void SimulatePaths(RandomGen& generator, std::uint64_t first, std::uint64_t last, T* out) = 0;
    };
    virtual std::unique_ptr<PathWorker> NewWorker() const = 0;

private:
    std::unique_ptr<RandomGen> m_generator;
    std::size_t m_variables;
};

}  // namespace zep
