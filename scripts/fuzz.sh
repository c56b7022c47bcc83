#!/usr/bin/env bash
# Builds and runs the libFuzzer targets (clang, ASan + UBSan) in build-fuzz/.
#   scripts/fuzz.sh build
#   scripts/fuzz.sh run <target> [seconds]   fuzz one target (default 600 s)
#   scripts/fuzz.sh replay [target...]       run the committed corpus once
#   scripts/fuzz.sh minimize <target>        add new finds that widen coverage
# Targets: hex convert contrast records gpl ase css. New inputs go to
# build-fuzz/work/<target>, crashes to build-fuzz/crashes/<target>; the
# committed seed corpus under fuzz/corpus/ only grows through "minimize".
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build="${TINTWRIGHT_FUZZ_BUILD_DIR:-$root/build-fuzz}"
targets=(hex convert contrast records gpl ase css)

build_targets() {
  if [[ ! -f "$build/build.ninja" ]]; then
    CXX=clang++ cmake -S "$root/fuzz" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
  fi
  cmake --build "$build" --parallel "${TINTWRIGHT_JOBS:-2}"
}

export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"

case "${1:-build}" in
  build)
    build_targets
    ;;
  run)
    target=${2:?target}
    seconds=${3:-600}
    build_targets
    mkdir -p "$build/work/$target" "$build/crashes/$target"
    dict=()
    [[ -f "$root/fuzz/$target.dict" ]] && dict=(-dict="$root/fuzz/$target.dict")
    "$build/fuzz_$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
      -max_len=65536 -print_final_stats=1 "${dict[@]}" \
      -artifact_prefix="$build/crashes/$target/" \
      "$build/work/$target" "$root/fuzz/corpus/$target"
    ;;
  replay)
    shift
    build_targets
    for target in "${@:-${targets[@]}}"; do
      "$build/fuzz_$target" -runs=0 "$root/fuzz/corpus/$target"
    done
    ;;
  minimize)
    # Adds to the committed corpus only the new finds that reach code it
    # does not; nothing already there is removed.
    target=${2:?target}
    build_targets
    "$build/fuzz_$target" -merge=1 -max_len=4096 "$root/fuzz/corpus/$target" "$build/work/$target"
    ;;
  *)
    echo "usage: $0 build | run <target> [seconds] | replay [target...] | minimize <target>" >&2
    exit 2
    ;;
esac
