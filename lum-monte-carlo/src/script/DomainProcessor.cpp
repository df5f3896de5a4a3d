#include "lum-monte-carlo/script/DomainProcessor.hpp"

#include <algorithm>
#include <cmath>
#include <optional>

#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

enum class Comparison { Equal, Sup, SupEqual };

// Bounds of a discrete comparison: the nearest points of the domain on the false side (l) and
// on the true side (r) of the test, so that the fuzzy ramp between them agrees with the sharp
// test on every point of the domain.
void ClassifyDiscrete(compNode& node, const Domain& domain, Comparison comparison) {
    std::optional<double> below, above;
    bool hasZero = false;
    for (const auto& piece : domain.Pieces()) {
        const double p = piece.lo;
        const bool isZero = std::abs(p) < Domain::kTolerance;
        hasZero = hasZero || isZero;
        bool falseSide = false;
        switch (comparison) {
            case Comparison::Sup: falseSide = p < Domain::kTolerance; break;
            case Comparison::SupEqual: falseSide = p <= -Domain::kTolerance; break;
            case Comparison::Equal:
                if (isZero) continue;
                falseSide = p < 0.0;
                break;
        }
        if (falseSide) below = below ? std::max(*below, p) : p;
        else above = above ? std::min(*above, p) : p;
    }
    node.discrete = true;
    if (comparison == Comparison::Equal) {
        node.alwaysTrue = hasZero && !below && !above;
        node.alwaysFalse = !hasZero;
        node.lowerBound = below.value_or(-1.0);
        node.upperBound = above.value_or(1.0);
        return;
    }
    node.alwaysTrue = !below;
    node.alwaysFalse = !above;
    node.lowerBound = below ? *below : *above - 1.0;
    node.upperBound = above ? *above : *below + 1.0;
}

void ClassifyContinuous(compNode& node, const Domain& domain, Comparison comparison) {
    node.discrete = false;
    switch (comparison) {
        case Comparison::Sup:
            node.alwaysTrue = domain.Lowest() > 0.0;
            node.alwaysFalse = domain.Highest() <= 0.0;
            break;
        case Comparison::SupEqual:
            node.alwaysTrue = domain.Lowest() >= 0.0;
            node.alwaysFalse = domain.Highest() < 0.0;
            break;
        case Comparison::Equal:
            node.alwaysTrue = false;
            node.alwaysFalse = std::none_of(domain.Pieces().begin(), domain.Pieces().end(),
                                            [](const Domain::Piece& p) { return p.lo <= 0.0 && p.hi >= 0.0; });
            break;
    }
}

void Classify(compNode& node, const Domain& domain, Comparison comparison) {
    if (domain.IsDiscrete()) ClassifyDiscrete(node, domain, comparison);
    else ClassifyContinuous(node, domain, comparison);
}

}  // namespace

DomainProcessor::DomainProcessor(std::size_t variableCount)
    : m_variables(variableCount, Domain::Point(0.0)) {}

Domain DomainProcessor::DomainOf(Node& expression) {
    expression.Accept(*this);
    Domain domain = std::move(m_stack.back());
    m_stack.pop_back();
    return domain;
}

// A constant keeps its exact value even where interval arithmetic would widen it.
void DomainProcessor::Push(const Node& node, Domain domain) {
    m_stack.push_back(node.isConst ? Domain::Point(node.constVal) : std::move(domain));
}

void DomainProcessor::Visit(NodeAssign& node) {
    const auto& variable = static_cast<const NodeVar&>(*node.arguments[0]);
    m_variables[variable.index] = DomainOf(*node.arguments[1]);
}

// Payments accumulate amounts scaled by the numeraire, which the script cannot bound.
void DomainProcessor::Visit(NodePays& node) {
    DomainOf(*node.arguments[1]);
    const auto& variable = static_cast<const NodeVar&>(*node.arguments[0]);
    m_variables[variable.index] = Domain::Unbounded();
}

void DomainProcessor::RunStatements(NodeIf& node, std::size_t first, std::size_t last) {
    for (std::size_t i = first; i < last; ++i) node.arguments[i]->Accept(*this);
}

// After an IF a variable may hold what either branch left in it.
void DomainProcessor::Visit(NodeIf& node) {
    Node& condition = *node.arguments[0];
    condition.Accept(*this);
    const std::size_t count = node.arguments.size();
    const std::size_t elseStart = node.firstElse < 0 ? count : static_cast<std::size_t>(node.firstElse);
    if (dynamic_cast<NodeTrue*>(&condition)) return RunStatements(node, 1, elseStart);
    if (dynamic_cast<NodeFalse*>(&condition)) return RunStatements(node, elseStart, count);
    const std::vector<Domain> before = m_variables;
    RunStatements(node, 1, elseStart);
    std::vector<Domain> afterThen = std::move(m_variables);
    m_variables = before;
    RunStatements(node, elseStart, count);
    for (std::size_t v = 0; v < m_variables.size(); ++v) m_variables[v] = m_variables[v].Union(afterThen[v]);
}

void DomainProcessor::Visit(NodeEqual& node) { Classify(node, DomainOf(*node.arguments[0]), Comparison::Equal); }
void DomainProcessor::Visit(NodeSup& node) { Classify(node, DomainOf(*node.arguments[0]), Comparison::Sup); }
void DomainProcessor::Visit(NodeSupEqual& node) {
    Classify(node, DomainOf(*node.arguments[0]), Comparison::SupEqual);
}

void DomainProcessor::Visit(NodeAdd& node) {
    const Domain a = DomainOf(*node.arguments[0]);
    Push(node, a + DomainOf(*node.arguments[1]));
}
void DomainProcessor::Visit(NodeSub& node) {
    const Domain a = DomainOf(*node.arguments[0]);
    Push(node, a - DomainOf(*node.arguments[1]));
}
void DomainProcessor::Visit(NodeMult& node) {
    const Domain a = DomainOf(*node.arguments[0]);
    Push(node, a * DomainOf(*node.arguments[1]));
}
void DomainProcessor::Visit(NodeDiv& node) {
    const Domain a = DomainOf(*node.arguments[0]);
    Push(node, a / DomainOf(*node.arguments[1]));
}
void DomainProcessor::Visit(NodePow& node) {
    const Domain a = DomainOf(*node.arguments[0]);
    Push(node, Pow(a, DomainOf(*node.arguments[1])));
}
void DomainProcessor::Visit(NodeUplus& node) { Push(node, DomainOf(*node.arguments[0])); }
void DomainProcessor::Visit(NodeUminus& node) { Push(node, -DomainOf(*node.arguments[0])); }
void DomainProcessor::Visit(NodeConst& node) { Push(node, Domain::Point(node.value)); }
void DomainProcessor::Visit(NodeVar& node) { Push(node, m_variables[node.index]); }
void DomainProcessor::Visit(NodeSpot& node) { Push(node, Domain::Unbounded()); }
void DomainProcessor::Visit(NodeLog& node) { Push(node, Log(DomainOf(*node.arguments[0]))); }
void DomainProcessor::Visit(NodeSqrt& node) { Push(node, Sqrt(DomainOf(*node.arguments[0]))); }

void DomainProcessor::Visit(NodeMin& node) {
    Domain least = DomainOf(*node.arguments[0]);
    for (std::size_t i = 1; i < node.arguments.size(); ++i) least = Least(least, DomainOf(*node.arguments[i]));
    Push(node, std::move(least));
}
void DomainProcessor::Visit(NodeMax& node) {
    Domain greatest = DomainOf(*node.arguments[0]);
    for (std::size_t i = 1; i < node.arguments.size(); ++i)
        greatest = Greatest(greatest, DomainOf(*node.arguments[i]));
    Push(node, std::move(greatest));
}

// SMOOTH interpolates between its branches, so it takes anything between their extremes.
void DomainProcessor::Visit(NodeSmooth& node) {
    if (DomainOf(*node.arguments[0]).IsDiscrete()) ZEP_FAIL("Smooth called with discrete x");
    const Domain a = DomainOf(*node.arguments[1]);
    const Domain b = DomainOf(*node.arguments[2]);
    DomainOf(*node.arguments[3]);
    Push(node, a.Union(b).Hull());
}

}  // namespace zep
