// Corner i = 0, 1, ... is the triangle (P[i], P[i+1], P[i+2 mod n]); it is tested against the
// segments before it (0 .. i-2), after it (i+3 .. n-2), then the closing segment (P[n-1], P[0])
// when 0 < i < n-3. The first corner that nothing blocks loses its middle point.
#include "tests/support/reduce_reference.hpp"

#include <algorithm>

#include "reduction/KknotsSimpler_closed.hpp" // for intersection

namespace reference {

int ReduceClosedChain(fPointR3* points, int n) {
  auto blocks = [](fPointR3 a, fPointR3 b, fPointR3 c, fPointR3 p, fPointR3 q) {
    fPointR3 triangle[3] = {a, b, c}, segment[2] = {p, q};
    return intersection(triangle, segment) != 0;
  };
  for (;;) {
    if (n < 4)
      return n;
    int erase = -1;
    // The corner i = n-1 would lose P[0], which is never removed: the scan ends before it.
    for (int i = 0; i < n - 1 && erase < 0; ++i) {
      const fPointR3 a = points[i], b = points[i + 1], c = points[(i + 2) % n];
      bool blocked = false;
      for (int k = 0; k <= i - 2 && !blocked; ++k)
        blocked = blocks(a, b, c, points[k], points[k + 1]);
      for (int k = i + 3; k <= n - 2 && !blocked; ++k)
        blocked = blocks(a, b, c, points[k], points[k + 1]);
      if (!blocked && 0 < i && i < n - 3)
        blocked = blocks(a, b, c, points[n - 1], points[0]);
      if (!blocked)
        erase = i + 1;
    }
    if (erase < 0)
      return n;
    std::copy(points + erase + 1, points + n, points + erase);
    --n;
  }
}

int ChainReduceReference(std::vector<fPointR3>& buffer, std::vector<Job>& jobs) {
  std::vector<fPointR3> chain;
  for (Job& job : jobs) {
    if (job.length < 4)
      continue;
    chain.assign(buffer.begin() + job.begin, buffer.begin() + job.begin + job.length);
    job.length = ReduceClosedChain(chain.data(), job.length);
    std::copy(chain.begin(), chain.begin() + job.length, buffer.begin() + job.begin);
  }
  return static_cast<int>(jobs.size());
}

} // namespace reference
