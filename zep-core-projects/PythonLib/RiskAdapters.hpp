// The risk adapters of the Python-facing instruments: each reads the library instrument and the
// market its M class holds, so a Python user hands the booked trade to the risk layer as it is.
#pragma once

#include <memory>
#include <string>

#include "lum-risk-metrics/BondAdapter.hpp"
#include "lum-risk-metrics/FXForwardAdapter.hpp"
#include "lum-risk-metrics/SwapAdapter.hpp"
#include "lum-risk-metrics/VanillaOptionAdapter.hpp"

namespace zep::python {

class MBasisSwap;
class MBond;
class MFXForwardOutright;
class MVanillaOption;
class MVanillaSwap;

struct RiskAdapters {
    // faceAmount: the bond's prices are per 100 of it.
    static std::unique_ptr<metrics::BondAdapter> Of(const MBond& bond, double faceAmount);
    static std::unique_ptr<metrics::SwapAdapter> Of(const MVanillaSwap& swap);
    static std::unique_ptr<metrics::SwapAdapter> Of(const MBasisSwap& swap);
    // pair, underlying: the name scenarios shock the spot (and the option's volatility) by.
    static std::unique_ptr<metrics::FXForwardAdapter> Of(const MFXForwardOutright& forward, const std::string& pair);
    static std::unique_ptr<metrics::VanillaOptionAdapter> Of(const MVanillaOption& option,
                                                             const std::string& underlying);
};

}  // namespace zep::python
