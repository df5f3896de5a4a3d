"""Builds a EUR/USD volatility surface from a desk's quotes (ATM, 25- and 10-delta risk reversals
and butterflies), prints each tenor's pillar strikes and volatilities, and prices the booked
1.10 call of vanilla_demo.py on the smile instead of at a flat 9%."""
import zep
from eurusd_market import REFERENCE, SPOT, TENORS, RD, RF, flat_curve, surface as eurusd_surface

EXPIRY, DELIVERY = "2024-07-15", "2024-07-17"
usd, eur = flat_curve(RD), flat_curve(RF)
surface = eurusd_surface()

print(f"EUR/USD volatility surface on {REFERENCE}, spot {SPOT}, smile CUBICSPLINE")
print(f"  {'tenor':<6}" + "".join(f"{name:>17}" for name in ("10P", "25P", "ATM", "25C", "10C")))
library = surface.Surface()
for i, tenor in enumerate(TENORS):
    cells = "".join(f"   {k:.5f} {v:6.2%}" for k, v in zip(library.PillarStrikes(i), library.PillarVolatilities(i)))
    print(f"  {tenor:<6}{cells}")

option = zep.MVanillaOption(1, 0, 10e6, 1.10, SPOT, REFERENCE, EXPIRY, DELIVERY, DELIVERY, usd, eur, surface)
flat = zep.MVanillaOption(1, 0, 10e6, 1.10, SPOT, REFERENCE, EXPIRY, DELIVERY, DELIVERY, usd, eur, 0.09)
print(f"EUR/USD 1.10 call, expiry {option.GetExpiryDate()}: smile volatility {option.GetVol():.4%}")
print(f"  PV on the smile   {option.PV():,.2f} USD   (flat 9%: {flat.PV():,.2f} USD)")
print(f"  delta (spot)      {option.Delta(True): .6f}")
print(f"  vega              {option.Vega(): .6f}")
print(f"  25-delta call strike on the smile {surface.GetStrike(EXPIRY, '25C'):.6f}")
