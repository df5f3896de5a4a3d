"""Writes the example risk run beside this file: market.yaml (EUR, USD and GBP curves, EURUSD and
GBPUSD spots and volatilities on 2024-01-15), trades.csv (1 000 trades over five desks: bonds,
swaps, FRAs, floating-rate notes, CDS, FX forwards, FX swaps, NDFs, vanilla, barrier and digital
options), portfolio.yaml (the trade list) and history.csv (two
years of synthetic daily levels: curve levels moving by a few basis points a day, spots by about
half a percent, volatilities mean-reverting around their level, credit spreads by a few percent of
themselves). Seeded: the same files each run.

    python examples/risk/make_example.py
    python -m zep.risk examples/risk/portfolio.yaml examples/risk/market.yaml examples/risk/history.csv
"""
import csv
import datetime
import os

import numpy

HERE = os.path.dirname(os.path.abspath(__file__))
REFERENCE = datetime.date(2024, 1, 15)
TENORS = ["1M", "6M", "1Y", "2Y", "3Y", "5Y", "7Y", "10Y", "15Y", "20Y", "30Y"]
CURVES = {"EUR": [0.038, 0.037, 0.034, 0.029, 0.027, 0.025, 0.025, 0.026, 0.027, 0.027, 0.026],
          "USD": [0.053, 0.052, 0.048, 0.043, 0.041, 0.039, 0.039, 0.040, 0.041, 0.042, 0.041],
          "GBP": [0.052, 0.051, 0.047, 0.041, 0.039, 0.037, 0.037, 0.038, 0.039, 0.040, 0.040]}
SPOTS = {"EURUSD": 1.0950, "GBPUSD": 1.2720}
VOLS = {"EURUSD": 0.072, "GBPUSD": 0.078}
CREDIT_TENORS = ["1Y", "3Y", "5Y", "7Y", "10Y"]
CREDIT = {"ACME": [0.0045, 0.0065, 0.0085, 0.0098, 0.0110], "GLOBEX": [0.0120, 0.0165, 0.0200, 0.0220, 0.0235]}
DAYS = 520  # two years of business days
COLUMNS = ["id", "type", "quantity", "desk", "book", "currency", "counterparty", "side", "notional", "coupon", "rate",
           "far_rate", "start", "end", "curve", "issuer", "pair", "call_put", "strike", "expiry", "barrier_type", "barrier"]


def write_market():
    lines = [f"reference_date: '{REFERENCE.isoformat()}'", "curves:"]
    for label, rates in CURVES.items():
        lines.append(f"  {label}: {{tenors: [{', '.join(TENORS)}], zero_rates: [{', '.join(map(str, rates))}]}}")
    lines.append("spots: {" + ", ".join(f"{p}: {s}" for p, s in SPOTS.items()) + "}")
    lines.append("volatilities: {" + ", ".join(f"{p}: {v}" for p, v in VOLS.items()) + "}")
    lines.append("credit_curves:")
    for issuer, spreads in CREDIT.items():
        lines.append(f"  {issuer}: {{tenors: [{', '.join(CREDIT_TENORS)}], spreads: [{', '.join(map(str, spreads))}], "
                     "recovery: 0.4, discount: USD}")
    with open(os.path.join(HERE, "market.yaml"), "w") as market:
        market.write("\n".join(lines) + "\n")


def later(years):
    return (REFERENCE + datetime.timedelta(days=round(365.25 * years))).isoformat()


# Trades per family in every 40: the book's mix.
MIX = [("Bond", 9), ("CDS", 1), ("VanillaSwap", 6), ("FRA", 2), ("FloatingRateNote", 2), ("FXForward", 6), ("FXSwap", 2),
       ("NDF", 2), ("VanillaOption", 6), ("BarrierOption", 3), ("DigitalOption", 1)]
FAMILIES = [family for family, count in MIX for _ in range(count)]


def rate_trade(kind, row, rng, i):
    ccy = ["EUR", "USD", "GBP"][i % 3]
    row.update(type=kind, desk="rates", currency=ccy, curve=ccy)
    notional = int(rng.integers(1, 20)) * 1_000_000
    if kind == "Bond":
        row.update(book=f"{ccy}-govt", side="", notional=notional, coupon=round(float(rng.uniform(0.01, 0.05)), 4),
                   start=later(-1 + rng.uniform(0, 0.9)), end=later(int(rng.integers(2, 30))))
    elif kind == "VanillaSwap":
        row.update(book=f"{ccy}-swaps", notional=5 * notional, rate=round(CURVES[ccy][6] + rng.normal(0, 0.004), 4),
                   start=later(0.01), end=later(int(rng.integers(2, 20))))
    elif kind == "CDS":
        issuer = list(CREDIT)[(i // 40) % len(CREDIT)]
        row.update(desk="credit", book=issuer, currency="USD", curve="USD", issuer=issuer, notional=notional,
                   coupon=0.01 if CREDIT[issuer][2] < 0.015 else 0.05, start=REFERENCE.isoformat(),
                   end=later(int(rng.integers(3, 10))))
    elif kind == "FRA":
        start = float(rng.uniform(0.1, 1.5))
        row.update(book=f"{ccy}-money", notional=5 * notional, rate=round(CURVES[ccy][2] + rng.normal(0, 0.003), 4),
                   start=later(start), end=later(start + 0.25))
    else:  # floating-rate notes
        row.update(book=f"{ccy}-credit", side="", notional=notional, coupon=round(float(rng.uniform(0.002, 0.012)), 4),
                   start=later(0.01), end=later(int(rng.integers(2, 8))))


def fx_trade(kind, row, rng, i):
    pair = "EURUSD" if i % 3 else "GBPUSD"
    spot = SPOTS[pair]
    expiry = later(float(rng.uniform(0.1, 1.5)))
    delivery = (datetime.date.fromisoformat(expiry) + datetime.timedelta(days=2)).isoformat()
    row.update(type=kind, book=pair, currency="USD", pair=pair, notional=int(rng.integers(1, 50)) * 1_000_000)
    if kind == "FXForward":
        row.update(desk="fx-cash", rate=round(spot * (1 + rng.normal(0, 0.02)), 4), end=delivery)
    elif kind == "FXSwap":
        row.update(desk="fx-cash", rate=round(spot, 4), start=later(0.01),
                   far_rate=round(spot * (1 + rng.normal(0, 0.01)), 4), end=delivery)
    elif kind == "NDF":
        row.update(desk="fx-cash", rate=round(spot * (1 + rng.normal(0, 0.02)), 4), expiry=expiry, end=delivery)
    elif kind == "VanillaOption":
        row.update(desk="fx-options", call_put=int(rng.integers(0, 2)),
                   strike=round(spot * (1 + rng.normal(0, 0.04)), 4), expiry=expiry, end=delivery)
    elif kind == "DigitalOption":
        row.update(desk="fx-exotics", call_put=int(rng.integers(0, 2)), notional=row["notional"] // 10,
                   strike=round(spot * (1 + rng.normal(0, 0.03)), 4), expiry=expiry, end=delivery)
    else:  # barriers: down-and-out calls and up-and-out puts
        down = rng.uniform() < 0.5
        row.update(desk="fx-exotics", call_put=0 if down else 1, strike=round(spot * (1 + rng.normal(0, 0.02)), 4),
                   expiry=expiry, end=delivery, barrier_type=3 if down else 4,
                   barrier=round(spot * (0.92 if down else 1.08), 4))


def trades(rng):
    counterparties = ["ALPHA", "BRAVO", "CHARLIE", "DELTA", "ECHO"]
    rows = []
    for i in range(1000):
        row = {"id": f"T{i:04d}", "quantity": 1, "counterparty": counterparties[i % 5], "side": rng.choice([1, -1])}
        kind = FAMILIES[i % len(FAMILIES)]
        (rate_trade if kind in ("Bond", "CDS", "VanillaSwap", "FRA", "FloatingRateNote") else fx_trade)(kind, row, rng, i)
        rows.append(row)
    with open(os.path.join(HERE, "trades.csv"), "w", newline="") as file:
        writer = csv.DictWriter(file, COLUMNS)
        writer.writeheader()
        writer.writerows(rows)
    with open(os.path.join(HERE, "portfolio.yaml"), "w") as portfolio:
        portfolio.write("# The example book: its trades are the CSV list beside this file.\ncsv: trades.csv\n")


def history(rng):
    """Levels on each business day up to the reference date, oldest first."""
    days = []
    day = REFERENCE
    while len(days) < DAYS:
        if day.weekday() < 5:
            days.append(day)
        day -= datetime.timedelta(days=1)
    days.reverse()
    # Correlated daily moves: rates share a global factor, the two pairs a dollar factor.
    rates = {ccy: numpy.cumsum(0.00035 * rng.standard_normal(DAYS) + 0.0004 * g)
             for ccy, g in zip(CURVES, [rng.standard_normal(DAYS)] * 3)}
    dollar = rng.standard_normal(DAYS)
    spots = {p: s * numpy.exp(numpy.cumsum(0.0045 * (0.7 * dollar + 0.7 * rng.standard_normal(DAYS))))
             for p, s in SPOTS.items()}
    vols = {}
    for pair, level in VOLS.items():
        v = numpy.empty(DAYS)
        v[0] = level
        for t in range(1, DAYS):  # mean-reverting, never below two points
            v[t] = max(0.02, v[t - 1] + 0.03 * (level - v[t - 1]) + 0.0025 * rng.standard_normal())
        vols[pair] = v
    # Credit spreads wander by a couple of basis points a day, the riskier name more.
    credit = {issuer: numpy.cumsum(spreads[2] * 0.02 * rng.standard_normal(DAYS)) for issuer, spreads in CREDIT.items()}
    # The last row is today's market: levels end where market.yaml starts.
    with open(os.path.join(HERE, "history.csv"), "w", newline="") as file:
        writer = csv.writer(file)
        writer.writerow(["date"] + [f"curve:{c}" for c in CURVES] + [f"spot:{p}" for p in SPOTS]
                        + [f"vol:{p}" for p in VOLS] + [f"credit:{issuer}" for issuer in CREDIT])
        for t, day in enumerate(days):
            writer.writerow([day.isoformat()]
                            + [f"{CURVES[c][6] + rates[c][t] - rates[c][-1]:.6f}" for c in CURVES]
                            + [f"{SPOTS[p] * spots[p][t] / spots[p][-1]:.6f}" for p in SPOTS]
                            + [f"{VOLS[p] + vols[p][t] - vols[p][-1]:.6f}" for p in VOLS]
                            + [f"{CREDIT[c][2] + credit[c][t] - credit[c][-1]:.6f}" for c in CREDIT])


if __name__ == "__main__":
    generator = numpy.random.default_rng(20240115)
    write_market()
    trades(generator)
    history(generator)
