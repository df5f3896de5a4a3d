#include "lum-risk-metrics/CreditDefaultSwapAdapter.hpp"

#include <stdexcept>

#include "lum-risk-metrics/ShockedMarket.hpp"

namespace zep::metrics {

CreditDefaultSwapAdapter::CreditDefaultSwapAdapter(boost::shared_ptr<const CreditDefaultSwap> cds,
                                                   boost::shared_ptr<const CreditCurve> credit,
                                                   boost::shared_ptr<const YieldCurve> discount, std::string issuer)
    : m_cds(std::move(cds)), m_credit(std::move(credit)), m_discount(std::move(discount)), m_issuer(std::move(issuer)) {
    if (!m_cds) throw std::invalid_argument("CreditDefaultSwapAdapter: the CDS is None.");
    if (!m_credit) throw std::invalid_argument("CreditDefaultSwapAdapter: the credit curve is None.");
    if (!m_discount) throw std::invalid_argument("CreditDefaultSwapAdapter: the discount curve is None.");
}

double CreditDefaultSwapAdapter::PVOn(MovedCurves& curves) const { return m_cds->PV(*m_credit, *curves.Of(m_discount)); }

double CreditDefaultSwapAdapter::PVUnder(scenario::ShockedMarket& market) const {
    return m_cds->PV(market.Credit(m_issuer, m_credit), *market.Curves().Of(m_discount));
}

std::vector<std::string> CreditDefaultSwapAdapter::MarketNames() const {
    std::vector<std::string> names = CurveInstrumentAdapter::MarketNames();
    if (!m_issuer.empty()) names.push_back(m_issuer);
    return names;
}

MarketExposure CreditDefaultSwapAdapter::Exposure() const {
    MarketExposure exposure = CurveInstrumentAdapter::Exposure();
    exposure.issuer = m_issuer;
    return exposure;
}

MetricResult CreditDefaultSwapAdapter::Evaluate(Metric metric) const {
    switch (metric) {
        case Metric::PV:
        case Metric::MARKET_VALUE:
        case Metric::NPV: return MetricResult::Computed(metric, m_cds->PV(*m_credit, *m_discount));
        case Metric::CS01: return MetricResult::Computed(metric, m_cds->CS01(*m_credit, *m_discount));
        case Metric::DV01: return MetricResult::Computed(metric, DV01());
        case Metric::KEY_RATE_DV01: return KeyRatesArePerPillar();
        case Metric::PAR_RATE: return MetricResult::Computed(metric, 100.0 * m_cds->ParSpread(*m_credit, *m_discount));
        case Metric::DELTA:
        case Metric::GAMMA:
        case Metric::FX_DELTA: return MetricResult::Unavailable(metric, "A CDS has no spot exposure: its credit exposure is CS01.");
        case Metric::VEGA: return MetricResult::Unavailable(metric, "A CDS has no volatility exposure.");
        default: return MetricResult::Unavailable(metric, MetricName(metric) + " is not computed for a CDS.");
    }
}

}  // namespace zep::metrics
