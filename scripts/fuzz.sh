#!/usr/bin/env bash
# Builds the libFuzzer targets of tests/fuzz with clang++ in build/fuzz and runs each for a short,
# bounded time on its seed corpus. A crash, a sanitizer report, a broken invariant, an input
# slower than ZEP_FUZZ_TIMEOUT seconds (default 10) or a memory blow-up fails the script; the
# input that did it is left in build/fuzz/findings/<target>/. ZEP_FUZZ_SECONDS sets the time per
# target (default 20). Installs clang through apt when it is missing; expects scripts/setup.sh to
# have run (the Debian build packages, the venv's cmake and ninja). tests/fuzz/README.md tells
# how to run one target for longer.
set -euo pipefail
cd "$(dirname "$0")/.."
export PATH="$PWD/.venv/bin:$PATH"  # the pinned cmake and ninja

# libFuzzer's runtime is Debian's libclang-rt-<version>-dev, only recommended by clang.
clang_version() { clang++ -dumpversion | cut -d. -f1; }
if ! command -v clang++ >/dev/null || ! dpkg -s "libclang-rt-$(clang_version)-dev" >/dev/null 2>&1; then
  SUDO=""; [ "$(id -u)" -ne 0 ] && SUDO="sudo"
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq clang >/dev/null
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq "libclang-rt-$(clang_version)-dev" >/dev/null
fi

cmake -S . -B build/fuzz -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DZEP_FUZZ=ON >/dev/null
cmake --build build/fuzz

seconds=${ZEP_FUZZ_SECONDS:-20}
timeout=${ZEP_FUZZ_TIMEOUT:-10}
failed=()
for fuzzer in build/fuzz/tests/fuzz/zep_fuzz_*; do
  name=${fuzzer##*/zep_fuzz_}
  # New inputs go to the build tree's corpus, so the committed seeds stay as they are.
  mkdir -p "build/fuzz/corpus/$name" "build/fuzz/findings/$name"
  dict=()
  [ -f "tests/fuzz/$name.dict" ] && dict=(-dict="tests/fuzz/$name.dict")
  log="build/fuzz/findings/$name/run.log"
  if "$fuzzer" "${dict[@]}" -max_total_time="$seconds" -timeout="$timeout" -rss_limit_mb=2048 \
       -print_final_stats=1 -artifact_prefix="build/fuzz/findings/$name/" \
       "build/fuzz/corpus/$name" "tests/fuzz/corpus/$name" >"$log" 2>&1; then
    executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    coverage=$(grep -o 'cov: [0-9]* ft: [0-9]*' "$log" | tail -1)
    echo "fuzz $name: $executions executions, $coverage, no finding"
  else
    echo "fuzz $name: FINDING (build/fuzz/findings/$name/)"
    grep -E -m 3 'ERROR|invariant broken|terminate called|what\(\)|runtime error' "$log" || tail -n 20 "$log"
    failed+=("$name")
  fi
done
if [ ${#failed[@]} -gt 0 ]; then
  echo "fuzzing found problems in: ${failed[*]}"
  exit 1
fi
