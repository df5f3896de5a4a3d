#include "lum-monte-carlo/script/ScriptProduct.hpp"

#include <algorithm>

#include "lum-auxiliary/Error.hpp"
#include "lum-monte-carlo/script/Compiler.hpp"
#include "lum-monte-carlo/script/ConstCondProcessor.hpp"
#include "lum-monte-carlo/script/ConstProcessor.hpp"
#include "lum-monte-carlo/script/Debugger.hpp"
#include "lum-monte-carlo/script/DomainProcessor.hpp"
#include "lum-monte-carlo/script/IfProcessor.hpp"
#include "lum-monte-carlo/script/Parser.hpp"
#include "lum-monte-carlo/script/VarIndexer.hpp"

namespace zep {

namespace {

void VisitAll(std::vector<Statements>& events, Visitor& visitor) {
    for (auto& statements : events)
        for (auto& statement : statements) statement->Accept(visitor);
}

std::size_t IfNestingOf(const Node& node) {
    std::size_t deepest = 0;
    for (const auto& argument : node.arguments) deepest = std::max(deepest, IfNestingOf(*argument));
    return dynamic_cast<const NodeIf*>(&node) ? deepest + 1 : deepest;
}

}  // namespace

ScriptProduct::ScriptProduct(std::vector<Date> eventDates, const std::vector<std::string>& scripts) {
    ZEP_REQUIRE(eventDates.size() == scripts.size(),
                "Got " + std::to_string(eventDates.size()) + " event dates but " +
                    std::to_string(scripts.size()) + " scripts");
    for (std::size_t i = 0; i < eventDates.size(); ++i) {
        ZEP_REQUIRE(!eventDates[i].IsNull(), "Event date " + std::to_string(i + 1) + " is the null date");
        ZEP_REQUIRE(i == 0 || eventDates[i - 1] < eventDates[i], "Event dates must be strictly increasing");
    }

    std::vector<Statements> events;
    events.reserve(scripts.size());
    for (const auto& script : scripts) events.push_back(ParseScript(script));

    VarIndexer indexer;
    VisitAll(events, indexer);
    ConstProcessor constants;
    VisitAll(events, constants);
    ConstCondProcessor constantConditions;
    VisitAll(events, constantConditions);
    IfProcessor ifs;
    VisitAll(events, ifs);
    DomainProcessor domains(indexer.VariableNames().size());
    VisitAll(events, domains);

    Compiler compiler;
    Compiler smoothed(true);
    std::size_t ifNesting = 0;
    for (const auto& statements : events) {
        compiler.AddEvent(statements);
        smoothed.AddEvent(statements);
        for (const auto& statement : statements) ifNesting = std::max(ifNesting, IfNestingOf(*statement));
    }

    m_eventDates = std::move(eventDates);
    m_events = std::move(events);
    m_variableNames = indexer.VariableNames();
    m_compiled = std::move(compiler).Result();
    m_compiledSmoothed = std::move(smoothed).Result();
    m_ifNesting = ifNesting;
}

std::string ScriptProduct::DebugText() const {
    std::string text;
    for (std::size_t i = 0; i < m_events.size(); ++i) {
        text += "EVENT " + std::to_string(i + 1) + " " + m_eventDates[i].ToString() + "\n";
        Debugger debugger;
        for (const auto& statement : m_events[i]) statement->Accept(debugger);
        text += debugger.Text();
    }
    return text;
}

}  // namespace zep
