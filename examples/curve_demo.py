"""Bootstraps a EUR discount curve from deposit, FRA and swap quotes (TARGET, spot T+2, deposits
Act/360, annual 30/360 fixed legs, linear zero rates) and prints each pillar's zero rate and
discount factor; then an ESTR curve from overnight-index swaps, a 6M projection curve discounted on
it and a credit curve from CDS spreads, side by side at a few dates."""
import zep

QUOTES = [("DEPOSIT", "1M", 0.0350), ("DEPOSIT", "3M", 0.0360), ("DEPOSIT", "6M", 0.0365), ("FRA", "6x12", 0.0340),
          ("SWAP", "2Y", 0.0320), ("SWAP", "3Y", 0.0305), ("SWAP", "5Y", 0.0295), ("SWAP", "7Y", 0.0292),
          ("SWAP", "10Y", 0.0295), ("SWAP", "15Y", 0.0300), ("SWAP", "20Y", 0.0298), ("SWAP", "30Y", 0.0285)]

curve = zep.BootstrapYieldCurve("2024-01-15", QUOTES)
act365 = zep.DayCounter(zep.Act365Fixed)
print("EUR curve bootstrapped on 15/01/2024 from", len(QUOTES), "quotes")
print(f"  {'quote':<14}{'rate':>8}  {'pillar':>10}  {'zero (cont.)':>12}  {'discount':>10}")
spot = zep.Date("2024-01-17")
calendar = zep.Calendar()
for instrument, tenor, rate in QUOTES:
    end = tenor.split("x")[1] + "M" if instrument == "FRA" else tenor
    pillar = calendar.Adjust(spot + zep.Period(end), zep.ModifiedFollowing, "TARGET")
    zero = curve.ZeroRate(pillar, zep.Act365Fixed, True, zep.Continuous)
    print(f"  {instrument + ' ' + tenor:<14}{rate:>8.4%}  {pillar!s:>10}  {zero:>12.6%}  {curve.DiscountFactor(pillar):>10.6f}")

# Two curves: an ESTR curve from overnight-index swaps discounts, a 6M curve projects the
# swaps' floating legs; then a credit curve from CDS spreads discounted on the ESTR curve.
ESTR = [zep.OisQuote("1M", 0.0389), zep.OisQuote("6M", 0.0375), zep.OisQuote("1Y", 0.0355), zep.OisQuote("2Y", 0.0320),
        zep.OisQuote("5Y", 0.0290), zep.OisQuote("10Y", 0.0285), zep.OisQuote("30Y", 0.0270)]
EURIBOR6M = [zep.DepositQuote("6M", 0.0395), zep.SwapQuote("2Y", 0.0335), zep.SwapQuote("5Y", 0.0305),
             zep.SwapQuote("10Y", 0.0300), zep.SwapQuote("30Y", 0.0285)]
estr = zep.BootstrapYieldCurve("2024-01-15", ESTR)
euribor = zep.BootstrapYieldCurve("2024-01-15", EURIBOR6M, discountCurve=estr)
credit = zep.CreditCurve("2024-01-15", ["1Y", "3Y", "5Y", "10Y"], [0.006, 0.009, 0.011, 0.0125], 0.4, estr)
print("ESTR discounting, 6M projection, a CDS curve at 40% recovery")
print(f"  {'date':>10}  {'ESTR DF':>9}  {'6M DF':>9}  {'survival':>9}")
for date in ("17/01/2025", "17/01/2029", "17/01/2034", "17/01/2054"):
    print(f"  {date:>10}  {estr.DiscountFactor(date):>9.6f}  {euribor.DiscountFactor(date):>9.6f}"
          f"  {credit.SurvivalProbability(date):>9.6f}")
