// The fingerprint file declared in scan/rows.hpp: its header line and row layout as the drivers
// write them, and a names-mode file read back with every number bound-checked.
#include "scan/rows.hpp"

#include <cerrno>
#include <cstdlib>
#include <istream>
#include <ostream>
#include <sstream>

namespace tresk {
namespace {

constexpr int kBands = 31;        // probability bands >90, >87, ..., >0
constexpr int kHeaderFields = 37; // "#", 2 ids, 31 band titles, "IN", 1, atoms
constexpr int kRowFields = 36;    // 2 ids, 31 cells, inside share, 2 positions

bool ParseInt(const std::string& text, int& value) {
  if (text.empty())
    return false;
  errno = 0;
  char* end = nullptr;
  const long long v = std::strtoll(text.c_str(), &end, 10);
  if (errno != 0 || *end != '\0' || v < -2147483647LL - 1 || v > 2147483647LL)
    return false;
  value = static_cast<int>(v);
  return true;
}

std::vector<std::string> Fields(const std::string& line) {
  std::istringstream in(line);
  std::vector<std::string> out;
  for (std::string f; in >> f;)
    out.push_back(f);
  return out;
}

std::string AtLine(int line, const std::string& what) {
  return "line " + std::to_string(line) + ": " + what;
}

std::string ReadHeader(const std::vector<std::string>& f, Fingerprint& out) {
  int one = 0;
  if (f.size() != kHeaderFields || f[0] != "#" || f[3] != ">90" || f[33] != ">0" || f[34] != "IN" ||
      !ParseInt(f[1], out.firstId) || !ParseInt(f[2], out.lastId) || !ParseInt(f[35], one) ||
      !ParseInt(f[36], out.atoms) || one != 1 || out.atoms < 1) {
    return "not the header of a fingerprint in names mode (polynomial dictionaries cannot be "
           "drawn)";
  }
  if (out.atoms > kMaxFingerprintAtoms) {
    return "the header claims " + f[36] + " atoms, more than " +
           std::to_string(kMaxFingerprintAtoms);
  }
  return "";
}

std::string ReadRow(const std::vector<std::string>& f, int atoms, FingerprintCell& c) {
  if (f.size() != kRowFields) {
    return "expected " + std::to_string(kRowFields) + " fields, found " + std::to_string(f.size());
  }
  int inside = 0;
  if (!ParseInt(f[0], c.firstId) || !ParseInt(f[1], c.lastId) || !ParseInt(f[33], inside) ||
      !ParseInt(f[34], c.first) || !ParseInt(f[35], c.last)) {
    return "ids, inside share and positions must be integers";
  }
  if (c.first < 1 || c.last > atoms || c.first >= c.last)
    return "positions " + f[34] + ".." + f[35] + " lie outside the chain";
  c.knot = "IN";
  c.percent = inside;
  for (int band = 0; band < kBands; ++band) {
    const std::string& cell = f[2 + band];
    if (cell == "0")
      continue;
    c.knot = cell.substr(0, cell.find(','));
    // The band >T holds probabilities T+1 .. T+3 (91 .. 100 for the first).
    c.percent = band == 0 ? 95.5 : 92.0 - 3.0 * band;
    break;
  }
  return "";
}

} // namespace

std::string FingerprintHeader(const std::vector<ChainAtom>& chain) {
  std::ostringstream h;
  h << "# " << (chain.empty() ? 0 : chain.front().id) << " "
    << (chain.empty() ? 0 : chain.back().id)
    << " >90 >87 >84 >81 >78 >75 >72 >69 >66 >63 >60 >57 >54 >51 >48 >45 >42 >39 >36 >33 >30 "
       ">27 >24 >21 >18 >15 >12 >9 >6 >3 >0 IN "
    << 1 << " " << chain.size();
  return h.str();
}

void WriteFingerprintRows(std::ostream& out, const std::vector<RowFile>& rows, int namesMode) {
  if (namesMode != 0) {
    for (const RowFile& r : rows)
      out << r.text << std::endl;
    return;
  }
  out << "{";
  for (std::size_t i = 0; i < rows.size(); ++i)
    out << (i == 0 ? "" : ", ") << rows[i].text;
  out << "}";
}

std::string ReadFingerprintRow(const std::string& line, int atoms, FingerprintCell& cell) {
  return ReadRow(Fields(line), atoms, cell);
}

std::string ReadFingerprint(std::istream& in, Fingerprint& out) {
  out = Fingerprint{};
  bool header = false;
  int lineNumber = 0;
  for (std::string line; std::getline(in, line);) {
    ++lineNumber;
    const std::vector<std::string> f = Fields(line);
    if (f.empty() || (header && f.size() == 1 && f[0] == "UNKNOT"))
      continue;
    std::string error;
    if (!header) {
      error = ReadHeader(f, out);
      header = true;
    } else {
      out.cells.emplace_back();
      error = ReadFingerprintRow(line, out.atoms, out.cells.back());
    }
    if (!error.empty())
      return AtLine(lineNumber, error);
  }
  if (!header)
    return "no fingerprint header found (empty input?)";
  return "";
}

} // namespace tresk
