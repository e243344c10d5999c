#!/usr/bin/env bash
# usage: run.sh [seconds per target] [build folder] [targets: parser batch files messages connection]
# Builds the fuzz targets with clang and runs each for a while on its seed corpus, from a fixed seed, so that a
# short run walks the same way each time. Longer runs are for a person: pass another -seed by hand.
set -euo pipefail
seconds=${1:-30}
root=$(cd "$(dirname "$0")/../.." && pwd)
build=${2:-$root/build/fuzz}
targets=${3:-parser batch}
clang=$(command -v clang++ || command -v clang++-14 || true)
runtime=$([ -n "$clang" ] && "$clang" -print-file-name=libclang_rt.fuzzer-x86_64.a || true)
if [ -z "$clang" ] || [ ! -e "$runtime" ]; then
  echo "skipped: clang's fuzzer runtime is not installed"
  exit 77
fi
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_CXX_COMPILER="$clang" -DZEMBERA_FUZZ=ON >/dev/null
cmake --build "$build" --target $(printf 'fuzz_%s ' $targets)
for target in $targets; do
  work=$(mktemp -d)
  trap 'rm -rf "$work"' EXIT
  corpus=("$root/tests/fuzz/corpus/$target")
  [ $target = files ] || [ $target = messages ] || [ $target = connection ] || corpus+=("$root/tests/fuzz/corpus/parser" -dict="$root/tests/fuzz/tsql.dict")
  TMPDIR=$work "$build/bin/fuzz_$target" -seed=2012 -max_total_time="$seconds" -timeout=25 -rss_limit_mb=2048 -max_len=4096 \
    -artifact_prefix="$build/" -print_final_stats=0 -verbosity=0 "$work" "${corpus[@]}"
  rm -rf "$work"
done
echo "fuzzed $targets for $seconds s each: nothing found"
