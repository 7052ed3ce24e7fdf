// Parametric knots and data-file access for the tests.
#include "tests/support/curves.hpp"

#include <cmath>
#include <fstream>
#include <random>

namespace zoo {
namespace {
constexpr double kPi = 3.14159265358979323846;
}

std::vector<ChainAtom> Circle(int n, double radius) {
  std::vector<ChainAtom> out;
  for (int i = 0; i < n; ++i) {
    double a = 2 * kPi * i / n;
    out.push_back({radius * std::cos(a), radius * std::sin(a), 0.0, i + 1});
  }
  return out;
}

std::vector<ChainAtom> TorusKnot(int p, int q, int n, double R, double r) {
  std::vector<ChainAtom> out;
  for (int i = 0; i < n; ++i) {
    double a = 2 * kPi * i / n;
    double rho = R + r * std::cos(q * a);
    out.push_back({rho * std::cos(p * a), rho * std::sin(p * a), r * std::sin(q * a), i + 1});
  }
  return out;
}

std::vector<ChainAtom> FigureEight(int n, double scale) {
  std::vector<ChainAtom> out;
  for (int i = 0; i < n; ++i) {
    double a = 2 * kPi * i / n;
    out.push_back({scale * (2 + std::cos(2 * a)) * std::cos(3 * a),
                   scale * (2 + std::cos(2 * a)) * std::sin(3 * a), scale * std::sin(4 * a),
                   i + 1});
  }
  return out;
}

std::vector<ChainAtom> RandomlyRotated(const std::vector<ChainAtom>& chain, unsigned seed) {
  std::mt19937 gen(seed);
  std::normal_distribution<double> g(0.0, 1.0);
  // A uniformly random unit quaternion gives a uniformly random rotation.
  double w = g(gen), x = g(gen), y = g(gen), z = g(gen);
  double norm = std::sqrt(w * w + x * x + y * y + z * z);
  w /= norm, x /= norm, y /= norm, z /= norm;
  double m[3][3] = {{1 - 2 * (y * y + z * z), 2 * (x * y - w * z), 2 * (x * z + w * y)},
                    {2 * (x * y + w * z), 1 - 2 * (x * x + z * z), 2 * (y * z - w * x)},
                    {2 * (x * z - w * y), 2 * (y * z + w * x), 1 - 2 * (x * x + y * y)}};
  std::uniform_real_distribution<double> shift(-50.0, 50.0);
  double s[3] = {shift(gen), shift(gen), shift(gen)};
  std::vector<ChainAtom> out;
  for (const ChainAtom& a : chain) {
    out.push_back({m[0][0] * a.x + m[0][1] * a.y + m[0][2] * a.z + s[0],
                   m[1][0] * a.x + m[1][1] * a.y + m[1][2] * a.z + s[1],
                   m[2][0] * a.x + m[2][1] * a.y + m[2][2] * a.z + s[2], a.id});
  }
  return out;
}

std::string DataFile(const std::string& relative) {
  std::string path = std::string(TRESK_DATA_DIR) + "/" + relative;
  std::ifstream probe(path);
  return probe.good() ? path : std::string();
}

std::string SourceFile(const std::string& relative) {
  return std::string(TRESK_SOURCE_DIR) + "/" + relative;
}

} // namespace zoo
