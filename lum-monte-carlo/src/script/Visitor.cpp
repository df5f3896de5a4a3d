#include "lum-monte-carlo/script/Visitor.hpp"

#include "lum-monte-carlo/script/Nodes.hpp"

namespace zep {

void Visitor::VisitArguments(Node& node) {
    for (auto& argument : node.arguments) argument->Accept(*this);
}

void ConstVisitor::VisitArguments(const Node& node) {
    for (const auto& argument : node.arguments) argument->Accept(*this);
}

#define ZEP_DEFINE_VISIT(N)                                          \
    void Visitor::Visit(N& node) { VisitArguments(node); }           \
    void ConstVisitor::Visit(const N& node) { VisitArguments(node); }
ZEP_SCRIPT_NODES(ZEP_DEFINE_VISIT)
#undef ZEP_DEFINE_VISIT

}  // namespace zep
