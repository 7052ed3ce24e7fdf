// ChainRead: one chain from plain xyz text, PDB or mmCIF, each optionally gzip-compressed.
// Structures give the C-alpha trace of the first polymer chain of the first model.
#include "preprocessing/chainprep.hpp"

#include <zlib.h>

#include <algorithm>
#include <cctype>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <initializer_list>
#include <sstream>

#include <gemmi/cif.hpp>      // for cif::read_memory
#include <gemmi/mmcif.hpp>    // for make_structure
#include <gemmi/pdb.hpp>      // for read_pdb_from_memory
#include <gemmi/polyheur.hpp> // for setup_entities

namespace {

enum class Format { Text, Pdb, Cif };

// The whole file, decompressed when it is gzip data (zlib reads plain files unchanged).
bool Slurp(const char* fileName, std::string& out) {
  gzFile f = gzopen(fileName, "rb");
  if (f == nullptr)
    return false;
  char buffer[1 << 16];
  int got;
  while ((got = gzread(f, buffer, sizeof buffer)) > 0)
    out.append(buffer, got);
  bool ok = got == 0;
  gzclose(f);
  return ok;
}

// The lower-case extension of a file name after a ".gz" one is set aside; "" when none.
std::string Extension(const std::string& fileName) {
  std::string name;
  for (char c : fileName)
    name += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  size_t dot = name.rfind('.');
  if (dot != std::string::npos && name.compare(dot, std::string::npos, ".gz") == 0) {
    name.resize(dot);
    dot = name.rfind('.');
  }
  return dot == std::string::npos ? std::string() : name.substr(dot + 1);
}

// The extension decides when it is a known one; otherwise the first non-blank line does.
Format DetectFormat(const std::string& fileName, const std::string& content) {
  const std::string ext = Extension(fileName);
  if (ext == "pdb" || ext == "ent")
    return Format::Pdb;
  if (ext == "cif" || ext == "mmcif")
    return Format::Cif;
  for (const char* text : {"xyz", "knt", "short", "txt", "dat"}) {
    if (ext == text)
      return Format::Text;
  }
  size_t start = content.find_first_not_of(" \t\r\n");
  if (start == std::string::npos)
    return Format::Text;
  std::string head = content.substr(start, 6);
  if (head.compare(0, 5, "data_") == 0)
    return Format::Cif;
  static const char* const kPdbRecords[] = {"HEADER", "ATOM  ", "HETATM", "MODEL ", "REMARK",
                                            "CRYST1", "TITLE ", "COMPND", "EXPDTA", "SEQRES"};
  for (const char* record : kPdbRecords)
    if (head == record)
      return Format::Pdb;
  return Format::Text;
}

bool ParseDouble(const std::string& token, double& value) {
  const char* begin = token.c_str();
  char* end = nullptr;
  value = std::strtod(begin, &end);
  return end != begin && *end == '\0' && std::isfinite(value);
}

bool ParseInt(const std::string& token, int& value) {
  const char* begin = token.c_str();
  char* end = nullptr;
  long v = std::strtol(begin, &end, 10);
  if (end == begin || *end != '\0' || v < INT_MIN || v > INT_MAX)
    return false;
  value = static_cast<int>(v);
  return true;
}

// Plain text: `x y z` or `id x y z` per line (one layout for the whole file); '#' and '%' start
// a comment that runs to the end of the line; blank lines skipped; a first line holding one integer
// is the atom count, which must then match. Without ids the atoms are numbered 1..n.
bool ReadText(const std::string& content, std::vector<ChainAtom>& chain) {
  std::istringstream in(content);
  std::string line;
  bool first = true, withIds = false;
  long expected = -1;
  while (std::getline(in, line)) {
    line = line.substr(0, line.find_first_of("#%")); // comments, whole-line or trailing
    if (line.find_first_not_of(" \t\r") == std::string::npos)
      continue;
    std::istringstream fields(line);
    std::vector<std::string> tokens;
    for (std::string t; fields >> t;)
      tokens.push_back(t);
    if (first && tokens.size() == 1) {
      int count;
      if (!ParseInt(tokens[0], count) || count < 0)
        return false;
      expected = count;
      first = false;
      continue;
    }
    if (chain.empty())
      withIds = tokens.size() == 4;
    if (tokens.size() != (withIds ? 4u : 3u))
      return false;
    ChainAtom atom{0.0, 0.0, 0.0, static_cast<int>(chain.size()) + 1};
    size_t c = 0;
    if (withIds && !ParseInt(tokens[c++], atom.id))
      return false;
    if (!ParseDouble(tokens[c], atom.x) || !ParseDouble(tokens[c + 1], atom.y) ||
        !ParseDouble(tokens[c + 2], atom.z))
      return false;
    chain.push_back(atom);
    first = false;
  }
  return expected < 0 || expected == static_cast<long>(chain.size());
}

// C-alpha atoms (element carbon, so calcium ions named CA do not count) of the first chain of
// the first model that has polymer residues; one atom per residue: the first alternative
// location and the first of residues sharing a sequence number.
bool CAlphaTrace(gemmi::Structure& st, std::vector<ChainAtom>& chain) {
  if (st.models.empty())
    return false;
  gemmi::setup_entities(st);
  for (const gemmi::Chain& ch : st.models[0].chains) {
    const gemmi::Residue* last = nullptr;
    for (const gemmi::Residue& res : ch.residues) {
      if (res.entity_type != gemmi::EntityType::Polymer)
        continue;
      if (last != nullptr && last->seqid == res.seqid)
        continue;
      for (const gemmi::Atom& atom : res.atoms) {
        if (atom.name != "CA" || atom.element != gemmi::El::C)
          continue;
        chain.push_back({atom.pos.x, atom.pos.y, atom.pos.z, res.seqid.num.value});
        last = &res;
        break;
      }
    }
    if (!chain.empty())
      return true;
  }
  return false;
}

bool AllFinite(const std::vector<ChainAtom>& chain) {
  return std::all_of(chain.begin(), chain.end(), [](const ChainAtom& a) {
    return std::isfinite(a.x) && std::isfinite(a.y) && std::isfinite(a.z);
  });
}

} // namespace

std::vector<ChainAtom> ChainRead(char* fileName, bool& error) {
  error = true;
  std::vector<ChainAtom> chain;
  if (fileName == nullptr)
    return chain;
  try {
    std::string content;
    if (!Slurp(fileName, content))
      return chain;
    bool ok = false;
    switch (DetectFormat(fileName, content)) {
    case Format::Text:
      ok = ReadText(content, chain);
      break;
    case Format::Pdb: {
      gemmi::Structure st = gemmi::read_pdb_from_memory(content.data(), content.size(), fileName);
      ok = CAlphaTrace(st, chain);
      break;
    }
    case Format::Cif: {
      gemmi::cif::Document doc = gemmi::cif::read_memory(content.data(), content.size(), fileName);
      gemmi::Structure st = gemmi::make_structure(doc);
      ok = CAlphaTrace(st, chain);
      break;
    }
    }
    if (ok && !chain.empty() && AllFinite(chain)) {
      error = false;
      return chain;
    }
  } catch (...) {
    // Malformed structure files make the parser throw; they are "wrong data" like any other.
  }
  error = true;
  return {};
}
