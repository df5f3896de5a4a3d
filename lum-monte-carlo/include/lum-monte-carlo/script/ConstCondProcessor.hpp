// Replaces every constant condition by NodeTrue or NodeFalse, so that an IF whose outcome is
// known takes or skips its branch without evaluating anything.
#pragma once

#include "lum-monte-carlo/script/Nodes.hpp"

namespace zep {

class ConstCondProcessor : public Visitor {
public:
    using Visitor::Visit;
    void Visit(NodeIf& node) override;
    void Visit(NodeAnd& node) override;
    void Visit(NodeOr& node) override;
    void Visit(NodeNot& node) override;

private:
    void ReplaceConstantConditions(Node& node);
};

}  // namespace zep
