// Records in each NodeIf the variables that its branches write, nested IFs included: the fuzzy
// evaluator blends exactly those between the two branches.
#pragma once

#include <vector>

#include "lum-monte-carlo/script/Nodes.hpp"

namespace zep {

class IfProcessor : public Visitor {
public:
    using Visitor::Visit;
    void Visit(NodeIf& node) override;
    void Visit(NodeAssign& node) override;
    void Visit(NodePays& node) override;

private:
    void RecordWrite(const Node& statement);

    std::vector<std::vector<std::int32_t>> m_openIfs;  // the variables written per open IF
};

}  // namespace zep
