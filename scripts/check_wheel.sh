#!/usr/bin/env bash
# Builds the wheel, installs it into a new virtualenv that has no build tools on its path and
# runs the README's example there: what a user on another machine gets from `pip install`.
# Expects scripts/setup.sh to have run (it reuses the build tree build/py, so the wheel build is
# incremental). Leaves the wheel in build/wheelhouse for tests/python/test_wheel.py.
set -euo pipefail
cd "$(dirname "$0")/.."
export PATH="$PWD/.venv/bin:$PATH"  # the pinned swig, cmake and ninja build the wheel

rm -rf build/wheelhouse build/wheel-venv
.venv/bin/python -m pip wheel -q --disable-pip-version-check --no-build-isolation --no-deps \
  -w build/wheelhouse --config-settings=build-dir=build/py \
  --config-settings=cmake.define.ZEP_BUILD_TESTS=ON .
wheel=$(ls build/wheelhouse/zep-*.whl)
echo "wheel: $(basename "$wheel") ($(du -k "$wheel" | cut -f1) KiB)"

python3 -m venv build/wheel-venv
numpy_pin=$(grep '^numpy==' requirements-dev.txt)
build/wheel-venv/bin/python -m pip install -q --disable-pip-version-check "$wheel" "$numpy_pin"

# The README's first Python block, run from a scratch directory holding the example product.
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cp -r examples "$scratch/"
.venv/bin/python scripts/readme_snippet.py > "$scratch/snippet.py"
venv_python="$PWD/build/wheel-venv/bin/python"
(cd "$scratch" && env -i HOME="$HOME" PATH="$(dirname "$venv_python")" ZEP_LOGLEVEL=warning \
  "$venv_python" -c 'import zep; print("zep", zep.__version__, "from", zep.__file__)' &&
 env -i HOME="$HOME" PATH="$(dirname "$venv_python")" ZEP_LOGLEVEL=warning "$venv_python" snippet.py)
