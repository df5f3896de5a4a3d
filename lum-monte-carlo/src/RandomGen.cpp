#include "lum-monte-carlo/RandomGen.hpp"

#include "lum-auxiliary/Error.hpp"

namespace zep {

std::unique_ptr<RandomGen> RandomGen::ForThread() const {
    ZEP_FAIL("Concrete random generator cannot be used for parallel simulations");
}

}  // namespace zep
