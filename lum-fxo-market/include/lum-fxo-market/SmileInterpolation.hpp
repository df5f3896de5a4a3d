// How a volatility smile is drawn through the quoted pillars of one expiry: the mode codes a
// surface is built with and their names as desks and files write them.
#pragma once

#include <string>

namespace zep {

// Codes 5 to 9 are not assigned. The formulas of each mode are written in lum-fxo-market/SMILES.md.
enum SmileInterpolation : int {
    SmileLinear = 0,
    SmileSVI = 1,
    SmileCubicSpline = 2,
    SmileVannaVolga = 3,
    SmileSABR = 4,
    SmileVarianceOnLogMoneyness = 10,
    SmileOriginalLum = 11,
    SmileForwardDeltaNaturalSpline = 12,
    SmileModifiedLum = 13,
    SmileForwardDeltaImplicitSpline = 14,
    SmileStrikeNaturalSpline = 15,
    SmileInvertedSurfaceLogMoneyness = 16,
    SmileInvertedSurface = 17,
    SmileStrikeExtendedSpline = 18,
    SmileVarianceExtendedSpline = 19,
    SmileMurexLogMoneyness = 20,
};

// "LINEAR", "SVI", ...; an unknown code fails "Extrapolation method is an invalid enumeration: "
// and the code (the wording of the extrapolation enumeration, kept as files expect it).
std::string SmileInterpolationToString(int code);
// Case-insensitive name (surrounding blanks ignored) or the decimal code as text.
SmileInterpolation stringToSmileInterpolation(const std::string& text);

}  // namespace zep
