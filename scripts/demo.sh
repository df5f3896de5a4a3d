#!/usr/bin/env bash
# The main job: installs what it needs (scripts/setup.sh), then runs the pricing demo.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
.venv/bin/python examples/dates_demo.py
