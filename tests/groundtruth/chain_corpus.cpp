// Folder listing, reading and knot-type names for the single-chain ground-truth tests.
#include "tests/groundtruth/chain_corpus.hpp"

#include <dirent.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <map>

#include "preprocessing/chainprep.hpp" // for ChainRead
#include "tests/support/curves.hpp"    // for DataFile

namespace corpus {

std::vector<std::string> FilesIn(const std::string& folder, const std::string& suffix) {
  std::vector<std::string> names;
  std::string path = zoo::DataFile(folder);
  if (path.empty())
    return names;
  if (DIR* dir = opendir(path.c_str())) {
    while (dirent* entry = readdir(dir)) {
      std::string name = entry->d_name;
      if (name.size() > suffix.size() &&
          name.compare(name.size() - suffix.size(), suffix.size(), suffix) == 0)
        names.push_back(name);
    }
    closedir(dir);
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<ChainAtom> Read(const std::string& relative) {
  std::string path = zoo::DataFile(relative);
  if (path.empty())
    return {};
  bool error = true;
  std::vector<ChainAtom> chain = ChainRead(path.data(), error);
  if (error)
    chain.clear();
  return chain;
}

std::string TypeFromName(std::string name) {
  if (name.rfind("knot.", 0) == 0)
    name = name.substr(5);
  std::size_t end = name.find('_');
  if (end == std::string::npos)
    return name;
  ++end;
  while (end < name.size() && std::isdigit(static_cast<unsigned char>(name[end])))
    ++end;
  return name.substr(0, end);
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

} // namespace corpus
