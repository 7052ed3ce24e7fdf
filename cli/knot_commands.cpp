// `tresk knot` (the knot type of a whole open chain, voted over many random closures) and
// `tresk poly` (the Alexander polynomial of one projection of a closed chain).
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "cli/commands.hpp"
#include "entry/api.hpp" // for tresk::NameChain, tresk::PolynomialOfClosedChain, tresk::PolymerChains

namespace {

constexpr int kExactCrossingBound = 16; // the bound of the library's documented calls

struct KnotOptions {
  std::string file;
  tresk::ReadOptions choice;
  bool allChains = false;
  int closureMethod = 3;
  int closures = 100;
  long long seed = -1; // negative: seeded from the clock
  bool check = false;
  std::string output; // the distance-check report; none when empty
  tresk::NamingOptions naming;
  bool handed = false;
};

struct PolyOptions {
  std::string file;
  tresk::ReadOptions choice;
  int direction = 0;
  bool noReduce = false;
  tresk::NamingOptions naming;
  bool handed = false;
};

// One verdict over closures, as the file driver prints it; the distance check (with -c) goes
// to the log stream and to the report file.
void NameOneChain(const std::vector<ChainAtom>& chain, const KnotOptions& o, std::ostream* report,
                  const std::string& label) {
  if (o.check) {
    const std::string message = CheckDistancesBetweenAtoms(chain);
    if (message != "OK") {
      std::clog << message << "\n\n";
      if (report != nullptr)
        *report << message << "\n";
    }
  }
  tresk::VoteOptions vote;
  vote.closureMethod = o.closureMethod;
  vote.closures = o.closures;
  vote.naming = o.naming;
  vote.documented = o.naming.numericAbove == kExactCrossingBound; // exactly FindMajorKnot
  vote.handed = o.handed;
  std::cout << label << tresk::NameChain(chain, vote).verdict << "\n";
}

void RunKnot(const KnotOptions& o) {
  SeedRandom(o.seed);
  std::vector<std::string> chains = {o.choice.chain};
  if (o.allChains) {
    chains = tresk::PolymerChains(o.file, o.choice);
    if (chains.empty()) {
      std::cerr << "tresk knot: no polymer chain with " << o.choice.atom << " atoms in " << o.file
                << "\n";
      Fail(1);
    }
  }
  std::vector<std::vector<ChainAtom>> read;
  for (const std::string& id : chains) {
    tresk::ReadOptions choice = o.choice;
    choice.chain = id;
    read.push_back(ReadChainOrFail(o.file, choice, "knot"));
  }
  // The report is opened only once the input is read, and never over the input.
  std::ofstream report;
  if (!o.output.empty()) {
    RefuseOverwritingInput(o.file, o.output, "knot");
    report.open(o.output, std::ios::out | std::ios::trunc);
    FailUnlessWritten(report, o.output, "knot");
  }
  for (std::size_t k = 0; k < read.size(); ++k)
    NameOneChain(read[k], o, o.output.empty() ? nullptr : &report,
                 o.allChains ? chains[k] + "\t" : "");
  std::cout.flush();
  if (!o.output.empty())
    FailUnlessWritten(report, o.output, "knot");
  if (!std::cout) {
    std::cerr << "tresk knot: could not write the verdict\n";
    Fail(1);
  }
}

void RunPoly(const PolyOptions& o) {
  const tresk::ClosedChainPolynomial p = tresk::PolynomialOfClosedChain(
      ReadChainOrFail(o.file, o.choice, "poly"), o.direction, !o.noReduce, o.naming);
  std::cout << "atoms: " << p.atoms;
  if (!o.noReduce)
    std::cout << " (reduced to " << p.reducedAtoms << ")";
  std::cout << "\n";
  if (p.degenerate) {
    std::cout.flush();
    std::cerr << "tresk poly: the projection in direction " << o.direction
              << " is degenerate; try another --direction\n";
    Fail(2);
  }
  std::cout << "crossings: " << p.crossings << " in direction " << o.direction << "\n";
  if (p.exact) {
    if (p.crossings <= kExactCrossingBound)
      std::cout << "way: exact Alexander polynomial (at most " << kExactCrossingBound
                << " crossings)\ncoefficients:";
    else
      std::cout << "way: exact Alexander polynomial (" << p.crossings
                << " crossings)\ncoefficients:";
    for (const int c : p.coefficients)
      std::cout << " " << c;
    if (p.coefficients.empty())
      std::cout << " (a coefficient is beyond the int range)";
    std::cout << "\npolynomial: " << p.polynomial << "\n";
  } else {
    std::cout << "way: numeric determinant at t = 12 (more than " << o.naming.numericAbove
              << " crossings)\nvalue: " << p.value << "\n";
  }
  std::cout << "knot: " << p.name;
  if (!p.inTable)
    std::cout << (o.naming.table == tresk::KnotTable::extended
                      ? " (not in the extended table of knots up to 10 crossings)"
                      : " (not in the table of knots up to 8 crossings)");
  std::cout << "\n";
  if (o.handed)
    std::cout << "jones: " << (p.jonesKnown ? p.jones : "(the diagram is too wide)")
              << "\nhanded: " << p.handed << "\n";
}

} // namespace

void RegisterKnotCommands(CLI::App& app) {
  auto knot = std::make_shared<KnotOptions>();
  CLI::App* k = app.add_subcommand(
      "knot", "Name the knot of an open chain: close it many times at random, reduce and "
              "project each closure, and print every knot type found with its share, e.g. "
              "'3_1(70%) 01(30%)'.");
  AddChainFile(k, knot->file);

  AddClosureOptions(k, knot->closureMethod, knot->closures,
                    "How to close the chain, through a sphere around it: 0 = the chain is already "
                    "closed, use it as it is; 1 = push both ends straight out to the sphere (one "
                    "fixed closure); 2 = join each end to its own random point of the sphere; 3 = "
                    "join both ends to one random point of the sphere; 4 = extend both ends in one "
                    "random direction",
                    "How many random closures to vote over (methods 0 and 1 always make one)");
  k->add_option("-s,--seed", knot->seed,
                "Seed of the random closures, for repeatable results (default: from the clock)")
      ->check(CLI::Range(0LL, 4294967295LL));
  k->add_flag("-c,--check-distances", knot->check,
              "Check the distances between neighbouring atoms first and report chain breaks "
              "(the run goes on)");
  k->add_option("-o,--report", knot->output,
                "File that receives the distance-check message (default: none)");
  AddChainChoice(k, knot->choice);
  k->add_flag("--all-chains", knot->allChains,
              "Name the knot of every polymer chain of a structure file, one line per chain: "
              "chain id, a tab, the verdict");
  AddNumericAbove(k, knot->naming.numericAbove);
  AddTableChoice(k, knot->naming.table);
  k->add_flag("--handed", knot->handed,
              "Name each closure by its Alexander and its Jones polynomial, with the knot's hand: "
              "+3_1 (right-handed, positive crossings), -3_1 (its mirror), 4_1 (amphichiral); a "
              "knot whose Alexander polynomial is 1 is never called 01");
  k->footer("Example: tresk knot examples/chains/trefoil_open.xyz --seed 1");
  k->callback([knot] { RunKnot(*knot); });

  auto poly = std::make_shared<PolyOptions>();
  CLI::App* p = app.add_subcommand(
      "poly", "Print the Alexander polynomial of a closed chain seen in one projection, and the "
              "knot it names. The last atom is joined back to the first.");
  AddChainFile(p, poly->file, "Closed chain file: 'x y z' or 'id x y z' per line, PDB or mmCIF");
  p->add_option("-d,--direction", poly->direction,
                "Projection direction, 0 to 59 (another one helps when a projection is "
                "degenerate)")
      ->check(CLI::Range(0, 59))
      ->capture_default_str();
  p->add_flag("--no-reduce", poly->noReduce,
              "Project the chain as it is, without first removing atoms that do not change "
              "its knot (more crossings, slower)");
  AddChainChoice(p, poly->choice);
  AddNumericAbove(p, poly->naming.numericAbove);
  AddTableChoice(p, poly->naming.table);
  p->add_flag("--handed", poly->handed,
              "Also print the Jones polynomial of the diagram (in A, t = A^-4) and the handed "
              "name it gives with the Alexander polynomial");
  p->footer("Example: tresk poly examples/chains/trefoil_closed.xyz");
  p->callback([poly] { RunPoly(*poly); });
}
