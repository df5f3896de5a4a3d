// Coupon schedules: zep.Schedule built from keyword arguments on the shared calendar.
%{
#include "lum-time/Schedule.hpp"
%}

%ignore zep::Schedule::Schedule(const Date&, const Date&, const ScheduleRules&, const Calendar&);
%ignore zep::Schedule::Periods;
%ignore zep::Schedule::Rules;
%ignore zep::Schedule::UnadjustedDates;
%ignore zep::ScheduleRules;
%ignore zep::SchedulePeriod;
%ignore zep::AdvanceBusinessDays;
%ignore zep::ImmDate;

%feature("docstring") zep::Schedule
"The coupon schedule of a leg: accrual periods from effective to termination date with their
payment and fixing dates and day count fractions.

Schedule(effective, termination, tenor='6M', centres='', accrualRule=2, paymentRule=2,
         endOfMonth=False, generation=0, stub=0, fixingLagDays=2, paymentLagDays=0,
         dayCounter=DayCounter(Act360))

generation: 0 backward (odd period at the front), 1 forward (at the back), 2 IMM dates. stub: 0
short, 1 long (the odd period merged into its neighbour). Rules 0 following, 1 preceding, 2
modified following, 3 modified preceding, 5 unadjusted. Lags in business days on the centres.";

%include "lum-time/Schedule.hpp"

%extend zep::Schedule {
    Schedule(const zep::Date& effective, const zep::Date& termination, const std::string& tenor = "6M",
             const std::string& centres = "", std::int32_t accrualRule = 2, std::int32_t paymentRule = 2,
             bool endOfMonth = false, std::int32_t generation = 0, std::int32_t stub = 0,
             std::int32_t fixingLagDays = 2, std::int32_t paymentLagDays = 0,
             const zep::DayCounter& dayCounter = zep::DayCounter(zep::Act360)) {
        if (generation < 0 || generation > 2) throw std::invalid_argument("Schedule: generation must be 0, 1 or 2");
        if (stub < 0 || stub > 1) throw std::invalid_argument("Schedule: stub must be 0 (short) or 1 (long)");
        zep::ScheduleRules rules;
        rules.tenor = zep::Period(tenor);
        rules.centres = centres;
        rules.accrualAdjustment = accrualRule;
        rules.paymentAdjustment = paymentRule;
        rules.endOfMonth = endOfMonth;
        rules.generation = static_cast<zep::DateGeneration>(generation);
        rules.stub = static_cast<zep::StubKind>(stub);
        rules.fixingLagDays = fixingLagDays;
        rules.paymentLagDays = paymentLagDays;
        rules.dayCounter = dayCounter;
        return new zep::Schedule(effective, termination, rules, zep::Calendar::Shared());
    }
    std::vector<zep::Date> AccrualStartDates() const {
        std::vector<zep::Date> dates;
        for (const auto& period : $self->Periods()) dates.push_back(period.accrualStart);
        return dates;
    }
    std::vector<zep::Date> AccrualEndDates() const {
        std::vector<zep::Date> dates;
        for (const auto& period : $self->Periods()) dates.push_back(period.accrualEnd);
        return dates;
    }
    std::vector<zep::Date> PaymentDates() const {
        std::vector<zep::Date> dates;
        for (const auto& period : $self->Periods()) dates.push_back(period.payment);
        return dates;
    }
    std::vector<zep::Date> FixingDates() const {
        std::vector<zep::Date> dates;
        for (const auto& period : $self->Periods()) dates.push_back(period.fixing);
        return dates;
    }
    PyObject* AccrualFractions() const {
        PyObject* fractions = PyList_New(static_cast<Py_ssize_t>($self->Size()));
        if (!fractions) return nullptr;
        for (std::size_t i = 0; i < $self->Size(); ++i)
            PyList_SET_ITEM(fractions, static_cast<Py_ssize_t>(i), PyFloat_FromDouble($self->Periods()[i].accrualFraction));
        return fractions;
    }
    std::size_t __len__() const { return $self->Size(); }
}
