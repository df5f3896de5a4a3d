// The source of the Gaussian shocks that drive a simulation: per path, one standard normal draw
// per time step and risk factor.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace zep {

class RandomGen {
public:
    virtual ~RandomGen() = default;

    // Positions the generator at the first draw of path `pathIndex`. The draws of a path depend
    // only on the generator's seed and the path index, so a price does not depend on how the
    // paths are split over threads, and a bumped re-pricing sees the base run's numbers.
    virtual void StartPath(std::uint64_t pathIndex) = 0;
    // Fills the `count` standard normal draws of the current path.
    virtual void NextPath(double* normals, std::size_t count) = 0;

    // An independent generator for one worker thread, derived from this master generator.
    // Raises unless the concrete generator supports parallel use.
    virtual std::unique_ptr<RandomGen> ForThread() const;
};

}  // namespace zep
