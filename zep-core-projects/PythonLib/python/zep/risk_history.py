"""The history of a risk run: daily levels of market factors from a CSV file (see zep.risk), each
column a factor turned into the Shock whose move it replays."""
import csv
import math

from . import zeplib


def _factor(name):
    parts = name.split(":")
    kind = parts[0]
    if kind == "curve" and len(parts) == 2:
        return zeplib.Shock.Curve(parts[1], zeplib.YieldCurveFactor_LEVEL, 0.0)
    if kind == "curve" and len(parts) == 3:
        return zeplib.Shock.Curve(parts[1], zeplib.YieldCurveFactor_KEY_RATE, 0.0, int(parts[2]))
    if kind == "spot" and len(parts) == 2:
        return zeplib.Shock.Spot(parts[1], zeplib.FXForwardFactor_SPOT_SHOCK, 0.0, zeplib.ShockType_RELATIVE)
    if kind == "credit" and len(parts) == 2:
        return zeplib.Shock.Credit(parts[1], zeplib.CreditCurveFactor_CDS_SPREAD_LEVEL, 0.0)
    if kind == "vol" and len(parts) == 2:
        return zeplib.Shock.Vol(parts[1], zeplib.VolSurfaceFactor_ATM_VOL_LEVEL, 0.0, zeplib.ShockType_ABSOLUTE)
    raise ValueError(f"history column {name!r}: a factor is curve:<label>[:<pillar>], spot:<pair>, vol:<pair> "
                     "or credit:<issuer>")


def load_history(path):
    """(dates, factors as Shocks, levels as rows of floats) from the history CSV at path; a gap
    or a non-number is kept as NaN, which the VaR refuses naming the factor and the day."""
    with open(path, newline="", encoding="utf-8") as file:
        rows = list(csv.reader(file))
    if not rows or not rows[0] or rows[0][0] != "date":
        raise ValueError(f"{path}: a history starts with a header row whose first column is 'date'")
    factors = [_factor(name.strip()) for name in rows[0][1:]]
    dates, levels = [], []
    for row in rows[1:]:
        if not row:
            continue
        dates.append(row[0])
        levels.append([_level(cell) for cell in row[1:]] + [math.nan] * (len(factors) + 1 - len(row)))
    return dates, factors, levels


def _level(cell):
    try:
        return float(cell)
    except ValueError:
        return math.nan
