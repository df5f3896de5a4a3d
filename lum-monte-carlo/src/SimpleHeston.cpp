#include "lum-monte-carlo/SimpleHeston.hpp"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "lum-auxiliary/Error.hpp"
#include "lum-auxiliary/VectorMath.hpp"

namespace zep {

template <class T>
SimpleHeston<T>::SimpleHeston(const ModelInputs& inputs)
    : m_logSpot(std::log(inputs.spot)), m_drift(inputs.rate1 - inputs.rate2) {
    const std::vector<double>& p = inputs.parameters;
    ZEP_REQUIRE(p.size() >= 5, "Heston Parameter size should be 5!");
    if (p[0] < 0.0 || p[1] < 0.0 || p[2] < 0.0 || !(std::abs(p[3]) <= 1.0) || p[4] < 0.0)
        throw std::invalid_argument("One or more of the Heston Parameters are incorrectly defined.");
    m_kappa = p[0];
    m_theta = p[1];
    m_xi = p[2];
    m_rho = p[3];
    m_v0 = p[4];
}

// Andersen's switching level between the quadratic and the exponential law.
constexpr double kCriticalPsi = 1.5;

template <class T>
void SimpleHeston<T>::SetGrid(const std::vector<T>& times) {
    m_steps.resize(times.size());
    T previous = 0;
    for (std::size_t i = 0; i < times.size(); ++i) {
        Step& step = m_steps[i];
        step.dt = times[i] - previous;
        previous = times[i];
        const T oneLessDecay = -std::expm1(-m_kappa * step.dt);
        // (1 - e^(-kappa dt)) / kappa, dt when the variance does not revert.
        const T revertedTime = m_kappa > 0 ? oneLessDecay / m_kappa : step.dt;
        step.decay = 1 - oneLessDecay;
        step.varianceFromStart = m_xi * m_xi * step.decay * revertedTime;
        step.varianceFromMean = m_theta * m_xi * m_xi * oneLessDecay * revertedTime / 2;
        // Trapezoid weights 1/2, 1/2 on the variance at both ends. Without volatility of
        // variance the variance path is known: no part of the spot's noise can be read off it.
        const T rho = m_xi > 0 ? m_rho : T(0);
        const T correlationTerm = m_xi > 0 ? rho / m_xi : T(0);
        const T drift = step.dt / 2 * (m_kappa * correlationTerm - T(0.5));
        step.k1 = drift - correlationTerm;
        step.k2 = drift + correlationTerm;
        step.k3 = step.dt / 2 * (1 - rho * rho);
        step.k4 = step.k3;
    }
}

// The variance after one step, and in martingaleShift K0* + (K1 + K3 / 2) v = -ln E[e^(A v')],
// A = K2 + K4 / 2: E[e^(A v')] is (1 - 2 A a)^(-1/2) e^(A b^2 a / (1 - 2 A a)) under the quadratic
// law, p + (1 - p) beta / (beta - A) under the exponential one. Where that moment does not exist
// (2 A a >= 1 or A >= beta: a strongly positive correlation over a long step) the uncorrected
// K0 = -rho kappa theta dt / xi is kept.
template <class T>
T SimpleHeston<T>::NextVariance(const Step& step, T variance, T zVariance, T& martingaleShift) const {
    const T mean = m_theta + (variance - m_theta) * step.decay;
    const T spread = variance * step.varianceFromStart + step.varianceFromMean;
    const T a = step.k2 + step.k4 / 2;
    const T uncorrected =
        (m_xi > 0 ? -m_rho * m_kappa * m_theta * step.dt / m_xi : T(0)) + (step.k1 + step.k3 / 2) * variance;
    if (!(spread > 0)) {  // no volatility of variance, or nothing left to diffuse: a known move
        martingaleShift = -a * mean;
        return mean;
    }
    const T psi = spread / (mean * mean);
    if (psi <= kCriticalPsi) {
        const T twoOverPsi = 2 / psi;
        const T b2 = twoOverPsi - 1 + std::sqrt(twoOverPsi * (twoOverPsi - 1));
        const T b = std::sqrt(b2);
        const T scale = mean / (1 + b2);
        const T denominator = 1 - 2 * a * scale;
        martingaleShift = denominator > 0 ? -a * b2 * scale / denominator + std::log1p(-2 * a * scale) / 2 : uncorrected;
        return scale * (b + zVariance) * (b + zVariance);
    }
    const T p = (psi - 1) / (psi + 1);
    const T beta = (1 - p) / mean;
    // 1 - U, U = N(zVariance) the uniform the law is drawn by, kept exact in the far tail.
    const T aboveUniform = std::erfc(zVariance / std::sqrt(T(2))) / 2;
    martingaleShift = a < beta ? -std::log(p + beta * (1 - p) / (beta - a)) : uncorrected;
    return aboveUniform >= 1 - p ? T(0) : std::log((1 - p) / aboveUniform) / beta;
}

template <class T>
void SimpleHeston<T>::SimulatePath(const T* normals, T* spots) const {
    T logSpot = m_logSpot;
    T variance = m_v0;
    const std::size_t steps = m_steps.size();
    for (std::size_t i = 0; i < steps; ++i) {
        const Step& step = m_steps[i];
        T shift;
        const T next = NextVariance(step, variance, normals[2 * i + 1], shift);
        // K0* + K1 v = shift - K3 v / 2.
        logSpot += m_drift * step.dt + shift - step.k3 / 2 * variance + step.k2 * next +
                   std::sqrt(step.k3 * variance + step.k4 * next) * normals[2 * i];
        variance = next;
        spots[i] = logSpot;
    }
    ExpInPlace(spots, steps);
}

template class SimpleHeston<double>;

}  // namespace zep
