// An outright FX forward valued in its quote currency, its outright from spot and the two
// currency curves, or from forward points when they are quoted. FX_DELTA is the PV change for a
// 1% higher spot; DV01 moves both curves by one basis point together.
#pragma once

#include <optional>
#include <string>

#include <boost/shared_ptr.hpp>

#include "lum-interest-rates/FXForward.hpp"
#include "lum-risk-metrics/CurveInstrumentAdapter.hpp"

namespace zep::metrics {

struct FXForwardMarket {
    double spot = 0.0;
    Date spotDate;
    boost::shared_ptr<const YieldCurve> quoteCurve;
    boost::shared_ptr<const YieldCurve> baseCurve;
    std::optional<double> forwardPoints;  // quoted points replace the curves' outright
    double pointScale = 1e4;
    std::string pair;  // the name scenarios shock the spot by ("EURUSD"); empty: never shocked
};

class FXForwardAdapter : public CurveInstrumentAdapter {
public:
    FXForwardAdapter(boost::shared_ptr<const FXForward> forward, FXForwardMarket market);

    ProductType Product() const override { return ProductType::FX_FORWARD; }
    std::string Describe() const override { return m_forward->Describe(); }
    // Forward points, when quoted, stay as they are: a spot shock moves the outright one for one.
    double PVUnder(scenario::ShockedMarket& market) const override;
    std::vector<std::string> MarketNames() const override;
    MarketExposure Exposure() const override;

protected:
    MetricResult Evaluate(Metric metric) const override;
    double PVOn(MovedCurves& curves) const override;
    std::vector<boost::shared_ptr<const YieldCurve>> Curves() const override;

private:
    double PV(double spot, const YieldCurve& quoteCurve, const YieldCurve& baseCurve) const;

    boost::shared_ptr<const FXForward> m_forward;
    FXForwardMarket m_market;
};

}  // namespace zep::metrics
