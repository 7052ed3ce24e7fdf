// Single-precision test chains for the reduction tests: random walks, confined coils, lattice
// walks full of exactly parallel and touching segments, perturbed copies within the tolerance
// bands, and the zoo's knots.
#pragma once

#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "core/points.hpp"          // for fPointR3
#include "tests/support/curves.hpp" // for zoo::TorusKnot, zoo::RandomlyRotated

namespace reduction_chains {

// Equal sizes and the same bits in every coordinate (so NaN equals itself and -0 differs from 0).
inline bool SameBits(const std::vector<fPointR3>& a, const std::vector<fPointR3>& b) {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(fPointR3)) == 0);
}

inline std::vector<fPointR3> ToFloat(const std::vector<ChainAtom>& atoms) {
  std::vector<fPointR3> out;
  for (const ChainAtom& a : atoms) {
    out.push_back({static_cast<float>(a.x), static_cast<float>(a.y), static_cast<float>(a.z)});
  }
  return out;
}

// Steps of length 3.8 in uniformly random directions; `confine` > 0 rejects steps that leave a
// sphere of that radius, which packs the walk into a knotted, mostly blocked coil.
inline std::vector<fPointR3> RandomWalk(int n, unsigned seed, double confine = 0.0) {
  std::mt19937 gen(seed);
  std::normal_distribution<double> g(0.0, 1.0);
  if (confine > 0 && confine < 4.0)
    confine = 4.0; // the first step must fit from the centre
  std::vector<fPointR3> out;
  double x = 0, y = 0, z = 0;
  while (static_cast<int>(out.size()) < n) {
    out.push_back({static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)});
    for (;;) {
      double dx = g(gen), dy = g(gen), dz = g(gen);
      const double len = std::sqrt(dx * dx + dy * dy + dz * dz) / 3.8;
      dx /= len, dy /= len, dz /= len;
      const double nx = x + dx, ny = y + dy, nz = z + dz;
      if (confine <= 0 || nx * nx + ny * ny + nz * nz < confine * confine) {
        x = nx, y = ny, z = nz;
        break;
      }
    }
  }
  return out;
}

// Non-zero steps from {-1, 0, 1}^3 inside a box: collinear runs, segments exactly in the plane
// of a corner (D exactly 0) and end points exactly on triangles and their edges.
inline std::vector<fPointR3> LatticeWalk(int n, unsigned seed, int box = 3) {
  std::mt19937 gen(seed);
  std::vector<fPointR3> out;
  int p[3] = {0, 0, 0};
  while (static_cast<int>(out.size()) < n) {
    out.push_back({float(p[0]), float(p[1]), float(p[2])});
    int q[3];
    do {
      for (int axis = 0; axis < 3; ++axis)
        q[axis] = p[axis] + static_cast<int>(gen() % 3) - 1;
    } while ((q[0] == p[0] && q[1] == p[1] && q[2] == p[2]) || std::abs(q[0]) > box ||
             std::abs(q[1]) > box || std::abs(q[2]) > box);
    for (int axis = 0; axis < 3; ++axis)
      p[axis] = q[axis];
  }
  return out;
}

// Moves every coordinate by a multiple of 1e-5 in [-2e-5, 2e-5], so that contacts land inside,
// on and just outside the tolerance bands.
inline std::vector<fPointR3> Jittered(std::vector<fPointR3> chain, unsigned seed) {
  std::mt19937 gen(seed);
  for (fPointR3& p : chain) {
    p.x += 1e-5f * static_cast<float>(static_cast<int>(gen() % 5) - 2);
    p.y += 1e-5f * static_cast<float>(static_cast<int>(gen() % 5) - 2);
    p.z += 1e-5f * static_cast<float>(static_cast<int>(gen() % 5) - 2);
  }
  return chain;
}

// Runs of collinear points inserted along some segments, and with `repeat` one point given
// twice (the zero-length segment then blocks every corner it is tested against).
inline std::vector<fPointR3> Stuttered(const std::vector<fPointR3>& chain, unsigned seed,
                                       bool repeat) {
  std::mt19937 gen(seed);
  std::vector<fPointR3> out;
  for (size_t i = 0; i < chain.size(); ++i) {
    out.push_back(chain[i]);
    if (repeat && i == chain.size() / 2)
      out.push_back(chain[i]);
    if (i + 1 < chain.size() && gen() % 6 == 0) {
      const fPointR3 a = chain[i], b = chain[i + 1];
      for (int k = 1; k < 4; ++k) {
        const float f = 0.25f * static_cast<float>(k);
        out.push_back({a.x + f * (b.x - a.x), a.y + f * (b.y - a.y), a.z + f * (b.z - a.z)});
      }
    }
  }
  return out;
}

struct NamedChain {
  std::string name;
  std::vector<fPointR3> points;
};

// The differential suite: `scale` multiplies the sizes (1 for the quick run).
inline std::vector<NamedChain> Suite(int scale) {
  std::vector<NamedChain> all;
  auto add = [&](std::string name, std::vector<fPointR3> points) {
    all.push_back({std::move(name), std::move(points)});
  };
  for (int n = 0; n <= 9; ++n)
    add("walk" + std::to_string(n), RandomWalk(n, 100 + n));
  // Longer lattice walks are blocked everywhere by exactly parallel segments; short ones are
  // where their exact contacts decide which points go.
  for (unsigned seed = 0; seed < 80; ++seed) {
    const int n = static_cast<int>(seed % 16);
    add("short lattice s" + std::to_string(seed), LatticeWalk(n, seed, 1 + seed % 5));
  }
  for (unsigned seed = 1; seed <= 12; ++seed) {
    const int n = 60 * scale + static_cast<int>(seed) * 20 * scale;
    add("walk s" + std::to_string(seed), RandomWalk(n, seed));
    add("coil s" + std::to_string(seed), RandomWalk(n, seed, 2.0 + std::cbrt(double(n)) * 2.0));
    add("lattice s" + std::to_string(seed), LatticeWalk(n, seed, 3 + static_cast<int>(seed % 6)));
    add("jittered lattice s" + std::to_string(seed), Jittered(LatticeWalk(n, seed, 2), seed));
    add("stuttered coil s" + std::to_string(seed),
        Stuttered(RandomWalk(n / 2, seed, 2.0 + std::cbrt(double(n))), seed, seed % 3 == 0));
  }
  add("trefoil", ToFloat(zoo::TorusKnot(2, 3, 200 * scale)));
  add("5_1 rotated", ToFloat(zoo::RandomlyRotated(zoo::TorusKnot(2, 5, 300 * scale), 7)));
  add("8_19 rotated", ToFloat(zoo::RandomlyRotated(zoo::TorusKnot(3, 4, 400 * scale), 8)));
  add("figure eight", ToFloat(zoo::FigureEight(250 * scale)));
  add("planar circle", ToFloat(zoo::Circle(100 * scale)));
  add("rotated circle", ToFloat(zoo::RandomlyRotated(zoo::Circle(100 * scale), 9)));
  std::vector<fPointR3> line; // everything on one line, then back
  for (int i = 0; i < 40; ++i)
    line.push_back({float(i % 20), 0.f, 0.f});
  add("collinear", line);
  return all;
}

} // namespace reduction_chains
