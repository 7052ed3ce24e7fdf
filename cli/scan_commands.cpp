// `tresk matrix` (the knot fingerprint of a chain: the knot type of its subchains on a grid,
// refined around knotted ones) and `tresk plot` (the picture of such a fingerprint).
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <memory>
#include <ostream>
#include <streambuf>
#include <string>
#include <vector>

#include "cli/commands.hpp"
#include "cli/plotDraw.hpp" // for DrawFingerprint
#include "entry/api.hpp" // for tresk::WriteFingerprint, tresk::ReadFingerprint, tresk::NamingOptions
#include "preprocessing/chainprep.hpp" // for CheckDistancesBetweenAtoms

namespace {

struct MatrixOptions {
  std::string file;
  tresk::ReadOptions choice;
  std::string output;
  tresk::FingerprintParams scan; // namesMode follows `polynomials`
  long long seed = -1;           // negative: seeded from the clock
  bool polynomials = false;
  int threads = 1;
  bool check = false;
  bool progress = false;
  bool quiet = false;
};

struct PlotOptions {
  std::string file;
  std::string output;
  PlotStyle style;
};

// The progress line on standard error. The scan's log lines go to the same terminal, so the
// scan is given a log stream whose buffer wipes the progress line before each message.
struct ProgressLine {
  bool visible = false;
  std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
  std::chrono::steady_clock::time_point last{};
  int phase = 0;
};

class WipingLogBuffer : public std::streambuf {
public:
  WipingLogBuffer(std::streambuf* target, ProgressLine& line) : target_(target), line_(line) {}

protected:
  int_type overflow(int_type c) override {
    if (traits_type::eq_int_type(c, traits_type::eof()))
      return traits_type::not_eof(c);
    Wipe();
    return target_->sputc(traits_type::to_char_type(c));
  }
  std::streamsize xsputn(const char* s, std::streamsize n) override {
    Wipe();
    return target_->sputn(s, n);
  }
  int sync() override { return target_->pubsync(); }

private:
  void Wipe() {
    if (!line_.visible)
      return;
    std::fputs("\r\033[K", stderr);
    line_.visible = false;
  }
  std::streambuf* target_;
  ProgressLine& line_;
};

void ShowProgress(ProgressLine& line, int phase, unsigned long long done,
                  unsigned long long total) {
  const auto now = std::chrono::steady_clock::now();
  const bool finished = done >= total;
  if (phase == line.phase && !finished && now - line.last < std::chrono::milliseconds(200))
    return;
  line.phase = phase;
  line.last = now;
  const double seconds = std::chrono::duration<double>(now - line.start).count();
  const int percent = total == 0 ? 100 : static_cast<int>(100.0 * done / total);
  std::fprintf(stderr, "\r\033[K%s: %3d%%  (%.0f s)", phase == 1 ? "coarse grid" : "refinement",
               percent, seconds);
  std::fflush(stderr);
  line.visible = true;
}

void RunMatrix(const MatrixOptions& o) {
  const std::vector<ChainAtom> chain = ReadChainOrFail(o.file, o.choice, "matrix");
  if (o.check) {
    const std::string message = CheckDistancesBetweenAtoms(chain);
    if (message != "OK")
      std::cerr << message << "\n";
  }
  tresk::FingerprintParams params = o.scan;
  params.namesMode = o.polynomials ? 0 : 1;
  const std::string problem = tresk::FingerprintProblem(chain, params);
  if (!problem.empty()) {
    std::cerr << "tresk matrix: " << problem << "\n";
    Fail(1);
  }
  RefuseOverwritingInput(o.file, o.output, "matrix");
  std::ofstream out(o.output, std::ios::out | std::ios::trunc);
  if (!out) {
    std::cerr << "tresk matrix: cannot write " << o.output << "\n";
    Fail(1);
  }

  tresk::ScanOptions options;
  options.threads = o.threads;
  options.recentre = true;
  ProgressLine line;
  WipingLogBuffer wiping(std::clog.rdbuf(), line);
  std::ostream wipingLog(&wiping);
  std::ostream quietLog(nullptr); // no buffer: everything written to it is dropped
  if (o.quiet) {
    options.log = &quietLog;
  } else if (o.progress || isatty(STDERR_FILENO) == 1) {
    options.log = &wipingLog;
    options.progress = [&line](int phase, unsigned long long done, unsigned long long total) {
      ShowProgress(line, phase, done, total);
    };
  }
  SeedRandom(o.seed);
  tresk::WriteFingerprint(chain, out, params, options);
  FailUnlessWritten(out, o.output, "matrix");
  if (line.visible)
    std::fputs("\r\033[K", stderr);
}

void RunPlot(const PlotOptions& o) {
  std::ifstream in(o.file);
  tresk::Fingerprint fingerprint;
  std::string error;
  if (!in) {
    error = "cannot open " + o.file;
  } else if (!(error = tresk::ReadFingerprint(in, fingerprint)).empty()) {
    error = o.file + ": " + error;
  } else {
    error = DrawFingerprint(fingerprint, o.output, o.style);
  }
  if (!error.empty()) {
    std::cerr << "tresk plot: " << error << "\n";
    Fail(1);
  }
}

} // namespace

void RegisterScanCommands(CLI::App& app) {
  auto matrix = std::make_shared<MatrixOptions>();
  CLI::App* m = app.add_subcommand(
      "matrix",
      "Compute the knot fingerprint of a chain: the knot type of its subchains i..j, first on "
      "a grid of the given step, then at every subchain near a strongly knotted grid point. "
      "Writes a header line and one line per knotted subchain (ids of its ends, the knot "
      "types in 31 probability bands >90% .. >0%, the share of failed closures, its "
      "positions), or 'UNKNOT'. Draw it with 'tresk plot'. Knot types come from the standard "
      "table (--table extended is not supported here).");
  AddChainFile(m, matrix->file);
  m->add_option("-o,--output", matrix->output, "Fingerprint file to write")->required();
  AddChainChoice(m, matrix->choice);
  m->add_option("-s,--step", matrix->scan.step,
                "Grid step in atoms, and half-width of the refinement around knotted points")
      ->check(CLI::Range(1, 1000000))
      ->capture_default_str();
  m->add_option("-t,--threshold", matrix->scan.threshold,
                "Refine around grid points whose knot probability (in %) is above this")
      ->capture_default_str();

  AddClosureOptions(m, matrix->scan.closureMethod, matrix->scan.closures,
                    "How to close each subchain: 1 = one fixed closure far out; 2 = join both ends "
                    "through two random far points; 3 = through one random far point; 0 or 4 = "
                    "leave it open (the ends are joined directly)",
                    "Random closures per subchain");
  m->add_option("--seed", matrix->seed,
                "Seed of the random closures, for repeatable results (default: from the clock)")
      ->check(CLI::NonNegativeNumber);
  m->add_flag("--polynomials", matrix->polynomials,
              "Write a dictionary of Alexander polynomials per knotted subchain instead of "
              "knot names (one line, no header; cannot be plotted)");
  m->add_option("--max-poly-crossings", matrix->scan.polyOption,
                "With --polynomials: projections with more crossings give an empty polynomial")
      ->capture_default_str();
  m->add_flag("--numeric", matrix->scan.polyFlag,
              "With --polynomials: write the determinant at t = 12 instead of the polynomial");
  matrix->scan.numericAbove = tresk::NamingOptions{}.numericAbove;
  AddNumericAbove(m, matrix->scan.numericAbove);
  // The command's own batch budget: a fifth of the documented driver's, so that a scan stays
  // within a few hundred megabytes; batches only split the work, the output is the same.
  matrix->scan.memoryLimit = 150000000ULL;
  m->add_option("--memory", matrix->scan.memoryLimit,
                "Memory budget of one batch of closed subchains (13 units per point); the "
                "output does not depend on it")
      ->capture_default_str();
  m->add_option("-j,--threads", matrix->threads,
                "Threads that reduce and analyse each batch; 0 = all cores. The result does not "
                "depend on it")
      ->check(CLI::Range(0, 256))
      ->capture_default_str();
  m->add_flag("-c,--check-distances", matrix->check,
              "Check the distances between neighbouring atoms first and report chain breaks");
  m->add_flag("--progress", matrix->progress,
              "Show the progress line even when standard error is not a terminal");
  m->add_flag("-q,--quiet", matrix->quiet, "No progress line and no log messages");
  m->callback([matrix] { RunMatrix(*matrix); });

  auto plot = std::make_shared<PlotOptions>();
  CLI::App* p = app.add_subcommand(
      "plot",
      "Draw a fingerprint written by 'tresk matrix': the triangle of subchains (first residue "
      "across, last residue up), each knotted subchain coloured by its knot type, darker for "
      "a higher probability.");
  p->add_option("file", plot->file, "Fingerprint file (names mode)")
      ->required()
      ->check(CLI::ExistingFile);
  p->add_option("-o,--output", plot->output, "Picture to write: a .svg or .png file")->required();
  p->add_option("--size", plot->style.size, "Width of the picture in pixels (PNG) or points (SVG)")
      ->check(CLI::Range(200, 20000))
      ->capture_default_str();
  p->add_option("--step", plot->style.step,
                "Grid step of the scan (default: inferred from the rows)")
      ->check(CLI::NonNegativeNumber);
  p->add_option("--title", plot->style.title, "Title above the picture");
  p->callback([plot] { RunPlot(*plot); });
}
