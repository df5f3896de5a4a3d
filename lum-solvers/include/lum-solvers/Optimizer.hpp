// The small interface every calibration optimiser answers: minimise a function of a few
// parameters inside a box, from a start point, within a bounded number of evaluations.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zep {

using Objective = std::function<double(const std::vector<double>&)>;

struct Box {
    std::vector<double> lower;
    std::vector<double> upper;
};

struct OptimizationResult {
    std::vector<double> x;
    double value = 0.0;
    int evaluations = 0;
    bool converged = true;  // false: the iteration cap stopped the search, x is the best point reached
};

class Optimizer {
public:
    virtual ~Optimizer() = default;
    // Fails, naming the optimiser, when it cannot return a point (a non-finite objective
    // everywhere it looked, a box with lower > upper, an internal failure).
    virtual OptimizationResult Minimize(const Objective& objective, std::vector<double> start, const Box& box) const = 0;
    virtual std::string Name() const = 0;
};

namespace detail {
// Sizes agree, lower <= upper, and the start lies inside the box (clamped into it).
void CheckBox(const std::string& optimizer, std::vector<double>& start, const Box& box);
}  // namespace detail

}  // namespace zep
