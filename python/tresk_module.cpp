// The compiled half of the Python module `tresk` (imported as tresk._tresk): chains to and from
// numpy arrays, the library's calls with the GIL released and one lock around the engine, and
// the rows of a survey as `tresk batch` writes them (bytes, since paths need not be UTF-8).
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <cstdlib>
#include <mutex>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "entry/api.hpp" // the library's own API and the documented calls

namespace py = pybind11;

namespace tresk {
namespace {

using Coordinates = py::array_t<double, py::array::c_style | py::array::forcecast>;
using Ids = py::array_t<int32_t, py::array::c_style | py::array::forcecast>;

// The random closures draw from the process-wide rand(), and the knot table is process-wide:
// one engine call at a time. Waited for and held with the GIL released.
std::mutex engineMutex;

// An (n, 3) array as a chain; atoms are numbered 1..n unless `ids` gives their numbers.
std::vector<ChainAtom> ChainFromArray(const Coordinates& xyz, const py::object& ids) {
  if (xyz.ndim() != 2 || xyz.shape(1) != 3)
    throw std::invalid_argument("coordinates must be an array of shape (n, 3)");
  const py::ssize_t n = xyz.shape(0);
  if (n < 3)
    throw std::invalid_argument("a chain needs at least 3 points, got " + std::to_string(n));
  std::vector<ChainAtom> chain(static_cast<std::size_t>(n));
  auto c = xyz.unchecked<2>();
  for (py::ssize_t i = 0; i < n; ++i)
    chain[i] = ChainAtom{c(i, 0), c(i, 1), c(i, 2), static_cast<int32_t>(i + 1)};
  if (!ids.is_none()) {
    const Ids numbers = Ids::ensure(ids);
    if (!numbers || numbers.ndim() != 1 || numbers.shape(0) != n)
      throw std::invalid_argument("ids must be a 1-D integer array with one id per point");
    for (py::ssize_t i = 0; i < n; ++i)
      chain[i].id = numbers.at(i);
  }
  std::string bad = CheckCoordinates(chain);
  if (bad.empty())
    bad = CheckExtent(chain);
  if (!bad.empty())
    throw std::invalid_argument(bad);
  return chain;
}

// The seed of rand() to set before a call; none: the sequence goes on where it stands.
std::optional<unsigned> SeedOf(const py::object& seed) {
  if (seed.is_none())
    return std::nullopt;
  return seed.cast<unsigned>();
}

void Seed(std::optional<unsigned> seed) {
  if (seed)
    std::srand(*seed);
}

py::tuple PyRead(const std::string& path, const std::string& chain, int model,
                 const std::string& atom) {
  ReadOptions options;
  options.chain = chain;
  options.model = model;
  options.atom = atom;
  ReadResult read;
  {
    py::gil_scoped_release release;
    read = ReadChain(path, options);
  }
  if (!read.error.empty())
    throw std::invalid_argument("cannot read a chain from " + path + ": " + read.error);
  const auto n = static_cast<py::ssize_t>(read.atoms.size());
  py::array_t<double> xyz({n, py::ssize_t(3)});
  py::array_t<int32_t> ids(n);
  auto c = xyz.mutable_unchecked<2>();
  auto d = ids.mutable_unchecked<1>();
  for (py::ssize_t i = 0; i < n; ++i) {
    const ChainAtom& a = read.atoms[i];
    c(i, 0) = a.x, c(i, 1) = a.y, c(i, 2) = a.z;
    d(i) = a.id;
  }
  return py::make_tuple(xyz, ids, read.chain, read.model);
}

py::tuple PyKnot(const Coordinates& xyz, int closures, int method, const py::object& seed,
                 const std::string& table) {
  const std::vector<ChainAtom> chain = ChainFromArray(xyz, py::none());
  const std::optional<unsigned> seeded = SeedOf(seed);
  VoteOptions options;
  options.closureMethod = method;
  options.closures = closures;
  options.naming.table = table == "extended" ? KnotTable::extended : KnotTable::standard;
  options.documented = true; // the standard table counts what FindMajorKnot counts
  ChainVote vote;
  {
    py::gil_scoped_release release;
    std::lock_guard<std::mutex> lock(engineMutex);
    Seed(seeded);
    vote = NameChain(chain, options);
  }
  py::dict shares;
  for (const auto& [name, share] : Shares(vote))
    shares[py::str(name)] = share;
  return py::make_tuple(shares, vote.verdict);
}

py::tuple PyPolynomial(const Coordinates& xyz) {
  std::vector<ChainAtom> chain = ChainFromArray(xyz, py::none());
  // Ring files often repeat the first point at the end; the projection wants each point once.
  const ChainAtom& a = chain.front();
  const ChainAtom& b = chain.back();
  if (chain.size() > 3 && a.x == b.x && a.y == b.y && a.z == b.z)
    chain.pop_back();
  boost::math::tools::polynomial<int> poly;
  double value = 0.0;
  std::string name;
  {
    py::gil_scoped_release release;
    std::lock_guard<std::mutex> lock(engineMutex);
    ChainReduce(chain, true);
    const bool exact = FindTheKnot_poly_polynomial(chain, poly, value);
    if (poly.size() > 0)
      name = knots[exact ? WhichKnot_OrdNr(poly) : WhichKnotDouble_OrdNr(value)].name;
  }
  if (poly.size() == 0)
    throw std::invalid_argument("the projection of the chain is degenerate");
  std::vector<int> coefficients(poly.data().begin(), poly.data().end());
  return py::make_tuple(coefficients, name);
}

std::vector<py::tuple> PyFingerprint(const Coordinates& xyz, const py::object& ids, int step,
                                     int threshold, int closures, int method,
                                     const py::object& seed, int threads) {
  const std::vector<ChainAtom> chain = ChainFromArray(xyz, ids);
  const std::optional<unsigned> seeded = SeedOf(seed);
  FingerprintParams params;
  params.step = step;
  params.threshold = threshold;
  params.closures = closures;
  params.closureMethod = method;
  const std::string problem = FingerprintProblem(chain, params);
  if (!problem.empty())
    throw std::invalid_argument(problem);
  std::vector<FingerprintCell> cells;
  std::string error;
  {
    py::gil_scoped_release release;
    std::lock_guard<std::mutex> lock(engineMutex);
    Seed(seeded);
    std::ostringstream log; // the scan's progress messages are not the caller's business
    ScanOptions options;
    options.threads = threads;
    options.log = &log;
    for (const RowFile& row : FingerprintRows(chain, params, options)) {
      cells.emplace_back();
      error = ReadFingerprintRow(row.text, static_cast<int>(chain.size()), cells.back());
      if (!error.empty())
        break;
    }
  }
  if (!error.empty())
    throw std::runtime_error("unexpected fingerprint row: " + error);
  std::vector<py::tuple> rows;
  rows.reserve(cells.size());
  for (const FingerprintCell& c : cells)
    rows.push_back(py::make_tuple(c.first, c.last, c.firstId, c.lastId, c.knot, c.percent));
  return rows;
}

SurveyFormat FormatOf(const std::string& format) {
  if (format != "tsv" && format != "jsonl")
    throw std::invalid_argument("the format must be tsv or jsonl, got " + format);
  return format == "jsonl" ? SurveyFormat::Jsonl : SurveyFormat::Tsv;
}

// The rows of one file (every chain, or `chain`), formatted: what `tresk batch` writes for it.
py::bytes PySurveyFile(const std::string& path, const std::string& chain, int model,
                       const std::string& atom, int method, int closures, unsigned seed, bool times,
                       const std::string& format) {
  const SurveyFormat f = FormatOf(format);
  SurveyOptions options;
  options.choice.chain = chain;
  options.choice.model = model;
  options.choice.atom = atom;
  options.closureMethod = method;
  options.closures = closures;
  options.seed = seed;
  options.times = times;
  std::string rows;
  {
    py::gil_scoped_release release;
    std::lock_guard<std::mutex> lock(engineMutex);
    for (const SurveyRow& row : SurveyFile(path, options))
      rows += FormatSurveyRow(row, f);
  }
  return py::bytes(rows);
}

// The row of a file that has no verdict because its analysis failed (`error` says why).
py::bytes PySurveyError(const std::string& path, const std::string& chain, const std::string& error,
                        const std::string& format) {
  SurveyRow row;
  row.file = path;
  row.chain = chain;
  row.error = error;
  return py::bytes(FormatSurveyRow(row, FormatOf(format)));
}

// The (file, chain) units of files, folders and @lists, as `tresk batch` expands them.
std::vector<py::tuple> PyExpandInputs(const std::vector<std::string>& inputs,
                                      const std::string& chain) {
  std::string error;
  std::vector<SurveyInput> units;
  {
    py::gil_scoped_release release;
    units = ExpandSurveyInputs(inputs, chain, error);
  }
  if (!error.empty())
    throw std::runtime_error(error);
  std::vector<py::tuple> out;
  for (const SurveyInput& unit : units)
    out.push_back(py::make_tuple(py::bytes(unit.path), py::bytes(unit.chain)));
  return out;
}

py::bytes PySurveyHeader(const std::string& format) {
  return py::bytes(SurveyHeader(FormatOf(format)));
}

// What an existing output holds: ({(file, chain)}, bytes of its whole rows, error or "").
py::tuple PySurveyDone(const std::string& path, const std::string& format) {
  const SurveyFormat f = FormatOf(format);
  SurveyDone done;
  {
    py::gil_scoped_release release;
    done = DoneKeys(path, f);
  }
  py::set keys;
  for (const auto& key : done.keys)
    keys.add(py::make_tuple(py::bytes(key.first), py::bytes(key.second)));
  return py::make_tuple(keys, done.wholeBytes, done.error);
}

py::tuple PySurveyKey(const std::string& file, const std::string& chain,
                      const std::string& format) {
  const auto key = SurveyKey(file, chain, FormatOf(format));
  return py::make_tuple(py::bytes(key.first), py::bytes(key.second));
}

} // namespace
} // namespace tresk

// --- the knot map (tresk.map): class, types and regions of one chain as a dict -----------------
#include "scan/knotMap.hpp" // for tresk::MapKnots

namespace tresk {
namespace {

py::object PyStretch(int first, int last) {
  if (first <= 0)
    return py::none();
  return py::make_tuple(first, last);
}

py::dict PyMap(const Coordinates& xyz, int closures, int method, unsigned long long seed, int step,
               int threads) {
  const std::vector<ChainAtom> chain = ChainFromArray(xyz, py::none());
  MapOptions options;
  options.closures = closures;
  options.closureMethod = method;
  options.seed = seed;
  options.step = step;
  options.threads = threads;
  const std::string problem = MapProblem(chain, options);
  if (!problem.empty())
    throw std::invalid_argument(problem);
  KnotMap map;
  {
    py::gil_scoped_release release;
    std::lock_guard<std::mutex> lock(engineMutex);
    map = MapKnots(chain, options);
  }
  py::list regions;
  for (const KnottedRegion& r : map.regions) {
    py::dict d;
    d["kind"] = r.slipknot ? "slipknot" : "knot";
    d["type"] = r.type;
    d["core"] = r.found ? PyStretch(r.first, r.last) : py::none();
    d["core_share"] = r.coreShare;
    d["n_tail"] = r.nTail;
    d["c_tail"] = r.cTail;
    d["n_loop"] = PyStretch(r.nSide.loopFirst, r.nSide.loopLast);
    d["n_segment"] = PyStretch(r.nSide.segmentFirst, r.nSide.segmentLast);
    d["c_loop"] = PyStretch(r.cSide.loopFirst, r.cSide.loopLast);
    d["c_segment"] = PyStretch(r.cSide.segmentFirst, r.cSide.segmentLast);
    regions.append(d);
  }
  py::dict out;
  out["class"] = std::string(1, map.chainClass);
  out["types"] = map.types;
  out["verdict"] = map.verdict;
  out["regions"] = regions;
  return out;
}

} // namespace
} // namespace tresk

PYBIND11_MODULE(_tresk, m) {
  m.doc() = "Compiled calls of the tresk module; use the functions of the package `tresk`.";
  m.def("read", &tresk::PyRead, py::arg("path"), py::arg("chain"), py::arg("model"),
        py::arg("atom"));
  m.def("knot", &tresk::PyKnot, py::arg("coords"), py::arg("closures"), py::arg("method"),
        py::arg("seed"), py::arg("table"));
  m.def("polynomial", &tresk::PyPolynomial, py::arg("coords"));
  m.def("fingerprint", &tresk::PyFingerprint, py::arg("coords"), py::arg("ids"), py::arg("step"),
        py::arg("threshold"), py::arg("closures"), py::arg("method"), py::arg("seed"),
        py::arg("threads"));
  m.def("survey_file", &tresk::PySurveyFile, py::arg("path"), py::arg("chain"), py::arg("model"),
        py::arg("atom"), py::arg("method"), py::arg("closures"), py::arg("seed"), py::arg("times"),
        py::arg("format"));
  m.def("survey_error", &tresk::PySurveyError, py::arg("path"), py::arg("chain"), py::arg("error"),
        py::arg("format"));
  m.def("expand_inputs", &tresk::PyExpandInputs, py::arg("inputs"), py::arg("chain"));
  m.def("survey_header", &tresk::PySurveyHeader, py::arg("format"));
  m.def("survey_done", &tresk::PySurveyDone, py::arg("path"), py::arg("format"));
  m.def("map", &tresk::PyMap, py::arg("coords"), py::arg("closures"), py::arg("method"),
        py::arg("seed"), py::arg("step"), py::arg("threads"));
  m.def("survey_key", &tresk::PySurveyKey, py::arg("file"), py::arg("chain"), py::arg("format"));
}
