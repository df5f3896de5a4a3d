#include "lum-interest-rates/FixingStore.hpp"

#include <climits>
#include <cmath>

#include "lum-auxiliary/Error.hpp"

namespace zep {

void FixingStore::Add(const std::string& index, const Date& date, double rate) {
    ZEP_REQUIRE(!index.empty(), "A fixing needs an index name.");
    ZEP_REQUIRE(std::isfinite(rate), "Fixing of index '" + index + "' on " + date.ToString() + " is not finite.");
    m_rates[{index, date.SerialNumber()}] = rate;
}

bool FixingStore::Has(const std::string& index, const Date& date) const {
    return m_rates.count({index, date.SerialNumber()}) != 0;
}

double FixingStore::Fixing(const std::string& index, const Date& date) const {
    const auto found = m_rates.find({index, date.SerialNumber()});
    if (found == m_rates.end()) ZEP_FAIL("Missing fixing of index '" + index + "' on " + date.ToString() + ".");
    return found->second;
}

std::vector<std::pair<Date, double>> FixingStore::FixingsOf(const std::string& index) const {
    std::vector<std::pair<Date, double>> fixings;
    for (auto it = m_rates.lower_bound({index, INT32_MIN}); it != m_rates.end() && it->first.first == index; ++it)
        fixings.emplace_back(Date(it->first.second), it->second);
    return fixings;
}

std::optional<double> KnownFixing(const FixingStore* fixings, const std::string& index, const Date& fixingDate,
                                  const Date& valuation) {
    if (fixingDate > valuation) return std::nullopt;
    if (fixingDate == valuation && (fixings == nullptr || !fixings->Has(index, fixingDate))) return std::nullopt;
    if (fixings == nullptr) ZEP_FAIL("Missing fixing of index '" + index + "' on " + fixingDate.ToString() + ".");
    return fixings->Fixing(index, fixingDate);
}

}  // namespace zep
