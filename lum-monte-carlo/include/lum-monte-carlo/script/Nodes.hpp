// The expression tree of a payoff script: statements (`actNode`), logical conditions
// (`boolNode`), comparisons of one difference against zero (`compNode`) and real-valued
// expressions (`exprNode`). Every node owns its children, so a tree is freed from its root.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "lum-monte-carlo/script/Visitor.hpp"

namespace zep {

struct Node {
    virtual ~Node() = default;
    virtual void Accept(Visitor& visitor) = 0;
    virtual void Accept(ConstVisitor& visitor) const = 0;

    std::vector<std::unique_ptr<Node>> arguments;
    // Set by ConstProcessor: the node's value is known without simulation (1/0 for conditions).
    bool isConst = false;
    double constVal = 0.0;
    // Longest chain of nodes down to a leaf; the parser bounds it so visitors cannot overflow.
    std::int32_t height = 1;
};

struct actNode : Node {};
struct boolNode : Node {};
struct exprNode : Node {};

struct compNode : boolNode {
    // Fuzzy width of the comparison; -1 when the script gives none (the evaluator's default).
    double eps = -1.0;
    // What DomainProcessor finds about the compared difference.
    bool discrete = false;
    double lowerBound = 0.0;  // discrete only: nearest point of the domain on the false side
    double upperBound = 0.0;  // discrete only: nearest point of the domain on the true side
    bool alwaysTrue = false;
    bool alwaysFalse = false;
};

template <class Concrete, class Family>
struct Visitable : Family {
    void Accept(Visitor& visitor) override { visitor.Visit(static_cast<Concrete&>(*this)); }
    void Accept(ConstVisitor& visitor) const override {
        visitor.Visit(static_cast<const Concrete&>(*this));
    }
};

// Statements. Assign and Pays: child 0 is the NodeVar written, child 1 the expression.
struct NodeAssign : Visitable<NodeAssign, actNode> {};
struct NodePays : Visitable<NodePays, actNode> {};
// Child 0 is the condition, then the `then` statements, then the `else` statements.
struct NodeIf : Visitable<NodeIf, actNode> {
    std::int32_t firstElse = -1;  // index of the first `else` child, -1 without `else`
    std::vector<std::int32_t> affectedVars;  // written in the branches (IfProcessor), ascending
};
// No script keyword produces it; kept so that the node set is complete.
struct NodeCollect : Visitable<NodeCollect, actNode> {};

struct NodeAnd : Visitable<NodeAnd, boolNode> {};
struct NodeOr : Visitable<NodeOr, boolNode> {};
struct NodeNot : Visitable<NodeNot, boolNode> {};
struct NodeTrue : Visitable<NodeTrue, boolNode> {};
struct NodeFalse : Visitable<NodeFalse, boolNode> {};

// Comparisons of their single child (a difference) against zero: = 0, > 0, >= 0.
struct NodeEqual : Visitable<NodeEqual, compNode> {};
struct NodeSup : Visitable<NodeSup, compNode> {};
struct NodeSupEqual : Visitable<NodeSupEqual, compNode> {};

struct NodeAdd : Visitable<NodeAdd, exprNode> {};
struct NodeSub : Visitable<NodeSub, exprNode> {};
struct NodeMult : Visitable<NodeMult, exprNode> {};
struct NodeDiv : Visitable<NodeDiv, exprNode> {};
struct NodePow : Visitable<NodePow, exprNode> {};
struct NodeUplus : Visitable<NodeUplus, exprNode> {};
struct NodeUminus : Visitable<NodeUminus, exprNode> {};
struct NodeConst : Visitable<NodeConst, exprNode> {
    double value = 0.0;
};
struct NodeVar : Visitable<NodeVar, exprNode> {
    std::string name;         // upper case, as tokenised
    std::int32_t index = -1;  // into the variable array, set by VarIndexer
};
struct NodeSpot : Visitable<NodeSpot, exprNode> {};
struct NodeLog : Visitable<NodeLog, exprNode> {};
struct NodeSqrt : Visitable<NodeSqrt, exprNode> {};
struct NodeMin : Visitable<NodeMin, exprNode> {};
struct NodeMax : Visitable<NodeMax, exprNode> {};
// SMOOTH(x, a, b, e): b below -e/2, a above e/2, the straight line from b to a in between.
struct NodeSmooth : Visitable<NodeSmooth, exprNode> {};

// The statements of one event date, in script order.
using Statements = std::vector<std::unique_ptr<actNode>>;

}  // namespace zep
