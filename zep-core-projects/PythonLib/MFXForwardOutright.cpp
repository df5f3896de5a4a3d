#include "MFXForwardOutright.hpp"

#include <boost/make_shared.hpp>

namespace zep::python {

MFXForwardOutright::MFXForwardOutright(int buySell, double baseNotional, double contractRate,
                                       const DateInput& deliveryDate, double spot, const DateInput& spotDate,
                                       boost::shared_ptr<zep::YieldCurve> quoteCurve,
                                       boost::shared_ptr<zep::YieldCurve> baseCurve, std::optional<double> forwardPoints,
                                       double pointScale) {
    Guarded("MFXForwardOutright::MFXForwardOutright", [&] {
        FXCurves market(spot, spotDate, quoteCurve, baseCurve, "MFXForwardOutright");
        auto forward = boost::make_shared<zep::FXForward>(buySell, baseNotional, contractRate, deliveryDate.Value());
        if (forwardPoints) zep::FXForward::OutrightFromPoints(spot, *forwardPoints, pointScale);
        m_market.emplace(std::move(market));
        m_forwardPoints = forwardPoints;
        m_pointScale = pointScale;
        m_object = std::move(forward);
    });
}

double MFXForwardOutright::OutrightRate(const zep::FXForward& forward) const {
    return m_forwardPoints ? zep::FXForward::OutrightFromPoints(m_market->spot, *m_forwardPoints, m_pointScale)
                           : zep::FXForward::Outright(m_market->Market(), forward.Delivery());
}

double MFXForwardOutright::Outright() const {
    return Guarded("MFXForwardOutright::Outright", [&] {
        return OutrightRate(Object("zep::python::MFXForwardOutright::Outright"));
    });
}

double MFXForwardOutright::NPV() const {
    return Guarded("MFXForwardOutright::NPV", [&] {
        const auto& forward = Object("zep::python::MFXForwardOutright::NPV");
        return forward.PV(OutrightRate(forward), *m_market->quoteCurve);
    });
}

std::vector<zep::CashFlow> MFXForwardOutright::CashFlowSchedule() const {
    return Guarded("MFXForwardOutright::CashFlowSchedule", [&] {
        return Object("zep::python::MFXForwardOutright::CashFlowSchedule").CashFlows(m_market->Market());
    });
}

std::string MFXForwardOutright::Describe() const {
    return Guarded("MFXForwardOutright::Describe", [&] {
        return Object("zep::python::MFXForwardOutright::Describe").Describe();
    });
}

}  // namespace zep::python
