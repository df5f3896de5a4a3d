// A credit default swap valued on its issuer's credit curve and its discount curve. CS01 is the PV
// change when every par spread of the credit curve rises by one basis point (the curve
// bootstrapped again); DV01 and key rates move the discount curve with the hazard rates held.
// Scenarios move its discount curve by the curve's label and its credit curve by the issuer's name.
#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "lum-interest-rates/CreditCurve.hpp"
#include "lum-interest-rates/CreditDefaultSwap.hpp"
#include "lum-risk-metrics/CurveInstrumentAdapter.hpp"

namespace zep::metrics {

class CreditDefaultSwapAdapter : public CurveInstrumentAdapter {
public:
    // issuer: the name credit scenarios shock its credit curve by; empty: never shocked.
    CreditDefaultSwapAdapter(boost::shared_ptr<const CreditDefaultSwap> cds, boost::shared_ptr<const CreditCurve> credit,
                             boost::shared_ptr<const YieldCurve> discount, std::string issuer = "");

    ProductType Product() const override { return ProductType::CDS; }
    std::string Describe() const override { return m_cds->Describe(); }
    double PVUnder(scenario::ShockedMarket& market) const override;
    std::vector<std::string> MarketNames() const override;
    MarketExposure Exposure() const override;

protected:
    MetricResult Evaluate(Metric metric) const override;
    double PVOn(MovedCurves& curves) const override;
    std::vector<boost::shared_ptr<const YieldCurve>> Curves() const override { return {m_discount}; }

private:
    boost::shared_ptr<const CreditDefaultSwap> m_cds;
    boost::shared_ptr<const CreditCurve> m_credit;
    boost::shared_ptr<const YieldCurve> m_discount;
    std::string m_issuer;
};

}  // namespace zep::metrics
