// The compiled stream run over a block of paths side by side: each instruction is decoded once
// and applied to every lane in a plain loop the compiler vectorises, so the cost of
// interpreting is shared by the block.
//
// Branches become lane masks. Every jump of the stream goes forward and stays within its event,
// so a lane that takes a jump only has to wait for its target: lane l is active at instruction i
// when resumeAt[l] <= i, and comes back by itself when the run reaches its target. When no lane
// is active the run goes straight to the nearest target, so a branch no path takes costs one
// test. Stack depths are fixed per instruction (m_depthBefore), so lanes that skipped a stretch
// find their values where the others left theirs. Instructions that only compute on the stack
// run on every lane (an inactive lane's values are never read); writes to variables are masked.
//
// Every lane's arithmetic is that of RunPath, operation for operation, so the values are
// bit-identical; only the order in which lanes are visited differs.
#include <algorithm>
#include <cmath>
#include <tuple>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "FuzzyDegrees.hpp"
#include "GuardRuns.hpp"
#include "lum-monte-carlo/script/CompiledScript.hpp"

// The lane loops compiled twice, for AVX2 (four lanes a register; without FMA, so that no
// product and sum are fused and every lane rounds as RunPath does) and for the baseline, the
// processor's own chosen when the library loads.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__)
#define ZEP_LANES_CLONES __attribute__((target_clones("avx2", "default")))
#else
#define ZEP_LANES_CLONES
#endif

namespace zep {

namespace {

using detail::AboveDegree;
using detail::EqualDegree;
using detail::MaybeAboveZero;
using detail::Passes;
using detail::Passing;

constexpr double kSure = 0.999999999999;
constexpr double kNever = 1e-12;

// A smoothed IF whose degree is neither sure nor zero (nor a number) runs both branches.
inline bool RunsBoth(double degree) { return !(degree > kSure) & !(degree < kNever); }

// A term's value on lane l, as detail::Value computes it for one path.
inline double LaneValue(const Term& term, double spot, const double* x, std::size_t lanes, std::size_t l) {
    const double base = term.fromSpot ? spot : 1.0;
    const double factor = term.variableFactor ? x[term.index * lanes + l] : term.value;
    return term.divides ? base / factor : base * factor;
}

inline double LaneDifference(const TermComparison& c, double spot, const double* x, std::size_t lanes,
                             std::size_t l) {
    return LaneValue(c.left, spot, x, lanes, l) - LaneValue(c.right, spot, x, lanes, l);
}

}  // namespace

CompiledScript::LaneScratch CompiledScript::MakeLaneScratch(std::size_t lanes, double defaultEps) const {
    const std::size_t levels = m_ifNesting + 1;
    LaneScratch scratch;
    scratch.lanes = lanes;
    scratch.values.resize((m_stackSize + 1) * lanes);
    scratch.resumeAt.resize(lanes);
    scratch.flags.resize(lanes);
    scratch.degrees.resize(levels * lanes);
    scratch.saved.resize(levels * std::max<std::size_t>(m_blendWidth, 1) * lanes);
    scratch.afterThen.resize(scratch.saved.size());
    scratch.least.resize(lanes);
    scratch.greatest.resize(lanes);
    scratch.probe.resize(lanes);
    scratch.candidates.resize(lanes);
    scratch.defaultEps = defaultEps;
    return scratch;
}

ZEP_LANES_CLONES void CompiledScript::RunLanes(const double* spots, const double* numeraires, std::size_t lanes, double* x,
                              LaneScratch& scratch) const {
    const std::size_t events = EventCount();
    if (events == 0 || lanes == 0) return;
    const std::size_t L = lanes;
    const double defaultEps = scratch.defaultEps;
    // 64-bit lane state, so that a mask compares in the width of the doubles it selects.
    std::int64_t* const resumeAt = scratch.resumeAt.data();
    std::int64_t* const flags = scratch.flags.data();
    std::fill(resumeAt, resumeAt + L, 0);
    // Every lane is active from `lastResume` on (the greatest instruction a lane waits for).
    std::int32_t lastResume = 0;

    std::size_t event = 0;
    auto pc = static_cast<std::int32_t>(m_eventStart[0]);
    const double* spot = spots;
    double numeraire = numeraires[0];

    // The lane loops below read the lane count and the instruction from locals and select
    // without short circuits: the compiler turns them into vector compares and blends.
    // The active lanes whose flag is set wait for `target`; the instruction to run next.
    const auto branch = [&](std::int32_t target) -> std::int32_t {
        const std::size_t n = L;
        const std::int64_t now = pc, to = target;
        if (pc >= lastResume) {
            std::int64_t taken = 0;
            for (std::size_t l = 0; l < n; ++l) taken += flags[l];
            if (taken == static_cast<std::int64_t>(n)) return target;
            if (taken == 0) return pc + 1;
            for (std::size_t l = 0; l < n; ++l) resumeAt[l] = flags[l] != 0 ? to : resumeAt[l];
            lastResume = target;
            return pc + 1;
        }
        std::int64_t nearest = to, furthest = now;
        for (std::size_t l = 0; l < n; ++l) {
            const std::int64_t r = (flags[l] != 0) & (resumeAt[l] <= now) ? to : resumeAt[l];
            resumeAt[l] = r;
            nearest = r < nearest ? r : nearest;
            furthest = r > furthest ? r : furthest;
        }
        lastResume = static_cast<std::int32_t>(furthest);
        return std::max(pc + 1, static_cast<std::int32_t>(nearest));
    };
    // Writes `value(l)` into row `to` on the active lanes.
    const auto write = [&](double* to, auto value) {
        const std::size_t n = L;
        if (pc >= lastResume) {
            for (std::size_t l = 0; l < n; ++l) to[l] = value(l);
        } else {
            const std::int64_t now = pc;
            for (std::size_t l = 0; l < n; ++l) {
                const double v = value(l);
                to[l] = resumeAt[l] <= now ? v : to[l];
            }
        }
    };
    const auto row = [&](std::int32_t variable) { return x + static_cast<std::size_t>(variable) * L; };

    for (;;) {
        const Instruction& in = m_code[static_cast<std::size_t>(pc)];
        // One row past the top of the stack.
        double* const top = scratch.values.data() + static_cast<std::size_t>(m_depthBefore[pc]) * L;
        double* const t1 = top - L;      // the top row
        double* const t2 = top - 2 * L;  // the row below it
        std::int32_t next = pc + 1;
        switch (in.op) {
            case OpCode::PushConst: std::fill(top, top + L, in.value); break;
            case OpCode::PushVar: std::copy_n(row(in.operand), L, top); break;
            case OpCode::PushSpot: std::copy_n(spot, L, top); break;
#define ZEP_LANES_BINARY(name, expression)                                                     \
    case OpCode::name:                                                                         \
        for (std::size_t l = 0; l < L; ++l) {                                                  \
            const double a = t2[l], b = t1[l];                                                 \
            t2[l] = expression;                                                                \
        }                                                                                      \
        break;
            ZEP_LANES_BINARY(Add, a + b)
            ZEP_LANES_BINARY(Sub, a - b)
            ZEP_LANES_BINARY(Mult, a * b)
            ZEP_LANES_BINARY(Div, a / b)
            ZEP_LANES_BINARY(Pow, std::pow(a, b))
            ZEP_LANES_BINARY(Least, script::Least(a, b))
            ZEP_LANES_BINARY(Greatest, script::Greatest(a, b))
            ZEP_LANES_BINARY(And, (a != 0.0 && b != 0.0) ? 1.0 : 0.0)
            ZEP_LANES_BINARY(Or, (a != 0.0 || b != 0.0) ? 1.0 : 0.0)
            ZEP_LANES_BINARY(FuzzyAnd, a * b)
            ZEP_LANES_BINARY(FuzzyOr, a + b - a * b)
#undef ZEP_LANES_BINARY
#define ZEP_LANES_UNARY(name, expression)                                                      \
    case OpCode::name:                                                                         \
        for (std::size_t l = 0; l < L; ++l) {                                                  \
            const double a = t1[l];                                                            \
            t1[l] = expression;                                                                \
        }                                                                                      \
        break;
            ZEP_LANES_UNARY(Negate, -a)
            ZEP_LANES_UNARY(Log, std::log(a))
            ZEP_LANES_UNARY(Sqrt, std::sqrt(a))
            ZEP_LANES_UNARY(AddConst, a + in.value)
            ZEP_LANES_UNARY(SubConst, a - in.value)
            ZEP_LANES_UNARY(MultConst, a * in.value)
            ZEP_LANES_UNARY(DivConst, a / in.value)
            ZEP_LANES_UNARY(AddVar, a + row(in.operand)[l])
            ZEP_LANES_UNARY(SubVar, a - row(in.operand)[l])
            ZEP_LANES_UNARY(MultVar, a * row(in.operand)[l])
            ZEP_LANES_UNARY(DivVar, a / row(in.operand)[l])
            ZEP_LANES_UNARY(Equal, a == 0.0 ? 1.0 : 0.0)
            ZEP_LANES_UNARY(Sup, a > 0.0 ? 1.0 : 0.0)
            ZEP_LANES_UNARY(SupEqual, a >= 0.0 ? 1.0 : 0.0)
            ZEP_LANES_UNARY(Not, a != 0.0 ? 0.0 : 1.0)
            ZEP_LANES_UNARY(FuzzyNot, 1.0 - a)
            ZEP_LANES_UNARY(FuzzyEqual, EqualDegree(m_fuzzyTests[in.operand], a, defaultEps))
            ZEP_LANES_UNARY(FuzzySup, AboveDegree(m_fuzzyTests[in.operand], a, defaultEps))
            // SMOOTH's test keeps the compared x and turns the width e into h = e / 2.
            ZEP_LANES_UNARY(SmoothTest, a / 2)
#undef ZEP_LANES_UNARY
            // Rows from the test on: x, h, then a (where needed), then b (where needed).
            case OpCode::SmoothSkipA:
                for (std::size_t l = 0; l < L; ++l)
                    flags[l] = script::SmoothSideOf(t2[l], t1[l]) == script::SmoothSide::BelowBand;
                next = branch(in.target);
                break;
            case OpCode::SmoothSkipB:
                for (std::size_t l = 0; l < L; ++l)
                    flags[l] = script::SmoothSideOf((top - 3 * L)[l], t2[l]) == script::SmoothSide::AboveBand;
                next = branch(in.target);
                break;
            case OpCode::SmoothEnd: {
                double* const xs = top - 4 * L;
                const double* const hs = top - 3 * L;
                for (std::size_t l = 0; l < L; ++l) {
                    switch (script::SmoothSideOf(xs[l], hs[l])) {
                        case script::SmoothSide::BelowBand: xs[l] = t1[l]; break;
                        case script::SmoothSide::AboveBand: xs[l] = t2[l]; break;
                        default: xs[l] = script::SmoothBlend(xs[l], hs[l], t2[l], t1[l]);
                    }
                }
                break;
            }
#define ZEP_LANES_JUMP_UNLESS(name, condition)                                                 \
    case OpCode::name:                                                                         \
        for (std::size_t l = 0; l < L; ++l) flags[l] = !(condition);                           \
        next = branch(in.target);                                                              \
        break;
            case OpCode::Jump:
                std::fill(flags, flags + L, std::uint8_t{1});
                next = branch(in.target);
                break;
            ZEP_LANES_JUMP_UNLESS(JumpIfFalse, t1[l] != 0.0)
            ZEP_LANES_JUMP_UNLESS(JumpUnlessEqual, t1[l] == 0.0)
            ZEP_LANES_JUMP_UNLESS(JumpUnlessSup, t1[l] > 0.0)
            ZEP_LANES_JUMP_UNLESS(JumpUnlessSupEqual, t1[l] >= 0.0)
            ZEP_LANES_JUMP_UNLESS(JumpUnlessEqualVarConst, row(in.operand)[l] - in.value == 0.0)
            ZEP_LANES_JUMP_UNLESS(JumpUnlessSupVarConst, row(in.operand)[l] - in.value > 0.0)
            ZEP_LANES_JUMP_UNLESS(JumpUnlessSupEqualVarConst, row(in.operand)[l] - in.value >= 0.0)
            ZEP_LANES_JUMP_UNLESS(JumpUnlessEqualConstVar, in.value - row(in.operand)[l] == 0.0)
            ZEP_LANES_JUMP_UNLESS(JumpUnlessSupConstVar, in.value - row(in.operand)[l] > 0.0)
            ZEP_LANES_JUMP_UNLESS(JumpUnlessSupEqualConstVar, in.value - row(in.operand)[l] >= 0.0)
            ZEP_LANES_JUMP_UNLESS(JumpUnlessEqualTerms,
                                  LaneDifference(m_comparisons[in.operand], spot[l], x, L, l) == 0.0)
            ZEP_LANES_JUMP_UNLESS(JumpUnlessSupTerms,
                                  LaneDifference(m_comparisons[in.operand], spot[l], x, L, l) > 0.0)
            ZEP_LANES_JUMP_UNLESS(JumpUnlessSupEqualTerms,
                                  LaneDifference(m_comparisons[in.operand], spot[l], x, L, l) >= 0.0)
#undef ZEP_LANES_JUMP_UNLESS
            case OpCode::AssignIfEqualTerms:
            case OpCode::AssignIfSupTerms:
            case OpCode::AssignIfSupEqualTerms:
            case OpCode::FuzzyAssignIfEqualTerms:
            case OpCode::FuzzyAssignIfSupTerms: {
                const std::size_t dates = std::min(static_cast<std::size_t>(in.run), events - event);
                GuardRun(in, spots + event * L, dates, L, x, scratch, pc >= lastResume ? nullptr : resumeAt, pc);
                // A run spans `dates` one-instruction events: go to its last End.
                next = pc + 2 * static_cast<std::int32_t>(dates - 1) + 1;
                event += dates - 1;
                spot = spots + event * L;
                numeraire = numeraires[event];
                break;
            }
            case OpCode::Assign: write(row(in.operand), [&](std::size_t l) { return t1[l]; }); break;
            case OpCode::AssignConst: write(row(in.operand), [&](std::size_t) { return in.value; }); break;
            case OpCode::Pays: {
                double* const to = row(in.operand);
                write(to, [&](std::size_t l) { return to[l] + t1[l] * numeraire; });
                break;
            }
            case OpCode::End: {
                // Empty events after this one only move the paths along.
                const std::size_t empty = std::min(static_cast<std::size_t>(in.run) - 1, events - 1 - event);
                event += empty;
                if (event == events - 1) return;
                ++event;
                next = pc + static_cast<std::int32_t>(empty) + 1;
                spot = spots + event * L;
                numeraire = numeraires[event];
                break;
            }
            case OpCode::FuzzyIf: {
                const FuzzyBranch& fuzzy = m_branches[in.operand];
                const std::size_t level = static_cast<std::size_t>(fuzzy.level);
                // A sure degree runs THEN alone, a zero one ELSE alone, any other both.
                std::copy_n(t1, L, scratch.degrees.data() + level * L);
                for (std::size_t l = 0; l < L; ++l) flags[l] = t1[l] < kNever;
                double* const saved = scratch.saved.data() + level * m_blendWidth * L;
                for (std::int32_t i = 0; i < fuzzy.count; ++i)
                    std::copy_n(row(m_branchVariables[fuzzy.first + i]), L, saved + i * L);
                next = branch(in.target);
                break;
            }
            case OpCode::FuzzyThenEnd: {
                // Lanes running both branches put THEN's results aside and give ELSE the values
                // THEN started from; lanes that ran THEN alone leave the IF.
                const FuzzyBranch& fuzzy = m_branches[in.operand];
                const std::size_t level = static_cast<std::size_t>(fuzzy.level);
                const double* const degrees = scratch.degrees.data() + level * L;
                double* const saved = scratch.saved.data() + level * m_blendWidth * L;
                double* const afterThen = scratch.afterThen.data() + level * m_blendWidth * L;
                for (std::int32_t i = 0; i < fuzzy.count; ++i) {
                    double* const value = row(m_branchVariables[fuzzy.first + i]);
                    double* const after = afterThen + i * L;
                    const double* const before = saved + i * L;
                    const std::int64_t now = pc;
                    for (std::size_t l = 0; l < L; ++l) {
                        const bool both = RunsBoth(degrees[l]) & (resumeAt[l] <= now);
                        after[l] = both ? value[l] : after[l];
                        value[l] = both ? before[l] : value[l];
                    }
                }
                for (std::size_t l = 0; l < L; ++l) flags[l] = degrees[l] > kSure;
                next = branch(in.target);
                break;
            }
            case OpCode::FuzzyEnd: {
                const FuzzyBranch& fuzzy = m_branches[in.operand];
                const std::size_t level = static_cast<std::size_t>(fuzzy.level);
                const double* const degrees = scratch.degrees.data() + level * L;
                const double* const afterThen = scratch.afterThen.data() + level * m_blendWidth * L;
                for (std::int32_t i = 0; i < fuzzy.count; ++i) {
                    double* const value = row(m_branchVariables[fuzzy.first + i]);
                    const double* const after = afterThen + i * L;
                    const std::int64_t now = pc;
                    for (std::size_t l = 0; l < L; ++l) {
                        const double d = degrees[l];
                        const double blend = d * after[l] + (1.0 - d) * value[l];
                        value[l] = RunsBoth(d) & (resumeAt[l] <= now) ? blend : value[l];
                    }
                }
                break;
            }
        }
        pc = next;
    }
}

// A run of `dates` identical guard events ("IF SPOT() / S0 < KNOCKIN THEN KI = 1 ENDIF" every
// day), from the first date's row of spots. A lane whose extreme spot over the run fails the
// guard fails it on every date, so only the lanes whose extremes
// passes are walked date by date, each exactly as RunPath walks its path.
ZEP_LANES_CLONES void CompiledScript::GuardRun(const Instruction& in, const double* spots, std::size_t dates, std::size_t L,
                              double* x, LaneScratch& scratch, const std::int64_t* resumeAt,
                              std::int32_t at) const {
    const bool smoothed = in.op == OpCode::FuzzyAssignIfEqualTerms || in.op == OpCode::FuzzyAssignIfSupTerms;
    const FuzzyTest* const test = smoothed ? &m_fuzzyTests[in.target] : nullptr;
    const TermComparison& comparison = m_comparisons[smoothed ? test->comparison : in.target];
    Passing rule = Passing::Equal;
    double bound = 0.0;
    if (smoothed) {
        std::tie(rule, bound) = MaybeAboveZero(*test, in.op == OpCode::FuzzyAssignIfSupTerms, scratch.defaultEps);
    } else {
        rule = in.op == OpCode::AssignIfEqualTerms ? Passing::Equal
               : in.op == OpCode::AssignIfSupTerms ? Passing::Above
                                                   : Passing::AtLeast;
    }

    std::uint32_t* const candidates = scratch.candidates.data();
    std::size_t count = 0;
    const auto laneIsActive = [&](std::size_t l) { return resumeAt == nullptr || resumeAt[l] <= at; };
    if (rule == Passing::Equal) {
        for (std::size_t l = 0; l < L; ++l)
            if (laneIsActive(l)) candidates[count++] = static_cast<std::uint32_t>(l);
    } else {
        // Each lane's least and greatest spot over the run, and a probe that turns NaN when a
        // spot is NaN or infinite (such a lane is walked through).
        double* const least = scratch.least.data();
        double* const greatest = scratch.greatest.data();
        double* const probe = scratch.probe.data();
        std::size_t l0 = 0;
#if defined(__SSE2__)
        // Eight lanes at a time, kept in registers over the dates. min(s, low) is s < low ? s :
        // low and max(s, high) is s > high ? s : high, as the loop below.
        for (; l0 + 8 <= L; l0 += 8) {
            __m128d low[4], high[4], sum[4];
            for (int j = 0; j < 4; ++j) {
                low[j] = high[j] = _mm_loadu_pd(spots + l0 + 2 * j);
                sum[j] = _mm_sub_pd(low[j], low[j]);
            }
            for (std::size_t date = 1; date < dates; ++date) {
                const double* const s = spots + date * L + l0;
                for (int j = 0; j < 4; ++j) {
                    const __m128d v = _mm_loadu_pd(s + 2 * j);
                    low[j] = _mm_min_pd(v, low[j]);
                    high[j] = _mm_max_pd(v, high[j]);
                    sum[j] = _mm_add_pd(sum[j], _mm_sub_pd(v, v));
                }
            }
            for (int j = 0; j < 4; ++j) {
                _mm_storeu_pd(least + l0 + 2 * j, low[j]);
                _mm_storeu_pd(greatest + l0 + 2 * j, high[j]);
                _mm_storeu_pd(probe + l0 + 2 * j, sum[j]);
            }
        }
#endif
        for (std::size_t l = l0; l < L; ++l) {
            least[l] = greatest[l] = spots[l];
            probe[l] = spots[l] - spots[l];
            for (std::size_t date = 1; date < dates; ++date) {
                const double s = spots[date * L + l];
                least[l] = s < least[l] ? s : least[l];
                greatest[l] = s > greatest[l] ? s : greatest[l];
                probe[l] += s - s;
            }
        }
        // A guard whose difference moves one way with the spot (one side reads it, by a finite
        // non-zero factor, against a finite other side; correctly rounded products, quotients
        // and differences keep that order) is largest
        // at one of the extreme spots, so when both of them fail every date fails.
        std::int64_t* const visit = scratch.flags.data();
        const bool oneSideReadsSpot = comparison.left.fromSpot != comparison.right.fromSpot;
        const Term& spotSide = comparison.left.fromSpot ? comparison.left : comparison.right;
        const Term& otherSide = comparison.left.fromSpot ? comparison.right : comparison.left;
        const auto mark = [&](auto passes) {
            for (std::size_t l = 0; l < L; ++l) {
                const double factor = spotSide.variableFactor ? x[spotSide.index * L + l] : spotSide.value;
                const double other = LaneValue(otherSide, 1.0, x, L, l);
                const bool monotone =
                    oneSideReadsSpot & (factor - factor == 0.0) & (factor != 0.0) & (other - other == 0.0);
                const bool mayPass = passes(LaneDifference(comparison, least[l], x, L, l)) |
                                     passes(LaneDifference(comparison, greatest[l], x, L, l));
                visit[l] = !monotone | (probe[l] != 0.0) | mayPass;
            }
        };
        switch (rule) {
            case Passing::Above: mark([bound](double d) { return d > bound; }); break;
            case Passing::AtLeast: mark([bound](double d) { return d >= bound; }); break;
            default: mark([bound](double d) { return !(d < bound); }); break;
        }
        for (std::size_t l = 0; l < L; ++l)
            if (visit[l] != 0 && laneIsActive(l)) candidates[count++] = static_cast<std::uint32_t>(l);
    }

    double* const target = x + static_cast<std::size_t>(in.operand) * L;
    for (std::size_t c = 0; c < count; ++c) {
        const std::size_t l = candidates[c];
        if (!smoothed) {
            for (std::size_t date = 0; date < dates; ++date) {
                if (Passes(rule, LaneDifference(comparison, spots[date * L + l], x, L, l), bound)) {
                    target[l] = in.value;
                    break;
                }
            }
            continue;
        }
        double& value = target[l];
        for (std::size_t date = 0; date < dates; ++date) {
            const double difference = LaneDifference(comparison, spots[date * L + l], x, L, l);
            if (!Passes(rule, difference, bound)) continue;
            // The comparison may read the guarded variable itself (a run of one date).
            const double d = in.op == OpCode::FuzzyAssignIfSupTerms ? AboveDegree(*test, difference, scratch.defaultEps)
                                                                                 : EqualDegree(*test, difference, scratch.defaultEps);
            if (d > kSure) value = in.value;
            else if (!(d < kNever)) value = d * in.value + (1.0 - d) * value;
        }
    }
}

}  // namespace zep
