#include "zep-pde/BlackScholesFdSolver.hpp"

#include <cmath>

namespace zep {

BlackScholesFdSolver::BlackScholesFdSolver(const FdGridSpec& grid, double volatility, double drift,
                                           double timeToExpiry)
    : m_dt(timeToExpiry / static_cast<double>(grid.timeSteps)), m_steps(grid.timeSteps) {
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
    if (n < 3) return;  // two nodes: both ends, held
    // Right-hand side, then the tridiagonal system by the Thomas algorithm (ends fixed).
    for (std::size_t i = 1; i + 1 < n; ++i)
        m_rhs[i] = values[i] + (1.0 - theta) * dt *
                                   (m_lower[i] * values[i - 1] + m_centre[i] * values[i] + m_upper[i] * values[i + 1]);
    m_rhs[1] += theta * dt * m_lower[1] * values[0];
    m_rhs[n - 2] += theta * dt * m_upper[n - 2] * values[n - 1];
    double previousUpper = 0.0;
    for (std::size_t i = 1; i + 1 < n; ++i) {
        const double a = i > 1 ? -theta * dt * m_lower[i] : 0.0;
        const double b = 1.0 - theta * dt * m_centre[i];
        const double c = i + 2 < n ? -theta * dt * m_upper[i] : 0.0;
        const double denominator = b - a * previousUpper;
        m_scratch[i] = c / denominator;
        m_rhs[i] = (m_rhs[i] - a * m_rhs[i - 1]) / denominator;
        previousUpper = m_scratch[i];
    }
    for (std::size_t i = n - 2; i >= 1; --i) {
        values[i] = m_rhs[i] - (i + 2 < n ? m_scratch[i] * values[i + 1] : 0.0);
        if (i == 1) break;
    }
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
