// A prepared script flattened into one instruction stream per event date, run by a tight
// stack-machine loop: the fast path of Monte Carlo pricing. Compiled sharp, it gives exactly the
// values of the tree-walking Evaluator<double>; compiled smoothed, those of
// FuzzyEvaluator<double>, whose conditions are degrees of truth and whose undecided IFs run both
// branches and blend what they write.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "lum-monte-carlo/script/ScriptArithmetic.hpp"

namespace zep {

// The instruction set, in one list so that the enumeration and the dispatch table agree.
#define ZEP_SCRIPT_OPCODES(X)                                                                  \
    X(PushConst) X(PushVar) X(PushSpot)                                                        \
    X(Add) X(Sub) X(Mult) X(Div) X(Pow) X(Negate) X(Log) X(Sqrt) X(Least) X(Greatest)          \
    /* binary operations whose right operand is the instruction's constant or variable */     \
    X(AddConst) X(SubConst) X(MultConst) X(DivConst) X(AddVar) X(SubVar) X(MultVar) X(DivVar)  \
    /* SMOOTH: pick the side of the band, skip the argument not needed, blend in the band */  \
    X(SmoothTest) X(SmoothSkipA) X(SmoothSkipB) X(SmoothEnd)                                   \
    /* conditions as 1.0 / 0.0 on the value stack */                                          \
    X(Equal) X(Sup) X(SupEqual) X(And) X(Or) X(Not)                                            \
    X(Jump) X(JumpIfFalse) X(JumpUnlessEqual) X(JumpUnlessSup) X(JumpUnlessSupEqual)           \
    /* the usual guard "variable against a constant", either way round, in one step */        \
    X(JumpUnlessEqualVarConst) X(JumpUnlessSupVarConst) X(JumpUnlessSupEqualVarConst)          \
    X(JumpUnlessEqualConstVar) X(JumpUnlessSupConstVar) X(JumpUnlessSupEqualConstVar)          \
    /* other guards over Terms ("SPOT() / S0 < BARRIER") in one step: both sides read */      \
    /* without the stack; the operand indexes the script's comparisons */                     \
    X(JumpUnlessEqualTerms) X(JumpUnlessSupTerms) X(JumpUnlessSupEqualTerms)                   \
    /* "IF test THEN X = constant ENDIF" over Terms: operand X, value the constant, target */ \
    /* the comparison; a run of such events, one after the other, is one loop */              \
    X(AssignIfEqualTerms) X(AssignIfSupTerms) X(AssignIfSupEqualTerms)                         \
    X(Assign) X(AssignConst) X(Pays) X(End)                                                   \
    /* smoothed logic: comparisons give degrees (operand: the script's smoothed tests) */     \
    X(FuzzyEqual) X(FuzzySup) X(FuzzyAnd) X(FuzzyOr) X(FuzzyNot)                               \
    /* an IF over a degree (operand: the script's branches; targets: the else branch, the end) */ \
    X(FuzzyIf) X(FuzzyThenEnd) X(FuzzyEnd)                                                    \
    /* "IF test THEN X = constant ENDIF" over Terms, smoothed: operand X, value the constant, */ \
    /* target the smoothed test (whose comparison holds the Terms); runs of them loop */         \
    X(FuzzyAssignIfEqualTerms) X(FuzzyAssignIfSupTerms)

enum class OpCode : std::uint8_t {
#define ZEP_OPCODE_ENUMERATOR(name) name,
    ZEP_SCRIPT_OPCODES(ZEP_OPCODE_ENUMERATOR)
#undef ZEP_OPCODE_ENUMERATOR
};

// One event date of a simulated path: the spot, and the factor its payments are multiplied by.
struct ScenarioPoint {
    double spot;
    double numeraire;
};

// One side of a comparison simple enough to read without the stack: a constant, a variable,
// the spot, or the spot multiplied or divided by a constant or a variable. Each is read as
// (the spot, or 1) times or over (a constant or a variable): multiplying by 1 is exact, so the
// value is the tree evaluator's, and reading it takes no indirect jump.
struct Term {
    bool fromSpot = false;        // the spot, else 1
    bool divides = false;         // over the factor, else times it
    bool variableFactor = false;  // the factor is variable `index`, else `value`
    std::int32_t index = 0;
    double value = 1.0;

    friend bool operator==(const Term&, const Term&) = default;
};

// The compared difference left - right of a guard.
struct TermComparison {
    Term left;
    Term right;

    friend bool operator==(const TermComparison&, const TermComparison&) = default;
};

// The ramp of a smoothed comparison: its own width (negative: the evaluator's default), or for a
// discrete domain the nearest points below and above zero.
struct FuzzyTest {
    bool discrete = false;
    bool orEqual = false;  // decides a zero-width ">=" from ">"
    double eps = -1.0;
    double lower = 0.0;
    double upper = 0.0;
    std::int32_t comparison = -1;  // the Terms compared, for the fused guards

    friend bool operator==(const FuzzyTest&, const FuzzyTest&) = default;
};

// The variables the two branches of a smoothed IF write, blended when neither branch is sure:
// branchVariables[first .. first + count - 1].
struct FuzzyBranch {
    std::int32_t first = 0;
    std::int32_t count = 0;
    std::int32_t level = 0;  // how many smoothed IFs enclose this one
};

struct Instruction {
    OpCode op;
    std::int32_t operand = 0;  // variable index
    std::int32_t target = 0;   // jump target
    // A guard that is its date's whole event: how many dates in a row, from this one, have this
    // same guard as their event and can be checked as one run (1 when the guard reads the
    // variable it sets, so that every date must see the one before). On an End: 1 plus the
    // number of empty events that follow it.
    std::int32_t run = 1;
    double value = 0.0;        // constant operand
};

class CompiledScript {
public:
    // The working memory of one evaluating thread; make it once, reuse it for every path.
    struct Scratch {
        // An IF of smoothed logic in progress: its degree and which branches run.
        enum class Branches : std::uint8_t { ThenOnly, ElseOnly, Both };
        struct Frame {
            double degree;
            Branches branches;
        };
        std::vector<double> values;
        std::vector<script::SmoothSide> sides;
        std::vector<Frame> frames;
        std::vector<double> saved;      // per nesting level, the blended variables before THEN
        std::vector<double> afterThen;  // and after it
        double defaultEps = 0.0;        // the width of smoothed comparisons without their own
    };

    // defaultEps matters to a script compiled smoothed only.
    Scratch MakeScratch(double defaultEps = 0.0) const;

    // The working memory of one thread evaluating blocks of up to `lanes` paths side by side:
    // every area is a row of lanes per slot.
    struct LaneScratch {
        std::size_t lanes = 0;
        std::vector<double> values;             // the value stack, a row per depth
        std::vector<std::int64_t> resumeAt;     // per lane, the instruction it waits for
        std::vector<std::int64_t> flags;        // per lane, 1 when a branch is taken
        std::vector<double> degrees;            // per smoothed IF level, the lanes' degrees
        std::vector<double> saved;              // per level, the blended variables before THEN
        std::vector<double> afterThen;          // and after it
        std::vector<double> least, greatest;    // per lane, the extreme spots of a guard run
        std::vector<double> probe;              // and NaN when one of them is not finite
        std::vector<std::uint32_t> candidates;  // the lanes a guard run must visit date by date
        double defaultEps = 0.0;
    };
    LaneScratch MakeLaneScratch(std::size_t lanes, double defaultEps = 0.0) const;

    // Runs every event date of `lanes` paths side by side (at most the scratch's), each
    // instruction once for all of them: spots[event * lanes + lane], numeraires[event] (one for
    // every path), variables [variable * lanes + lane], arriving zeroed. Each lane ends with
    // exactly the values RunPath gives its path; allocates nothing.
    void RunLanes(const double* spots, const double* numeraires, std::size_t lanes, double* variables,
                  LaneScratch& scratch) const;

    // Runs the statements of one event date on the caller's variables; allocates nothing.
    void RunEvent(std::size_t event, double spot, double numeraire, double* variables,
                  Scratch& scratch) const {
        const ScenarioPoint point{spot, numeraire};
        Run(event, 1, &point, variables, scratch);
    }
    // Runs every event date of a path in one pass: `scenario` holds EventCount() points.
    void RunPath(const ScenarioPoint* scenario, double* variables, Scratch& scratch) const {
        Run(0, EventCount(), scenario, variables, scratch);
    }

    std::size_t EventCount() const { return m_eventStart.size(); }
    const std::vector<Instruction>& Code() const { return m_code; }

private:
    friend class Compiler;

    // Counts the runs of identical guard events and of empty events (Instruction::run).
    void MarkGuardRuns();
    void MarkEmptyEventRuns();
    // Events first .. first + count - 1, whose points are points[0 .. count - 1]. The events'
    // streams lie back to back, so the end of one leads straight into the next.
    void Run(std::size_t first, std::size_t count, const ScenarioPoint* points, double* variables,
             Scratch& scratch) const;
    // A guard instruction over `dates` events on the lanes active at instruction `at` (all of
    // them when resumeAt is null); spots from the first date's row.
    void GuardRun(const Instruction& guard, const double* spots, std::size_t dates, std::size_t lanes,
                  double* variables, LaneScratch& scratch, const std::int64_t* resumeAt, std::int32_t at) const;

    std::vector<Instruction> m_code;
    std::vector<TermComparison> m_comparisons;
    std::vector<FuzzyTest> m_fuzzyTests;
    std::vector<FuzzyBranch> m_branches;
    std::vector<std::int32_t> m_branchVariables;
    std::size_t m_ifNesting = 0;
    std::size_t m_blendWidth = 0;  // the most variables one IF blends
    std::vector<std::size_t> m_eventStart;
    // Per instruction, the values on the stack before it as the lanes lay them out: SMOOTH keeps
    // both its arguments' places whichever side a lane is on, so every depth is fixed.
    std::vector<std::int32_t> m_depthBefore;
    std::size_t m_stackSize = 0;
    std::size_t m_smoothNesting = 0;
};

}  // namespace zep
