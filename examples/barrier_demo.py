"""Prices a EUR/USD 6M 1.10 down-and-out call (barrier 1.02) three ways, side by side: Black-Scholes
at the surface's volatility at the strike, Vanna-Volga on the surface's 25-delta smile, and finite
differences; then its knock-in twin and the cash digital at the same strike."""
import zep
from eurusd_market import REFERENCE, RD, RF, SPOT, surface as eurusd_surface

STRIKE, BARRIER = 1.10, 1.02
EXPIRY, DELIVERY = "2024-07-15", "2024-07-17"
CALL, DOWN_OUT, DOWN_IN = 0, zep.BarrierType_DOWN_AND_OUT, zep.BarrierType_DOWN_AND_IN

surface = eurusd_surface().Surface()


def booked(barrier_type: int) -> zep.VanillaBarriers:
    return zep.VanillaBarriers(1, CALL, 1e6, STRIKE, barrier_type, BARRIER, 0.0, SPOT, REFERENCE, EXPIRY, DELIVERY,
                               DELIVERY, DELIVERY, RD, RF, surface)


knock_out, knock_in = booked(DOWN_OUT), booked(DOWN_IN)
print(f"EUR/USD {STRIKE} call, down-and-out at {BARRIER}, expiry {EXPIRY}, delivery {DELIVERY}, EUR 1,000,000")
print(f"  spot {SPOT}  rd {RD:.2%}  rf {RF:.2%}  smile volatility at the strike "
      f"{surface.GetVolatility(zep.Date(EXPIRY), STRIKE):.4%}, ATM {surface.GetATMVol(zep.Date(EXPIRY)):.4%}")
print("\n  Knock-out PV in USD (price per EUR in pips):")
for name, method in (("Black-Scholes closed form", 0), ("Finite differences 400x400", 2),
                     ("Vanna-Volga on the surface", 1)):
    print(f"    {name:<28}{knock_out.PV(method):12,.2f}  ({knock_out.Price(method) * 1e4:7.2f})")
print(f"  Knock-in by Vanna-Volga (smile vanilla minus knock-out): {knock_in.PV(1):,.2f} USD")
print(f"  Vega of the knock-out (bump of 1 vol point on spot_Volatility): "
      f"{knock_out.DeltaPrice('spot_Volatility', 0.01) * 1e6 / 100:,.2f} USD per point")

t, td = knock_out.GetTimeToExpiry(), knock_out.GetTimeToDelivery()
smile_vol = surface.GetVolatility(zep.Date(EXPIRY), STRIKE)
cash = zep.DigitalOptionBS(0, STRIKE, smile_vol, t, td, RD, RF, SPOT)
print(f"\n  Cash-or-nothing call at {STRIKE}, per EUR: Black-Scholes at the smile volatility {cash.Price():.6f}")
