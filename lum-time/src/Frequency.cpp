#include "lum-time/Frequency.hpp"

#include <string_view>
#include <utility>

#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

constexpr std::pair<Frequency, std::string_view> kNames[] = {
    {NoFrequency, "NoFrequency"}, {Once, "Once"},           {Annual, "Annual"},
    {Semiannual, "Semiannual"},   {EveryFourthMonth, "EveryFourthMonth"},
    {Quarterly, "Quarterly"},     {Bimonthly, "Bimonthly"}, {Monthly, "Monthly"},
    {Fourweekly, "Fourweekly"},   {Biweekly, "Biweekly"},   {Weekly, "Weekly"},
    {Daily, "Daily"},             {Continuous, "Continuous"},
};

// Whole-text, case-sensitive spellings, tried in this order. The first two groups are the
// market's fixed ones; the rest are the names, their lower-case and short forms, the code as
// text and the coupon tenor.
constexpr std::pair<std::string_view, std::int32_t> kSpellings[] = {
    {"daily", Daily}, {"365", Daily}, {"d", Daily}, {"D", Daily}, {"1d", Daily}, {"1od", Daily},
    {"1 day ois", OneBusinessDay}, {"1 business day", OneBusinessDay},
    {"Daily", Daily}, {"1D", Daily}, {"260", OneBusinessDay},
    {"weekly", Weekly}, {"Weekly", Weekly}, {"w", Weekly}, {"W", Weekly}, {"52", Weekly},
    {"1w", Weekly}, {"1W", Weekly},
    {"biweekly", Biweekly}, {"Biweekly", Biweekly}, {"26", Biweekly}, {"2w", Biweekly},
    {"2W", Biweekly},
    {"fourweekly", Fourweekly}, {"Fourweekly", Fourweekly}, {"13", Fourweekly},
    {"4w", Fourweekly}, {"4W", Fourweekly},
    {"monthly", Monthly}, {"Monthly", Monthly}, {"m", Monthly}, {"M", Monthly}, {"12", Monthly},
    {"1m", Monthly}, {"1M", Monthly},
    {"bimonthly", Bimonthly}, {"Bimonthly", Bimonthly}, {"6", Bimonthly}, {"2m", Bimonthly},
    {"2M", Bimonthly},
    {"quarterly", Quarterly}, {"Quarterly", Quarterly}, {"q", Quarterly}, {"Q", Quarterly},
    {"4", Quarterly}, {"3m", Quarterly}, {"3M", Quarterly},
    {"everyfourthmonth", EveryFourthMonth}, {"EveryFourthMonth", EveryFourthMonth},
    {"3", EveryFourthMonth}, {"4m", EveryFourthMonth}, {"4M", EveryFourthMonth},
    {"semiannual", Semiannual}, {"Semiannual", Semiannual}, {"semi-annual", Semiannual},
    {"s", Semiannual}, {"S", Semiannual}, {"2", Semiannual}, {"6m", Semiannual},
    {"6M", Semiannual},
    {"annual", Annual}, {"Annual", Annual}, {"annually", Annual}, {"yearly", Annual},
    {"a", Annual}, {"A", Annual}, {"1", Annual}, {"1y", Annual}, {"1Y", Annual},
    {"12m", Annual}, {"12M", Annual},
    {"once", Once}, {"Once", Once}, {"0", Once}, {"zero coupon", Once}, {"bullet", Once},
    {"nofrequency", NoFrequency}, {"NoFrequency", NoFrequency}, {"none", NoFrequency},
    {"-1", NoFrequency},
    {"imm", ImmRoll}, {"IMM", ImmRoll},
    {"eom", EndOfMonthRoll}, {"EOM", EndOfMonthRoll},
    {"at maturity", AtMaturity}, {"term", AtMaturity},
    {"irregular", Irregular}, {"custom", Irregular},
    {"continuous", Continuous}, {"cont", Continuous}, {"Continuous", Continuous},
    {"366", Continuous},
};

std::string Invalid(const std::string& value) { return "'" + value + "' is an invalid Frequency"; }

}  // namespace

std::string FrequencyToString(Frequency frequency) {
    for (const auto& [code, name] : kNames)
        if (code == frequency) return std::string(name);
    ZEP_FAIL(Invalid(std::to_string(static_cast<std::int32_t>(frequency))));
}

Frequency longToFrequency(long value) {
    for (const auto& [code, name] : kNames)
        if (code == value) return code;
    for (const auto& [text, code] : kSpellings)
        if (code == value) return static_cast<Frequency>(code);
    ZEP_FAIL(Invalid(std::to_string(value)));
}

Frequency stringToFrequency(const std::string& text) {
    for (const auto& [spelling, code] : kSpellings)
        if (text == spelling) return static_cast<Frequency>(code);
    ZEP_FAIL(Invalid(text));
}

}  // namespace zep
