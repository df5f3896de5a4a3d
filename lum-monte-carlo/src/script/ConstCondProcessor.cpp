#include "lum-monte-carlo/script/ConstCondProcessor.hpp"

#include <memory>

namespace zep {

namespace {

std::unique_ptr<Node> Verdict(const Node& condition) {
    std::unique_ptr<Node> verdict;
    if (condition.constVal != 0.0) verdict = std::make_unique<NodeTrue>();
    else verdict = std::make_unique<NodeFalse>();
    verdict->isConst = true;
    verdict->constVal = condition.constVal != 0.0 ? 1.0 : 0.0;
    return verdict;
}

bool IsVerdict(const Node& node) {
    return dynamic_cast<const NodeTrue*>(&node) || dynamic_cast<const NodeFalse*>(&node);
}

}  // namespace

void ConstCondProcessor::ReplaceConstantConditions(Node& node) {
    for (auto& argument : node.arguments) {
        if (argument->isConst && dynamic_cast<boolNode*>(argument.get()) && !IsVerdict(*argument))
            argument = Verdict(*argument);
    }
}

void ConstCondProcessor::Visit(NodeIf& node) {
    VisitArguments(node);
    ReplaceConstantConditions(node);
}
void ConstCondProcessor::Visit(NodeAnd& node) {
    VisitArguments(node);
    ReplaceConstantConditions(node);
}
void ConstCondProcessor::Visit(NodeOr& node) {
    VisitArguments(node);
    ReplaceConstantConditions(node);
}
void ConstCondProcessor::Visit(NodeNot& node) {
    VisitArguments(node);
    ReplaceConstantConditions(node);
}

}  // namespace zep
