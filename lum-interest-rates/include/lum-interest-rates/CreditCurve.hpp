// The default-time curve of one issuer, bootstrapped from the par spreads of its credit default
// swaps: a hazard rate constant between consecutive CDS maturities, so that the probability of
// surviving to t is exp(-integral of the hazard up to t).
//
// A CDS "5Y" runs from the reference date to the reference date + 5Y (no roll to IMM dates) and
// pays its spread every premiumTenor (a backward schedule, Modified Following on the centres,
// accruals by the premium day count); its hazard stretch ends with the last, rolled, premium
// period. Its par spread s equates the two legs, each premium period
// (t0, t1] with accrual tau, discount factor D and survival Q:
//   premium leg    s * sum tau * D(t1) * (Q(t0) + Q(t1)) / 2   (half the accrual paid on default)
//   protection leg (1 - R) * sum D(mid) * (Q(t0) - Q(t1))   (default at the period's middle day)
// with R the recovery rate. Spreads are solved maturity by maturity for the hazard of the new
// stretch (Brent), the earlier hazards fixed.
#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "lum-interest-rates/YieldCurve.hpp"
#include "lum-time/Calendar.hpp"
#include "lum-time/Period.hpp"

namespace zep {

struct CreditConventions {
    Period premiumTenor = Period(3, Months);
    DayCounter premiumDayCounter = DayCounter(Act360);
    std::string centres = "TARGET";
    DayCounter curveDayCounter = DayCounter(Act365Fixed);
};

class CreditCurve {
public:
    // tenors ascending, spreads as decimals (0.01 for 100 bp), recovery in [0, 1).
    CreditCurve(const Date& referenceDate, const std::vector<Period>& tenors, const std::vector<double>& spreads,
                double recovery, boost::shared_ptr<const YieldCurve> discountCurve,
                const CreditConventions& conventions, const Calendar& calendar);

    double SurvivalProbability(double t) const;
    double SurvivalProbability(const Date& date) const;
    double DefaultProbability(const Date& date) const { return 1.0 - SurvivalProbability(date); }
    // The hazard rate in force at t years (the last stretch's beyond the last maturity).
    double HazardRate(double t) const;
    // The par spread of a CDS of this tenor on this curve.
    double ParSpread(const Period& tenor) const;

    // The same curve bootstrapped from every quoted spread plus `shift`.
    CreditCurve WithSpreadsShifted(double shift) const;

    const Date& ReferenceDate() const { return m_referenceDate; }
    const std::vector<Date>& Maturities() const { return m_maturities; }
    const std::vector<double>& Times() const { return m_times; }
    const std::vector<double>& HazardRates() const { return m_hazards; }
    double Recovery() const { return m_recovery; }

private:
    // One premium period of a CDS: its start and end in curve years and its accrual fraction,
    // with the discount factors at the payment and at the middle day.
    struct PremiumPeriod {
        double start, end, accrual, paymentDiscount, midDiscount;
    };
    std::vector<PremiumPeriod> PeriodsOf(const Date& maturity) const;
    double ParSpread(const std::vector<PremiumPeriod>& periods) const;
    // The hazard integrated from 0 to t.
    double CumulativeHazard(double t) const;

    Date m_referenceDate;
    double m_recovery;
    boost::shared_ptr<const YieldCurve> m_discountCurve;
    CreditConventions m_conventions;
    const Calendar& m_calendar;
    std::vector<Period> m_tenors;
    std::vector<double> m_spreads;   // the quotes bootstrapped
    std::vector<Date> m_maturities;  // reference date + tenor
    std::vector<double> m_times;     // the rolled ends of protection
    std::vector<double> m_hazards;  // m_hazards[k] in force from m_times[k - 1] (0 for k = 0) to m_times[k]
};

}  // namespace zep
