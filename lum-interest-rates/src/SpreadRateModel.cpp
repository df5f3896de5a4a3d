#include "lum-interest-rates/SpreadRateModel.hpp"

#include <cmath>

#include "lum-auxiliary/Error.hpp"

namespace zep {

SpreadRateModel::SpreadRateModel(boost::shared_ptr<const YieldCurve> base, double spread)
    : m_base(std::move(base)), m_spread(spread) {
    ZEP_REQUIRE(m_base, "SpreadRateModel: no base curve");
    ZEP_REQUIRE(std::isfinite(spread), "SpreadRateModel: the spread must be a number");
}

SpreadRateModel::SpreadRateModel(boost::shared_ptr<const YieldCurve> base, boost::shared_ptr<const YieldCurve> spreadCurve)
    : m_base(std::move(base)), m_spreadCurve(std::move(spreadCurve)) {
    ZEP_REQUIRE(m_base, "SpreadRateModel: no base curve");
    ZEP_REQUIRE(m_spreadCurve, "SpreadRateModel: no spread curve");
}

double SpreadRateModel::Rate(double t) const {
    const double spread = m_spreadCurve ? m_spreadCurve->ZeroRate(t, true, Continuous) : m_spread;
    return m_base->ZeroRate(t, true, Continuous) + spread;
}

}  // namespace zep
