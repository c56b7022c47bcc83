#!/usr/bin/env bash
# Builds the whole suite with AddressSanitizer and UndefinedBehaviorSanitizer
# in build-asan/ and runs every test that needs no X server there (model,
# storage, robustness and the offscreen widget tests). The Xvfb tests are
# left to the plain build: they exercise the same code through a real X
# server, and running them under ASan would double the CI time.
# Extra arguments go to ctest.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build="${TINTWRIGHT_ASAN_BUILD_DIR:-$root/build-asan}"

if [[ ! -f "$build/build.ninja" ]]; then
  cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DTINTWRIGHT_SANITIZE=ON -DTINTWRIGHT_BUILD_BENCH=OFF
fi
cmake --build "$build" --parallel "$(nproc)"

# Any report fails the test that caused it. Leaks are checked, except for
# what system libraries keep for the life of the process.
export ASAN_OPTIONS="detect_leaks=1:abort_on_error=0:halt_on_error=1:detect_stack_use_after_return=1:strict_string_checks=1:check_initialization_order=1${ASAN_OPTIONS:+:$ASAN_OPTIONS}"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1${UBSAN_OPTIONS:+:$UBSAN_OPTIONS}"
export LSAN_OPTIONS="suppressions=$root/scripts/lsan-suppressions.txt:print_suppressions=0${LSAN_OPTIONS:+:$LSAN_OPTIONS}"
# The long robustness tests run a smaller share of their iterations here.
export TINTWRIGHT_SANITIZER_RUN=1
cd "$build"
ctest --output-on-failure --no-tests=error -LE xvfb "$@"
