// The log stream of the engine. Messages that belong on the log stream (a degenerate
// projection, batch sizes of a scan) go through tresk::Log(), so that a worker thread can hold
// its job's messages back for replay in job order without touching the process-wide std::clog.
#pragma once

#include <ostream>
#include <string>

namespace tresk {

// std::clog, unless a LogCapture is alive on the calling thread: then its text.
std::ostream& Log();

// While alive, tresk::Log() on this thread appends to `text` instead of writing to std::clog.
// Captures nest: the innermost one wins, and the previous one is restored on destruction.
struct LogCapture {
  explicit LogCapture(std::string& text);
  ~LogCapture();
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;
  void* previous;
};

} // namespace tresk
