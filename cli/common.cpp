// What the sub-commands of `tresk` share: the chain-file argument and chain choice, seeding the
// random closures, reading a chain or failing with a message, guarding the outputs.
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <iostream>

#include "cli/commands.hpp"
#include "entry/api.hpp" // for tresk::ReadChain, tresk::CountChainBreaks

void Fail(int status) {
  throw CLI::RuntimeError(status);
}

void AddChainFile(CLI::App* command, std::string& file, const std::string& what) {
  command->add_option("file", file, what)->required()->check(CLI::ExistingFile);
}

void SeedRandom(long long seed) {
  std::srand(seed >= 0 ? static_cast<unsigned>(seed) : static_cast<unsigned>(std::time(nullptr)));
}

void AddClosureOptions(CLI::App* command, int& method, int& closures, const std::string& methodHelp,
                       const std::string& closuresHelp) {
  command->add_option("-m,--closure-method", method, methodHelp)
      ->check(CLI::Range(0, 4))
      ->capture_default_str();
  command->add_option("-n,--closures", closures, closuresHelp)
      ->check(CLI::Range(1, 1000000))
      ->capture_default_str();
}

void AddNumericAbove(CLI::App* command, int& bound) {
  command
      ->add_option("--numeric-above", bound,
                   "Name projections of more crossings than this by the determinant at t = 12 "
                   "instead of the exact polynomial (16 = the library's documented calls)")
      ->check(CLI::NonNegativeNumber)
      ->capture_default_str();
}

void AddTableChoice(CLI::App* command, tresk::KnotTable& table) {
  command
      ->add_option_function<std::string>(
          "--table",
          [&table](const std::string& name) {
            table = name == "extended" ? tresk::KnotTable::extended : tresk::KnotTable::standard;
          },
          "Knot table: standard (up to 8 crossings and 9_1, the library's documented table) or "
          "extended (every prime knot up to 10 crossings; knots sharing a polynomial are named "
          "together, e.g. 8_3|10_1)")
      ->check(CLI::IsMember({"standard", "extended"}))
      ->default_str("standard");
}

void AddChainChoice(CLI::App* command, tresk::ReadOptions& choice) {
  command->add_option("--chain", choice.chain,
                      "Chain of a PDB/mmCIF file: author chain id (or mmCIF label id); default: "
                      "the first polymer chain (batch: every polymer chain)");
  command->add_option("--model", choice.model, "Model of a PDB/mmCIF file (default: model 1)")
      ->check(CLI::Range(1, 1000000));
  command
      ->add_option("--atom", choice.atom,
                   "Backbone atom taken per residue: CA for proteins, P for nucleic acids")
      ->capture_default_str();
}

std::vector<ChainAtom> ReadChainOrFail(const std::string& file, const tresk::ReadOptions& choice,
                                       const std::string& command) {
  tresk::ReadResult read = tresk::ReadChain(file, choice);
  if (read.error.empty())
    read.error = tresk::CheckExtent(read.atoms);
  if (!read.error.empty()) {
    std::cerr << "tresk " << command << ": cannot read a chain from " << file << ": " << read.error
              << "\n";
    Fail(1);
  }
  if (!read.chain.empty()) {
    const int breaks = tresk::CountChainBreaks(read.atoms);
    std::cerr << "chain " << read.chain << " of model " << read.model << ": " << read.atoms.size()
              << " " << choice.atom << " atoms, " << breaks << " chain breaks\n";
  }
  return std::move(read.atoms);
}

void RefuseOverwritingInput(const std::string& input, const std::string& output,
                            const std::string& command) {
  std::error_code error;
  if (std::filesystem::equivalent(input, output, error)) {
    std::cerr << "tresk " << command << ": the output " << output
              << " is the input file; choose another name\n";
    Fail(1);
  }
}

void FailUnlessWritten(std::ostream& out, const std::string& path, const std::string& command) {
  out.flush();
  if (!out) {
    std::cerr << "tresk " << command << ": could not write " << path << "\n";
    Fail(1);
  }
}
