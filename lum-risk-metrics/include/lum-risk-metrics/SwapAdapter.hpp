// A swap valued on the curves of its two legs (discount, projection and past fixings of each).
// DV01 moves every curve the swap reads by the same basis point; PAR_RATE is the fixed rate
// that makes it worth nothing, in percent.
#pragma once

#include <boost/shared_ptr.hpp>

#include "lum-interest-rates/Swap.hpp"
#include "lum-risk-metrics/CurveInstrumentAdapter.hpp"

namespace zep::metrics {

// The market of one leg, owned: the curves live as long as the adapter.
struct LegCurves {
    boost::shared_ptr<const YieldCurve> discount;
    boost::shared_ptr<const YieldCurve> projection;  // null: the leg projects on its discount curve
    boost::shared_ptr<const FixingStore> fixings;
};

class SwapAdapter : public CurveInstrumentAdapter {
public:
    SwapAdapter(boost::shared_ptr<const Swap> swap, LegCurves received, LegCurves paid,
                ProductType product = ProductType::IRS);

    ProductType Product() const override { return m_product; }
    std::string Describe() const override { return m_swap->Describe(); }

protected:
    MetricResult Evaluate(Metric metric) const override;
    double PVOn(MovedCurves& curves) const override;
    std::vector<boost::shared_ptr<const YieldCurve>> Curves() const override;

private:
    boost::shared_ptr<const Swap> m_swap;
    LegCurves m_received;
    LegCurves m_paid;
    ProductType m_product;
};

}  // namespace zep::metrics
