#include "RiskAdapters.hpp"

#include "MBasisSwap.hpp"
#include "MBond.hpp"
#include "MFXForwardOutright.hpp"
#include "MVanillaOption.hpp"
#include "MVanillaSwap.hpp"

namespace zep::python {

std::unique_ptr<metrics::BondAdapter> RiskAdapters::Of(const MBond& bond, double faceAmount) {
    return std::make_unique<metrics::BondAdapter>(bond.m_object, bond.m_curve, faceAmount);
}

std::unique_ptr<metrics::SwapAdapter> RiskAdapters::Of(const MVanillaSwap& swap) {
    const zep::Swap& library = swap.Object("zep::python::SwapAdapter::SwapAdapter");
    const metrics::LegCurves curves{swap.m_curves->discount, swap.m_curves->projection, swap.m_curves->fixings};
    const bool overnight = library.LegOn(SwapSide::Receive).Terms().kind == CouponKind::Overnight ||
                           library.LegOn(SwapSide::Pay).Terms().kind == CouponKind::Overnight;
    return std::make_unique<metrics::SwapAdapter>(swap.m_object, curves, curves,
                                                  overnight ? metrics::ProductType::OIS : metrics::ProductType::IRS);
}

std::unique_ptr<metrics::SwapAdapter> RiskAdapters::Of(const MBasisSwap& swap) {
    swap.Object("zep::python::SwapAdapter::SwapAdapter");
    const auto curvesOf = [](const CurvePair& pair) { return metrics::LegCurves{pair.discount, pair.projection, pair.fixings}; };
    return std::make_unique<metrics::SwapAdapter>(swap.m_object, curvesOf(*swap.m_received), curvesOf(*swap.m_paid),
                                                  metrics::ProductType::BASIS_SWAP);
}

std::unique_ptr<metrics::FXForwardAdapter> RiskAdapters::Of(const MFXForwardOutright& forward, const std::string& pair) {
    forward.Object("zep::python::FXForwardAdapter::FXForwardAdapter");
    const FXCurves& market = *forward.m_market;
    return std::make_unique<metrics::FXForwardAdapter>(
        forward.m_object, metrics::FXForwardMarket{market.spot, market.spotDate, market.quoteCurve, market.baseCurve,
                                                   forward.m_forwardPoints, forward.m_pointScale, pair});
}

std::unique_ptr<metrics::VanillaOptionAdapter> RiskAdapters::Of(const MVanillaOption& option,
                                                                 const std::string& underlying) {
    option.Object("zep::python::VanillaOptionAdapter::VanillaOptionAdapter");
    return std::make_unique<metrics::VanillaOptionAdapter>(option.m_object, underlying);
}

}  // namespace zep::python
