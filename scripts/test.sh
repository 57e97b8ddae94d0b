#!/usr/bin/env bash
# Builds fpubench and runs the whole test suite (offscreen, no display needed).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh
cd build
ctest --output-on-failure -j"$(nproc)" "$@"
