#include "lum-solvers/RootFinders.hpp"

namespace zep::detail {

void FailRootSearch(const char* solver, const std::string& what) {
    ZEP_FAIL_IN(std::string("zep::") + solver + "Solve", std::string(solver) + ": " + what);
}

}  // namespace zep::detail
