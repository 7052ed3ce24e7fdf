// `tresk map`: the knot map of an open chain — its class (K, S, U), its types, the knot of the
// whole chain and every slipknot with core, tails, loop and slipknotting segment — as readable
// lines, TSV rows or one JSON object.
#include <iomanip>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "cli/commands.hpp"
#include "scan/knotMap.hpp" // for tresk::MapKnots

namespace {

struct MapCommandOptions {
  std::string file;
  tresk::ReadOptions choice;
  tresk::MapOptions map;
  bool tsv = false;
  bool json = false;
};

std::string Fixed(double value, int digits) {
  std::ostringstream s;
  s << std::fixed << std::setprecision(digits) << value;
  return s.str();
}

std::string Trimmed(std::string text) {
  while (!text.empty() && text.back() == ' ')
    text.pop_back();
  return text;
}

// A stretch of positions first..last by the ids of its atoms ("-" when absent).
std::string Ids(const std::vector<ChainAtom>& chain, int first, int last) {
  if (first <= 0 || last <= 0)
    return "-";
  return std::to_string(chain[static_cast<std::size_t>(first - 1)].id) + "-" +
         std::to_string(chain[static_cast<std::size_t>(last - 1)].id);
}

std::string JsonIds(const std::vector<ChainAtom>& chain, int first, int last) {
  if (first <= 0 || last <= 0)
    return "null";
  return "[" + std::to_string(chain[static_cast<std::size_t>(first - 1)].id) + ", " +
         std::to_string(chain[static_cast<std::size_t>(last - 1)].id) + "]";
}

void WriteText(const tresk::KnotMap& m, const std::vector<ChainAtom>& chain, std::ostream& out) {
  out << "class " << m.chainClass << "  types " << (m.types.empty() ? "-" : m.types)
      << "  whole chain " << Trimmed(m.verdict) << "\n";
  for (const tresk::KnottedRegion& r : m.regions) {
    out << (r.slipknot ? "slipknot " : "knot ") << r.type;
    if (!r.found) {
      out << " no core (no subchain keeps it for the majority of closures)\n";
      continue;
    }
    out << " core " << r.firstId << "-" << r.lastId << " N-tail " << r.nTail << " C-tail "
        << r.cTail << " (" << Fixed(r.coreShare, 2) << ")";
    for (const auto& [side, loop] : {std::make_pair("N", r.nSide), std::make_pair("C", r.cSide)})
      if (loop.loopFirst > 0)
        out << "; " << side << "-side loop " << Ids(chain, loop.loopFirst, loop.loopLast)
            << " segment " << Ids(chain, loop.segmentFirst, loop.segmentLast);
    out << "\n";
  }
}

void WriteTsv(const tresk::KnotMap& m, const std::vector<ChainAtom>& chain, std::ostream& out) {
  out << "class\ttypes\tkind\ttype\tcore\tn_tail\tc_tail\tcore_share\tn_loop\tn_segment\t"
         "c_loop\tc_segment\tatoms\tverdict\n";
  const std::string head =
      std::string(1, m.chainClass) + "\t" + (m.types.empty() ? "-" : m.types) + "\t";
  const std::string tail = "\t" + std::to_string(m.atoms) + "\t" + Trimmed(m.verdict) + "\n";
  if (m.regions.empty())
    out << head << "-\t-\t-\t-\t-\t-\t-\t-\t-\t-" << tail;
  for (const tresk::KnottedRegion& r : m.regions) {
    out << head << (r.slipknot ? "slipknot" : "knot") << "\t" << r.type << "\t";
    if (r.found)
      out << Ids(chain, r.first, r.last) << "\t" << r.nTail << "\t" << r.cTail << "\t"
          << Fixed(r.coreShare, 2);
    else
      out << "-\t-\t-\t-";
    out << "\t" << Ids(chain, r.nSide.loopFirst, r.nSide.loopLast) << "\t"
        << Ids(chain, r.nSide.segmentFirst, r.nSide.segmentLast) << "\t"
        << Ids(chain, r.cSide.loopFirst, r.cSide.loopLast) << "\t"
        << Ids(chain, r.cSide.segmentFirst, r.cSide.segmentLast) << tail;
  }
}

void WriteJson(const tresk::KnotMap& m, const std::vector<ChainAtom>& chain, std::ostream& out) {
  out << "{\"class\": \"" << m.chainClass << "\", \"types\": \"" << m.types << "\", \"verdict\": \""
      << Trimmed(m.verdict) << "\", \"atoms\": " << m.atoms << ", \"regions\": [";
  for (std::size_t i = 0; i < m.regions.size(); ++i) {
    const tresk::KnottedRegion& r = m.regions[i];
    out << (i ? ", " : "") << "{\"kind\": \"" << (r.slipknot ? "slipknot" : "knot")
        << "\", \"type\": \"" << r.type << "\", \"core\": ";
    if (r.found)
      out << JsonIds(chain, r.first, r.last) << ", \"positions\": [" << r.first << ", " << r.last
          << "], \"n_tail\": " << r.nTail << ", \"c_tail\": " << r.cTail
          << ", \"core_share\": " << Fixed(r.coreShare, 2);
    else
      out << "null";
    out << ", \"n_loop\": " << JsonIds(chain, r.nSide.loopFirst, r.nSide.loopLast)
        << ", \"n_segment\": " << JsonIds(chain, r.nSide.segmentFirst, r.nSide.segmentLast)
        << ", \"c_loop\": " << JsonIds(chain, r.cSide.loopFirst, r.cSide.loopLast)
        << ", \"c_segment\": " << JsonIds(chain, r.cSide.segmentFirst, r.cSide.segmentLast) << "}";
  }
  out << "]}\n";
}

void RunMap(MapCommandOptions& o) {
  std::vector<ChainAtom> chain = ReadChainOrFail(o.file, o.choice, "map");
  const std::string problem = tresk::MapProblem(chain, o.map);
  if (!problem.empty()) {
    std::cerr << "tresk map: " << problem << "\n";
    Fail(1);
  }
  const tresk::KnotMap m = tresk::MapKnots(chain, o.map);
  if (o.json)
    WriteJson(m, chain, std::cout);
  else if (o.tsv)
    WriteTsv(m, chain, std::cout);
  else
    WriteText(m, chain, std::cout);
  std::cout.flush();
  if (!std::cout) {
    std::cerr << "tresk map: could not write the result\n";
    Fail(1);
  }
}

} // namespace

void RegisterMapCommand(CLI::App& app) {
  auto o = std::make_shared<MapCommandOptions>();
  CLI::App* c = app.add_subcommand(
      "map",
      "The knot map of an open chain, read from its fingerprint: class K (the whole chain is "
      "knotted), S (only subchains are: slipknots) or U, the list of types, the knot of the "
      "whole chain with its core and tails, and every slipknot with its core, its slipknot "
      "loop and its slipknotting segment (ids of first and last atoms).");
  AddChainFile(c, o->file);
  AddClosureOptions(c, o->map.closureMethod, o->map.closures,
                    "How every subchain is closed: 1 = both ends straight out to a sphere "
                    "around it (one fixed closure); 2 = each end to its own random point of the "
                    "sphere; 3 = both ends to one random point; 4 = both ends extended in one "
                    "random direction (the same directions for every subchain)",
                    "Closures that decide each subchain (methods 0 and 1 make one)");
  c->add_option("-s,--seed", o->map.seed, "Seed of the closures: the same seed gives the same map")
      ->check(CLI::Range(0ULL, 4294967295ULL))
      ->capture_default_str();
  c->add_option("--step", o->map.step,
                "Step of the fingerprint's coarse grid (default: a tenth of the chain's length, "
                "at most 10)")
      ->check(CLI::Range(1, 1000000));
  c->add_option("-j,--threads", o->map.threads,
                "Threads that reduce and name the closed subchains; 0 = all cores. The map does "
                "not depend on it")
      ->check(CLI::Range(0, 256))
      ->capture_default_str();
  AddChainChoice(c, o->choice);
  AddNumericAbove(c, o->map.naming.numericAbove);
  auto* tsv = c->add_flag("--tsv", o->tsv,
                          "A header line and one tab-separated row per knotted region (one row "
                          "with '-' for an unknotted chain)");
  c->add_flag("--json", o->json, "One JSON object: class, types, verdict, atoms, regions")
      ->excludes(tsv);
  c->footer("Example: tresk map examples/chains/knotted_core.xyz -j 2");
  c->callback([o] { RunMap(*o); });
}
