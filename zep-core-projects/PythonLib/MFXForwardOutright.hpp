// The Python face of an outright FX forward on BASE/QUOTE: its outright from spot and the two
// currency curves, or from forward points when they are given; NPV in the quote currency.
// Failures read "MFXForwardOutright::<operation> failed: ".
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "MWrapper.hpp"
#include "RateInputs.hpp"

namespace zep::python {

class MFXForwardOutright : public MWrapper<zep::FXForward> {
public:
    // forwardPoints None: the outright follows from the curves.
    MFXForwardOutright(int buySell, double baseNotional, double contractRate, const DateInput& deliveryDate, double spot,
                       const DateInput& spotDate, boost::shared_ptr<zep::YieldCurve> quoteCurve,
                       boost::shared_ptr<zep::YieldCurve> baseCurve, std::optional<double> forwardPoints = std::nullopt,
                       double pointScale = 1e4);

    double Outright() const;
    double NPV() const;
    double PV() const { return NPV(); }
    std::vector<zep::CashFlow> CashFlowSchedule() const;
    std::string Describe() const;

private:
    friend struct RiskAdapters;  // hands the instrument and its market to the risk layer
    double OutrightRate(const zep::FXForward& forward) const;
    std::optional<FXCurves> m_market;
    std::optional<double> m_forwardPoints;
    double m_pointScale = 1e4;
};

}  // namespace zep::python
