#!/usr/bin/env bash
# Builds the fuzz preset (clang, libFuzzer, ASan + UBSan) and fuzzes the chain reader for the
# given number of seconds (default 60), starting from the bundled example and test files, with
# a fixed seed (FUZZ_SEED, default 1) so that a CI run is repeatable.
# Findings are written to build/fuzz/findings/; the corpus grows in build/fuzz/corpus/.
set -euo pipefail
cd "$(dirname "$0")/.."
SECONDS_TO_RUN="${1:-60}"
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j "$(nproc 2>/dev/null || echo 2)" --target read_fuzz
corpus=build/fuzz/corpus
mkdir -p "$corpus" build/fuzz/findings
# Seeds: the first byte picks the kind (0 .xyz, 1 .pdb, 2 .cif, 3 .txt), the rest is the file.
seed() { { printf "\\x$(printf %02x "$1")"; cat "$2"; } >"$corpus/seed-$(basename "$2")"; }
for f in examples/chains/*.xyz tests/data/repro/*.xyz; do seed 0 "$f"; done
for f in tests/data/structures/*.pdb tests/data/repro/*.pdb; do seed 1 "$f"; done
for f in tests/data/structures/*.cif tests/data/repro/*.cif; do seed 2 "$f"; done
build/fuzz/fuzz/read_fuzz "$corpus" -max_total_time="$SECONDS_TO_RUN" -seed="${FUZZ_SEED:-1}" \
  -timeout=20 -rss_limit_mb=2048 \
  -artifact_prefix=build/fuzz/findings/ -print_final_stats=1
