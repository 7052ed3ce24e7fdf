# The Python module against the library's known answers: a structure read, a knot named over
# closures, a closed chain's polynomial, a fingerprint, bad input and two threads at once.
import os
import threading

import numpy as np
import pytest

import tresk

ROOT = os.path.join(os.path.dirname(__file__), "..", "..")
CHAINS = os.path.join(ROOT, "examples", "chains")


def xyz(name):
    return np.loadtxt(os.path.join(CHAINS, name))[:, 1:]


def test_read_chain_of_a_structure():
    coords, ids = tresk.read(os.path.join(ROOT, "tests/data/structures/crambin_edge.cif.gz"), "B")
    assert coords.shape == (47, 3) and coords.dtype == np.float64 and ids.dtype == np.int32
    assert coords[0, 0] == pytest.approx(46.967) and coords[0, 2] == pytest.approx(4.338)
    assert ids[9] == 10 and ids[25] == 25 and ids[46] == 46
    coords2, _ = tresk.read(os.path.join(ROOT, "tests/data/structures/crambin_edge.cif.gz"), "B", 2)
    assert coords2[0, 2] == pytest.approx(104.338)


def test_knot_of_an_open_trefoil():
    shares, verdict = tresk.knot(xyz("trefoil_open.xyz"), closures=50, seed=5)
    assert max(shares, key=shares.get) == "3_1" and shares["3_1"] > 0.5
    assert sum(shares.values()) == pytest.approx(1.0) and verdict.startswith("3_1(")
    assert tresk.knot(xyz("trefoil_open.xyz"), closures=50, seed=5) == (shares, verdict)


def test_knot_with_the_extended_table():
    standard = tresk.knot(xyz("trefoil_open.xyz"), closures=50, seed=5)
    shares, verdict = tresk.knot(xyz("trefoil_open.xyz"), closures=50, seed=5, table="extended")
    # The same closures: the shares stay, knots sharing a polynomial are named together.
    assert sorted(shares.values()) == sorted(standard[0].values()) and shares["3_1"] > 0.5
    assert verdict.startswith("3_1(") and ("5_1" not in shares or "5_1|10_132" in shares)
    with pytest.raises(ValueError):
        tresk.knot(xyz("trefoil_open.xyz"), table="large")


def test_polynomial_of_a_closed_trefoil():
    assert tresk.polynomial(xyz("trefoil_closed.xyz")) == ([1, -1, 1], "3_1")


def test_fingerprint_rows():
    fp = tresk.fingerprint(xyz("trefoil_open.xyz"), step=5, closures=10, seed=3, threads=2)
    assert fp.dtype == tresk.FINGERPRINT_DTYPE and len(fp) > 0
    assert np.all(fp["first"] < fp["last"]) and np.all(fp["last"] <= 160)
    assert "3_1" in set(fp["knot"]) and np.all((fp["percent"] >= 0) & (fp["percent"] <= 100))
    # The rows do not depend on the scan's thread count.
    one = tresk.fingerprint(xyz("trefoil_open.xyz"), step=5, closures=10, seed=3, threads=1)
    assert np.array_equal(fp, one)


@pytest.mark.parametrize("coords", [np.zeros((5, 2)), np.zeros(9), np.zeros((2, 3)),
                                    [[0, 0, 0], [1, 0, 0], [np.nan, 0, 0]],
                                    [[0, 0, 0], [1, 0, 0], [np.inf, 0, 0]], [["a", 1, 2]] * 3])
def test_bad_coordinates_raise(coords):
    for call in (tresk.knot, tresk.polynomial, tresk.fingerprint):
        with pytest.raises(ValueError):
            call(coords)


def test_bad_arguments_and_files_raise():
    line = np.arange(30.0).reshape(10, 3)
    for kwargs in ({"method": 7}, {"closures": 0}, {"seed": -1}, {"closures": 2.5}):
        with pytest.raises(ValueError):
            tresk.knot(line, **kwargs)
    with pytest.raises(OSError):
        tresk.read("/nonexistent/chain.pdb")
    with pytest.raises(ValueError):
        tresk.read(os.path.join(ROOT, "tests/data/structures/crambin_edge.cif.gz"), "Z")


def test_two_threads_give_what_sequential_calls_give():
    chains = [xyz("trefoil_open.xyz"), xyz("knotted_core.xyz")]
    expected = [tresk.knot(c, closures=20, seed=k) for k, c in enumerate(chains)]
    got = [None, None]
    work = lambda k: got.__setitem__(k, tresk.knot(chains[k], closures=20, seed=k))  # noqa: E731
    threads = [threading.Thread(target=work, args=(k,)) for k in range(2)]
    for t in threads:
        t.start()
    for t in threads:
        t.join()
    assert got == expected
