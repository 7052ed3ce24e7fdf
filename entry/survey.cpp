// Surveys of many structure files: each chain read, closed many times with its own seed and
// named, one row per chain in TSV or JSON lines; and the rows an earlier run left behind.
#include "entry/survey.hpp"

#include <chrono>
#include <cstdio>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "entry/entry.hpp"             // for FindMajorKnot, GiveTheNameOfKnot
#include "knots/tallyMath.hpp"         // for tresk::kOrdinals, tresk::kInside
#include "knots/whichKnot.hpp"         // for knots
#include "preprocessing/chainprep.hpp" // for CheckDistancesBetweenAtoms

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
  int counts[kOrdinals] = {};
  FindMajorKnot(atoms, counts, o.closureMethod, o.closures);
  row.verdict = GiveTheNameOfKnot(counts);
  while (!row.verdict.empty() && (row.verdict.back() == ' ' || row.verdict.back() == '\t'))
    row.verdict.pop_back();
  // The verdict's first type: the most closures, the lower ordinal on ties.
  int total = 0, best = -1;
  for (int k = 0; k < kOrdinals; ++k) {
    total += counts[k];
    if (k != kInside && counts[k] > 0 && (best < 0 || counts[k] > counts[best]))
      best = k;
  }
  if (best >= 0) {
    row.dominant = knots[best].name;
    row.share = static_cast<double>(counts[best]) / total;
  }
}

} // namespace

int CountChainBreaks(const std::vector<ChainAtom>& atoms) {
  const std::string distances = CheckDistancesBetweenAtoms(atoms);
  int breaks = 0;
  for (std::size_t at = distances.find("Chain break"); at != std::string::npos;
       at = distances.find("Chain break", at + 1))
    ++breaks;
  return breaks;
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
