// Evaluates a prepared script with smoothed logic, so that a price is smooth in the market
// inputs and finite-difference sensitivities are stable. Conditions give a degree of truth in
// [0, 1]; an IF that is neither surely true nor surely false runs both branches and blends the
// variables they write by that degree.
//
// A continuous comparison ramps linearly across a band of width eps around zero: its own eps
// when the script gives one, the evaluator's default otherwise. A width of zero means a sharp
// test. kDefaultFuzzyEps suits conditions on quantities of order one (performances, ratios);
// scripts comparing price levels should give their own eps after ";". A discrete comparison
// ramps between the nearest points of its domain on either side of the test.
#pragma once

#include <cmath>
#include <vector>

#include "lum-monte-carlo/script/ExpressionEvaluator.hpp"

namespace zep {

inline constexpr double kDefaultFuzzyEps = 0.01;

template <class T>
class FuzzyEvaluator : public ExpressionEvaluator<T> {
public:
    // ifNesting: the deepest nesting of IF statements in the product, one save area per level.
    FuzzyEvaluator(std::size_t variableCount, std::size_t ifNesting, double defaultEps = kDefaultFuzzyEps)
        : m_degrees(kMaxScriptNesting + 2),
          m_saved(ifNesting, std::vector<T>(variableCount)),
          m_afterThen(ifNesting, std::vector<T>(variableCount)),
          m_defaultEps(defaultEps) {}

    double DefaultEps() const { return m_defaultEps; }

    using ExpressionEvaluator<T>::Visit;

    void Visit(const NodeIf& node) override {
        const std::size_t count = node.arguments.size();
        const std::size_t elseStart = node.firstElse < 0 ? count : static_cast<std::size_t>(node.firstElse);
        const T d = Degree(*node.arguments[0]);
        if (d > T(0.999999999999)) return RunStatements(node, 1, elseStart);
        if (d < T(1e-12)) return RunStatements(node, elseStart, count);

        T* variables = this->Variables();
        const auto& written = node.affectedVars;
        std::vector<T>& saved = m_saved[m_level];
        std::vector<T>& afterThen = m_afterThen[m_level];
        ++m_level;
        for (std::size_t i = 0; i < written.size(); ++i) saved[i] = variables[written[i]];
        RunStatements(node, 1, elseStart);
        for (std::size_t i = 0; i < written.size(); ++i) {
            afterThen[i] = variables[written[i]];
            variables[written[i]] = saved[i];
        }
        RunStatements(node, elseStart, count);
        for (std::size_t i = 0; i < written.size(); ++i) {
            T& value = variables[written[i]];
            value = d * afterThen[i] + (T(1.0) - d) * value;
        }
        --m_level;
    }

    void Visit(const NodeAnd& node) override {
        const T a = Degree(*node.arguments[0]);
        PushDegree(a * Degree(*node.arguments[1]));
    }
    void Visit(const NodeOr& node) override {
        const T a = Degree(*node.arguments[0]);
        const T b = Degree(*node.arguments[1]);
        PushDegree(a + b - a * b);
    }
    void Visit(const NodeNot& node) override { PushDegree(T(1.0) - Degree(*node.arguments[0])); }
    void Visit(const NodeTrue&) override { PushDegree(T(1.0)); }
    void Visit(const NodeFalse&) override { PushDegree(T(0.0)); }

    void Visit(const NodeSup& node) override { PushDegree(Above(node, false)); }
    void Visit(const NodeSupEqual& node) override { PushDegree(Above(node, true)); }

    void Visit(const NodeEqual& node) override {
        const T x = this->Value(*node.arguments[0]);
        if (node.discrete) {
            const T l = T(node.lowerBound), r = T(node.upperBound);
            if (x < l || x > r) return PushDegree(T(0.0));
            return PushDegree(x < T(0.0) ? T(1.0) - x / l : T(1.0) - x / r);
        }
        const T h = T(Width(node)) / 2;
        if (h == T(0.0)) return PushDegree(x == T(0.0) ? T(1.0) : T(0.0));
        PushDegree(-h <= x && x <= h ? (h - std::abs(x)) / h : T(0.0));
    }

private:
    double Width(const compNode& node) const { return node.eps < 0.0 ? m_defaultEps : node.eps; }

    // One and the same ramp for > and >=; with a zero width the sharp test decides.
    T Above(const compNode& node, bool orEqual) {
        const T x = this->Value(*node.arguments[0]);
        if (node.discrete) {
            const T l = T(node.lowerBound), r = T(node.upperBound);
            if (x < l) return T(0.0);
            if (x > r) return T(1.0);
            return (x - l) / (r - l);
        }
        const T w = T(Width(node));
        if (w == T(0.0)) return (orEqual ? x >= T(0.0) : x > T(0.0)) ? T(1.0) : T(0.0);
        const T h = w / 2;
        if (x < -h) return T(0.0);
        if (x > h) return T(1.0);
        return (h + x) / w;
    }

    T Degree(const Node& condition) {
        condition.Accept(*this);
        return m_degrees[--m_degreeTop];
    }
    void PushDegree(T degree) { m_degrees[m_degreeTop++] = degree; }
    void RunStatements(const NodeIf& node, std::size_t first, std::size_t last) {
        for (std::size_t i = first; i < last; ++i) node.arguments[i]->Accept(*this);
    }

    std::vector<T> m_degrees;
    std::size_t m_degreeTop = 0;
    std::vector<std::vector<T>> m_saved;
    std::vector<std::vector<T>> m_afterThen;
    std::size_t m_level = 0;
    double m_defaultEps;
};

}  // namespace zep
