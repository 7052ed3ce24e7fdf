// The library's own C++ API: what is not already defined by the scan and its file format.
#include "entry/api.hpp"

#include "preprocessing/chainprep.hpp" // for ChainRead

namespace tresk {

std::vector<ChainAtom> ReadChain(const std::string& path) {
  std::vector<char> name(path.begin(), path.end());
  name.push_back('\0');
  bool error = true;
  std::vector<ChainAtom> chain = ChainRead(name.data(), error);
  if (error)
    chain.clear();
  return chain;
}

} // namespace tresk
