#include "VanillaBookLanes.hpp"

#if defined(ZEP_HAVE_VECTOR_MATH) && defined(__x86_64__)

#pragma GCC target("avx2,fma")
#include "AvxLanes.hpp"

#include <cfloat>
#include <cmath>
#include <limits>

#include "lum-closed-form/BSVanilla.hpp"
#include "lum-closed-form/NormalDistribution.hpp"

namespace zep::detail {

namespace {

// The engine's bisection: at most 60 halvings, stopping once the step is below 1e-10.
constexpr int kHalvings = 60;
constexpr double kStepTolerance = 1e-10;
// A bracketed Newton settles in a handful of steps; a row still moving after this many is left
// to the engine.
constexpr int kNewtonSteps = 40;
// A Newton step this small is taken only in the quadratic phase, where the root is much closer.
constexpr double kNewtonStepTolerance = 1e-12;
// The replay judges a midpoint by comparison only this many uncertainties away from the root.
constexpr double kBandPerUncertainty = 4.0;
// Beyond this band the lanes' answer may differ from the engine's by more than its last step.
constexpr double kLaneBandLimit = 5e-11;
// How far rounding can move a forward premium, relative to its terms: generous against the few
// ulp that erfc, the products and the difference F N(d1) - K N(d2) each contribute.
constexpr double kPremiumRounding = 32 * DBL_EPSILON;
// Probabilities this close to the underflow are taken as rounding.
constexpr double kTrustedProbability = 1e-280;

Lanes AllSet() { return _mm256_castsi256_pd(_mm256_set1_epi64x(-1)); }
Lanes Not(Lanes mask) { return _mm256_andnot_pd(mask, AllSet()); }
Lanes Less(Lanes a, Lanes b) { return _mm256_cmp_pd(a, b, _CMP_LT_OQ); }
Lanes LessOrEqual(Lanes a, Lanes b) { return _mm256_cmp_pd(a, b, _CMP_LE_OQ); }
Lanes Equal(Lanes a, Lanes b) { return _mm256_cmp_pd(a, b, _CMP_EQ_OQ); }

// The implied volatilities of four rows where the engine's bisection lands. The bisection halves
// the bracket [1.1 limit, 5 or 20] about 37 times, each time asking only on which side of the
// root the midpoint lies. Here a Newton iteration finds the root first, kept inside a bracket
// that closes on it and bisecting whenever a step would leave it, in a handful of premium
// evaluations; the halvings are then replayed against that root. Only a midpoint within rounding
// distance of the root has its premium evaluated, since there the sign belongs to the rounding,
// so the replay takes the bisection's own decisions and returns its own grid point.
class LaneSolver {
public:
    // Takes on the regular rows whose target premium lies between the premiums at the two ends
    // of the bracket.
    void Start(const VanillaBookInputs& book, std::span<const double> premiums, double low, std::size_t first) {
        const Lanes type = Load(book.optionTypes, first);
        const Lanes isCall = Equal(type, Broadcast(BSVanilla::Call));
        const Lanes isPut = Equal(type, Broadcast(BSVanilla::Put));
        const Lanes spot = Load(book.spots, first);
        m_expiry = Load(book.timesToExpiry, first);
        const Lanes regular = _mm256_and_pd(_mm256_or_pd(isCall, isPut),
                                            _mm256_and_pd(LessOrEqual(Broadcast(0.0), spot),
                                                          LessOrEqual(Broadcast(BSVanilla::kExpiryThreshold), m_expiry)));

        const Lanes delivery = Load(book.timesToDelivery, first);
        const Lanes domesticDiscount = Exp(-Load(book.domesticRates, first) * delivery);
        m_phi = Select(isCall, Broadcast(1.0), Broadcast(-1.0));
        m_strike = Load(book.strikes, first);
        // Formed as the single-option solver forms it (the discount factors' ratio first).
        m_forward = spot * (Exp(-Load(book.foreignRates, first) * delivery) / domesticDiscount);
        m_sqrtT = _mm256_sqrt_pd(m_expiry);
        m_logMoneyness = Log(m_forward / m_strike);
        const Lanes target = Load(premiums, first) / domesticDiscount;
        m_scale = Select(Less(target, Broadcast(1e-6)), Broadcast(1e6), Broadcast(1.0));
        m_scaledTarget = m_scale * target;
        m_intrinsic = _mm256_max_pd(m_phi * (m_forward - m_strike), Broadcast(0.0));
        m_targetTimeValue = target - m_intrinsic;

        const Lanes zero = Broadcast(0.0);
        const Lanes atFive = DecidedObjectiveAt(Broadcast(5.0));
        const Lanes highIsTwenty = Less(atFive, zero);
        m_low = Broadcast(low);
        m_high = Select(highIsTwenty, Broadcast(20.0), Broadcast(5.0));
        const Lanes atHigh =
            AnyLane(highIsTwenty) ? Select(highIsTwenty, DecidedObjectiveAt(Broadcast(20.0)), atFive) : atFive;
        // The bisection walks up from the low end when the premium there falls short of the
        // target; short of it at the high end too, or undecided, the row is the engine's. So is a
        // row whose forward or target lies below the normal range: its premiums keep too few
        // digits for the replay to land where the engine's own halvings do.
        const Lanes smallestNormal = Broadcast(std::numeric_limits<double>::min());
        const Lanes normalRange = _mm256_and_pd(LessOrEqual(smallestNormal, m_forward), LessOrEqual(smallestNormal, target));
        m_solvable = _mm256_and_pd(_mm256_and_pd(regular, normalRange),
                                   _mm256_and_pd(Less(DecidedObjectiveAt(m_low), zero), Less(zero, atHigh)));

        m_lower = m_low;
        m_upper = m_high;
        const Lanes guess = CorradoMillerGuess(isCall, target);
        const Lanes inside = _mm256_and_pd(Less(m_lower, guess), Less(guess, m_upper));
        m_sigma = Select(inside, guess, 0.5 * (m_lower + m_upper));
        m_band = Broadcast(0.0);
        m_settled = Not(m_solvable);
    }

    bool Settled() const { return AllLanes(m_settled); }

    // Newton on ln(premium - I) against ln(target - I), I the forward intrinsic value: the
    // premium of the out-of-the-money twin (by parity), whose logarithm is close to linear in
    // 1 / sigma^2 where the premium itself is exponentially flat; its sign is the objective's.
    void NewtonStep() {
        if (Settled()) return;
        const Lanes running = Not(m_settled);
        const PremiumAt at = Premium(m_sigma);
        const Lanes atSigma = Objective(at.premium);
        const Lanes densityD1 = Density(at.d1);
        const Lanes forwardVega = m_forward * densityD1 * m_sqrtT;
        const Lanes zero = Broadcast(0.0);
        m_lower = Select(_mm256_and_pd(running, Less(atSigma, zero)), m_sigma, m_lower);
        m_upper = Select(_mm256_and_pd(running, Less(zero, atSigma)), m_sigma, m_upper);
        const Lanes timeValue = at.premium - m_intrinsic;
        const Lanes newton = m_sigma - Log(timeValue / m_targetTimeValue) * timeValue / forwardVega;
        // A converged step may land on a bracket end: that is the root, not a way out.
        const Lanes inside = _mm256_and_pd(LessOrEqual(m_lower, newton), LessOrEqual(newton, m_upper));
        const Lanes next = Select(inside, newton, 0.5 * (m_lower + m_upper));
        // Within `width` of the root the premium differs from the target by no more than its own
        // rounding, and Newton's steps there are that rounding, not progress. So the root is
        // known to within its step once the step is that small (or far below any width, in the
        // quadratic phase), or to within the bracket once that has closed to the width. The
        // replay evaluates the premium for midpoints within a few times that of the root.
        const Lanes width = Rounding(at, densityD1) / forwardVega;
        const Lanes step = Abs(next - m_sigma);
        const Lanes settled = _mm256_or_pd(LessOrEqual(step, _mm256_max_pd(width, Broadcast(kNewtonStepTolerance))),
                                           LessOrEqual(m_upper - m_lower, width));
        m_sigma = Select(running, next, m_sigma);
        m_band = Select(running, kBandPerUncertainty * _mm256_max_pd(width, step), m_band);
        m_settled = _mm256_or_pd(m_settled, _mm256_and_pd(running, settled));
    }

    // The bisection starts from the low end, its objective there being negative. A root that
    // rounding blurs over more than the bisection's resolution is left to the engine, whose
    // erfc (a few ulp from these lanes') might halve the other way.
    void StartReplay() {
        m_solved = _mm256_and_pd(_mm256_and_pd(m_solvable, m_settled), LessOrEqual(m_band, Broadcast(kLaneBandLimit)));
        m_replayed = Not(m_solved);
        m_bisectionRoot = m_low;
        m_step = m_high - m_low;
    }

    bool Replayed() const { return AllLanes(m_replayed); }

    void Halve() {
        if (Replayed()) return;
        const Lanes running = Not(m_replayed);
        m_step = Select(running, 0.5 * m_step, m_step);
        const Lanes mid = m_bisectionRoot + m_step;
        const Lanes nearRoot = _mm256_and_pd(running, LessOrEqual(Abs(mid - m_sigma), m_band));
        Lanes atOrBelowRoot = LessOrEqual(mid, m_sigma);
        Lanes onRoot = _mm256_setzero_pd();
        if (AnyLane(nearRoot)) {
            const Lanes atMid = ObjectiveAt(mid);
            const Lanes zero = Broadcast(0.0);
            atOrBelowRoot = Select(nearRoot, LessOrEqual(atMid, zero), atOrBelowRoot);
            onRoot = _mm256_and_pd(nearRoot, Equal(atMid, zero));
        }
        m_bisectionRoot = Select(_mm256_and_pd(running, atOrBelowRoot), mid, m_bisectionRoot);
        const Lanes stops = _mm256_or_pd(Less(Abs(m_step), Broadcast(kStepTolerance)), onRoot);
        m_replayed = _mm256_or_pd(m_replayed, _mm256_and_pd(running, stops));
    }

    // Writes the solved lanes; returns the lanes left to the engine (bit k for lane k), among
    // them any the bisection would not finish within its halvings.
    unsigned Store(std::span<double> volatilities, std::size_t first) const {
        const Lanes written = _mm256_and_pd(m_solved, m_replayed);
        _mm256_maskstore_pd(&volatilities[first], _mm256_castpd_si256(written), m_bisectionRoot);
        return LaneBits(Not(written));
    }

private:
    // The forward premium at sigma with what Newton needs beside it.
    struct PremiumAt {
        Lanes premium;
        Lanes d1, d2;
        Lanes forwardTerm, strikeTerm;  // F N(phi d1) and K N(phi d2)
    };

    // In the engine's order of operations.
    PremiumAt Premium(Lanes sigma) const {
        const Lanes sigmaRootT = sigma * m_sqrtT;
        const Lanes d1 = (m_logMoneyness + sigma * sigma * 0.5 * m_expiry) / sigmaRootT;
        const Lanes d2 = d1 - sigmaRootT;
        const Lanes forwardTerm = m_forward * (0.5 * Erfc(-(m_phi * d1) * kInverseSqrtTwo));
        const Lanes strikeTerm = m_strike * (0.5 * Erfc(-(m_phi * d2) * kInverseSqrtTwo));
        return {m_phi * (forwardTerm - strikeTerm), d1, d2, forwardTerm, strikeTerm};
    }

    static Lanes Density(Lanes d) { return kInverseSqrtTwoPi * Exp(-0.5 * d * d); }

    // How far rounding can move the premium: a few ulp of each term, and of the move an ulp of d
    // makes in N(d), n(d) |d| ulp (F n(d1) = K n(d2) is the density term of both). Probabilities
    // near the underflow keep no relative precision, so a floor counts them as rounding (and
    // keeps this sum clear of slow subnormal arithmetic).
    Lanes Rounding(const PremiumAt& at, Lanes densityD1) const {
        return kPremiumRounding * (at.forwardTerm + at.strikeTerm + m_forward * densityD1 * (Abs(at.d1) + Abs(at.d2))) +
               kTrustedProbability * (m_forward + m_strike);
    }

    // The engine's objective, scale * premium - scale * target.
    Lanes Objective(Lanes premium) const { return m_scale * premium - m_scaledTarget; }
    Lanes ObjectiveAt(Lanes sigma) const { return Objective(Premium(sigma).premium); }
    // NaN where rounding could give the objective either sign: the engine's erfc, a few ulp from
    // these lanes', decides those rows.
    Lanes DecidedObjectiveAt(Lanes sigma) const {
        const PremiumAt at = Premium(sigma);
        const Lanes objective = Objective(at.premium);
        const Lanes rounding = Rounding(at, Density(at.d1));
        return Select(Less(m_scale * rounding, Abs(objective)), objective, Broadcast(__builtin_nan("")));
    }

    // Corrado and Miller's closed-form estimate from the forward call premium (a put's through
    // parity, C - P = F - K): close near the money, where most rows lie.
    Lanes CorradoMillerGuess(Lanes isCall, Lanes target) const {
        const Lanes gap = m_forward - m_strike;
        const Lanes callPremium = Select(isCall, target, target + gap);
        const Lanes excess = callPremium - 0.5 * gap;
        const Lanes discriminant = _mm256_max_pd(excess * excess - gap * gap * (1.0 / M_PI), Broadcast(0.0));
        const double sqrtTwoPi = std::sqrt(2.0 * M_PI);
        return sqrtTwoPi / (m_forward + m_strike) * (excess + _mm256_sqrt_pd(discriminant)) / m_sqrtT;
    }

    Lanes m_phi, m_strike, m_forward, m_expiry, m_sqrtT, m_logMoneyness, m_scale, m_scaledTarget, m_intrinsic, m_targetTimeValue;
    Lanes m_low, m_high, m_solvable;
    // Newton: the current root estimate, the bracket around it, and the band about it within
    // which the replay evaluates the premium.
    Lanes m_sigma, m_lower, m_upper, m_band, m_settled;
    // Replay of the bisection.
    Lanes m_solved, m_replayed, m_bisectionRoot, m_step;
};

}  // namespace

unsigned SolveEightRows(const VanillaBookInputs& book, std::span<const double> premiums,
                        std::span<double> volatilities, double volatilityLimit, std::size_t first) {
    const double low = 1.1 * volatilityLimit;
    // Below the engine's smallest volatility the engine refuses the low end: every row is its.
    if (!(low >= BSVanilla::kMinimumVolatility)) return 0xFF;
    // Two groups in flight: each step waits on its own last result, so interleaving two
    // independent groups keeps the processor busy while one waits.
    LaneSolver groups[2];
    groups[0].Start(book, premiums, low, first);
    groups[1].Start(book, premiums, low, first + 4);
    for (int step = 0; step < kNewtonSteps && !(groups[0].Settled() && groups[1].Settled()); ++step) {
        groups[0].NewtonStep();
        groups[1].NewtonStep();
    }
    groups[0].StartReplay();
    groups[1].StartReplay();
    for (int halving = 0; halving < kHalvings && !(groups[0].Replayed() && groups[1].Replayed()); ++halving) {
        groups[0].Halve();
        groups[1].Halve();
    }
    return groups[0].Store(volatilities, first) | groups[1].Store(volatilities, first + 4) << 4;
}

}  // namespace zep::detail

#else

namespace zep::detail {

unsigned SolveEightRows(const VanillaBookInputs&, std::span<const double>, std::span<double>, double,
                        std::size_t) {
    return 0xFF;
}

}  // namespace zep::detail

#endif
