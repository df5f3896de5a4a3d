"""Builds a EUR/USD volatility surface from a desk's quotes (ATM, 25- and 10-delta risk reversals
and butterflies), prints each tenor's pillar strikes and volatilities, and prices the booked
1.10 call of vanilla_demo.py on the smile instead of at a flat 9%."""
import zep

REFERENCE, SPOT_DATE, EXPIRY, DELIVERY = "2024-01-15", "2024-01-17", "2024-07-15", "2024-07-17"
SPOT = 1.08
ACT365 = 1  # Act365Fixed


def flat_curve(rate: float) -> zep.YieldCurve:
    return zep.YieldCurve.FromZeroRates(REFERENCE, ["2025-01-15", "2029-01-15"], [rate, rate],
                                        zep.Continuous, ACT365)


tenors = ["1W", "1M", "2M", "3M", "6M", "9M", "1Y", "2Y"]
labels = ["ATM", "25RR", "25BF", "10RR", "10BF"]
quotes = [[0.0690, -0.0020, 0.0017, -0.0035, 0.0058],
          [0.0725, -0.0028, 0.0019, -0.0050, 0.0065],
          [0.0745, -0.0033, 0.0020, -0.0060, 0.0070],
          [0.0760, -0.0037, 0.0021, -0.0067, 0.0074],
          [0.0790, -0.0043, 0.0023, -0.0079, 0.0081],
          [0.0805, -0.0047, 0.0025, -0.0085, 0.0086],
          [0.0815, -0.0050, 0.0026, -0.0090, 0.0090],
          [0.0835, -0.0053, 0.0027, -0.0096, 0.0095]]
# EUR/USD is quoted in spot delta to one year and forward delta beyond, premium in USD (no
# premium adjustment), at the money as the delta-neutral straddle.
reference = zep.Date(REFERENCE)
conventions = zep.FXVolConventions([reference + zep.Period("1Y"), reference + zep.Period("2Y")],
                                   [zep.SpotDelta, zep.ForwardDelta],
                                   [zep.PremiumExcluded, zep.PremiumExcluded],
                                   [zep.ATMDeltaNeutral, zep.ATMDeltaNeutral])
usd, eur = flat_curve(0.035), flat_curve(0.02)
surface = zep.MFXVolSurface.FromTenors(REFERENCE, SPOT_DATE, SPOT, tenors, labels, quotes, usd, eur,
                                       conventions, zep.SmileCubicSpline)

print(f"EUR/USD volatility surface on {REFERENCE}, spot {SPOT}, smile CUBICSPLINE")
print(f"  {'tenor':<6}" + "".join(f"{name:>17}" for name in ("10P", "25P", "ATM", "25C", "10C")))
library = surface.Surface()
for i, tenor in enumerate(tenors):
    cells = "".join(f"   {k:.5f} {v:6.2%}" for k, v in zip(library.PillarStrikes(i), library.PillarVolatilities(i)))
    print(f"  {tenor:<6}{cells}")

option = zep.MVanillaOption(1, 0, 10e6, 1.10, SPOT, REFERENCE, EXPIRY, DELIVERY, DELIVERY, usd, eur, surface)
flat = zep.MVanillaOption(1, 0, 10e6, 1.10, SPOT, REFERENCE, EXPIRY, DELIVERY, DELIVERY, usd, eur, 0.09)
print(f"EUR/USD 1.10 call, expiry {option.GetExpiryDate()}: smile volatility {option.GetVol():.4%}")
print(f"  PV on the smile   {option.PV():,.2f} USD   (flat 9%: {flat.PV():,.2f} USD)")
print(f"  delta (spot)      {option.Delta(True): .6f}")
print(f"  vega              {option.Vega(): .6f}")
print(f"  25-delta call strike on the smile {surface.GetStrike(EXPIRY, '25C'):.6f}")
