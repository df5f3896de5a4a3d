// Heston stochastic volatility:
//   dS / S = (rate1 - rate2) dt + sqrt(v) dW1,  dv = kappa (theta - v) dt + xi sqrt(v) dW2,
//   d<W1, W2> = rho dt.
// Its five parameters, in order: kappa (mean reversion speed), theta (long-run variance),
// xi (volatility of variance), rho (spot-variance correlation), v0 (initial variance).
// Discretised by Andersen's quadratic-exponential scheme (2008): each step draws the variance
// from a law with the exact conditional mean and variance of the square-root process, a scaled
// non-central chi-square with one degree of freedom a (b + Z)^2 while the variance stays well
// away from 0 (psi = s^2 / m^2 <= 1.5, the step's conditional variance over its squared mean),
// else a mass at 0 plus an exponential tail; the variance never turns negative. The log-spot step integrates the variance by the trapezoid
// and takes the correlated part from the variance move itself:
//   ln S' = ln S + (rate1 - rate2) dt + K0* + K1 v + K2 v' + sqrt(K3 v + K4 v') Z,
// with K0* chosen so that E[S' | v] = S e^((rate1 - rate2) dt) exactly (the martingale
// correction: the discounted spot stays a martingale whatever the step). Not exact in the
// spot's law: steps are at most three days.
#pragma once

#include "lum-monte-carlo/ScriptModelApi.hpp"

namespace zep {

template <class T>
class SimpleHeston final : public ScriptModelApi<T> {
public:
    explicit SimpleHeston(const ModelInputs& inputs);

    ModelType Type() const override { return ModelType::Heston; }
    std::size_t FactorsPerStep() const override { return 2; }
    bool StepsExactly() const override { return false; }
    bool PathsMoveWithForward() const override { return true; }
    void SetGrid(const std::vector<T>& times) override;
    void SimulatePath(const T* normals, T* spots) const override;

private:
    // The coefficients of one step of the grid.
    struct Step {
        T dt;
        T decay;                 // e^(-kappa dt)
        T varianceFromStart;     // xi^2 e^(-kappa dt) (1 - e^(-kappa dt)) / kappa
        T varianceFromMean;      // theta xi^2 (1 - e^(-kappa dt))^2 / (2 kappa)
        T k1, k2, k3, k4;        // Andersen's log-spot coefficients
    };

    // The variance a step later, drawn by the normal zVariance, and the log-spot shift that keeps
    // the spot a martingale given it (see the source).
    T NextVariance(const Step& step, T variance, T zVariance, T& martingaleShift) const;

    T m_logSpot, m_drift;
    T m_kappa, m_theta, m_xi, m_rho, m_v0;
    std::vector<Step> m_steps;
};

}  // namespace zep
