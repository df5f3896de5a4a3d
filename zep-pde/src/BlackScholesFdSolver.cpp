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
    const bool uniform = grid.concentration <= 0.0;
    if (uniform) {
        for (std::size_t i = 0; i < n; ++i) m_spots[i] = grid.spotMin + h * static_cast<double>(i);
    } else {
        const double scale = grid.concentration * (grid.spotMax - grid.spotMin);
        const double from = std::asinh((grid.spotMin - grid.centre) / scale);
        const double to = std::asinh((grid.spotMax - grid.centre) / scale);
        for (std::size_t i = 0; i < n; ++i)
            m_spots[i] = grid.centre + scale * std::sinh(from + (to - from) * static_cast<double>(i) / static_cast<double>(n - 1));
        m_spots.front() = grid.spotMin;
        m_spots.back() = grid.spotMax;
        if (n >= 3) {
            m_lowRatio = (m_spots[1] - m_spots[0]) / (m_spots[2] - m_spots[1]);
            m_highRatio = (m_spots[n - 1] - m_spots[n - 2]) / (m_spots[n - 2] - m_spots[n - 3]);
        }
    }
    m_lower.assign(n, 0.0);
    m_centre.assign(n, 0.0);
    m_upper.assign(n, 0.0);
    for (std::size_t i = 1; i + 1 < n; ++i) {
        const double s = m_spots[i];
        const double variance = 0.5 * volatility * volatility * s * s;
        if (uniform) {
            const double diffusion = variance / (h * h);
            const double convection = drift * s / (2.0 * h);
            m_lower[i] = diffusion - convection;
            m_centre[i] = -2.0 * diffusion;
            m_upper[i] = diffusion + convection;
        } else {
            // Three-point second-order differences on uneven spacings below (hm) and above (hp).
            const double hm = m_spots[i] - m_spots[i - 1], hp = m_spots[i + 1] - m_spots[i];
            const double slope = drift * s;
            m_lower[i] = (2.0 * variance - slope * hp) / (hm * (hm + hp));
            m_upper[i] = (2.0 * variance + slope * hm) / (hp * (hm + hp));
            m_centre[i] = (-2.0 * variance + slope * (hp - hm)) / (hm * hp);
        }
    }
    m_scratch.resize(n);
    m_rhs.resize(n);
}

void BlackScholesFdSolver::Step(std::vector<double>& values, double dt, double theta) const {
    const std::size_t n = values.size();
    if (n < 4) return;  // fewer than two interior nodes: nothing to step
    // A linear end, V0 = (1 + r) V1 - r V2, folds into the first interior row (and likewise at the top),
    // which keeps the system tridiagonal.
    const bool linearLow = m_lowerBoundary == FdBoundary::Linear, linearHigh = m_upperBoundary == FdBoundary::Linear;
    std::vector<double>& diagonal = m_scratch;
    const auto lower = [&](std::size_t i) {
        return i == n - 2 && linearHigh ? m_lower[i] - m_highRatio * m_upper[i] : m_lower[i];
    };
    const auto centre = [&](std::size_t i) {
        double c = m_centre[i];
        if (i == 1 && linearLow) c += (1.0 + m_lowRatio) * m_lower[i];
        if (i == n - 2 && linearHigh) c += (1.0 + m_highRatio) * m_upper[i];
        return c;
    };
    const auto upper = [&](std::size_t i) {
        return i == 1 && linearLow ? m_upper[i] - m_lowRatio * m_lower[i] : m_upper[i];
    };
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
    if (linearLow) values[0] = (1.0 + m_lowRatio) * values[1] - m_lowRatio * values[2];
    if (linearHigh) values[n - 1] = (1.0 + m_highRatio) * values[n - 2] - m_highRatio * values[n - 3];
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
