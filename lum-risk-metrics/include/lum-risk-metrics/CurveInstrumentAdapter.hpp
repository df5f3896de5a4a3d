// The part every instrument valued on discount curves shares: DV01 and key-rate DV01 follow
// from its PV on moved copies of the curves it reads, whatever the instrument.
#pragma once

#include <vector>

#include <boost/shared_ptr.hpp>

#include "lum-risk-metrics/CurveShift.hpp"
#include "lum-risk-metrics/InstrumentAdapter.hpp"

namespace zep::metrics {

class CurveInstrumentAdapter : public InstrumentAdapter {
public:
    double PVUnder(scenario::ShockedMarket& market) const override;
    // The labels of its curves; an unlabelled curve cannot be named by a scenario.
    std::vector<std::string> MarketNames() const override;
    MarketExposure Exposure() const override;

protected:
    // The PV on the curves `curves` hands out in place of the instrument's own.
    virtual double PVOn(MovedCurves& curves) const = 0;
    // Every curve the PV reads, each once.
    virtual std::vector<boost::shared_ptr<const YieldCurve>> Curves() const = 0;

    double DV01() const;
    MetricResultVector EvaluateProfile(Metric metric) const override;
    // What Compute answers for KEY_RATE_DV01, which has no single figure.
    static MetricResult KeyRatesArePerPillar();
};

}  // namespace zep::metrics
