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
import math
import re
import sys

from . import zeplib
from .risk_history import load_history
from .risk_market import RiskMarket, load_market
from .risk_trades import LoadedPortfolio, load_portfolio

__all__ = ["LoadedPortfolio", "RiskMarket", "load_history", "load_market", "load_portfolio", "main", "run"]
EXPLAIN_TERMS = ("full", "delta", "gamma", "vega", "rates", "credit", "unexplained")


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
