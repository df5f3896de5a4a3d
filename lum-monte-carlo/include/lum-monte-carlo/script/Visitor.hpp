// The visitors that walk a payoff script's node tree. A node calls back the visit operation of
// its own concrete type (double dispatch); a `Visitor` may change the tree, a `ConstVisitor`
// only reads it. By default every visit walks the node's children in order.
#pragma once

namespace zep {

// Every concrete node of the script language, statements first, then logic, comparisons and
// real-valued expressions.
#define ZEP_SCRIPT_NODES(X)                                                                  \
    X(NodeAssign) X(NodePays) X(NodeIf) X(NodeCollect)                                       \
    X(NodeAnd) X(NodeOr) X(NodeNot) X(NodeTrue) X(NodeFalse)                                 \
    X(NodeEqual) X(NodeSup) X(NodeSupEqual)                                                  \
    X(NodeAdd) X(NodeSub) X(NodeMult) X(NodeDiv) X(NodePow) X(NodeUplus) X(NodeUminus)       \
    X(NodeConst) X(NodeVar) X(NodeSpot) X(NodeLog) X(NodeSqrt) X(NodeMin) X(NodeMax)         \
    X(NodeSmooth)

struct Node;
#define ZEP_DECLARE_NODE(N) struct N;
ZEP_SCRIPT_NODES(ZEP_DECLARE_NODE)
#undef ZEP_DECLARE_NODE

class Visitor {
public:
    virtual ~Visitor() = default;
#define ZEP_DECLARE_VISIT(N) virtual void Visit(N& node);
    ZEP_SCRIPT_NODES(ZEP_DECLARE_VISIT)
#undef ZEP_DECLARE_VISIT

protected:
    void VisitArguments(Node& node);
};

class ConstVisitor {
public:
    virtual ~ConstVisitor() = default;
#define ZEP_DECLARE_VISIT(N) virtual void Visit(const N& node);
    ZEP_SCRIPT_NODES(ZEP_DECLARE_VISIT)
#undef ZEP_DECLARE_VISIT

protected:
    void VisitArguments(const Node& node);
};

}  // namespace zep
