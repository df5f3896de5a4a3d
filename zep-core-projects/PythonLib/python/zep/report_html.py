"""Turns a scripted product's Markdown pricing report into a standalone HTML page.

The report's two plot markers become inline SVG charts drawn from the data the report embeds:
PLOT1 the sample paths of the underlying with the product's levels (barrier, autocall trigger)
and the 5%-95% band of all paths; PLOT2 the event schedule with each date's discount factor.
The page needs no network access and no script to be viewed.
"""
import html
import json
import re

_WIDTH, _HEIGHT, _MARGIN = 760, 320, 48
_PATH_COLOURS = ["#1f77b4", "#ff7f0e", "#2ca02c", "#9467bd", "#8c564b"]
_LEVEL_COLOURS = ["#d62728", "#17becf", "#bcbd22", "#e377c2"]


def _embedded(markdown, name):
    match = re.search(r"<!-- " + name + r"=(\{.*?\})-->", markdown, re.S)
    return json.loads(match.group(1)) if match else None


class _Axes:
    """Maps data coordinates onto the SVG canvas."""

    def __init__(self, xs, ys):
        self.x0, self.x1 = min(xs), max(xs)
        self.y0, self.y1 = min(ys), max(ys)
        if self.x1 == self.x0:
            self.x1 = self.x0 + 1.0
        pad = 0.05 * (self.y1 - self.y0 or abs(self.y1) or 1.0)
        self.y0, self.y1 = self.y0 - pad, self.y1 + pad

    def x(self, value):
        return _MARGIN + (value - self.x0) / (self.x1 - self.x0) * (_WIDTH - 2 * _MARGIN)

    def y(self, value):
        return _HEIGHT - _MARGIN - (value - self.y0) / (self.y1 - self.y0) * (_HEIGHT - 2 * _MARGIN)

    def frame(self, x_label, y_label):
        parts = [f'<rect x="{_MARGIN}" y="{_MARGIN}" width="{_WIDTH - 2 * _MARGIN}" '
                 f'height="{_HEIGHT - 2 * _MARGIN}" fill="none" stroke="#999"/>']
        for i in range(5):
            value = self.y0 + (self.y1 - self.y0) * i / 4
            parts.append(f'<text x="{_MARGIN - 6}" y="{self.y(value) + 4:.1f}" text-anchor="end" '
                         f'font-size="11">{value:.4g}</text>')
        parts.append(f'<text x="{_WIDTH / 2}" y="{_HEIGHT - 10}" text-anchor="middle" font-size="12">{x_label}</text>')
        parts.append(f'<text x="14" y="{_HEIGHT / 2}" text-anchor="middle" font-size="12" '
                     f'transform="rotate(-90 14 {_HEIGHT / 2})">{y_label}</text>')
        return parts


def _polyline(axes, xs, ys, colour, width=1.6, dash=""):
    points = " ".join(f"{axes.x(x):.1f},{axes.y(y):.1f}" for x, y in zip(xs, ys))
    dash = f' stroke-dasharray="{dash}"' if dash else ""
    return f'<polyline points="{points}" fill="none" stroke="{colour}" stroke-width="{width}"{dash}/>'


def _svg(title, parts, legend):
    items = "".join(
        f'<span class="key"><span style="background:{colour}"></span>{html.escape(name)}</span>'
        for name, colour in legend)
    return (f'<figure><figcaption>{html.escape(title)}</figcaption>'
            f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {_WIDTH} {_HEIGHT}" width="{_WIDTH}" '
            f'height="{_HEIGHT}">{"".join(parts)}</svg><div class="legend">{items}</div></figure>')


def paths_chart(simulation):
    """Sample paths, the 5%-95% band of all paths and the product's levels."""
    times = [0.0] + simulation["times"]
    paths = [[simulation["spot"]] + path for path in simulation["paths"]]
    band = simulation.get("statistics", {})
    levels = simulation.get("levels", [])
    values = [v for path in paths for v in path] + [level["value"] for level in levels]
    values += band.get("p5", []) + band.get("p95", [])
    axes = _Axes(times, values)
    parts = axes.frame("time (years)", "spot")
    legend = []
    if band.get("p5") and band.get("p95"):
        upper = [(t, v) for t, v in zip(times[1:], band["p95"])]
        lower = [(t, v) for t, v in zip(times[1:], band["p5"])][::-1]
        outline = " ".join(f"{axes.x(t):.1f},{axes.y(v):.1f}" for t, v in upper + lower)
        parts.append(f'<polygon points="{outline}" fill="#1f77b4" fill-opacity="0.12" stroke="none"/>')
        legend.append(("5%-95% of all paths", "#c6dbef"))
    for index, path in enumerate(paths):
        colour = _PATH_COLOURS[index % len(_PATH_COLOURS)]
        parts.append(_polyline(axes, times, path, colour))
        legend.append((f"path {index + 1}", colour))
    for index, level in enumerate(levels):
        colour = _LEVEL_COLOURS[index % len(_LEVEL_COLOURS)]
        parts.append(_polyline(axes, [times[0], times[-1]], [level["value"]] * 2, colour, 1.2, "6 4"))
        legend.append((f'{level["name"]} {level["value"]:.4g}', colour))
    return _svg("Simulated paths of the underlying", parts, legend)


def schedule_chart(schedule):
    """The event dates on a time line: a bar at each payment date, its height the discount
    factor applied there; a tick at each date that only observes the underlying."""
    events = schedule["events"]
    times = [0.0] + [event["time"] for event in events]
    axes = _Axes(times, [0.0, 1.0] + [event["discountFactor"] for event in events])
    parts = axes.frame("time (years)", "discount factor")
    paying = [event for event in events if event.get("pays", True)]
    bar = max(3.0, min(18.0, (_WIDTH - 2 * _MARGIN) / max(len(paying), 1) * 0.5))
    base = axes.y(axes.y0)
    for event in events:
        x = axes.x(event["time"])
        if not event.get("pays", True):
            parts.append(f'<line x1="{x:.1f}" y1="{base:.1f}" x2="{x:.1f}" y2="{base - 8:.1f}" stroke="#999"/>')
            continue
        top = axes.y(event["discountFactor"])
        parts.append(f'<rect x="{x - bar / 2:.1f}" y="{top:.1f}" width="{bar:.1f}" height="{base - top:.1f}" '
                     f'fill="#2ca02c" fill-opacity="0.75"><title>{html.escape(event["date"])}: '
                     f'{event["discountFactor"]:.6f}</title></rect>')
    legend = [("payment date: discount factor", "#2ca02c"), ("observation date", "#999")]
    return _svg(f"Payment schedule ({len(paying)} payment dates, {len(events) - len(paying)} observations)",
                parts, legend)


def _inline(text):
    text = html.escape(text, quote=False).replace("&lt;br&gt;", "<br>")
    return re.sub(r"\*\*(.+?)\*\*", r"<strong>\1</strong>", text)


def _table(rows):
    def cells(row):
        return [cell.strip().replace("\\|", "|") for cell in re.split(r"(?<!\\)\|", row.strip())[1:-1]]

    head = "".join(f"<th>{_inline(cell)}</th>" for cell in cells(rows[0]))
    body = "".join("<tr>" + "".join(f"<td>{_inline(cell)}</td>" for cell in cells(row)) + "</tr>"
                   for row in rows[2:])
    return f"<table><thead><tr>{head}</tr></thead><tbody>{body}</tbody></table>"


def markdown_to_html(markdown):
    """The Markdown of a report as an HTML body, with the two plot markers drawn as charts."""
    simulation, schedule = _embedded(markdown, "SimulationData"), _embedded(markdown, "SCHEDULE")
    out, table, bullets = [], [], []

    def flush():
        if table:
            out.append(_table(table))
            table.clear()
        if bullets:
            out.append("<ul>" + "".join(f"<li>{_inline(b)}</li>" for b in bullets) + "</ul>")
            bullets.clear()

    for line in markdown.splitlines():
        if line.startswith("|"):
            table.append(line)
            continue
        if line.startswith("- "):
            bullets.append(line[2:])
            continue
        flush()
        if line == "<!--PLOT1-->" and simulation:
            out.append(paths_chart(simulation))
        elif line == "<!--PLOT2-->" and schedule:
            out.append(schedule_chart(schedule))
        elif line.startswith("<!--"):
            continue
        elif heading := re.match(r"^(#{1,6}) (.*)$", line):
            level = len(heading.group(1))
            out.append(f"<h{level}>{_inline(heading.group(2))}</h{level}>")
        elif line.strip():
            out.append(f"<p>{_inline(line)}</p>")
    flush()
    return "\n".join(out)


_STYLE = """body{font-family:sans-serif,"Noto Sans CJK SC","PingFang SC","Microsoft YaHei";max-width:960px;margin:2em auto;color:#222}
table{border-collapse:collapse;margin:0.6em 0}td,th{border:1px solid #ccc;padding:3px 8px;font-size:13px}
th{background:#f3f3f3}figure{margin:1em 0}figcaption{font-weight:bold;margin-bottom:4px}
.legend{font-size:12px}.key{margin-right:14px}.key span{display:inline-block;width:12px;height:12px;
margin-right:4px;vertical-align:middle}h1{font-size:1.5em}h2{font-size:1.2em;border-bottom:1px solid #ddd}"""


def report_to_html(markdown_path, html_path=None):
    """Writes the HTML view of a Markdown report (beside it by default) and returns its path."""
    with open(markdown_path, encoding="utf-8") as source:
        markdown = source.read()
    html_path = html_path or re.sub(r"\.md$", "", markdown_path) + ".html"
    title = markdown.splitlines()[0].lstrip("# ") if markdown else "Report"
    page = (f'<!DOCTYPE html>\n<html><head><meta charset="utf-8"><title>{html.escape(title)}</title>'
            f"<style>{_STYLE}</style></head><body>\n{markdown_to_html(markdown)}\n</body></html>\n")
    with open(html_path, "w", encoding="utf-8") as target:
        target.write(page)
    return html_path
