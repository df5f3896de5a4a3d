// The Python face of a non-deliverable forward on BASE/QUOTE settled in the base currency:
// Price is the rate it settles on (the published fixing once fixed, else the outright), NPV
// the settlement amount discounted on the base curve. Failures read "MFXNDF::<operation> failed: ".
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "MWrapper.hpp"
#include "RateInputs.hpp"
#include "lum-interest-rates/NDF.hpp"

namespace zep::python {

class MFXNDF : public MWrapper<zep::NDF> {
public:
    MFXNDF(int buySell, double baseNotional, double contractRate, const DateInput& fixingDate,
           const DateInput& settlementDate, double spot, const DateInput& spotDate,
           boost::shared_ptr<zep::YieldCurve> quoteCurve, boost::shared_ptr<zep::YieldCurve> baseCurve,
           const std::string& fixingIndex = "FX",
           boost::shared_ptr<zep::FixingStore> fixings = boost::shared_ptr<zep::FixingStore>());

    double NPV() const;
    double PV() const { return NPV(); }
    double Price() const;
    std::vector<zep::CashFlow> CashFlowSchedule() const;
    std::string Describe() const;

private:
    friend struct RiskAdapters;  // hands the instrument and its market to the risk layer
    std::optional<FXCurves> m_market;
    boost::shared_ptr<zep::FixingStore> m_fixings;
};

}  // namespace zep::python
