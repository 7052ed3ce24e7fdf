// Corner i = 0, 1, ... is the triangle (P[i], P[i+1], P[i+2 mod n]); it is tested against the
// segments before it (0 .. i-2), after it (i+3 .. n-2), then the closing segment (P[n-1], P[0])
// when 0 < i < n-3. The first corner that nothing blocks loses its middle point.
#include "tests/support/reduce_reference.hpp"

#include <algorithm>

#include "reduction/KknotsSimpler_closed.hpp" // for intersection

namespace reference {

int ReduceClosedChain(fPointR3* points, int n) {
  // The corner i = n-1 would lose P[0], which is never removed: the scan ends before it.
  for (int i = 0; n >= 4 && i < n - 1; ++i) {
    fPointR3 triangle[3] = {points[i], points[i + 1], points[(i + 2) % n]};
    bool blocked = false;
    for (int k = 0; k <= n - 2 && !blocked; ++k) {
      if (k <= i - 2 || k >= i + 3)
        blocked = intersection(triangle, points + k) != 0;
    }
    if (!blocked && 0 < i && i < n - 3) {
      fPointR3 closing[2] = {points[n - 1], points[0]};
      blocked = intersection(triangle, closing) != 0;
    }
    if (!blocked) { // remove P[i+1] and start again
      std::copy(points + i + 2, points + n, points + i + 1);
      --n, i = -1;
    }
  }
  return n;
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
