// Readers for curvedata JSON curves and multi-ring files.
#include "tests/support/datafiles.hpp"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace zoo {
namespace {

void DropRepeatedFirst(std::vector<ChainAtom>& ring) {
  if (ring.size() > 1) {
    const ChainAtom &a = ring.front(), &b = ring.back();
    if (a.x == b.x && a.y == b.y && a.z == b.z)
      ring.pop_back();
  }
}

// The number after `"key":` starting the search at `from`; npos when absent.
size_t FindNumber(const std::string& text, const char* key, size_t from, double& value) {
  std::string quoted = std::string("\"") + key + "\"";
  size_t at = text.find(quoted, from);
  if (at == std::string::npos)
    return at;
  size_t colon = text.find(':', at + quoted.size());
  if (colon == std::string::npos)
    return colon;
  const char* begin = text.c_str() + colon + 1;
  char* end = nullptr;
  value = std::strtod(begin, &end);
  if (end == begin)
    return std::string::npos;
  return static_cast<size_t>(end - text.c_str());
}

} // namespace

std::vector<ChainAtom> ReadCurveJson(const std::string& path) {
  std::ifstream in(path);
  std::stringstream buffer;
  buffer << in.rdbuf();
  std::string text = buffer.str();
  std::vector<ChainAtom> out;
  size_t pos = 0;
  while (true) {
    double x, y, z;
    size_t px = FindNumber(text, "x", pos, x);
    if (px == std::string::npos)
      break;
    size_t py = FindNumber(text, "y", px, y);
    if (py == std::string::npos)
      break;
    size_t pz = FindNumber(text, "z", py, z);
    if (pz == std::string::npos)
      break;
    out.push_back({x, y, z, static_cast<int>(out.size()) + 1});
    pos = pz;
  }
  DropRepeatedFirst(out);
  return out;
}

std::vector<std::vector<ChainAtom>> ReadRings(const std::string& path) {
  std::ifstream in(path);
  std::vector<std::vector<ChainAtom>> rings;
  long count;
  while (in >> count && count > 0) {
    std::vector<ChainAtom> ring;
    for (long i = 0; i < count; ++i) {
      double x, y, z;
      if (!(in >> x >> y >> z))
        return rings;
      ring.push_back({x, y, z, static_cast<int>(i) + 1});
    }
    DropRepeatedFirst(ring);
    rings.push_back(std::move(ring));
  }
  return rings;
}

} // namespace zoo
