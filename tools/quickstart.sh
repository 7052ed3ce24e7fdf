#!/usr/bin/env bash
# Installs what is missing, builds the tresk command and names the knot of a bundled example
# chain (an open knotted polymer made by examples/make_chains.py).
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install-deps.sh
JOBS="$(nproc 2>/dev/null || echo 2)"
cmake --preset dev >/dev/null
cmake --build --preset dev -j "$JOBS" --target tresk_cli
build/dev/tresk knot examples/chains/trefoil_open.xyz --seed 1 "$@"
