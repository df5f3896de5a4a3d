#include "VanillaBookLanes.hpp"

#if defined(ZEP_HAVE_VECTOR_MATH) && defined(__x86_64__)

#pragma GCC target("avx2,fma")
#include "AvxLanes.hpp"

#include "lum-closed-form/BSVanilla.hpp"
#include "lum-closed-form/NormalDistribution.hpp"

namespace zep::detail {

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
    const Lanes d1 = (Log(forward / strike) + sigma * sigma * 0.5 * expiry) / sigmaRootT;
    const Lanes d2 = d1 - sigmaRootT;
    const Lanes cdfPhiD1 = 0.5 * Erfc(-(phi * d1) * kInverseSqrtTwo);
    const Lanes cdfPhiD2 = 0.5 * Erfc(-(phi * d2) * kInverseSqrtTwo);
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

}  // namespace zep::detail

#else

namespace zep::detail {

bool VanillaBookLanesAvailable() { return false; }

bool PriceFourRows(const VanillaBookInputs&, std::span<const double>, std::span<double>,
                   std::span<double>, std::span<double>, std::span<double>, std::span<double>,
                   std::size_t) {
    return false;
}

}  // namespace zep::detail

#endif
