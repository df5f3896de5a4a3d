#include "lum-time/Period.hpp"

#include <string_view>

#include "LeadingInteger.hpp"
#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

bool IsKnownUnit(TimeUnit units) {
    return units >= zep::Days && units <= zep::Years;
}

char UnitLetter(TimeUnit units) {
    switch (units) {
        case zep::Days: return 'D';
        case zep::Weeks: return 'W';
        case zep::Months: return 'M';
        case zep::Years: return 'Y';
    }
    return '?';
}

struct Shorthand {
    std::string_view text;
    std::int32_t length;
    TimeUnit units;
};

// Money-market tenors, matched case-sensitively on the whole text.
constexpr Shorthand kShorthands[] = {
    {"O/N", 1, zep::Days}, {"o/n", 1, zep::Days}, {"ON", 1, zep::Days},  {"on", 1, zep::Days},  {"T/N", 1, zep::Days},
    {"t/n", 1, zep::Days}, {"TN", 1, zep::Days},  {"tn", 1, zep::Days},  {"S/N", 1, zep::Days}, {"s/n", 1, zep::Days},
    {"SN", 1, zep::Days},  {"sn", 1, zep::Days},  {"TOM", 1, zep::Days}, {"tom", 1, zep::Days}, {"TODAY", 0, zep::Days},
    {"today", 0, zep::Days}, {"S/W", 1, zep::Weeks}, {"s/w", 1, zep::Weeks}, {"SW", 1, zep::Weeks}, {"sw", 1, zep::Weeks},
};

}  // namespace

Period::Period(std::int32_t length, TimeUnit units)
    : m_length(length), m_units(units), m_text(std::to_string(length) + UnitLetter(units)) {}

Period::Period(const std::string& text) : m_length(0), m_units(zep::Days), m_text(text) {
    ZEP_REQUIRE(!text.empty(), "Period string can't be an empty string");
    for (const auto& shorthand : kShorthands) {
        if (text == shorthand.text) {
            m_length = shorthand.length;
            m_units = shorthand.units;
            return;
        }
    }
    switch (text.back()) {
        case 'D': case 'd': m_units = zep::Days; break;
        case 'W': case 'w': m_units = zep::Weeks; break;
        case 'M': case 'm': m_units = zep::Months; break;
        case 'Y': case 'y': m_units = zep::Years; break;
        default: ZEP_FAIL("Last character of a period string must be one of {d, w, m, y}");
    }
    const auto length = detail::LeadingInteger(text);
    ZEP_REQUIRE(length.has_value(), "Period length out of range in '" + text + "'");
    m_length = *length;
}

Period::Period(Frequency frequency) : m_length(0), m_units(zep::Days) {
    switch (frequency) {
        case Daily: m_length = 1; break;
        case Continuous: case Once: case NoFrequency: break;
        case Annual: m_length = 1; m_units = zep::Years; break;
        case Semiannual: case EveryFourthMonth: case Quarterly: case Bimonthly: case Monthly:
            m_length = 12 / frequency; m_units = zep::Months; break;
        case Fourweekly: case Biweekly: case Weekly:
            m_length = 52 / frequency; m_units = zep::Weeks; break;
        default: throw "unknown frequency";
    }
    m_text = std::to_string(m_length) + UnitLetter(m_units);
}

double Period::Days() const {
    if (m_length == 0) return 0.0;
    switch (m_units) {
        case zep::Days: return m_length;
        case zep::Weeks: return 7.0 * m_length;
        case zep::Months: throw "Cannot convert Months into Days";
        case zep::Years: throw "Cannot convert Years into Days";
    }
    throw "Unknown time unit";
}

double Period::Weeks() const {
    if (m_length == 0) return 0.0;
    switch (m_units) {
        case zep::Days: return m_length / 7.0;
        case zep::Weeks: return m_length;
        case zep::Months: throw "Cannot convert Months into Weeks";
        case zep::Years: throw "Cannot convert Years into Weeks";
    }
    throw "Unknown time unit";
}

double Period::Months() const {
    if (m_length == 0) return 0.0;
    switch (m_units) {
        case zep::Days: throw "Cannot convert Days into Months";
        case zep::Weeks: throw "Cannot convert Weeks into Months";
        case zep::Months: return m_length;
        case zep::Years: return 12.0 * m_length;
    }
    throw "Unknown time unit";
}

double Period::Years() const {
    if (m_length == 0) return 0.0;
    switch (m_units) {
        case zep::Days: throw "Cannot convert Days into Years";
        case zep::Weeks: throw "Cannot convert Weeks into Years";
        case zep::Months: return m_length / 12.0;
        case zep::Years: return m_length;
    }
    throw "Unknown time unit";
}

bool Period::operator<(const Period& other) const {
    const std::int64_t a = m_length, b = other.m_length;
    // Deliberately the mirror of the general rule against a zero period (1Y < 0D is true);
    // tenor sorting elsewhere depends on it. A zero period is decided before its unit is looked at.
    if (b == 0) return a > 0;
    if (a == 0) return b < 0;
    if (!IsKnownUnit(m_units) || !IsKnownUnit(other.m_units)) {
        ZEP_FAIL("undecidable comparison between periods");
    }
    if (m_units == other.m_units) return a < b;

    // Both units are known here, so the pair code is unique.
    constexpr auto pair = [](TimeUnit x, TimeUnit y) { return x * 4 + y; };
    switch (pair(m_units, other.m_units)) {
        case pair(zep::Years, zep::Months): return 12 * a < b;
        case pair(zep::Months, zep::Years): return a < 12 * b;
        case pair(zep::Weeks, zep::Days): return 7 * a < b;
        case pair(zep::Days, zep::Weeks): return a < 7 * b;
        case pair(zep::Months, zep::Days): return 30 * a < b;
        case pair(zep::Days, zep::Months): return a < 30 * b;
        case pair(zep::Years, zep::Days): return 365 * a < b;
        case pair(zep::Days, zep::Years): return a < 365 * b;
        case pair(zep::Months, zep::Weeks): return 4.345 * a < b;
        case pair(zep::Weeks, zep::Months): return a < 4.345 * b;
        case pair(zep::Years, zep::Weeks): return 52.143 * a < b;
        case pair(zep::Weeks, zep::Years): return a < 52.143 * b;
    }
    ZEP_FAIL("undecidable comparison between periods");
}

}  // namespace zep
