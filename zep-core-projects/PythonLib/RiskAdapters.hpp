// The risk adapters of the Python-facing instruments: each reads the library instrument and the
// market its M class holds, so a Python user hands the booked trade to the risk layer as it is.
#pragma once

#include <memory>
#include <string>

#include "lum-risk-metrics/BondAdapter.hpp"
#include "lum-risk-metrics/CreditDefaultSwapAdapter.hpp"
#include "lum-risk-metrics/CurvePricedAdapter.hpp"
#include "lum-risk-metrics/FXForwardAdapter.hpp"
#include "lum-risk-metrics/ScriptedProductAdapter.hpp"
#include "lum-risk-metrics/SpotVolOptionAdapter.hpp"
#include "lum-risk-metrics/SwapAdapter.hpp"
#include "lum-risk-metrics/VanillaOptionAdapter.hpp"

namespace zep::python {

class MBasisSwap;
class MBill;
class MBond;
class MCreditDefaultSwap;
class MDigitalOption;
class MFloatingRateNote;
class MFRA;
class MFXForwardOutright;
class MFXNDF;
class MFXSwap;
class MVanillaBarriers;
class MVanillaOption;
class MVanillaSwap;
class MXCurrencySwap;
class MXScriptStructure;

// The rate and FX families priced on curves share one adapter; each gets its own name in Python.
#define ZEP_CURVE_PRICED_ADAPTER(Name) \
    struct Name final : metrics::CurvePricedAdapter { using CurvePricedAdapter::CurvePricedAdapter; }
ZEP_CURVE_PRICED_ADAPTER(FRAAdapter);
ZEP_CURVE_PRICED_ADAPTER(FloatingRateNoteAdapter);
ZEP_CURVE_PRICED_ADAPTER(BillAdapter);
ZEP_CURVE_PRICED_ADAPTER(FXSwapAdapter);
ZEP_CURVE_PRICED_ADAPTER(NDFAdapter);
ZEP_CURVE_PRICED_ADAPTER(CrossCurrencySwapAdapter);
#undef ZEP_CURVE_PRICED_ADAPTER
struct BarrierOptionAdapter final : metrics::SpotVolOptionAdapter { using SpotVolOptionAdapter::SpotVolOptionAdapter; };
struct DigitalOptionAdapter final : metrics::SpotVolOptionAdapter { using SpotVolOptionAdapter::SpotVolOptionAdapter; };

struct RiskAdapters {
    // faceAmount: the bond's prices are per 100 of it.
    static std::unique_ptr<metrics::BondAdapter> Of(const MBond& bond, double faceAmount);
    static std::unique_ptr<metrics::SwapAdapter> Of(const MVanillaSwap& swap);
    static std::unique_ptr<metrics::SwapAdapter> Of(const MBasisSwap& swap);
    // pair, underlying: the name scenarios shock the spot (and the option's volatility) by.
    static std::unique_ptr<metrics::FXForwardAdapter> Of(const MFXForwardOutright& forward, const std::string& pair);
    static std::unique_ptr<metrics::VanillaOptionAdapter> Of(const MVanillaOption& option,
                                                             const std::string& underlying);
    static std::unique_ptr<FRAAdapter> Of(const MFRA& fra);
    // faceAmount: the note's prices are per 100 of it.
    static std::unique_ptr<FloatingRateNoteAdapter> Of(const MFloatingRateNote& note, double faceAmount);
    static std::unique_ptr<BillAdapter> Of(const MBill& bill);
    static std::unique_ptr<FXSwapAdapter> Of(const MFXSwap& swap, const std::string& pair);
    static std::unique_ptr<NDFAdapter> Of(const MFXNDF& ndf, const std::string& pair);
    // pair: the name of the spot that converts the foreign leg (domestic per foreign).
    static std::unique_ptr<CrossCurrencySwapAdapter> Of(const MXCurrencySwap& swap, const std::string& pair);
    // issuer: the name credit scenarios shock its credit curve by.
    static std::unique_ptr<metrics::CreditDefaultSwapAdapter> Of(const MCreditDefaultSwap& cds,
                                                                 const std::string& issuer);
    static std::unique_ptr<metrics::ScriptedProductAdapter> Of(const MXScriptStructure& product,
                                                               const std::string& underlying);
    // pricingMethod: the option's own method codes; every metric and scenario prices by it.
    static std::unique_ptr<BarrierOptionAdapter> Of(const MVanillaBarriers& option, const std::string& underlying,
                                                    int pricingMethod);
    static std::unique_ptr<DigitalOptionAdapter> Of(const MDigitalOption& option, const std::string& underlying,
                                                    int pricingMethod);
};

}  // namespace zep::python
