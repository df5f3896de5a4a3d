"""A risk run from files: a portfolio, today's market and a history of market levels in, the
historical VaR report out.

    python -m zep.risk portfolio.yaml market.yaml history.csv [--confidence 0.99 ...]
                       [--tag desk] [--report-dir DIR]

prints the VaR and expected shortfall of the portfolio at each confidence level, the trades that
failed to build and the groups that drove the VaR, and writes <report-dir>/risk_report.md with a
P&L histogram and the top contributors as inline SVG.

Inputs
- market (YAML or JSON): reference_date; curves, each {tenors or dates, zero_rates} (continuous,
  Act/365F) by label; spots by currency pair (units of the second currency per unit of the
  first); volatilities by pair; credit_curves, each {tenors, spreads, recovery, discount (a curve
  label)} by issuer.
- portfolio: a CSV trade list (one trade a row), a YAML/JSON file listing trades (key "trades",
  a list of rows as the CSV has them; "csv": the path of a trade list beside it; "products": a
  product definition or a directory of them, priced in the market file "product_market"), a
  product definition (key "type": a structured product of the script engine, named after its
  file, scenarios shocking its spot and volatility by that name) or a directory of them.
- history (CSV): a "date" column, then one column per factor named "curve:<label>" (the curve's
  zero-rate level, decimal; absolute moves), "curve:<label>:<pillar>" (one pillar), "spot:<pair>"
  (relative moves), "vol:<pair>" (decimal; absolute moves) or "credit:<issuer>" (the level of its
  par spreads, decimal; absolute moves); one row a day, oldest first.

Trade rows: id, type, quantity and the tags desk, book, currency, counterparty, then the terms
of their type (dates as ISO texts; pair names an FX pair of the market, its quote currency's
curve discounting):
- Bond: coupon, start, end, curve, notional (the face amount)
- VanillaSwap: side (+1 receive fixed, -1 pay fixed), notional, rate, start, end, curve
- FRA: side (+1 pay the contract rate), notional, rate, start, end, curve
- CDS: side (+1 buy protection), notional, coupon, start, end, issuer, curve (discount)
- FloatingRateNote: coupon (the quoted margin), start, end, curve (discount and projection), notional
- FXForward: side (+1 buy the base currency), notional, rate, end (delivery), pair
- FXSwap: side (+1 buy the base at the near date), notional, rate and start (near), far_rate and end
- NDF: side, notional, rate, expiry (fixing), end (settlement), pair
- VanillaOption: side, call_put (0 call, 1 put), notional, strike, expiry, end (delivery), pair
- BarrierOption: the option's columns and barrier_type (EuropeanBarrierBS codes), barrier
- DigitalOption: the option's columns, call_put the digital type (0 cash call, 1 cash put),
  notional the payout
"""
import csv
import json
import math
import os
import re
import sys

from . import zeplib
from .products import load_product

TAGS = ("desk", "book", "currency", "counterparty")
EXPLAIN_TERMS = ("full", "delta", "gamma", "vega", "rates", "credit", "unexplained")
SPOT_LAG_DAYS = 2


# Market ------------------------------------------------------------------------------------

class RiskMarket:
    """Today's market of a risk run: curves by label, spots and volatilities by pair, credit
    curves by issuer."""

    def __init__(self, reference_date, curves, spots, volatilities, credit_curves=None):
        self.reference_date = zeplib.Date(str(reference_date))
        self.curves = curves
        self.spots = spots
        self.volatilities = volatilities
        self.credit_curves = credit_curves or {}

    def credit(self, issuer):
        if issuer not in self.credit_curves:
            raise ValueError(f"the market has no credit curve for {issuer!r}")
        return self.credit_curves[issuer]

    def curve(self, label):
        if label not in self.curves:
            raise ValueError(f"the market has no curve {label!r}; it has " + ", ".join(sorted(self.curves)))
        return self.curves[label]

    def pair(self, pair):
        """(spot, volatility or None, quote curve, base curve) of a pair such as EURUSD."""
        if pair not in self.spots:
            raise ValueError(f"the market has no spot for {pair!r}")
        return self.spots[pair], self.volatilities.get(pair), self.curve(pair[3:]), self.curve(pair[:3])

    def zero_rate(self, label, date):
        """The curve's continuous zero rate to the date (Act/365F), as options book their rates."""
        t = zeplib.DayCounter(zeplib.Act365Fixed).YearFraction(self.reference_date, zeplib.Date(str(date)))
        return -math.log(self.curve(label).DiscountFactor(zeplib.Date(str(date)))) / t if t > 0 else 0.0


def _read_mapping(path):
    with open(path, encoding="utf-8") as file:
        text = file.read()
    try:
        return json.loads(text)
    except ValueError:
        try:
            import yaml
        except ImportError:
            raise ValueError(f"{path}: the text is not JSON, and YAML needs PyYAML") from None
        return yaml.safe_load(text)


def load_market(path):
    """The market file at path (see the module's help) as a RiskMarket."""
    fields = _read_mapping(path)
    if not isinstance(fields, dict) or "reference_date" not in fields:
        raise ValueError(f"{path}: a market file is a mapping with a reference_date")
    reference = str(fields["reference_date"])
    curves = {}
    for label, spec in (fields.get("curves") or {}).items():
        rates = [float(r) for r in spec["zero_rates"]]
        if "tenors" in spec:
            curves[label] = zeplib.YieldCurve.FromTenors(reference, [str(t) for t in spec["tenors"]], rates,
                                                         zeplib.Continuous, zeplib.DayCounter(zeplib.Act365Fixed),
                                                         label=label)
        else:
            curves[label] = zeplib.YieldCurve.FromZeroRates(reference, [str(d) for d in spec["dates"]], rates,
                                                            zeplib.Continuous, zeplib.DayCounter(zeplib.Act365Fixed),
                                                            label=label)
    spots = {pair: float(level) for pair, level in (fields.get("spots") or {}).items()}
    volatilities = {pair: float(level) for pair, level in (fields.get("volatilities") or {}).items()}
    market = RiskMarket(reference, curves, spots, volatilities)
    for issuer, spec in (fields.get("credit_curves") or {}).items():
        market.credit_curves[issuer] = zeplib.CreditCurve(reference, [str(t) for t in spec["tenors"]],
                                                          [float(x) for x in spec["spreads"]], float(spec["recovery"]),
                                                          market.curve(spec["discount"]))
    return market


# Trades ------------------------------------------------------------------------------------

def _number(row, key):
    value = row.get(key)
    if value is None or value == "":
        raise ValueError(f"it has no {key}")
    return float(value)


def _bond(row, market):
    bond = zeplib.MBond(_number(row, "coupon"), row["start"], row["end"], discountCurve=market.curve(row["curve"]))
    return zeplib.BondAdapter(bond, _number(row, "notional"))


def _swap(row, market):
    swap = zeplib.MVanillaSwap(int(_number(row, "side")), _number(row, "notional"), _number(row, "rate"), row["start"],
                               row["end"], market.curve(row["curve"]))
    return zeplib.SwapAdapter(swap)


def _spot_date(market):
    return market.reference_date + zeplib.Period(f"{SPOT_LAG_DAYS}D")


def _fx_forward(row, market):
    spot, _, quote, base = market.pair(row["pair"])
    forward = zeplib.MFXForwardOutright(int(_number(row, "side")), _number(row, "notional"), _number(row, "rate"),
                                        row["end"], spot, _spot_date(market), quote, base)
    return zeplib.FXForwardAdapter(forward, row["pair"])


def _option_market(row, market):
    spot, volatility, _, _ = market.pair(row["pair"])
    if volatility is None:
        raise ValueError(f"the market has no volatility for {row['pair']!r}")
    pair = row["pair"]
    return spot, volatility, market.zero_rate(pair[3:], row["end"]), market.zero_rate(pair[:3], row["end"])


def _vanilla(row, market):
    spot, vol, rd, rf = _option_market(row, market)
    option = zeplib.MVanillaOption(int(_number(row, "side")), int(_number(row, "call_put")), _number(row, "notional"),
                                   _number(row, "strike"), spot, market.reference_date, row["expiry"], row["end"],
                                   row["end"], rd, rf, vol)
    return zeplib.VanillaOptionAdapter(option, row["pair"])


def _barrier(row, market):
    spot, vol, rd, rf = _option_market(row, market)
    option = zeplib.MVanillaBarriers(int(_number(row, "side")), int(_number(row, "call_put")), _number(row, "notional"),
                                     _number(row, "strike"), int(_number(row, "barrier_type")),
                                     _number(row, "barrier"), 0.0, spot, market.reference_date, row["expiry"],
                                     row["end"], row["end"], row["end"], rd, rf, vol)
    return zeplib.BarrierOptionAdapter(option, row["pair"])


def _fra(row, market):
    fra = zeplib.MFRA(int(_number(row, "side")), _number(row, "notional"), _number(row, "rate"), row["start"],
                      row["end"], market.curve(row["curve"]))
    return zeplib.FRAAdapter(fra)


def _floating_note(row, market):
    note = zeplib.MFloatingRateNote(100.0, _number(row, "coupon"), row["start"], row["end"], market.curve(row["curve"]))
    return zeplib.FloatingRateNoteAdapter(note, _number(row, "notional"))


def _fx_swap(row, market):
    spot, _, quote, base = market.pair(row["pair"])
    swap = zeplib.MFXSwap(int(_number(row, "side")), _number(row, "notional"), _number(row, "rate"), row["start"],
                          _number(row, "far_rate"), row["end"], spot, _spot_date(market), quote, base)
    return zeplib.FXSwapAdapter(swap, row["pair"])


def _ndf(row, market):
    spot, _, quote, base = market.pair(row["pair"])
    ndf = zeplib.MFXNDF(int(_number(row, "side")), _number(row, "notional"), _number(row, "rate"), row["expiry"],
                        row["end"], spot, _spot_date(market), quote, base)
    return zeplib.NDFAdapter(ndf, row["pair"])


def _digital(row, market):
    spot, vol, rd, rf = _option_market(row, market)
    option = zeplib.MDigitalOption(int(_number(row, "side")), int(_number(row, "call_put")), _number(row, "notional"),
                                   _number(row, "strike"), spot, market.reference_date, row["expiry"], row["end"],
                                   rd, rf, vol)
    return zeplib.DigitalOptionAdapter(option, row["pair"])


def _cds(row, market):
    side = {1: "BUYER", -1: "SELLER"}[int(_number(row, "side"))]
    cds = zeplib.MCreditDefaultSwap(side, _number(row, "notional"), _number(row, "coupon"), row["start"], row["end"],
                                    market.credit(row["issuer"]), market.curve(row["curve"]))
    return zeplib.CreditDefaultSwapAdapter(cds, row["issuer"])


TRADE_TYPES = {"Bond": _bond, "CDS": _cds, "VanillaSwap": _swap, "FRA": _fra, "FloatingRateNote": _floating_note,
               "FXForward": _fx_forward, "FXSwap": _fx_swap, "NDF": _ndf, "VanillaOption": _vanilla,
               "BarrierOption": _barrier, "DigitalOption": _digital}


class LoadedPortfolio:
    """A portfolio and the trades that failed to build, each (identifier, message)."""

    def __init__(self):
        self.portfolio = zeplib.Portfolio()
        self.failures = []

    def add(self, trade_id, build):
        try:
            adapter, quantity, tags = build()
            self.portfolio.Add(trade_id, adapter, quantity, tags)
        except KeyError as missing:
            self.failures.append((trade_id, f"it has no {missing.args[0]}"))
        except Exception as error:  # a trade that fails is reported, the rest still valued
            self.failures.append((trade_id, str(error)))

    def add_row(self, row, market):
        row = {key: (value.strip() if isinstance(value, str) else value) for key, value in row.items() if key}
        trade_id = str(row.get("id") or f"row {len(self.failures) + self.portfolio.Size() + 1}")

        def build():
            kind = row.get("type")
            if kind not in TRADE_TYPES:
                raise ValueError(f"unknown trade type {kind!r}; one of " + ", ".join(sorted(TRADE_TYPES)))
            tags = {tag: str(row[tag]) for tag in TAGS if row.get(tag) not in (None, "")}
            quantity = float(row["quantity"]) if row.get("quantity") not in (None, "") else 1.0
            return TRADE_TYPES[kind](row, market), quantity, tags
        self.add(trade_id, build)

    def add_product(self, path, market_path):
        def build():
            product = load_product(path, market_path)  # without a market file, the definition's own
            return zeplib.ScriptedProductAdapter(product, os.path.splitext(os.path.basename(path))[0]), 1.0, {}
        self.add(os.path.basename(path), build)


def load_portfolio(path, market, market_path=None, into=None):
    """The portfolio at path (a CSV trade list, a YAML/JSON trade file or product definition, or a
    directory of product definitions) valued on market, as a LoadedPortfolio (added to `into`
    when given); structured products read the market file market_path."""
    loaded = into if into is not None else LoadedPortfolio()
    if os.path.isdir(path):
        for name in sorted(os.listdir(path)):
            if name.endswith((".json", ".yaml", ".yml")) and "market" not in name:
                loaded.add_product(os.path.join(path, name), market_path)
    elif path.endswith(".csv"):
        with open(path, newline="", encoding="utf-8") as file:
            for row in csv.DictReader(file):
                loaded.add_row(row, market)
    else:
        fields = _read_mapping(path)
        if not isinstance(fields, dict):
            raise ValueError(f"{path}: a portfolio file is a mapping with trades, csv or products")
        if "type" in fields:
            loaded.add_product(path, market_path)
            return loaded
        for row in fields.get("trades") or []:
            loaded.add_row({key: str(value) for key, value in row.items()}, market)
        here = os.path.dirname(os.path.abspath(path))
        if fields.get("csv"):
            load_portfolio(os.path.join(here, fields["csv"]), market, market_path, loaded)
        if fields.get("products"):
            product_market = os.path.join(here, fields["product_market"]) if fields.get("product_market") else None
            load_portfolio(os.path.join(here, fields["products"]), market, product_market, loaded)
    return loaded


# History -----------------------------------------------------------------------------------

def _factor(name):
    parts = name.split(":")
    kind = parts[0]
    if kind == "curve" and len(parts) == 2:
        return zeplib.Shock.Curve(parts[1], zeplib.YieldCurveFactor_LEVEL, 0.0)
    if kind == "curve" and len(parts) == 3:
        return zeplib.Shock.Curve(parts[1], zeplib.YieldCurveFactor_KEY_RATE, 0.0, int(parts[2]))
    if kind == "spot" and len(parts) == 2:
        return zeplib.Shock.Spot(parts[1], zeplib.FXForwardFactor_SPOT_SHOCK, 0.0, zeplib.ShockType_RELATIVE)
    if kind == "credit" and len(parts) == 2:
        return zeplib.Shock.Credit(parts[1], zeplib.CreditCurveFactor_CDS_SPREAD_LEVEL, 0.0)
    if kind == "vol" and len(parts) == 2:
        return zeplib.Shock.Vol(parts[1], zeplib.VolSurfaceFactor_ATM_VOL_LEVEL, 0.0, zeplib.ShockType_ABSOLUTE)
    raise ValueError(f"history column {name!r}: a factor is curve:<label>[:<pillar>], spot:<pair>, vol:<pair> "
                     "or credit:<issuer>")


def load_history(path):
    """(dates, factors as Shocks, levels as rows of floats) from the history CSV at path; a gap
    or a non-number is kept as NaN, which the VaR refuses naming the factor and the day."""
    with open(path, newline="", encoding="utf-8") as file:
        rows = list(csv.reader(file))
    if not rows or not rows[0] or rows[0][0] != "date":
        raise ValueError(f"{path}: a history starts with a header row whose first column is 'date'")
    factors = [_factor(name.strip()) for name in rows[0][1:]]
    dates, levels = [], []
    for row in rows[1:]:
        if not row:
            continue
        dates.append(row[0])
        levels.append([_level(cell) for cell in row[1:]] + [math.nan] * (len(factors) + 1 - len(row)))
    return dates, factors, levels


def _level(cell):
    try:
        return float(cell)
    except ValueError:
        return math.nan


# The run -----------------------------------------------------------------------------------

def run(portfolio_path, market_path, history_path, confidences=(0.95, 0.99), tag="desk", report_dir=None):
    """Loads the three inputs, runs the historical VaR and returns the figures as a dict; writes
    the Markdown report into report_dir when given."""
    from . import risk_report
    market = load_market(market_path)
    loaded = load_portfolio(portfolio_path, market, market_path)
    dates, factors, levels = load_history(history_path)
    if loaded.portfolio.Size() == 0:
        raise ValueError(f"{portfolio_path}: no trade could be built")
    try:
        report = zeplib._HistoricalVaR(loaded.portfolio, factors, levels, [float(c) for c in confidences], tag)
    except ValueError as error:
        # The library counts days from 0; the file's reader knows them by date.
        message = re.sub(r"on day (\d+)", lambda day: f"on day {day[1]} ({dates[int(day[1])]})", str(error))
        raise ValueError(f"{history_path}: {message}") from None
    # What drove the tail: the P&L of each VaR day explained by the book's sensitivities.
    scenarios = zeplib.HistoricalScenarios(factors, levels)
    tail_days = sorted(set(report["var_scenario"]))
    explain = zeplib._ExplainPnL(loaded.portfolio, [scenarios[day] for day in tail_days])
    explained = {day: {term: explain[term][i] for term in EXPLAIN_TERMS} for i, day in enumerate(tail_days)}
    base = loaded.portfolio.Aggregate(zeplib.Metric_PV)
    figures = {
        "trades": loaded.portfolio.Size(), "failures": loaded.failures, "tag": tag,
        "pv": base.Value() if base.available else math.nan,
        "days": len(dates), "first_date": dates[0], "last_date": dates[-1],
        "pnl": report["pnl"], "scenario_dates": [dates[int(name.split()[1])] for name in report["scenario"]],
        "confidence": report["confidence"], "var": report["var"], "es": report["es"],
        "var_scenario": report["var_scenario"], "components": report["components"],
        "explain": [explained[day] for day in report["var_scenario"]],
    }
    if report_dir is not None:
        figures["report"] = risk_report.write(figures, report_dir)
    return figures


def main(argv=None):
    import argparse
    parser = argparse.ArgumentParser(prog="python -m zep.risk", description="Historical VaR of a portfolio.")
    parser.add_argument("portfolio", help="CSV trade list, YAML/JSON trade file, product definition or directory")
    parser.add_argument("market", help="YAML/JSON market: reference_date, curves, spots, volatilities")
    parser.add_argument("history", help="CSV of daily factor levels: date, curve:<label>, spot:<pair>, vol:<pair>")
    parser.add_argument("--confidence", type=float, action="append", help="repeatable; 0.95 and 0.99 by default")
    parser.add_argument("--tag", default="desk", help="the trade tag component VaR groups by ('' for trades)")
    parser.add_argument("--report-dir", default=".", help="where risk_report.md goes")
    args = parser.parse_args(argv)
    from . import risk_report
    try:
        figures = run(args.portfolio, args.market, args.history, args.confidence or (0.95, 0.99), args.tag,
                      args.report_dir)
    except (ValueError, RuntimeError, OSError) as error:
        print(f"zep.risk: {error}", file=sys.stderr)
        return 2
    print(risk_report.text(figures))
    return 0


if __name__ == "__main__":
    sys.exit(main())
