// Closed-braid knot diagrams and random arc lists for the Alexander-matrix tests.
#include "tests/support/crossing_lists.hpp"

#include <algorithm>
#include <cstdlib>
#include <numeric>

namespace zoo {
namespace {

// Position at the bottom of the braid of the strand that starts at position `top`.
int BottomPosition(std::vector<int> const& word, int top) {
  for (int letter : word)
    top = top == std::abs(letter) - 1 ? top + 1 : top == std::abs(letter) ? top - 1 : top;
  return top;
}

bool ClosesToKnot(int strands, std::vector<int> const& word) {
  int pos = 0;
  for (int step = 1; step <= strands; ++step) {
    pos = BottomPosition(word, pos);
    if (pos == 0)
      return step == strands;
  }
  return false;
}

} // namespace

// Both strands run downwards; drawn with y up, the strand moving right has direction (1, -1) and
// the one moving left (-1, -1). Over (1, -1), under (-1, -1) turns clockwise: sign 0. So sigma_i
// gives sign 0 and its inverse sign 1.
std::vector<Crossing> BraidClosure(int strands, std::vector<int> const& word) {
  if (word.empty() || !ClosesToKnot(strands, word))
    return {};
  const int n = static_cast<int>(word.size());
  std::vector<Crossing> crossings(n, Crossing{0, 0, 0, 0, 0, 0});
  int arc = 0, pos = 0;
  for (int pass = 0; pass < strands; ++pass) {
    for (int k = 0; k < n; ++k) {
      const int g = std::abs(word[k]);
      if (pos != g - 1 && pos != g)
        continue;
      const bool movingRight = pos == g - 1, positive = word[k] > 0;
      Crossing& x = crossings[k];
      x.sign = positive ? 0 : 1;
      if (movingRight == positive)
        x.arcOver = arc % n;
      else
        x.arcIn = arc, x.arcOut = ++arc % n;
      pos = movingRight ? g : g - 1;
    }
  }
  return crossings;
}

std::vector<int> RandomKnotBraid(int crossings, uint32_t seed, int& strands) {
  std::mt19937 rng(seed);
  for (;;) {
    strands = std::uniform_int_distribution<int>(2, crossings + 1 < 5 ? crossings + 1 : 5)(rng);
    std::uniform_int_distribution<int> generator(1, strands - 1);
    std::vector<int> word(crossings);
    for (int& letter : word)
      letter = generator(rng) * (rng() % 2 == 0 ? 1 : -1);
    if (ClosesToKnot(strands, word))
      return word;
  }
}

std::vector<Crossing> RandomArcList(int n, std::mt19937& rng) {
  std::vector<int> in(n);
  std::iota(in.begin(), in.end(), 0);
  std::shuffle(in.begin(), in.end(), rng);
  std::vector<Crossing> crossings;
  for (int k = 0; k < n; ++k) {
    const int over = static_cast<int>(rng() % static_cast<uint32_t>(n)); // drawn before the sign
    crossings.push_back({0, 0, over, in[k], (in[k] + 1) % n, static_cast<int>(rng() % 2)});
  }
  return crossings;
}

} // namespace zoo
