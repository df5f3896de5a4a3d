#include "lum-monte-carlo/script/ConstProcessor.hpp"

#include <cmath>

#include "lum-monte-carlo/script/ScriptArithmetic.hpp"

namespace zep {

namespace {

void Fix(Node& node, double value) {
    node.isConst = true;
    node.constVal = value;
}

double Arg(const Node& node, std::size_t i) { return node.arguments[i]->constVal; }

}  // namespace

bool ConstProcessor::VisitAllConstant(Node& node) {
    bool allConstant = true;
    for (auto& argument : node.arguments) {
        argument->Accept(*this);
        allConstant = allConstant && argument->isConst;
    }
    return allConstant;
}

void ConstProcessor::Visit(NodeConst& node) { Fix(node, node.value); }
void ConstProcessor::Visit(NodeTrue& node) { Fix(node, 1.0); }
void ConstProcessor::Visit(NodeFalse& node) { Fix(node, 0.0); }

void ConstProcessor::Visit(NodeAdd& node) {
    if (VisitAllConstant(node)) Fix(node, Arg(node, 0) + Arg(node, 1));
}
void ConstProcessor::Visit(NodeSub& node) {
    if (VisitAllConstant(node)) Fix(node, Arg(node, 0) - Arg(node, 1));
}
void ConstProcessor::Visit(NodeMult& node) {
    if (VisitAllConstant(node)) Fix(node, Arg(node, 0) * Arg(node, 1));
}
void ConstProcessor::Visit(NodeDiv& node) {
    if (VisitAllConstant(node)) Fix(node, Arg(node, 0) / Arg(node, 1));
}
void ConstProcessor::Visit(NodePow& node) {
    if (VisitAllConstant(node)) Fix(node, std::pow(Arg(node, 0), Arg(node, 1)));
}
void ConstProcessor::Visit(NodeUplus& node) {
    if (VisitAllConstant(node)) Fix(node, Arg(node, 0));
}
void ConstProcessor::Visit(NodeUminus& node) {
    if (VisitAllConstant(node)) Fix(node, -Arg(node, 0));
}
void ConstProcessor::Visit(NodeLog& node) {
    if (VisitAllConstant(node)) Fix(node, std::log(Arg(node, 0)));
}
void ConstProcessor::Visit(NodeSqrt& node) {
    if (VisitAllConstant(node)) Fix(node, std::sqrt(Arg(node, 0)));
}
void ConstProcessor::Visit(NodeMin& node) {
    if (!VisitAllConstant(node)) return;
    double least = Arg(node, 0);
    for (std::size_t i = 1; i < node.arguments.size(); ++i) least = script::Least(least, Arg(node, i));
    Fix(node, least);
}
void ConstProcessor::Visit(NodeMax& node) {
    if (!VisitAllConstant(node)) return;
    double greatest = Arg(node, 0);
    for (std::size_t i = 1; i < node.arguments.size(); ++i)
        greatest = script::Greatest(greatest, Arg(node, i));
    Fix(node, greatest);
}
void ConstProcessor::Visit(NodeSmooth& node) {
    if (!VisitAllConstant(node)) return;
    const double x = Arg(node, 0), a = Arg(node, 1), b = Arg(node, 2), h = Arg(node, 3) / 2;
    switch (script::SmoothSideOf(x, h)) {
        case script::SmoothSide::BelowBand: Fix(node, b); break;
        case script::SmoothSide::AboveBand: Fix(node, a); break;
        case script::SmoothSide::InsideBand: Fix(node, script::SmoothBlend(x, h, a, b)); break;
    }
}

void ConstProcessor::Visit(NodeEqual& node) {
    if (VisitAllConstant(node)) Fix(node, Arg(node, 0) == 0.0 ? 1.0 : 0.0);
}
void ConstProcessor::Visit(NodeSup& node) {
    if (VisitAllConstant(node)) Fix(node, Arg(node, 0) > 0.0 ? 1.0 : 0.0);
}
void ConstProcessor::Visit(NodeSupEqual& node) {
    if (VisitAllConstant(node)) Fix(node, Arg(node, 0) >= 0.0 ? 1.0 : 0.0);
}
void ConstProcessor::Visit(NodeAnd& node) {
    if (VisitAllConstant(node)) Fix(node, (Arg(node, 0) != 0.0 && Arg(node, 1) != 0.0) ? 1.0 : 0.0);
}
void ConstProcessor::Visit(NodeOr& node) {
    if (VisitAllConstant(node)) Fix(node, (Arg(node, 0) != 0.0 || Arg(node, 1) != 0.0) ? 1.0 : 0.0);
}
void ConstProcessor::Visit(NodeNot& node) {
    if (VisitAllConstant(node)) Fix(node, Arg(node, 0) != 0.0 ? 0.0 : 1.0);
}

}  // namespace zep
