"""Adapters of the rate and FX families priced on curves (FRA, floating-rate note, bill, FX swap,
NDF, cross-currency swap): DV01 against the instrument rebuilt on curves one basis point up and
down, FX_DELTA against the instrument rebuilt at a moved spot, scenario PVs against the instrument
rebuilt on the shocked market, and each family's product code and unavailable metrics; the CDS
against its credit curve bootstrapped again from moved spreads."""
import pytest

import zep

REFERENCE = "2024-01-15"
PILLARS = ["2024-01-15", "2025-01-15", "2027-01-15", "2030-01-15", "2034-01-15"]
ZEROS = [0.031, 0.0318, 0.0295, 0.0301, 0.0312]
BP = 1e-4
SPOT = 1.08


def curve(label, shift=0.0, level=0.0):
    return zep.YieldCurve.FromZeroRates(REFERENCE, PILLARS, [z + shift + level for z in ZEROS], zep.Continuous,
                                        zep.DayCounter(zep.Act365Fixed), label=label)


# Each family built on its market; shift moves every curve, spot the FX rate.
def fra(shift=0.0, spot=SPOT):
    return zep.MFRA(1, 1e7, 0.03, "2024-07-17", "2024-10-17", curve("EUR", shift))


def note(shift=0.0, spot=SPOT):
    return zep.MFloatingRateNote(100.0, 0.004, "2024-01-17", "2029-01-17", curve("EUR", shift),
                                 curve("EUR3M", shift, 0.002))


def bill(shift=0.0, spot=SPOT):
    return zep.MBill(1e6, "2024-10-15", discountCurve=curve("EUR", shift))


def fx_swap(shift=0.0, spot=SPOT):
    return zep.MFXSwap(1, 1e6, 1.081, "2024-01-17", 1.10, "2025-01-17", spot, "2024-01-17", curve("USD", shift),
                       curve("EUR", shift, -0.01))


def ndf(shift=0.0, spot=SPOT):
    return zep.MFXNDF(1, 1e6, 1.10, "2025-01-15", "2025-01-17", spot, "2024-01-17", curve("USD", shift),
                      curve("EUR", shift, -0.01))


def xccy(shift=0.0, spot=SPOT):
    return zep.MXCurrencySwap(1.08e7, 1e7, "2024-01-17", "2029-01-17", spot, curve("USD", shift),
                              curve("EUR", shift, -0.01), "FIXED", 0.035, "FIXED", 0.025)


def xccy_resetting(shift=0.0, spot=SPOT):
    return zep.MXCurrencySwap(1.08e7, 1e7, "2024-01-17", "2029-01-17", spot, curve("USD", shift),
                              curve("EUR", shift, -0.01), "IBOR", 0.0, "IBOR", 0.001, resettingLeg="DOMESTIC")


FAMILIES = {
    "fra": (fra, zep.FRAAdapter, zep.ProductType_FRA, 1.0),
    "note": (note, lambda n: zep.FloatingRateNoteAdapter(n, 1e6), zep.ProductType_FRN, 1e4),
    "bill": (bill, zep.BillAdapter, zep.ProductType_SHORT_TERM_PAPER, 1.0),
    "fx_swap": (fx_swap, lambda s: zep.FXSwapAdapter(s, "EURUSD"), zep.ProductType_FX_SWAP, 1.0),
    "ndf": (ndf, lambda n: zep.NDFAdapter(n, "EURUSD"), zep.ProductType_NDF, 1.0),
    "xccy": (xccy, lambda s: zep.CrossCurrencySwapAdapter(s, "EURUSD"), zep.ProductType_CROSS_CURRENCY_SWAP, 1.0),
    "xccy resetting": (xccy_resetting, lambda s: zep.CrossCurrencySwapAdapter(s, "EURUSD"),
                       zep.ProductType_CROSS_CURRENCY_SWAP, 1.0),
}
FX_FAMILIES = ["fx_swap", "ndf", "xccy", "xccy resetting"]


def value(adapter, metric):
    return adapter.Compute(metric).Value()


@pytest.mark.parametrize("family", FAMILIES)
def test_pv_is_the_instruments_own_value_scaled_to_the_position(family):
    build, adapt, _, scale = FAMILIES[family]
    assert value(adapt(build()), zep.Metric_PV) == pytest.approx(build().PV() * scale, rel=1e-13)


@pytest.mark.parametrize("family", FAMILIES)
def test_dv01_is_the_central_difference_of_pv_on_curves_rebuilt_one_basis_point_up_and_down(family):
    build, adapt, _, scale = FAMILIES[family]
    expected = (build(BP).PV() - build(-BP).PV()) / 2 * scale
    assert value(adapt(build()), zep.Metric_DV01) == pytest.approx(expected, rel=1e-8, abs=1e-8)


@pytest.mark.parametrize("family", FAMILIES)
def test_key_rate_dv01s_add_up_to_about_the_dv01(family):
    build, adapt, _, _ = FAMILIES[family]
    adapter = adapt(build())
    profile = adapter.Profile(zep.Metric_KEY_RATE_DV01)
    assert sum(r.Value() for r in profile) == pytest.approx(value(adapter, zep.Metric_DV01), rel=1e-5, abs=1e-6)


@pytest.mark.parametrize("family", FX_FAMILIES)
def test_fx_delta_is_the_pv_change_of_a_one_percent_spot_move_on_the_rebuilt_instrument(family):
    build, adapt, _, _ = FAMILIES[family]
    expected = (build(spot=SPOT * 1.01).PV() - build(spot=SPOT * 0.99).PV()) / 2
    assert value(adapt(build()), zep.Metric_FX_DELTA) == pytest.approx(expected, rel=1e-10)


@pytest.mark.parametrize("family", FX_FAMILIES)
def test_a_spot_and_curve_scenario_revalues_like_the_instrument_on_the_moved_market(family):
    build, adapt, _, _ = FAMILIES[family]
    scenario = zep.Scenario("day", [zep.Shock.Spot("EURUSD", zep.FXForwardFactor_SPOT_SHOCK, -0.02, zep.ShockType_RELATIVE),
                                    zep.Shock.Curve("USD", zep.YieldCurveFactor_LEVEL, 10.0),
                                    zep.Shock.Curve("EUR", zep.YieldCurveFactor_LEVEL, 10.0)])
    assert scenario.PV(adapt(build())) == pytest.approx(build(10 * BP, SPOT * 0.98).PV(), rel=1e-12)


@pytest.mark.parametrize("family", FAMILIES)
def test_each_adapter_names_its_product_type_and_the_market_it_reads(family):
    build, adapt, product, _ = FAMILIES[family]
    adapter = adapt(build())
    assert adapter.Product() == product
    names = set(adapter.MarketNames())
    assert "EUR" in names and ("EURUSD" in names) == (family in FX_FAMILIES)


def test_par_rates_are_the_instruments_own_in_percent():
    assert value(zep.FRAAdapter(fra()), zep.Metric_PAR_RATE) == pytest.approx(fra().ParRate() * 100, rel=1e-13)
    assert value(zep.CrossCurrencySwapAdapter(xccy()), zep.Metric_PAR_RATE) == pytest.approx(
        xccy().ParSpread() * 100, rel=1e-13)


@pytest.mark.parametrize("adapter, metric", [
    (lambda: zep.BillAdapter(bill()), zep.Metric_FX_DELTA),
    (lambda: zep.FRAAdapter(fra()), zep.Metric_VEGA),
    (lambda: zep.FXSwapAdapter(fx_swap()), zep.Metric_DELTA),
    (lambda: zep.NDFAdapter(ndf()), zep.Metric_PAR_RATE),
    (lambda: zep.FloatingRateNoteAdapter(note()), zep.Metric_THETA),
])
def test_a_metric_the_family_does_not_have_is_unavailable_with_a_reason(adapter, metric):
    result = adapter().Compute(metric)
    assert not result.available and result.reason


def test_bad_input_raises_the_library_message():
    with pytest.raises(ValueError, match="no discount curve"):
        zep.BillAdapter(zep.MBill(1e6, "2024-10-15"))
    with pytest.raises(ValueError, match="face amount is not a finite number"):
        zep.FloatingRateNoteAdapter(note(), float("nan"))
    with pytest.raises(TypeError):
        zep.FRAAdapter(None)


CDS_REFERENCE = "2024-03-20"
CDS_TENORS = ["6M", "1Y", "2Y", "3Y", "5Y", "7Y", "10Y"]
CDS_SPREADS = [0.0050, 0.0060, 0.0075, 0.0090, 0.0110, 0.0120, 0.0125]


def cds_market(rate_shift=0.0, spread_shift=0.0):
    """The discount curve moved by rate_shift; the credit curve bootstrapped on the unmoved one."""
    rates = [0.03, 0.032, 0.035]
    base = zep.YieldCurve.FromTenors(CDS_REFERENCE, [zep.Period(t) for t in ("1Y", "5Y", "10Y")], rates, zep.Continuous)
    moved = zep.YieldCurve.FromTenors(CDS_REFERENCE, [zep.Period(t) for t in ("1Y", "5Y", "10Y")],
                                      [r + rate_shift for r in rates], zep.Continuous)
    credit = zep.CreditCurve(CDS_REFERENCE, CDS_TENORS, [s + spread_shift for s in CDS_SPREADS], 0.4, base)
    return zep.MCreditDefaultSwap("BUYER", 1e7, 0.01, CDS_REFERENCE, "2029-06-20", credit, moved)


def test_a_cds_has_its_pv_cs01_from_rebootstrapped_spreads_and_dv01_with_hazard_rates_held():
    adapter = zep.CreditDefaultSwapAdapter(cds_market())
    assert adapter.Product() == zep.ProductType_CDS
    assert value(adapter, zep.Metric_PV) == pytest.approx(cds_market().PV(), rel=1e-13)
    assert value(adapter, zep.Metric_CS01) == pytest.approx(cds_market(spread_shift=BP).PV() - cds_market().PV(),
                                                            rel=1e-6)
    dv01 = (cds_market(rate_shift=BP).PV() - cds_market(rate_shift=-BP).PV()) / 2
    assert value(adapter, zep.Metric_DV01) == pytest.approx(dv01, rel=1e-6)
    assert value(adapter, zep.Metric_PAR_RATE) == pytest.approx(cds_market().ParSpread() * 100, rel=1e-12)
    assert zep.UnitOf(zep.Metric_CS01) == zep.UnitCode_CCY_PER_BP
    assert not zep.BillAdapter(bill()).Compute(zep.Metric_CS01).available


def test_a_credit_spread_scenario_revalues_the_cds_on_the_rebootstrapped_curve():
    adapter = zep.CreditDefaultSwapAdapter(cds_market(), "ISSUER")
    assert "ISSUER" in adapter.MarketNames()
    scenario = zep.Scenario("wider", [zep.Shock.Credit("ISSUER", zep.CreditCurveFactor_CDS_SPREAD_LEVEL, 25.0)])
    assert scenario.PV(adapter) == pytest.approx(cds_market(spread_shift=25 * BP).PV(), rel=1e-12)
    # One basis point wider is CS01.
    one_bp = zep.Scenario("1bp", [zep.Shock.Credit("ISSUER", zep.CreditCurveFactor_CDS_SPREAD_LEVEL, 1.0)])
    assert one_bp.PV(adapter) - adapter.Compute(zep.Metric_PV).Value() == pytest.approx(
        adapter.Compute(zep.Metric_CS01).Value(), rel=1e-12)
    with pytest.raises(ValueError, match="The factor HAZARD_RATE_LEVEL is not supported as a shock"):
        zep.Shock.Credit("ISSUER", zep.CreditCurveFactor_HAZARD_RATE_LEVEL, 1.0)


def test_credit_spread_history_moves_reach_the_curve_in_basis_points():
    portfolio = zep.Portfolio()
    portfolio.Add("C", zep.CreditDefaultSwapAdapter(cds_market(), "ISSUER"))
    factors = [zep.Shock.Credit("ISSUER", zep.CreditCurveFactor_CDS_SPREAD_LEVEL, 0.0)]
    report = zep.HistoricalVaR(portfolio, factors, [[0.0100], [0.0110], [0.0095]], [0.5])
    pnl = [float(x) for x in report["pnl"]]
    base = cds_market().PV()
    assert pnl == pytest.approx([cds_market(spread_shift=10 * BP).PV() - base,
                                 cds_market(spread_shift=-15 * BP).PV() - base], rel=1e-9)
