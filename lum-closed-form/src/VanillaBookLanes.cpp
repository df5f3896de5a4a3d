#include "VanillaBookLanes.hpp"

#if defined(ZEP_HAVE_VECTOR_MATH) && defined(__x86_64__)

#pragma GCC target("avx2,fma")
#include "AvxLanes.hpp"

#include <limits>

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
        AllLanes(_mm256_cmp_pd(strike, Broadcast(0.0), _CMP_GT_OQ)) &&
        AllLanes(_mm256_cmp_pd(expiry, Broadcast(BSVanilla::kExpiryThreshold), _CMP_GE_OQ)) &&
        AllFinite(strike) && AllFinite(sigma) && AllFinite(expiry) && AllFinite(delivery) &&
        AllFinite(rd) && AllFinite(rf) && AllFinite(spot);
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
    // A forward or a density below the normal range keeps few digits, and the vector exp need
    // not keep such results where the scalar one does (a density of 1e-311 times a forward of
    // 1e134 is a vega of 1e-165, not 0): those rows, far in a tail, take the engine's path.
    const Lanes smallestNormal = Broadcast(std::numeric_limits<double>::min());
    if (!AllLanes(_mm256_cmp_pd(forward, smallestNormal, _CMP_GE_OQ)) ||
        !AllLanes(_mm256_cmp_pd(pdfD1, smallestNormal, _CMP_GE_OQ)))
        return false;

    const Lanes price = phi * domesticDiscount * (forward * cdfPhiD1 - strike * cdfPhiD2);
    const Lanes delta = foreignDiscount * phi * cdfPhiD1;
    const Lanes gamma = foreignDiscount * pdfD1 * foreignDiscount / (domesticDiscount * forward * sigmaRootT);
    const Lanes vega = domesticDiscount * forward * pdfD1 * sqrtT;
    const Lanes foreignToExpiry = Exp(-rf * expiry);
    const Lanes domesticToExpiry = Exp(-rd * expiry);
    const Lanes thetaPerYear = -spot * foreignToExpiry * pdfD1 * sigma / (2.0 * sqrtT) +
                               phi * rf * spot * foreignToExpiry * cdfPhiD1 -
                               phi * rd * strike * domesticToExpiry * cdfPhiD2;
    // Rows at the edges of the double range (a forward or a gamma beyond it, a vanished density
    // times an infinite factor) take the engine's path, which orders its products for them.
    if (!(AllFinite(price) && AllFinite(delta) && AllFinite(gamma) && AllFinite(vega) && AllFinite(thetaPerYear)))
        return false;
    Store(prices, first, price);
    Store(deltas, first, delta);
    Store(gammas, first, gamma);
    Store(vegas, first, vega);
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
