// The Python face of a Bermudan swaption under Hull-White: on each of exerciseDates the holder may
// enter the periods of the swap from startDate to endDate that start on or after that date,
// paying (PAYER) or receiving (RECEIVER) the strike; valued on a trinomial tree of about `steps`
// steps. Failures read "MBermudanSwaption::<operation> failed: ".
#pragma once

#include <string>
#include <vector>

#include "MHullWhite.hpp"
#include "lum-interest-rates/BermudanSwaption.hpp"

namespace zep::python {

class MBermudanSwaption : public MWrapper<zep::BermudanSwaption> {
public:
    MBermudanSwaption(const std::string& payerReceiver, double notional, double strike,
                      const std::vector<DateInput>& exerciseDates, const DateInput& startDate,
                      const DateInput& endDate, const MHullWhite* model, int steps = 200,
                      const std::string& fixedTenor = "1Y",
                      const zep::DayCounter& fixedDayCounter = zep::DayCounter(zep::Thirty360),
                      const std::string& centres = "TARGET");

    double PV() const;
    double NPV() const { return PV(); }
    // The European swaption of each exercise date alone, in closed form.
    std::vector<double> EuropeanPVs() const;
    // Per exercise date, the par rate of the swap entered from which exercising pays (at or
    // above it for a payer, at or below for a receiver); +inf for a payer (-inf for a receiver)
    // on a date no node exercises.
    std::vector<double> ExerciseBoundary() const;
    std::string Describe() const;

private:
    std::string m_description;
};

}  // namespace zep::python
