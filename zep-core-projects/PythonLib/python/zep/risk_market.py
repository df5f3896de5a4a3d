"""The market of a risk run, read from a YAML or JSON file (see zep.risk): curves by label, FX
spots and volatilities by pair, credit curves by issuer."""
import json
import math

from . import zeplib


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


def read_mapping(path):
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
    fields = read_mapping(path)
    if not isinstance(fields, dict) or "reference_date" not in fields:
        raise ValueError(f"{path}: a market file is a mapping with a reference_date")
    reference = str(fields["reference_date"])
    curves = {}
    for label, curve in (fields.get("curves") or {}).items():
        rates = [float(r) for r in curve["zero_rates"]]
        if "tenors" in curve:
            curves[label] = zeplib.YieldCurve.FromTenors(reference, [str(t) for t in curve["tenors"]], rates,
                                                         zeplib.Continuous, zeplib.DayCounter(zeplib.Act365Fixed),
                                                         label=label)
        else:
            curves[label] = zeplib.YieldCurve.FromZeroRates(reference, [str(d) for d in curve["dates"]], rates,
                                                            zeplib.Continuous, zeplib.DayCounter(zeplib.Act365Fixed),
                                                            label=label)
    spots = {pair: float(level) for pair, level in (fields.get("spots") or {}).items()}
    volatilities = {pair: float(level) for pair, level in (fields.get("volatilities") or {}).items()}
    market = RiskMarket(reference, curves, spots, volatilities)
    for issuer, credit in (fields.get("credit_curves") or {}).items():
        market.credit_curves[issuer] = zeplib.CreditCurve(reference, [str(t) for t in credit["tenors"]],
                                                          [float(x) for x in credit["spreads"]], float(credit["recovery"]),
                                                          market.curve(credit["discount"]))
    return market
