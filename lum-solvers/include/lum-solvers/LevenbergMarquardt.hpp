// Levenberg-Marquardt for small least-squares calibrations: minimises the sum of squared
// residuals, stepping between Gauss-Newton (small damping) and gradient descent (large), with a
// forward-difference Jacobian. Parameters are kept inside the box by clamping each trial point.
#pragma once

#include <functional>
#include <vector>

#include "lum-solvers/Optimizer.hpp"

namespace zep {

using Residuals = std::function<std::vector<double>(const std::vector<double>&)>;

struct LeastSquaresSettings {
    int maxIterations = 1000;
    double tolerance = 1e-12;       // stop when a step moves no parameter by more than this (relative)
    double jacobianStep = 1e-7;     // relative step of the finite-difference Jacobian
};

class LevenbergMarquardt {
public:
    explicit LevenbergMarquardt(LeastSquaresSettings settings = {}) : m_settings(settings) {}

    // result.value is the sum of squared residuals at result.x.
    OptimizationResult Minimize(const Residuals& residuals, std::vector<double> start, const Box& box) const;

private:
    LeastSquaresSettings m_settings;
};

}  // namespace zep
