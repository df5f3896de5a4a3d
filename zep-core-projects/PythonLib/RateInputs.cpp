#include "RateInputs.hpp"

#include <algorithm>
#include <cctype>
#include <stdexcept>

#include "lum-time/Calendar.hpp"

namespace zep::python {

zep::Schedule MakeSchedule(const DateInput& start, const DateInput& end, const LegInput& leg) {
    zep::ScheduleRules rules;
    rules.tenor = zep::Period(leg.tenor);
    rules.centres = leg.centres;
    rules.dayCounter = leg.dayCounter;
    rules.fixingLagDays = leg.fixingLagDays;
    rules.paymentLagDays = leg.paymentLagDays;
    return zep::Schedule(start.Value(), end.Value(), rules, zep::Calendar::Shared());
}

zep::Bond MakeBond(double couponRate, const DateInput& issueDate, const DateInput& maturityDate,
                   const std::string& tenor, const zep::DayCounter& dayCounter, const std::vector<double>& notionals,
                   const std::string& centres, bool endOfMonth, bool simpleYieldInLastPeriod) {
    zep::ScheduleRules rules;
    rules.tenor = zep::Period(tenor);
    const bool inMonths = rules.tenor.Units() == zep::Months || rules.tenor.Units() == zep::Years;
    const int months = rules.tenor.Units() == zep::Years ? 12 * rules.tenor.Length() : rules.tenor.Length();
    if (!inMonths || months <= 0 || 12 % months != 0)
        throw std::invalid_argument("Bond: coupon tenor '" + tenor + "' must divide a year (1Y, 6M, 3M, 1M ...).");
    rules.centres = centres;
    rules.accrualAdjustment = zep::Unadjusted;
    rules.paymentAdjustment = zep::Following;
    rules.endOfMonth = endOfMonth;
    rules.fixingLagDays = 0;
    rules.dayCounter = zep::DayCounter(zep::Act365Fixed);  // dates only: the bond counts its own coupons
    zep::BondTerms terms;
    terms.couponRate = couponRate;
    terms.notionals = notionals;
    terms.dayCounter = dayCounter;
    terms.frequency = static_cast<zep::Frequency>(12 / months);
    terms.simpleYieldInLastPeriod = simpleYieldInLastPeriod;
    return zep::Bond(zep::Schedule(issueDate.Value(), maturityDate.Value(), rules, zep::Calendar::Shared()), terms);
}

int ChoiceOf(const std::string& name, const std::vector<std::string>& choices, const char* what) {
    std::string upper = name;
    std::transform(upper.begin(), upper.end(), upper.begin(), [](unsigned char c) { return std::toupper(c); });
    std::string listed;
    for (std::size_t i = 0; i < choices.size(); ++i) {
        if (upper == choices[i]) return static_cast<int>(i);
        listed += (i ? " or " : "") + choices[i];
    }
    throw std::invalid_argument("'" + name + "' is an invalid " + what + " (" + listed + ").");
}

zep::CouponKind FloatingKindOf(const std::string& name) {
    std::string upper = name;
    std::transform(upper.begin(), upper.end(), upper.begin(), [](unsigned char c) { return std::toupper(c); });
    if (upper == "IBOR") return zep::CouponKind::Floating;
    if (upper == "OVERNIGHT") return zep::CouponKind::Overnight;
    throw std::invalid_argument("'" + name + "' is an invalid floating rate kind (IBOR or OVERNIGHT).");
}

CurvePair::CurvePair(boost::shared_ptr<zep::YieldCurve> discountCurve, boost::shared_ptr<zep::YieldCurve> projectionCurve,
                     boost::shared_ptr<zep::FixingStore> fixingStore, const char* what)
    : discount(std::move(discountCurve)), projection(std::move(projectionCurve)), fixings(std::move(fixingStore)) {
    if (!discount) throw std::invalid_argument(std::string(what) + ": the discount curve is None.");
    if (!projection) projection = discount;
}

zep::LegMarket CurvePair::Market(double fxRate) const { return {discount.get(), projection.get(), fixings.get(), fxRate}; }

FXCurves::FXCurves(double spotRate, const DateInput& spotSettlement, boost::shared_ptr<zep::YieldCurve> quote,
                   boost::shared_ptr<zep::YieldCurve> base, const char* what)
    : spot(spotRate), spotDate(spotSettlement.Value()), quoteCurve(std::move(quote)), baseCurve(std::move(base)) {
    if (!quoteCurve || !baseCurve) throw std::invalid_argument(std::string(what) + ": a currency curve is None.");
    zep::RequireFXMarket(Market());
}

}  // namespace zep::python
