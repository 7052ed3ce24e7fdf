// Test chains for the fingerprint: a closed knot cut open at its outermost vertex, with a tail
// pulled away from each cut end, straight or as an outward-drifting random coil. The knot's
// vertices are positions tail+1 .. tail+knotSize of the result (ids = positions).
#pragma once

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "core/records.hpp" // for ChainAtom

namespace zoo {

inline std::vector<ChainAtom> KnottedCore(const std::vector<ChainAtom>& knot, int tail, bool coil,
                                          unsigned seed) {
  const std::size_t m = knot.size();
  double c[3] = {0, 0, 0};
  for (const ChainAtom& a : knot)
    c[0] += a.x / m, c[1] += a.y / m, c[2] += a.z / m;
  std::size_t cut = 0;
  double far = -1, edge = 0;
  for (std::size_t i = 0; i < m; ++i) {
    const ChainAtom& a = knot[i];
    const ChainAtom& b = knot[(i + 1) % m];
    edge += std::sqrt((a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y) +
                      (a.z - b.z) * (a.z - b.z)) /
            m;
    const double d =
        (a.x - c[0]) * (a.x - c[0]) + (a.y - c[1]) * (a.y - c[1]) + (a.z - c[2]) * (a.z - c[2]);
    if (d > far)
      far = d, cut = i;
  }
  // The open knot runs from the vertex after the cut round to the cut vertex.
  std::vector<ChainAtom> core;
  for (std::size_t k = 1; k <= m; ++k)
    core.push_back(knot[(cut + k) % m]);

  std::mt19937 gen(seed);
  std::normal_distribution<double> g(0.0, 1.0);
  // A tail leaving `end`, away from the centre and from the other end.
  auto grow = [&](const ChainAtom& end, const ChainAtom& other) {
    double out[3] = {end.x - c[0], end.y - c[1], end.z - c[2]};
    const double apart[3] = {end.x - other.x, end.y - other.y, end.z - other.z};
    auto normalise = [](double* v) {
      const double n = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
      for (int k = 0; k < 3; ++k)
        v[k] /= n;
    };
    normalise(out);
    double side[3] = {apart[0], apart[1], apart[2]};
    normalise(side);
    std::vector<ChainAtom> t;
    double p[3] = {end.x, end.y, end.z};
    for (int k = 0; k < tail; ++k) {
      double d[3];
      for (int a = 0; a < 3; ++a)
        d[a] = out[a] + 0.4 * side[a] + (coil ? 0.8 * g(gen) : 0.0);
      normalise(d);
      for (int a = 0; a < 3; ++a)
        p[a] += edge * d[a];
      t.push_back({p[0], p[1], p[2], 0});
    }
    return t;
  };
  const std::vector<ChainAtom> head = grow(core.front(), core.back());
  const std::vector<ChainAtom> back = grow(core.back(), core.front());
  std::vector<ChainAtom> chain(head.rbegin(), head.rend());
  chain.insert(chain.end(), core.begin(), core.end());
  chain.insert(chain.end(), back.begin(), back.end());
  for (std::size_t i = 0; i < chain.size(); ++i)
    chain[i].id = static_cast<int>(i + 1);
  return chain;
}

} // namespace zoo
