#!/usr/bin/env bash
# Prints one checksum per command over the bundled examples and the ground-truth corpus, so that
# a refactoring can show that the program's outputs did not change: run it with the old and the
# new `tresk` and compare (diff). Usage: tools/output_checksums.sh [TRESK] [DATA_DIR]
set -uo pipefail
cd "$(dirname "$0")/.."
TRESK="${1:-build/dev/tresk}"
DATA="${2:-../shared/data}"
TMP="$(mktemp -d)"
trap 'rm -rf "$TMP"' EXIT

sum() { # label, command...: the checksum of stdout and the exit status
  local label="$1"
  shift
  local out
  out="$("$@" 2>/dev/null; echo "status $?")"
  printf '%s  %s\n' "$(printf '%s' "$out" | sha256sum | cut -c1-16)" "$label"
}

for f in examples/chains/*.xyz; do
  sum "knot $f" "$TRESK" knot "$f" --seed 1
  sum "knot -m 4 -n 50 $f" "$TRESK" knot "$f" -m 4 -n 50 --seed 1
  sum "knot extended $f" "$TRESK" knot "$f" -n 50 --seed 1 --table extended
  sum "knot numeric-above 16 $f" "$TRESK" knot "$f" -n 50 --seed 1 --numeric-above 16
  sum "poly $f" "$TRESK" poly "$f"
done
if [ -d "$DATA" ]; then
  for f in "$DATA"/closed/fremlin/*.short "$DATA"/closed/gilbert_ideal/sampled/*.xyz; do
    sum "poly $f" "$TRESK" poly "$f"
    sum "poly extended $f" "$TRESK" poly "$f" --table extended -d 3
  done
  for f in "$DATA"/proteins/ca_xyz/*.xyz "$DATA"/open/*/*; do
    sum "knot -n 30 $f" "$TRESK" knot "$f" -n 30 --seed 2
  done
  for f in "$DATA"/proteins/pdb/*.pdb; do
    sum "knot all chains $f" "$TRESK" knot "$f" --all-chains -n 20 --seed 3
  done
  "$TRESK" batch "$DATA"/proteins/ca_xyz "$DATA"/proteins/pdb -o "$TMP/b.tsv" -n 20 --no-times \
    -j 2 >/dev/null 2>&1
  sum "batch ca_xyz pdb" cat "$TMP/b.tsv"
  "$TRESK" batch "$DATA"/proteins/ca_xyz -o "$TMP/b.jsonl" --format jsonl -n 10 --no-times \
    >/dev/null 2>&1
  sum "batch jsonl" cat "$TMP/b.jsonl"
  sum "core 3kzn" "$TRESK" core "$DATA"/proteins/ca_xyz/3kzn_A.xyz -n 20 --tsv
fi
"$TRESK" matrix examples/chains/knotted_core.xyz -o "$TMP/m.fp" -s 10 -n 20 --seed 1 -j 2 -q \
  >/dev/null 2>&1
sum "matrix knotted_core" cat "$TMP/m.fp"
