"""Risk metrics through the adapters: DV01 against PVs on curves rebuilt one basis point up and
down, option Greeks against finite differences of PV, unavailable metrics with their reasons,
portfolio aggregation by tag against hand sums, and the code groups in their listed order."""
import pytest

import zep

REFERENCE = "2024-01-15"
PILLARS = ["2024-01-15", "2025-01-15", "2027-01-15", "2030-01-15", "2034-01-15", "2045-01-15"]
ZEROS = [0.031, 0.0318, 0.0295, 0.0301, 0.0312, 0.0330]
BP = 1e-4


def curve(shift=0.0, level=0.0):
    """The market rebuilt from its pillars with every zero rate moved, independent of any shift facility."""
    return zep.YieldCurve.FromZeroRates(REFERENCE, PILLARS, [z + shift + level for z in ZEROS], zep.Continuous,
                                        zep.DayCounter(zep.Act365Fixed))


def bond(shift=0.0):
    return zep.MBond(0.04, "2023-06-15", "2033-06-15", discountCurve=curve(shift))


def swap(shift=0.0, fixed_rate=0.03):
    return zep.MVanillaSwap(-1, 1e6, fixed_rate, "2024-01-17", "2034-01-17", curve(shift))


def basis_swap(shift=0.0):
    return zep.MBasisSwap(1e6, "2024-01-17", "2029-01-17", curve(shift), curve(shift), curve(shift, -0.01),
                          receivedSpread=0.001)


def forward(shift=0.0, spot=1.08):
    return zep.MFXForwardOutright(1, 1e6, 1.10, "2025-01-17", spot, "2024-01-17", curve(shift), curve(shift, -0.01))


def option(spot=1.08, vol=0.09, buy_sell=1):
    return zep.MVanillaOption(buy_sell, 0, 1e6, 1.1, spot, REFERENCE, "2024-07-15", "2024-07-17", "2024-07-17",
                              0.035, 0.02, vol)


def value(adapter, metric):
    return adapter.Compute(metric).Value()


@pytest.mark.parametrize("build, adapt, scale", [
    (bond, lambda b: zep.BondAdapter(b, 1e6), 1e6 / 100),
    (swap, zep.SwapAdapter, 1.0),
    (forward, zep.FXForwardAdapter, 1.0),
    (basis_swap, zep.SwapAdapter, 1.0),
])
def test_dv01_is_the_central_difference_of_pv_under_a_one_basis_point_parallel_move(build, adapt, scale):
    expected = (build(BP).NPV() - build(-BP).NPV()) / 2 * scale
    assert value(adapt(build()), zep.Metric_DV01) == pytest.approx(expected, rel=1e-9, abs=1e-7)


def test_key_rate_dv01_of_one_pillar_is_the_pv_change_of_that_pillars_rate():
    def moved(pillar, shift):
        rates = [z + (shift if i == pillar else 0.0) for i, z in enumerate(ZEROS)]
        return zep.MBond(0.04, "2023-06-15", "2033-06-15", discountCurve=zep.YieldCurve.FromZeroRates(
            REFERENCE, PILLARS, rates, zep.Continuous, zep.DayCounter(zep.Act365Fixed)))

    adapter = zep.BondAdapter(bond(), 1e6)
    profile = adapter.Profile(zep.Metric_KEY_RATE_DV01)
    assert [r.label.split(":")[1] for r in profile] == [str(zep.Date(p)) for p in PILLARS]
    expected = [(moved(i, BP).PV() - moved(i, -BP).PV()) / 2 * 1e4 for i in range(len(PILLARS))]
    assert [r.Value() for r in profile] == pytest.approx(expected, rel=1e-9, abs=1e-7)
    assert sum(expected) == pytest.approx(value(adapter, zep.Metric_DV01), rel=1e-6)
    assert not adapter.Compute(zep.Metric_KEY_RATE_DV01).available


@pytest.mark.parametrize("adapt, product", [
    (lambda: zep.BondAdapter(bond()), zep.ProductType_FIXED_RATE_BOND),
    (lambda: zep.SwapAdapter(swap()), zep.ProductType_IRS),
    (lambda: zep.SwapAdapter(zep.MVanillaSwap(1, 1e6, 0.03, "2024-01-17", "2029-01-17", curve(),
                                              floatingKind="OVERNIGHT", index="ESTR", floatTenor="1Y")),
     zep.ProductType_OIS),
    (lambda: zep.SwapAdapter(basis_swap()), zep.ProductType_BASIS_SWAP),
    (lambda: zep.FXForwardAdapter(forward()), zep.ProductType_FX_FORWARD),
    (lambda: zep.VanillaOptionAdapter(option()), zep.ProductType_FX_VANILLA_OPTION),
])
def test_each_adapter_names_its_product_type(adapt, product):
    assert adapt().Product() == product


def test_pv_metrics_are_the_instruments_own_values():
    assert value(zep.BondAdapter(bond(), 1e6), zep.Metric_PV) == pytest.approx(bond().PV() * 1e4, rel=1e-14)
    assert value(zep.SwapAdapter(swap()), zep.Metric_NPV) == pytest.approx(swap().NPV(), rel=1e-14)
    assert value(zep.VanillaOptionAdapter(option()), zep.Metric_MARKET_VALUE) == pytest.approx(
        option().MarketValue(), rel=1e-14)


def test_option_greeks_match_finite_differences_of_pv():
    adapter, h = zep.VanillaOptionAdapter(option(buy_sell=-1)), 1e-4
    up, mid, down = (option(1.08 + d, buy_sell=-1).PV() for d in (h, 0.0, -h))
    one_percent = 0.01 * 1.08
    assert value(adapter, zep.Metric_DELTA) == pytest.approx((up - down) / (2 * h) * one_percent, rel=1e-5)
    assert value(adapter, zep.Metric_GAMMA) == pytest.approx((up - 2 * mid + down) / h**2 * one_percent**2, rel=1e-4)
    vega = (option(vol=0.09 + h, buy_sell=-1).PV() - option(vol=0.09 - h, buy_sell=-1).PV()) / (2 * h)
    assert value(adapter, zep.Metric_VEGA) == pytest.approx(vega * 0.01, rel=1e-5)


def test_fx_delta_of_a_forward_is_its_pv_slope_per_percent_of_spot():
    h = 1e-4
    slope = (forward(spot=1.08 + h).NPV() - forward(spot=1.08 - h).NPV()) / (2 * h)
    assert value(zep.FXForwardAdapter(forward()), zep.Metric_FX_DELTA) == pytest.approx(slope * 0.0108, rel=1e-9)


@pytest.mark.parametrize("adapt, metric", [
    (lambda: zep.BondAdapter(bond()), zep.Metric_VEGA),
    (lambda: zep.SwapAdapter(swap()), zep.Metric_DELTA),
    (lambda: zep.FXForwardAdapter(forward()), zep.Metric_THETA),
    (lambda: zep.VanillaOptionAdapter(option()), zep.Metric_DV01),
    (lambda: zep.SwapAdapter(basis_swap()), zep.Metric_PAR_RATE),
])
def test_a_metric_the_instrument_cannot_compute_is_unavailable_with_a_reason(adapt, metric):
    result = adapt().Compute(metric)
    assert not result.available and result.reason
    assert result.provenance == zep.MetricProvenance_NORMAL
    with pytest.raises(RuntimeError, match="is unavailable: "):
        result.Value()


def test_several_metrics_come_back_as_a_sequence():
    results = zep.BondAdapter(bond()).Compute([zep.Metric_PV, zep.Metric_DV01, zep.Metric_VEGA])
    assert isinstance(results, zep.MetricResultVector) and len(results) == 3
    assert [r.metric for r in results] == [zep.Metric_PV, zep.Metric_DV01, zep.Metric_VEGA]
    assert [r.available for r in results] == [True, True, False]
    assert results[-1].unit == zep.UnitCode_CCY_PER_PCT


@pytest.mark.parametrize("metric, unit, aggregation", [
    (zep.Metric_PV, zep.UnitCode_CCY, zep.MetricAggregationType_SUM),
    (zep.Metric_DV01, zep.UnitCode_CCY_PER_BP, zep.MetricAggregationType_SUM),
    (zep.Metric_THETA, zep.UnitCode_CCY_PER_DAY, zep.MetricAggregationType_SUM),
    (zep.Metric_PAR_RATE, zep.UnitCode_PCT, zep.MetricAggregationType_NO_AGGREGATION),
    (zep.Metric_MODIFIED_DURATION, zep.UnitCode_YEAR, zep.MetricAggregationType_MARKET_VALUE_WEIGHTED),
])
def test_every_metric_has_one_unit_and_aggregation_rule(metric, unit, aggregation):
    assert (zep.UnitOf(metric), zep.AggregationOf(metric)) == (unit, aggregation)


@pytest.mark.parametrize("group, names", [
    ("UnitCode", "CCY CCY_PER_BP CCY_PER_BP2 CCY_PER_PCT CCY_PER_DAY YEAR YEAR_PER_BP PCT BP PROB COUNT"),
    ("MetricAggregationType", "SUM WEIGHTED_AVERAGE MARKET_VALUE_WEIGHTED NO_AGGREGATION SPECIAL_CALCULATION "
                              "PORTFOLIO_RECALC_ONLY COMPONENT_SUM MAX MIN FIRST LAST"),
    ("MetricProvenance", "NORMAL PLACEHOLDER MOCK DEGRADED ERROR_FALLBACK"),
])
def test_code_groups_are_numbered_in_their_listed_order(group, names):
    assert [getattr(zep, f"{group}_{name}") for name in names.split()] == list(range(len(names.split())))


def book():
    portfolio = zep.Portfolio()
    portfolio.Add("B1", zep.BondAdapter(bond(), 1e6), 2.0, {"desk": "rates", "ccy": "EUR"})
    portfolio.Add("S1", zep.SwapAdapter(swap()), -1.5, {"desk": "rates", "ccy": "EUR"})
    portfolio.Add("F1", zep.FXForwardAdapter(forward()), 3.0, {"desk": "fx", "ccy": "USD"})
    portfolio.Add("O1", zep.VanillaOptionAdapter(option()), 1.0, {"desk": "fx"})
    return portfolio


def test_aggregation_by_tag_equals_hand_sums():
    b, s, f, o = zep.BondAdapter(bond(), 1e6), zep.SwapAdapter(swap()), zep.FXForwardAdapter(forward()), \
        zep.VanillaOptionAdapter(option())
    by_desk = book().AggregateBy(zep.Metric_PV, "desk")
    assert sorted(by_desk.keys()) == ["fx", "rates"]
    assert by_desk["rates"].Value() == pytest.approx(2 * value(b, zep.Metric_PV) - 1.5 * value(s, zep.Metric_PV))
    assert by_desk["fx"].Value() == pytest.approx(3 * value(f, zep.Metric_PV) + value(o, zep.Metric_PV))
    by_currency = book().AggregateBy(zep.Metric_DV01, "ccy")
    assert by_currency["EUR"].Value() == pytest.approx(2 * value(b, zep.Metric_DV01) - 1.5 * value(s, zep.Metric_DV01))
    assert not by_currency[""].available and "O1" in by_currency[""].reason  # untagged option: no DV01


def test_a_metric_without_aggregation_is_unavailable_over_several_trades():
    portfolio = zep.Portfolio()
    portfolio.Add("S1", zep.SwapAdapter(swap()), 1.0, {"book": "a"})
    portfolio.Add("S2", zep.SwapAdapter(swap(fixed_rate=0.04)), 1.0, {"book": "b"})
    assert not portfolio.Aggregate(zep.Metric_PAR_RATE).available
    assert portfolio.AggregateBy(zep.Metric_PAR_RATE, "book")["a"].Value() == pytest.approx(swap().ParRate() * 100)


def test_results_outlive_the_containers_they_came_from():
    # Elements read straight off temporaries must own their data, not borrow it.
    assert isinstance(book().AggregateBy(zep.Metric_PV, "desk"), dict)
    first = zep.BondAdapter(bond()).Compute([zep.Metric_PV, zep.Metric_DV01])[0]
    assert first.Value() == pytest.approx(value(zep.BondAdapter(bond()), zep.Metric_PV))


def test_bad_input_raises_the_library_message():
    portfolio = book()
    with pytest.raises(ValueError, match="trade X has no instrument"):
        portfolio.Add("X", None)
    with pytest.raises(ValueError, match="trade B1 is already held"):
        portfolio.Add("B1", zep.BondAdapter(bond()))
    with pytest.raises(TypeError):
        zep.BondAdapter(None)
    with pytest.raises(ValueError, match="discount curve is None"):
        zep.BondAdapter(zep.MBond(0.04, "2023-06-15", "2033-06-15"))
    with pytest.raises(ValueError, match="Unknown metric code 999"):
        zep.BondAdapter(bond()).Compute(999)
    assert portfolio.Size() == 4


def test_results_and_adapters_say_what_they_are():
    adapter = zep.SwapAdapter(swap())
    assert repr(adapter) == f"<SwapAdapter: {swap().Describe()}>"
    assert repr(adapter.Compute(zep.Metric_DELTA)).startswith("<MetricResult DELTA unavailable: ")
    dv01 = adapter.Compute(zep.Metric_DV01)
    assert repr(dv01) == f"<MetricResult DV01: {dv01.value!r}>"
    assert repr(adapter.Profile(zep.Metric_KEY_RATE_DV01)[1]).startswith("<MetricResult KEY_RATE_DV01 curve 1:")
