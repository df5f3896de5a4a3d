#include "lum-risk-metrics/BondAdapter.hpp"

#include <cmath>
#include <stdexcept>

namespace zep::metrics {

BondAdapter::BondAdapter(boost::shared_ptr<const Bond> bond, boost::shared_ptr<const YieldCurve> discountCurve,
                         double faceAmount)
    : m_bond(std::move(bond)), m_curve(std::move(discountCurve)), m_faceAmount(faceAmount) {
    if (!m_bond) throw std::invalid_argument("BondAdapter: the bond is None.");
    if (!m_curve) throw std::invalid_argument("BondAdapter: the discount curve is None.");
    if (!std::isfinite(faceAmount)) throw std::invalid_argument("BondAdapter: the face amount is not a finite number.");
}

double BondAdapter::PV(const YieldCurve& curve) const { return m_bond->PV(curve) * m_faceAmount / 100.0; }

double BondAdapter::PVOn(MovedCurves& curves) const { return PV(*curves.Of(m_curve)); }

MetricResult BondAdapter::Evaluate(Metric metric) const {
    switch (metric) {
        case Metric::PV:
        case Metric::MARKET_VALUE:
        case Metric::NPV: return MetricResult::Computed(metric, PV(*m_curve));
        case Metric::DV01: return MetricResult::Computed(metric, DV01());
        case Metric::KEY_RATE_DV01: return KeyRatesArePerPillar();
        case Metric::MODIFIED_DURATION: {
            const double pv = PV(*m_curve);
            if (pv == 0.0) return MetricResult::Unavailable(metric, "The bond has no value left to take a duration of.");
            return MetricResult::Computed(metric, -DV01() / (pv * kBasisPoint));
        }
        case Metric::DELTA:
        case Metric::GAMMA:
        case Metric::FX_DELTA: return MetricResult::Unavailable(metric, "A fixed-rate bond has no spot exposure.");
        case Metric::VEGA: return MetricResult::Unavailable(metric, "A fixed-rate bond has no volatility exposure.");
        default:
            return MetricResult::Unavailable(metric, MetricName(metric) + " is not computed for a fixed-rate bond.");
    }
}

}  // namespace zep::metrics
