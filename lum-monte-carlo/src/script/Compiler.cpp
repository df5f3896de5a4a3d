#include "lum-monte-carlo/script/Compiler.hpp"

#include <algorithm>
#include <optional>

namespace zep {

namespace {

// How many values an instruction leaves on the stack, at most, beyond what it found there.
std::ptrdiff_t StackEffect(OpCode op) {
    switch (op) {
        case OpCode::PushConst: case OpCode::PushVar: case OpCode::PushSpot:
            return 1;
        case OpCode::Add: case OpCode::Sub: case OpCode::Mult: case OpCode::Div: case OpCode::Pow:
        case OpCode::Least: case OpCode::Greatest: case OpCode::And: case OpCode::Or:
        case OpCode::JumpIfFalse: case OpCode::JumpUnlessEqual: case OpCode::JumpUnlessSup:
        case OpCode::JumpUnlessSupEqual: case OpCode::Assign: case OpCode::Pays:
        case OpCode::FuzzyAnd: case OpCode::FuzzyOr: case OpCode::FuzzyIf:
            return -1;
        case OpCode::SmoothEnd:
            return -3;
        default:
            return 0;
    }
}

std::int32_t IndexOf(const Node& variable) { return static_cast<const NodeVar&>(variable).index; }

// The node as a Term when it is one: a constant, a variable, the spot, or the spot times or
// over a constant or a variable.
std::optional<Term> AsTerm(const Node& node) {
    if (node.isConst) return Term{false, false, false, 0, node.constVal};
    if (dynamic_cast<const NodeVar*>(&node)) return Term{false, false, true, IndexOf(node), 1.0};
    if (dynamic_cast<const NodeSpot*>(&node)) return Term{true, false, false, 0, 1.0};
    const bool mult = dynamic_cast<const NodeMult*>(&node) != nullptr;
    const bool div = dynamic_cast<const NodeDiv*>(&node) != nullptr;
    if ((!mult && !div) || !dynamic_cast<const NodeSpot*>(node.arguments[0].get())) return std::nullopt;
    const Node& factor = *node.arguments[1];
    if (factor.isConst) return Term{true, div, false, 0, factor.constVal};
    if (dynamic_cast<const NodeVar*>(&factor)) return Term{true, div, true, IndexOf(factor), 1.0};
    return std::nullopt;
}

}  // namespace

std::size_t Compiler::Emit(OpCode op, std::int32_t operand, double value) {
    m_script.m_code.push_back(Instruction{op, operand, 0, 1, value});
    m_script.m_depthBefore.push_back(static_cast<std::int32_t>(m_depth));
    m_depth += StackEffect(op);
    m_script.m_stackSize = std::max(m_script.m_stackSize, static_cast<std::size_t>(std::max<std::ptrdiff_t>(m_depth, 0)));
    return m_script.m_code.size() - 1;
}

void Compiler::AddEvent(const Statements& statements) {
    m_script.m_eventStart.push_back(m_script.m_code.size());
    for (const auto& statement : statements) statement->Accept(*this);
    Emit(OpCode::End);
}

CompiledScript Compiler::Result() && {
    m_script.MarkGuardRuns();
    m_script.MarkEmptyEventRuns();
    return std::move(m_script);
}

void Compiler::Expression(const Node& node) {
    if (node.isConst) Emit(OpCode::PushConst, 0, node.constVal);
    else node.Accept(*this);
}

void Compiler::Binary(const Node& node, OpCode plain, OpCode withConstant, OpCode withVariable) {
    Expression(*node.arguments[0]);
    const Node& right = *node.arguments[1];
    if (right.isConst) return void(Emit(withConstant, 0, right.constVal));
    if (dynamic_cast<const NodeVar*>(&right)) return void(Emit(withVariable, IndexOf(right)));
    Expression(right);
    Emit(plain);
}

void Compiler::Unary(const Node& node, OpCode op) {
    Expression(*node.arguments[0]);
    Emit(op);
}

// MIN and MAX fold their arguments from the left, as the evaluator does.
void Compiler::Fold(const Node& node, OpCode op) {
    Expression(*node.arguments[0]);
    for (std::size_t i = 1; i < node.arguments.size(); ++i) {
        Expression(*node.arguments[i]);
        Emit(op);
    }
}

std::optional<Compiler::TermTest> Compiler::AsTermTest(const Node& condition) {
    const bool equal = dynamic_cast<const NodeEqual*>(&condition) != nullptr;
    const bool sup = dynamic_cast<const NodeSup*>(&condition) != nullptr;
    const bool supEqual = dynamic_cast<const NodeSupEqual*>(&condition) != nullptr;
    if (!equal && !sup && !supEqual) return std::nullopt;
    const Node& difference = *condition.arguments[0];
    if (difference.isConst || !dynamic_cast<const NodeSub*>(&difference)) return std::nullopt;
    const auto left = AsTerm(*difference.arguments[0]);
    const auto right = AsTerm(*difference.arguments[1]);
    if (!left || !right) return std::nullopt;
    // Events with the same script share one entry, so that a run of them is recognised.
    const TermComparison comparison{*left, *right};
    auto& comparisons = m_script.m_comparisons;
    auto found = std::find(comparisons.begin(), comparisons.end(), comparison);
    if (found == comparisons.end()) found = comparisons.insert(found, comparison);
    const TermTest::Comparator comparator = equal ? TermTest::Equal : sup ? TermTest::Sup : TermTest::SupEqual;
    return TermTest{comparator, static_cast<std::int32_t>(found - comparisons.begin())};
}

std::size_t Compiler::JumpUnless(const Node& condition) {
    if (const auto test = AsTermTest(condition)) {
        // A variable against a constant, the commonest guard, has its own instructions.
        const TermComparison& sides = m_script.m_comparisons[test->comparison];
        const auto plainVariable = [](const Term& t) { return !t.fromSpot && !t.divides && t.variableFactor; };
        const auto constant = [](const Term& t) { return !t.fromSpot && !t.divides && !t.variableFactor; };
        static constexpr OpCode kVarConst[] = {OpCode::JumpUnlessEqualVarConst, OpCode::JumpUnlessSupVarConst,
                                               OpCode::JumpUnlessSupEqualVarConst};
        static constexpr OpCode kConstVar[] = {OpCode::JumpUnlessEqualConstVar, OpCode::JumpUnlessSupConstVar,
                                               OpCode::JumpUnlessSupEqualConstVar};
        static constexpr OpCode kTerms[] = {OpCode::JumpUnlessEqualTerms, OpCode::JumpUnlessSupTerms,
                                            OpCode::JumpUnlessSupEqualTerms};
        if (plainVariable(sides.left) && constant(sides.right))
            return Emit(kVarConst[test->comparator], sides.left.index, sides.right.value);
        if (constant(sides.left) && plainVariable(sides.right))
            return Emit(kConstVar[test->comparator], sides.right.index, sides.left.value);
        return Emit(kTerms[test->comparator], test->comparison);
    }
    const bool equal = dynamic_cast<const NodeEqual*>(&condition) != nullptr;
    const bool sup = dynamic_cast<const NodeSup*>(&condition) != nullptr;
    const bool supEqual = dynamic_cast<const NodeSupEqual*>(&condition) != nullptr;
    if (!equal && !sup && !supEqual) {
        condition.Accept(*this);
        return Emit(OpCode::JumpIfFalse);
    }
    Expression(*condition.arguments[0]);
    return Emit(equal ? OpCode::JumpUnlessEqual : sup ? OpCode::JumpUnlessSup : OpCode::JumpUnlessSupEqual);
}

void Compiler::Visit(const NodeAssign& node) {
    const Node& value = *node.arguments[1];
    if (value.isConst) return void(Emit(OpCode::AssignConst, IndexOf(*node.arguments[0]), value.constVal));
    Expression(value);
    Emit(OpCode::Assign, IndexOf(*node.arguments[0]));
}

void Compiler::Visit(const NodePays& node) {
    Expression(*node.arguments[1]);
    Emit(OpCode::Pays, IndexOf(*node.arguments[0]));
}

void Compiler::Visit(const NodeIf& node) {
    const std::size_t count = node.arguments.size();
    const std::size_t elseStart = node.firstElse < 0 ? count : static_cast<std::size_t>(node.firstElse);
    const Node& condition = *node.arguments[0];
    auto compile = [&](std::size_t first, std::size_t last) {
        for (std::size_t i = first; i < last; ++i) node.arguments[i]->Accept(*this);
    };
    // Conditions known in advance take their branch with no test at all.
    if (dynamic_cast<const NodeTrue*>(&condition)) return compile(1, elseStart);
    if (dynamic_cast<const NodeFalse*>(&condition)) return compile(elseStart, count);
    // "IF test THEN X = constant ENDIF", the knock-in check, is one instruction.
    if (count == 2 && node.firstElse < 0) {
        const auto* assign = dynamic_cast<const NodeAssign*>(node.arguments[1].get());
        if (assign && assign->arguments[1]->isConst) {
            if (const auto test = AsTermTest(condition)) {
                if (!m_smoothed) {
                    static constexpr OpCode kAssigns[] = {OpCode::AssignIfEqualTerms, OpCode::AssignIfSupTerms,
                                                          OpCode::AssignIfSupEqualTerms};
                    const std::size_t at = Emit(kAssigns[test->comparator], IndexOf(*assign->arguments[0]),
                                                assign->arguments[1]->constVal);
                    m_script.m_code[at].target = test->comparison;
                    return;
                }
                const bool equal = test->comparator == TermTest::Equal;
                const std::size_t at = Emit(equal ? OpCode::FuzzyAssignIfEqualTerms : OpCode::FuzzyAssignIfSupTerms,
                                            IndexOf(*assign->arguments[0]), assign->arguments[1]->constVal);
                m_script.m_code[at].target = SmoothedTest(static_cast<const compNode&>(condition),
                                                          test->comparator == TermTest::SupEqual,
                                                          test->comparison);
                return;
            }
        }
    }
    if (m_smoothed) return SmoothedIf(node, elseStart);
    const std::size_t toElse = JumpUnless(condition);
    compile(1, elseStart);
    if (elseStart == count) return PatchJump(toElse);
    const std::size_t toEnd = Emit(OpCode::Jump);
    PatchJump(toElse);
    compile(elseStart, count);
    PatchJump(toEnd);
}

// FuzzyIf takes THEN, ELSE or both by the degree; FuzzyThenEnd leaves when THEN ran alone and
// otherwise hands ELSE the values THEN started from; FuzzyEnd blends when both ran.
void Compiler::SmoothedIf(const NodeIf& node, std::size_t elseStart) {
    const auto branch = static_cast<std::int32_t>(m_script.m_branches.size());
    auto& variables = m_script.m_branchVariables;
    m_script.m_branches.push_back(FuzzyBranch{static_cast<std::int32_t>(variables.size()),
                                              static_cast<std::int32_t>(node.affectedVars.size()),
                                              static_cast<std::int32_t>(m_ifDepth)});
    variables.insert(variables.end(), node.affectedVars.begin(), node.affectedVars.end());
    m_script.m_blendWidth = std::max(m_script.m_blendWidth, node.affectedVars.size());
    m_script.m_ifNesting = std::max(m_script.m_ifNesting, ++m_ifDepth);

    node.arguments[0]->Accept(*this);
    const std::size_t toElse = Emit(OpCode::FuzzyIf, branch);
    for (std::size_t i = 1; i < elseStart; ++i) node.arguments[i]->Accept(*this);
    const std::size_t toEnd = Emit(OpCode::FuzzyThenEnd, branch);
    PatchJump(toElse);
    for (std::size_t i = elseStart; i < node.arguments.size(); ++i) node.arguments[i]->Accept(*this);
    Emit(OpCode::FuzzyEnd, branch);
    PatchJump(toEnd);
    --m_ifDepth;
}

std::int32_t Compiler::SmoothedTest(const compNode& node, bool orEqual, std::int32_t comparison) {
    const FuzzyTest test{node.discrete, orEqual, node.eps, node.lowerBound, node.upperBound, comparison};
    auto& tests = m_script.m_fuzzyTests;
    auto found = std::find(tests.begin(), tests.end(), test);
    if (found == tests.end()) found = tests.insert(found, test);
    return static_cast<std::int32_t>(found - tests.begin());
}

void Compiler::SmoothedComparison(const compNode& node, OpCode op, bool orEqual) {
    Expression(*node.arguments[0]);
    Emit(op, SmoothedTest(node, orEqual));
}

void Compiler::Visit(const NodeCollect&) {}

void Compiler::Visit(const NodeAnd& node) {
    node.arguments[0]->Accept(*this);
    node.arguments[1]->Accept(*this);
    Emit(m_smoothed ? OpCode::FuzzyAnd : OpCode::And);
}
void Compiler::Visit(const NodeOr& node) {
    node.arguments[0]->Accept(*this);
    node.arguments[1]->Accept(*this);
    Emit(m_smoothed ? OpCode::FuzzyOr : OpCode::Or);
}
void Compiler::Visit(const NodeNot& node) {
    node.arguments[0]->Accept(*this);
    Emit(m_smoothed ? OpCode::FuzzyNot : OpCode::Not);
}
void Compiler::Visit(const NodeTrue&) { Emit(OpCode::PushConst, 0, 1.0); }
void Compiler::Visit(const NodeFalse&) { Emit(OpCode::PushConst, 0, 0.0); }
void Compiler::Visit(const NodeEqual& node) {
    if (m_smoothed) return SmoothedComparison(node, OpCode::FuzzyEqual, false);
    Unary(node, OpCode::Equal);
}
void Compiler::Visit(const NodeSup& node) {
    if (m_smoothed) return SmoothedComparison(node, OpCode::FuzzySup, false);
    Unary(node, OpCode::Sup);
}
void Compiler::Visit(const NodeSupEqual& node) {
    if (m_smoothed) return SmoothedComparison(node, OpCode::FuzzySup, true);
    Unary(node, OpCode::SupEqual);
}

void Compiler::Visit(const NodeAdd& node) { Binary(node, OpCode::Add, OpCode::AddConst, OpCode::AddVar); }
void Compiler::Visit(const NodeSub& node) { Binary(node, OpCode::Sub, OpCode::SubConst, OpCode::SubVar); }
void Compiler::Visit(const NodeMult& node) { Binary(node, OpCode::Mult, OpCode::MultConst, OpCode::MultVar); }
void Compiler::Visit(const NodeDiv& node) { Binary(node, OpCode::Div, OpCode::DivConst, OpCode::DivVar); }
void Compiler::Visit(const NodePow& node) {
    Expression(*node.arguments[0]);
    Expression(*node.arguments[1]);
    Emit(OpCode::Pow);
}
void Compiler::Visit(const NodeUplus& node) { Expression(*node.arguments[0]); }
void Compiler::Visit(const NodeUminus& node) { Unary(node, OpCode::Negate); }
void Compiler::Visit(const NodeConst& node) { Emit(OpCode::PushConst, 0, node.value); }
void Compiler::Visit(const NodeVar& node) { Emit(OpCode::PushVar, node.index); }
void Compiler::Visit(const NodeSpot&) { Emit(OpCode::PushSpot); }
void Compiler::Visit(const NodeLog& node) { Unary(node, OpCode::Log); }
void Compiler::Visit(const NodeSqrt& node) { Unary(node, OpCode::Sqrt); }
void Compiler::Visit(const NodeMin& node) { Fold(node, OpCode::Least); }
void Compiler::Visit(const NodeMax& node) { Fold(node, OpCode::Greatest); }

void Compiler::Visit(const NodeSmooth& node) {
    Expression(*node.arguments[0]);
    Expression(*node.arguments[3]);
    Emit(OpCode::SmoothTest);
    m_smoothDepth += 1;
    m_script.m_smoothNesting = std::max(m_script.m_smoothNesting, m_smoothDepth);
    const std::size_t skipA = Emit(OpCode::SmoothSkipA);
    Expression(*node.arguments[1]);
    const std::size_t skipB = Emit(OpCode::SmoothSkipB);
    PatchJump(skipA);
    Expression(*node.arguments[2]);
    PatchJump(skipB);
    Emit(OpCode::SmoothEnd);
    m_smoothDepth -= 1;
}

}  // namespace zep
