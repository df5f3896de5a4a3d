// The Python face of a floating-rate note: index + quoted margin on the face value, repaid at
// maturity; prices per 100 and the discount margin over the discount curve. Failures read
// "MFloatingRateNote::<operation> failed: ".
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "MWrapper.hpp"
#include "RateInputs.hpp"
#include "lum-interest-rates/FloatingRateNote.hpp"

namespace zep::python {

class MFloatingRateNote : public MWrapper<zep::FloatingRateNote> {
public:
    MFloatingRateNote(double faceValue, double quotedMargin, const DateInput& issueDate, const DateInput& maturityDate,
                      boost::shared_ptr<zep::YieldCurve> discountCurve,
                      boost::shared_ptr<zep::YieldCurve> projectionCurve = boost::shared_ptr<zep::YieldCurve>(),
                      const std::string& index = "EURIBOR3M", const std::string& tenor = "3M",
                      const zep::DayCounter& dayCounter = zep::DayCounter(zep::Act360),
                      const std::string& centres = "TARGET", int fixingLagDays = 2,
                      boost::shared_ptr<zep::FixingStore> fixings = boost::shared_ptr<zep::FixingStore>());

    double PV() const;  // dirty, per 100 of face
    double NPV() const { return PV(); }
    double DiscountMargin(double dirtyPrice) const;
    std::vector<zep::CashFlow> CashFlowSchedule() const;
    std::string Describe() const;

private:
    friend struct RiskAdapters;  // hands the instrument and its market to the risk layer
    std::optional<CurvePair> m_curves;
};

}  // namespace zep::python
