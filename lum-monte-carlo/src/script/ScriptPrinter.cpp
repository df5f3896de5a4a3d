#include "lum-monte-carlo/script/ScriptPrinter.hpp"

#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace zep {

namespace {

// Binding strength of the grammar's levels; an operand printed inside a stronger operator, or on
// the right of a left-associative one of the same strength, takes parentheses.
enum Strength { kSum = 1, kProduct = 2, kPower = 3, kUnary = 4, kAtom = 5 };
enum Logic { kOr = 1, kAnd = 2, kComparison = 3 };

class Printer : public ConstVisitor {
public:
    using ConstVisitor::Visit;

    std::string Statements(const zep::Statements& statements) {
        for (const auto& statement : statements) statement->Accept(*this);
        return m_out;
    }

    void Visit(const NodeAssign& node) override { Line(Expression(*node.arguments[0]) + " = " + Expression(*node.arguments[1])); }
    void Visit(const NodePays& node) override { Line(Expression(*node.arguments[0]) + " PAYS " + Expression(*node.arguments[1])); }
    void Visit(const NodeCollect&) override {}
    void Visit(const NodeIf& node) override {
        Line("IF " + Condition(*node.arguments[0]) + " THEN");
        const std::size_t firstElse = node.firstElse < 0 ? node.arguments.size() : static_cast<std::size_t>(node.firstElse);
        Block(node, 1, firstElse);
        if (node.firstElse >= 0) {
            Line("ELSE");
            Block(node, firstElse, node.arguments.size());
        }
        Line("ENDIF");
    }

    void Visit(const NodeOr& node) override { Binary(node, " OR ", kOr); }
    void Visit(const NodeAnd& node) override { Binary(node, " AND ", kAnd); }
    void Visit(const NodeNot& node) override { Comparison(*node.arguments[0], " != "); }
    void Visit(const NodeTrue&) override { Set("1 = 1", kComparison); }
    void Visit(const NodeFalse&) override { Set("1 = 0", kComparison); }
    void Visit(const NodeEqual& node) override { Comparison(node, " = "); }
    void Visit(const NodeSup& node) override { Comparison(node, " > "); }
    void Visit(const NodeSupEqual& node) override { Comparison(node, " >= "); }

    void Visit(const NodeAdd& node) override { Binary(node, " + ", kSum); }
    void Visit(const NodeSub& node) override { Binary(node, " - ", kSum); }
    void Visit(const NodeMult& node) override { Binary(node, " * ", kProduct); }
    void Visit(const NodeDiv& node) override { Binary(node, " / ", kProduct); }
    void Visit(const NodePow& node) override { Binary(node, "^", kPower); }
    void Visit(const NodeUplus& node) override { Set(std::string(1, '+').append(Operand(*node.arguments[0], kUnary)), kUnary); }
    void Visit(const NodeUminus& node) override { Set(std::string(1, '-').append(Operand(*node.arguments[0], kUnary)), kUnary); }
    void Visit(const NodeConst& node) override { Set(ScriptNumberText(node.value), kAtom); }
    void Visit(const NodeVar& node) override { Set(node.name, kAtom); }
    void Visit(const NodeSpot&) override { Set("SPOT()", kAtom); }
    void Visit(const NodeLog& node) override { Function("LOG", node); }
    void Visit(const NodeSqrt& node) override { Function("SQRT", node); }
    void Visit(const NodeMin& node) override { Function("MIN", node); }
    void Visit(const NodeMax& node) override { Function("MAX", node); }
    void Visit(const NodeSmooth& node) override { Function("SMOOTH", node); }

private:
    void Line(const std::string& text) { m_out += std::string(2 * m_depth, ' ') + text + "\n"; }
    void Block(const NodeIf& node, std::size_t from, std::size_t to) {
        ++m_depth;
        for (std::size_t i = from; i < to; ++i) node.arguments[i]->Accept(*this);
        --m_depth;
    }
    void Set(std::string text, int strength) {
        m_text = std::move(text);
        m_strength = strength;
    }
    std::string Expression(const Node& node) { return Operand(node, kSum); }
    std::string Condition(const Node& node) { return Operand(node, kOr); }
    // The operand's text, in parentheses when it binds less than `least`.
    std::string Operand(const Node& node, int least) {
        node.Accept(*this);
        return m_strength < least ? "(" + m_text + ")" : m_text;
    }
    void Binary(const Node& node, const char* symbol, int strength) {
        // Left-associative: the right operand of the same strength needs parentheses; a power's
        // operands are unary-level in the grammar.
        const int leftLeast = strength == kPower ? kPower : strength;
        const int rightLeast = strength == kPower ? kUnary : strength + 1;
        std::string left = Operand(*node.arguments[0], leftLeast);
        std::string right = Operand(*node.arguments[1], rightLeast);
        Set(left + symbol + right, strength);
    }
    void Function(const char* name, const Node& node) {
        std::string text = std::string(name) + "(";
        for (std::size_t i = 0; i < node.arguments.size(); ++i)
            text += (i ? ", " : "") + Expression(*node.arguments[i]);
        Set(text + ")", kAtom);
    }
    // A comparison holds the difference "left - right" of its two sides.
    void Comparison(const Node& node, const char* symbol) {
        const Node& difference = *node.arguments[0];
        const bool sides = dynamic_cast<const NodeSub*>(&difference) != nullptr;
        std::string text = sides ? Expression(*difference.arguments[0]) + symbol + Expression(*difference.arguments[1])
                                 : Expression(difference) + symbol + "0";
        const double eps = static_cast<const compNode&>(node).eps;
        if (eps >= 0.0) text += "; " + ScriptNumberText(eps);
        Set(text, kComparison);
    }

    std::string m_out;
    std::string m_text;
    int m_strength = kAtom;
    int m_depth = 0;
};

}  // namespace

std::string PrintScript(const zep::Statements& statements) { return Printer().Statements(statements); }

std::string ScriptNumberText(double value) {
    if (!std::isfinite(value) || (value != 0.0 && std::abs(value) < std::numeric_limits<double>::min()))
        throw std::invalid_argument("must be a finite number, zero or at least 2.2250738585072014e-308 in size");
    // The longest such text, the smallest normal number, has 326 characters.
    std::string text(512, '\0');
    const auto written = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    text.resize(static_cast<std::size_t>(written.ptr - text.data()));
    return text;
}

}  // namespace zep
