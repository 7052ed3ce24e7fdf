// Closed curves of known knot type must be named right: parametric knots and connected sums at
// random orientations, and every closed curve of the ground-truth corpus. The reduction must
// keep the knot determinant and leave small diagrams (the exact polynomial's range).
#include <fstream>
#include <iostream>
#include <sstream>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "chain/direction.hpp"
#include "chain/manyClosures.hpp"
#include "entry/entry.hpp"
#include "knots/whichKnot.hpp"
#include "preprocessing/chainprep.hpp"
#include "knots/jones.hpp"
#include "tests/support/curves.hpp"
#include "tests/support/datafiles.hpp"
#include "tests/support/invariants.hpp"

namespace {

using zoo::Chain;
using zoo::TableName;

// The verdict of closure method 0, guarded: a chain whose 30 directions all fail numerically
// would keep the vote re-closing it for ever.
std::string NameClosed(const Chain& chain) {
  Chain reduced = chain;
  ChainReduce(reduced, true);
  bool usable = false;
  for (int d = 0; d < 30 && !usable; ++d)
    usable = FindTheKnotInParticularDirection(reduced, d) != 40;
  if (!usable)
    return "(every direction failed)";
  int counts[42];
  FindOneKnot(chain, counts, 0, 1);
  for (int k = 0; k < 42; ++k)
    if (counts[k] > 0)
      return knots[k].name;
  return "(no vote)";
}

TEST(ClosedGroundTruth, BuiltCurvesAtRandomOrientations) {
  const Chain trefoil = zoo::TorusKnot(2, 3, 100), figureEight = zoo::FigureEight(120);
  // At most 256 atoms each, so that FindTheKnot's unreduced projection gets ranked directions.
  const std::vector<std::pair<Chain, std::string>> curves = {
      {zoo::Circle(60), "0_1"},
      {trefoil, "3_1"},
      {zoo::TorusKnot(2, 5, 180), "5_1"},
      {zoo::TorusKnot(2, 7, 240), "7_1"},
      {zoo::TorusKnot(3, 4, 240), "8_19"},
      {figureEight, "4_1"},
      {zoo::ConnectedSum(trefoil, trefoil), "3_1#3_1"},
      {zoo::ConnectedSum(trefoil, figureEight), "3_1#4_1"},
  };
  for (const auto& [curve, type] : curves) {
    for (unsigned seed = 1; seed <= 5; ++seed) {
      SCOPED_TRACE(type + " seed " + std::to_string(seed));
      const Chain chain = zoo::RandomlyRotated(curve, seed * 101);
      EXPECT_EQ(knots[FindTheKnot(chain)].name, TableName(type));
      EXPECT_EQ(NameClosed(chain), TableName(type));
    }
  }
}

struct Curve {
  std::string name;
  Chain chain;
  std::string type;
};

std::vector<Curve> CorpusCurves() {
  std::vector<Curve> curves;
  const std::pair<std::string, std::string> folders[] = {{"closed/fremlin", ".short"},
                                                         {"closed/gilbert_ideal/sampled", ".xyz"}};
  for (const auto& [folder, suffix] : folders)
    for (const std::string& f : zoo::FilesIn(folder, suffix))
      curves.push_back({f, zoo::ReadChain(folder + "/" + f), zoo::TypeFromName(f)});
  // knot_<type>.json; the others are named for their knot.
  const std::map<std::string, std::string> jsonType = {
      {"figure8.json", "4_1"}, {"ochiai_unknot.json", "0_1"}, {"trefoil.json", "3_1"}};
  for (const std::string& f : zoo::FilesIn("closed/curvedata", ".json")) {
    auto type = jsonType.find(f);
    curves.push_back({f, zoo::ReadCurveJson(zoo::DataFile("closed/curvedata/" + f)),
                      type != jsonType.end()     ? type->second
                      : f.rfind("knot_", 0) == 0 ? zoo::TypeFromName(f.substr(5))
                                                 : "unlisted"});
  }
  // Labels of the reference output shipped with the rings.
  const char* ringType[] = {"4_1", "3_1", "0_1", "0_1", "3_1", "3_1", "3_1", "0_1", "0_1", "3_1"};
  const auto rings =
      zoo::ReadRings(zoo::DataFile("closed/kymoknot_rings/structures_P05L_first_10.dat"));
  for (std::size_t i = 0; i < rings.size() && i < 10; ++i)
    curves.push_back({"ring " + std::to_string(i), rings[i], ringType[i]});
  return curves;
}

// Every knot of up to 8 crossings is named right and reduces to at most 16 crossings in
// direction 0; every curve keeps its knot determinant through the reduction. The rate beyond 8
// crossings is printed.
TEST(ClosedGroundTruth, CorpusCurves) {
  TRESK_REQUIRE_DATA();
  const std::vector<Curve> curves = CorpusCurves();
  ASSERT_GT(curves.size(), 100u);
  int right = 0, beyond = 0, beyondRight = 0;
  for (const Curve& c : curves) {
    SCOPED_TRACE(c.name + " (" + c.type + ")");
    ASSERT_GT(c.chain.size(), 3u) << "unreadable";
    Chain reduced = c.chain;
    ChainReduce(reduced, true);
    const std::vector<Edge> edges = ProjectChain(reduced, 0, true);
    EXPECT_EQ(zoo::KnotDeterminant(edges), zoo::KnotDeterminant(ProjectChain(c.chain, 0, false)));
    const std::string name = NameClosed(c.chain);
    const bool ok = name == TableName(c.type);
    if (zoo::CrossingNumber(c.type) <= 8) {
      EXPECT_TRUE(ok) << "got " << name;
      EXPECT_LE(zoo::CountCrossings(edges), 16);
      right += ok;
    } else {
      ++beyond;
      beyondRight += ok;
      std::cout << (ok ? "  ok   " : "  MISS ") << c.name << ": expected " << TableName(c.type)
                << ", got " << name << "\n";
    }
  }
  std::cout << right << "/" << curves.size() - beyond << " right up to 8 crossings, " << beyondRight
            << "/" << beyond << " beyond\n";
}

// The Jones polynomial of every closed curve of the corpus is the names table's for its knot or
// for its mirror image (the table is read here, as published, not from our embedded copy).
TEST(JonesPolynomial, EveryCorpusCurveMatchesTheNamesTable) {
  TRESK_REQUIRE_DATA();
  std::map<std::string, std::map<int, long long>> byName; // knot name -> exponent -> coefficient
  std::ifstream table(zoo::DataFile("tables/knoto-id_knot_names.txt"));
  for (std::string line; std::getline(table, line);) {
    const std::size_t tab = line.find('\t');
    if (tab == std::string::npos)
      continue;
    std::map<int, long long> poly;
    std::istringstream terms(line.substr(tab + 1));
    for (std::string sign, term; terms >> sign >> term;) {
      const std::size_t star = term.find('*'), caret = term.find("A^(");
      const long long c =
          caret == std::string::npos || star != std::string::npos ? std::stoll(term) : 1;
      const int e = caret == std::string::npos ? 0 : std::stoi(term.substr(caret + 3));
      poly[e] += sign == "-" ? -c : c;
    }
    std::istringstream names(line.substr(0, tab));
    for (std::string name; std::getline(names, name, '|');)
      byName[name] = poly;
  }
  ASSERT_GT(byName.size(), 1000u);
  int checked = 0;
  for (const Curve& c : CorpusCurves()) {
    if (c.type == "unlisted" || c.chain.size() < 4)
      continue;
    SCOPED_TRACE(c.name + " (" + c.type + ")");
    Chain chain = c.chain;
    ChainReduce(chain, true);
    tresk::JonesPolynomial jones;
    tresk::JonesStatus status = tresk::JonesStatus::degenerate;
    for (int d = 0; d < 30 && status == tresk::JonesStatus::degenerate; ++d)
      status = tresk::JonesOfClosedChain(chain, d, jones);
    ASSERT_EQ(status, tresk::JonesStatus::ok);
    std::map<int, long long> ours;
    for (std::size_t k = 0; k < jones.coefficients.size(); ++k)
      if (jones.coefficients[k] != 0)
        ours[jones.lowest + 4 * static_cast<int>(k)] = jones.coefficients[k];
    const std::string type = c.type == "0_1" ? "0_1" : c.type;
    const bool found = (byName.count(type) && byName[type] == ours) ||
                       (byName.count(type + "m") && byName[type + "m"] == ours);
    EXPECT_TRUE(found) << tresk::JonesText(jones);
    ++checked;
  }
  EXPECT_GT(checked, 120); // 132 curves of known type
}

} // namespace
