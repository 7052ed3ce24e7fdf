// The one closure switch: which preprocessing closure each method number means, and the rule
// for a sphere closure that asks to be drawn again.
#include "chain/closing.hpp"

#include "preprocessing/chainprep.hpp" // for the CloseChain_* closures

namespace tresk {

void CloseByMethod(std::vector<ChainAtom>& chain, int method, ClosureRetry retry,
                   bool directionClosure) {
  int (*sphere)(std::vector<ChainAtom>&, double) = nullptr;
  switch (method) {
  case 1:
    sphere = CloseChain_OUT;
    break;
  case 2:
    sphere = CloseChain_2points;
    break;
  case 3:
    sphere = CloseChain_1point;
    break;
  case 4:
    if (directionClosure)
      CloseChain_1direction(chain);
    return;
  default:
    return;
  }
  while (sphere(chain, kClosureParameter) == -1 && retry == ClosureRetry::drawAgain) {
  }
}

} // namespace tresk
