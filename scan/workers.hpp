// The worker threads of one scan: started once, they run every batch pass of the scan while the
// log text comes out exactly as a single-threaded run writes it.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>

namespace tresk {

// Threads that a setting asks for: 0 = every core, negative = 1; at least 1.
int WorkerCount(int threads);

class WorkerPool {
public:
  // WorkerCount(threads) workers; with one, no thread is started and passes run on the caller.
  explicit WorkerPool(int threads);
  ~WorkerPool();
  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;

  // Calls body(i) for every i in 0 .. count-1 and returns when all are done. With one worker
  // they run in order on the calling thread. Otherwise the workers take indices dynamically;
  // what a job writes to tresk::Log() is captured on its worker and replayed to tresk::Log() on
  // the calling thread in job order. progress(done) is called on the calling thread (after each
  // job, or about ten times a second while workers run). An exception thrown by a job stops the
  // pass and is rethrown on the calling thread.
  void Run(std::size_t count, const std::function<void(std::size_t)>& body,
           const std::function<void(std::size_t)>& progress);

private:
  struct State;
  std::unique_ptr<State> state_;
};

} // namespace tresk
