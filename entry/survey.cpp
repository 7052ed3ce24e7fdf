// Surveys of many structure files: each chain read, closed many times with its own seed and
// named, one row per chain in TSV or JSON lines; and the rows an earlier run left behind.
#include "entry/survey.hpp"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "entry/naming.hpp"            // for tresk::NameChain
#include "preprocessing/distances.hpp" // for tresk::CheckDistances

namespace tresk {
namespace {

const char* const kColumns[] = {"file",     "chain", "atoms",   "breaks", "verdict",
                                "dominant", "share", "seconds", "error"};

std::string TsvField(std::string text) {
  for (char& c : text)
    if (c == '\t' || c == '\n' || c == '\r')
      c = ' ';
  return text;
}

std::string JsonString(const std::string& text) {
  std::string out = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') {
      out += '\\';
      out += c;
    } else if (static_cast<unsigned char>(c) < 0x20) {
      char code[8];
      std::snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned>(c));
      out += code;
    } else {
      out += c;
    }
  }
  return out + "\"";
}

// Reads the JSON string that starts at `at` (its opening quote) as JsonString wrote it.
bool ParseJsonString(const std::string& line, std::size_t& at, std::string& value) {
  if (at >= line.size() || line[at] != '"')
    return false;
  value.clear();
  for (++at; at < line.size(); ++at) {
    char c = line[at];
    if (c == '"') {
      ++at;
      return true;
    }
    if (c == '\\') {
      if (++at >= line.size())
        return false;
      c = line[at];
      if (c == 'u') {
        if (at + 4 >= line.size())
          return false;
        c = static_cast<char>(std::strtol(line.substr(at + 1, 4).c_str(), nullptr, 16));
        at += 4;
      }
    }
    value += c;
  }
  return false;
}

std::string Fixed(double value, int decimals) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  return text;
}

// The analysis of one chain that was read without error.
void NameChain(const std::vector<ChainAtom>& atoms, const SurveyOptions& o, SurveyRow& row) {
  row.atoms = atoms.size();
  row.breaks = CountChainBreaks(atoms);
  row.error = CheckCoordinates(atoms);
  if (row.error.empty())
    row.error = CheckExtent(atoms);
  if (!row.error.empty())
    return;
  std::srand(SurveySeed(o.seed, row.file, row.chain));
  VoteOptions vote;
  vote.closureMethod = o.closureMethod;
  vote.closures = o.closures;
  vote.documented = true; // a survey row is what FindMajorKnot counts
  const ChainVote named = NameChain(atoms, vote);
  row.verdict = named.verdict;
  while (!row.verdict.empty() && (row.verdict.back() == ' ' || row.verdict.back() == '\t'))
    row.verdict.pop_back();
  row.dominant = named.dominant;
  row.share = named.share;
}

} // namespace

namespace {

// Chain files a folder contributes: these names, optionally gzip-compressed.
bool IsChainFile(const std::filesystem::path& path) {
  std::string name = path.filename().string();
  if (name.size() > 3 && name.compare(name.size() - 3, 3, ".gz") == 0)
    name.resize(name.size() - 3);
  const std::string extension = std::filesystem::path(name).extension().string();
  for (const char* known : {".xyz", ".pdb", ".ent", ".cif", ".mmcif"})
    if (extension == known)
      return true;
  return false;
}

bool AddPath(const std::string& path, const std::string& chain, std::vector<SurveyInput>& units,
             std::string& error) {
  std::error_code failed;
  if (!std::filesystem::is_directory(path, failed)) {
    units.push_back({path, chain});
    return true;
  }
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(path, failed))
    if (entry.is_regular_file(failed) && IsChainFile(entry.path()))
      names.push_back(entry.path().string());
  if (failed) {
    error = "cannot list the folder " + path + ": " + failed.message();
    return false;
  }
  std::sort(names.begin(), names.end());
  for (const std::string& name : names)
    units.push_back({name, chain});
  return true;
}

} // namespace

std::vector<SurveyInput> ExpandSurveyInputs(const std::vector<std::string>& inputs,
                                            const std::string& chain, std::string& error) {
  error.clear();
  std::vector<SurveyInput> units;
  for (const std::string& input : inputs) {
    if (input.size() < 2 || input[0] != '@') {
      if (!AddPath(input, chain, units, error))
        return {};
      continue;
    }
    std::ifstream list(input.substr(1));
    if (!list) {
      error = "cannot read the list " + input.substr(1);
      return {};
    }
    for (std::string line; std::getline(list, line);) {
      std::istringstream words(line);
      std::string path, named = chain;
      if ((words >> path) && path[0] != '#') {
        words >> named;
        if (!AddPath(path, named, units, error))
          return {};
      }
    }
  }
  // A file named without a chain gives every chain: its other mentions are dropped, so that each
  // row has one (file, chain) key to be found by when resuming.
  std::set<std::string> whole;
  for (const SurveyInput& unit : units)
    if (unit.chain.empty())
      whole.insert(unit.path);
  std::set<std::pair<std::string, std::string>> seen;
  std::vector<SurveyInput> unique;
  for (SurveyInput& unit : units)
    if ((unit.chain.empty() || whole.count(unit.path) == 0) &&
        seen.insert({unit.path, unit.chain}).second)
      unique.push_back(std::move(unit));
  return unique;
}

int CountChainBreaks(const std::vector<ChainAtom>& atoms) {
  return CheckDistances(atoms).breaks;
}

unsigned SurveySeed(unsigned seed, const std::string& file, const std::string& chain) {
  // FNV-1a over the seed, the file name and the chain, separated by zero bytes.
  std::uint32_t hash = 2166136261u;
  auto mix = [&hash](unsigned char byte) { hash = (hash ^ byte) * 16777619u; };
  for (int shift = 0; shift < 32; shift += 8)
    mix(static_cast<unsigned char>(seed >> shift));
  // The base name only: a folder surveyed where it lies or after a move gives the same rows.
  const std::string name = file.substr(file.find_last_of('/') + 1);
  for (const char c : name + '\0' + chain)
    mix(static_cast<unsigned char>(c));
  return hash;
}

std::vector<SurveyRow> SurveyFile(const std::string& path, const SurveyOptions& o) {
  std::vector<std::string> chains = {o.choice.chain};
  if (o.choice.chain.empty()) {
    std::vector<std::string> all = PolymerChains(path, o.choice);
    if (!all.empty())
      chains = std::move(all);
  }
  std::vector<SurveyRow> rows;
  for (const std::string& id : chains) {
    const auto start = std::chrono::steady_clock::now();
    SurveyRow row;
    row.file = path;
    row.chain = id;
    ReadOptions choice = o.choice;
    choice.chain = id;
    ReadResult read = ReadChain(path, choice);
    row.error = read.error;
    if (read.error.empty()) {
      if (id.empty())
        row.chain = read.chain;
      NameChain(read.atoms, o, row);
    }
    if (o.times)
      row.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    rows.push_back(std::move(row));
  }
  return rows;
}

std::string SurveyHeader(SurveyFormat format) {
  if (format == SurveyFormat::Jsonl)
    return "";
  std::string line;
  for (const char* column : kColumns)
    line += std::string(line.empty() ? "" : "\t") + column;
  return line + "\n";
}

std::string FormatSurveyRow(const SurveyRow& row, SurveyFormat format) {
  const std::string values[] = {
      row.file,    row.chain,    std::to_string(row.atoms), std::to_string(row.breaks),
      row.verdict, row.dominant, Fixed(row.share, 3),       Fixed(row.seconds, 4),
      row.error};
  const bool isText[] = {true, true, false, false, true, true, false, false, true};
  std::string line;
  for (int k = 0; k < 9; ++k) {
    if (format == SurveyFormat::Tsv)
      line += (k == 0 ? "" : "\t") + TsvField(values[k]);
    else
      line += std::string(k == 0 ? "{\"" : ",\"") + kColumns[k] +
              "\":" + (isText[k] ? JsonString(values[k]) : values[k]);
  }
  return line + (format == SurveyFormat::Jsonl ? "}\n" : "\n");
}

std::pair<std::string, std::string> SurveyKey(const std::string& file, const std::string& chain,
                                              SurveyFormat format) {
  if (format == SurveyFormat::Tsv)
    return {TsvField(file), TsvField(chain)};
  return {file, chain};
}

SurveyDone DoneKeys(const std::string& outputPath, SurveyFormat format) {
  SurveyDone done;
  std::stringstream whole;
  whole << std::ifstream(outputPath, std::ios::binary).rdbuf();
  const std::string text = whole.str();
  done.wholeBytes = text.rfind('\n') == std::string::npos ? 0 : text.rfind('\n') + 1;
  const std::string header = SurveyHeader(format);
  std::size_t at = 0;
  if (done.wholeBytes > 0 && !header.empty()) {
    if (text.compare(0, header.size(), header) != 0) {
      done.error = "the first line is not the header of a tresk batch table";
      return done;
    }
    at = header.size();
  }
  for (int line = header.empty() ? 1 : 2; at < done.wholeBytes; ++line) {
    const std::size_t end = text.find('\n', at);
    const std::string row = text.substr(at, end - at);
    at = end + 1;
    std::string file, chain;
    bool ok;
    if (format == SurveyFormat::Tsv) {
      std::istringstream fields(row);
      std::vector<std::string> parts;
      for (std::string field; std::getline(fields, field, '\t');)
        parts.push_back(field);
      ok = parts.size() == 9 || (parts.size() == 8 && !row.empty() && row.back() == '\t');
      if (ok) {
        file = parts[0];
        chain = parts[1];
      }
    } else {
      std::size_t p = 8;
      ok = row.compare(0, 8, "{\"file\":") == 0 && ParseJsonString(row, p, file) &&
           row.compare(p, 9, ",\"chain\":") == 0 && ParseJsonString(row, p += 9, chain);
    }
    if (!ok) {
      done.error = "line " + std::to_string(line) + " is not a row of a tresk batch output";
      return done;
    }
    done.keys.insert({file, chain});
  }
  return done;
}

} // namespace tresk
