// Surveys of many structure files: the row written per file and chain, its TSV and JSON-lines
// text, the analysis of one file into rows, and the rows an earlier run already wrote.
#pragma once

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "core/records.hpp"            // for ChainAtom
#include "preprocessing/readChain.hpp" // for tresk::ReadOptions

namespace tresk {

enum class SurveyFormat { Tsv, Jsonl };

struct SurveyOptions {
  ReadOptions choice;    // choice.chain "" = every polymer chain of a structure file
  int closureMethod = 3; // as FindMajorKnot takes it
  int closures = 100;    // random closures voted over per chain
  unsigned seed = 1;     // mixed with the file name and chain: see SurveySeed
  bool times = true;     // false: `seconds` is written as 0, so reruns give equal files
};

struct SurveyRow {
  std::string file;      // the path as given
  std::string chain;     // the chain read ("" for plain text files, or the chain asked for)
  std::size_t atoms = 0; // backbone atoms of the chain
  int breaks = 0;        // chain breaks the distance check finds (CountChainBreaks)
  std::string verdict;   // every type with its share, e.g. "3_1(70%) 01(30%)"
  std::string dominant;  // the most frequent type, e.g. "3_1"
  double share = 0.0;    // its share of the closures, 0 to 1
  double seconds = 0.0;  // reading and closing the chain
  std::string error;     // "" for a verdict; otherwise why the file or chain has none
};

// One (file, chain) unit of a survey; chain "" = every polymer chain of the file.
struct SurveyInput {
  std::string path;
  std::string chain;
};

// The units of files, folders (their .xyz .pdb .ent .cif .mmcif files, gzipped or not, sorted by
// name, not recursive) and @LIST files (one path per line, optionally followed by a chain id;
// '#' starts a comment line), in the order given, with `chain` for those that name none. A file
// named without a chain covers all its chains: its other mentions are dropped, and repeated
// entries count once. On failure (an unreadable list or folder) `error` says why and the result
// is empty.
std::vector<SurveyInput> ExpandSurveyInputs(const std::vector<std::string>& inputs,
                                            const std::string& chain, std::string& error);

// Chain breaks the distance check finds: every one, not only the 20 problems it lists.
int CountChainBreaks(const std::vector<ChainAtom>& atoms);

// The seed of rand() for one chain of one file: the same wherever and whenever it is analysed,
// and wherever the file lies (only its base name counts).
unsigned SurveySeed(unsigned seed, const std::string& file, const std::string& chain);

// One row per chain of `path` (the chosen chain, or every polymer chain of a structure file, or
// the one chain of a text file); a single error row when the file cannot be read.
std::vector<SurveyRow> SurveyFile(const std::string& path, const SurveyOptions& options);

// The header line ("" for JSON lines) and one row, each ending in a newline. Tabs and line
// breaks inside TSV fields become spaces; JSON strings are escaped.
std::string SurveyHeader(SurveyFormat format);
std::string FormatSurveyRow(const SurveyRow& row, SurveyFormat format);

// What an existing output already holds, as FormatSurveyRow wrote it: the (file, chain) keys of
// its whole rows and how many bytes those take. A last line without its newline is a row cut
// short: it does not count, and a resumed run cuts it off before appending. `error` is set when
// the file is not such an output (a TSV without our header, a line that is not a row); a missing
// file is an empty output.
struct SurveyDone {
  std::set<std::pair<std::string, std::string>> keys;
  std::size_t wholeBytes = 0;
  std::string error;
};
SurveyDone DoneKeys(const std::string& outputPath, SurveyFormat format);

// The key a row of (file, chain) has in DoneKeys (TSV fields lose their tabs and line breaks).
std::pair<std::string, std::string> SurveyKey(const std::string& file, const std::string& chain,
                                              SurveyFormat format);

} // namespace tresk
