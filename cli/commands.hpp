// The sub-commands of the `tresk` program, each group registered by its own file, and the
// pieces they share: the chain-file argument, the seed of the random closures, failing.
#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "chain/naming.hpp"            // for tresk::KnotTable
#include "core/records.hpp"            // for ChainAtom
#include "preprocessing/readChain.hpp" // for tresk::ReadOptions

// `tresk knot` and `tresk poly`: the knot of one chain.
void RegisterKnotCommands(CLI::App& app);
// `tresk matrix` and `tresk plot`: the knot fingerprint and its picture.
void RegisterScanCommands(CLI::App& app);
// `tresk batch`: the knots of many files, one row per file and chain, resumable.
void RegisterBatchCommands(CLI::App& app);
// `tresk build-extended-table` (hidden): the extended knot table from ideal conformations.
void RegisterTableCommands(CLI::App& app);
// `tresk core`: the knot core of one chain, its tails and depth.
void RegisterCoreCommand(CLI::App& app);
// `tresk map`: the knot map of one chain (knots and slipknots).
void RegisterMapCommand(CLI::App& app);

// Ends the command with a failure status; CLI11 turns this into the program's exit status.
[[noreturn]] void Fail(int status);
// The required positional argument `file`: an existing chain file, described by `what`.
void AddChainFile(CLI::App* command, std::string& file,
                  const std::string& what = "Chain file: 'x y z' or 'id x y z' per line, PDB "
                                            "or mmCIF (C-alpha atoms)");
// Seeds rand() with `seed`, or from the clock when it is negative.
void SeedRandom(long long seed);
// -m/--closure-method (0..4) and -n/--closures (1..1000000) with the command's own help texts.
void AddClosureOptions(CLI::App* command, int& method, int& closures, const std::string& methodHelp,
                       const std::string& closuresHelp);
// --numeric-above: the crossing bound of exact naming (default: the value already in `bound`).
void AddNumericAbove(CLI::App* command, int& bound);
// --table standard|extended: which knot table names the polynomials (default standard).
void AddTableChoice(CLI::App* command, tresk::KnotTable& table);
// --chain, --model and --atom: which chain of a structure file is read.
void AddChainChoice(CLI::App* command, tresk::ReadOptions& choice);
// The chosen chain of `file`, with the chain, its size and its breaks said on standard error for
// structure files; otherwise "tresk COMMAND: cannot read a chain from FILE: why" and status 1.
std::vector<ChainAtom> ReadChainOrFail(const std::string& file, const tresk::ReadOptions& choice,
                                       const std::string& command);
// Status 1 with a message when `output` names the same file as `input` (writing it first would
// destroy the input).
void RefuseOverwritingInput(const std::string& input, const std::string& output,
                            const std::string& command);
// Status 1 with a message when a stream could not write everything (a full disk, /dev/full).
void FailUnlessWritten(std::ostream& out, const std::string& path, const std::string& command);
