// An application built against the installed headers and libraries: projects a small closed
// chain, finds its crossings and checks that the status strings are there. Its own global
// names below would clash with any internal helper that leaked out of the library's headers.
#include <iostream>
#include <vector>

#include "entry/tresk.hpp"

struct Vec3 {
  int clash;
};
inline int Dot(int a) {
  return a;
}
struct ProjectionFrame {};

int main() {
  std::vector<ChainAtom> square = {{0, 0, 0, 1}, {1, 0, 0.1, 2}, {1, 1, 0, 3}, {0, 1, 0.1, 4}};
  std::vector<Edge> edges = ProjectChain(square, 0, true);
  std::vector<Crossing> crossings;
  int rc = FindAllCrossings(edges, crossings, true);
  std::cout << "edges " << edges.size() << " crossings " << crossings.size() << " " << OK << "\n";
  return (edges.size() == 4 && rc == 0 && crossings.empty() && OK == "OK") ? 0 : 1;
}
