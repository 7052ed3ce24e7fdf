#!/usr/bin/env bash
# Installs the Debian packages that libtresk builds with, once: a second run sees them
# installed and does nothing. Needs root (or sudo) only when something is missing.
set -euo pipefail

PACKAGES=(cmake g++ make pkg-config libboost-dev gemmi-dev zlib1g-dev libgtest-dev
          libbenchmark-dev libcli11-dev libcairo2-dev tao-pegtl-dev clang libclang-rt-14-dev
          python3-dev pybind11-dev python3-numpy python3-pytest python3-pip python3-setuptools
          python3-wheel python3-venv python3-distributed)

missing=()
for p in "${PACKAGES[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done
if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

SUDO=""
if [ "$(id -u)" -ne 0 ]; then
  SUDO="sudo"
fi
echo "install-deps: installing ${missing[*]}" >&2
export DEBIAN_FRONTEND=noninteractive
if ! $SUDO apt-get install -y --no-install-recommends "${missing[@]}"; then
  $SUDO apt-get update
  $SUDO apt-get install -y --no-install-recommends "${missing[@]}"
fi
