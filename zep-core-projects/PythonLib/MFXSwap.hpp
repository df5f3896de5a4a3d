// The Python face of an FX swap on BASE/QUOTE: buy (+1) or sell (-1) the base notional at the
// near date and reverse at the far date; NPV in the quote currency. Failures read
// "MFXSwap::<operation> failed: ".
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "MWrapper.hpp"
#include "RateInputs.hpp"
#include "lum-interest-rates/FXSwap.hpp"

namespace zep::python {

class MFXSwap : public MWrapper<zep::FXSwap> {
public:
    MFXSwap(int nearBuySell, double baseNotional, double nearRate, const DateInput& nearDate, double farRate,
            const DateInput& farDate, double spot, const DateInput& spotDate,
            boost::shared_ptr<zep::YieldCurve> quoteCurve, boost::shared_ptr<zep::YieldCurve> baseCurve);

    double NPV() const;
    double PV() const { return NPV(); }
    double FairFarRate() const;
    std::vector<zep::CashFlow> CashFlowSchedule() const;
    std::string Describe() const;

private:
    friend struct RiskAdapters;  // hands the instrument and its market to the risk layer
    std::optional<FXCurves> m_market;
};

}  // namespace zep::python
