// Every smoothing of every crossing, its loops counted with a union-find over strand labels,
// summed as A^(a - b) delta^(loops - 1), then (-A^3)^(-w).
#include "tests/support/jones_reference.hpp"

#include <map>
#include <numeric>

namespace reference {
namespace {

int Find(std::vector<int>& parent, int x) {
  while (parent[x] != x)
    x = parent[x] = parent[parent[x]];
  return x;
}

} // namespace

tresk::JonesPolynomial JonesByStateSum(const std::vector<tresk::PdCrossing>& pd) {
  if (pd.empty())
    return {0, {1}};
  int labels = 0, writhe = 0;
  for (const auto& x : pd) {
    for (const int l : x.label)
      labels = std::max(labels, l + 1);
    writhe += x.sign > 0 ? 1 : -1;
  }
  std::map<int, long long> sum; // exponent of A -> coefficient
  const unsigned long states = 1ul << pd.size();
  for (unsigned long s = 0; s < states; ++s) {
    std::vector<int> parent(static_cast<std::size_t>(labels));
    std::iota(parent.begin(), parent.end(), 0);
    int a = 0;
    for (std::size_t k = 0; k < pd.size(); ++k) {
      const int* l = pd[k].label;
      const bool aSmoothing = (s >> k & 1ul) == 0;
      a += aSmoothing ? 1 : -1;
      parent[Find(parent, l[0])] = Find(parent, aSmoothing ? l[1] : l[3]);
      parent[Find(parent, l[2])] = Find(parent, aSmoothing ? l[3] : l[1]);
    }
    int loops = 0;
    for (int x = 0; x < labels; ++x)
      loops += Find(parent, x) == x;
    // a loops-1 fold product of delta = -A^2 - A^-2, times A^a.
    std::map<int, long long> term = {{a, 1}};
    for (int d = 1; d < loops; ++d) {
      std::map<int, long long> next;
      for (const auto& [e, c] : term)
        next[e + 2] -= c, next[e - 2] -= c;
      term.swap(next);
    }
    for (const auto& [e, c] : term)
      sum[e] += c;
  }
  const long long sign = writhe % 2 == 0 ? 1 : -1;
  std::map<int, long long> f;
  for (const auto& [e, c] : sum)
    if (c != 0)
      f[e - 3 * writhe] = sign * c;
  tresk::JonesPolynomial out;
  if (f.empty())
    return out;
  out.lowest = f.begin()->first;
  for (int e = out.lowest; e <= f.rbegin()->first; e += 4) {
    const auto found = f.find(e);
    out.coefficients.push_back(found == f.end() ? 0 : found->second);
  }
  return out;
}

} // namespace reference
