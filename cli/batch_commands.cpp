// `tresk batch`: the knot of every chain of many files, one row per file and chain, analysed by
// worker processes and written in input order, so that a killed run resumed gives the same file.
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "cli/commands.hpp"
#include "entry/api.hpp" // for tresk::SurveyFile, tresk::FormatSurveyRow, tresk::DoneKeys

namespace {

struct BatchOptions {
  std::vector<std::string> inputs;
  std::string output;
  std::string format = "tsv";
  int jobs = 0; // 0: every core
  long long seed = 1;
  tresk::SurveyOptions survey;
};

using Unit = tresk::SurveyInput;

[[noreturn]] void Refuse(const std::string& message) {
  std::cerr << "tresk batch: " << message << "\n";
  Fail(1);
}

std::vector<Unit> ExpandInputs(const BatchOptions& o) {
  std::string error;
  std::vector<Unit> units = tresk::ExpandSurveyInputs(o.inputs, o.survey.choice.chain, error);
  if (!error.empty())
    Refuse(error);
  return units;
}

// A worker's end of the work: unit numbers in, [number, length, rows] messages out, until the
// parent closes the unit pipe.
[[noreturn]] void Work(int tasks, int results, const std::vector<Unit>& units,
                       const BatchOptions& o, tresk::SurveyFormat format) {
  const int quiet = open("/dev/null", O_WRONLY);
  dup2(quiet, 1); // the library's own messages would only clutter the terminal
  dup2(quiet, 2);
  std::int32_t index;
  while (read(tasks, &index, sizeof index) == sizeof index) {
    tresk::SurveyOptions survey = o.survey;
    survey.choice.chain = units[index].chain;
    std::string rows;
    for (const tresk::SurveyRow& row : tresk::SurveyFile(units[index].path, survey))
      rows += tresk::FormatSurveyRow(row, format);
    const std::uint32_t length = static_cast<std::uint32_t>(rows.size());
    std::string message(reinterpret_cast<const char*>(&index), sizeof index);
    message.append(reinterpret_cast<const char*>(&length), sizeof length);
    message += rows;
    for (std::size_t sent = 0; sent < message.size();) {
      const ssize_t n = write(results, message.data() + sent, message.size() - sent);
      if (n <= 0)
        _exit(1);
      sent += static_cast<std::size_t>(n);
    }
  }
  _exit(0);
}

struct Worker {
  pid_t pid = -1;
  int tasks = -1;   // the parent writes unit numbers here
  int results = -1; // and reads finished rows here
  int unit = -1;    // the unit it works on, -1 when idle
  std::string received;
};

class Pool {
public:
  Pool(const std::vector<Unit>& units, const BatchOptions& o, tresk::SurveyFormat format, int out)
      : units_(units), o_(o), format_(format), out_(out) {}

  Worker Start() {
    int down[2], up[2];
    if (pipe(down) != 0 || pipe(up) != 0)
      Refuse(std::string("cannot start a worker: ") + std::strerror(errno));
    std::cout.flush();
    const pid_t pid = fork();
    if (pid < 0)
      Refuse(std::string("cannot start a worker: ") + std::strerror(errno));
    if (pid == 0) {
      close(out_);
      for (const Worker& w : workers_) {
        close(w.tasks);
        close(w.results);
      }
      close(down[1]);
      close(up[0]);
      try {
        Work(down[0], up[1], units_, o_, format_);
      } catch (...) { // never back into the parent's code: the parent reports the unit
      }
      _exit(3);
    }
    close(down[0]);
    close(up[1]);
    Worker w;
    w.pid = pid;
    w.tasks = down[1];
    w.results = up[0];
    return w;
  }

  // Hands the next unit to `w`, or closes its unit pipe when none is left.
  void Feed(Worker& w, std::size_t& next, const std::vector<int>& todo) {
    w.unit = -1;
    if (next >= todo.size()) {
      if (w.tasks >= 0)
        close(w.tasks);
      w.tasks = -1;
      return;
    }
    w.unit = todo[next++];
    const std::int32_t index = w.unit;
    (void)!write(w.tasks, &index, sizeof index); // a dead worker is noticed on its result pipe
  }

  // Runs `todo` (unit numbers in input order) on `jobs` workers; `finished` receives each unit's
  // rows as they come.
  template <typename Finished> void Run(const std::vector<int>& todo, int jobs, Finished finished) {
    std::size_t next = 0;
    for (int k = 0; k < jobs; ++k) {
      workers_.push_back(Start());
      Feed(workers_.back(), next, todo);
    }
    while (!workers_.empty()) {
      std::vector<pollfd> polls;
      for (const Worker& w : workers_)
        polls.push_back({w.results, POLLIN, 0});
      if (poll(polls.data(), polls.size(), -1) < 0 && errno != EINTR)
        Refuse(std::string("waiting for the workers failed: ") + std::strerror(errno));
      for (std::size_t k = workers_.size(); k-- > 0;) {
        if (polls[k].revents == 0)
          continue;
        Worker& w = workers_[k];
        char buffer[65536];
        const ssize_t n = read(w.results, buffer, sizeof buffer);
        if (n > 0) {
          w.received.append(buffer, static_cast<std::size_t>(n));
          Deliver(w, next, todo, finished);
          continue;
        }
        if (n < 0 && errno == EINTR)
          continue;
        // The worker has ended: after its last unit, or in the middle of one.
        close(w.results);
        if (w.tasks >= 0)
          close(w.tasks);
        int status = 0;
        waitpid(w.pid, &status, 0);
        const int lost = w.unit;
        workers_.erase(workers_.begin() + static_cast<std::ptrdiff_t>(k));
        if (lost < 0)
          continue;
        tresk::SurveyRow row;
        row.file = units_[lost].path;
        row.chain = units_[lost].chain;
        row.error =
            WIFSIGNALED(status)
                ? "the analysis crashed (" + std::string(strsignal(WTERMSIG(status))) + ")"
                : "the analysis stopped (status " + std::to_string(WEXITSTATUS(status)) + ")";
        finished(lost, tresk::FormatSurveyRow(row, format_));
        if (next < todo.size()) {
          workers_.push_back(Start());
          Feed(workers_.back(), next, todo);
        }
      }
    }
  }

private:
  template <typename Finished>
  void Deliver(Worker& w, std::size_t& next, const std::vector<int>& todo, Finished& finished) {
    constexpr std::size_t kHead = sizeof(std::int32_t) + sizeof(std::uint32_t);
    while (w.received.size() >= kHead) {
      std::int32_t index;
      std::uint32_t length;
      std::memcpy(&index, w.received.data(), sizeof index);
      std::memcpy(&length, w.received.data() + sizeof index, sizeof length);
      if (w.received.size() < kHead + length)
        return;
      finished(index, w.received.substr(kHead, length));
      w.received.erase(0, kHead + length);
      Feed(w, next, todo);
    }
  }

  const std::vector<Unit>& units_;
  const BatchOptions& o_;
  tresk::SurveyFormat format_;
  int out_;
  std::vector<Worker> workers_;
};

void WriteWhole(int out, const std::string& text, const std::string& path) {
  for (std::size_t done = 0; done < text.size();) {
    const ssize_t n = write(out, text.data() + done, text.size() - done);
    if (n < 0 && errno == EINTR)
      continue;
    if (n <= 0)
      Refuse("could not write " + path + ": " + std::strerror(n < 0 ? errno : ENOSPC));
    done += static_cast<std::size_t>(n);
  }
}

// "\r12/40 files, 3.1 files/s, 9 s left" on a terminal.
void ShowProgress(std::size_t done, std::size_t total,
                  std::chrono::steady_clock::time_point start) {
  const double seconds =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  const double rate = seconds > 0 ? done / seconds : 0.0;
  char line[160];
  std::snprintf(line, sizeof line, "\r%zu/%zu files, %.1f files/s, %.0f s left   ", done, total,
                rate, rate > 0 ? (total - done) / rate : 0.0);
  std::cerr << line << (done == total ? "\n" : "") << std::flush;
}

void RunBatch(BatchOptions& o) {
  const tresk::SurveyFormat format =
      o.format == "jsonl" ? tresk::SurveyFormat::Jsonl : tresk::SurveyFormat::Tsv;
  o.survey.seed = static_cast<unsigned>(o.seed);
  const std::vector<Unit> units = ExpandInputs(o);

  // Rows already in the output are skipped; a row cut short at its end is cut off.
  const tresk::SurveyDone done = tresk::DoneKeys(o.output, format);
  if (!done.error.empty())
    Refuse("will not append to " + o.output + ": " + done.error);
  std::set<std::string> doneFiles;
  for (const auto& key : done.keys)
    doneFiles.insert(key.first);
  std::vector<int> todo;
  for (std::size_t k = 0; k < units.size(); ++k) {
    const auto key = tresk::SurveyKey(units[k].path, units[k].chain, format);
    if (units[k].chain.empty() ? doneFiles.count(key.first) == 0 : done.keys.count(key) == 0)
      todo.push_back(static_cast<int>(k));
  }
  const int out = open(o.output.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
  if (out < 0 || ftruncate(out, static_cast<off_t>(done.wholeBytes)) != 0)
    Refuse("cannot write " + o.output + ": " + std::strerror(errno));
  if (done.wholeBytes == 0)
    WriteWhole(out, tresk::SurveyHeader(format), o.output);
  if (todo.size() < units.size())
    std::cerr << "tresk batch: " << units.size() - todo.size() << " of " << units.size()
              << " files are already in " << o.output << "\n";

  // Rows are written whole, each file's in one write, in input order.
  std::signal(SIGPIPE, SIG_IGN);
  const bool terminal = isatty(2) != 0;
  const auto start = std::chrono::steady_clock::now();
  auto lastShown = start;
  std::map<int, std::string> waiting;
  std::size_t written = 0, finished = 0;
  int jobs = o.jobs > 0 ? o.jobs : static_cast<int>(std::max(1L, sysconf(_SC_NPROCESSORS_ONLN)));
  jobs = std::max(1, std::min<int>(jobs, static_cast<int>(todo.size())));
  Pool pool(units, o, format, out);
  if (!todo.empty())
    pool.Run(todo, jobs, [&](int unit, std::string rows) {
      waiting[unit] = std::move(rows);
      for (auto first = waiting.begin();
           written < todo.size() && first != waiting.end() && first->first == todo[written];
           first = waiting.begin(), ++written) {
        WriteWhole(out, first->second, o.output);
        waiting.erase(first);
      }
      const auto now = std::chrono::steady_clock::now();
      ++finished;
      if (terminal &&
          (finished == todo.size() || now - lastShown > std::chrono::milliseconds(200))) {
        ShowProgress(finished, todo.size(), start);
        lastShown = now;
      }
    });
  if (close(out) != 0)
    Refuse("could not write " + o.output + ": " + std::strerror(errno));
}

constexpr const char* kBatchHelp =
    "Name the knot of every chain of many files: one row per file and chain (file, chain, atoms, "
    "breaks, verdict, dominant type, its share, seconds, error), in input order. Rerun with the "
    "same output to resume: rows already there are skipped, and a file that cannot be read gets "
    "an error row. Every polymer chain of a structure is named unless --chain or the list names "
    "one.";

} // namespace

void RegisterBatchCommands(CLI::App& app) {
  auto batch = std::make_shared<BatchOptions>();
  CLI::App* b = app.add_subcommand("batch", kBatchHelp);
  b->add_option("inputs", batch->inputs,
                "Chain files; folders (their .xyz, .pdb, .ent, .cif, .mmcif files, gzipped or "
                "not, sorted, not recursive); @LIST: a file with a path and optionally a chain "
                "id per line")
      ->required();
  b->add_option("-o,--out", batch->output, "The table written or resumed")->required();
  b->add_option("--format", batch->format, "tsv or jsonl (one JSON object per line)")
      ->check(CLI::IsMember({"tsv", "jsonl"}))
      ->capture_default_str();
  b->add_option("-j,--jobs", batch->jobs, "Worker processes (default: every core)")
      ->check(CLI::Range(1, 1024));

  AddClosureOptions(b, batch->survey.closureMethod, batch->survey.closures,
                    "How to close each chain, as for `tresk knot`", "Random closures per chain");
  b->add_option("-s,--seed", batch->seed,
                "Seed of the random closures, mixed with each file name and chain so that a row "
                "does not depend on the worker or the order")
      ->check(CLI::Range(0LL, 4294967295LL))
      ->capture_default_str();
  b->add_flag(
      "--no-times", [batch](std::int64_t) { batch->survey.times = false; },
      "Write 0 seconds, so that two runs give byte-identical tables");
  AddChainChoice(b, batch->survey.choice);
  b->footer("Example: tresk batch proteins/ @knotted.txt -o results.tsv -n 100");
  b->callback([batch] { RunBatch(*batch); });
}
