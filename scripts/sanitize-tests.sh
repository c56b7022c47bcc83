#!/usr/bin/env bash
# Builds and runs, under AddressSanitizer and UndefinedBehaviorSanitizer, the
# tests of the GUI-free libraries (model and storage), the fuzz corpus
# replay among them. Only those tests and the two libraries are built in
# build-asan/: the widgets, the program and the Xvfb tests would double
# the build for code the plain build runs already. Extra arguments go to
# ctest.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build="${TINTWRIGHT_ASAN_BUILD_DIR:-$root/build-asan}"
labels='gui-free'

launcher=()
command -v ccache >/dev/null 2>&1 && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTINTWRIGHT_SANITIZE=ON \
  -DTINTWRIGHT_BUILD_BENCH=OFF "${launcher[@]}" >/dev/null
# Each of these tests is built from the target of the same name.
mapfile -t tests < <(ctest --test-dir "$build" -N -L "$labels" | sed -n 's/^ *Test *#[0-9]*: //p')
cmake --build "$build" --parallel "$(nproc)" --target "${tests[@]}"

# Any report fails the test that caused it. Leaks are checked, except for
# what system libraries keep for the life of the process.
export ASAN_OPTIONS="detect_leaks=1:abort_on_error=0:halt_on_error=1:detect_stack_use_after_return=1:strict_string_checks=1:check_initialization_order=1${ASAN_OPTIONS:+:$ASAN_OPTIONS}"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1${UBSAN_OPTIONS:+:$UBSAN_OPTIONS}"
export LSAN_OPTIONS="suppressions=$root/scripts/lsan-suppressions.txt:print_suppressions=0${LSAN_OPTIONS:+:$LSAN_OPTIONS}"
cd "$build"
ctest --output-on-failure --no-tests=error --parallel "$(nproc)" -L "$labels" "$@"
