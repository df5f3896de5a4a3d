// An Asian option on one underlying, paid on its last fixing date. The average of the fixings is
// arithmetic or geometric; it replaces the price (a call pays MAX(AVERAGE - K, 0), a put
// MAX(K - AVERAGE, 0)) or the strike (a call pays MAX(SPOT() - AVERAGE, 0) at the last fixing,
// a put MAX(AVERAGE - SPOT(), 0)). Fixings already known at the valuation date are given as
// past fixings; the others are simulated.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "lum-monte-carlo/products/StructuredProduct.hpp"

namespace zep {

struct AsianPayoffTerms {
    std::vector<Date> fixingDates;
    std::map<Date, double> pastFixings;  // fixing date -> fixed level
    std::string average = "arithmetic";  // or "geometric"
    std::string averaged = "price";      // or "strike"
    std::string optionType = "call";     // or "put"
    double strike = 0.0;                 // average-price options only
};

class AsianPayoff : public StructuredProduct {
public:
    explicit AsianPayoff(AsianPayoffTerms terms);
    std::string TypeName() const override { return "AsianPayoff"; }
    std::vector<ProductEvent> Events() const override;
    std::map<std::string, double> Levels() const override;
    const AsianPayoffTerms& Terms() const { return m_terms; }
    // Checks that past fixings are on or before the valuation date, every other on or after it.
    std::vector<ProductEvent> EventsFrom(const Date& today) const override;

private:
    std::string Payoff() const;

    AsianPayoffTerms m_terms;
};

}  // namespace zep
