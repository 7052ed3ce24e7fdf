# tresk.map against the command's answers: a chain with a knot tied in it is class K with its
# core inside the chain, an unknotted coil is class U, and bad arguments are refused.
import os

import numpy as np
import pytest

import tresk

CHAINS = os.path.join(os.path.dirname(__file__), "..", "..", "examples", "chains")


def xyz(name):
    return np.loadtxt(os.path.join(CHAINS, name))[:, 1:]


def test_map_of_a_knotted_and_an_unknotted_chain():
    knotted = tresk.map(xyz("knotted_core.xyz"), closures=20, threads=2)
    assert knotted["class"] == "K" and knotted["types"] == "3_1"
    region = knotted["regions"][0]
    assert region["kind"] == "knot" and region["type"] == "3_1"
    first, last = region["core"]
    assert 1 < first < last < 300 and region["n_tail"] == first - 1
    assert region["c_loop"] is None
    coil = tresk.map(xyz("coil_unknotted.xyz"), closures=10)
    assert coil["class"] == "U" and coil["types"] == "" and coil["regions"] == []


@pytest.mark.parametrize("kwargs", [{"closures": 0}, {"method": 5}, {"step": -1}, {"seed": -1}])
def test_map_refuses_bad_arguments(kwargs):
    with pytest.raises(ValueError):
        tresk.map(xyz("knotted_core.xyz"), **kwargs)
