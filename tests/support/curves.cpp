// Parametric knots, connected sums, knotted cores with tails and random rotations.
#include "tests/support/curves.hpp"

#include <algorithm>
#include <cmath>
#include <random>

namespace zoo {
namespace {

constexpr double kPi = 3.14159265358979323846;

template <class F> Chain Sampled(int n, F point) {
  Chain out;
  for (int i = 0; i < n; ++i) {
    ChainAtom a = point(2 * kPi * i / n);
    a.id = i + 1;
    out.push_back(a);
  }
  return out;
}

void Normalise(double* v) {
  const double n = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
  v[0] /= n, v[1] /= n, v[2] /= n;
}

void Renumber(Chain& chain) {
  for (std::size_t i = 0; i < chain.size(); ++i)
    chain[i].id = static_cast<int>(i) + 1;
}

} // namespace

Chain Circle(int n, double radius) {
  return Sampled(n, [&](double a) {
    return ChainAtom{radius * std::cos(a), radius * std::sin(a), 0.0, 0};
  });
}

Chain TorusKnot(int p, int q, int n, double R, double r) {
  return Sampled(n, [&](double a) {
    const double rho = R + r * std::cos(q * a);
    return ChainAtom{rho * std::cos(p * a), rho * std::sin(p * a), r * std::sin(q * a), 0};
  });
}

Chain FigureEight(int n, double scale) {
  return Sampled(n, [&](double a) {
    const double rho = scale * (2 + std::cos(2 * a));
    return ChainAtom{rho * std::cos(3 * a), rho * std::sin(3 * a), scale * std::sin(4 * a), 0};
  });
}

Chain ConnectedSum(const Chain& a, Chain b) {
  for (ChainAtom& p : b)
    p.x = -p.x; // b's outermost point now faces a
  auto outermost = [](const Chain& c, double sign) {
    return std::max_element(
               c.begin(), c.end(),
               [&](const ChainAtom& p, const ChainAtom& q) { return sign * p.x < sign * q.x; }) -
           c.begin();
  };
  const std::size_t ia = outermost(a, 1), ib = outermost(b, -1);
  const double shift = a[ia].x - b[ib].x + 6.0;
  Chain sum;
  for (std::size_t k = 1; k <= a.size(); ++k)
    sum.push_back(a[(ia + k) % a.size()]);
  for (std::size_t k = 0; k < b.size(); ++k) {
    ChainAtom p = b[(ib + k) % b.size()];
    p.x += shift;
    p.y += 0.05; // bridges not exactly parallel to the arcs' tangents
    sum.push_back(p);
  }
  Renumber(sum);
  return sum;
}

Chain KnottedCore(const Chain& knot, int tail, bool coil, unsigned seed) {
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
  Chain core;
  for (std::size_t k = 1; k <= m; ++k)
    core.push_back(knot[(cut + k) % m]);

  std::mt19937 gen(seed);
  std::normal_distribution<double> g(0.0, 1.0);
  // A tail leaving `end`, away from the centre and from the other end.
  auto grow = [&](const ChainAtom& end, const ChainAtom& other) {
    double out[3] = {end.x - c[0], end.y - c[1], end.z - c[2]},
           side[3] = {end.x - other.x, end.y - other.y, end.z - other.z};
    Normalise(out), Normalise(side);
    Chain t;
    double p[3] = {end.x, end.y, end.z};
    for (int k = 0; k < tail; ++k) {
      double d[3];
      for (int a = 0; a < 3; ++a)
        d[a] = out[a] + 0.4 * side[a] + (coil ? 0.8 * g(gen) : 0.0);
      Normalise(d);
      p[0] += edge * d[0], p[1] += edge * d[1], p[2] += edge * d[2];
      t.push_back({p[0], p[1], p[2], 0});
    }
    return t;
  };
  const Chain head = grow(core.front(), core.back()), back = grow(core.back(), core.front());
  Chain chain(head.rbegin(), head.rend());
  chain.insert(chain.end(), core.begin(), core.end());
  chain.insert(chain.end(), back.begin(), back.end());
  Renumber(chain);
  return chain;
}

Chain RandomlyRotated(const Chain& chain, unsigned seed) {
  std::mt19937 gen(seed);
  std::normal_distribution<double> g(0.0, 1.0);
  // A uniformly random unit quaternion gives a uniformly random rotation.
  double w = g(gen), x = g(gen), y = g(gen), z = g(gen);
  const double norm = std::sqrt(w * w + x * x + y * y + z * z);
  w /= norm, x /= norm, y /= norm, z /= norm;
  const double m[3][3] = {{1 - 2 * (y * y + z * z), 2 * (x * y - w * z), 2 * (x * z + w * y)},
                          {2 * (x * y + w * z), 1 - 2 * (x * x + z * z), 2 * (y * z - w * x)},
                          {2 * (x * z - w * y), 2 * (y * z + w * x), 1 - 2 * (x * x + y * y)}};
  std::uniform_real_distribution<double> shift(-50.0, 50.0);
  const double s[3] = {shift(gen), shift(gen), shift(gen)};
  Chain out;
  for (const ChainAtom& a : chain)
    out.push_back({m[0][0] * a.x + m[0][1] * a.y + m[0][2] * a.z + s[0],
                   m[1][0] * a.x + m[1][1] * a.y + m[1][2] * a.z + s[1],
                   m[2][0] * a.x + m[2][1] * a.y + m[2][2] * a.z + s[2], a.id});
  return out;
}

Chain Slipknot(int tail, double offset) {
  Chain chain = KnottedCore(TorusKnot(2, 3, 60), tail, false, 1);
  const std::size_t there = chain.size();
  for (std::size_t k = there; k-- > 0;) {
    ChainAtom back = chain[k];
    back.z += offset;
    chain.push_back(back);
  }
  for (std::size_t k = 0; k < chain.size(); ++k)
    chain[k].id = static_cast<int>(k + 1);
  return chain;
}

} // namespace zoo
