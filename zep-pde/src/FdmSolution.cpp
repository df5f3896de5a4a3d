#include "zep-pde/FdmSolution.hpp"

#include <algorithm>
#include <cmath>

#include "lum-auxiliary/Error.hpp"

namespace zep {

FdmSolution::FdmSolution(std::vector<double> spots, std::vector<double> today, std::vector<double> oneStepLater,
                         double timeStep, double discount, std::string interpolation)
    : m_spots(std::move(spots)), m_today(std::move(today)), m_later(std::move(oneStepLater)), m_timeStep(timeStep),
      m_discount(discount), m_interpolation(std::move(interpolation)) {
    ZEP_REQUIRE(m_interpolation == "linear" || m_interpolation == "cubic",
                "Only 'linear' and 'cubic' interpolation implemented.");
    ZEP_REQUIRE(m_interpolation == "linear" || m_spots.size() >= 4, "Cubic interpolation requires at least 4 points.");
}

// The spot's fractional node index: exact on any grid, and on a grid stretched by a smooth map
// (BlackScholesFdSolver's sinh grid) the coordinate in which the nodes are evenly spaced.
double FdmSolution::Position(double spot) const {
    const std::size_t n = m_spots.size();
    if (!(spot > m_spots[0])) return 0.0;
    if (!(spot < m_spots[n - 1])) return static_cast<double>(n - 1);
    const std::size_t i = static_cast<std::size_t>(std::upper_bound(m_spots.begin(), m_spots.end(), spot) - m_spots.begin()) - 1;
    return static_cast<double>(i) + (spot - m_spots[i]) / (m_spots[i + 1] - m_spots[i]);
}

// The node spacing around the spot: the step of the grid's own difference quotients.
double FdmSolution::Spacing(double spot) const {
    const std::size_t i = std::min(static_cast<std::size_t>(Position(spot)), m_spots.size() - 2);
    return m_spots[i + 1] - m_spots[i];
}

double FdmSolution::Interpolate(const std::vector<double>& values, double spot) const {
    const std::size_t n = m_spots.size();
    const double position = Position(spot);
    if (m_interpolation == "linear") {
        const std::size_t i = std::min(static_cast<std::size_t>(position), n - 2);
        const double w = position - static_cast<double>(i);
        return (1.0 - w) * values[i] + w * values[i + 1];
    }
    // Lagrange's cubic through the four nodes around the spot (shifted inward at the ends).
    const std::size_t first = std::min(static_cast<std::size_t>(std::max(position - 1.0, 0.0)), n - 4);
    const double x = position - static_cast<double>(first);
    double sum = 0.0;
    for (int j = 0; j < 4; ++j) {
        double weight = 1.0;
        for (int m = 0; m < 4; ++m)
            if (m != j) weight *= (x - m) / static_cast<double>(j - m);
        sum += weight * values[first + static_cast<std::size_t>(j)];
    }
    return sum;
}

double FdmSolution::Value(double spot) const { return m_discount * Interpolate(m_today, spot); }

double FdmSolution::Greek(const std::string& name, double spot) const {
    const double h = Spacing(spot);
    if (name == "price") return Value(spot);
    if (name == "delta") return (Value(spot + h) - Value(spot - h)) / (2.0 * h);
    if (name == "gamma") return (Value(spot + h) - 2.0 * Value(spot) + Value(spot - h)) / (h * h);
    if (name == "theta")
        return m_discount * (Interpolate(m_later, spot) - Interpolate(m_today, spot)) / m_timeStep / 365.0;
    ZEP_FAIL("Unknown Greek: " + name);
}

}  // namespace zep
