#include "lum-monte-carlo/products/KnockIn.hpp"

#include "lum-monte-carlo/products/ScriptLines.hpp"
#include "lum-monte-carlo/products/TermChecks.hpp"

namespace zep {

namespace {

std::string Test(double barrier) {
    return ScriptLines().If(Num(barrier) + " > SPOT() / S0").Line("KI = 1").EndIf().Text();
}

}  // namespace

void KnockIn::Check(const std::string& type) const {
    CheckNonNegative(type, "knock_in_barrier", barrier);
    CheckChoice(type, "knock_in_monitoring", monitoring, {"continuous", "discrete"});
}

std::vector<ProductEvent> KnockIn::DailyChecks(const Date& strikeDate, const Date& lastObservation) const {
    std::vector<ProductEvent> checks;
    if (!Active() || monitoring != "continuous") return checks;
    const std::string code = Test(barrier);
    for (Date d = strikeDate + 1; d <= lastObservation; d = d + 1)
        if (d.Weekday() != 1 && d.Weekday() != 7) checks.push_back({d, "knock-in if the close is below " + Num(barrier) + " of S0", code});
    return checks;
}

std::string KnockIn::ObservationCheck() const {
    return Active() && monitoring == "discrete" ? Test(barrier) : "";
}

}  // namespace zep
