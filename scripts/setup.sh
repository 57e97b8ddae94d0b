#!/usr/bin/env bash
# Installs what fpubench needs on a Debian 12 machine, only what is missing.
set -euo pipefail

packages=(cmake g++ make qt6-base-dev qt6-base-dev-tools libqt6sql6-sqlite libgl-dev libbenchmark-dev libzint-dev fonts-dejavu-core)
# The install test checks the menu entry and the man pages; cpack's DEB needs dpkg-shlibdeps.
packages+=(desktop-file-utils groff-base dpkg-dev)
# A real window for screenshots needs an X server; tests themselves run offscreen.
if [ "${FPUBENCH_WITH_XVFB:-0}" = 1 ]; then packages+=(xvfb xauth); fi
# The fuzz targets (scripts/fuzz.sh) need clang and its libFuzzer runtime.
if [ "${FPUBENCH_WITH_FUZZ:-0}" = 1 ]; then packages+=(clang libclang-rt-14-dev); fi

missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
echo "Installing: ${missing[*]}"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
