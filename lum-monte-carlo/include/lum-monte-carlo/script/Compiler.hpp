// Turns prepared statement trees into a CompiledScript. Constant subtrees become one constant,
// comparisons that guard an IF become one compare-and-branch, and binary operations whose
// right operand is a constant or a variable take it from the instruction. Compiled smoothed,
// conditions become degrees of truth and each IF a blend of its branches.
#pragma once

#include <optional>

#include "lum-monte-carlo/script/CompiledScript.hpp"
#include "lum-monte-carlo/script/Nodes.hpp"

namespace zep {

class Compiler : public ConstVisitor {
public:
    explicit Compiler(bool smoothed = false) : m_smoothed(smoothed) {}

    // Compiles the next event date's statements.
    void AddEvent(const Statements& statements);
    CompiledScript Result() &&;

    using ConstVisitor::Visit;
#define ZEP_DECLARE_VISIT(N) void Visit(const N& node) override;
    ZEP_SCRIPT_NODES(ZEP_DECLARE_VISIT)
#undef ZEP_DECLARE_VISIT

private:
    std::size_t Emit(OpCode op, std::int32_t operand = 0, double value = 0.0);
    void PatchJump(std::size_t jump) { m_script.m_code[jump].target = Here(); }
    std::int32_t Here() const { return static_cast<std::int32_t>(m_script.m_code.size()); }
    void Expression(const Node& node);
    void Binary(const Node& node, OpCode plain, OpCode withConstant, OpCode withVariable);
    void Unary(const Node& node, OpCode op);
    void Fold(const Node& node, OpCode op);
    // A comparison whose two sides are Terms: its comparator and its entry in the script's
    // comparisons.
    struct TermTest {
        enum Comparator { Equal = 0, Sup = 1, SupEqual = 2 } comparator;
        std::int32_t comparison;
    };
    std::optional<TermTest> AsTermTest(const Node& condition);
    // Emits the condition's test and a jump taken when it fails; returns the jump to patch.
    std::size_t JumpUnless(const Node& condition);
    void SmoothedIf(const NodeIf& node, std::size_t elseStart);
    void SmoothedComparison(const compNode& node, OpCode op, bool orEqual);
    // The index of the smoothed test of `node` (shared by equal tests, so that runs of identical
    // events are recognised).
    std::int32_t SmoothedTest(const compNode& node, bool orEqual, std::int32_t comparison = -1);

    CompiledScript m_script;
    std::ptrdiff_t m_depth = 0;
    std::size_t m_smoothDepth = 0;
    bool m_smoothed;
    std::size_t m_ifDepth = 0;
};

}  // namespace zep
