// Single-precision test chains for the reduction tests: random walks, confined coils, lattice
// walks full of exactly parallel and touching segments, perturbed copies within the tolerance
// bands, collinear runs, repeated points, coordinates out of the side test's range, and knots.
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
  for (const ChainAtom& a : atoms)
    out.push_back({float(a.x), float(a.y), float(a.z)});
  return out;
}

// Steps of length 3.8 in random directions; `confine` > 0 redraws steps that leave a sphere of
// that radius (at least 4), which packs the walk into a knotted, mostly blocked coil.
inline std::vector<fPointR3> RandomWalk(int n, unsigned seed, double confine = 0.0) {
  std::mt19937 gen(seed);
  std::normal_distribution<double> g(0.0, 1.0);
  std::vector<fPointR3> out;
  double p[3] = {0, 0, 0}, q[3];
  while (static_cast<int>(out.size()) < n) {
    out.push_back({float(p[0]), float(p[1]), float(p[2])});
    do {
      const double d[3] = {g(gen), g(gen), g(gen)};
      const double len = std::sqrt(d[0] * d[0] + d[1] * d[1] + d[2] * d[2]) / 3.8;
      for (int a = 0; a < 3; ++a)
        q[a] = p[a] + d[a] / len;
    } while (confine > 0 && std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2]) >= confine + 4);
    std::memcpy(p, q, sizeof p);
  }
  return out;
}

// Non-zero steps from {-1, 0, 1}^3 inside a box, each coordinate then moved by `jitter` times a
// random integer in [-2, 2]: exactly parallel segments (D exactly 0), ends exactly on triangles
// and their edges, and with jitter 1e-5 contacts inside, on and just outside the bands.
inline std::vector<fPointR3> LatticeWalk(int n, unsigned seed, int box, float jitter = 0.f) {
  std::mt19937 gen(seed);
  std::vector<fPointR3> out;
  int p[3] = {0, 0, 0}, q[3];
  auto jit = [&](int v) { return float(v) + jitter * float(int(gen() % 5) - 2); };
  while (static_cast<int>(out.size()) < n) {
    out.push_back({jit(p[0]), jit(p[1]), jit(p[2])});
    do {
      for (int a = 0; a < 3; ++a)
        q[a] = std::min(box, std::max(-box, p[a] + int(gen() % 3) - 1));
    } while (q[0] == p[0] && q[1] == p[1] && q[2] == p[2]);
    std::memcpy(p, q, sizeof p);
  }
  return out;
}

// Runs of one to three collinear points inserted along some segments, and one point given twice.
inline std::vector<fPointR3> Stuttered(const std::vector<fPointR3>& chain, unsigned seed) {
  std::mt19937 gen(seed);
  std::vector<fPointR3> out;
  for (size_t i = 0; i < chain.size(); ++i) {
    out.push_back(chain[i]);
    if (i == chain.size() / 2)
      out.push_back(chain[i]);
    const fPointR3 a = chain[i], b = chain[(i + 1) % chain.size()];
    for (float f = 0.25f; gen() % 6 == 0 && f < 1.f; f += 0.25f)
      out.push_back({a.x + f * (b.x - a.x), a.y + f * (b.y - a.y), a.z + f * (b.z - a.z)});
  }
  return out;
}

struct NamedChain {
  std::string name;
  std::vector<fPointR3> points;
};

// The differential suite.
inline std::vector<NamedChain> Suite() {
  std::vector<NamedChain> all;
  auto add = [&](std::string name, std::vector<fPointR3> points) {
    all.push_back({std::move(name), std::move(points)});
  };
  for (unsigned seed = 0; seed < 80; ++seed) { // short: every corner case of 0 to 15 points
    add("short walk s" + std::to_string(seed), RandomWalk(seed % 16, seed));
    add("short lattice s" + std::to_string(seed), LatticeWalk(seed % 16, seed, 1 + seed % 5));
  }
  for (unsigned seed = 1; seed <= 12; ++seed) {
    const int n = 60 + 20 * static_cast<int>(seed);
    const std::string s = " s" + std::to_string(seed);
    add("walk" + s, RandomWalk(n, seed));
    add("coil" + s, RandomWalk(n, seed, 2 * std::cbrt(double(n))));
    add("lattice" + s, LatticeWalk(n, seed, 3 + seed % 6));
    add("jittered lattice" + s, LatticeWalk(n, seed, 2, 1e-5f));
    add("stuttered coil" + s, Stuttered(RandomWalk(n / 2, seed, std::cbrt(double(n))), seed));
  }
  std::vector<fPointR3> huge = RandomWalk(120, 5, 8), nan = huge; // out of the side test's range
  for (fPointR3& p : huge)
    p = {p.x * 3e11f, p.y * 3e11f, p.z * 3e11f};
  nan[60].y = std::nanf("");
  add("huge coil", huge);
  add("coil with NaN", nan);
  add("trefoil", ToFloat(zoo::TorusKnot(2, 3, 200)));
  add("5_1 rotated", ToFloat(zoo::RandomlyRotated(zoo::TorusKnot(2, 5, 300), 7)));
  add("figure eight", ToFloat(zoo::FigureEight(250)));
  add("planar circle", ToFloat(zoo::Circle(100)));
  std::vector<fPointR3> line; // everything on one line, then back
  for (int i = 0; i < 40; ++i)
    line.push_back({float(i % 20), 0.f, 0.f});
  add("collinear", line);
  return all;
}

} // namespace reduction_chains
