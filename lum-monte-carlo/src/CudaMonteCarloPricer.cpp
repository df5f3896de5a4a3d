#include "lum-monte-carlo/CudaMonteCarloPricer.hpp"

#include <stdexcept>

namespace zep {

void CudaMonteCarloPricer::Price() {
    throw std::runtime_error(
        "CudaMonteCarloPricer: GPU scripting not available in this build. Use CUDA-enabled build "
        "for GPU pricing.");
}

}  // namespace zep
