// Chain files: plain xyz text, PDB and mmCIF (read with gemmi), each optionally gzip-compressed.
// The raw bytes are checked before a parser sees them (size, NUL bytes, a byte-order mark,
// malformed coordinate columns, values that upset gemmi 0.5.7), so that bad input gives a message
// instead of a silently wrong chain or undefined behaviour inside the parser.
#include "preprocessing/readChain.hpp"

#include <sys/stat.h>
#include <zlib.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdlib>

#include <gemmi/cif.hpp>      // for cif::read_memory
#include <gemmi/mmcif.hpp>    // for make_structure
#include <gemmi/pdb.hpp>      // for read_pdb_from_memory
#include <gemmi/polyheur.hpp> // for setup_entities
#include <gemmi/resinfo.hpp>  // for find_tabulated_residue

#include "preprocessing/chainprep.hpp"

namespace tresk {
namespace {

enum class Format { Text, Pdb, Cif };

std::string LineText(std::size_t line) {
  return "line " + std::to_string(line);
}

// The whole file, decompressed when it is gzip data (zlib reads plain files unchanged). Only
// regular files are read: a FIFO without a writer or a device such as /dev/zero would block or
// never end.
std::string Slurp(const std::string& path, std::size_t maxBytes, std::string& out) {
  struct stat info;
  if (stat(path.c_str(), &info) != 0)
    return "cannot open " + path;
  if (!S_ISREG(info.st_mode))
    return path + " is not a regular file";
  gzFile f = gzopen(path.c_str(), "rb");
  if (f == nullptr)
    return "cannot open " + path;
  char buffer[1 << 16];
  int got;
  while ((got = gzread(f, buffer, sizeof buffer)) > 0) {
    if (out.size() + static_cast<std::size_t>(got) > maxBytes) {
      gzclose(f);
      return path + " is larger than the reader's limit of " + std::to_string(maxBytes) +
             " bytes (decompressed)";
    }
    out.append(buffer, static_cast<std::size_t>(got));
  }
  const bool ok = got == 0;
  gzclose(f);
  return ok ? "" : "cannot read " + path + " (damaged compressed data?)";
}

std::string Lower(std::string s) {
  for (char& c : s)
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

bool EndsWith(const std::string& s, const std::string& tail) {
  return s.size() >= tail.size() && s.compare(s.size() - tail.size(), tail.size(), tail) == 0;
}

// The extension decides when it is a known one; otherwise the first non-blank line does.
Format DetectFormat(const std::string& fileName, const std::string& content) {
  std::string name = Lower(fileName);
  if (EndsWith(name, ".gz"))
    name.resize(name.size() - 3);
  if (EndsWith(name, ".pdb") || EndsWith(name, ".ent"))
    return Format::Pdb;
  if (EndsWith(name, ".cif") || EndsWith(name, ".mmcif"))
    return Format::Cif;
  for (const char* text : {".xyz", ".knt", ".short", ".txt", ".dat"})
    if (EndsWith(name, text))
      return Format::Text;
  const std::size_t start = content.find_first_not_of(" \t\r\n");
  if (start == std::string::npos)
    return Format::Text;
  const std::string head = content.substr(start, 6);
  if (head.compare(0, 5, "data_") == 0)
    return Format::Cif;
  static const char* const kPdbRecords[] = {"HEADER", "ATOM  ", "HETATM", "MODEL ", "REMARK",
                                            "CRYST1", "TITLE ", "COMPND", "EXPDTA", "SEQRES"};
  for (const char* record : kPdbRecords)
    if (head == record)
      return Format::Pdb;
  return Format::Text;
}

// strtod's reading of a whole field (leading blanks, then trailing spaces allowed). The common
// case goes through std::from_chars, which rounds a decimal exactly as strtod does and is many
// times faster; anything it does not take whole (hexadecimal, out of range, garbage) is left to
// strtod itself.
bool ParseDouble(const std::string& token, double& value) {
  const char* first = token.c_str();
  const char* last = first + token.size();
  const char* p = first;
  while (p < last && std::isspace(static_cast<unsigned char>(*p)))
    ++p;
  if (p < last && *p == '+' && p + 1 < last &&
      (std::isdigit(static_cast<unsigned char>(p[1])) || p[1] == '.'))
    ++p; // from_chars takes no plus sign
  double fast = 0.0;
  const std::from_chars_result r = std::from_chars(p, last, fast);
  const char* rest = r.ptr;
  while (r.ec == std::errc() && rest < last && *rest == ' ')
    ++rest;
  if (r.ec == std::errc() && rest == last && r.ptr != p) {
    value = fast;
    return std::isfinite(value);
  }
  char* end = nullptr;
  value = std::strtod(first, &end);
  while (end != first && *end == ' ')
    ++end;
  return end != first && *end == '\0' && std::isfinite(value);
}

bool ParseInt(const std::string& token, int& value) {
  const char* begin = token.c_str();
  char* end = nullptr;
  const long v = std::strtol(begin, &end, 10);
  if (end == begin || *end != '\0' || v < INT_MIN || v > INT_MAX)
    return false;
  value = static_cast<int>(v);
  return true;
}

// Plain text: `x y z` or `id x y z` per line (one layout for the whole file); '#' and '%' start
// a comment that runs to the end of the line; blank lines skipped; a first line holding one
// integer is the atom count, which must then match. Without ids the atoms are numbered 1..n.
// The lines and their whitespace-separated fields are cut out by hand: a string stream per
// line costs more than the rest of reading (its locale set-up), and files hold many thousands.
std::string ReadText(const std::string& content, std::vector<ChainAtom>& chain) {
  bool first = true, withIds = false;
  long expected = -1;
  std::vector<std::string> tokens;
  std::size_t start = 0;
  for (std::size_t number = 1; start < content.size(); ++number) {
    std::size_t stop = content.find('\n', start);
    if (stop == std::string::npos)
      stop = content.size();
    std::size_t end = start; // comments, whole-line or trailing
    while (end < stop && content[end] != '#' && content[end] != '%')
      ++end;
    tokens.clear();
    for (std::size_t i = start; i < end;) {
      while (i < end && std::isspace(static_cast<unsigned char>(content[i])))
        ++i;
      const std::size_t from = i;
      while (i < end && !std::isspace(static_cast<unsigned char>(content[i])))
        ++i;
      if (i > from)
        tokens.emplace_back(content, from, i - from);
    }
    start = stop + 1;
    if (tokens.empty())
      continue;
    if (first && tokens.size() == 1) {
      int count;
      if (!ParseInt(tokens[0], count) || count < 0)
        return LineText(number) + ": expected an atom count";
      expected = count;
      first = false;
      continue;
    }
    if (chain.empty())
      withIds = tokens.size() == 4;
    if (tokens.size() != (withIds ? 4u : 3u))
      return LineText(number) + ": expected " + (withIds ? "id x y z" : "x y z");
    ChainAtom atom{0.0, 0.0, 0.0, static_cast<int>(chain.size()) + 1};
    std::size_t c = 0;
    if (withIds && !ParseInt(tokens[c++], atom.id))
      return LineText(number) + ": the id is not an integer";
    if (!ParseDouble(tokens[c], atom.x) || !ParseDouble(tokens[c + 1], atom.y) ||
        !ParseDouble(tokens[c + 2], atom.z))
      return LineText(number) + ": a coordinate is not a finite number";
    chain.push_back(atom);
    first = false;
  }
  if (expected >= 0 && expected != static_cast<long>(chain.size()))
    return "the header announces " + std::to_string(expected) + " atoms, the file holds " +
           std::to_string(chain.size());
  return "";
}

// PDB text as gemmi may safely read it: every line padded to 80 columns (gemmi 0.5.7 reads past
// the end of some short records, e.g. an SSBOND line of 73 characters), non-ASCII bytes outside
// atom records blanked (its residue-name hashing shifts negative values), and the coordinate
// columns of every atom record checked (gemmi reads "********" or blanks as 0).
std::string SanitisePdb(const std::string& content, std::string& out) {
  out.clear();
  out.reserve(content.size() + content.size() / 4);
  std::size_t start = 0;
  for (std::size_t number = 1; start < content.size(); ++number) {
    std::size_t end = content.find('\n', start);
    if (end == std::string::npos)
      end = content.size();
    std::string line = content.substr(start, end - start);
    start = end + 1;
    if (!line.empty() && line.back() == '\r')
      line.pop_back();
    const bool atom = line.compare(0, 6, "ATOM  ") == 0 || line.compare(0, 6, "HETATM") == 0;
    for (char& c : line) {
      if (static_cast<unsigned char>(c) < 0x80)
        continue;
      if (atom)
        return LineText(number) + ": non-ASCII character in an atom record";
      c = ' ';
    }
    if (atom) {
      line.resize(std::max<std::size_t>(line.size(), 80), ' ');
      for (int column : {30, 38, 46}) {
        double value;
        if (!ParseDouble(line.substr(column, 8), value))
          return LineText(number) + ": coordinate field '" + line.substr(column, 8) +
                 "' is not a number";
      }
    } else {
      line.resize(std::max<std::size_t>(line.size(), 80), ' ');
    }
    out += line;
    out += '\n';
  }
  return "";
}

// mmCIF values that gemmi 0.5.7 turns into undefined behaviour: integer columns of the atom
// table outside the int range, and non-ASCII text in it.
std::string CheckCifAtoms(gemmi::cif::Document& doc) {
  if (doc.blocks.empty())
    return "no data block";
  gemmi::cif::Block& block = doc.blocks[0];
  for (const char* tag : {"_atom_site.id", "_atom_site.auth_seq_id", "_atom_site.label_seq_id",
                          "_atom_site.pdbx_PDB_model_num"}) {
    for (const std::string& v : block.find_values(tag)) {
      int parsed;
      if (v != "." && v != "?" && !ParseInt(v, parsed))
        return std::string(tag) + " value '" + v + "' is not an integer in the int range";
    }
  }
  for (const char* tag :
       {"_atom_site.label_comp_id", "_atom_site.auth_comp_id", "_atom_site.label_atom_id",
        "_atom_site.auth_atom_id", "_atom_site.auth_asym_id", "_atom_site.label_asym_id"}) {
    for (const std::string& v : block.find_values(tag))
      for (char c : v)
        if (static_cast<unsigned char>(c) >= 0x80)
          return std::string(tag) + " value '" + v + "' holds a non-ASCII character";
  }
  return "";
}

std::string ParseStructure(const std::string& path, const std::string& content, Format format,
                           gemmi::Structure& st) {
  if (format == Format::Pdb) {
    std::string clean;
    const std::string bad = SanitisePdb(content, clean);
    if (!bad.empty())
      return bad;
    st = gemmi::read_pdb_from_memory(clean.data(), clean.size(), path);
    gemmi::setup_entities(st);
    return "";
  }
  gemmi::cif::Document doc = gemmi::cif::read_memory(content.data(), content.size(), path.c_str());
  const std::string bad = CheckCifAtoms(doc);
  if (!bad.empty())
    return bad;
  st = gemmi::make_structure(doc);
  gemmi::setup_entities(st);
  return "";
}

const gemmi::Model* ChooseModel(const gemmi::Structure& st, int model) {
  const std::string wanted = std::to_string(model == 0 ? 1 : model);
  for (const gemmi::Model& m : st.models)
    if (m.name == wanted)
      return &m;
  return model == 0 && !st.models.empty() ? &st.models.front() : nullptr;
}

// Amino acids and nucleotides by their tabulated names (MSE, other modified residues and
// residues after a TER record included); waters and ligands never.
bool PolymerResidue(const gemmi::Residue& res) {
  const gemmi::ResidueInfo info = gemmi::find_tabulated_residue(res.name);
  if (info.is_water())
    return false;
  if (info.found())
    return info.is_amino_acid() || info.is_nucleic_acid();
  return res.entity_type == gemmi::EntityType::Polymer; // an untabulated residue inside a chain
}

// The backbone atom of a residue: among alternate locations the highest occupancy, the first
// on ties. "CA" must be a carbon (calcium ions are named CA too).
const gemmi::Atom* BackboneAtom(const gemmi::Residue& res, const std::string& name) {
  const gemmi::Atom* best = nullptr;
  for (const gemmi::Atom& atom : res.atoms) {
    if (atom.name != name || (name == "CA" && atom.element != gemmi::El::C))
      continue;
    if (best == nullptr || atom.occ > best->occ)
      best = &atom;
  }
  return best;
}

bool ChainMatches(const gemmi::Chain& ch, const std::string& id) {
  if (ch.name == id)
    return true;
  return !ch.residues.empty() && ch.residues.front().subchain == id;
}

// The trace of one chain (all parts with its name, in file order): one atom per residue, the
// first of residues that share a number and insertion code.
std::vector<ChainAtom> Trace(const gemmi::Model& model, const std::string& chainName,
                             const std::string& atomName) {
  std::vector<ChainAtom> out;
  for (const gemmi::Chain& ch : model.chains) {
    if (ch.name != chainName)
      continue;
    const gemmi::Residue* last = nullptr;
    for (const gemmi::Residue& res : ch.residues) {
      if (!PolymerResidue(res) || (last != nullptr && last->seqid == res.seqid))
        continue;
      if (const gemmi::Atom* atom = BackboneAtom(res, atomName)) {
        out.push_back({atom->pos.x, atom->pos.y, atom->pos.z, res.seqid.num.value});
        last = &res;
      }
    }
  }
  return out;
}

// Names of the chains with at least one backbone atom, in file order, each once.
std::vector<std::string> ChainNames(const gemmi::Model& model, const std::string& atomName) {
  std::vector<std::string> names;
  for (const gemmi::Chain& ch : model.chains) {
    if (std::find(names.begin(), names.end(), ch.name) != names.end())
      continue;
    for (const gemmi::Residue& res : ch.residues) {
      if (PolymerResidue(res) && BackboneAtom(res, atomName) != nullptr) {
        names.push_back(ch.name);
        break;
      }
    }
  }
  return names;
}

// Reads and parses; for structures, also picks the model.
std::string Load(const std::string& path, const ReadOptions& options, Format& format,
                 std::string& content, gemmi::Structure& st, const gemmi::Model*& model) {
  std::string bad = Slurp(path, options.maxBytes, content);
  if (!bad.empty())
    return bad;
  const std::size_t nul = content.find('\0');
  if (nul != std::string::npos)
    return "NUL byte at offset " + std::to_string(nul) + ": not a text file";
  if (content.compare(0, 3, "\xEF\xBB\xBF") == 0)
    content.erase(0, 3); // a UTF-8 byte-order mark
  format = DetectFormat(path, content);
  if (format == Format::Text)
    return "";
  bad = ParseStructure(path, content, format, st);
  if (!bad.empty())
    return bad;
  model = ChooseModel(st, options.model);
  if (model == nullptr)
    return options.model == 0 ? "no model in the file"
                              : "no model " + std::to_string(options.model) + " in the file";
  return "";
}

} // namespace

std::string CheckCoordinates(const std::vector<ChainAtom>& chain) {
  for (std::size_t i = 0; i < chain.size(); ++i) {
    const ChainAtom& a = chain[i];
    for (double v : {a.x, a.y, a.z}) {
      if (!(std::fabs(v) <= kMaxCoordinate)) // NaN fails too
        return "atom " + std::to_string(i + 1) + " (id " + std::to_string(a.id) +
               ") has a coordinate that is not finite or beyond +-1e9";
    }
  }
  return "";
}

std::string CheckExtent(const std::vector<ChainAtom>& chain) {
  if (chain.size() < 2)
    return "";
  for (const ChainAtom& a : chain) {
    if (a.x != chain[0].x || a.y != chain[0].y || a.z != chain[0].z)
      return "";
  }
  return "all " + std::to_string(chain.size()) + " atoms lie at one point";
}

ReadResult ReadChain(const std::string& path, const ReadOptions& options) {
  ReadResult r;
  try {
    Format format = Format::Text;
    std::string content;
    gemmi::Structure st;
    const gemmi::Model* model = nullptr;
    r.error = Load(path, options, format, content, st, model);
    if (r.error.empty() && format == Format::Text) {
      r.error = ReadText(content, r.atoms);
    } else if (r.error.empty()) {
      r.model = model->name;
      const std::vector<std::string> names = ChainNames(*model, options.atom);
      for (const gemmi::Chain& ch : model->chains) {
        const bool listed = std::find(names.begin(), names.end(), ch.name) != names.end();
        if (listed && (options.chain.empty() || ChainMatches(ch, options.chain))) {
          r.chain = ch.name;
          break;
        }
      }
      if (r.chain.empty())
        r.error = options.chain.empty()
                      ? "no polymer chain with " + options.atom + " atoms in model " + r.model
                      : "no chain " + options.chain + " with " + options.atom + " atoms in model " +
                            r.model;
      else
        r.atoms = Trace(*model, r.chain, options.atom);
    }
  } catch (const std::exception& e) {
    r.error = e.what(); // the parsers throw on malformed structure files
  }
  if (r.error.empty() && r.atoms.empty())
    r.error = "no atoms";
  if (r.error.empty())
    r.error = CheckCoordinates(r.atoms);
  if (!r.error.empty())
    r.atoms.clear();
  return r;
}

std::vector<std::string> PolymerChains(const std::string& path, const ReadOptions& options) {
  try {
    Format format = Format::Text;
    std::string content;
    gemmi::Structure st;
    const gemmi::Model* model = nullptr;
    if (Load(path, options, format, content, st, model).empty() && format != Format::Text)
      return ChainNames(*model, options.atom);
  } catch (const std::exception&) {
  }
  return {};
}

} // namespace tresk

std::vector<ChainAtom> ChainRead(char* fileName, bool& error) {
  error = true;
  if (fileName == nullptr)
    return {};
  tresk::ReadResult r = tresk::ReadChain(fileName);
  error = !r.error.empty();
  return std::move(r.atoms);
}
