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

template <class T>
void SimpleBlackScholes<T>::SimulatePaths(const T* normals, std::size_t paths, std::size_t steps, T* spots) const {
    // The log-spot recursion of four paths side by side: each addition waits for the previous
    // one of its path only, so four of them are in flight at once.
    std::size_t p = 0;
    for (; p + 4 <= paths; p += 4) {
        const T* n = normals + p * steps;
        T* s = spots + p * steps;
        T logSpot[4] = {m_logSpot, m_logSpot, m_logSpot, m_logSpot};
        for (std::size_t i = 0; i < steps; ++i) {
            for (std::size_t k = 0; k < 4; ++k) {
                logSpot[k] += m_stepDrift[i] + m_stepDeviation[i] * n[k * steps + i];
                s[k * steps + i] = logSpot[k];
            }
        }
        ExpInPlace(s, 4 * steps);
    }
    for (; p < paths; ++p) SimulatePath(normals + p * steps, spots + p * steps);
}

template class SimpleBlackScholes<double>;

}  // namespace zep
