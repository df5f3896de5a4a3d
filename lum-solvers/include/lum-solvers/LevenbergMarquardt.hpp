// Levenberg-Marquardt for small least-squares calibrations: minimises the sum of squared
// residuals, stepping between Gauss-Newton (small damping) and gradient descent (large), with a
// forward-difference Jacobian. Parameters are kept inside the box by clamping each trial point.
#pragma once

#include <algorithm>
#include <array>
#include <functional>
#include <limits>
#include <vector>

#include "lum-solvers/Optimizer.hpp"

namespace zep {

using Residuals = std::function<std::vector<double>(const std::vector<double>&)>;

struct LeastSquaresSettings {
    int maxIterations = 1000;
    double tolerance = 1e-12;       // stop when a step moves no parameter by more than this (relative)
    double jacobianStep = 1e-7;     // relative step of the finite-difference Jacobian
    // At the iteration cap: fail, or hand back the best point with result.converged false (a
    // calibration that reports its fit error can still use it).
    bool failWhenNotConverged = true;
};

class LevenbergMarquardt {
public:
    explicit LevenbergMarquardt(LeastSquaresSettings settings = {}) : m_settings(settings) {}

    // result.value is the sum of squared residuals at result.x.
    OptimizationResult Minimize(const Residuals& residuals, std::vector<double> start, const Box& box) const;

private:
    LeastSquaresSettings m_settings;
};

// A fit of N unbounded parameters whose residuals are written into a vector of residualCount
// values, fill(parameters, residuals): the form the smile calibrations take.
template <std::size_t N, class Fill>
std::array<double, N> FitLeastSquares(const Fill& fill, const std::array<double, N>& start, std::size_t residualCount) {
    const Residuals residuals = [&](const std::vector<double>& p) {
        std::array<double, N> parameters;
        std::copy(p.begin(), p.end(), parameters.begin());
        std::vector<double> r(residualCount);
        fill(parameters, r);
        return r;
    };
    const double infinity = std::numeric_limits<double>::infinity();
    const OptimizationResult fit = LevenbergMarquardt().Minimize(
        residuals, std::vector<double>(start.begin(), start.end()),
        {std::vector<double>(N, -infinity), std::vector<double>(N, infinity)});
    std::array<double, N> result;
    std::copy(fit.x.begin(), fit.x.end(), result.begin());
    return result;
}

}  // namespace zep
