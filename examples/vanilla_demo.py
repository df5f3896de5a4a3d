"""Prices a booked EUR/USD call from date texts and flat curves and prints its value and Greeks."""
import zep

REFERENCE, EXPIRY, DELIVERY = "2024-01-15", "2024-07-15", "2024-07-17"
ACT365 = 1  # Act365Fixed


def flat_curve(rate: float) -> zep.YieldCurve:
    return zep.YieldCurve.FromZeroRates(REFERENCE, ["2025-01-15", "2029-01-15"], [rate, rate],
                                        zep.Continuous, ACT365)


# Bought 10 million EUR of a 1.10 call on USD 3.5% / EUR 2% curves, spot 1.08, volatility 9%.
option = zep.MVanillaOption(1, 0, 10e6, 1.10, 1.08, REFERENCE, EXPIRY, DELIVERY, DELIVERY,
                            flat_curve(0.035), flat_curve(0.02), 0.09)
print(f"EUR/USD 1.10 call, expiry {option.GetExpiryDate()}, delivery {option.GetDeliveryDate()}")
print(f"  years to expiry {option.GetTimeToExpiry():.6f}, to delivery {option.GetTimeToDelivery():.6f}")
print(f"  rd {option.GetAccRate():.4%}  rf {option.GetUndRate():.4%}  forward {option.GetForward():.6f}")
print(f"  price per EUR   {option.Price():.6f} USD")
print(f"  PV              {option.PV():,.2f} USD")
for name, value in [("delta (spot)", option.Delta(True)), ("delta (prem-adj)", option.Delta(False)),
                    ("gamma", option.Gamma()), ("vega", option.Vega()), ("theta / day", option.Theta()),
                    ("rho", option.Rho()), ("phi", option.Phi()), ("vanna", option.Vanna()),
                    ("volga", option.Volga())]:
    print(f"  {name:<16} {value: .6f}")
print(f"  vega by bumping {option.DeltaPrice('spot_Volatility', 1e-4): .6f}")
print(f"  25-delta call strike {option.StrikeFromQuote('call', '25D'):.6f}")
