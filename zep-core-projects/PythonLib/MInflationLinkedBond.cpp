#include "MInflationLinkedBond.hpp"

#include <boost/make_shared.hpp>

#include "RateInputs.hpp"

namespace zep::python {

MInflationLinkedBond::MInflationLinkedBond(double realCoupon, const DateInput& issueDate, const DateInput& maturityDate,
                                           boost::shared_ptr<zep::ZeroInflationCurve> inflationCurve,
                                           boost::shared_ptr<zep::YieldCurve> discountCurve, const std::string& tenor,
                                           const zep::DayCounter& dayCounter, const std::vector<double>& notionals,
                                           const std::string& centres, bool endOfMonth) {
    Guarded("MInflationLinkedBond::MInflationLinkedBond", [&] {
        if (!inflationCurve) throw std::invalid_argument("MInflationLinkedBond: the inflation curve is None.");
        if (!discountCurve) throw std::invalid_argument("MInflationLinkedBond: the discount curve is None.");
        auto bond = boost::make_shared<zep::InflationLinkedBond>(
            MakeBond(realCoupon, issueDate, maturityDate, tenor, dayCounter, notionals, centres, endOfMonth),
            issueDate.Value());
        bond->PV(*inflationCurve, *discountCurve);  // a missing fixing fails here, not at the first query
        m_inflation = std::move(inflationCurve);
        m_discount = std::move(discountCurve);
        m_object = std::move(bond);
    });
}

double MInflationLinkedBond::PV() const { return ZEP_M_OPERATION(MInflationLinkedBond, PV, *m_inflation, *m_discount); }

double MInflationLinkedBond::IndexRatio(const DateInput& date) const {
    return Guarded("MInflationLinkedBond::IndexRatio", [&] {
        return Object("zep::python::MInflationLinkedBond::IndexRatio").IndexRatio(*m_inflation, date.Value());
    });
}

std::vector<zep::CashFlow> MInflationLinkedBond::CashFlowSchedule() const {
    return Guarded("MInflationLinkedBond::CashFlowSchedule", [&] {
        return Object("zep::python::MInflationLinkedBond::CashFlowSchedule").CashFlows(*m_inflation, *m_discount);
    });
}

std::string MInflationLinkedBond::Describe() const { return ZEP_M_OPERATION(MInflationLinkedBond, Describe); }

}  // namespace zep::python
