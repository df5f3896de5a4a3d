// The Black-Scholes equation for an option's undiscounted value U(t, S) on a spot grid (uniform,
// or stretched to concentrate nodes at a centre),
// solved backward from expiry: dU/dt + sigma^2 S^2 / 2 d2U/dS2 + b S dU/dS = 0, with b the drift
// that carries the spot to its delivery forward (as the closed forms do). Crank-Nicolson in time,
// started by two fully implicit half steps (Rannacher) so that a discontinuous payoff does not
// ring; central differences in space, second order. Each end node either keeps its value (a
// knocked-out barrier, a level where the value is settled) or follows the interior linearly
// (no gamma there: far from the strike, any payoff of the spot is close to linear).
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

namespace zep {

enum class FdBoundary { Held, Linear };

struct FdGridSpec {
    std::size_t nodes;      // N, spot nodes including both ends
    std::size_t timeSteps;  // M
    double spotMin;
    double spotMax;
    FdBoundary lower = FdBoundary::Linear;
    FdBoundary upper = FdBoundary::Linear;
    // 0: evenly spaced spots. Otherwise spots S = centre + c sinh(x), x evenly spaced and
    // c = concentration (spotMax - spotMin): the smaller the concentration, the denser the nodes
    // at the centre (a strike, where the payoff has its kink) and the sparser far from it.
    double concentration = 0.0;
    double centre = 0.0;
};

class BlackScholesFdSolver {
public:
    BlackScholesFdSolver(const FdGridSpec& grid, double volatility, double drift, double timeToExpiry);

    const std::vector<double>& Spots() const { return m_spots; }
    double TimeStep() const { return m_dt; }

    // Rolls `values` (one per node, the payoff at expiry on entry) back to time 0. After each
    // step, `afterStep(stepIndex, values)` may add what the product pays at that date; step
    // indices count back from M - 1 (the step ending at expiry) to 0 (the one ending today).
    // `previous` receives the values one step after today, for theta.
    void Roll(std::vector<double>& values, const std::function<void(std::size_t, std::vector<double>&)>& afterStep,
              std::vector<double>* previous = nullptr) const;

private:
    // values <- (I - theta dt L)^-1 (I + (1 - theta) dt L) values, ends held.
    void Step(std::vector<double>& values, double dt, double theta) const;

    std::vector<double> m_spots;
    FdBoundary m_lowerBoundary, m_upperBoundary;
    double m_dt;
    std::size_t m_steps;
    // The operator L at each interior node: lower, centre and upper coefficients.
    std::vector<double> m_lower, m_centre, m_upper;
    // A linear end extrapolates V0 = (1 + r) V1 - r V2, r the ratio of the two end spacings.
    double m_lowRatio = 1.0, m_highRatio = 1.0;
    mutable std::vector<double> m_scratch, m_rhs;
};

}  // namespace zep
