#include "zep-pde/BlackScholesFdSolver.hpp"

#include <algorithm>
#include <cmath>

#include "lum-auxiliary/Error.hpp"

namespace zep {

BlackScholesFdSolver::BlackScholesFdSolver(const FdGridSpec& grid, double volatility, double drift,
                                           double timeToExpiry)
    : m_lowerBoundary(grid.lower), m_upperBoundary(grid.upper), m_steps(grid.timeSteps) {
    LayOutSpots(grid);
    const double dt = timeToExpiry / static_cast<double>(grid.timeSteps);
    m_stepSizes.assign(m_steps, dt);
    m_times.resize(m_steps + 1);
    for (std::size_t k = 0; k < m_steps; ++k) m_times[k] = dt * static_cast<double>(k);
    m_times.back() = timeToExpiry;
    m_stopSteps = {m_steps};
    Assemble([volatility](double) { return volatility; }, drift);
}

BlackScholesFdSolver::BlackScholesFdSolver(const FdGridSpec& grid, FdCoefficients coefficients,
                                           const std::vector<double>& stops)
    : m_lowerBoundary(grid.lower), m_upperBoundary(grid.upper), m_coefficients(std::move(coefficients)) {
    ZEP_REQUIRE(m_coefficients.volatility && m_coefficients.drift, "Finite differences: coefficients are missing");
    ZEP_REQUIRE(!stops.empty() && stops.front() > 0.0, "Finite differences: the stops must be positive times");
    for (std::size_t j = 1; j < stops.size(); ++j)
        ZEP_REQUIRE(stops[j] > stops[j - 1], "Finite differences: the stops must increase");
    LayOutSpots(grid);
    const double horizon = stops.back();
    m_times.assign(1, 0.0);
    for (const double stop : stops) {
        const double from = m_times.back(), length = stop - from;
        const auto steps = static_cast<std::size_t>(
            std::max(1.0, std::round(static_cast<double>(grid.timeSteps) * length / horizon)));
        for (std::size_t i = 1; i < steps; ++i)
            m_times.push_back(from + length * static_cast<double>(i) / static_cast<double>(steps));
        m_times.push_back(stop);
        m_stopSteps.push_back(m_times.size() - 1);
    }
    m_steps = m_times.size() - 1;
    m_stepSizes.resize(m_steps);
    for (std::size_t k = 0; k < m_steps; ++k) m_stepSizes[k] = m_times[k + 1] - m_times[k];
}

void BlackScholesFdSolver::LayOutSpots(const FdGridSpec& grid) {
    const std::size_t n = grid.nodes;
    m_spacing = (grid.spotMax - grid.spotMin) / static_cast<double>(n - 1);
    m_spots.resize(n);
    m_uniform = grid.concentration <= 0.0;
    if (m_uniform) {
        for (std::size_t i = 0; i < n; ++i) m_spots[i] = grid.spotMin + m_spacing * static_cast<double>(i);
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
    m_scratch.resize(n);
    m_rhs.resize(n);
}

template <class VolatilityAt>
void BlackScholesFdSolver::Assemble(const VolatilityAt& volatilityAt, double drift) const {
    const std::size_t n = m_spots.size();
    const double h = m_spacing;
    for (std::size_t i = 1; i + 1 < n; ++i) {
        const double s = m_spots[i];
        const double volatility = volatilityAt(s);
        const double variance = 0.5 * volatility * volatility * s * s;
        if (m_uniform) {
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
}

void BlackScholesFdSolver::StepOver(std::vector<double>& values, double from, double dt, double theta) const {
    if (m_coefficients.volatility) {
        const double middle = from + 0.5 * dt;
        const auto& volatility = m_coefficients.volatility;
        Assemble([&](double spot) { return volatility(middle, spot); }, m_coefficients.drift(from, from + dt));
    }
    Step(values, dt, theta);
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

void BlackScholesFdSolver::March(std::vector<double>& values, const StepObserver& afterStep) const {
    for (std::size_t done = 1; done <= m_steps; ++done) {
        const double from = m_times[done - 1], size = m_stepSizes[done - 1];
        if (done == 1) {
            StepOver(values, from, size / 2.0, 1.0);
            StepOver(values, from + size / 2.0, size / 2.0, 1.0);
        } else {
            StepOver(values, from, size, 0.5);
        }
        if (afterStep) afterStep(done, values);
    }
}

void BlackScholesFdSolver::Roll(std::vector<double>& values, const StepObserver& afterStep,
                                std::vector<double>* previous) const {
    if (m_steps == 1 && previous) *previous = values;
    March(values, [&](std::size_t done, std::vector<double>& rolled) {
        const std::size_t k = m_steps - done;
        if (afterStep) afterStep(k, rolled);
        if (k == 1 && previous) *previous = rolled;
    });
}

}  // namespace zep
