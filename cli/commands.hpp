// The sub-commands of the `tresk` program, each group registered by its own file, and the
// pieces they share: the chain-file argument, the seed of the random closures, failing.
#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "core/records.hpp" // for ChainAtom

// `tresk knot` and `tresk poly`: the knot of one chain.
void RegisterKnotCommands(CLI::App& app);
// `tresk matrix` and `tresk plot`: the knot fingerprint and its picture.
void RegisterScanCommands(CLI::App& app);

// Ends the command with a failure status; CLI11 turns this into the program's exit status.
[[noreturn]] void Fail(int status);
// The required positional argument `file`: an existing chain file, described by `what`.
void AddChainFile(CLI::App* command, std::string& file,
                  const std::string& what = "Chain file: 'x y z' or 'id x y z' per line, PDB "
                                            "or mmCIF (C-alpha atoms)");
// Seeds rand() with `seed`, or from the clock when it is negative.
void SeedRandom(long long seed);
// The chain in `file`; otherwise "tresk COMMAND: cannot read a chain from FILE" and status 1.
std::vector<ChainAtom> ReadChainOrFail(const std::string& file, const std::string& command);
