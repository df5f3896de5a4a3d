#include "lum-monte-carlo/products/Snowball.hpp"

#include <algorithm>

#include "lum-monte-carlo/products/ScriptLines.hpp"
#include "lum-monte-carlo/products/TermChecks.hpp"

namespace zep {

namespace {

const std::string kType = "Snowball";

}  // namespace

Snowball::Snowball(SnowballTerms terms) : m_terms(std::move(terms)) {
    SnowballTerms& t = m_terms;
    CheckPositive(kType, "initial_level", t.initialLevel);
    CheckSchedule(kType, "observation_dates", t.observationDates, t.strikeDate);
    t.knockOutLevels = PerObservation(kType, "knock_out_levels", t.knockOutLevels, t.observationDates.size());
    for (std::size_t i = 0; i < t.knockOutLevels.size(); ++i) CheckNonNegative(kType, IndexedPath("knock_out_levels", i), t.knockOutLevels[i]);
    CheckNonNegative(kType, "coupon_rate", t.couponRate);
    t.knockIn.Check(kType);
    if (t.knockedIn && !t.knockIn.Active()) BadTerm(kType, "knocked_in", "needs a 'knock_in_barrier'");
    const double lowestKnockOut = *std::min_element(t.knockOutLevels.begin(), t.knockOutLevels.end());
    if (t.knockIn.Active() && t.knockIn.barrier >= lowestKnockOut)
        BadTerm(kType, "knock_in_barrier", InParentheses(Num(t.knockIn.barrier)) + " must be below every knock-out level (" + Num(lowestKnockOut) + ")");
}

double Snowball::Redemption(const Date& date) const {
    return 1.0 + m_terms.couponRate * (date.SerialNumber() - m_terms.strikeDate.SerialNumber()) / 365.0;
}

std::map<std::string, double> Snowball::Levels() const {
    const SnowballTerms& t = m_terms;
    std::map<std::string, double> levels{{"Knock-out (first)", t.knockOutLevels.front() * t.initialLevel},
                                         {"Knock-out (last)", t.knockOutLevels.back() * t.initialLevel}};
    if (t.knockIn.Active()) levels["Knock-in"] = t.knockIn.barrier * t.initialLevel;
    return levels;
}

std::vector<ProductEvent> Snowball::Events() const {
    const SnowballTerms& t = m_terms;
    std::vector<ProductEvent> events{
        {t.strikeDate, "strike: the note starts alive",
         ScriptLines().Line("S0 = " + Num(t.initialLevel)).Line("ALIVE = 1").Text() + (t.knockedIn ? "KI = 1\n" : "")}};
    for (ProductEvent& check : t.knockIn.DailyChecks(t.strikeDate, t.observationDates.back())) events.push_back(std::move(check));
    const std::size_t n = t.observationDates.size();
    for (std::size_t i = 0; i < n; ++i) {
        const std::string redemption = Num(Redemption(t.observationDates[i]));
        ScriptLines s;
        s.Line("PERF = SPOT() / S0").If("PERF >= " + Num(t.knockOutLevels[i])).Line("PAYOFF PAYS ALIVE * " + redemption);
        std::string comment = "observation " + std::to_string(i + 1) + " of " + std::to_string(n) + ": knock-out at or above " +
                              Num(t.knockOutLevels[i]) + " repays " + redemption;
        if (i + 1 < n) {
            s.Line("ALIVE = 0").EndIf();
        } else {
            s.Else();
            if (t.knockIn.Active()) {
                s.If("KI = 1").Line("PAYOFF PAYS ALIVE * MIN(PERF, 1)").Else().Line("PAYOFF PAYS ALIVE * " + redemption).EndIf();
                comment += "; otherwise " + redemption + ", or MIN(PERF, 1) once knocked in below " + Num(t.knockIn.barrier);
            } else {
                s.Line("PAYOFF PAYS ALIVE * " + redemption);
                comment += "; otherwise also " + redemption;
            }
            s.EndIf().Line("ALIVE = 0");
        }
        events.push_back({t.observationDates[i], comment, t.knockIn.ObservationCheck() + s.Text()});
    }
    return InDateOrder(std::move(events));
}

}  // namespace zep
