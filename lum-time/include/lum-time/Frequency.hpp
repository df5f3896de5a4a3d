// Payment frequency as periods per year. The same codes give the compounding of rates:
// NoFrequency and Once mean simple interest, Continuous continuous compounding.
#pragma once

#include <cstdint>
#include <string>

namespace zep {

enum Frequency : std::int32_t {
    NoFrequency = -1,
    Once = 0,
    Annual = 1,
    Semiannual = 2,
    EveryFourthMonth = 3,
    Quarterly = 4,
    Bimonthly = 6,
    Monthly = 12,
    Fourweekly = 13,
    Biweekly = 26,
    Weekly = 52,
    Daily = 365,
    Continuous = 366,
};

// Codes the text parser yields that have no printed name and no regular period; a schedule
// treats them as frequencies without a regular coupon period.
inline constexpr std::int32_t OneBusinessDay = 260;  // overnight-index legs fixing daily
inline constexpr std::int32_t ImmRoll = -5;          // quarterly on IMM dates
inline constexpr std::int32_t EndOfMonthRoll = -8;   // monthly, rolled to month ends
inline constexpr std::int32_t AtMaturity = -9;       // one payment at maturity, accrual-based
inline constexpr std::int32_t Irregular = -11;       // payment dates given explicitly

std::string FrequencyToString(Frequency frequency);
Frequency longToFrequency(long value);
Frequency stringToFrequency(const std::string& text);

}  // namespace zep
