"""Prices a EUR/USD 6M 1.10 down-and-out call (barrier 1.02) three ways, side by side: Black-Scholes
at the at-the-money volatility, Vanna-Volga on the 25-delta smile, and finite differences; then
its knock-in twin and the digitals at the same strike."""
import zep

spot, strike, barrier = 1.08, 1.10, 1.02
rd, rf = 0.035, 0.02
atm, rr25, bf25 = 0.09, -0.010, 0.003  # the 6M quotes: ATM, 25-delta risk reversal and butterfly
trade, expiry, delivery = zep.Date("2024-01-15"), zep.Date("2024-07-15"), zep.Date("2024-07-17")
act365 = zep.DayCounter(zep.stringToConvention("act/365"))
t, td = act365.YearFraction(trade, expiry), act365.YearFraction(trade, delivery)
call, down_out, down_in = 0, zep.BarrierType_DOWN_AND_OUT, zep.BarrierType_DOWN_AND_IN

print(f"EUR/USD {strike} call, down-and-out at {barrier}, expiry {expiry} ({t:.4f}y), delivery {delivery}")
print(f"  spot {spot}  rd {rd:.2%}  rf {rf:.2%}  ATM {atm:.2%}  RR25 {rr25:+.2%}  BF25 {bf25:+.2%}")

closed_form = zep.EuropeanBarrierBS(call, down_out, strike, barrier, atm, t, td, rd, rf, spot)
vanna_volga = zep.EuropeanBarrierVV_Fisher(spot, rd, rf, atm, t, td, rr25, bf25, strike, call, down_out, barrier,
                                           0, False)
grid = zep.FdmBarrierEngine(call, down_out, strike, barrier, atm, t, td, rd, rf, spot, 400, 400)
print("\n  Knock-out, per unit of EUR (USD pips in brackets):")
print(f"    Black-Scholes closed form   {closed_form.Price():.6f}  ({closed_form.Price() * 1e4:7.2f})")
print(f"    Finite differences 400x400  {grid.Price():.6f}  ({grid.Price() * 1e4:7.2f})")
print(f"    Vanna-Volga on the smile    {vanna_volga.Price():.6f}  ({vanna_volga.PriceInPips():7.2f})"
      f"   survival probability {vanna_volga.SurvivalProbability():.4f}")

knock_in = zep.EuropeanBarrierVV_Fisher(spot, rd, rf, atm, t, td, rr25, bf25, strike, call, down_in, barrier,
                                        0, False)
print(f"  Knock-in by Vanna-Volga (smile vanilla minus knock-out): {knock_in.Price():.6f}")

cash = zep.DigitalOptionBS(0, strike, atm, t, td, rd, rf, spot)
smile_cash = zep.DigitalOptionVV(spot, rd, rf, atm, t, td, rr25, bf25, strike, 0, 0, False)
print(f"\n  Cash-or-nothing call at {strike}: Black-Scholes {cash.Price():.6f}, on the smile {smile_cash.Price():.6f}"
      f" (smile vol {smile_cash.StrikeVolatility():.4%}, slope {smile_cash.SmileSlope():+.4f} per unit of strike)")
