#include "lum-monte-carlo/products/TargetRedemptionForward.hpp"

#include "lum-monte-carlo/products/ScriptLines.hpp"
#include "lum-monte-carlo/products/TermChecks.hpp"

namespace zep {

namespace {

const std::string kType = "TargetRedemptionForward";

}  // namespace

TargetRedemptionForward::TargetRedemptionForward(TargetRedemptionForwardTerms terms, const Date& start)
    : m_terms(std::move(terms)) {
    TargetRedemptionForwardTerms& t = m_terms;
    CheckSchedule(kType, "fixing_dates", t.fixingDates, start);
    CheckPositive(kType, "strike", t.strike);
    if (t.pivot == 0.0) t.pivot = t.strike;
    CheckPositive(kType, "pivot", t.pivot);
    if (t.pivot > t.strike) BadTerm(kType, "pivot", InParentheses(Num(t.pivot)) + " must not be above the strike (" + Num(t.strike) + ")");
    CheckPositive(kType, "leverage", t.leverage);
    CheckChoice(kType, "last_gain", t.lastGain, {"full", "partial", "none"});
    const bool byAmount = t.targetAmount != 0.0;
    if (byAmount == (t.targetCount != 0))
        BadTerm(kType, "target_amount", "or 'target_count': give exactly one of the two targets");
    if (byAmount) {
        CheckPositive(kType, "target_amount", t.targetAmount);
        return;
    }
    if (t.targetCount < 1 || static_cast<std::size_t>(t.targetCount) > t.fixingDates.size())
        BadTerm(kType, "target_count", InParentheses(std::to_string(t.targetCount)) + " is never reached: it must be from 1 to the " +
                                           std::to_string(t.fixingDates.size()) + " fixings");
    if (t.lastGain == "partial") BadTerm(kType, "last_gain", "'partial' needs a target by amount ('target_amount')");
}

std::string TargetRedemptionForward::Fixing() const {
    const TargetRedemptionForwardTerms& t = m_terms;
    ScriptLines s;
    s.Line("AMOUNT = SPOT() - " + Num(t.strike));
    if (t.leverage != 1.0) s.If(Num(t.pivot) + " > SPOT()").Line("AMOUNT = " + Num(t.leverage) + " * AMOUNT").EndIf();
    if (t.targetAmount > 0.0) {
        s.Line("GAIN = MAX(AMOUNT, 0)").If("GAINS + GAIN >= " + Num(t.targetAmount));
        if (t.lastGain == "full") s.Line("PAYOFF PAYS ALIVE * AMOUNT");
        if (t.lastGain == "partial") s.Line("PAYOFF PAYS ALIVE * (" + Num(t.targetAmount) + " - GAINS)");
        return s.Line("ALIVE = 0").Else().Line("PAYOFF PAYS ALIVE * AMOUNT").Line("GAINS = GAINS + GAIN").EndIf().Text();
    }
    s.If("AMOUNT > 0").Line("WINS = WINS + 1").EndIf().If("WINS >= " + std::to_string(t.targetCount));
    if (t.lastGain == "full") s.Line("PAYOFF PAYS ALIVE * AMOUNT");
    return s.Line("ALIVE = 0").Else().Line("PAYOFF PAYS ALIVE * AMOUNT").EndIf().Text();
}

std::map<std::string, double> TargetRedemptionForward::Levels() const {
    return {{"Strike", m_terms.strike}, {"Pivot", m_terms.pivot}};
}

std::vector<ProductEvent> TargetRedemptionForward::Events() const {
    const TargetRedemptionForwardTerms& t = m_terms;
    const std::string target = t.targetAmount > 0.0 ? "gains reach " + Num(t.targetAmount) : std::to_string(t.targetCount) + " gaining fixings";
    const std::string code = Fixing();
    std::vector<ProductEvent> events;
    for (std::size_t i = 0; i < t.fixingDates.size(); ++i) {
        const std::string comment = "fixing " + std::to_string(i + 1) + " of " + std::to_string(t.fixingDates.size()) +
                                    ": settles SPOT() - " + Num(t.strike) + " (times " + Num(t.leverage) + " below " +
                                    Num(t.pivot) + "); ends when " + target + ", the last gain paid " + t.lastGain;
        events.push_back({t.fixingDates[i], comment, (i == 0 ? "ALIVE = 1\n" : "") + code});
    }
    return events;
}

}  // namespace zep
