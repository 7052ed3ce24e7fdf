// What the sub-commands of `tresk` share: the chain-file argument, seeding the random closures,
// reading a chain or failing with a message.
#include <cstdlib>
#include <ctime>
#include <iostream>

#include "cli/commands.hpp"
#include "entry/api.hpp" // for tresk::ReadChain

void Fail(int status) {
  throw CLI::RuntimeError(status);
}

void AddChainFile(CLI::App* command, std::string& file, const std::string& what) {
  command->add_option("file", file, what)->required()->check(CLI::ExistingFile);
}

void SeedRandom(long long seed) {
  std::srand(seed >= 0 ? static_cast<unsigned>(seed) : static_cast<unsigned>(std::time(nullptr)));
}

std::vector<ChainAtom> ReadChainOrFail(const std::string& file, const std::string& command) {
  tresk::ReadResult read = tresk::ReadChain(file);
  if (!read.error.empty()) {
    std::cerr << "tresk " << command << ": cannot read a chain from " << file << ": " << read.error
              << "\n";
    Fail(1);
  }
  return std::move(read.atoms);
}
