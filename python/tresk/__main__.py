# `python3 -m tresk survey`: the rows of `tresk batch` for many files, computed on a Dask
# cluster (a local one of one worker process per core, or a running scheduler).
import argparse
import sys
import time

from ._survey import survey


def main(argv=None):
    parser = argparse.ArgumentParser(prog="python3 -m tresk")
    commands = parser.add_subparsers(dest="command", required=True)
    s = commands.add_parser(
        "survey", help="name the knot of every chain of many files on a Dask cluster",
        description="One row per file and chain, in input order, as `tresk batch` writes them. "
        "Rerun with the same output to resume.")
    s.add_argument("inputs", nargs="+", help="files, folders, @LIST files (as tresk batch)")
    s.add_argument("-o", "--out", required=True, help="the table written or resumed")
    s.add_argument("--format", choices=("tsv", "jsonl"), default="tsv")
    where = s.add_mutually_exclusive_group()
    where.add_argument("--scheduler", help="address of a running scheduler, tcp://host:8786")
    where.add_argument("--scheduler-file", help="the file a scheduler wrote (--scheduler-file)")
    where.add_argument("--workers", type=int, help="worker processes of the local cluster "
                       "started when no scheduler is given (default: every core)")
    s.add_argument("-n", "--closures", type=int, default=100, help="random closures per chain")
    s.add_argument("-m", "--closure-method", type=int, default=3, help="as for tresk knot")
    s.add_argument("-s", "--seed", type=int, default=1, help="mixed with each file and chain")
    s.add_argument("--no-times", action="store_true", help="write 0 seconds")
    s.add_argument("--chain", help="chain of each structure (default: every polymer chain)")
    s.add_argument("--model", type=int, help="model of each structure (default: model 1)")
    s.add_argument("--atom", default="CA", help="backbone atom per residue (P: nucleic acids)")
    o = parser.parse_args(argv)
    start = time.monotonic()
    shown = [start]

    def progress(done, total):
        now = time.monotonic()
        if sys.stderr.isatty() and (done == total or now - shown[0] > 0.2):
            rate = done / max(now - start, 1e-9)
            print(f"\r{done}/{total} files, {rate:.1f} files/s, {(total - done) / rate:.0f} s left",
                  end="\n" if done == total else "", file=sys.stderr, flush=True)
            shown[0] = now

    try:
        survey(o.inputs, o.out, o.scheduler or o.scheduler_file, o.closures,
               method=o.closure_method, seed=o.seed, format=o.format, chain=o.chain,
               model=o.model, atom=o.atom, times=not o.no_times, workers=o.workers,
               progress=progress)
    except (OSError, ValueError) as error:
        print(f"python3 -m tresk survey: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
