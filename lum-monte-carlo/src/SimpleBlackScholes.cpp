#include "lum-monte-carlo/SimpleBlackScholes.hpp"

#include <cmath>

#include "lum-auxiliary/VectorMath.hpp"

namespace zep {

template <class T>
SimpleBlackScholes<T>::SimpleBlackScholes(const ModelInputs& inputs)
    : m_logSpot(std::log(inputs.spot)),
      m_drift(inputs.rate1 - inputs.rate2),
      m_volatility(inputs.volatility) {}

template <class T>
void SimpleBlackScholes<T>::SetGrid(const std::vector<T>& times) {
    m_stepDrift.resize(times.size());
    m_stepDeviation.resize(times.size());
    T previous = 0;
    for (std::size_t i = 0; i < times.size(); ++i) {
        const T dt = times[i] - previous;
        m_stepDrift[i] = (m_drift - m_volatility * m_volatility / 2) * dt;
        m_stepDeviation[i] = m_volatility * std::sqrt(dt);
        previous = times[i];
    }
}

template <class T>
void SimpleBlackScholes<T>::SimulatePath(const T* normals, T* spots) const {
    T logSpot = m_logSpot;
    const std::size_t steps = m_stepDrift.size();
    for (std::size_t i = 0; i < steps; ++i) {
        logSpot += m_stepDrift[i] + m_stepDeviation[i] * normals[i];
        spots[i] = logSpot;
    }
    ExpInPlace(spots, steps);
}

template class SimpleBlackScholes<double>;

}  // namespace zep
