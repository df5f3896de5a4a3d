// Marks the expressions and conditions whose value is known without simulation (literals and
// operators over them) and stores that value in `constVal` (1/0 for conditions).
#pragma once

#include "lum-monte-carlo/script/Nodes.hpp"

namespace zep {

class ConstProcessor : public Visitor {
public:
    using Visitor::Visit;
    void Visit(NodeConst& node) override;
    void Visit(NodeTrue& node) override;
    void Visit(NodeFalse& node) override;
    void Visit(NodeAdd& node) override;
    void Visit(NodeSub& node) override;
    void Visit(NodeMult& node) override;
    void Visit(NodeDiv& node) override;
    void Visit(NodePow& node) override;
    void Visit(NodeUplus& node) override;
    void Visit(NodeUminus& node) override;
    void Visit(NodeLog& node) override;
    void Visit(NodeSqrt& node) override;
    void Visit(NodeMin& node) override;
    void Visit(NodeMax& node) override;
    void Visit(NodeSmooth& node) override;
    void Visit(NodeEqual& node) override;
    void Visit(NodeSup& node) override;
    void Visit(NodeSupEqual& node) override;
    void Visit(NodeAnd& node) override;
    void Visit(NodeOr& node) override;
    void Visit(NodeNot& node) override;

private:
    // Visits the children; true when all of them are constant.
    bool VisitAllConstant(Node& node);
};

}  // namespace zep
