// A simulation engine: runs a number of paths and reports, per output variable, the mean over
// the paths with its standard error.
#pragma once

#include <cstddef>
#include <vector>

namespace zep {

struct SimulationResult {
    std::vector<double> mean;
    std::vector<double> standardError;
    std::size_t paths = 0;
    std::size_t threads = 0;
};

class Simulator {
public:
    virtual ~Simulator() = default;
    virtual SimulationResult Run(std::size_t paths, std::size_t threads) = 0;
};

}  // namespace zep
