#include "lum-closed-form/StrikeQuote.hpp"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <regex>

#include "lum-auxiliary/Error.hpp"
#include "lum-auxiliary/UserTextRegex.hpp"
#include "lum-closed-form/BSVanilla.hpp"

namespace zep {

namespace {

// One pip of an FX price and one basis point are both a ten-thousandth.
constexpr double kPip = 1e-4;

std::string Trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string Upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

// Strikes that depend on their own volatility (delta-neutral, delta quotes) iterate strike and
// smile until the strike stops moving; a flat smile settles on the second pass.
template <class StrikeForVolatility>
double SmileFixedPoint(const VolatilitySource& volatility, double timeToExpiry, double start,
                       const StrikeForVolatility& strikeFor) {
    double strike = start;
    for (int pass = 0; pass < 100; ++pass) {
        const double next = strikeFor(volatility.Volatility(strike, timeToExpiry));
        if (std::fabs(next - strike) <= 1e-12 * std::max(1.0, std::fabs(strike))) return next;
        strike = next;
    }
    ZEP_FAIL("strike and smile do not settle on one strike");
}

double PercentMoneyness(int optionType, const std::string& kind, double percent,
                        const StrikeQuoteMarket& market) {
    const bool onForward = kind.back() == 'F';
    const double base = onForward ? market.forward : market.spot;
    // Out of the money lies above the base for a call and below it for a put.
    const double outward = optionType == BSVanilla::Call ? 1.0 : -1.0;
    const double direction = kind.rfind("OTM", 0) == 0 ? outward : -outward;
    return base * (1.0 + direction * percent / 100.0);
}

// A number the quote's pattern matched: digits that may still be too many for a double.
double QuotedNumber(const std::string& digits, const std::string& quote) {
    const double value = std::strtod(digits.c_str(), nullptr);
    if (!std::isfinite(value)) ZEP_FAIL("'" + quote + "' is an invalid strike quote.");
    return value;
}

}  // namespace

int OptionTypeFromSide(const std::string& side) {
    const std::string text = Upper(Trimmed(side));
    if (text == "CALL" || text == "C") return BSVanilla::Call;
    if (text == "PUT" || text == "P") return BSVanilla::Put;
    ZEP_FAIL("unknow side");
}

double StrikeFromQuote(int optionType, const std::string& quote, const StrikeQuoteMarket& market,
                       const VolatilitySource& volatility) {
    static const auto flags = std::regex::ECMAScript | std::regex::icase;
    static const std::regex atmfOffset = UserTextRegex(R"(ATMF\s*([+\-])\s*(\d+(?:\.\d+)?)\s*(?:PIP|BP|BPS)?)", flags);
    static const std::regex atm = UserTextRegex(R"(ATMF|ATMS|ATM|ATMD)", flags);
    static const std::regex percentAfter = UserTextRegex(R"((\d+(?:\.\d+)?)\s*(?:%)?\s*(OTM|ITM|OTMF|ITMF))", flags);
    static const std::regex percentBefore = UserTextRegex(R"((OTM|ITM|OTMF|ITMF)\s*(\d+(?:\.\d+)?)\s*(?:%)?)", flags);
    static const std::regex delta = UserTextRegex(R"((([0-9]{1,2}(\.[0-9]+)?)|D([0-9]{1,2}(\.[0-9]+)?))D)", flags);

    const std::string text = Upper(Trimmed(quote));
    std::smatch match;
    if (std::regex_match(text, match, atmfOffset)) {
        const double offset = QuotedNumber(match[2].str(), quote) * kPip;
        return market.forward + (match[1].str() == "-" ? -offset : offset);
    }
    if (std::regex_match(text, atm)) {
        if (text == "ATMS") return market.spot;
        if (text != "ATMD") return market.forward;
        return SmileFixedPoint(volatility, market.timeToExpiry, market.forward, [&](double sigma) {
            return market.forward * std::exp(0.5 * sigma * sigma * market.timeToExpiry);
        });
    }
    if (std::regex_match(text, match, percentAfter))
        return PercentMoneyness(optionType, match[2].str(), QuotedNumber(match[1].str(), quote), market);
    if (std::regex_match(text, match, percentBefore))
        return PercentMoneyness(optionType, match[1].str(), QuotedNumber(match[2].str(), quote), market);
    if (std::regex_match(text, match, delta)) {
        const bool onForward = match[4].matched;
        const double size = QuotedNumber(onForward ? match[4].str() : match[2].str(), quote) / 100.0;
        const double target = optionType == BSVanilla::Call ? size : -size;
        const DeltaKind kind = onForward ? DeltaKind::Forward : DeltaKind::Spot;
        return SmileFixedPoint(volatility, market.timeToExpiry, market.forward, [&](double sigma) {
            return BSVanilla::StrikeImpliedFromDelta(
                optionType, target, sigma, market.timeToExpiry, market.timeToDelivery,
                market.domesticRate, market.foreignRate, market.spot, market.forward, kind);
        });
    }
    std::size_t used = 0;
    double strike = 0.0;
    try {
        strike = std::stod(text, &used);
    } catch (const std::exception&) {
        used = 0;
    }
    if (text.empty() || used != text.size()) ZEP_FAIL("'" + quote + "' is an invalid strike quote.");
    return strike;
}

}  // namespace zep
