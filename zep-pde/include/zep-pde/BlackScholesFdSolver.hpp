// The Black-Scholes equation for an option's undiscounted value U(t, S) on a spot grid (uniform,
// or stretched to concentrate nodes at a centre),
// solved backward from expiry: dU/dt + sigma^2 S^2 / 2 d2U/dS2 + b S dU/dS = 0, with b the drift
// that carries the spot to its delivery forward (as the closed forms do). Crank-Nicolson in time,
// started by two fully implicit half steps (Rannacher) so that a discontinuous payoff does not
// ring; central differences in space, second order. Each end node either keeps its value (a
// knocked-out barrier, a level where the value is settled) or follows the interior linearly
// (no gamma there: far from the strike, any payoff of the spot is close to linear).
// The same equation marches forward in maturity (Dupire's equation for calls across strikes), and
// its volatility and drift may vary in time and space: a local volatility sigma(t, S).
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

// Coefficients that vary. Time is how long the equation has run from its initial values: the
// time to expiry when a payoff rolls back, the maturity when calls march forward.
struct FdCoefficients {
    // sigma(time, spot), read at each step's mid-time so that Crank-Nicolson stays second order.
    std::function<double(double time, double spot)> volatility;
    // The drift b averaged over a step [from, to]: exact for a drift given by a curve's forwards.
    std::function<double(double from, double to)> drift;
};

class BlackScholesFdSolver {
public:
    // Step observers get the step index and the values after that step.
    using StepObserver = std::function<void(std::size_t, std::vector<double>&)>;

    BlackScholesFdSolver(const FdGridSpec& grid, double volatility, double drift, double timeToExpiry);
    // Coefficients varying in time and space, marched to the last of `stops` (increasing, positive
    // times) with about grid.timeSteps steps shared out by length, at least one per interval, so
    // that a step ends on every stop.
    BlackScholesFdSolver(const FdGridSpec& grid, FdCoefficients coefficients, const std::vector<double>& stops);

    const std::vector<double>& Spots() const { return m_spots; }
    // The first step's length: the step of a uniform time grid.
    double TimeStep() const { return m_stepSizes.front(); }
    // The number of steps after which each stop is reached.
    const std::vector<std::size_t>& StopSteps() const { return m_stopSteps; }

    // Rolls `values` (one per node, the payoff at expiry on entry) back to time 0. After each
    // step, `afterStep(stepIndex, values)` may add what the product pays at that date; step
    // indices count back from M - 1 (the step ending at expiry) to 0 (the one ending today).
    // `previous` receives the values one step after today, for theta.
    void Roll(std::vector<double>& values, const StepObserver& afterStep, std::vector<double>* previous = nullptr) const;

    // Marches `values` (the initial values on entry) through every step; `afterStep(done, values)`
    // sees them after each, `done` counting the steps taken (1 to M).
    void March(std::vector<double>& values, const StepObserver& afterStep) const;

private:
    void LayOutSpots(const FdGridSpec& grid);
    // The operator L at each interior node for a volatility read by `volatilityAt(spot)`.
    template <class VolatilityAt>
    void Assemble(const VolatilityAt& volatilityAt, double drift) const;
    // Re-assembles L for the step from `from` of length dt when the coefficients vary, then steps.
    void StepOver(std::vector<double>& values, double from, double dt, double theta) const;
    // values <- (I - theta dt L)^-1 (I + (1 - theta) dt L) values, ends held.
    void Step(std::vector<double>& values, double dt, double theta) const;

    std::vector<double> m_spots;
    FdBoundary m_lowerBoundary, m_upperBoundary;
    bool m_uniform;
    double m_spacing;  // of a uniform grid
    std::vector<double> m_times, m_stepSizes;  // M + 1 times from 0 and the M steps between
    std::vector<std::size_t> m_stopSteps;
    std::size_t m_steps;
    FdCoefficients m_coefficients;  // empty for constant coefficients
    // The operator L at each interior node: lower, centre and upper coefficients (re-assembled per
    // step when the coefficients vary).
    mutable std::vector<double> m_lower, m_centre, m_upper;
    // A linear end extrapolates V0 = (1 + r) V1 - r V2, r the ratio of the two end spacings.
    double m_lowRatio = 1.0, m_highRatio = 1.0;
    mutable std::vector<double> m_scratch, m_rhs;
};

}  // namespace zep
