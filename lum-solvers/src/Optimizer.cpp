#include "lum-solvers/Optimizer.hpp"

#include <algorithm>
#include <cmath>

#include "lum-auxiliary/Error.hpp"

namespace zep::detail {

void CheckBox(const std::string& optimizer, std::vector<double>& start, const Box& box) {
    const std::string function = "zep::" + optimizer + "::Minimize";
    if (start.empty()) ZEP_FAIL_IN(function, optimizer + ": no parameters to optimise");
    if (box.lower.size() != start.size() || box.upper.size() != start.size())
        ZEP_FAIL_IN(function, optimizer + ": the box and the start point differ in size");
    for (std::size_t i = 0; i < start.size(); ++i) {
        if (!(box.lower[i] <= box.upper[i]))
            ZEP_FAIL_IN(function, optimizer + ": lower bound above upper bound for parameter " + std::to_string(i));
        if (!std::isfinite(start[i])) ZEP_FAIL_IN(function, optimizer + ": the start point is not finite");
        start[i] = std::clamp(start[i], box.lower[i], box.upper[i]);
    }
}

}  // namespace zep::detail
