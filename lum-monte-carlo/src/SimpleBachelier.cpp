#include "lum-monte-carlo/SimpleBachelier.hpp"

#include <cmath>

namespace zep {

template <class T>
SimpleBachelier<T>::SimpleBachelier(const ModelInputs& inputs)
    : m_spot(inputs.spot), m_drift(inputs.rate1 - inputs.rate2), m_volatility(inputs.volatility) {}

template <class T>
T SimpleBachelier<T>::StepDeviation(T drift, T dt) {
    // expm1 keeps the variance exact when the drift is tiny; at zero drift it is plain dt.
    if (std::abs(drift * dt) < 1e-12) return std::sqrt(dt);
    return std::sqrt(std::expm1(2 * drift * dt) / (2 * drift));
}

template <class T>
void SimpleBachelier<T>::SetGrid(const std::vector<T>& times) {
    m_growth.resize(times.size());
    m_stepDeviation.resize(times.size());
    T previous = 0;
    for (std::size_t i = 0; i < times.size(); ++i) {
        const T dt = times[i] - previous;
        m_growth[i] = std::exp(m_drift * dt);
        m_stepDeviation[i] = m_volatility * StepDeviation(m_drift, dt);
        previous = times[i];
    }
}

template <class T>
void SimpleBachelier<T>::SimulatePath(const T* normals, T* spots) const {
    T spot = m_spot;
    const std::size_t steps = m_growth.size();
    for (std::size_t i = 0; i < steps; ++i) {
        spot = spot * m_growth[i] + m_stepDeviation[i] * normals[i];
        spots[i] = spot;
    }
}

template class SimpleBachelier<double>;

}  // namespace zep
