#!/usr/bin/env bash
# Prepares a fresh python-native machine: Debian build dependencies, a virtualenv with the
# pinned Python tools, and the zep package built and installed into it. Safe to run twice:
# apt skips what is installed and the CMake build directory makes the rebuild incremental.
set -euo pipefail
cd "$(dirname "$0")/.."

debs=(g++ cmake libboost-dev libboost-filesystem-dev libspdlog-dev libfmt-dev nlohmann-json3-dev
      libyaml-cpp-dev libnlopt-dev libfftw3-dev libgtest-dev libbenchmark-dev)
missing=()
for p in "${debs[@]}"; do dpkg -s "$p" >/dev/null 2>&1 || missing+=("$p"); done
if [ ${#missing[@]} -gt 0 ]; then
  SUDO=""; [ "$(id -u)" -ne 0 ] && SUDO="sudo"
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq "${missing[@]}" >/dev/null
fi

[ -x .venv/bin/python ] || python3 -m venv .venv
export PATH="$PWD/.venv/bin:$PATH"  # the pinned swig, cmake and ninja
.venv/bin/python -m pip install -q --disable-pip-version-check -r requirements-dev.txt

# No build isolation: the pinned tools of the venv build the extension, and the build tree
# under build/py persists so a second run only recompiles what changed.
.venv/bin/python -m pip install -q --disable-pip-version-check --no-build-isolation \
  --config-settings=build-dir=build/py --config-settings=cmake.define.ZEP_BUILD_TESTS=ON .
