// An application built against the installed headers and libraries: projects a small closed
// chain, finds its crossings and checks that the status strings are there.
#include <iostream>
#include <vector>

#include "entry/tresk.hpp"

int main() {
  std::vector<ChainAtom> square = {{0, 0, 0, 1}, {1, 0, 0.1, 2}, {1, 1, 0, 3}, {0, 1, 0.1, 4}};
  std::vector<Edge> edges = ProjectChain(square, 0, true);
  std::vector<Crossing> crossings;
  int rc = FindAllCrossings(edges, crossings, true);
  std::cout << "edges " << edges.size() << " crossings " << crossings.size() << " " << OK << "\n";
  return (edges.size() == 4 && rc == 0 && crossings.empty() && OK == "OK") ? 0 : 1;
}
