#include "lum-monte-carlo/script/CompiledScript.hpp"

#include <algorithm>
#include <cmath>

#include "FuzzyDegrees.hpp"
#include "GuardRuns.hpp"

namespace zep {

CompiledScript::Scratch CompiledScript::MakeScratch(double defaultEps) const {
    const std::size_t blendArea = m_ifNesting * m_blendWidth;
    return Scratch{std::vector<double>(m_stackSize + 1),
                   std::vector<script::SmoothSide>(m_smoothNesting + 1),
                   std::vector<Scratch::Frame>(m_ifNesting + 1),
                   std::vector<double>(blendArea),
                   std::vector<double>(blendArea),
                   defaultEps};
}

namespace {

using detail::AboveDegree;
using detail::Difference;
using detail::EqualDegree;
using detail::MaybeAboveZero;
using detail::FirstPassing;
using detail::Passing;

bool IsGuard(OpCode op) {
    switch (op) {
        case OpCode::AssignIfEqualTerms: case OpCode::AssignIfSupTerms: case OpCode::AssignIfSupEqualTerms:
        case OpCode::FuzzyAssignIfEqualTerms: case OpCode::FuzzyAssignIfSupTerms:
            return true;
        default:
            return false;
    }
}

bool Reads(const Term& term, std::int32_t variable) { return term.variableFactor && term.index == variable; }

// True when `event` is a one-instruction event, and `next` (the instruction after its end,
// where the next event starts) is that same instruction.
inline bool SameSingleInstructionEvent(const Instruction* event, const Instruction* next) {
    return event[1].op == OpCode::End && next->op == event->op && next->operand == event->operand &&
           next->target == event->target && next->value == event->value;
}

// The dates of a guard's run still within this call's points.
inline std::size_t RunLength(const Instruction& guard, const ScenarioPoint* points, const ScenarioPoint* lastPoint) {
    return std::min(static_cast<std::size_t>(guard.run), static_cast<std::size_t>(lastPoint - points) + 1);
}

}  // namespace

void CompiledScript::MarkGuardRuns() {
    // From the last event back: a guard event continues the run of the next date's event when
    // that event is the same guard.
    for (std::size_t e = m_eventStart.size(); e-- > 0;) {
        Instruction& guard = m_code[m_eventStart[e]];
        if (!IsGuard(guard.op) || m_code[m_eventStart[e] + 1].op != OpCode::End) continue;
        const bool smoothed = guard.op == OpCode::FuzzyAssignIfEqualTerms || guard.op == OpCode::FuzzyAssignIfSupTerms;
        const TermComparison& sides = m_comparisons[smoothed ? m_fuzzyTests[guard.target].comparison : guard.target];
        if (Reads(sides.left, guard.operand) || Reads(sides.right, guard.operand)) continue;
        if (e + 1 < m_eventStart.size() && SameSingleInstructionEvent(&guard, &m_code[m_eventStart[e + 1]]))
            guard.run = m_code[m_eventStart[e + 1]].run + 1;
    }
}

void CompiledScript::MarkEmptyEventRuns() {
    // From the last event back: an event's End also passes over the empty events that follow.
    for (std::size_t e = m_eventStart.size(); e-- > 1;) {
        if (m_code[m_eventStart[e]].op != OpCode::End) continue;
        m_code[m_eventStart[e] - 1].run = m_code[m_eventStart[e]].run + 1;
    }
}

// Dispatch by computed goto: each handler ends in its own indirect jump, which the processor
// predicts far better than the single jump of a switch.
void CompiledScript::Run(std::size_t first, std::size_t count, const ScenarioPoint* points,
                         double* x, Scratch& scratch) const {
    using script::SmoothSide;
    using Branches = Scratch::Branches;
    static constexpr void* kHandlers[] = {
#define ZEP_OPCODE_LABEL(name) &&Op##name,
        ZEP_SCRIPT_OPCODES(ZEP_OPCODE_LABEL)
#undef ZEP_OPCODE_LABEL
    };
    const Instruction* const code = m_code.data();
    const TermComparison* const comparisons = m_comparisons.data();
    if (count == 0) return;
    const Instruction* in = code + m_eventStart[first];
    const ScenarioPoint* const lastPoint = points + count - 1;
    double spot = points->spot;
    double numeraire = points->numeraire;
    double* top = scratch.values.data();  // one past the top value
    SmoothSide* side = scratch.sides.data();
    const FuzzyTest* const fuzzyTests = m_fuzzyTests.data();
    const FuzzyBranch* const branches = m_branches.data();
    const std::int32_t* const branchVariables = m_branchVariables.data();
    Scratch::Frame* const frames = scratch.frames.data();
    Scratch::Frame* frame = frames;  // one past the innermost IF in progress
    const double defaultEps = scratch.defaultEps;
    // The blend areas of the IF whose frame is `f`, one pair per nesting level.
    const auto savedAt = [&](const Scratch::Frame* f) { return scratch.saved.data() + (f - frames) * m_blendWidth; };
    const auto afterThenAt = [&](const Scratch::Frame* f) {
        return scratch.afterThen.data() + (f - frames) * m_blendWidth;
    };
#define NEXT goto* kHandlers[static_cast<std::size_t>((++in)->op)]
#define JUMP_IF(condition)                                                            \
    do {                                                                              \
        in = (condition) ? code + in->target : in + 1;                                \
        goto* kHandlers[static_cast<std::size_t>(in->op)];                            \
    } while (false)
    goto* kHandlers[static_cast<std::size_t>(in->op)];

OpPushConst: *top++ = in->value; NEXT;
OpPushVar: *top++ = x[in->operand]; NEXT;
OpPushSpot: *top++ = spot; NEXT;
OpAdd: --top; top[-1] = top[-1] + top[0]; NEXT;
OpSub: --top; top[-1] = top[-1] - top[0]; NEXT;
OpMult: --top; top[-1] = top[-1] * top[0]; NEXT;
OpDiv: --top; top[-1] = top[-1] / top[0]; NEXT;
OpPow: --top; top[-1] = std::pow(top[-1], top[0]); NEXT;
OpNegate: top[-1] = -top[-1]; NEXT;
OpLog: top[-1] = std::log(top[-1]); NEXT;
OpSqrt: top[-1] = std::sqrt(top[-1]); NEXT;
OpLeast: --top; top[-1] = script::Least(top[-1], top[0]); NEXT;
OpGreatest: --top; top[-1] = script::Greatest(top[-1], top[0]); NEXT;
OpAddConst: top[-1] = top[-1] + in->value; NEXT;
OpSubConst: top[-1] = top[-1] - in->value; NEXT;
OpMultConst: top[-1] = top[-1] * in->value; NEXT;
OpDivConst: top[-1] = top[-1] / in->value; NEXT;
OpAddVar: top[-1] = top[-1] + x[in->operand]; NEXT;
OpSubVar: top[-1] = top[-1] - x[in->operand]; NEXT;
OpMultVar: top[-1] = top[-1] * x[in->operand]; NEXT;
OpDivVar: top[-1] = top[-1] / x[in->operand]; NEXT;
OpSmoothTest: {
    // Stack: x, e. Inside the band keep x and h = e / 2 for the blend.
    const double h = top[-1] / 2;
    const SmoothSide where = script::SmoothSideOf(top[-2], h);
    *side++ = where;
    if (where == SmoothSide::InsideBand) top[-1] = h;
    else top -= 2;
    NEXT;
}
OpSmoothSkipA: JUMP_IF(side[-1] == SmoothSide::BelowBand);
OpSmoothSkipB: JUMP_IF(side[-1] == SmoothSide::AboveBand);
OpSmoothEnd:
    if (*--side == SmoothSide::InsideBand) {
        top -= 3;  // x, h, a, b -> blend
        top[-1] = script::SmoothBlend(top[-1], top[0], top[1], top[2]);
    }
    NEXT;
OpEqual: top[-1] = top[-1] == 0.0 ? 1.0 : 0.0; NEXT;
OpSup: top[-1] = top[-1] > 0.0 ? 1.0 : 0.0; NEXT;
OpSupEqual: top[-1] = top[-1] >= 0.0 ? 1.0 : 0.0; NEXT;
OpAnd: --top; top[-1] = (top[-1] != 0.0 && top[0] != 0.0) ? 1.0 : 0.0; NEXT;
OpOr: --top; top[-1] = (top[-1] != 0.0 || top[0] != 0.0) ? 1.0 : 0.0; NEXT;
OpNot: top[-1] = top[-1] != 0.0 ? 0.0 : 1.0; NEXT;
OpJump: JUMP_IF(true);
OpJumpIfFalse: --top; JUMP_IF(*top == 0.0);
OpJumpUnlessEqual: --top; JUMP_IF(!(*top == 0.0));
OpJumpUnlessSup: --top; JUMP_IF(!(*top > 0.0));
OpJumpUnlessSupEqual: --top; JUMP_IF(!(*top >= 0.0));
OpJumpUnlessEqualVarConst: JUMP_IF(!(x[in->operand] - in->value == 0.0));
OpJumpUnlessSupVarConst: JUMP_IF(!(x[in->operand] - in->value > 0.0));
OpJumpUnlessSupEqualVarConst: JUMP_IF(!(x[in->operand] - in->value >= 0.0));
OpJumpUnlessEqualConstVar: JUMP_IF(!(in->value - x[in->operand] == 0.0));
OpJumpUnlessSupConstVar: JUMP_IF(!(in->value - x[in->operand] > 0.0));
OpJumpUnlessSupEqualConstVar: JUMP_IF(!(in->value - x[in->operand] >= 0.0));
OpJumpUnlessEqualTerms: JUMP_IF(!(Difference(comparisons[in->operand], spot, x) == 0.0));
OpJumpUnlessSupTerms: JUMP_IF(!(Difference(comparisons[in->operand], spot, x) > 0.0));
OpJumpUnlessSupEqualTerms: JUMP_IF(!(Difference(comparisons[in->operand], spot, x) >= 0.0));
// A run of dates with one and the same guard (a daily barrier check) is checked in one go: the
// guard sets its constant when any date passes, since no date of the run reads what it sets.
#define TO_THE_RUN_END(dates)                                                                  \
    in += 2 * ((dates) - 1);                                                                   \
    points += (dates) - 1;                                                                     \
    spot = points->spot;                                                                       \
    numeraire = points->numeraire
#define ASSIGN_IF(rule)                                                                        \
    {                                                                                          \
        const std::size_t dates = RunLength(*in, points, lastPoint);                           \
        if (FirstPassing(rule, 0.0, comparisons[in->target], points, dates, x) < dates)         \
            x[in->operand] = in->value;                                                        \
        TO_THE_RUN_END(dates);                                                                 \
    }                                                                                          \
    NEXT
OpAssignIfEqualTerms: ASSIGN_IF(Passing::Equal);
OpAssignIfSupTerms: ASSIGN_IF(Passing::Above);
OpAssignIfSupEqualTerms: ASSIGN_IF(Passing::AtLeast);
#undef ASSIGN_IF
OpAssign: x[in->operand] = *--top; NEXT;
OpAssignConst: x[in->operand] = in->value; NEXT;
OpPays: x[in->operand] += *--top * numeraire; NEXT;
OpEnd: {
    // Empty events after this one only move the path along (an observation date that only
    // lengthens the path): passed over in one step, up to the last event asked for.
    const std::ptrdiff_t empty = std::min<std::ptrdiff_t>(in->run - 1, lastPoint - points);
    in += empty;
    points += empty;
}
    if (points == lastPoint) return;
    ++points;
    spot = points->spot;
    numeraire = points->numeraire;
    NEXT;
// A smoothed knock-in check: THEN alone sets the constant, an undecided degree blends it with
// the value the variable had (what saving, running THEN, restoring and blending come to). Over
// a run of dates, only those whose degree can be above zero are visited, in date order.
#define FUZZY_ASSIGN_IF(Degree)                                                                \
    {                                                                                          \
        const FuzzyTest& test = fuzzyTests[in->target];                                        \
        const TermComparison& comparison = comparisons[test.comparison];                      \
        const std::size_t dates = RunLength(*in, points, lastPoint);                           \
        const auto [rule, bound] = MaybeAboveZero(test, in->op == OpCode::FuzzyAssignIfSupTerms, defaultEps); \
        double& value = x[in->operand];                                                        \
        for (std::size_t date = 0;; ++date) {                                                  \
            date += FirstPassing(rule, bound, comparison, points + date, dates - date, x);     \
            if (date >= dates) break;                                                          \
            const double d = Degree(test, Difference(comparison, points[date].spot, x), defaultEps); \
            if (d > 0.999999999999) value = in->value;                                         \
            else if (!(d < 1e-12)) value = d * in->value + (1.0 - d) * value;                  \
        }                                                                                      \
        TO_THE_RUN_END(dates);                                                                 \
    }                                                                                          \
    NEXT
OpFuzzyAssignIfEqualTerms: FUZZY_ASSIGN_IF(EqualDegree);
OpFuzzyAssignIfSupTerms: FUZZY_ASSIGN_IF(AboveDegree);
#undef FUZZY_ASSIGN_IF
#undef TO_THE_RUN_END
OpFuzzyEqual: top[-1] = EqualDegree(fuzzyTests[in->operand], top[-1], defaultEps); NEXT;
OpFuzzySup: top[-1] = AboveDegree(fuzzyTests[in->operand], top[-1], defaultEps); NEXT;
OpFuzzyAnd: --top; top[-1] = top[-1] * top[0]; NEXT;
OpFuzzyOr: {
    --top;
    const double a = top[-1], b = top[0];
    top[-1] = a + b - a * b;
    NEXT;
}
OpFuzzyNot: top[-1] = 1.0 - top[-1]; NEXT;
OpFuzzyIf: {
    // Sure degrees run one branch; any other saves what the branches write and runs both.
    const double degree = *--top;
    frame->degree = degree;
    if (degree > 0.999999999999) {
        (frame++)->branches = Branches::ThenOnly;
        NEXT;
    }
    if (degree < 1e-12) {
        (frame++)->branches = Branches::ElseOnly;
        JUMP_IF(true);
    }
    frame->branches = Branches::Both;
    const FuzzyBranch& branch = branches[in->operand];
    double* const saved = savedAt(frame);
    for (std::int32_t i = 0; i < branch.count; ++i) saved[i] = x[branchVariables[branch.first + i]];
    ++frame;
    NEXT;
}
OpFuzzyThenEnd: {
    Scratch::Frame* const current = frame - 1;
    if (current->branches == Branches::ThenOnly) {
        frame = current;
        JUMP_IF(true);
    }
    // Both branches: put THEN's results aside and give ELSE the values THEN started from.
    const FuzzyBranch& branch = branches[in->operand];
    double* const saved = savedAt(current);
    double* const afterThen = afterThenAt(current);
    for (std::int32_t i = 0; i < branch.count; ++i) {
        double& value = x[branchVariables[branch.first + i]];
        afterThen[i] = value;
        value = saved[i];
    }
    NEXT;
}
OpFuzzyEnd: {
    Scratch::Frame* const current = --frame;
    if (current->branches == Branches::Both) {
        const FuzzyBranch& branch = branches[in->operand];
        const double* const afterThen = afterThenAt(current);
        const double d = current->degree;
        for (std::int32_t i = 0; i < branch.count; ++i) {
            double& value = x[branchVariables[branch.first + i]];
            value = d * afterThen[i] + (1.0 - d) * value;
        }
    }
    NEXT;
}
#undef NEXT
#undef JUMP_IF
}

}  // namespace zep
