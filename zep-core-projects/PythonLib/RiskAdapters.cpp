#include "RiskAdapters.hpp"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "MBasisSwap.hpp"
#include "MBill.hpp"
#include "MBond.hpp"
#include "MCreditDefaultSwap.hpp"
#include "MDigitalOption.hpp"
#include "MFRA.hpp"
#include "MFXForwardOutright.hpp"
#include "MFXNDF.hpp"
#include "MFXSwap.hpp"
#include "MFloatingRateNote.hpp"
#include "MVanillaBarriers.hpp"
#include "MVanillaOption.hpp"
#include "MVanillaSwap.hpp"
#include "MXCurrencySwap.hpp"
#include "MXScriptStructure.hpp"

namespace zep::python {
namespace {

using CurveList = std::vector<boost::shared_ptr<const YieldCurve>>;

CurveList Distinct(std::initializer_list<boost::shared_ptr<const YieldCurve>> curves) {
    CurveList distinct;
    for (const auto& curve : curves)
        if (curve && std::find(distinct.begin(), distinct.end(), curve) == distinct.end()) distinct.push_back(curve);
    return distinct;
}

// A leg's market on the curves a move hands out; the fixings never move.
LegMarket MovedLegMarket(const CurvePair& curves, metrics::MovedCurves& moved, double fxRate = 1.0) {
    return {moved.Of(curves.discount), moved.Of(curves.projection), curves.fixings.get(), fxRate};
}

FXMarket MovedFXMarket(const FXCurves& market, metrics::MovedCurves& moved, double spot) {
    return {spot, market.spotDate, moved.Of(market.quoteCurve), moved.Of(market.baseCurve)};
}

// The option's PV on a moved market by its own method; the method is checked once, here.
metrics::SpotVolPricing SpotVolPricingOf(boost::shared_ptr<const VanillaBarriers> option, const std::string& underlying,
                                         int pricingMethod) {
    option->PV(pricingMethod);
    return {metrics::ProductType::FX_BARRIER_OPTION, "Barrier option", underlying, option->GetSpot(),
            option->GetVolatility(), [option, pricingMethod](const metrics::OptionMarketMove& move) {
                return option->OnMovedMarket(move.spot, move.volatilityShift, move.riskReversal25Shift,
                                             move.butterfly25Shift).PV(pricingMethod);
            }};
}

// The digital reads its smile off its volatility source, which smile-quote shocks do not reshape.
metrics::SpotVolPricing SpotVolPricingOf(boost::shared_ptr<const DigitalOption> option, const std::string& underlying,
                                         int pricingMethod) {
    option->PV(pricingMethod);
    return {metrics::ProductType::FX_DIGITAL_OPTION, "Digital option", underlying, option->GetSpot(),
            option->GetVolatility(), [option, pricingMethod](const metrics::OptionMarketMove& move) {
                return option->OnMovedMarket(move.spot, move.volatilityShift).PV(pricingMethod);
            }};
}

}  // namespace

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

std::unique_ptr<FRAAdapter> RiskAdapters::Of(const MFRA& fra) {
    fra.Object("zep::python::FRAAdapter::FRAAdapter");
    const boost::shared_ptr<const FRA> contract = fra.m_object;
    const CurvePair curves = *fra.m_curves;
    metrics::CurvePricing pricing{metrics::ProductType::FRA, contract->Describe(),
                                  Distinct({curves.discount, curves.projection}),
                                  [contract, curves](metrics::MovedCurves& moved, double) {
                                      return contract->PV(MovedLegMarket(curves, moved));
                                  }};
    pricing.ownMetrics[metrics::Metric::PAR_RATE] = [contract, curves] { return 100.0 * contract->ParRate(curves.Market()); };
    return std::make_unique<FRAAdapter>(std::move(pricing));
}

std::unique_ptr<FloatingRateNoteAdapter> RiskAdapters::Of(const MFloatingRateNote& note, double faceAmount) {
    note.Object("zep::python::FloatingRateNoteAdapter::FloatingRateNoteAdapter");
    if (!std::isfinite(faceAmount))
        throw std::invalid_argument("FloatingRateNoteAdapter: the face amount is not a finite number.");
    const boost::shared_ptr<const FloatingRateNote> contract = note.m_object;
    const CurvePair curves = *note.m_curves;
    return std::make_unique<FloatingRateNoteAdapter>(metrics::CurvePricing{
        metrics::ProductType::FRN, contract->Describe(), Distinct({curves.discount, curves.projection}),
        [contract, curves, faceAmount](metrics::MovedCurves& moved, double) {
            return contract->PV(MovedLegMarket(curves, moved)) * faceAmount / 100.0;
        }});
}

std::unique_ptr<BillAdapter> RiskAdapters::Of(const MBill& bill) {
    bill.Object("zep::python::BillAdapter::BillAdapter");
    if (!bill.m_curve) throw std::invalid_argument("BillAdapter: the bill has no discount curve.");
    const boost::shared_ptr<const Bill> contract = bill.m_object;
    const boost::shared_ptr<const YieldCurve> curve = bill.m_curve;
    return std::make_unique<BillAdapter>(metrics::CurvePricing{
        metrics::ProductType::SHORT_TERM_PAPER, contract->Describe(), {curve},
        [contract, curve](metrics::MovedCurves& moved, double) { return contract->PV(*moved.Of(curve)); }});
}

std::unique_ptr<FXSwapAdapter> RiskAdapters::Of(const MFXSwap& swap, const std::string& pair) {
    swap.Object("zep::python::FXSwapAdapter::FXSwapAdapter");
    const boost::shared_ptr<const FXSwap> contract = swap.m_object;
    const FXCurves market = *swap.m_market;
    return std::make_unique<FXSwapAdapter>(metrics::CurvePricing{
        metrics::ProductType::FX_SWAP, contract->Describe(), Distinct({market.quoteCurve, market.baseCurve}),
        [contract, market](metrics::MovedCurves& moved, double spot) {
            return contract->PV(MovedFXMarket(market, moved, spot));
        },
        metrics::SpotExposure{market.spot, pair}});
}

std::unique_ptr<NDFAdapter> RiskAdapters::Of(const MFXNDF& ndf, const std::string& pair) {
    ndf.Object("zep::python::NDFAdapter::NDFAdapter");
    const boost::shared_ptr<const NDF> contract = ndf.m_object;
    const FXCurves market = *ndf.m_market;
    const boost::shared_ptr<const FixingStore> fixings = ndf.m_fixings;
    return std::make_unique<NDFAdapter>(metrics::CurvePricing{
        metrics::ProductType::NDF, contract->Describe(), Distinct({market.quoteCurve, market.baseCurve}),
        [contract, market, fixings](metrics::MovedCurves& moved, double spot) {
            return contract->PV(MovedFXMarket(market, moved, spot), fixings.get());
        },
        metrics::SpotExposure{market.spot, pair}});
}

std::unique_ptr<CrossCurrencySwapAdapter> RiskAdapters::Of(const MXCurrencySwap& swap, const std::string& pair) {
    swap.Object("zep::python::CrossCurrencySwapAdapter::CrossCurrencySwapAdapter");
    const boost::shared_ptr<const Swap> contract = swap.m_object;
    const CurvePair domestic = *swap.m_domestic, foreign = *swap.m_foreign;
    const Date spotDate = swap.m_pair.spotDate;
    // A resetting leg fixes its FX rate off the same spot and discount curves the scenario moves.
    const auto pv = [contract, domestic, foreign, spotDate](metrics::MovedCurves& moved, double spot) {
        const FXMarket resets{spot, spotDate, moved.Of(domestic.discount), moved.Of(foreign.discount)};
        LegMarket received = MovedLegMarket(domestic, moved), paid = MovedLegMarket(foreign, moved, spot);
        received.resetFX = paid.resetFX = &resets;
        return contract->PV(received, paid);
    };
    metrics::CurvePricing pricing{
        metrics::ProductType::CROSS_CURRENCY_SWAP, contract->Describe(),
        Distinct({domestic.discount, domestic.projection, foreign.discount, foreign.projection}), pv,
        metrics::SpotExposure{swap.m_spot, pair}};
    const MXCurrencySwap booked = swap;
    pricing.ownMetrics[metrics::Metric::PAR_RATE] = [booked] { return 100.0 * booked.ParSpread(); };
    return std::make_unique<CrossCurrencySwapAdapter>(std::move(pricing));
}

std::unique_ptr<metrics::CreditDefaultSwapAdapter> RiskAdapters::Of(const MCreditDefaultSwap& cds,
                                                                     const std::string& issuer) {
    cds.Object("zep::python::CreditDefaultSwapAdapter::CreditDefaultSwapAdapter");
    return std::make_unique<metrics::CreditDefaultSwapAdapter>(cds.m_object, cds.m_credit, cds.m_discount, issuer);
}

std::unique_ptr<metrics::ScriptedProductAdapter> RiskAdapters::Of(const MXScriptStructure& product,
                                                                   const std::string& underlying) {
    product.Object("zep::python::ScriptedProductAdapter::ScriptedProductAdapter");
    return std::make_unique<metrics::ScriptedProductAdapter>(product.m_object, underlying);
}

std::unique_ptr<BarrierOptionAdapter> RiskAdapters::Of(const MVanillaBarriers& option, const std::string& underlying,
                                                        int pricingMethod) {
    option.Object("zep::python::BarrierOptionAdapter::BarrierOptionAdapter");
    return std::make_unique<BarrierOptionAdapter>(SpotVolPricingOf(option.m_object, underlying, pricingMethod));
}

std::unique_ptr<DigitalOptionAdapter> RiskAdapters::Of(const MDigitalOption& option, const std::string& underlying,
                                                        int pricingMethod) {
    option.Object("zep::python::DigitalOptionAdapter::DigitalOptionAdapter");
    return std::make_unique<DigitalOptionAdapter>(SpotVolPricingOf(option.m_object, underlying, pricingMethod));
}

}  // namespace zep::python
