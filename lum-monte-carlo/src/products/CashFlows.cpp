#include "lum-monte-carlo/products/CashFlows.hpp"

#include <algorithm>
#include <cctype>
#include <regex>
#include <stdexcept>

#include "lum-auxiliary/UserTextRegex.hpp"

namespace zep {

namespace {

std::string Upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

// The variable the price reads: the price variable, else the first one paid (as the pricer does).
std::string PaidVariable(const XScriptInputs& in, const std::vector<std::string>& scripts) {
    if (!in.priceVariable.empty()) return Upper(in.priceVariable);
    static const std::regex anyPayment = UserTextRegex(R"(([A-Z][A-Z0-9_.]*)\s+PAYS\b)");
    for (const std::string& script : scripts) {
        std::smatch match;
        if (std::regex_search(script, match, anyPayment)) return match[1];
    }
    throw std::invalid_argument("Cash flows: no event script pays anything");
}

}  // namespace

std::vector<std::pair<Date, double>> PresentValuesByDate(const XScriptInputs& inputs) {
    XScriptInputs routed = inputs;
    for (std::string& script : routed.eventScripts) script = Upper(script);
    const std::string payer = PaidVariable(inputs, routed.eventScripts);
    const std::regex payment =
        UserTextRegex("(^|[^A-Z0-9_.])" + std::regex_replace(payer, std::regex(R"(\.)"), R"(\.)") + R"(\s+PAYS\b)");
    std::vector<std::pair<Date, std::string>> variables;
    for (std::size_t i = 0; i < routed.eventScripts.size(); ++i) {
        if (!std::regex_search(routed.eventScripts[i], payment)) continue;
        const std::string name = "CASHFLOWOFDATE" + std::to_string(i);
        routed.eventScripts[i] = std::regex_replace(routed.eventScripts[i], payment, "$1" + name + " PAYS");
        variables.emplace_back(routed.eventDates[i], name);
    }
    if (variables.empty()) throw std::invalid_argument("Cash flows: no event script pays " + payer);
    routed.priceVariable = variables.front().second;
    const std::map<std::string, double> results = XScriptStructure(routed).ResultByVariable();
    std::vector<std::pair<Date, double>> flows;
    for (const auto& [date, name] : variables) flows.emplace_back(date, results.at(name));
    return flows;
}

}  // namespace zep
