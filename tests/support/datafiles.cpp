// Corpus access for the ground-truth tests: paths, listings, readers and knot-type names.
#include "tests/support/datafiles.hpp"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include <gtest/gtest.h>

#include "preprocessing/chainprep.hpp" // for ChainRead

namespace zoo {
namespace {

void DropRepeatedFirst(std::vector<ChainAtom>& ring) {
  if (ring.size() > 1) {
    const ChainAtom &a = ring.front(), &b = ring.back();
    if (a.x == b.x && a.y == b.y && a.z == b.z)
      ring.pop_back();
  }
}

} // namespace

std::string DataDir() {
  return TRESK_DATA_DIR;
}

std::string DataFile(const std::string& relative) {
  const std::string path = DataDir() + "/" + relative;
  return std::filesystem::exists(path) ? path : std::string();
}

std::string SourceFile(const std::string& relative) {
  return std::string(TRESK_SOURCE_DIR) + "/" + relative;
}

std::string TempPath(const std::string& name) {
  return testing::TempDir() + "tresk_" + std::to_string(getpid()) + "_" + name;
}

bool InCI() {
  const char* ci = std::getenv("CI");
  return ci && *ci;
}

std::vector<std::string> FilesIn(const std::string& folder, const std::string& suffix) {
  std::vector<std::string> names;
  const std::string path = DataFile(folder);
  if (path.empty())
    return names;
  for (const auto& entry : std::filesystem::directory_iterator(path)) {
    const std::string name = entry.path().filename().string();
    if (name.size() > suffix.size() && name.substr(name.size() - suffix.size()) == suffix)
      names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<ChainAtom> ReadChain(const std::string& relative) {
  std::string path = DataFile(relative);
  bool error = true;
  std::vector<ChainAtom> chain;
  if (!path.empty())
    chain = ChainRead(path.data(), error);
  return error ? std::vector<ChainAtom>() : chain;
}

std::vector<ChainAtom> ReadCurveJson(const std::string& path) {
  std::stringstream buffer;
  buffer << std::ifstream(path).rdbuf();
  const std::string text = buffer.str();
  std::vector<ChainAtom> out;
  // The numbers after "x":, "y": and "z": in turn, until one is missing.
  for (std::size_t pos = 0;;) {
    double v[3];
    for (int k = 0; k < 3; ++k) {
      const std::size_t at = text.find(std::string("\"") + "xyz"[k] + "\"", pos);
      const std::size_t colon = at == std::string::npos ? at : text.find(':', at);
      char* end = nullptr;
      if (colon != std::string::npos)
        v[k] = std::strtod(text.c_str() + colon + 1, &end);
      if (end == nullptr || end == text.c_str() + colon + 1) {
        DropRepeatedFirst(out);
        return out;
      }
      pos = static_cast<std::size_t>(end - text.c_str());
    }
    out.push_back({v[0], v[1], v[2], static_cast<int>(out.size()) + 1});
  }
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

std::string TypeFromName(std::string name) {
  if (name.rfind("knot.", 0) == 0)
    name = name.substr(5);
  const std::size_t end = name.find('_');
  return end == std::string::npos ? name
                                  : name.substr(0, name.find_first_not_of("0123456789", end + 1));
}

std::string TableName(const std::string& type) {
  static const std::map<std::string, std::string> shared = {
      {"0_1", "01"},
      {"8_20", "8_20|3_1#3_1"},
      {"8_21", "8_21|3_1#4_1"},
      {"3_1#3_1", "8_20|3_1#3_1"},
      {"3_1#4_1", "8_21|3_1#4_1"},
      {"10_1", "8_3"}, // 4 - 9t + 4t^2, the polynomial of 8_3
      {"10_66", "-3"}, // not in the table
  };
  auto it = shared.find(type);
  return it == shared.end() ? type : it->second;
}

int CrossingNumber(const std::string& type) {
  return std::atoi(type.c_str());
}

} // namespace zoo
