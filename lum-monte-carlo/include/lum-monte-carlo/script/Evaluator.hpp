// Evaluates a prepared script on one scenario with sharp logic: conditions are true or false.
#pragma once

#include <vector>

#include "lum-monte-carlo/script/ExpressionEvaluator.hpp"

namespace zep {

template <class T>
class Evaluator : public ExpressionEvaluator<T> {
public:
    Evaluator() : m_truths(kMaxScriptNesting + 2) {}

    using ExpressionEvaluator<T>::Visit;

    void Visit(const NodeIf& node) override {
        const std::size_t count = node.arguments.size();
        const std::size_t elseStart = node.firstElse < 0 ? count : static_cast<std::size_t>(node.firstElse);
        if (Truth(*node.arguments[0])) RunStatements(node, 1, elseStart);
        else RunStatements(node, elseStart, count);
    }
    void Visit(const NodeAnd& node) override {
        const bool a = Truth(*node.arguments[0]);
        PushTruth(Truth(*node.arguments[1]) && a);
    }
    void Visit(const NodeOr& node) override {
        const bool a = Truth(*node.arguments[0]);
        PushTruth(Truth(*node.arguments[1]) || a);
    }
    void Visit(const NodeNot& node) override { PushTruth(!Truth(*node.arguments[0])); }
    void Visit(const NodeTrue&) override { PushTruth(true); }
    void Visit(const NodeFalse&) override { PushTruth(false); }
    void Visit(const NodeEqual& node) override { PushTruth(this->Value(*node.arguments[0]) == T(0.0)); }
    void Visit(const NodeSup& node) override { PushTruth(this->Value(*node.arguments[0]) > T(0.0)); }
    void Visit(const NodeSupEqual& node) override { PushTruth(this->Value(*node.arguments[0]) >= T(0.0)); }

private:
    bool Truth(const Node& condition) {
        condition.Accept(*this);
        return m_truths[--m_truthTop];
    }
    void PushTruth(bool truth) { m_truths[m_truthTop++] = truth; }
    void RunStatements(const NodeIf& node, std::size_t first, std::size_t last) {
        for (std::size_t i = first; i < last; ++i) node.arguments[i]->Accept(*this);
    }

    std::vector<char> m_truths;
    std::size_t m_truthTop = 0;
};

}  // namespace zep
