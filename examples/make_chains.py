#!/usr/bin/env python3
"""Generates the bundled example chains in examples/chains/ (standard library only).

Every file holds one chain, one bead per line as `id x y z`. The shapes are built so that their
knot type is known by construction:

  trefoil_closed.xyz   a closed (2,3) torus knot, 120 beads: `tresk poly` names it 3_1
  trefoil_open.xyz     the same trefoil cut open on its outer rim, with two straight tails
                       pulled apart and away from the knot, 160 beads: an open knotted polymer
  coil_unknotted.xyz   an open random coil that only ever climbs along z, 150 beads: unknotted
  knotted_core.xyz     a 300-bead chain: random-coil tails around a trefoil core (beads 101-190),
                       for the knot fingerprint demo

Run from anywhere: python3 examples/make_chains.py  (the output is deterministic).
"""

import math
import os
import random

HERE = os.path.dirname(os.path.abspath(__file__))
OUT = os.path.join(HERE, "chains")


def torus_knot(p, q, n, big_r=10.0, small_r=4.0, phase=0.0):
    """n points of the (p, q) torus knot, closed implicitly (the first point is not repeated)."""
    points = []
    for i in range(n):
        a = 2.0 * math.pi * i / n + phase
        rho = big_r + small_r * math.cos(q * a)
        points.append((rho * math.cos(p * a), rho * math.sin(p * a), small_r * math.sin(q * a)))
    return points


def add(a, b):
    return (a[0] + b[0], a[1] + b[1], a[2] + b[2])


def scale(a, s):
    return (a[0] * s, a[1] * s, a[2] * s)


def unit(a):
    n = math.sqrt(a[0] * a[0] + a[1] * a[1] + a[2] * a[2])
    return (a[0] / n, a[1] / n, a[2] / n)


def tail(start, outward, beads, rng, wiggle):
    """A tail leaving `start`: unit steps that drift along `outward`, with a random wiggle.

    The drift dominates the wiggle, so the tail moves away from the knot and never comes back
    through it: the knot stays where it was tied."""
    points = []
    here = start
    for _ in range(beads):
        noise = (rng.gauss(0, 1), rng.gauss(0, 1), rng.gauss(0, 1))
        step = unit(add(outward, scale(unit(noise), wiggle)))
        here = add(here, step)
        points.append(here)
    return points


def open_trefoil(core_beads, tail_beads, rng, wiggle):
    """A trefoil cut on its outer rim; both cut ends continue as tails pulled apart in z."""
    # Phase 0 puts the first bead at the outermost point of the torus (rho = R + r, z = 0).
    core = torus_knot(2, 3, core_beads)
    first, last = core[0], core[-1]
    radial = unit((first[0], first[1], 0.0))
    head = tail(first, unit(add(radial, (0.0, 0.0, -0.6))), tail_beads, rng, wiggle)
    back = tail(last, unit(add(radial, (0.0, 0.0, 0.6))), tail_beads, rng, wiggle)
    return list(reversed(head)) + core + back


def climbing_coil(beads, rng):
    """An open random coil whose height only grows: a curve monotone in z has no knot."""
    points = []
    x = y = z = 0.0
    for _ in range(beads):
        angle = rng.uniform(0.0, 2.0 * math.pi)
        x += 0.9 * math.cos(angle)
        y += 0.9 * math.sin(angle)
        z += rng.uniform(0.2, 0.6)
        points.append((x, y, z))
    return points


def write(name, points):
    path = os.path.join(OUT, name)
    with open(path, "w", encoding="ascii") as f:
        for i, (x, y, z) in enumerate(points, start=1):
            f.write("%d %.4f %.4f %.4f\n" % (i, x, y, z))
    print("wrote %s (%d beads)" % (os.path.relpath(path), len(points)))


def main():
    os.makedirs(OUT, exist_ok=True)
    rng = random.Random(20240601)
    write("trefoil_closed.xyz", torus_knot(2, 3, 120))
    write("trefoil_open.xyz", open_trefoil(100, 30, rng, wiggle=0.3))
    write("coil_unknotted.xyz", climbing_coil(150, rng))
    write("knotted_core.xyz", open_trefoil(90, 105, rng, wiggle=0.8))


if __name__ == "__main__":
    main()
