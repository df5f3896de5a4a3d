// An autocallable note on one underlying, per unit of notional. On each observation date i the
// performance PERF = SPOT() / S0 is compared with:
// - the coupon barrier: at or above it the coupon of the date is paid (with memory, also the
//   coupons missed before); a barrier of 0 pays every coupon while the note lives;
// - the autocall level of the date (step-down: levels may fall from date to date): at or above
//   it the note repays 1 and ends.
// At the last observation a note not called repays 1, or, once knocked in, MIN(PERF / K, 1): the
// down-and-in put struck at K (a fraction of S0) that the holder sold.
#pragma once

#include <string>
#include <vector>

#include "lum-monte-carlo/products/KnockIn.hpp"
#include "lum-monte-carlo/products/StructuredProduct.hpp"

namespace zep {

struct AutoCallTerms {
    double initialLevel = 0.0;  // S0
    Date strikeDate;            // S0 fixed; observations follow it
    std::vector<Date> observationDates;
    std::vector<double> autocallLevels;  // fractions of S0, one for all or one per date
    std::vector<double> coupons;         // per observation, one for all or one per date
    double couponBarrier = 0.0;          // fraction of S0
    bool memory = false;
    KnockIn knockIn;
    double putStrike = 1.0;              // fraction of S0
    int underlyings = 1;                 // a worst-of needs several
    // The state of a note valued after its strike date.
    bool knockedIn = false;
    double missedCoupons = 0.0;          // memory coupons not paid yet
};

class AutoCall : public StructuredProduct {
public:
    explicit AutoCall(AutoCallTerms terms);
    std::string TypeName() const override { return "AutoCall"; }
    std::vector<ProductEvent> Events() const override;
    std::map<std::string, double> Levels() const override;
    // Valued after the strike date, the note starts from its state then (StartedOn).
    std::vector<ProductEvent> EventsFrom(const Date& today) const override { return StartedOn(Events(), today, TypeName()); }
    const AutoCallTerms& Terms() const { return m_terms; }

private:
    std::string Start() const;
    std::string Observation(std::size_t i) const;

    AutoCallTerms m_terms;
};

}  // namespace zep
