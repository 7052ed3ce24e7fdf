// The fingerprint drivers: their texts in both modes (the string driver repeats what it already
// holds), and run options that change nothing but speed: the output, the log text and the
// rand() sequence are the same on one thread, three, or every core.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/datafiles.hpp"

#include "core/log.hpp"
#include "entry/api.hpp"
#include "entry/entry.hpp"
#include "tests/support/curves.hpp"

namespace {

TEST(ScanDriver, TextsOfEveryDriverInBothModes) {
  std::vector<ChainAtom> arc; // half a turn of a helix: unknotted however it is closed
  for (int i = 0; i < 30; ++i)
    arc.push_back({10 * std::cos(0.1 * i), 10 * std::sin(0.1 * i), 0.2 * i, i + 1});
  const std::vector<ChainAtom> trefoil = zoo::TorusKnot(2, 3, 30);
  std::string h = "# 1 30", row = "1 30 3_1";
  for (int band = 90; band >= 0; band -= 3)
    h += " >" + std::to_string(band), row += band < 90 ? " 0" : "";
  h += " IN 1 30\n", row += " 0 1 30\n";
  const struct {
    const char* name;
    const std::vector<ChainAtom>& chain;
    int namesMode, closures;
    std::string file, text;
  } cases[] = {
      {"unknotted, names", arc, 1, 3, h + "UNKNOT\n", h + h + h + "UNKNOT\n"},
      {"unknotted, polynomials", arc, 0, 3, "{}", "{}{}{}"},
      {"trefoil, names", trefoil, 1, 3, h + row, h + h + row},
      {"trefoil, polynomials", trefoil, 0, 3, "{(1, 30): {'1 -1 1': 1}}",
       "{(1, 30): {'1 -1 1': 1}}"},
  };
  std::string path = zoo::TempPath("scan_driver.txt"), log;
  tresk::LogCapture capture(log);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    // Step 100 puts only the whole chain on the grid; threshold 100 refines nowhere.
    EXPECT_EQ(FindKnotFingerprint(c.chain, path.data(), 100, 100, 0, c.closures, c.namesMode, 15,
                                  false, 768000000ULL),
              1);
    std::stringstream file, stream;
    file << std::ifstream(path).rdbuf();
    EXPECT_EQ(file.str(), c.file);
    EXPECT_EQ(FindKnotFingerprint_string(c.chain, 100, 100, 0, c.closures, c.namesMode, 15, false,
                                         768000000ULL),
              c.text);
    tresk::WriteFingerprint(c.chain, stream, {100, 100, 0, c.closures, c.namesMode});
    EXPECT_EQ(stream.str(), c.file);
  }
  std::remove(path.c_str());
}

TEST(ScanOptions, OutputLogAndRandomSequenceDoNotDependOnThreads) {
  const std::vector<ChainAtom> chain = zoo::TorusKnot(2, 3, 60); // taken as an open chain
  auto run = [&](int threads) {
    tresk::ScanOptions o;
    o.threads = threads;
    unsigned long long done = 0, total = 1;
    o.progress = [&](int, unsigned long long d, unsigned long long t) { done = d, total = t; };
    std::ostringstream out, log;
    if (threads != 1)
      o.log = &log; // the single-threaded run writes to tresk::Log()
    std::string text;
    std::srand(11);
    {
      tresk::LogCapture capture(text);
      // Names with two-point closures, then polynomials with one-point closures; a small
      // budget gives several batches per phase.
      tresk::WriteFingerprint(chain, out, {12, 40, 2, 4, 1, 15, false, 13 * 3000}, o);
      tresk::WriteFingerprint(chain, out, {12, 40, 3, 3, 0, 15, false, 13 * 3000}, o);
    }
    EXPECT_EQ(done, total);
    return out.str() + "\nlog:\n" + text + log.str() +
           "\nnext rand: " + std::to_string(std::rand());
  };
  const std::string single = run(1);
  EXPECT_NE(single.find("3_1"), std::string::npos) << single;
  EXPECT_NE(single.find("Will continue."), std::string::npos) << single;
  for (int threads : {3, 0}) {
    SCOPED_TRACE(threads);
    EXPECT_EQ(run(threads), single);
  }
}

} // namespace
