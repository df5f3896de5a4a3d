#include "lum-monte-carlo/SimpleDupire.hpp"

#include <algorithm>
#include <cmath>

#include "lum-auxiliary/Error.hpp"
#include "lum-auxiliary/VectorMath.hpp"
#include "lum-fxo-market/FXLocalVolSurface.hpp"

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
      m_localVol(inputs.localVolatility ? nullptr
                                        : std::make_shared<LocalVol>(reference, CheckedDupireParameters(inputs.parameters))),
      m_market(inputs.localVolatility),
      m_marketShift(inputs.localVolatilityShift) {}

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
    if (m_market) TabulateMarket(times);
}

template <class T>
void SimpleDupire<T>::TabulateMarket(const std::vector<T>& times) {
    const std::size_t steps = times.size();
    m_table.assign(steps * kTableNodes, 0);
    if (steps == 0) return;
    const T horizon = times.back();
    const T logForward = std::log(m_spot) + m_drift * horizon;
    // The width follows the market's own volatility at the horizon, read at the forward.
    const T spread = m_market->Volatility(horizon, std::exp(logForward)) * std::sqrt(horizon);
    const T halfWidth = std::max<T>(kTableWidth * spread, kTableMinimumHalfWidth);
    m_firstLogSpot = logForward - halfWidth;
    m_logSpotStep = 2 * halfWidth / static_cast<T>(kTableNodes - 1);
    m_nodesPerLogSpot = 1 / m_logSpotStep;
    for (std::size_t i = 0; i < steps; ++i) {
        const T middle = m_start[i] + m_dt[i] / 2;
        for (std::size_t j = 0; j < kTableNodes; ++j) {
            const T spot = std::exp(m_firstLogSpot + static_cast<T>(j) * m_logSpotStep);
            const T sigma = m_market->Volatility(middle, spot) + m_marketShift;
            ZEP_REQUIRE(sigma > 0.0, "Dupire: the shifted local volatility is not positive");
            m_table[i * kTableNodes + j] = sigma;
        }
    }
}

template <class T>
T SimpleDupire<T>::MarketVolatility(std::size_t step, T logSpot) const {
    const T* row = m_table.data() + step * kTableNodes;
    const T position = (logSpot - m_firstLogSpot) * m_nodesPerLogSpot;
    if (!(position > 0)) return row[0];  // below the table, or NaN
    if (position >= static_cast<T>(kTableNodes - 1)) return row[kTableNodes - 1];
    const auto node = static_cast<std::size_t>(position);
    const T weight = position - static_cast<T>(node);
    return row[node] + weight * (row[node + 1] - row[node]);
}

template <class T>
void SimpleDupire<T>::SimulatePath(const T* normals, T* spots) const {
    const std::size_t steps = m_dt.size();
    if (m_market) {
        T logSpot = std::log(m_spot);
        for (std::size_t i = 0; i < steps; ++i) {
            const T sigma = MarketVolatility(i, logSpot);
            logSpot += (m_drift - sigma * sigma / 2) * m_dt[i] + sigma * m_sqrtDt[i] * normals[i];
            spots[i] = logSpot;
        }
        ExpInPlace(spots, steps);
        return;
    }
    T spot = m_spot;
    for (std::size_t i = 0; i < steps; ++i) {
        const T sigma = m_localVol->Volatility(m_start[i], spot);
        spot *= std::exp((m_drift - sigma * sigma / 2) * m_dt[i] + sigma * m_sqrtDt[i] * normals[i]);
        spots[i] = spot;
    }
}

template <class T>
void SimpleDupire<T>::SimulatePaths(const T* normals, std::size_t paths, std::size_t steps, T* spots) const {
    if (!m_market) {
        ScriptModelApi<T>::SimulatePaths(normals, paths, steps, spots);
        return;
    }
    // Four paths side by side: each step's table read waits on the previous step of its own
    // path only, so four reads and updates are in flight at once.
    std::size_t p = 0;
    for (; p + 4 <= paths; p += 4) {
        const T* n = normals + p * steps;
        T* s = spots + p * steps;
        T logSpot[4];
        for (T& x : logSpot) x = std::log(m_spot);
        for (std::size_t i = 0; i < steps; ++i) {
            for (std::size_t k = 0; k < 4; ++k) {
                const T sigma = MarketVolatility(i, logSpot[k]);
                logSpot[k] += (m_drift - sigma * sigma / 2) * m_dt[i] + sigma * m_sqrtDt[i] * n[k * steps + i];
                s[k * steps + i] = logSpot[k];
            }
        }
        ExpInPlace(s, 4 * steps);
    }
    for (; p < paths; ++p) SimulatePath(normals + p * steps, spots + p * steps);
}

template class SimpleDupire<double>;

}  // namespace zep
