"""Volatility models and engines on the EUR/USD market: Heston calibrated to the volatility
surface (parameters and the fit error per quote), an American put by finite differences,
Barone-Adesi-Whaley and the Leisen-Reimer tree, and an arithmetic Asian call by the
Turnbull-Wakeman and Levy approximations and by Monte Carlo; last, the calibrated Heston model
in the scripted Monte Carlo."""

import zep
from eurusd_market import REFERENCE, RD, RF, SPOT, surface as eurusd_surface

surface = eurusd_surface()
EXPIRIES = (1 / 12, 2 / 12, 0.25, 0.5, 0.75, 1.0, 1.25, 1.5, 1.75, 2.0)
model, report = zep.CalibrateHeston(surface, SPOT, RD, RF, start="direct", expiries=EXPIRIES)
print("Heston calibrated to the EUR/USD surface (10 expiries x 5 strikes, LM from a DIRECT start)")
print(f"  v0 {model.InitialVariance():.5f}  kappa {model.MeanReversion():.4f}  theta {model.LongRunVariance():.5f}"
      f"  sigma {model.VolOfVariance():.4f}  rho {model.Correlation():+.4f}")
print(f"  Feller condition 2 kappa theta >= sigma^2: {'satisfied' if report.feller_satisfied else 'violated'};"
      f" rmse {report.rmse * 1e4:.1f} bp of volatility, {report.evaluations} evaluations")
print(f"  {'converged' if report.converged else report.message}")
rows = report.quotes.to_dict("records") if hasattr(report.quotes, "to_dict") else report.quotes
print("  fit error in bp of volatility at strikes F exp(z atm sqrt T), z = -1.5, -0.75, 0, 0.75, 1.5:")
for first in range(0, len(rows), 5):
    errors = "".join(f"{row['error'] * 1e4:+8.1f}" for row in rows[first:first + 5])
    print(f"  {rows[first]['expiry']:5.2f}y  ATM {rows[first + 2]['market_vol']:7.3%} {errors}")

t = 1.0
atm = surface.GetVolatility(t, SPOT)
put = zep.AmericanOption(1, SPOT, atm, t, RD, RF, SPOT)
print(f"\nAmerican EUR put, strike {SPOT} (at the money), 1 year, volatility {atm:.2%}")
for name, engine in (("Finite differences 200x200", "fd"), ("Barone-Adesi-Whaley", "baw"),
                     ("Bjerksund-Stensland (2002)", "bjerksund-stensland"),
                     ("Leisen-Reimer tree, 801 steps", "binomial")):
    steps = 801 if engine == "binomial" else 200
    print(f"  {name:<31}{put.Price(engine, 200, steps) * 1e4:9.2f} pips")
print(f"  European (Black-Scholes)       {put.EuropeanPrice() * 1e4:9.2f} pips")

fixings = [month / 12.0 for month in range(1, 13)]
asian = zep.AsianOption(0, SPOT, atm, fixings, RD, RF, SPOT)
estimate = asian.MonteCarlo(200000)
print(f"\nArithmetic Asian EUR call, strike {SPOT}, 12 monthly fixings over 1 year")
print(f"  Turnbull-Wakeman               {asian.Price('tw') * 1e4:9.2f} pips")
print(f"  Levy (continuous average)      {asian.Price('levy') * 1e4:9.2f} pips")
print(f"  Monte Carlo, 200,000 paths     {estimate.price * 1e4:9.2f} pips"
      f" (standard error {estimate.standardError * 1e4:.2f}, geometric control variate)")
print(f"  Heston FFT vanilla at the same strike: "
      f"{model.FftPrices(0, [SPOT], t, t, RD, RF, SPOT)[0] * 1e4:.2f} pips;"
      f" Black-Scholes {zep.BSVanilla(0, SPOT, atm, t, t, RD, RF, SPOT).Price() * 1e4:.2f}")

# The calibrated model read by the scripted Monte Carlo (Heston by the quadratic-exponential
# scheme): a one-year EUR put at 95% of the spot against the surface's own price.
expiry_date = "2025-01-14"  # 365 days after the reference date
strike = round(SPOT * 0.95, 4)
script = zep.MXScriptStructure(REFERENCE, SPOT, 0.0, RD, RF, 3, model.ScriptParameters(), [expiry_date],
                               [f"P PAYS MAX({strike} - SPOT(), 0)"], 100000, 7, 365.0, False, 0.0, "", False, 1.0)
market = zep.BSVanilla(1, strike, surface.GetVolatility(t, strike), t, t, RD, RF, SPOT).Price()
print(f"\nEUR put, strike {strike}, 1 year, under the calibrated Heston by Monte Carlo (100,000 paths):"
      f" {script.Price() * 1e4:.2f} pips (standard error {script.PriceStandardError() * 1e4:.2f});"
      f" the surface's own price {market * 1e4:.2f}")
