#!/usr/bin/env bash
# Runs every test on two build trees. The normal one: the C++ unit tests through ctest, the wheel
# installed into a bare virtualenv with the README's example run there, then the Python tests
# against the installed package. Then the sanitized one (scripts/test_sanitized.sh): the C++ and
# Python tests again under AddressSanitizer and UndefinedBehaviorSanitizer. Last, a short run of
# every libFuzzer target (scripts/fuzz.sh).
# Installs what it needs first (scripts/setup.sh).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
bash scripts/check_wheel.sh
.venv/bin/ctest --test-dir build/py --output-on-failure -j 2
# Run from the tests folder so that `import zep` finds the installed module, not the sources.
(cd tests/python && ../../.venv/bin/python -m pytest -q -p no:cacheprovider .)
bash scripts/test_sanitized.sh
bash scripts/fuzz.sh  # the libFuzzer targets, a short run each (tests/fuzz/README.md)
