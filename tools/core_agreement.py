#!/usr/bin/python3
# Agreement of `tresk core` with the N- and C-tail lengths of the trefoil list of knotted
# proteins: runs the command on each chain's C-alpha trace and counts the chains whose both
# tails are within a tolerance (default 5 residues) of the listed ones.
"""Usage (from the repository root, after building build/dev/tresk):

  mkdir -p /tmp/core-chains && tar xzf ../shared/data/proteins/ph-knotted-proteins_ca_chains.tar.gz \\
      -C /tmp/core-chains
  tools/core_agreement.py --chains /tmp/core-chains/ph-knotted-proteins_ca_chains -P 2 \\
      [--sample 60] [--out rows.tsv] [-- extra tresk core options]
"""
import argparse
import concurrent.futures
import csv
import os
import subprocess
import sys
import time


def run_one(tresk, path, extra):
    start = time.monotonic()
    done = subprocess.run([tresk, "core", path, "--tsv", *extra], capture_output=True, text=True)
    seconds = time.monotonic() - start
    if done.returncode != 0:
        return None, seconds, done.stderr.strip()
    lines = done.stdout.strip().split("\n")
    return dict(zip(lines[0].split("\t"), lines[1].split("\t"))), seconds, ""


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--tresk", default=os.path.join(here, "..", "build", "dev", "tresk"))
    parser.add_argument("--chains", required=True, help="folder of <chain>.xyz traces")
    parser.add_argument("--list", default=os.path.join(
        here, "..", "..", "shared", "data", "tables", "ph-knotted-proteins_trefoil_list.csv"))
    parser.add_argument("--sample", type=int, default=0,
                        help="every k-th chain (sorted by name) so that about this many run")
    parser.add_argument("--tolerance", type=int, default=5)
    parser.add_argument("-P", "--processes", type=int, default=2)
    parser.add_argument("--out", help="per-chain rows (TSV)")
    parser.add_argument("extra", nargs="*", help="options passed to tresk core")
    args = parser.parse_args()

    with open(args.list, newline="") as f:
        rows = sorted(csv.DictReader(f), key=lambda r: r["Chain"])
    if args.sample:
        rows = rows[::max(1, len(rows) // args.sample)]

    with concurrent.futures.ThreadPoolExecutor(args.processes) as pool:
        futures = [pool.submit(run_one, args.tresk, os.path.join(args.chains, r["Chain"] + ".xyz"),
                               args.extra) for r in rows]
        results = [f.result() for f in futures]

    agree = complete = completeAgree = allowed = 0
    worst = 0.0
    out = open(args.out, "w") if args.out else None
    if out:
        out.write("chain\tlength\tatoms\tn_tail\tc_tail\tour_n\tour_c\tshare\tverdict\tagree\n")
    for r, (got, seconds, error) in zip(rows, results):
        worst = max(worst, seconds)
        n, c = int(r["N-tail"]), int(r["C-tail"])
        if got is None:
            ok, ours, share, verdict, atoms = False, ("error", "error"), "", error, ""
        else:
            ours = (got["n_tail"], got["c_tail"])
            ok = got["n_tail"] != "-" and abs(int(got["n_tail"]) - n) <= args.tolerance and \
                abs(int(got["c_tail"]) - c) <= args.tolerance
            share, verdict, atoms = got["core_share"], got["verdict"], got["atoms"]
        agree += ok
        # The listed tails count residues that the trace may lack (disordered termini, gaps):
        # chains whose trace has every listed residue but at most one are compared as they are;
        # for the others the missing residues may be added to either tail.
        missing = int(r["Length"]) - int(atoms) if atoms else 0
        if missing <= 1:
            complete += 1
            completeAgree += ok
        if got is not None and got["n_tail"] != "-":
            ourN, ourC, t = int(got["n_tail"]), int(got["c_tail"]), args.tolerance
            needN, needC = max(0, n - t - ourN), max(0, c - t - ourC)
            allowed += ourN <= n + t and ourC <= c + t and needN + needC <= max(0, missing)
        line = [r["Chain"], r["Length"], atoms, str(n), str(c), ours[0], ours[1], share, verdict,
                "yes" if ok else "no"]
        if out:
            out.write("\t".join(line) + "\n")
        if not ok:
            print("differs: " + " ".join(line), file=sys.stderr)
    print(f"{agree} of {len(rows)} chains agree within ±{args.tolerance} residues on both tails "
          f"({100.0 * agree / max(1, len(rows)):.1f} %); slowest chain {worst:.2f} s")
    print(f"complete traces (at most one listed residue missing): {completeAgree} of {complete} "
          f"({100.0 * completeAgree / max(1, complete):.1f} %); allowing the missing residues on "
          f"either tail: {allowed} of {len(rows)} ({100.0 * allowed / max(1, len(rows)):.1f} %)")


if __name__ == "__main__":
    main()
