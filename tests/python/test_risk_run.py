"""The file-driven risk run (python -m zep.risk): a trade list, a market and a history in; the VaR
of a single forward against the quantile of its P&L worked out by rebuilding it at each day's
spot, failures listed by trade while the rest is valued, bad files refused naming what is wrong,
and the shipped example run end to end."""
import math
import os

import numpy
import pytest

import zep
import zep.risk

EXAMPLE = os.path.join(os.path.dirname(__file__), "..", "..", "examples", "risk")
MARKET = """reference_date: '2024-01-15'
curves:
  EUR: {tenors: [1Y, 5Y, 10Y], zero_rates: [0.034, 0.025, 0.026]}
  USD: {tenors: [1Y, 5Y, 10Y], zero_rates: [0.048, 0.039, 0.040]}
spots: {EURUSD: 1.08}
volatilities: {EURUSD: 0.08}
"""
HEADER = "id,type,quantity,desk,side,notional,rate,end,pair,coupon,start,curve\n"
FORWARD = "F1,FXForward,2,fx,1,1000000,1.10,2025-01-17,EURUSD,,,\n"
SPOTS = [1.07, 1.075, 1.062, 1.081, 1.09, 1.084, 1.071, 1.078, 1.08]


def files(tmp_path, trades=FORWARD, history=None):
    (tmp_path / "market.yaml").write_text(MARKET)
    (tmp_path / "trades.csv").write_text(HEADER + trades)
    if history is None:
        history = "date,spot:EURUSD\n" + "".join(f"2024-01-{i + 3:02d},{s}\n" for i, s in enumerate(SPOTS))
    (tmp_path / "history.csv").write_text(history)
    return [str(tmp_path / name) for name in ("trades.csv", "market.yaml", "history.csv")]


def test_var_of_a_forward_is_the_quantile_of_its_pnl_rebuilt_at_each_days_spot(tmp_path):
    figures = zep.risk.run(*files(tmp_path), confidences=[0.8])
    market = zep.risk.load_market(str(tmp_path / "market.yaml"))
    spot_date = zep.Date("2024-01-17")

    def pv(spot):
        return zep.MFXForwardOutright(1, 1e6, 1.10, "2025-01-17", spot, spot_date, market.curve("USD"),
                                      market.curve("EUR")).NPV()
    pnl = [2 * (pv(1.08 * SPOTS[t] / SPOTS[t - 1]) - pv(1.08)) for t in range(1, len(SPOTS))]
    assert figures["pnl"] == pytest.approx(pnl, rel=1e-10)
    worst = numpy.sort(pnl)[:math.ceil(0.2 * len(pnl))]
    assert figures["var"][0] == pytest.approx(-worst[-1], rel=1e-10)
    assert figures["es"][0] == pytest.approx(-worst.mean(), rel=1e-10)


def test_a_trade_that_fails_to_build_is_listed_and_the_rest_is_valued(tmp_path):
    bad = "B1,Bond,1,rates,,1000000,,2030-01-15,,0.03,2023-01-15,JPY\nX1,Swaption,1,rates,,,,,,,,\n"
    figures = zep.risk.run(*files(tmp_path, FORWARD + bad), report_dir=str(tmp_path))
    assert figures["trades"] == 1
    failures = dict(figures["failures"])
    assert "no curve 'JPY'" in failures["B1"] and "unknown trade type 'Swaption'" in failures["X1"]
    listed = zep.risk.LoadedPortfolio()
    listed.add_row({"id": "F2", "type": "FXForward", "side": "1", "notional": "1e6", "rate": "1.1"},
                   zep.risk.load_market(str(tmp_path / "market.yaml")))
    assert listed.failures == [("F2", "it has no pair")]
    report = (tmp_path / "risk_report.md").read_text()
    assert "<svg" in report and "B1: " in report
    assert "B1: " in zep.risk_report.text(figures)


@pytest.mark.parametrize("history, message", [
    ("date,spot:EURUSD\n2024-01-03,1.07\n2024-01-04,\n2024-01-05,1.08\n", r"EURUSD SPOT_SHOCK .* day 1 \(2024-01-04\)"),
    ("date,spot:EURUSD\n2024-01-03,1.07\n2024-01-04,abc\n2024-01-05,1.08\n", "gap or a non-number on day 1"),
    ("date,rate:EUR\n2024-01-03,0.03\n2024-01-04,0.031\n", "history column 'rate:EUR'"),
    ("day,spot:EURUSD\n2024-01-03,1.07\n", "first column is 'date'"),
])
def test_a_bad_history_is_refused_naming_what_is_wrong(tmp_path, history, message):
    with pytest.raises((ValueError, RuntimeError), match=message):
        zep.risk.run(*files(tmp_path, history=history))


def test_the_command_reports_errors_without_a_traceback(tmp_path, capsys):
    paths = files(tmp_path)
    assert zep.risk.main([*paths, "--confidence", "1.5", "--report-dir", str(tmp_path)]) == 2
    assert "confidence" in capsys.readouterr().err.lower()
    assert zep.risk.main([*paths, "--report-dir", str(tmp_path)]) == 0
    assert "VaR" in capsys.readouterr().out


def test_the_example_run_values_every_trade_and_splits_its_var_by_desk(tmp_path):
    figures = zep.risk.run(os.path.join(EXAMPLE, "portfolio.yaml"), os.path.join(EXAMPLE, "market.yaml"),
                           os.path.join(EXAMPLE, "history.csv"), report_dir=str(tmp_path))
    assert figures["trades"] == 1000 and figures["failures"] == []
    assert len(figures["pnl"]) >= 500
    for i, var in enumerate(figures["var"]):
        assert sum(shares[i] for shares in figures["components"].values()) == pytest.approx(var, rel=1e-9)
    assert figures["var"][1] >= figures["var"][0] > 0
    for var, terms in zip(figures["var"], figures["explain"]):
        assert terms["full"] == pytest.approx(-var, rel=1e-12)  # the VaR day's P&L is minus the VaR
        assert sum(terms[name] for name in ("delta", "gamma", "vega", "rates", "credit", "unexplained")) == \
            pytest.approx(terms["full"], rel=1e-12)


def test_a_portfolio_file_gathers_listed_trades_and_product_definitions(tmp_path):
    import shutil
    products = os.path.join(EXAMPLE, "..", "products")
    (tmp_path / "notes").mkdir()
    shutil.copy(os.path.join(products, "autocall.yaml"), tmp_path / "notes" / "SX5E.yaml")
    shutil.copy(os.path.join(products, "equity_market.yaml"), tmp_path / "equity.yaml")
    (tmp_path / "market.yaml").write_text(MARKET)
    (tmp_path / "book.yaml").write_text(
        "trades:\n  - {id: F1, type: FXForward, desk: fx, side: 1, notional: 1000000, rate: 1.1, end: 2025-01-17,"
        " pair: EURUSD}\nproducts: notes\nproduct_market: equity.yaml\n")
    market = zep.risk.load_market(str(tmp_path / "market.yaml"))
    loaded = zep.risk.load_portfolio(str(tmp_path / "book.yaml"), market)
    assert loaded.failures == [] and loaded.portfolio.Size() == 2
    note = zep.load_product(os.path.join(products, "autocall.yaml"), os.path.join(products, "equity_market.yaml"))
    by_desk = loaded.portfolio.AggregateBy(zep.Metric_PV, "desk")
    assert by_desk[""].Value() == pytest.approx(note.PV(), rel=1e-12)
