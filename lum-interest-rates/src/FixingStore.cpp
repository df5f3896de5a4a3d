#include "lum-interest-rates/FixingStore.hpp"

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

std::optional<double> KnownFixing(const FixingStore* fixings, const std::string& index, const Date& fixingDate,
                                  const Date& valuation) {
    if (fixingDate > valuation) return std::nullopt;
    if (fixingDate == valuation && (fixings == nullptr || !fixings->Has(index, fixingDate))) return std::nullopt;
    if (fixings == nullptr) ZEP_FAIL("Missing fixing of index '" + index + "' on " + fixingDate.ToString() + ".");
    return fixings->Fixing(index, fixingDate);
}

}  // namespace zep
