// Propagates through each event, in date order, the set of values every variable and
// expression can take, and classifies each comparison: over a domain of single points it is
// discrete and gets the bounds that its fuzzy evaluation interpolates between; otherwise it is
// continuous and is smoothed over its `eps`. Raises "Division by {0}", "Inconsistent bounds"
// and "Smooth called with discrete x".
#pragma once

#include <vector>

#include "lum-monte-carlo/script/Domain.hpp"
#include "lum-monte-carlo/script/Nodes.hpp"

namespace zep {

class DomainProcessor : public Visitor {
public:
    // Variables start at zero before the first event.
    explicit DomainProcessor(std::size_t variableCount);

    using Visitor::Visit;
    void Visit(NodeAssign& node) override;
    void Visit(NodePays& node) override;
    void Visit(NodeIf& node) override;
    void Visit(NodeEqual& node) override;
    void Visit(NodeSup& node) override;
    void Visit(NodeSupEqual& node) override;
    void Visit(NodeAdd& node) override;
    void Visit(NodeSub& node) override;
    void Visit(NodeMult& node) override;
    void Visit(NodeDiv& node) override;
    void Visit(NodePow& node) override;
    void Visit(NodeUplus& node) override;
    void Visit(NodeUminus& node) override;
    void Visit(NodeConst& node) override;
    void Visit(NodeVar& node) override;
    void Visit(NodeSpot& node) override;
    void Visit(NodeLog& node) override;
    void Visit(NodeSqrt& node) override;
    void Visit(NodeMin& node) override;
    void Visit(NodeMax& node) override;
    void Visit(NodeSmooth& node) override;

private:
    Domain DomainOf(Node& expression);
    void Push(const Node& node, Domain domain);
    void RunStatements(NodeIf& node, std::size_t first, std::size_t last);

    std::vector<Domain> m_variables;
    std::vector<Domain> m_stack;
};

}  // namespace zep
