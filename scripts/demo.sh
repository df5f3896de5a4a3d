#!/usr/bin/env bash
# The main job: installs what it needs (scripts/setup.sh), then runs the pricing demo.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
# Warnings and worse only: the demo's own output is the point.
export ZEP_LOGLEVEL="${ZEP_LOGLEVEL:-warning}"
.venv/bin/python examples/dates_demo.py
echo
.venv/bin/python examples/vanilla_demo.py
echo
.venv/bin/python examples/fx_vol_surface_demo.py
echo
.venv/bin/python examples/barrier_demo.py
echo
.venv/bin/python examples/curve_demo.py
echo
.venv/bin/python examples/rates_demo.py
echo
.venv/bin/python examples/price_autocallable.py
echo
.venv/bin/python examples/products/price_products.py
echo
.venv/bin/python examples/models_demo.py
echo
# The risk day: the example book of 1 000 trades, historical VaR over two years of daily moves.
.venv/bin/python -m zep.risk examples/risk/portfolio.yaml examples/risk/market.yaml examples/risk/history.csv \
    --report-dir "${ZEP_REPORT_DIR:-reports}/risk"
