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

template <class T>
void SimpleHeston<T>::SetGrid(const std::vector<T>& times) {
    m_dt.resize(times.size());
    m_sqrtDt.resize(times.size());
    T previous = 0;
    for (std::size_t i = 0; i < times.size(); ++i) {
        m_dt[i] = times[i] - previous;
        m_sqrtDt[i] = std::sqrt(m_dt[i]);
        previous = times[i];
    }
}

template <class T>
void SimpleHeston<T>::SimulatePath(const T* normals, T* spots) const {
    const T orthogonal = std::sqrt(1 - m_rho * m_rho);
    T logSpot = m_logSpot;
    T variance = m_v0;
    const std::size_t steps = m_dt.size();
    for (std::size_t i = 0; i < steps; ++i) {
        const T z1 = normals[2 * i];
        const T z2 = normals[2 * i + 1];
        const T positive = std::max(variance, T(0));
        const T deviation = std::sqrt(positive) * m_sqrtDt[i];
        logSpot += (m_drift - positive / 2) * m_dt[i] + deviation * z1;
        variance += m_kappa * (m_theta - positive) * m_dt[i] +
                    m_xi * deviation * (m_rho * z1 + orthogonal * z2);
        spots[i] = logSpot;
    }
    ExpInPlace(spots, steps);
}

template class SimpleHeston<double>;

}  // namespace zep
