// Closed curves of known knot type from the ground-truth data: after ChainReduce the diagram in
// direction 0 must be small enough for the exact polynomial (at most 16 crossings) for every knot
// of up to 8 crossings, and the knot determinant must be unchanged by the reduction.
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "preprocessing/chainprep.hpp"
#include "tests/support/curves.hpp"
#include "tests/support/datafiles.hpp"
#include "tests/support/invariants.hpp"

namespace {

namespace fs = std::filesystem;

struct Curve {
  std::string name;
  std::vector<ChainAtom> chain;
  int crossingNumber; // from the knot's name: 3_1 -> 3, 0_1 and the rings' unknots -> 0
};

// "knot.8_13d.short" -> 8, "10_1.xyz" -> 10, "figure8.json" -> 4, "trefoil.json" -> 3.
int CrossingNumberOf(const std::string& file) {
  if (file.find("trefoil") != std::string::npos)
    return 3;
  if (file.find("figure8") != std::string::npos)
    return 4;
  if (file.find("unknot") != std::string::npos)
    return 0;
  size_t underscore = file.find('_');
  while (underscore != std::string::npos &&
         (underscore == 0 || !std::isdigit(static_cast<unsigned char>(file[underscore - 1]))))
    underscore = file.find('_', underscore + 1);
  size_t start = underscore;
  while (start > 0 && std::isdigit(static_cast<unsigned char>(file[start - 1])))
    --start;
  return std::stoi(file.substr(start, underscore - start));
}

std::vector<Curve> ClosedCurves() {
  std::vector<Curve> curves;
  std::string root = zoo::DataFile("MANIFEST.md");
  if (root.empty())
    return curves;
  fs::path closed = fs::path(root).parent_path() / "closed";
  for (const char* folder : {"fremlin", "gilbert_ideal/sampled", "curvedata"}) {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(closed / folder))
      files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (const fs::path& file : files) {
      std::string name = file.filename().string();
      std::vector<ChainAtom> chain;
      if (file.extension() == ".json") {
        chain = zoo::ReadCurveJson(file.string());
      } else {
        bool error = true;
        std::string path = file.string();
        chain = ChainRead(path.data(), error);
      }
      curves.push_back({std::string(folder) + "/" + name, chain, CrossingNumberOf(name)});
    }
  }
  // Rings 0 (4_1), 1, 4, 5, 6, 9 (3_1) and 2, 3, 7, 8 (unknots).
  const int ringKnots[] = {4, 3, 0, 0, 3, 3, 3, 0, 0, 3};
  auto rings = zoo::ReadRings((closed / "kymoknot_rings/structures_P05L_first_10.dat").string());
  for (size_t i = 0; i < rings.size() && i < 10; ++i)
    curves.push_back({"ring " + std::to_string(i), rings[i], ringKnots[i]});
  return curves;
}

TEST(PreprocessingGroundTruth, ReducedDiagramsStaySmall) {
  std::vector<Curve> curves = ClosedCurves();
  if (curves.empty())
    GTEST_SKIP() << "ground-truth data not present";
  int large = 0, largeSmall = 0, largest = 0;
  for (const Curve& c : curves) {
    SCOPED_TRACE(c.name);
    ASSERT_GT(c.chain.size(), 3u);
    long before = zoo::KnotDeterminant(ProjectChain(c.chain, 0, false));
    std::vector<ChainAtom> reduced = c.chain;
    ChainReduce(reduced, true);
    std::vector<Edge> edges = ProjectChain(reduced, 0, true);
    int crossings = zoo::CountCrossings(edges);
    EXPECT_EQ(zoo::KnotDeterminant(edges), before);
    if (c.crossingNumber <= 8) {
      EXPECT_LE(crossings, 16);
      largest = std::max(largest, crossings);
    } else {
      ++large;
      largeSmall += crossings <= 16;
    }
  }
  std::printf("[ info ] %zu curves; at most %d crossings up to 8-crossing knots; %d of %d "
              "curves of 9-10 crossings at or below 16\n",
              curves.size(), largest, largeSmall, large);
}

} // namespace
