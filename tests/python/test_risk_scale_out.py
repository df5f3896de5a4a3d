"""Historical VaR run on several threads and on a Dask cluster: the P&L of every scenario is the
same bit for bit as on one thread in this process, and so are the VaR, expected shortfall and
component figures computed from it."""
import os
import subprocess
import sys

import numpy
import pytest

import zep
import zep.risk

EXAMPLE = os.path.join(os.path.dirname(__file__), "..", "..", "examples", "risk")
CONFIDENCES = [0.9, 0.95, 0.99]


@pytest.fixture(scope="module")
def book(tmp_path_factory):
    """A slice of the example book (every tenth trade, so every family, and the credit trades, so
    every factor of the history) and its first 60 days."""
    with open(os.path.join(EXAMPLE, "trades.csv")) as trades:
        header, *rows = trades.readlines()
    picked = [row for i, row in enumerate(rows) if i % 10 == 0 or ",CDS," in row]
    path = tmp_path_factory.mktemp("book") / "trades.csv"
    path.write_text(header + "".join(picked))
    market_path = os.path.join(EXAMPLE, "market.yaml")
    loaded = zep.risk.load_portfolio(str(path), zep.risk.load_market(market_path), market_path)
    assert not loaded.failures
    _, factors, levels = zep.risk.load_history(os.path.join(EXAMPLE, "history.csv"))
    return loaded.portfolio, factors, levels[:61]


def var_of(book, **options):
    portfolio, factors, levels = book
    return zep.HistoricalVaR(portfolio, factors, levels, CONFIDENCES, "desk", **options)


def assert_identical(result, expected):
    """Equal to the last bit, whether the results are pandas objects or dicts of arrays."""
    assert numpy.array_equal(numpy.asarray(result["pnl"]), numpy.asarray(expected["pnl"]))
    for column in ("var", "es", "var_scenario"):
        assert numpy.array_equal(numpy.asarray(result["summary"][column]), numpy.asarray(expected["summary"][column]))
    assert sorted(result["components"]) == sorted(expected["components"])
    for group in expected["components"]:
        assert numpy.array_equal(numpy.asarray(result["components"][group]),
                                 numpy.asarray(expected["components"][group]))


@pytest.fixture(scope="module")
def one_thread(book):
    previous = os.environ.get("ZEP_NUM_THREADS")
    os.environ["ZEP_NUM_THREADS"] = "1"
    try:
        return var_of(book)
    finally:
        if previous is None:
            del os.environ["ZEP_NUM_THREADS"]
        else:
            os.environ["ZEP_NUM_THREADS"] = previous


@pytest.mark.parametrize("variable, value", [
    ("ZEP_NUM_THREADS", "2"),
    ("ZEP_NUM_THREADS", "7"),  # more threads than cores: blocks of unequal length
    ("ZEP_NUM_THREADS", "64"),  # more threads than scenarios
    ("ZEP_RUNMODE", "CPU"),
])
def test_the_thread_count_does_not_change_a_bit_of_the_result(book, one_thread, monkeypatch, variable, value):
    monkeypatch.delenv("ZEP_NUM_THREADS", raising=False)
    monkeypatch.setenv(variable, value)
    assert_identical(var_of(book), one_thread)


def test_each_scenario_on_many_threads_is_the_scenario_revalued_alone(book, monkeypatch):
    portfolio, factors, levels = book
    monkeypatch.setenv("ZEP_NUM_THREADS", "2")
    result = var_of(book)
    scenarios = zep.HistoricalScenarios(factors, levels)
    alone = [scenarios[day].PnL(portfolio) for day in (0, len(scenarios) // 2, len(scenarios) - 1)]
    pnl = numpy.asarray(result["pnl"])
    assert [pnl[0], pnl[len(pnl) // 2], pnl[-1]] == alone


@pytest.fixture(scope="module")
def threads_cluster():
    distributed = pytest.importorskip("dask.distributed")
    with distributed.LocalCluster(processes=False, n_workers=2, threads_per_worker=1,
                                  dashboard_address=":0") as cluster, distributed.Client(cluster) as client:
        yield client


@pytest.mark.parametrize("chunk_size", [None, 1, numpy.int64(7), 10_000])
def test_a_dask_run_gives_the_in_process_result_bit_for_bit(book, one_thread, threads_cluster, chunk_size):
    assert_identical(var_of(book, client=threads_cluster, chunk_size=chunk_size), one_thread)


@pytest.mark.skipif(bool(os.environ.get("ZEP_SANITIZED")),
                    reason="worker processes of a sanitized run would report on the preloaded sanitizer")
def test_a_dask_run_on_worker_processes_gives_the_in_process_result_bit_for_bit(book, one_thread, monkeypatch):
    distributed = pytest.importorskip("dask.distributed")
    # The workers import zep from wherever this process found it.
    package_root = os.path.dirname(os.path.dirname(zep.__file__))
    monkeypatch.setenv("PYTHONPATH", os.pathsep.join(filter(None, [package_root, os.environ.get("PYTHONPATH")])))
    with distributed.LocalCluster(processes=True, n_workers=2, threads_per_worker=1,
                                  dashboard_address=":0") as cluster, distributed.Client(cluster) as client:
        assert_identical(var_of(book, client=client), one_thread)


@pytest.mark.parametrize("confidences, chunk_size, message", [
    ([1.5], None, "The confidence level 1.5 is outside (0, 1)."),
    ([], None, "at least one confidence level"),
    ([0.99], 0, "The chunk size must be a positive whole number of scenarios, not 0."),
    ([0.99], 2.5, "The chunk size must be a positive whole number of scenarios, not 2.5."),
    ([0.99], True, "The chunk size must be a positive whole number of scenarios, not True."),
])
def test_bad_input_to_a_dask_run_is_refused_before_anything_is_sent(book, threads_cluster, confidences,
                                                                       chunk_size, message):
    portfolio, factors, levels = book
    with pytest.raises(ValueError, match=message.replace("(", r"\(").replace(")", r"\)")):
        zep.HistoricalVaR(portfolio, factors, levels, confidences, client=threads_cluster, chunk_size=chunk_size)


def test_a_dask_run_without_a_portfolio_is_refused(book, threads_cluster):
    _, factors, levels = book
    with pytest.raises(ValueError, match="HistoricalVaR needs a Portfolio, not None."):
        zep.HistoricalVaR(None, factors, levels, client=threads_cluster)


def test_the_library_runs_a_var_without_dask_installed():
    script = ("import sys\n"
              "sys.modules.update(dask=None, distributed=None)  # as if not installed\n"
              "import zep\n"
              "portfolio = zep.Portfolio()\n"
              "curve = zep.YieldCurve.FromZeroRates('2024-01-15', ['2024-01-15', '2034-01-15'], [0.03, 0.03],\n"
              "    zep.Continuous, zep.DayCounter(zep.Act365Fixed), label='EUR')\n"
              "portfolio.Add('B', zep.BondAdapter(zep.MBond(0.04, '2023-06-15', '2033-06-15', discountCurve=curve), 1e6))\n"
              "factor = zep.Shock.Curve('EUR', zep.YieldCurveFactor_LEVEL, 0.0)\n"
              "result = zep.HistoricalVaR(portfolio, [factor], [[0.03], [0.031], [0.029]], [0.5])\n"
              "print(len(result['pnl']))\n")
    package_root = os.path.dirname(os.path.dirname(zep.__file__))
    environment = dict(os.environ, PYTHONPATH=package_root, ZEP_LOGLEVEL="off")
    done = subprocess.run([sys.executable, "-c", script], capture_output=True, text=True, env=environment,
                          timeout=120)
    assert done.returncode == 0, done.stderr
    assert done.stdout.strip().splitlines()[-1] == "2"
