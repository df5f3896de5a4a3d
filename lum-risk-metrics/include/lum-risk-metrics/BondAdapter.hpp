// A fixed-rate bond valued on its discount curve, for a face amount (prices are per 100 of it).
// Rate exposure only: DV01, key-rate DV01 and the modified duration DV01 implies; no spot,
// volatility or time sensitivities.
#pragma once

#include <boost/shared_ptr.hpp>

#include "lum-interest-rates/Bond.hpp"
#include "lum-risk-metrics/CurveInstrumentAdapter.hpp"

namespace zep::metrics {

class BondAdapter : public CurveInstrumentAdapter {
public:
    BondAdapter(boost::shared_ptr<const Bond> bond, boost::shared_ptr<const YieldCurve> discountCurve,
                double faceAmount = 100.0);

    ProductType Product() const override { return ProductType::FIXED_RATE_BOND; }
    std::string Describe() const override { return m_bond->Describe(); }

protected:
    MetricResult Evaluate(Metric metric) const override;
    double PVOn(MovedCurves& curves) const override;
    std::vector<boost::shared_ptr<const YieldCurve>> Curves() const override { return {m_curve}; }

private:
    double PV(const YieldCurve& curve) const;

    boost::shared_ptr<const Bond> m_bond;
    boost::shared_ptr<const YieldCurve> m_curve;
    double m_faceAmount;
};

}  // namespace zep::metrics
