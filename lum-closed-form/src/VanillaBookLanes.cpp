#include "VanillaBookLanes.hpp"

#if defined(ZEP_HAVE_VECTOR_MATH) && defined(__x86_64__)

#pragma GCC target("avx2,fma")
#include <immintrin.h>

#include "lum-closed-form/BSVanilla.hpp"
#include "lum-closed-form/NormalDistribution.hpp"

extern "C" __m256d _ZGVdN4v_exp(__m256d);
extern "C" __m256d _ZGVdN4v_log(__m256d);
extern "C" __m256d _ZGVdN4v_erfc(__m256d);

namespace zep::detail {

namespace {

using Lanes = __m256d;

Lanes Load(std::span<const double> column, std::size_t first) { return _mm256_loadu_pd(&column[first]); }
void Store(std::span<double> column, std::size_t first, Lanes values) { _mm256_storeu_pd(&column[first], values); }
Lanes Broadcast(double value) { return _mm256_set1_pd(value); }
Lanes Exp(Lanes x) { return _ZGVdN4v_exp(x); }

// True in every lane where the comparison holds; NaN compares false, so NaN rows go scalar.
bool AllLanes(Lanes mask) { return _mm256_movemask_pd(mask) == 0xF; }

}  // namespace

bool VanillaBookLanesAvailable() {
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
}

bool PriceFourRows(const VanillaBookInputs& book, std::span<const double> volatilities,
                   std::span<double> prices, std::span<double> deltas, std::span<double> gammas,
                   std::span<double> vegas, std::span<double> thetas, std::size_t first) {
    const Lanes type = Load(book.optionTypes, first);
    const Lanes strike = Load(book.strikes, first);
    const Lanes sigma = Load(volatilities, first);
    const Lanes expiry = Load(book.timesToExpiry, first);
    const Lanes delivery = Load(book.timesToDelivery, first);
    const Lanes rd = Load(book.domesticRates, first);
    const Lanes rf = Load(book.foreignRates, first);
    const Lanes spot = Load(book.spots, first);

    const Lanes isCall = _mm256_cmp_pd(type, Broadcast(BSVanilla::Call), _CMP_EQ_OQ);
    const Lanes isPut = _mm256_cmp_pd(type, Broadcast(BSVanilla::Put), _CMP_EQ_OQ);
    const bool regular =
        AllLanes(_mm256_or_pd(isCall, isPut)) &&
        AllLanes(_mm256_cmp_pd(sigma, Broadcast(BSVanilla::kMinimumVolatility), _CMP_GE_OQ)) &&
        AllLanes(_mm256_cmp_pd(spot, Broadcast(0.0), _CMP_GE_OQ)) &&
        AllLanes(_mm256_cmp_pd(expiry, Broadcast(BSVanilla::kExpiryThreshold), _CMP_GE_OQ));
    if (!regular) return false;

    // The same formulas as the engine: discounting to delivery, volatility to expiry.
    const Lanes phi = _mm256_blendv_pd(Broadcast(-1.0), Broadcast(1.0), isCall);
    const Lanes domesticDiscount = Exp(-rd * delivery);
    const Lanes foreignDiscount = Exp(-rf * delivery);
    const Lanes forward = spot * foreignDiscount / domesticDiscount;
    const Lanes sqrtT = _mm256_sqrt_pd(expiry);
    const Lanes sigmaRootT = sigma * sqrtT;
    const Lanes d1 = (_ZGVdN4v_log(forward / strike) + sigma * sigma * 0.5 * expiry) / sigmaRootT;
    const Lanes d2 = d1 - sigmaRootT;
    const Lanes cdfPhiD1 = 0.5 * _ZGVdN4v_erfc(-(phi * d1) * kInverseSqrtTwo);
    const Lanes cdfPhiD2 = 0.5 * _ZGVdN4v_erfc(-(phi * d2) * kInverseSqrtTwo);
    const Lanes pdfD1 = kInverseSqrtTwoPi * Exp(-0.5 * d1 * d1);

    Store(prices, first, phi * domesticDiscount * (forward * cdfPhiD1 - strike * cdfPhiD2));
    Store(deltas, first, foreignDiscount * phi * cdfPhiD1);
    Store(gammas, first, foreignDiscount * pdfD1 * foreignDiscount / (domesticDiscount * forward * sigmaRootT));
    Store(vegas, first, domesticDiscount * forward * pdfD1 * sqrtT);
    const Lanes foreignToExpiry = Exp(-rf * expiry);
    const Lanes domesticToExpiry = Exp(-rd * expiry);
    const Lanes thetaPerYear = -spot * foreignToExpiry * pdfD1 * sigma / (2.0 * sqrtT) +
                               phi * rf * spot * foreignToExpiry * cdfPhiD1 -
                               phi * rd * strike * domesticToExpiry * cdfPhiD2;
    Store(thetas, first, thetaPerYear / 365.0);
    return true;
}

namespace {

// One lane group of the engine's volatility bisection: bracket [1.1 limit, 5 or 20] unchecked,
// up to 60 halvings, a lane stops when its step is below 1e-10 or its objective is exactly zero.
class LaneBisection {
public:
    // False when a row needs the engine's own checks (type, spot, a volatility floor below 1e-10).
    bool Start(const VanillaBookInputs& book, std::span<const double> premiums, double low,
               std::size_t first) {
        const Lanes type = Load(book.optionTypes, first);
        const Lanes spot = Load(book.spots, first);
        const Lanes isCall = _mm256_cmp_pd(type, Broadcast(BSVanilla::Call), _CMP_EQ_OQ);
        const Lanes isPut = _mm256_cmp_pd(type, Broadcast(BSVanilla::Put), _CMP_EQ_OQ);
        if (!AllLanes(_mm256_or_pd(isCall, isPut)) ||
            !AllLanes(_mm256_cmp_pd(spot, Broadcast(0.0), _CMP_GE_OQ)) ||
            !(low >= BSVanilla::kMinimumVolatility))
            return false;

        const Lanes delivery = Load(book.timesToDelivery, first);
        const Lanes domesticDiscount = Exp(-Load(book.domesticRates, first) * delivery);
        m_phi = _mm256_blendv_pd(Broadcast(-1.0), Broadcast(1.0), isCall);
        m_strike = Load(book.strikes, first);
        m_forward = spot * Exp(-Load(book.foreignRates, first) * delivery) / domesticDiscount;
        m_expiry = Load(book.timesToExpiry, first);
        m_sqrtT = _mm256_sqrt_pd(m_expiry);
        m_logMoneyness = _ZGVdN4v_log(m_forward / m_strike);
        const Lanes target = Load(premiums, first) / domesticDiscount;
        m_scale = _mm256_blendv_pd(Broadcast(1.0), Broadcast(1e6),
                                   _mm256_cmp_pd(target, Broadcast(1e-6), _CMP_LT_OQ));
        m_scaledTarget = m_scale * target;

        const Lanes zero = Broadcast(0.0);
        const Lanes high = _mm256_blendv_pd(Broadcast(5.0), Broadcast(20.0),
                                            _mm256_cmp_pd(Objective(Broadcast(5.0)), zero, _CMP_LT_OQ));
        m_atLow = Objective(Broadcast(low));
        const Lanes startLow = _mm256_cmp_pd(m_atLow, zero, _CMP_LT_OQ);
        m_root = _mm256_blendv_pd(high, Broadcast(low), startLow);
        m_step = _mm256_blendv_pd(Broadcast(low) - high, high - Broadcast(low), startLow);
        m_done = _mm256_setzero_pd();
        return true;
    }

    bool Done() const { return AllLanes(m_done); }

    void Halve() {
        m_step = _mm256_blendv_pd(m_step * 0.5, m_step, m_done);
        const Lanes mid = m_root + m_step;
        const Lanes atMid = Objective(mid);
        const Lanes zero = Broadcast(0.0);
        m_root = _mm256_blendv_pd(m_root, mid, _mm256_andnot_pd(m_done, _mm256_cmp_pd(atMid, zero, _CMP_LE_OQ)));
        const Lanes absStep = _mm256_andnot_pd(Broadcast(-0.0), m_step);
        m_done = _mm256_or_pd(m_done, _mm256_or_pd(_mm256_cmp_pd(absStep, Broadcast(1e-10), _CMP_LT_OQ),
                                                   _mm256_cmp_pd(atMid, zero, _CMP_EQ_OQ)));
    }

    // Lanes still running after 60 halvings failed, as did those whose premium is not a number.
    void Store(std::span<double> volatilities, std::size_t first) const {
        const Lanes running = _mm256_andnot_pd(m_done, _mm256_castsi256_pd(_mm256_set1_epi64x(-1)));
        const Lanes failed = _mm256_or_pd(running, _mm256_cmp_pd(m_atLow, m_atLow, _CMP_UNORD_Q));
        _mm256_storeu_pd(&volatilities[first], _mm256_blendv_pd(m_root, Broadcast(__builtin_nan("")), failed));
    }

private:
    Lanes Objective(Lanes sigma) const {
        const Lanes sigmaRootT = sigma * m_sqrtT;
        const Lanes d1 = (m_logMoneyness + sigma * sigma * 0.5 * m_expiry) / sigmaRootT;
        const Lanes cdfPhiD1 = 0.5 * _ZGVdN4v_erfc(-(m_phi * d1) * kInverseSqrtTwo);
        const Lanes cdfPhiD2 = 0.5 * _ZGVdN4v_erfc(-(m_phi * (d1 - sigmaRootT)) * kInverseSqrtTwo);
        return m_scale * (m_phi * (m_forward * cdfPhiD1 - m_strike * cdfPhiD2)) - m_scaledTarget;
    }

    Lanes m_phi, m_strike, m_forward, m_expiry, m_sqrtT, m_logMoneyness, m_scale, m_scaledTarget;
    Lanes m_atLow, m_root, m_step, m_done;
};

}  // namespace

bool SolveEightRows(const VanillaBookInputs& book, std::span<const double> premiums,
                    std::span<double> volatilities, double volatilityLimit, std::size_t first) {
    // Two groups in flight: each halving waits on its own last result, so interleaving two
    // independent groups keeps the processor busy while one waits.
    LaneBisection groups[2];
    const double low = 1.1 * volatilityLimit;
    if (!groups[0].Start(book, premiums, low, first) || !groups[1].Start(book, premiums, low, first + 4))
        return false;
    for (int halving = 0; halving < 60 && !(groups[0].Done() && groups[1].Done()); ++halving) {
        groups[0].Halve();
        groups[1].Halve();
    }
    groups[0].Store(volatilities, first);
    groups[1].Store(volatilities, first + 4);
    return true;
}

}  // namespace zep::detail

#else

namespace zep::detail {

bool VanillaBookLanesAvailable() { return false; }

bool PriceFourRows(const VanillaBookInputs&, std::span<const double>, std::span<double>,
                   std::span<double>, std::span<double>, std::span<double>, std::span<double>,
                   std::size_t) {
    return false;
}

bool SolveEightRows(const VanillaBookInputs&, std::span<const double>, std::span<double>, double,
                    std::size_t) {
    return false;
}

}  // namespace zep::detail

#endif
