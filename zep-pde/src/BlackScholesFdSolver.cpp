#include "zep-pde/BlackScholesFdSolver.hpp"

#include <cmath>

namespace zep {

BlackScholesFdSolver::BlackScholesFdSolver(const FdGridSpec& grid, double volatility, double drift,
                                           double timeToExpiry)
    : m_lowerBoundary(grid.lower), m_upperBoundary(grid.upper),
      m_dt(timeToExpiry / static_cast<double>(grid.timeSteps)), m_steps(grid.timeSteps) {
    const std::size_t n = grid.nodes;
    const double h = (grid.spotMax - grid.spotMin) / static_cast<double>(n - 1);
    m_spots.resize(n);
    for (std::size_t i = 0; i < n; ++i) m_spots[i] = grid.spotMin + h * static_cast<double>(i);
    m_lower.assign(n, 0.0);
    m_centre.assign(n, 0.0);
    m_upper.assign(n, 0.0);
    for (std::size_t i = 1; i + 1 < n; ++i) {
        const double s = m_spots[i];
        const double diffusion = 0.5 * volatility * volatility * s * s / (h * h);
        const double convection = drift * s / (2.0 * h);
        m_lower[i] = diffusion - convection;
        m_centre[i] = -2.0 * diffusion;
        m_upper[i] = diffusion + convection;
    }
    m_scratch.resize(n);
    m_rhs.resize(n);
}

void BlackScholesFdSolver::Step(std::vector<double>& values, double dt, double theta) const {
    const std::size_t n = values.size();
    if (n < 4) return;  // fewer than two interior nodes: nothing to step
    // A linear end, V0 = 2 V1 - V2, folds into the first interior row (and likewise at the top),
    // which keeps the system tridiagonal.
    const bool linearLow = m_lowerBoundary == FdBoundary::Linear, linearHigh = m_upperBoundary == FdBoundary::Linear;
    std::vector<double>& diagonal = m_scratch;
    const auto lower = [&](std::size_t i) { return i == n - 2 && linearHigh ? m_lower[i] - m_upper[i] : m_lower[i]; };
    const auto centre = [&](std::size_t i) {
        double c = m_centre[i];
        if (i == 1 && linearLow) c += 2.0 * m_lower[i];
        if (i == n - 2 && linearHigh) c += 2.0 * m_upper[i];
        return c;
    };
    const auto upper = [&](std::size_t i) { return i == 1 && linearLow ? m_upper[i] - m_lower[i] : m_upper[i]; };
    for (std::size_t i = 1; i + 1 < n; ++i) {
        const double below = i > 1 ? lower(i) * values[i - 1] : (linearLow ? 0.0 : m_lower[i] * values[0]);
        const double above = i + 2 < n ? upper(i) * values[i + 1] : (linearHigh ? 0.0 : m_upper[i] * values[n - 1]);
        m_rhs[i] = values[i] + (1.0 - theta) * dt * (below + centre(i) * values[i] + above);
    }
    if (!linearLow) m_rhs[1] += theta * dt * m_lower[1] * values[0];
    if (!linearHigh) m_rhs[n - 2] += theta * dt * m_upper[n - 2] * values[n - 1];
    // Thomas algorithm on the interior rows.
    double previousUpper = 0.0;
    for (std::size_t i = 1; i + 1 < n; ++i) {
        const double a = i > 1 ? -theta * dt * lower(i) : 0.0;
        const double b = 1.0 - theta * dt * centre(i);
        const double c = i + 2 < n ? -theta * dt * upper(i) : 0.0;
        const double denominator = b - a * previousUpper;
        diagonal[i] = c / denominator;
        m_rhs[i] = (m_rhs[i] - a * m_rhs[i - 1]) / denominator;
        previousUpper = diagonal[i];
    }
    for (std::size_t i = n - 2; i >= 1; --i) {
        values[i] = m_rhs[i] - (i + 2 < n ? diagonal[i] * values[i + 1] : 0.0);
        if (i == 1) break;
    }
    if (linearLow) values[0] = 2.0 * values[1] - values[2];
    if (linearHigh) values[n - 1] = 2.0 * values[n - 2] - values[n - 3];
}

void BlackScholesFdSolver::Roll(std::vector<double>& values,
                                const std::function<void(std::size_t, std::vector<double>&)>& afterStep,
                                std::vector<double>* previous) const {
    if (m_steps == 1 && previous) *previous = values;
    for (std::size_t k = m_steps; k-- > 0;) {
        if (k + 1 == m_steps) {
            Step(values, m_dt / 2.0, 1.0);
            Step(values, m_dt / 2.0, 1.0);
        } else {
            Step(values, m_dt, 0.5);
        }
        if (afterStep) afterStep(k, values);
        if (k == 1 && previous) *previous = values;
    }
}

}  // namespace zep
