"""Adapters and portfolios pickle: a copy answers every metric and every scenario P&L exactly as
the original, carries its trades' identifiers, quantities and tags, and a structured product
booked from files travels as its texts."""
import os
import pickle

import pytest

import zep

REFERENCE = "2024-01-15"
PILLARS = ["2024-01-15", "2025-01-15", "2027-01-15", "2030-01-15", "2034-01-15"]
ZEROS = [0.031, 0.0318, 0.0295, 0.0301, 0.0312]
PRODUCTS = os.path.join(os.path.dirname(__file__), "..", "..", "examples", "products")


def curve(label, level=0.0):
    return zep.YieldCurve.FromZeroRates(REFERENCE, PILLARS, [z + level for z in ZEROS], zep.Continuous,
                                        zep.DayCounter(zep.Act365Fixed), label=label)


ADAPTERS = {
    "bond": lambda: zep.BondAdapter(zep.MBond(0.04, "2023-06-15", "2033-06-15", discountCurve=curve("EUR")), 1e6),
    "fra": lambda: zep.FRAAdapter(zep.MFRA(1, 1e7, 0.03, "2024-07-17", "2024-10-17", curve("EUR"))),
    "fx swap": lambda: zep.FXSwapAdapter(zep.MFXSwap(1, 1e6, 1.081, "2024-01-17", 1.10, "2025-01-17", 1.08,
                                                     "2024-01-17", curve("USD"), curve("EUR", -0.01)), "EURUSD"),
    "barrier": lambda: zep.BarrierOptionAdapter(zep.MVanillaBarriers(
        -1, 0, 2e6, 1.10, 3, 1.02, 0.0, 1.08, REFERENCE, "2024-07-15", "2024-07-17", "2024-07-17", "2024-07-17",
        0.035, 0.02, 0.09), "EURUSD"),
    "cds": lambda: zep.CreditDefaultSwapAdapter(zep.MCreditDefaultSwap(
        "BUYER", 1e7, 0.01, REFERENCE, "2029-03-20",
        zep.CreditCurve(REFERENCE, ["1Y", "5Y"], [0.006, 0.011], 0.4, curve("USD")), curve("USD")), "ACME"),
    "option": lambda: zep.VanillaOptionAdapter(zep.MVanillaOption(1, 0, 1e6, 1.1, 1.08, REFERENCE, "2024-07-15",
                                                                  "2024-07-17", "2024-07-17", 0.035, 0.02, 0.09),
                                               "EURUSD"),
}
SCENARIO = zep.Scenario("day", [zep.Shock.Curve("EUR", zep.YieldCurveFactor_LEVEL, 7.0),
                                zep.Shock.Credit("ACME", zep.CreditCurveFactor_CDS_SPREAD_LEVEL, 12.0),
                                zep.Shock.Spot("EURUSD", zep.FXForwardFactor_SPOT_SHOCK, 0.01, zep.ShockType_RELATIVE)])


@pytest.mark.parametrize("name", ADAPTERS)
def test_an_adapter_copy_answers_like_the_original(name):
    adapter = ADAPTERS[name]()
    copy = pickle.loads(pickle.dumps(adapter))
    assert type(copy) is type(adapter)
    for metric in (zep.Metric_PV, zep.Metric_DV01, zep.Metric_DELTA, zep.Metric_FX_DELTA, zep.Metric_CS01):
        original, copied = adapter.Compute(metric), copy.Compute(metric)
        assert (copied.available, copied.value, copied.reason) == (original.available, original.value, original.reason)


def book():
    portfolio = zep.Portfolio()
    for i, (name, build) in enumerate(ADAPTERS.items()):
        portfolio.Add(f"T{i}", build(), 1.0 + i, {"desk": name})
    return portfolio


def test_a_portfolio_copy_keeps_its_trades_and_revalues_identically():
    portfolio = book()
    copy = pickle.loads(pickle.dumps(portfolio))
    assert copy.Size() == portfolio.Size()
    assert SCENARIO.PnL(copy) == SCENARIO.PnL(portfolio)
    assert {k: v.Value() for k, v in copy.AggregateBy(zep.Metric_PV, "desk").items()} == \
        {k: v.Value() for k, v in portfolio.AggregateBy(zep.Metric_PV, "desk").items()}


def test_curves_shared_by_trades_are_pickled_once():
    shared = curve("EUR")
    portfolio = zep.Portfolio()
    for i in range(20):
        portfolio.Add(f"B{i}", zep.BondAdapter(zep.MBond(0.04, "2023-06-15", "2033-06-15", discountCurve=shared)))
    single = zep.Portfolio()
    single.Add("B0", zep.BondAdapter(zep.MBond(0.04, "2023-06-15", "2033-06-15", discountCurve=shared)))
    assert len(pickle.dumps(portfolio)) < 20 * len(pickle.dumps(single)) / 4


def test_a_structured_product_booked_from_files_travels_as_its_texts(tmp_path):
    product = zep.MStructuredDerivativeProduct.FromFiles(os.path.join(PRODUCTS, "autocall.yaml"),
                                                         os.path.join(PRODUCTS, "equity_market.yaml"))
    data = pickle.dumps(zep.ScriptedProductAdapter(product, "SX5E"))
    copy = pickle.loads(data)
    assert copy.Compute(zep.Metric_PV).Value() == product.PV()
