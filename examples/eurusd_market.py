"""The EUR/USD market the demos price on: spot, flat USD and EUR curves and a volatility surface
from a desk's quotes (ATM, 25- and 10-delta risk reversals and butterflies by tenor)."""
import zep

REFERENCE, SPOT_DATE = "2024-01-15", "2024-01-17"
SPOT = 1.08
RD, RF = 0.035, 0.02
ACT365 = 1  # Act365Fixed

TENORS = ["1W", "1M", "2M", "3M", "6M", "9M", "1Y", "2Y"]
LABELS = ["ATM", "25RR", "25BF", "10RR", "10BF"]
QUOTES = [[0.0690, -0.0020, 0.0017, -0.0035, 0.0058],
          [0.0725, -0.0028, 0.0019, -0.0050, 0.0065],
          [0.0745, -0.0033, 0.0020, -0.0060, 0.0070],
          [0.0760, -0.0037, 0.0021, -0.0067, 0.0074],
          [0.0790, -0.0043, 0.0023, -0.0079, 0.0081],
          [0.0805, -0.0047, 0.0025, -0.0085, 0.0086],
          [0.0815, -0.0050, 0.0026, -0.0090, 0.0090],
          [0.0835, -0.0053, 0.0027, -0.0096, 0.0095]]


def flat_curve(rate: float) -> zep.YieldCurve:
    return zep.YieldCurve.FromZeroRates(REFERENCE, ["2025-01-15", "2029-01-15"], [rate, rate],
                                        zep.Continuous, ACT365)


def surface() -> zep.MFXVolSurface:
    # EUR/USD is quoted in spot delta to one year and forward delta beyond, premium in USD (no
    # premium adjustment), at the money as the delta-neutral straddle.
    reference = zep.Date(REFERENCE)
    conventions = zep.FXVolConventions([reference + zep.Period("1Y"), reference + zep.Period("2Y")],
                                       [zep.SpotDelta, zep.ForwardDelta],
                                       [zep.PremiumExcluded, zep.PremiumExcluded],
                                       [zep.ATMDeltaNeutral, zep.ATMDeltaNeutral])
    return zep.MFXVolSurface.FromTenors(REFERENCE, SPOT_DATE, SPOT, TENORS, LABELS, QUOTES, flat_curve(RD),
                                        flat_curve(RF), conventions, zep.SmileCubicSpline)
