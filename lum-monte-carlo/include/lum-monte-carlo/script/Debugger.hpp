// Prints a statement tree one node per line, children indented under their parent, with what
// the preparing visitors found: variable indices, constant values, the analysis of each
// comparison ("[CONT,EPS=" or "[DISCRETE,BOUNDS=") and the else index of each IF.
#pragma once

#include <sstream>
#include <string>
#include <string_view>

#include "lum-monte-carlo/script/Nodes.hpp"

namespace zep {

class Debugger : public ConstVisitor {
public:
    using ConstVisitor::Visit;
#define ZEP_DECLARE_VISIT(N) void Visit(const N& node) override;
    ZEP_SCRIPT_NODES(ZEP_DECLARE_VISIT)
#undef ZEP_DECLARE_VISIT

    std::string Text() const { return m_out.str(); }

private:
    void Print(const Node& node, std::string_view label);
    void PrintComparison(const compNode& node, std::string_view label);

    std::ostringstream m_out;
    int m_indent = 0;
};

}  // namespace zep
