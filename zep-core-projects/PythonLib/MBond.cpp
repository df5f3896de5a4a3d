#include "MBond.hpp"

#include <boost/make_shared.hpp>

#include "RateInputs.hpp"

namespace zep::python {

MBond::MBond(double couponRate, const DateInput& issueDate, const DateInput& maturityDate, const std::string& tenor,
             const zep::DayCounter& dayCounter, const std::vector<double>& notionals,
             boost::shared_ptr<zep::YieldCurve> discountCurve, const std::string& centres, bool endOfMonth,
             bool simpleYieldInLastPeriod) {
    Guarded("MBond::MBond", [&] {
        m_object = boost::make_shared<zep::Bond>(
            MakeBond(couponRate, issueDate, maturityDate, tenor, dayCounter, notionals, centres, endOfMonth,
                     simpleYieldInLastPeriod));
        m_curve = std::move(discountCurve);
    });
}

const zep::YieldCurve& MBond::Curve(const char* where) const {
    if (!m_curve) throw std::invalid_argument(std::string(where) + ": the bond was built without a discount curve.");
    return *m_curve;
}

double MBond::AccruedAmount(const DateInput& settlement) const {
    return Guarded("MBond::AccruedAmount", [&] {
        return Object("zep::python::MBond::AccruedAmount").AccruedAmount(settlement.Value());
    });
}

double MBond::CleanPrice(double yield, const DateInput& settlement) const {
    return Guarded("MBond::CleanPrice", [&] {
        return Object("zep::python::MBond::CleanPrice").CleanPrice(yield, settlement.Value());
    });
}

double MBond::DirtyPrice(double yield, const DateInput& settlement) const {
    return Guarded("MBond::DirtyPrice", [&] {
        return Object("zep::python::MBond::DirtyPrice").DirtyPrice(yield, settlement.Value());
    });
}

double MBond::Yield(double cleanPrice, const DateInput& settlement) const {
    return Guarded("MBond::Yield", [&] { return Object("zep::python::MBond::Yield").Yield(cleanPrice, settlement.Value()); });
}

double MBond::MacaulayDuration(double yield, const DateInput& settlement) const {
    return Guarded("MBond::MacaulayDuration", [&] {
        return Object("zep::python::MBond::MacaulayDuration").MacaulayDuration(yield, settlement.Value());
    });
}

double MBond::ModifiedDuration(double yield, const DateInput& settlement) const {
    return Guarded("MBond::ModifiedDuration", [&] {
        return Object("zep::python::MBond::ModifiedDuration").ModifiedDuration(yield, settlement.Value());
    });
}

double MBond::Convexity(double yield, const DateInput& settlement) const {
    return Guarded("MBond::Convexity", [&] {
        return Object("zep::python::MBond::Convexity").Convexity(yield, settlement.Value());
    });
}

double MBond::PV() const {
    return Guarded("MBond::PV", [&] { return Object("zep::python::MBond::PV").PV(Curve("MBond::PV")); });
}

double MBond::ZSpread(double cleanPrice, const DateInput& settlement) const {
    return Guarded("MBond::ZSpread", [&] {
        return Object("zep::python::MBond::ZSpread").ZSpread(cleanPrice, Curve("MBond::ZSpread"), settlement.Value());
    });
}

std::vector<zep::CashFlow> MBond::CashFlowSchedule() const {
    return Guarded("MBond::CashFlowSchedule", [&] {
        return Object("zep::python::MBond::CashFlowSchedule").CashFlows(Curve("MBond::CashFlowSchedule"));
    });
}

std::string MBond::Describe() const {
    return Guarded("MBond::Describe", [&] { return Object("zep::python::MBond::Describe").Describe(); });
}

}  // namespace zep::python
