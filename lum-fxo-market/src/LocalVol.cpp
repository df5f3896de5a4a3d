#include "lum-fxo-market/LocalVol.hpp"

#include <algorithm>
#include <cmath>

#include "lum-auxiliary/Error.hpp"

namespace zep {

LocalVol::LocalVol(double reference, const std::vector<double>& parameters)
    : m_reference(reference), m_parameters(parameters) {
    ZEP_REQUIRE(parameters.size() >= 6, "LocalVol needs six parameters: atmVol, skew, curvature, "
                                        "termSlope, minVol, maxVol");
    ZEP_REQUIRE(reference > 0.0, "LocalVol reference level must be positive");
    m_atmVol = parameters[0];
    m_skew = parameters[1];
    m_curvature = parameters[2];
    m_termSlope = parameters[3];
    m_minVol = parameters[4];
    m_maxVol = parameters[5];
    ZEP_REQUIRE(m_minVol > 0.0 && m_minVol <= m_maxVol,
                "LocalVol bounds must satisfy 0 < minVol <= maxVol");
}

double LocalVol::Volatility(double time, double spot) const {
    const double x = std::log(spot / m_reference);
    return std::clamp(m_atmVol + m_termSlope * time + (m_skew + m_curvature * x) * x, m_minVol,
                      m_maxVol);
}

}  // namespace zep
