// Past fixings of rate indices ("EURIBOR6M", "ESTR") by fixing date. A coupon that fixed before
// the valuation date can only be priced from the rate the market published that day: the store
// holds those rates, and a missing one is an error naming the index and the date.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "lum-time/Date.hpp"

namespace zep {

class FixingStore {
public:
    void Add(const std::string& index, const Date& date, double rate);
    bool Has(const std::string& index, const Date& date) const;
    // The published rate; fails "Missing fixing of index '<index>' on <date>." when there is none.
    double Fixing(const std::string& index, const Date& date) const;
    std::size_t Size() const { return m_rates.size(); }
    // Every fixing of one index, by date.
    std::vector<std::pair<Date, double>> FixingsOf(const std::string& index) const;

private:
    std::map<std::pair<std::string, std::int32_t>, double> m_rates;
};

// The rate a fixing on `fixingDate` has as seen on `valuation`: published (and required) before
// the valuation date, published if the store has it on that date, not yet known after it.
// A null store holds nothing.
std::optional<double> KnownFixing(const FixingStore* fixings, const std::string& index, const Date& fixingDate,
                                  const Date& valuation);

}  // namespace zep
