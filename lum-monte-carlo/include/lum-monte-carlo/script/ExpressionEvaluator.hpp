// The part of script evaluation shared by the sharp and the fuzzy evaluator: real-valued
// expressions and the two statements that write variables. A stack machine: each node
// evaluates its children, which push their values, pops them and pushes its own.
#pragma once

#include <cmath>
#include <cstddef>
#include <span>
#include <vector>

#include "lum-monte-carlo/script/Nodes.hpp"
#include "lum-monte-carlo/script/Parser.hpp"
#include "lum-monte-carlo/script/ScriptArithmetic.hpp"

namespace zep {

template <class T>
class ExpressionEvaluator : public ConstVisitor {
public:
    // Runs the statements of one event date on the caller's variables (spot and numeraire
    // factor of that date); allocates nothing.
    void RunEvent(const Statements& statements, T spot, T numeraire, std::span<T> variables) {
        m_spot = spot;
        m_numeraire = numeraire;
        m_variables = variables.data();
        for (const auto& statement : statements) statement->Accept(*this);
    }

    using ConstVisitor::Visit;

    void Visit(const NodeAssign& node) override { Variable(node) = Value(*node.arguments[1]); }
    // Payments accumulate, discounted by the date's numeraire factor; they never overwrite.
    void Visit(const NodePays& node) override { Variable(node) += Value(*node.arguments[1]) * m_numeraire; }

    void Visit(const NodeAdd& node) override { Binary(node, [](T a, T b) { return a + b; }); }
    void Visit(const NodeSub& node) override { Binary(node, [](T a, T b) { return a - b; }); }
    void Visit(const NodeMult& node) override { Binary(node, [](T a, T b) { return a * b; }); }
    void Visit(const NodeDiv& node) override { Binary(node, [](T a, T b) { return a / b; }); }
    void Visit(const NodePow& node) override { Binary(node, [](T a, T b) { return std::pow(a, b); }); }
    void Visit(const NodeUplus& node) override { Push(Value(*node.arguments[0])); }
    void Visit(const NodeUminus& node) override { Push(-Value(*node.arguments[0])); }
    void Visit(const NodeConst& node) override { Push(T(node.value)); }
    void Visit(const NodeVar& node) override { Push(m_variables[node.index]); }
    void Visit(const NodeSpot&) override { Push(m_spot); }
    void Visit(const NodeLog& node) override { Push(std::log(Value(*node.arguments[0]))); }
    void Visit(const NodeSqrt& node) override { Push(std::sqrt(Value(*node.arguments[0]))); }
    void Visit(const NodeMin& node) override {
        T least = Value(*node.arguments[0]);
        for (std::size_t i = 1; i < node.arguments.size(); ++i)
            least = script::Least(least, Value(*node.arguments[i]));
        Push(least);
    }
    void Visit(const NodeMax& node) override {
        T greatest = Value(*node.arguments[0]);
        for (std::size_t i = 1; i < node.arguments.size(); ++i)
            greatest = script::Greatest(greatest, Value(*node.arguments[i]));
        Push(greatest);
    }
    // Only the argument that the position of x selects is evaluated.
    void Visit(const NodeSmooth& node) override {
        const T x = Value(*node.arguments[0]);
        const T h = Value(*node.arguments[3]) / 2;
        switch (script::SmoothSideOf(x, h)) {
            case script::SmoothSide::BelowBand: Push(Value(*node.arguments[2])); return;
            case script::SmoothSide::AboveBand: Push(Value(*node.arguments[1])); return;
            case script::SmoothSide::InsideBand: {
                const T a = Value(*node.arguments[1]);
                Push(script::SmoothBlend(x, h, a, Value(*node.arguments[2])));
                return;
            }
        }
    }

protected:
    // Expressions are at most kMaxScriptNesting deep and each level holds one value at a time.
    ExpressionEvaluator() : m_stack(kMaxScriptNesting + 2) {}

    T Value(const Node& expression) {
        if (expression.isConst) return T(expression.constVal);
        expression.Accept(*this);
        return m_stack[--m_top];
    }
    void Push(T value) { m_stack[m_top++] = value; }

    T& Variable(const Node& statement) {
        return m_variables[static_cast<const NodeVar&>(*statement.arguments[0]).index];
    }
    T* Variables() { return m_variables; }

private:
    template <class Operation>
    void Binary(const Node& node, Operation operation) {
        const T a = Value(*node.arguments[0]);
        Push(operation(a, Value(*node.arguments[1])));
    }

    std::vector<T> m_stack;
    std::size_t m_top = 0;
    T* m_variables = nullptr;
    T m_spot = T();
    T m_numeraire = T();
};

}  // namespace zep
