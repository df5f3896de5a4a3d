#include "lum-monte-carlo/SimpleDupire.hpp"

#include <cmath>

#include "lum-auxiliary/Error.hpp"

namespace zep {

const std::vector<double>& CheckedDupireParameters(const std::vector<double>& parameters) {
    ZEP_REQUIRE(!parameters.empty(), "Dupire parameters empty!");
    ZEP_REQUIRE(parameters.size() >= 6, "Dupire Parameter size should be 6!");
    return parameters;
}

template <class T>
SimpleDupire<T>::SimpleDupire(const ModelInputs& inputs, double reference)
    : m_spot(inputs.spot),
      m_drift(inputs.rate1 - inputs.rate2),
      m_localVol(std::make_shared<LocalVol>(reference, CheckedDupireParameters(inputs.parameters))) {}

template <class T>
void SimpleDupire<T>::SetGrid(const std::vector<T>& times) {
    m_start.resize(times.size());
    m_dt.resize(times.size());
    m_sqrtDt.resize(times.size());
    T previous = 0;
    for (std::size_t i = 0; i < times.size(); ++i) {
        m_start[i] = previous;
        m_dt[i] = times[i] - previous;
        m_sqrtDt[i] = std::sqrt(m_dt[i]);
        previous = times[i];
    }
}

template <class T>
void SimpleDupire<T>::SimulatePath(const T* normals, T* spots) const {
    T spot = m_spot;
    const std::size_t steps = m_dt.size();
    for (std::size_t i = 0; i < steps; ++i) {
        const T sigma = m_localVol->Volatility(m_start[i], spot);
        spot *= std::exp((m_drift - sigma * sigma / 2) * m_dt[i] + sigma * m_sqrtDt[i] * normals[i]);
        spots[i] = spot;
    }
}

template class SimpleDupire<double>;

}  // namespace zep
