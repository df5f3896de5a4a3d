#include "lum-monte-carlo/script/CompiledScript.hpp"

#include <cmath>

namespace zep {

CompiledScript::Scratch CompiledScript::MakeScratch() const {
    return Scratch{std::vector<double>(m_stackSize + 1), std::vector<script::SmoothSide>(m_smoothNesting + 1)};
}

void CompiledScript::RunEvent(std::size_t event, double spot, double numeraire, double* x,
                              Scratch& scratch) const {
    using script::SmoothSide;
    const Instruction* const code = m_code.data();
    const Instruction* pc = code + m_eventStart[event];
    double* top = scratch.values.data();  // one past the top value
    SmoothSide* side = scratch.sides.data();
    for (;;) {
        const Instruction& in = *pc++;
        switch (in.op) {
            case OpCode::PushConst: *top++ = in.value; break;
            case OpCode::PushVar: *top++ = x[in.operand]; break;
            case OpCode::PushSpot: *top++ = spot; break;
            case OpCode::Add: --top; top[-1] = top[-1] + top[0]; break;
            case OpCode::Sub: --top; top[-1] = top[-1] - top[0]; break;
            case OpCode::Mult: --top; top[-1] = top[-1] * top[0]; break;
            case OpCode::Div: --top; top[-1] = top[-1] / top[0]; break;
            case OpCode::Pow: --top; top[-1] = std::pow(top[-1], top[0]); break;
            case OpCode::Negate: top[-1] = -top[-1]; break;
            case OpCode::Log: top[-1] = std::log(top[-1]); break;
            case OpCode::Sqrt: top[-1] = std::sqrt(top[-1]); break;
            case OpCode::Least: --top; top[-1] = script::Least(top[-1], top[0]); break;
            case OpCode::Greatest: --top; top[-1] = script::Greatest(top[-1], top[0]); break;
            case OpCode::AddConst: top[-1] = top[-1] + in.value; break;
            case OpCode::SubConst: top[-1] = top[-1] - in.value; break;
            case OpCode::MultConst: top[-1] = top[-1] * in.value; break;
            case OpCode::DivConst: top[-1] = top[-1] / in.value; break;
            case OpCode::AddVar: top[-1] = top[-1] + x[in.operand]; break;
            case OpCode::SubVar: top[-1] = top[-1] - x[in.operand]; break;
            case OpCode::MultVar: top[-1] = top[-1] * x[in.operand]; break;
            case OpCode::DivVar: top[-1] = top[-1] / x[in.operand]; break;
            case OpCode::SmoothTest: {
                // Stack: x, e. Inside the band keep x and h = e / 2 for the blend.
                const double h = top[-1] / 2;
                const SmoothSide where = script::SmoothSideOf(top[-2], h);
                *side++ = where;
                if (where == SmoothSide::InsideBand) top[-1] = h;
                else top -= 2;
                break;
            }
            case OpCode::SmoothSkipA:
                if (side[-1] == SmoothSide::BelowBand) pc = code + in.operand;
                break;
            case OpCode::SmoothSkipB:
                if (side[-1] == SmoothSide::AboveBand) pc = code + in.operand;
                break;
            case OpCode::SmoothEnd:
                if (*--side == SmoothSide::InsideBand) {
                    top -= 3;  // x, h, a, b -> blend
                    top[-1] = script::SmoothBlend(top[-1], top[0], top[1], top[2]);
                }
                break;
            case OpCode::Equal: top[-1] = top[-1] == 0.0 ? 1.0 : 0.0; break;
            case OpCode::Sup: top[-1] = top[-1] > 0.0 ? 1.0 : 0.0; break;
            case OpCode::SupEqual: top[-1] = top[-1] >= 0.0 ? 1.0 : 0.0; break;
            case OpCode::And: --top; top[-1] = (top[-1] != 0.0 && top[0] != 0.0) ? 1.0 : 0.0; break;
            case OpCode::Or: --top; top[-1] = (top[-1] != 0.0 || top[0] != 0.0) ? 1.0 : 0.0; break;
            case OpCode::Not: top[-1] = top[-1] != 0.0 ? 0.0 : 1.0; break;
            case OpCode::Jump: pc = code + in.operand; break;
            case OpCode::JumpIfFalse:
                if (*--top == 0.0) pc = code + in.operand;
                break;
            case OpCode::JumpUnlessEqual:
                if (!(*--top == 0.0)) pc = code + in.operand;
                break;
            case OpCode::JumpUnlessSup:
                if (!(*--top > 0.0)) pc = code + in.operand;
                break;
            case OpCode::JumpUnlessSupEqual:
                if (!(*--top >= 0.0)) pc = code + in.operand;
                break;
            case OpCode::Assign: x[in.operand] = *--top; break;
            case OpCode::AssignConst: x[in.operand] = in.value; break;
            case OpCode::Pays: x[in.operand] += *--top * numeraire; break;
            case OpCode::End: return;
        }
    }
}

}  // namespace zep
