"""The historical VaR report of a risk run: a few lines for the console, and a Markdown page with
the P&L histogram and the top contributors drawn as inline SVG."""
import html
import os

TOP_CONTRIBUTORS = 10
BINS = 40
WIDTH, HEIGHT, MARGIN = 640, 240, 40


def _money(value):
    return f"{value:,.0f}"


def _var_rows(figures):
    for c, var, es, rank in zip(figures["confidence"], figures["var"], figures["es"], figures["var_scenario"]):
        yield c, var, es, figures["scenario_dates"][rank]


def _top_contributors(figures, confidence_index):
    shares = [(group or "(untagged)", values[confidence_index]) for group, values in figures["components"].items()]
    return sorted(shares, key=lambda share: -abs(share[1]))[:TOP_CONTRIBUTORS]


def text(figures):
    """The console report."""
    lines = [f"Historical VaR: {figures['trades']} trades, {len(figures['pnl'])} scenarios "
             f"({figures['first_date']} to {figures['last_date']}), portfolio PV {_money(figures['pv'])}"]
    for c, var, es, date in _var_rows(figures):
        lines.append(f"  {c:.1%}  VaR {_money(var):>14}  ES {_money(es):>14}  (VaR day {date})")
    last = len(figures["confidence"]) - 1
    if last >= 0 and figures["components"]:
        lines.append(f"  top contributors to the {figures['confidence'][last]:.1%} VaR by {figures['tag'] or 'trade'}:")
        for group, share in _top_contributors(figures, last)[:5]:
            lines.append(f"    {group:<24} {_money(share):>14}")
    for c, terms in zip(figures["confidence"], figures["explain"]):
        lines.append(f"  {c:.1%} VaR day explained: " + ", ".join(f"{name} {_money(terms[name])}" for name in terms))
    lines.append(f"  trades that failed to build: {len(figures['failures'])}")
    for trade_id, message in figures["failures"]:
        lines.append(f"    {trade_id}: {message}")
    return "\n".join(lines)


def _histogram_svg(pnl, var_levels):
    low, high = min(pnl), max(pnl)
    if high <= low:
        high = low + 1.0
    width = (high - low) / BINS
    counts = [0] * BINS
    for value in pnl:
        counts[min(int((value - low) / width), BINS - 1)] += 1
    plot_w, plot_h = WIDTH - 2 * MARGIN, HEIGHT - 2 * MARGIN
    x = lambda value: MARGIN + (value - low) / (high - low) * plot_w  # noqa: E731
    tallest = max(counts)
    bars = []
    for i, count in enumerate(counts):
        h = count / tallest * plot_h
        colour = "#c0392b" if low + (i + 1) * width <= -var_levels[-1] else "#2e86c1"
        bars.append(f'<rect x="{MARGIN + i * plot_w / BINS:.1f}" y="{MARGIN + plot_h - h:.1f}" '
                    f'width="{plot_w / BINS - 1:.1f}" height="{h:.1f}" fill="{colour}"/>')
    marks = [f'<line x1="{x(-v):.1f}" y1="{MARGIN}" x2="{x(-v):.1f}" y2="{MARGIN + plot_h}" stroke="black" '
             f'stroke-dasharray="4 3"/>' for v in var_levels]
    labels = (f'<text x="{MARGIN}" y="{HEIGHT - 10}" font-size="11">{html.escape(_money(low))}</text>'
              f'<text x="{WIDTH - MARGIN}" y="{HEIGHT - 10}" font-size="11" text-anchor="end">'
              f'{html.escape(_money(high))}</text>'
              f'<text x="{WIDTH / 2}" y="{HEIGHT - 10}" font-size="11" text-anchor="middle">P&amp;L</text>')
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{HEIGHT}">'
            + "".join(bars) + "".join(marks) + labels + "</svg>")


def _contributors_svg(shares):
    row, plot_w = 22, WIDTH - 260
    largest = max((abs(share) for _, share in shares), default=1.0) or 1.0
    items = []
    for i, (group, share) in enumerate(shares):
        y = 10 + i * row
        w = abs(share) / largest * plot_w / 2
        x0 = 180 + plot_w / 2
        x = x0 if share >= 0 else x0 - w
        colour = "#c0392b" if share >= 0 else "#27ae60"
        items.append(f'<text x="170" y="{y + 14}" font-size="12" text-anchor="end">{html.escape(group)}</text>'
                     f'<rect x="{x:.1f}" y="{y}" width="{w:.1f}" height="{row - 6}" fill="{colour}"/>'
                     f'<text x="{WIDTH - 5}" y="{y + 14}" font-size="11" text-anchor="end">'
                     f'{html.escape(_money(share))}</text>')
    height = 20 + len(shares) * row
    return f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{height}">' + "".join(items) + "</svg>"


def write(figures, directory):
    """Writes <directory>/risk_report.md and returns its path."""
    os.makedirs(directory, exist_ok=True)
    lines = ["# Historical VaR report", "",
             f"{figures['trades']} trades valued at {_money(figures['pv'])}; "
             f"{len(figures['pnl'])} historical scenarios from {figures['first_date']} to {figures['last_date']}, "
             "each revalued in full.", "",
             "| confidence | VaR | expected shortfall | VaR scenario |", "|---|---|---|---|"]
    lines += [f"| {c:.1%} | {_money(var)} | {_money(es)} | {date} |" for c, var, es, date in _var_rows(figures)]
    lines += ["", "## What the VaR days were made of", "",
              "Each VaR day's P&L (full revaluation) against the book's sensitivities times the day's moves; "
              "the remainder is what they leave unexplained.", "",
              "| confidence | full | delta | gamma | vega | rates | credit | unexplained |",
              "|---|---|---|---|---|---|---|---|"]
    lines += [f"| {c:.1%} | " + " | ".join(_money(terms[name]) for name in terms) + " |"
              for c, terms in zip(figures["confidence"], figures["explain"])]
    lines += ["", "## P&L distribution", "",
              "Scenario P&Ls of the portfolio; the dashed lines mark minus each VaR, the red bars the tail.", "",
              _histogram_svg(figures["pnl"], sorted(figures["var"])), ""]
    last = len(figures["confidence"]) - 1
    if figures["components"] and last >= 0:
        shares = _top_contributors(figures, last)
        lines += [f"## Top contributors to the {figures['confidence'][last]:.1%} VaR by {figures['tag'] or 'trade'}",
                  "", "Component VaR: minus each group's P&L in the VaR scenario; the components add up to the VaR.",
                  "", _contributors_svg(shares), "", "| group | component VaR |", "|---|---|"]
        lines += [f"| {html.escape(group)} | {_money(share)} |" for group, share in shares]
    lines += ["", "## Trades that failed to build", ""]
    lines += [f"- {html.escape(trade_id)}: {html.escape(message)}" for trade_id, message in figures["failures"]] or ["None."]
    path = os.path.join(directory, "risk_report.md")
    with open(path, "w", encoding="utf-8") as report:
        report.write("\n".join(lines) + "\n")
    return path
