"""The scripted product report's template, assembly and HTML view."""
import json

import pytest

import zep


def _sections(**overrides):
    keys = [line.split(" ", 1)[1] for line in zep.ScriptingReporter.Template().splitlines()
            if line.startswith("%placeholder%")]
    sections = {key: f"text of {key}" for key in keys}
    simulation = {"spot": 100.0, "times": [0.5, 1.0], "dates": ["2024-07-15", "2025-01-15"],
                  "paths": [[101.0, 99.0], [95.0, 120.0], [90.0, 60.0]],
                  "levels": [{"name": "Barrier", "value": 70.0}],
                  "statistics": {"mean": [100.0, 101.0], "p5": [80.0, 70.0], "p95": [120.0, 135.0]}}
    schedule = {"events": [{"date": "2024-07-15", "time": 0.5, "discountFactor": 0.985, "script": "X = 1"},
                           {"date": "2025-01-15", "time": 1.0, "discountFactor": 0.97, "script": "C PAYS 1"}]}
    sections["price_path"] = "<!-- SimulationData=" + json.dumps(simulation) + "-->\n|Date| Path 1 |\n|--|--|"
    sections["calculation_process"] = "<!-- SCHEDULE=" + json.dumps(schedule) + "-->"
    sections["market_data"] = "|Name | Value |\n|--|--|\n| **Spot** | 100 |"
    sections.update(overrides)
    return sections


def test_template_keeps_its_fixed_lines_in_order():
    lines = zep.ScriptingReporter.Template().splitlines()
    assert len(lines) == 27
    assert lines[6] == "## 6. 蒙特卡洛模拟 (Monte-Carlo Simulation)"
    assert lines[10] == "## Simuation Statistics"
    assert [i for i, line in enumerate(lines) if line.startswith("<!--PLOT")] == [8, 14]
    assert sum(line.startswith("%placeholder% ") for line in lines) == 15


def test_unknown_section_key_is_reported():
    with pytest.raises(IndexError, match=r"^invalid map<K, T> key$"):
        zep.ScriptingReporter.Assemble("%placeholder% nowhere\n", {})


def test_html_view_draws_both_charts_offline(tmp_path):
    markdown = zep.ScriptingReporter.Assemble(zep.ScriptingReporter.Template(), _sections())
    source = tmp_path / "call_xscript.md"
    source.write_text(markdown, encoding="utf-8")
    page = open(zep.report_to_html(str(source)), encoding="utf-8").read()
    assert page.count("<svg") == 2 and "<!--PLOT" not in page
    assert "Barrier 70" in page and "<td><strong>Spot</strong></td><td>100</td>" in page
    assert "<polyline" in page and "<rect x=" in page
    # Nothing to fetch: the only URL is the SVG namespace.
    assert page.replace('xmlns="http://www.w3.org/2000/svg"', "").count("http") == 0
