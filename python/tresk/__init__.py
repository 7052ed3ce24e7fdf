# The Python interface of libtresk: read a chain, name its knot over random closures, the
# Alexander polynomial of a closed chain, the knot fingerprint of its subchains, and surveys.
"""Knots in open 3-D chains (proteins, polymers), on numpy arrays.

Coordinates are arrays of shape (n, 3) (anything numpy turns into float64 of that shape), with
at least 3 finite points. Bad input raises ValueError, a missing file FileNotFoundError.

Threads: every call releases the GIL while it computes. The engine's random closures draw
from the process-wide C ``rand()`` and its knot table is process-wide, so the module runs one
engine call at a time (an internal lock, waited for without the GIL); calls from several
Python threads are safe and give what the same calls in sequence give. A fingerprint's own
``threads`` parallelise inside that one call. Many files: ``survey`` spreads them over the
worker processes of a Dask cluster (``python3 -m tresk survey --help``).
"""
import os
import numpy as np

from . import _tresk

__all__ = ["read", "knot", "polynomial", "fingerprint", "map", "survey", "FINGERPRINT_DTYPE"]

# One row of a fingerprint: 1-based positions of the knotted subchain's ends, their atom ids,
# the dominant knot ("IN" when none reached a band) and its estimated share in percent.
FINGERPRINT_DTYPE = np.dtype([("first", np.int32), ("last", np.int32), ("first_id", np.int32),
                              ("last_id", np.int32), ("knot", "U16"), ("percent", np.float64)])


def _count(name, value, low, high=2**31 - 1):
    if isinstance(value, bool) or not isinstance(value, (int, np.integer)):
        raise ValueError(f"{name} must be an integer, got {value!r}")
    if not low <= value <= high:
        raise ValueError(f"{name} must lie in {low}..{high}, got {value}")
    return int(value)


def _coords(coords):
    try:
        return np.ascontiguousarray(coords, dtype=np.float64)
    except (TypeError, ValueError) as error:
        raise ValueError(f"coordinates must be numbers: {error}") from None


def _seed(seed):
    return None if seed is None else _count("seed", seed, 0, 2**32 - 1)


def read(path, chain=None, model=1, atom="CA"):
    """Read one chain of a PDB or mmCIF file (optionally .gz) or a plain 'x y z' /
    'id x y z' text file: one `atom` per residue of chain `chain` (author id; None = the
    first polymer chain) of model `model` (None = model 1 when present, else the first).
    Returns (coords (n, 3) float64, ids int32)."""
    path = os.fspath(path)
    if not os.path.isfile(path):
        raise FileNotFoundError(2, "no such file", path)
    model = 0 if model is None else _count("model", model, 1)
    coords, ids, _, _ = _tresk.read(path, chain or "", model, atom)
    return coords, ids


def knot(coords, closures=100, method=3, seed=None, table="standard"):
    """Name the knot of an open chain by closing it `closures` times (closure `method` 0-4,
    3 = both ends to one random point of a surrounding sphere). `seed` seeds rand() first
    (None: the sequence goes on). Returns (shares, verdict): shares maps each knot name
    found ("01" = unknot, "3_1", ..., "UNKNOWN", "INSIDE") to its share of the closures
    (0..1), verdict is the text of `tresk knot`, e.g. "3_1(95%) 5_2(5%) ".
    table="extended" names by every prime knot up to 10 crossings (knots sharing a
    polynomial together, e.g. "8_3|10_1"), with the exact polynomial up to 200 crossings."""
    if table not in ("standard", "extended"):
        raise ValueError("table must be 'standard' or 'extended', not %r" % (table,))
    return _tresk.knot(_coords(coords), _count("closures", closures, 1, 1000000),
                       _count("method", method, 0, 4), _seed(seed), table)


def polynomial(coords):
    """Alexander polynomial of a closed chain (the last point joins the first) after reducing
    it, in one projection. Returns (coefficients, constant term first; knot name). Beyond 16
    crossings the polynomial is the table's one for the numeric value."""
    return _tresk.polynomial(_coords(coords))


def fingerprint(coords, step=10, threshold=20, closures=100, method=2, seed=None, threads=1,
                ids=None):
    """Knot fingerprint: every knotted subchain found by the two-phase scan (a grid of
    `step`, then refined around knots of more than `threshold` %). `threads` work inside the
    call (0 = every core); `ids` numbers the atoms (default 1..n). Returns a structured array
    of FINGERPRINT_DTYPE, one row per knotted subchain."""
    rows = _tresk.fingerprint(_coords(coords), ids, _count("step", step, 1, 1000000),
                              _count("threshold", threshold, 0, 100),
                              _count("closures", closures, 1, 1000000),
                              _count("method", method, 0, 4), _seed(seed),
                              _count("threads", threads, 0, 256))
    return np.array(rows, dtype=FINGERPRINT_DTYPE)


def map(coords, closures=50, method=4, seed=1, step=0, threads=1):  # noqa: A001 (tresk.map)
    """Knot map of an open chain, read from its fingerprint (`tresk map`). Returns a dict:
    "class" ("K" knotted, "S" only subchains knotted: slipknots, "U"), "types" ("3_1 3_1":
    the whole chain's type first, then each slipknot's), "verdict" (the whole chain's vote),
    "regions": one dict per knot or slipknot with "kind", "type", "core" (1-based positions
    (first, last) or None), "core_share", "n_tail", "c_tail", and for slipknots "n_loop",
    "n_segment", "c_loop", "c_segment" (positions, or None on a side that undoes nothing).
    `step` 0 picks the grid step from the chain's length; `threads` 0 = every core."""
    return _tresk.map(_coords(coords), _count("closures", closures, 1, 1000000),
                      _count("method", method, 0, 4), _count("seed", seed, 0, 2**32 - 1),
                      _count("step", step, 0, 1000000), _count("threads", threads, 0, 256))

from ._survey import survey  # noqa: E402  (after the checks it uses)
