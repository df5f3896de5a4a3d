// A tenor: a signed length in days, weeks, months or years, keeping the text it was written
// as ("3M", "O/N", "10Y").
#pragma once

#include <cstdint>
#include <string>

#include "lum-time/Date.hpp"
#include "lum-time/Frequency.hpp"

namespace zep {

class Period {
public:
    Period() : Period(0, zep::Days) {}
    Period(std::int32_t length, TimeUnit units);
    // Tenor codes ("3M", "-1Y") and money-market shorthands ("O/N", "TN", "SW", "TODAY").
    explicit Period(const std::string& text);
    // The coupon period of a regular frequency; raises "unknown frequency" otherwise.
    explicit Period(Frequency frequency);

    std::int32_t Length() const { return m_length; }
    TimeUnit Units() const { return m_units; }
    const std::string& Text() const { return m_text; }

    // Exact conversions only; a zero-length period is 0 in every unit.
    double Days() const;
    double Weeks() const;
    double Months() const;
    double Years() const;

    // Orders tenors, approximating a month as 30 days or 4.345 weeks and a year as 365 days or
    // 52.143 weeks where no exact conversion exists.
    bool operator<(const Period& other) const;

private:
    std::int32_t m_length;
    TimeUnit m_units;
    std::string m_text;
};

}  // namespace zep
