#!/usr/bin/env bash
# Builds fpubench and launches the bench on the simulated fiscal printer.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh
exec ./build/src/app/fpubench "$@"
