// A prepared script flattened into one instruction stream per event date, run by a tight
// stack-machine loop: the fast path of Monte Carlo pricing. It gives exactly the values of the
// tree-walking Evaluator<double>.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "lum-monte-carlo/script/ScriptArithmetic.hpp"

namespace zep {

enum class OpCode : std::uint8_t {
    PushConst, PushVar, PushSpot,
    Add, Sub, Mult, Div, Pow, Negate, Log, Sqrt, Least, Greatest,
    // Binary operations whose right operand is the instruction's constant or variable.
    AddConst, SubConst, MultConst, DivConst, AddVar, SubVar, MultVar, DivVar,
    // SMOOTH: pick the side of the band, skip the argument not needed, blend inside the band.
    SmoothTest, SmoothSkipA, SmoothSkipB, SmoothEnd,
    // Conditions as 1.0 / 0.0 on the value stack.
    Equal, Sup, SupEqual, And, Or, Not,
    Jump, JumpIfFalse, JumpUnlessEqual, JumpUnlessSup, JumpUnlessSupEqual,
    Assign, AssignConst, Pays,
    End,
};

struct Instruction {
    OpCode op;
    std::int32_t operand = 0;  // variable index or jump target
    double value = 0.0;        // constant operand
};

class CompiledScript {
public:
    // The working memory of one evaluating thread; make it once, reuse it for every path.
    struct Scratch {
        std::vector<double> values;
        std::vector<script::SmoothSide> sides;
    };

    Scratch MakeScratch() const;

    // Runs the statements of one event date on the caller's variables; allocates nothing.
    void RunEvent(std::size_t event, double spot, double numeraire, double* variables,
                  Scratch& scratch) const;

    std::size_t EventCount() const { return m_eventStart.size(); }
    const std::vector<Instruction>& Code() const { return m_code; }

private:
    friend class Compiler;

    std::vector<Instruction> m_code;
    std::vector<std::size_t> m_eventStart;
    std::size_t m_stackSize = 0;
    std::size_t m_smoothNesting = 0;
};

}  // namespace zep
