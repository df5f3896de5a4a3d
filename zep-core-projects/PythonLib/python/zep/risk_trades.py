"""The trades of a risk run: rows of a trade list (CSV, or a YAML/JSON file listing them) and
product definitions, each built into its instrument's adapter on the run's market (see zep.risk
for the columns of each type). A trade that fails to build is kept with its message."""
import csv
import os

from . import zeplib
from .products import load_product
from .risk_market import read_mapping

TAGS = ("desk", "book", "currency", "counterparty")
SPOT_LAG_DAYS = 2


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
        fields = read_mapping(path)
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
