// `tresk core`: where the knot of an open chain sits — its knot core, the tails on both sides
// and how deep the core lies, as one readable line or a TSV row.
#include <iomanip>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "cli/commands.hpp"
#include "entry/api.hpp" // for tresk::FindKnotCore

namespace {

struct CoreCommandOptions {
  std::string file;
  tresk::ReadOptions choice;
  tresk::CoreOptions core;
  bool tsv = false;
};

std::string Fixed(double value, int digits) {
  std::ostringstream s;
  s << std::fixed << std::setprecision(digits) << value;
  return s.str();
}

// The verdict text without its trailing blank.
std::string Trimmed(std::string text) {
  while (!text.empty() && text.back() == ' ')
    text.pop_back();
  return text;
}

void RunCore(CoreCommandOptions& o) {
  std::vector<ChainAtom> chain = ReadChainOrFail(o.file, o.choice, "core");
  const std::string problem = tresk::KnotCoreProblem(chain, o.core);
  if (!problem.empty()) {
    std::cerr << "tresk core: " << problem << "\n";
    Fail(1);
  }
  const tresk::KnotCore c = tresk::FindKnotCore(chain, o.core);
  if (o.tsv) {
    std::cout << "type\tshare\tfirst\tlast\tfirst_id\tlast_id\tn_tail\tc_tail\tdepth\t"
                 "depth_fraction\tcore_share\tatoms\tverdict\n";
    std::cout << c.type << "\t" << Fixed(c.share, 2);
    if (c.found) {
      std::cout << "\t" << c.first << "\t" << c.last << "\t" << c.firstId << "\t" << c.lastId
                << "\t" << c.nTail << "\t" << c.cTail << "\t" << c.depth << "\t"
                << Fixed(c.depthFraction, 3) << "\t" << Fixed(c.coreShare, 2);
    } else {
      std::cout << "\t-\t-\t-\t-\t-\t-\t-\t-\t-";
    }
    std::cout << "\t" << chain.size() << "\t" << Trimmed(c.verdict) << "\n";
  } else if (c.found) {
    std::cout << c.type << " core " << c.firstId << "-" << c.lastId << " N-tail " << c.nTail
              << " C-tail " << c.cTail << " depth " << c.depth << " (" << Fixed(c.depthFraction, 2)
              << ")\n";
  } else if (c.ordinal == 0) {
    std::cout << "no knot core: the chain is not knotted (" << Trimmed(c.verdict) << ")\n";
  } else {
    std::cout << "no knot core: no subchain keeps " << c.type << " for the majority of closures ("
              << Trimmed(c.verdict) << ")\n";
  }
  std::cout.flush();
  if (!std::cout) {
    std::cerr << "tresk core: could not write the result\n";
    Fail(1);
  }
}

} // namespace

void RegisterCoreCommand(CLI::App& app) {
  auto o = std::make_shared<CoreCommandOptions>();
  CLI::App* c = app.add_subcommand(
      "core",
      "Find where the knot of an open chain sits: its dominant knot type (vote over closures "
      "of the whole chain), the knot core (the shortest subchain that keeps that type for the "
      "majority of its closures), the tails before and after it and its depth (the shorter "
      "tail, in atoms and as a fraction of the chain), e.g. '3_1 core 174-251 N-tail 173 "
      "C-tail 81 depth 81 (0.24)'. The core is given by the ids of its first and last atom; "
      "an unknotted chain has no core.");
  AddChainFile(c, o->file);
  AddClosureOptions(c, o->core.closureMethod, o->core.closures,
                    "How every chain and subchain is closed: 1 = both ends straight out to a "
                    "sphere around it (one fixed closure); 2 = each end to its own random point "
                    "of the sphere; 3 = both ends to one random point; 4 = both ends extended in "
                    "one random direction (the same directions for every subchain)",
                    "Closures that decide the whole chain and each subchain (methods 0 and 1 make "
                    "one)");
  c->add_option("-s,--seed", o->core.seed,
                "Seed of the closures: the same seed gives the same result")
      ->check(CLI::Range(0ULL, 4294967295ULL))
      ->capture_default_str();
  c->add_option("--step", o->core.step,
                "Step of the coarse grid of subchains before the step-1 refinement (default: "
                "a tenth of the chain's length, at most 10)")
      ->check(CLI::Range(1, 1000000));
  c->add_option("-j,--threads", o->core.threads,
                "Threads that reduce and name the closed subchains; 0 = all cores. The result "
                "does not depend on it")
      ->check(CLI::Range(0, 256))
      ->capture_default_str();
  AddChainChoice(c, o->choice);
  AddNumericAbove(c, o->core.naming.numericAbove);
  c->add_flag("--tsv", o->tsv,
              "Write a header line and one tab-separated row: the dominant type and its share of "
              "the whole chain's closures, positions and ids of the core's ends, tails, depth, "
              "the core's share, atoms, verdict; '-' where there is no core");
  c->footer("Example: tresk core examples/chains/knotted_core.xyz -j 2");
  c->callback([o] { RunCore(*o); });
}
