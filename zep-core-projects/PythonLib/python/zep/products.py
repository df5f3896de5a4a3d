"""Structured products booked by their term sheet, with keyword arguments.

Each constructor takes the market (a dict as read by load_market, or the path of a market file)
and the term sheet's fields by the names of its schema (zep/data/schemas/<Type>.schema.json);
dates may be datetime.date, zep.Date or ISO texts. It returns an MStructuredDerivativeProduct:

    note = zep.AutoCall(market, initial_level=100, strike_date="2024-01-02",
                        observation_dates=[...], autocall_levels=[1.0, 0.95], coupons=0.02)
    note.Script(); note.Price(); note.Greeks(); note.WriteReport("out", "note")
"""
import datetime as _datetime
import json as _json
import os as _os

from . import zeplib as _zeplib


def _plain(value):
    """The value as JSON knows it: dates as ISO texts, sequences as lists."""
    if isinstance(value, _datetime.date):
        return value.isoformat()
    if isinstance(value, _zeplib.Date):
        return _datetime.date(value.Year(), value.Month(), value.DayOfMonth()).isoformat()
    if isinstance(value, dict):
        return {str(_plain(key)): _plain(item) for key, item in value.items()}
    if isinstance(value, (list, tuple)):
        return [_plain(item) for item in value]
    return value


def _json_text(value):
    return _json.dumps(_plain(value), allow_nan=False)


def _market_text(market):
    if market is None:
        return ""
    if isinstance(market, (str, _os.PathLike)):
        with open(market, encoding="utf-8") as file:
            return file.read()
    if isinstance(market, dict):
        return _json_text(market)
    raise TypeError("market must be a dict, the path of a market file or None, not " + type(market).__name__)


def _book(product_type, market, terms):
    if market is None:
        raise TypeError(product_type + ": a market is needed (a dict or the path of a market file)")
    return _zeplib.MStructuredDerivativeProduct.FromText(_json_text({"type": product_type, **terms}),
                                                         _market_text(market))


def AutoCall(market: "dict[str, Any] | str", **terms) -> "MStructuredDerivativeProduct":
    """An autocallable note: initial_level, strike_date, observation_dates, autocall_levels,
    coupons (one value or one per date), coupon_barrier, memory, knock_in_barrier,
    knock_in_monitoring ('continuous' or 'discrete'), put_strike, underlyings, notional; valued
    after the strike date, knocked_in and missed_coupons give its state."""
    return _book("AutoCall", market, terms)


def Snowball(market: "dict[str, Any] | str", **terms) -> "MStructuredDerivativeProduct":
    """A snowball note: initial_level, strike_date, observation_dates, knock_out_levels,
    coupon_rate (a year), knock_in_barrier, knock_in_monitoring, knocked_in, notional."""
    return _book("Snowball", market, terms)


def TargetRedemptionForward(market: "dict[str, Any] | str", **terms) -> "MStructuredDerivativeProduct":
    """An FX target redemption forward: trade_date, fixing_dates, strike, pivot, leverage,
    target_amount or target_count, last_gain ('full', 'partial' or 'none'), notional."""
    return _book("TargetRedemptionForward", market, terms)


def AsianPayoff(market: "dict[str, Any] | str", **terms) -> "MStructuredDerivativeProduct":
    """An Asian option: fixing_dates, past_fixings ({date: level}), average ('arithmetic' or
    'geometric'), averaged ('price' or 'strike'), option_type ('call' or 'put'), strike, notional."""
    return _book("AsianPayoff", market, terms)


def load_market(path: "str") -> "dict[str, Any]":
    """The market file at `path` (JSON or YAML), checked against the Market schema, as a dict."""
    with open(path, encoding="utf-8") as file:
        return _json.loads(_zeplib.CheckedMarketJson(file.read()))


def load_product(path: "str", market: "dict[str, Any] | str | None" = None
                 ) -> "MStructuredDerivativeProduct":
    """The product definition at `path` (JSON or YAML), booked in `market` (a dict or the path of
    a market file); a scripted definition may carry its own market."""
    with open(path, encoding="utf-8") as file:
        definition = file.read()
    return _zeplib.MStructuredDerivativeProduct.FromText(definition, _market_text(market))
