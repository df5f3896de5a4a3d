"""Prices three rate and FX instruments on bootstrapped curves and prints their cash flows: a
5-year EUR payer swap (annual 30/360 fixed against 6-month EURIBOR), a Bund-style 2.6% annual
fixed-rate bond, and a 1-year EUR/USD forward from spot and the EUR and USD curves; then rate and
credit derivatives: a 5-year cap, a 5y into 10y payer swaption under Black and Bachelier and on its SABR smile, and a
5-year CDS on a credit curve with its upfront at the standard 100 bp coupon."""
from typing import Any

import zep

EUR_QUOTES = [("DEPOSIT", "3M", 0.0360), ("DEPOSIT", "6M", 0.0365), ("FRA", "6x12", 0.0340), ("SWAP", "2Y", 0.0320),
              ("SWAP", "3Y", 0.0305), ("SWAP", "5Y", 0.0295), ("SWAP", "7Y", 0.0292), ("SWAP", "10Y", 0.0295),
              ("SWAP", "15Y", 0.0300)]
USD_QUOTES = [("DEPOSIT", "3M", 0.0530), ("DEPOSIT", "6M", 0.0520), ("SWAP", "2Y", 0.0460), ("SWAP", "5Y", 0.0410),
              ("SWAP", "10Y", 0.0400)]
TODAY, SPOT = "2024-01-15", "2024-01-17"

eur = zep.BootstrapYieldCurve(TODAY, EUR_QUOTES)
usd = zep.BootstrapYieldCurve(TODAY, USD_QUOTES, centres="NYC", fixedTenor="6M")


def show(table: Any) -> None:
    """The cash-flow table (a pandas DataFrame, or a NumPy structured array without pandas)."""
    print(f"    {'payment':<12}{'accrual':>9}{'notional':>15}{'rate':>10}{'amount':>15}{'DF':>10}{'PV':>15}")
    for i in range(len(table)):
        row = {name: table[name][i] for name in ("paymentDate", "accrualFraction", "notional", "rate", "amount",
                                                 "discountFactor", "presentValue")}
        print(f"    {str(row['paymentDate'])[:10]:<12}{row['accrualFraction']:>9.5f}{row['notional']:>15,.2f}"
              f"{row['rate']:>10.5%}{row['amount']:>15,.2f}{row['discountFactor']:>10.6f}{row['presentValue']:>15,.2f}")


swap = zep.MVanillaSwap(1, 10_000_000, 0.0300, SPOT, "2029-01-17", eur, index="EURIBOR6M")
print(swap.Describe())
print(f"  NPV {swap.NPV():,.2f} EUR   par rate {swap.ParRate():.6%}   fixed leg BPS {swap.FixedLegBPS():,.2f}")
show(swap.CashFlows())

print()
bund = zep.MBond(0.026, "2023-08-15", "2033-08-15", tenor="1Y", dayCounter="ActActICMA", discountCurve=eur)
clean = bund.PV() - bund.AccruedAmount(TODAY)
yield_ = bund.Yield(clean, TODAY)
print(bund.Describe())
print(f"  on the EUR curve: dirty {bund.PV():.6f}, accrued {bund.AccruedAmount(TODAY):.6f}, clean {clean:.6f}")
print(f"  yield {yield_:.6%}, Macaulay {bund.MacaulayDuration(yield_, TODAY):.4f}y, "
      f"modified {bund.ModifiedDuration(yield_, TODAY):.4f}, convexity {bund.Convexity(yield_, TODAY):.4f}, "
      f"Z-spread at 98.50: {bund.ZSpread(98.50, TODAY) * 1e4:.2f} bp")
show(bund.CashFlows())

print()
forward = zep.MFXForwardOutright(1, 5_000_000, 1.1000, "2025-01-17", 1.0950, SPOT, usd, eur)
print(forward.Describe())
print(f"  EUR/USD spot 1.0950, outright {forward.Outright():.6f}, NPV {forward.NPV():,.2f} USD")
show(forward.CashFlows())

print()
cap = zep.MCapFloor("CAP", 10_000_000, 0.0325, SPOT, "2029-01-17", eur, eur, 0.30)
print(cap.Describe())
print(f"  Black 30%: PV {cap.PV():,.2f} EUR over {len(cap.CapletPVs())} caplets")

swaption = zep.MSwaption("PAYER", 10_000_000, 0.0300, "2029-01-15", "2029-01-17", "2039-01-17", eur, eur, 0.25)
normal = zep.MSwaption("PAYER", 10_000_000, 0.0300, "2029-01-15", "2029-01-17", "2039-01-17", eur, eur, 0.0075,
                       "BACHELIER")
print(swaption.Describe())
print(f"  forward swap rate {swaption.ForwardRate():.6%}, annuity {swaption.Annuity():,.2f}")
print(f"  Black 25%: PV {swaption.PV():,.2f} EUR;  Bachelier 75 bp: PV {normal.PV():,.2f} EUR, "
      f"its Black volatility {swaption.ImpliedVolatility(normal.PV()):.4%}")
swap_rate = swaption.ForwardRate()
offsets = [-0.01, -0.005, 0.0, 0.005, 0.01, 0.02]
smile = zep.SwaptionSmile(swap_rate, 5.0, [swap_rate + d for d in offsets], [0.29, 0.265, 0.25, 0.242, 0.24, 0.245])
alpha, beta, rho, nu = smile.Parameters()
print(f"  SABR smile of the 5y into 10y slice: alpha {alpha:.5f}, beta {beta}, rho {rho:.4f}, nu {nu:.4f}, "
      f"fit error {smile.FitError() * 1e4:.2f} bp")
for offset in offsets:
    strike = swap_rate + offset
    on_smile = zep.MSwaption("PAYER", 10_000_000, strike, "2029-01-15", "2029-01-17", "2039-01-17", eur, eur,
                             smile.Volatility(strike))
    print(f"    strike {strike:.4%}: volatility {smile.Volatility(strike):.4%}, payer PV {on_smile.PV():,.2f} EUR")

# The same slice quoted in normal volatilities: each strike's Black price read back under
# Bachelier, and Hagan's normal expansion (beta 0, the normal SABR model) fitted to them.
normal_quotes = [zep.ForwardImpliedVolatility(True, swap_rate, swap_rate + d, 5.0,
                                              zep.ForwardOptionValue(True, swap_rate, swap_rate + d, 5.0,
                                                                     smile.Volatility(swap_rate + d)), "BACHELIER")
                 for d in offsets]
normal_smile = zep.SwaptionSmile(swap_rate, 5.0, [swap_rate + d for d in offsets], normal_quotes, 0.0, "BACHELIER")
print(f"  the slice in normal volatilities (normal SABR, beta 0): at the money "
      f"{normal_smile.Volatility(swap_rate) * 1e4:.2f} bp, fit error {normal_smile.FitError() * 1e4:.3f} bp")

strip = zep.MCapletVolatilityStrip("CAP", 0.0300, "2024-01-17", ["2025-01-17", "2026-01-17", "2029-01-17"],
                                   [0.31, 0.29, 0.26], eur, eur)
print("Caplet volatilities stripped from 1y, 2y and 5y caps at 31%, 29%, 26%: "
      + ", ".join(f"{v:.2%}" for v in dict.fromkeys(strip.CapletVolatilities())))

credit = zep.CreditCurve(TODAY, ["1Y", "3Y", "5Y", "7Y", "10Y"], [0.0060, 0.0090, 0.0110, 0.0120, 0.0125], 0.4, eur)
cds = zep.MCreditDefaultSwap("BUYER", 10_000_000, 0.0100, TODAY, "2029-01-15", credit, eur)
print(cds.Describe())
print(f"  par spread {cds.ParSpread() * 1e4:.2f} bp, upfront {cds.Upfront():.4%} of notional, PV {cds.PV():,.2f} EUR")
print(f"  risky PV01 {cds.RiskyPV01():,.2f}, CS01 {cds.CS01():,.2f}, "
      f"upfront at a quoted 150 bp {cds.UpfrontFromQuotedSpread(0.015):.4%}")
