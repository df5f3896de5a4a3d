#include "lum-solvers/LevenbergMarquardt.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

double SumOfSquares(const std::vector<double>& r) {
    double sum = 0.0;
    for (const double value : r) sum += value * value;
    return sum;
}

// Solves the small dense system a x = b (a symmetric positive definite) by Cholesky; false when
// it is not positive definite.
bool SolveNormalEquations(std::vector<double> a, std::vector<double>& b, std::size_t n) {
    for (std::size_t j = 0; j < n; ++j) {
        double diagonal = a[j * n + j];
        for (std::size_t k = 0; k < j; ++k) diagonal -= a[j * n + k] * a[j * n + k];
        if (!(diagonal > 0.0)) return false;
        a[j * n + j] = std::sqrt(diagonal);
        for (std::size_t i = j + 1; i < n; ++i) {
            double value = a[i * n + j];
            for (std::size_t k = 0; k < j; ++k) value -= a[i * n + k] * a[j * n + k];
            a[i * n + j] = value / a[j * n + j];
        }
    }
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t k = 0; k < i; ++k) b[i] -= a[i * n + k] * b[k];
        b[i] /= a[i * n + i];
    }
    for (std::size_t i = n; i-- > 0;) {
        for (std::size_t k = i + 1; k < n; ++k) b[i] -= a[k * n + i] * b[k];
        b[i] /= a[i * n + i];
    }
    return true;
}

}  // namespace

OptimizationResult LevenbergMarquardt::Minimize(const Residuals& residuals, std::vector<double> start,
                                                const Box& box) const {
    detail::CheckBox("LevenbergMarquardt", start, box);
    const std::size_t n = start.size();
    OptimizationResult result{start, 0.0, 0};
    const auto evaluate = [&](const std::vector<double>& x) {
        ++result.evaluations;
        return residuals(x);
    };
    const auto finite = [](const std::vector<double>& r) {
        return std::all_of(r.begin(), r.end(), [](double value) { return std::isfinite(value); });
    };
    std::vector<double> r = evaluate(start);
    if (!finite(r)) ZEP_FAIL("LevenbergMarquardt: the residuals are not finite at the start point");
    double cost = SumOfSquares(r);
    double damping = 1e-3;
    for (int iteration = 0; iteration < m_settings.maxIterations; ++iteration) {
        // Forward-difference Jacobian, stepping inward at an upper bound.
        const std::size_t m = r.size();
        std::vector<double> jacobian(m * n);
        for (std::size_t j = 0; j < n; ++j) {
            std::vector<double> x = result.x;
            double h = m_settings.jacobianStep * std::max(std::abs(x[j]), 1.0);
            if (x[j] + h > box.upper[j]) h = -h;
            x[j] += h;
            const std::vector<double> shifted = evaluate(x);
            if (!finite(shifted)) ZEP_FAIL("LevenbergMarquardt: the residuals are not finite next to the current point");
            for (std::size_t i = 0; i < m; ++i) jacobian[i * n + j] = (shifted[i] - r[i]) / h;
        }
        std::vector<double> normal(n * n, 0.0), gradient(n, 0.0);
        for (std::size_t i = 0; i < m; ++i)
            for (std::size_t j = 0; j < n; ++j) {
                gradient[j] -= jacobian[i * n + j] * r[i];
                for (std::size_t k = 0; k < n; ++k) normal[j * n + k] += jacobian[i * n + j] * jacobian[i * n + k];
            }
        // Marquardt's scaling by the diagonal, floored so that a parameter the residuals barely
        // see is still damped.
        double diagonalFloor = 0.0;
        for (std::size_t j = 0; j < n; ++j) diagonalFloor = std::max(diagonalFloor, normal[j * n + j]);
        diagonalFloor = std::max(diagonalFloor * 1e-9, 1e-300);
        bool improved = false;
        // Raise the damping until a step lowers the cost (bounded: the damping grows tenfold).
        for (int attempt = 0; attempt < 20 && !improved; ++attempt) {
            std::vector<double> damped = normal, step = gradient;
            for (std::size_t j = 0; j < n; ++j) damped[j * n + j] += damping * std::max(normal[j * n + j], diagonalFloor);
            if (SolveNormalEquations(damped, step, n)) {
                std::vector<double> trial = result.x;
                for (std::size_t j = 0; j < n; ++j) trial[j] = std::clamp(trial[j] + step[j], box.lower[j], box.upper[j]);
                const std::vector<double> trialResiduals = evaluate(trial);
                // A trial outside the residuals' domain counts as a failed step: more damping.
                const double trialCost = finite(trialResiduals) ? SumOfSquares(trialResiduals)
                                                                : std::numeric_limits<double>::infinity();
                if (trialCost < cost) {
                    // Converged when the residuals vanish or the step no longer moves the point; a
                    // small gain in cost alone is not enough (a narrow valley gains little per step).
                    bool stepNegligible = true;
                    for (std::size_t j = 0; j < n; ++j)
                        stepNegligible &= std::abs(trial[j] - result.x[j]) <= m_settings.tolerance * (std::abs(result.x[j]) + m_settings.tolerance);
                    const bool converged = trialCost <= 1e-30 || stepNegligible;
                    result.x = trial;
                    r = trialResiduals;
                    cost = trialCost;
                    damping = std::max(damping / 10.0, 1e-12);
                    improved = true;
                    if (converged) {
                        result.value = cost;
                        return result;
                    }
                    continue;
                }
            }
            damping *= 10.0;
        }
        // No step lowers the cost: the point is a minimum to the precision of the Jacobian.
        if (!improved) {
            result.value = cost;
            return result;
        }
    }
    if (m_settings.failWhenNotConverged)
        ZEP_FAIL("LevenbergMarquardt: no convergence after " + std::to_string(m_settings.maxIterations) + " iterations");
    // Every accepted step lowered the cost: the current point is the best one reached.
    result.value = cost;
    result.converged = false;
    return result;
}

}  // namespace zep
