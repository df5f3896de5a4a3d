// Least squares by Levenberg-Marquardt: the calibration workhorse for the few-parameter smile
// fits (SVI, SABR), where the residuals are smooth and a damped Gauss-Newton step converges in a
// handful of iterations from a sensible start.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace zep {

// Minimises sum_i r_i(p)^2 over the N parameters p. residuals(p, r) fills r (size M, fixed by the
// first call). The Jacobian is taken by central differences, so residuals need only be values.
template <std::size_t N, class Residuals>
std::array<double, N> LevenbergMarquardt(const Residuals& residuals, std::array<double, N> start,
                                         std::size_t residualCount, int maxIterations = 200,
                                         double tolerance = 1e-16) {
    std::vector<double> r(residualCount), trial(residualCount), bumpedUp(residualCount),
        bumpedDown(residualCount);
    std::vector<std::array<double, N>> jacobian(residualCount);
    auto squares = [](const std::vector<double>& v) {
        double sum = 0.0;
        for (double x : v) sum += x * x;
        return sum;
    };
    std::array<double, N> p = start;
    residuals(p, r);
    double cost = squares(r);
    double damping = 1e-3;
    for (int iteration = 0; iteration < maxIterations && cost > tolerance; ++iteration) {
        for (std::size_t j = 0; j < N; ++j) {
            const double h = 1e-7 * (1.0 + std::fabs(p[j]));
            std::array<double, N> up = p, down = p;
            up[j] += h;
            down[j] -= h;
            residuals(up, bumpedUp);
            residuals(down, bumpedDown);
            for (std::size_t i = 0; i < residualCount; ++i)
                jacobian[i][j] = (bumpedUp[i] - bumpedDown[i]) / (2.0 * h);
        }
        std::array<std::array<double, N>, N> normal{};
        std::array<double, N> gradient{};
        for (std::size_t i = 0; i < residualCount; ++i)
            for (std::size_t j = 0; j < N; ++j) {
                gradient[j] += jacobian[i][j] * r[i];
                for (std::size_t k = 0; k < N; ++k) normal[j][k] += jacobian[i][j] * jacobian[i][k];
            }
        bool improved = false;
        // Raise the damping until a step lowers the cost: from Gauss-Newton towards a short
        // gradient step.
        for (int attempt = 0; attempt < 30 && !improved; ++attempt) {
            std::array<std::array<double, N + 1>, N> system{};
            for (std::size_t j = 0; j < N; ++j) {
                for (std::size_t k = 0; k < N; ++k) system[j][k] = normal[j][k];
                system[j][j] += damping * (normal[j][j] + 1e-12);
                system[j][N] = -gradient[j];
            }
            // Gaussian elimination with partial pivoting on the small damped normal equations.
            bool singular = false;
            for (std::size_t c = 0; c < N && !singular; ++c) {
                std::size_t pivot = c;
                for (std::size_t row = c + 1; row < N; ++row)
                    if (std::fabs(system[row][c]) > std::fabs(system[pivot][c])) pivot = row;
                if (system[pivot][c] == 0.0) singular = true;
                std::swap(system[c], system[pivot]);
                for (std::size_t row = c + 1; row < N && !singular; ++row) {
                    const double factor = system[row][c] / system[c][c];
                    for (std::size_t k = c; k <= N; ++k) system[row][k] -= factor * system[c][k];
                }
            }
            if (singular) {
                damping *= 10.0;
                continue;
            }
            std::array<double, N> step{};
            for (std::size_t c = N; c-- > 0;) {
                double sum = system[c][N];
                for (std::size_t k = c + 1; k < N; ++k) sum -= system[c][k] * step[k];
                step[c] = sum / system[c][c];
            }
            std::array<double, N> candidate = p;
            for (std::size_t j = 0; j < N; ++j) candidate[j] += step[j];
            residuals(candidate, trial);
            const double trialCost = squares(trial);
            if (std::isfinite(trialCost) && trialCost < cost) {
                const double decrease = cost - trialCost;
                p = candidate;
                r.swap(trial);
                cost = trialCost;
                damping = std::max(damping * 0.3, 1e-12);
                improved = true;
                if (decrease <= 1e-15 * cost) return p;
            } else {
                damping *= 10.0;
            }
        }
        if (!improved) break;
    }
    return p;
}

}  // namespace zep
