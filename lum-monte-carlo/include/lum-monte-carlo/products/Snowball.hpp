// A snowball note on one underlying, per unit of notional: its coupon accrues at an annual rate
// from the strike date for as long as the note lives. On observation date i, at or above the
// knock-out level (PERF = SPOT() / S0), it repays 1 plus the coupon accrued to that date and
// ends. Reaching maturity without knock-out, it repays 1 plus the whole accrued coupon (the
// snowball locks it in) unless it knocked in, in which case it repays MIN(PERF, 1).
#pragma once

#include <string>
#include <vector>

#include "lum-monte-carlo/products/KnockIn.hpp"
#include "lum-monte-carlo/products/StructuredProduct.hpp"

namespace zep {

struct SnowballTerms {
    double initialLevel = 0.0;  // S0
    Date strikeDate;            // S0 fixed, the coupon starts accruing
    std::vector<Date> observationDates;
    std::vector<double> knockOutLevels;  // fractions of S0, one for all or one per date
    double couponRate = 0.0;             // per year, accrued actual/365
    KnockIn knockIn;
    bool knockedIn = false;  // already, for a note valued after its strike date
};

class Snowball : public StructuredProduct {
public:
    explicit Snowball(SnowballTerms terms);
    std::string TypeName() const override { return "Snowball"; }
    std::vector<ProductEvent> Events() const override;
    std::map<std::string, double> Levels() const override;
    // Valued after the strike date, the note starts from its state then (StartedOn).
    std::vector<ProductEvent> EventsFrom(const Date& today) const override { return StartedOn(Events(), today, TypeName()); }
    const SnowballTerms& Terms() const { return m_terms; }
    // 1 plus the coupon accrued from the strike date to `date`.
    double Redemption(const Date& date) const;

private:
    SnowballTerms m_terms;
};

}  // namespace zep
