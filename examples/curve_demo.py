"""Bootstraps a EUR discount curve from deposit, FRA and swap quotes (TARGET, spot T+2, deposits
Act/360, annual 30/360 fixed legs, linear zero rates) and prints each pillar's zero rate and
discount factor, then the quotes repriced on the curve."""
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
