#include "MBermudanSwaption.hpp"

#include <sstream>

#include <boost/make_shared.hpp>

namespace zep::python {

MBermudanSwaption::MBermudanSwaption(const std::string& payerReceiver, double notional, double strike,
                                     const std::vector<DateInput>& exerciseDates, const DateInput& startDate,
                                     const DateInput& endDate, const MHullWhite* model, int steps,
                                     const std::string& fixedTenor, const zep::DayCounter& fixedDayCounter,
                                     const std::string& centres) {
    Guarded("MBermudanSwaption::MBermudanSwaption", [&] {
        ZEP_REQUIRE(model, "the Hull-White model is None");
        ZEP_REQUIRE(steps >= 1, "the tree needs at least one step, not " + std::to_string(steps));
        const zep::HullWhite& hullWhite = model->Model("zep::python::MBermudanSwaption::MBermudanSwaption");
        const bool isPayer = ChoiceOf(payerReceiver, {"PAYER", "RECEIVER"}, "swaption kind") == 0;
        zep::HullWhiteSwap swap = HullWhiteSwapOf(hullWhite.Curve(), payerReceiver, notional, strike, startDate,
                                                  endDate, fixedTenor, fixedDayCounter, centres);
        std::vector<double> exerciseTimes;
        for (const zep::Date& date : Values(exerciseDates)) exerciseTimes.push_back(hullWhite.Time(date));
        auto bermudan = boost::make_shared<zep::BermudanSwaption>(hullWhite, std::move(swap), std::move(exerciseTimes),
                                                                  static_cast<std::size_t>(steps));
        std::ostringstream text;
        text.precision(10);
        text << (isPayer ? "payer" : "receiver") << " Bermudan swaption, notional " << notional << ", strike "
             << strike << ", " << exerciseDates.size() << " exercise dates, swap " << startDate.Value().ToString()
             << " to " << endDate.Value().ToString() << ", " << steps << " tree steps";
        m_description = text.str();
        m_object = std::move(bermudan);
    });
}

double MBermudanSwaption::PV() const { return ZEP_M_OPERATION(MBermudanSwaption, PV); }
std::vector<double> MBermudanSwaption::EuropeanPVs() const { return ZEP_M_OPERATION(MBermudanSwaption, EuropeanPVs); }
std::vector<double> MBermudanSwaption::ExerciseBoundary() const {
    return ZEP_M_OPERATION(MBermudanSwaption, ExerciseBoundary);
}

std::string MBermudanSwaption::Describe() const {
    return Guarded("MBermudanSwaption::Describe", [&] {
        Object("zep::python::MBermudanSwaption::Describe");
        return m_description;
    });
}

}  // namespace zep::python
