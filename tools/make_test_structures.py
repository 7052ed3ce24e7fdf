#!/usr/bin/env python3
"""Writes the structure test files from the backbone of crambin (PDB 1CRN, public domain):
crambin_edge.pdb, crambin_edge.cif and crambin_edge.cif.gz. Each holds the cases a structure
reader must get right: a TER record inside chain A (the chain goes on after it), residue 10 as
selenomethionine written as HETATM, two alternate locations of the CA of residue 15 (B has the
higher occupancy), an inserted residue 25A, a water and a ligand in chain A, a second chain B and
a second model. In the mmCIF files the label chain ids (P, Q) differ from the author ids (A, B).
Run from tests/data/structures: python3 ../../../tools/make_test_structures.py ../repro/ssbond73.pdb"""
import gzip
import sys

backbone = []  # (resname, resnum, atom, x, y, z)
for line in open(sys.argv[1]):
    if line.startswith("ATOM") and line[12:16].strip() in ("N", "CA", "C"):
        backbone.append((line[17:20], int(line[22:26]), line[12:16].strip(),
                         float(line[30:38]), float(line[38:46]), float(line[46:54])))


def atoms(chain, dx, dz):
    """(record, name, altloc, resname, chain, num, icode, x, y, z, occ, element) rows."""
    out = []
    for res, num, name, x, y, z in backbone:
        x, z = x + dx, z + dz
        record = "ATOM"
        if num == 10:
            res, record = "MSE", "HETATM"
        if num == 15 and name == "CA":
            out.append((record, name, "A", res, chain, num, "", x, y, z, 0.40, "C"))
            out.append((record, name, "B", res, chain, num, "", x + 0.5, y, z, 0.60, "C"))
            continue
        out.append((record, name, "", res, chain, num, "", x, y, z, 1.00, name[0]))
        if num == 25 and name == "C":  # residue 25A, half-way to residue 26
            nxt = [b for b in backbone if b[1] == 26 and b[2] == "CA"][0]
            cx, cy, cz = (x + nxt[3] + dx) / 2, (y + nxt[4]) / 2, (z + nxt[5] + dz) / 2 + 1.0
            out.append(("ATOM", "CA", "", "GLY", chain, 25, "A", cx, cy, cz, 1.00, "C"))
    return out


def models():
    for model, dz in ((1, 0.0), (2, 100.0)):
        a = atoms("A", 0.0, dz)
        b = atoms("B", 30.0, dz)
        yield model, a, b


def pdb_atom(serial, r):
    record, name, alt, res, chain, num, icode, x, y, z, occ, el = r
    return "%-6s%5d %-4s%1s%3s %1s%4d%1s   %8.3f%8.3f%8.3f%6.2f%6.2f          %2s\n" % (
        record, serial, " " + name if len(name) < 4 else name, alt, res, chain, num, icode,
        x, y, z, occ, 10.0, el)


with open("crambin_edge.pdb", "w") as f:
    f.write("HEADER    TEST STRUCTURE FROM 1CRN\n")
    for model, a, b in models():
        f.write("MODEL     %4d\n" % model)
        serial = 1
        for r in a:
            if r[5] == 21 and r[1] == "N":
                f.write("TER\n")
            f.write(pdb_atom(serial, r))
            serial += 1
        ax, ay, az = a[-1][7:10]
        f.write(pdb_atom(serial, ("HETATM", "O", "", "HOH", "A", 101, "", ax + 5, ay, az, 1.0, "O")))
        f.write(pdb_atom(serial + 1, ("HETATM", "C1", "", "EOH", "A", 102, "", ax, ay + 5, az, 1.0, "C")))
        f.write("TER\n")
        serial += 2
        for r in b:
            f.write(pdb_atom(serial, r))
            serial += 1
        f.write("TER\nENDMDL\n")
    f.write("END\n")

label = {"A": "P", "B": "Q"}
lines = ["data_CRAMBIN_EDGE", "loop_"] + ["_atom_site." + t for t in (
    "group_PDB", "id", "type_symbol", "label_atom_id", "label_alt_id", "label_comp_id",
    "label_asym_id", "label_entity_id", "label_seq_id", "pdbx_PDB_ins_code", "Cartn_x",
    "Cartn_y", "Cartn_z", "occupancy", "B_iso_or_equiv", "auth_seq_id", "auth_comp_id",
    "auth_asym_id", "auth_atom_id", "pdbx_PDB_model_num")]
serial = 1
for model, a, b in models():
    for r in a + b:
        record, name, alt, res, chain, num, icode, x, y, z, occ, el = r
        lines.append("%s %d %s %s %s %s %s 1 %d %s %.3f %.3f %.3f %.2f 10.0 %d %s %s %s %d" % (
            record, serial, el, name, alt or ".", res, label[chain], num, icode or "?", x, y, z,
            occ, num, res, chain, name, model))
        serial += 1
text = "\n".join(lines) + "\n"
open("crambin_edge.cif", "w").write(text)
with gzip.GzipFile("crambin_edge.cif.gz", "wb", mtime=0) as g:
    g.write(text.encode())
