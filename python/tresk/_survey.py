# Surveys of many structure files on a Dask cluster: one task per file, the rows written by the
# client alone, in input order and resumable, byte for byte what `tresk batch` writes.
import hashlib
import os

from . import _tresk

def expand_inputs(paths, chain=b""):
    """(file, chain) units of files, folders (their chain files, sorted, not recursive) and
    @lists (a path and optionally a chain per line, '#' starts a comment), in the order given,
    as `tresk batch` expands them (the library's own expansion); a file named without a chain
    drops its other mentions."""
    try:
        return _tresk.expand_inputs([os.fsencode(p) for p in paths], os.fsencode(chain))
    except RuntimeError as error:
        raise OSError(str(error)) from None


def analyse(path, chain, options):
    """The task run on a worker: the formatted rows of one file (every chain, or `chain`)."""
    return _tresk.survey_file(path, chain, *options)


def _write_whole(out, text):
    while text:
        text = text[os.write(out, text):]


def _local_client(workers):
    from dask.distributed import Client, LocalCluster

    # The engine runs one call at a time per process: one thread in each worker process.
    cluster = LocalCluster(n_workers=workers or len(os.sched_getaffinity(0)),
                           threads_per_worker=1, processes=True, dashboard_address=None)
    return Client(cluster), cluster


def survey(paths, out, client=None, closures=100, method=3, seed=1, format="tsv", chain=None,
           model=None, atom="CA", times=True, workers=None, progress=None):
    """Name the knot of every chain of many files on a Dask cluster and write one row per file
    and chain to `out`, in input order, as `tresk batch` does with the same options. `paths`:
    files, folders, @lists. `client`: a dask.distributed.Client, a scheduler's address
    ('tcp://host:8786') or the file it wrote (--scheduler-file); None starts a local cluster of
    `workers` processes (default: every core) for this call. Rerun with the same `out` to
    resume: rows already there are skipped and a row cut short is cut off. Only this process
    writes, each file's rows in one write, so a worker that dies loses or repeats no row (Dask
    runs its tasks again elsewhere). `progress(done, total)` is called after each file.
    Returns the number of files analysed by this call."""
    from dask.distributed import Client, as_completed

    if format not in ("tsv", "jsonl"):
        raise ValueError(f"format must be tsv or jsonl, got {format!r}")
    from . import _count  # the package's argument check
    options = (0 if model is None else _count("model", model, 1), atom,
               _count("method", method, 0, 4), _count("closures", closures, 1, 1000000),
               _count("seed", seed, 0, 2**32 - 1), bool(times), format)
    units = expand_inputs(paths, os.fsencode(chain or ""))
    out = os.fspath(out)
    keys, whole_bytes, error = _tresk.survey_done(os.fsencode(out), format)
    if error:
        raise ValueError(f"will not append to {out}: {error}")
    done_files = {file for file, _ in keys}
    todo = []
    for path, c in units:
        key = _tresk.survey_key(path, c, format)
        if (key[0] not in done_files) if not c else (key not in keys):
            todo.append((path, c))
    fd = os.open(out, os.O_WRONLY | os.O_CREAT | os.O_APPEND, 0o644)
    cluster = None
    try:
        os.ftruncate(fd, whole_bytes)
        if whole_bytes == 0:
            _write_whole(fd, _tresk.survey_header(format))
        if not todo:
            return 0
        if client is None:
            client, cluster = _local_client(workers)
        elif isinstance(client, str):
            client = Client(scheduler_file=client) if os.path.isfile(client) else Client(client)
            cluster = False  # ours to close, without a cluster
        # One key per (file, chain, options): a task run again after its worker died is the same
        # task, and its rows come back once.
        names = [f"tresk-survey-{hashlib.sha1(repr((u, options)).encode()).hexdigest()}"
                 for u in todo]
        futures = client.map(analyse, [p for p, _ in todo], [c for _, c in todo],
                             [options] * len(todo), key=names)
        order = {f.key: k for k, f in enumerate(futures)}
        waiting, written = {}, 0
        for finished, future in enumerate(as_completed(futures), 1):
            k = order[future.key]
            if future.status == "error":
                waiting[k] = _tresk.survey_error(*todo[k], _failure(future), format)
            else:
                waiting[k] = future.result()
            future.release()
            while written in waiting:
                _write_whole(fd, waiting.pop(written))
                written += 1
            if progress is not None:
                progress(finished, len(todo))
        return len(todo)
    finally:
        os.close(fd)
        if cluster is not None:
            client.close()
            if cluster:
                cluster.close()


def _failure(future):
    error = future.exception()
    if type(error).__name__ == "KilledWorker":
        return "the analysis crashed (its worker died each time it ran)"
    return f"the analysis stopped ({type(error).__name__}: {error})"
