"""The pricing report of a scripted product, written from MXScriptStructure."""
import datetime
import json
import os
import re

import pytest

import zep

DEFINITION = """
valuation_date: 2024-01-02
market: {spot: 100.0, volatility: 0.25, rate1: 0.03, rate2: 0.0}
model: {type: BlackScholes}
simulation: {paths: 4000, seed: 7}
price_variable: PAYOFF
events:
  - {date: 2024-01-02, script: "ALIVE = 1"}
  - schedule: {start: 2024-01-03, end: 2024-02-02, weekdays_only: true}
    script: "IF SPOT() < 80 THEN KI = 1 ENDIF"
  - date: 2024-07-02
    script: |
      IF KI = 1 THEN
        PAYOFF PAYS SPOT() / 100
      ELSE
        PAYOFF PAYS 1
      ENDIF
"""


def _embedded(text, name):
    return json.loads(re.search(r"<!-- " + name + r"=(\{.*?\})-->", text, re.S).group(1))


@pytest.fixture(scope="module")
def report(tmp_path_factory):
    note = zep.MXScriptStructure.FromDefinition(DEFINITION)
    directory = tmp_path_factory.mktemp("reports") / "desk" / "equity"
    path = note.WriteReport(str(directory), "note", {"Knock-in": 80.0}, {"Delta": 0.25})
    return note, str(directory), path, open(path, encoding="utf-8").read()


def test_report_path_is_directory_name_and_suffix(report):
    _, directory, path, _ = report
    assert path == directory + "/note_xscript.md"
    assert os.listdir(directory) == ["note_xscript.md"]


def test_report_follows_the_template_with_the_market_rows(report):
    _, _, _, text = report
    headings = [line for line in text.splitlines() if line.startswith("## ") and not line.startswith("## 1")]
    assert headings.index("## Simuation Statistics") < headings.index("## 7. 定价过程 (Pricing Process)")
    for row in ["| **Today** | 02/01/2024 |", "| **Spot** | 100 |", "| **Volatility** | 0.25 |",
                "| **Rate1** | 0.03 |", "| **Rate2** | 0 |", "| **Delta** | 0.25 |"]:
        assert row in text
    assert re.search(r"\| \*\*Report time\*\* \| \d{4}-\d\d-\d\d \d\d:\d\d:\d\d \|", text)
    assert "| **Compiler** | GCC " in text


def test_embedded_data_matches_the_priced_product(report):
    note, _, _, text = report
    simulation, schedule = _embedded(text, "SimulationData"), _embedded(text, "SCHEDULE")
    dates = [datetime.date.fromisoformat(d) for d in simulation["dates"]]
    assert dates[0] == datetime.date(2024, 1, 2) and dates[-1] == datetime.date(2024, 7, 2)
    assert all(d.weekday() < 5 for d in dates[1:-1]), "the schedule skips weekends"
    assert len(dates) == 2 + 23  # weekdays from 3 January to 2 February 2024
    assert len(simulation["paths"]) == 3 and all(len(p) == len(dates) for p in simulation["paths"])
    assert simulation["levels"] == [{"name": "Knock-in", "value": 80.0}]
    last = schedule["events"][-1]
    assert last["discountFactor"] == pytest.approx(pytest.importorskip("math").exp(-0.03 * 182 / 365), rel=1e-12)
    assert schedule["price"] == pytest.approx(note.Price(), rel=1e-12)


def test_failures_leave_no_file(tmp_path):
    note = zep.MXScriptStructure.FromDefinition(DEFINITION)
    with pytest.raises(RuntimeError, match="^MXScriptStructure::WriteReport failed: Invalid report name 'a/b'"):
        note.WriteReport(str(tmp_path), "a/b")
    with pytest.raises(RuntimeError, match="^MXScriptStructure::WriteReport failed: Error opening output file: /proc/zep/n_xscript.md"):
        note.WriteReport("/proc/zep", "n")
    with pytest.raises(RuntimeError, match="not initialized!"):
        zep.MXScriptStructure().WriteReport(str(tmp_path), "n")
    assert os.listdir(tmp_path) == []
