#!/usr/bin/env bash
# Builds the whole suite with AddressSanitizer and UndefinedBehaviorSanitizer into ./build-asan and
# runs it offscreen with leak detection on. Any sanitizer report fails its test. Arguments go to ctest.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
# -O1 keeps the reports' stacks honest and the suite fast; -g1 gives them file and line.
cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG="-O1 -g1" -DFPU_SANITIZE=ON >/dev/null
cmake --build build-asan -j"$(nproc)"
export ASAN_OPTIONS="detect_leaks=1:halt_on_error=1:check_initialization_order=1:strict_init_order=1"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
export LSAN_OPTIONS="suppressions=$PWD/scripts/lsan.supp:print_suppressions=0"
cd build-asan
ctest --output-on-failure -j"$(nproc)" "$@"
