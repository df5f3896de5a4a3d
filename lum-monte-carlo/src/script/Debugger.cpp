#include "lum-monte-carlo/script/Debugger.hpp"

#include <charconv>

namespace zep {

namespace {

// Shortest text that reads back to the same double.
std::string Number(double value) {
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

}  // namespace

void Debugger::Print(const Node& node, std::string_view label) {
    m_out << std::string(2 * m_indent, ' ') << label;
    if (node.isConst && !dynamic_cast<const NodeConst*>(&node))
        m_out << " [CONST=" << Number(node.constVal) << ']';
    m_out << '\n';
    ++m_indent;
    VisitArguments(node);
    --m_indent;
}

void Debugger::PrintComparison(const compNode& node, std::string_view label) {
    std::string text(label);
    if (node.discrete)
        text += "[DISCRETE,BOUNDS=" + Number(node.lowerBound) + "," + Number(node.upperBound) + "]";
    else
        text += "[CONT,EPS=" + Number(node.eps) + "]";
    if (node.alwaysTrue) text += " ALWAYS TRUE";
    if (node.alwaysFalse) text += " ALWAYS FALSE";
    Print(node, text);
}

void Debugger::Visit(const NodeAssign& node) { Print(node, "ASSIGN"); }
void Debugger::Visit(const NodePays& node) { Print(node, "PAYS"); }
void Debugger::Visit(const NodeIf& node) {
    std::string text = "IF[FIRSTELSE=" + std::to_string(node.firstElse) + "]";
    if (!node.affectedVars.empty()) {
        text += " WRITES";
        for (const auto index : node.affectedVars) text += " #" + std::to_string(index);
    }
    Print(node, text);
}
void Debugger::Visit(const NodeCollect& node) { Print(node, "COLLECT"); }
void Debugger::Visit(const NodeAnd& node) { Print(node, "AND"); }
void Debugger::Visit(const NodeOr& node) { Print(node, "OR"); }
void Debugger::Visit(const NodeNot& node) { Print(node, "NOT"); }
void Debugger::Visit(const NodeTrue& node) { Print(node, "TRUE"); }
void Debugger::Visit(const NodeFalse& node) { Print(node, "FALSE"); }
void Debugger::Visit(const NodeEqual& node) { PrintComparison(node, "EQUAL"); }
void Debugger::Visit(const NodeSup& node) { PrintComparison(node, "SUP"); }
void Debugger::Visit(const NodeSupEqual& node) { PrintComparison(node, "SUPEQUAL"); }
void Debugger::Visit(const NodeAdd& node) { Print(node, "ADD"); }
void Debugger::Visit(const NodeSub& node) { Print(node, "SUB"); }
void Debugger::Visit(const NodeMult& node) { Print(node, "MULT"); }
void Debugger::Visit(const NodeDiv& node) { Print(node, "DIV"); }
void Debugger::Visit(const NodePow& node) { Print(node, "POW"); }
void Debugger::Visit(const NodeUplus& node) { Print(node, "UPLUS"); }
void Debugger::Visit(const NodeUminus& node) { Print(node, "UMINUS"); }
void Debugger::Visit(const NodeConst& node) { Print(node, "CONST " + Number(node.value)); }
void Debugger::Visit(const NodeVar& node) {
    Print(node, "VAR " + node.name + " #" + std::to_string(node.index));
}
void Debugger::Visit(const NodeSpot& node) { Print(node, "SPOT"); }
void Debugger::Visit(const NodeLog& node) { Print(node, "LOG"); }
void Debugger::Visit(const NodeSqrt& node) { Print(node, "SQRT"); }
void Debugger::Visit(const NodeMin& node) { Print(node, "MIN"); }
void Debugger::Visit(const NodeMax& node) { Print(node, "MAX"); }
void Debugger::Visit(const NodeSmooth& node) { Print(node, "SMOOTH"); }

}  // namespace zep
