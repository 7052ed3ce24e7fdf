#!/usr/bin/env python3
"""Builds knots/data/jones_table.tsv, the table of Jones polynomials by which libtresk names knots
with their handedness, from the public names table of prime knots up to 12 crossings, their
mirror images and composites (Knoto-ID's knot_names, in ../shared/data/tables), and checks every
entry against KnotInfo's determinants: |V(-1)| must equal the determinant of each knot named
(a composite: the product of its factors'). Only derived invariants and names are written.

Usage: tools/build_jones_table.py [DATA_DIR] > knots/data/jones_table.tsv
"""
import csv
import re
import sys
from pathlib import Path

data = Path(sys.argv[1] if len(sys.argv) > 1 else "../shared/data") / "tables"
TERM = re.compile(r"([+-])\s*(?:(\d+)\*?)?(?:A\^\((-?\d+)\))?")


def parse(text):
    """{exponent of A: coefficient} of a polynomial written as '+ A^(4) - 2*A^(-8) + 1'."""
    poly = {}
    for sign, coef, exp in TERM.findall(text):
        value = int(coef) if coef else 1
        poly[int(exp) if exp else 0] = poly.get(int(exp) if exp else 0, 0) + (
            value if sign == "+" else -value)
    return {e: c for e, c in poly.items() if c}


def determinant_of(name, dets):
    """KnotInfo's determinant of a knot name (mirror 'm' dropped), or of a composite 'a*b'."""
    product = 1
    for factor in name.split("*"):
        base = factor[:-1] if factor.endswith("m") else factor
        if base == "0_1":
            continue
        if base not in dets:
            return None
        product *= dets[base]
    return product


def main():
    dets = {}
    with open(data / "knotinfo_invariants_determinant.csv") as f:
        for row in csv.DictReader(f):
            dets[row["Name"]] = int(row["Determinant"])
    rows, mismatches, unchecked = [], [], 0
    for line in open(data / "knoto-id_knot_names.txt"):
        if not line.strip() or line.startswith("#"):
            continue
        names, poly_text = line.rstrip("\n").split("\t")
        poly = parse(poly_text)
        # V(-1): t = A^-4 = -1, every exponent is a multiple of 4.
        value = abs(sum(c * (-1) ** ((e // 4) % 2) for e, c in poly.items()))
        for name in names.split("|"):
            det = determinant_of(name, dets)
            if det is None:
                unchecked += 1
            elif det != value:
                mismatches.append(f"{name}: |V(-1)| = {value}, determinant {det}")
        low = min(poly)
        coefficients = [poly.get(e, 0) for e in range(low, max(poly) + 1, 4)]
        rows.append((low, coefficients, names, value))
    if mismatches:
        sys.exit("determinant check failed:\n" + "\n".join(mismatches))
    print("# The Jones polynomials of libtresk's handed naming: every prime knot up to 12 crossings,")
    print("# mirror images marked with a trailing m, and composites joined by '*', as listed in")
    print("# Knoto-ID's knot_names table (sib-swiss/Knoto-ID, GPL-2; the polynomials are")
    print("# invariants of the knots, taken as data). Knots sharing a polynomial share a line.")
    print("# Variable A of the Kauffman bracket in that table's convention (t = A^-4); only every")
    print("# fourth power occurs, so a line lists the lowest exponent and the coefficients of")
    print("# A^low, A^(low+4), ...")
    print(f"# Built by tools/build_jones_table.py. Determinant check: |V(-1)| of all {len(rows)} lines")
    print(f"# equals KnotInfo's determinant of every knot named (composites: the product of their")
    print(f"# factors'), from knotinfo_invariants_determinant.csv; {unchecked} names without a")
    print("# KnotInfo row were not checked; no mismatch.")
    print("# Columns: lowest exponent TAB coefficients TAB names TAB |V(-1)|")
    for low, coefficients, names, value in rows:
        print(f"{low}\t{' '.join(map(str, coefficients))}\t{names}\t{value}")


main()
