#include "MCallableBond.hpp"

#include <sstream>

#include <boost/make_shared.hpp>

namespace zep::python {

namespace {

zep::Schedule BondSchedule(const DateInput& issueDate, const DateInput& maturityDate, const std::string& tenor,
                           const zep::DayCounter& dayCounter, const std::string& centres) {
    zep::ScheduleRules rules;
    rules.tenor = zep::Period(tenor);
    rules.centres = centres;
    rules.accrualAdjustment = zep::Unadjusted;
    rules.paymentAdjustment = zep::Following;
    rules.fixingLagDays = 0;
    rules.dayCounter = dayCounter;
    return zep::Schedule(issueDate.Value(), maturityDate.Value(), rules, zep::Calendar::Shared());
}

}  // namespace

MCallableBond::MCallableBond(double couponRate, const DateInput& issueDate, const DateInput& maturityDate,
                             const std::vector<DateInput>& callDates, const std::vector<double>& callPrices,
                             const MHullWhite* model, int steps, const std::string& tenor,
                             const zep::DayCounter& dayCounter, const std::string& centres) {
    Guarded("MCallableBond::MCallableBond", [&] {
        ZEP_REQUIRE(model, "the Hull-White model is None");
        ZEP_REQUIRE(steps >= 1, "the tree needs at least one step, not " + std::to_string(steps));
        const zep::HullWhite& hullWhite = model->Model("zep::python::MCallableBond::MCallableBond");
        zep::HullWhiteSwap coupons =
            zep::SwapOnCurve(hullWhite.Curve(), BondSchedule(issueDate, maturityDate, tenor, dayCounter, centres),
                             couponRate, 100.0, false);
        std::vector<double> callTimes;
        for (const zep::Date& date : Values(callDates)) callTimes.push_back(hullWhite.Time(date));
        auto bond = boost::make_shared<zep::CallableBond>(hullWhite, std::move(coupons), std::move(callTimes),
                                                          callPrices, static_cast<std::size_t>(steps));
        std::ostringstream text;
        text.precision(10);
        text << "callable bond, coupon " << couponRate << ", " << issueDate.Value().ToString() << " to "
             << maturityDate.Value().ToString() << ", " << callDates.size() << " call dates, " << steps
             << " tree steps";
        m_description = text.str();
        m_object = std::move(bond);
    });
}

double MCallableBond::CleanPrice(double oas) const { return ZEP_M_OPERATION(MCallableBond, CleanPrice, oas); }
double MCallableBond::DirtyPrice(double oas) const { return ZEP_M_OPERATION(MCallableBond, DirtyPrice, oas); }
double MCallableBond::StraightCleanPrice(double oas) const {
    return ZEP_M_OPERATION(MCallableBond, StraightCleanPrice, oas);
}
double MCallableBond::OAS(double cleanPrice) const { return ZEP_M_OPERATION(MCallableBond, OAS, cleanPrice); }

double MCallableBond::AccruedAmount() const {
    return Guarded("MCallableBond::AccruedAmount",
                   [&] { return Object("zep::MCallableBond::AccruedAmount").AccruedAt(0.0); });
}

std::string MCallableBond::Describe() const {
    return Guarded("MCallableBond::Describe", [&] {
        Object("zep::python::MCallableBond::Describe");
        return m_description;
    });
}

}  // namespace zep::python
