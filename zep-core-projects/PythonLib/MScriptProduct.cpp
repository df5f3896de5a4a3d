#include "MScriptProduct.hpp"

#include <boost/make_shared.hpp>

namespace zep::python {

MScriptProduct::MScriptProduct(const std::vector<DateInput>& eventDates, const std::vector<std::string>& scriptTexts) {
    Guarded("MScriptProduct::MScriptProduct",
            [&] { m_object = boost::make_shared<zep::ScriptProduct>(Values(eventDates), scriptTexts); });
}

std::size_t MScriptProduct::EventCount() const {
    return Guarded("MScriptProduct::EventCount",
                   [&] { return Object("zep::MScriptProduct::EventCount").EventCount(); });
}

std::vector<zep::Date> MScriptProduct::EventDates() const {
    return Guarded("MScriptProduct::EventDates",
                   [&] { return Object("zep::MScriptProduct::EventDates").EventDates(); });
}

std::vector<std::string> MScriptProduct::VariableNames() const {
    return Guarded("MScriptProduct::VariableNames",
                   [&] { return Object("zep::MScriptProduct::VariableNames").VariableNames(); });
}

std::string MScriptProduct::DebugText() const {
    return Guarded("MScriptProduct::DebugText",
                   [&] { return Object("zep::MScriptProduct::DebugText").DebugText(); });
}

std::vector<std::pair<std::string, double>> MScriptProduct::Evaluate(const std::vector<zep::ScenarioPoint>& scenario,
                                                                     bool smooth, double eps) const {
    return Guarded("MScriptProduct::Evaluate", [&] {
        const zep::ScriptProduct& product = Object("zep::MScriptProduct::Evaluate");
        zep::ScriptPathEvaluator evaluator(product, eps);
        std::vector<double> values(product.VariableCount());
        if (smooth) evaluator.EvaluateFuzzy(scenario, values);
        else evaluator.Evaluate(scenario, values);
        std::vector<std::pair<std::string, double>> named;
        for (std::size_t i = 0; i < values.size(); ++i) named.emplace_back(product.VariableNames()[i], values[i]);
        return named;
    });
}

}  // namespace zep::python
