// The four closures of an open chain. Each leaves the chain's atoms in place and appends the
// closing path (atoms with id 0): out to a sphere around the chain, along the sphere, and back,
// so that the added path never passes through the chain. Random choices use rand(), so that
// srand(seed) makes a run reproducible.
#include "preprocessing/chainprep.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "preprocessing/vec3.hpp" // for Vec3

using tresk::PositionOf;
using tresk::Vec3;

namespace {

constexpr double kPi = 3.14159265358979323846;
// Arcs along the sphere advance at most this angle per segment: every chord then stays at
// least cos(15 deg) = 0.966 radii from the centre, outside the chain's ball for radii from 1.1.
constexpr double kMaxArcStep = kPi / 12.0;
// The sphere's radius in units of the chain's extent: the caller's parameter, not below 1.1
// (1.25 when it is not a number).
constexpr double kMinRadiusFactor = 1.1;
constexpr double kDefaultRadiusFactor = 1.25;

struct Sphere {
  Vec3 centre;
  double radius;
};

// Centred on the centroid; radius = factor x the largest atom distance from it (or x 1 when
// all atoms coincide, so that the sphere is never a point).
Sphere SphereAround(const std::vector<ChainAtom>& chain, double parameter) {
  Vec3 c{0.0, 0.0, 0.0};
  for (const ChainAtom& a : chain)
    c = c + PositionOf(a);
  c = (1.0 / static_cast<double>(chain.size())) * c;
  double extent = 0.0;
  for (const ChainAtom& a : chain)
    extent = std::max(extent, Norm(PositionOf(a) - c));
  if (!(extent > 0.0))
    extent = 1.0;
  double factor =
      std::isnan(parameter) ? kDefaultRadiusFactor : std::max(parameter, kMinRadiusFactor);
  return {c, factor * extent};
}

double Uniform() {
  return std::rand() / (static_cast<double>(RAND_MAX) + 1.0);
}

// A uniformly distributed unit vector (two draws).
Vec3 RandomDirection() {
  double z = 2.0 * Uniform() - 1.0;
  double phi = 2.0 * kPi * Uniform();
  double r = std::sqrt(std::max(0.0, 1.0 - z * z));
  return {r * std::cos(phi), r * std::sin(phi), z};
}

// The unit vector from the centre towards p; a fixed generic direction when p is the centre.
Vec3 Outward(Vec3 p, Vec3 centre) {
  Vec3 d = p - centre;
  double len = Norm(d);
  if (len > 0.0)
    return (1.0 / len) * d;
  return {0.5773, -0.2113, 0.7887};
}

void Append(std::vector<ChainAtom>& chain, Vec3 p) {
  chain.push_back(AtomAt(p, 0));
}

// Appends the sphere points from direction `from` to direction `to` (both unit vectors) along
// the great circle, both ends included; one point when they coincide.
void AppendArc(std::vector<ChainAtom>& chain, const Sphere& s, Vec3 from, Vec3 to) {
  double cosAngle = std::clamp(Dot(from, to), -1.0, 1.0);
  double angle = std::acos(cosAngle);
  Vec3 side = to - cosAngle * from; // the direction in which the arc leaves `from`
  double sideLen = Norm(side);
  if (sideLen < 1e-12) {
    if (cosAngle > 0.0) { // the same point
      Append(chain, s.centre + s.radius * from);
      return;
    }
    // Opposite points: any great circle through both will do.
    Vec3 helper = std::fabs(from.x) < 0.9 ? Vec3{1.0, 0.0, 0.0} : Vec3{0.0, 1.0, 0.0};
    side = Cross(from, helper);
    sideLen = Norm(side);
  }
  side = (1.0 / sideLen) * side;
  int steps = std::max(1, static_cast<int>(std::ceil(angle / kMaxArcStep)));
  for (int i = 0; i <= steps; ++i) {
    double a = angle * i / steps;
    Vec3 dir = i == steps ? to : std::cos(a) * from + std::sin(a) * side;
    Append(chain, s.centre + s.radius * dir);
  }
}

// The point where the ray from p (inside the sphere) in direction d leaves the sphere.
Vec3 Exit(const Sphere& s, Vec3 p, Vec3 d) {
  Vec3 w = p - s.centre;
  double b = Dot(w, d), c = Dot(w, w) - s.radius * s.radius;
  double t = -b + std::sqrt(std::max(0.0, b * b - c));
  return p + t * d;
}

// The closures of methods 1 and 2: the chain's end joined to a point of the sphere, the arc
// along the sphere, and the chain's start joined to another point. Those points lie radially
// out from the ends, or (`random`) in random directions, the one at the end drawn first.
int CloseAlongSphere(std::vector<ChainAtom>& chain, double parameter, bool random) {
  if (chain.size() < 3)
    return 0;
  Sphere s = SphereAround(chain, parameter);
  Vec3 atEnd = random ? RandomDirection() : Outward(PositionOf(chain.back()), s.centre);
  Vec3 atStart = random ? RandomDirection() : Outward(PositionOf(chain.front()), s.centre);
  AppendArc(chain, s, atEnd, atStart);
  return 0;
}

} // namespace

// Both ends pushed radially out to the sphere and joined along it: no random choice.
int CloseChain_OUT(std::vector<ChainAtom>& chain, double parameter) {
  return CloseAlongSphere(chain, parameter, false);
}

// Each end joined straight to its own random point of the sphere, those joined along it.
// Never -1: the ends lie strictly inside the sphere, so no draw can be unusable.
int CloseChain_2points(std::vector<ChainAtom>& chain, double parameter) {
  return CloseAlongSphere(chain, parameter, true);
}

// Both ends joined straight to one random point of the sphere.
int CloseChain_1point(std::vector<ChainAtom>& chain, double parameter) {
  if (chain.size() < 3)
    return 0;
  Sphere s = SphereAround(chain, parameter);
  Append(chain, s.centre + s.radius * RandomDirection());
  return 0;
}

// Closure "at infinity": both ends extended in one random direction out to the sphere (radius
// 1.25 x extent), and the two exit points joined along it.
int CloseChain_1direction(std::vector<ChainAtom>& chain) {
  if (chain.size() < 3)
    return 0;
  Sphere s = SphereAround(chain, kDefaultRadiusFactor);
  Vec3 d = RandomDirection();
  Vec3 fromEnd = Exit(s, PositionOf(chain.back()), d);
  Vec3 fromStart = Exit(s, PositionOf(chain.front()), d);
  AppendArc(chain, s, Outward(fromEnd, s.centre), Outward(fromStart, s.centre));
  return 0;
}
