#include "lum-monte-carlo/products/AutoCall.hpp"

#include <algorithm>

#include "lum-monte-carlo/products/ScriptLines.hpp"
#include "lum-monte-carlo/products/TermChecks.hpp"

namespace zep {

namespace {

const std::string kType = "AutoCall";

}  // namespace

AutoCall::AutoCall(AutoCallTerms terms) : m_terms(std::move(terms)) {
    AutoCallTerms& t = m_terms;
    if (t.underlyings != 1)
        BadTerm(kType, "underlyings",
                "is " + std::to_string(t.underlyings) +
                    ": a worst-of needs a Monte Carlo of several underlyings, and the script pricer simulates one");
    CheckPositive(kType, "initial_level", t.initialLevel);
    CheckSchedule(kType, "observation_dates", t.observationDates, t.strikeDate);
    const std::size_t n = t.observationDates.size();
    t.autocallLevels = PerObservation(kType, "autocall_levels", t.autocallLevels, n);
    t.coupons = PerObservation(kType, "coupons", t.coupons, n);
    for (std::size_t i = 0; i < n; ++i) {
        CheckPositive(kType, IndexedPath("autocall_levels", i), t.autocallLevels[i]);
        CheckNonNegative(kType, IndexedPath("coupons", i), t.coupons[i]);
    }
    CheckNonNegative(kType, "coupon_barrier", t.couponBarrier);
    t.knockIn.Check(kType);
    CheckPositive(kType, "put_strike", t.putStrike);
    CheckNonNegative(kType, "missed_coupons", t.missedCoupons);
    if (t.missedCoupons > 0.0 && !(t.memory && t.couponBarrier > 0.0))
        BadTerm(kType, "missed_coupons", "needs coupons with memory ('memory' and a 'coupon_barrier')");
    if (t.knockedIn && !t.knockIn.Active()) BadTerm(kType, "knocked_in", "needs a 'knock_in_barrier'");
    const double lowestCall = *std::min_element(t.autocallLevels.begin(), t.autocallLevels.end());
    if (t.couponBarrier > lowestCall)
        BadTerm(kType, "coupon_barrier", InParentheses(Num(t.couponBarrier)) + " must not be above an autocall level (" + Num(lowestCall) + ")");
    if (t.knockIn.barrier >= lowestCall)
        BadTerm(kType, "knock_in_barrier", InParentheses(Num(t.knockIn.barrier)) + " must be below every autocall level (" + Num(lowestCall) + ")");
    if (t.couponBarrier > 0.0 && t.knockIn.barrier > t.couponBarrier)
        BadTerm(kType, "knock_in_barrier", InParentheses(Num(t.knockIn.barrier)) + " must not be above the coupon barrier (" + Num(t.couponBarrier) + ")");
}

std::string AutoCall::Start() const {
    ScriptLines s;
    s.Line("S0 = " + Num(m_terms.initialLevel)).Line("ALIVE = 1");
    if (m_terms.knockedIn) s.Line("KI = 1");
    if (m_terms.missedCoupons > 0.0) s.Line("MISSED = " + Num(m_terms.missedCoupons));
    return s.Text();
}

std::string AutoCall::Observation(std::size_t i) const {
    const AutoCallTerms& t = m_terms;
    const std::string coupon = Num(t.coupons[i]);
    const bool last = i + 1 == t.observationDates.size();
    ScriptLines s;
    s.Line("PERF = SPOT() / S0");
    if (t.couponBarrier > 0.0) {
        s.If("PERF >= " + Num(t.couponBarrier));
        if (t.memory) {
            s.Line("PAYOFF PAYS ALIVE * (" + coupon + " + MISSED)").Line("MISSED = 0").Else().Line("MISSED = MISSED + " + coupon);
        } else {
            s.Line("PAYOFF PAYS ALIVE * " + coupon);
        }
        s.EndIf();
    } else if (t.coupons[i] > 0.0) {
        s.Line("PAYOFF PAYS ALIVE * " + coupon);
    }
    if (!last) return s.If("PERF >= " + Num(t.autocallLevels[i])).Line("PAYOFF PAYS ALIVE").Line("ALIVE = 0").EndIf().Text();
    if (t.knockIn.Active()) {
        s.If("PERF >= " + Num(t.autocallLevels[i])).Line("PAYOFF PAYS ALIVE").Else();
        s.If("KI = 1").Line("PAYOFF PAYS ALIVE * MIN(PERF / " + Num(t.putStrike) + ", 1)").Else().Line("PAYOFF PAYS ALIVE").EndIf();
        s.EndIf();
    } else {
        s.Line("PAYOFF PAYS ALIVE");
    }
    return s.Line("ALIVE = 0").Text();
}

std::map<std::string, double> AutoCall::Levels() const {
    const AutoCallTerms& t = m_terms;
    std::map<std::string, double> levels{{"Autocall (first)", t.autocallLevels.front() * t.initialLevel},
                                         {"Autocall (last)", t.autocallLevels.back() * t.initialLevel}};
    if (t.couponBarrier > 0.0) levels["Coupon barrier"] = t.couponBarrier * t.initialLevel;
    if (t.knockIn.Active()) levels["Knock-in"] = t.knockIn.barrier * t.initialLevel;
    return levels;
}

std::vector<ProductEvent> AutoCall::Events() const {
    const AutoCallTerms& t = m_terms;
    std::vector<ProductEvent> events{
        {t.strikeDate, "strike: the note starts alive", Start()}};
    for (ProductEvent& check : t.knockIn.DailyChecks(t.strikeDate, t.observationDates.back())) events.push_back(std::move(check));
    const std::size_t n = t.observationDates.size();
    for (std::size_t i = 0; i < n; ++i) {
        std::string comment = "observation " + std::to_string(i + 1) + " of " + std::to_string(n) + ": coupon " +
                              Num(t.coupons[i]) + (t.couponBarrier > 0.0 ? " at or above " + Num(t.couponBarrier) : "") +
                              (t.memory ? " (with memory)" : "") + ", autocall at or above " + Num(t.autocallLevels[i]);
        if (i + 1 == n && t.knockIn.Active())
            comment += "; not called: 1, or MIN(PERF / " + Num(t.putStrike) + ", 1) once knocked in below " + Num(t.knockIn.barrier);
        events.push_back({t.observationDates[i], comment, t.knockIn.ObservationCheck() + Observation(i)});
    }
    return InDateOrder(std::move(events));
}

}  // namespace zep
