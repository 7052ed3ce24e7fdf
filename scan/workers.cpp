// The worker pool of a scan: threads parked between passes, dynamic hand-out of job indices,
// per-job capture of the log text (replayed in job order) and progress from the calling thread.
#include "scan/workers.hpp"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "core/log.hpp" // for tresk::Log, tresk::LogCapture

namespace tresk {

// More threads than this only cost memory and start-up time.
constexpr int kMaxWorkers = 256;

int WorkerCount(int threads) {
  if (threads == 0) {
    const unsigned cores = std::thread::hardware_concurrency();
    threads = cores == 0 ? 1 : static_cast<int>(std::min<unsigned>(cores, kMaxWorkers));
  }
  return threads < 1 ? 1 : std::min(threads, kMaxWorkers);
}

struct WorkerPool::State {
  std::mutex mutex;
  std::condition_variable passStarted; // workers wait here between passes
  std::condition_variable workerDone;  // the caller waits here during a pass
  std::vector<std::thread> threads;
  bool stopping = false;

  // The current pass; written under the mutex before `pass` changes.
  unsigned long long pass = 0;
  const std::function<void(std::size_t)>* body = nullptr;
  std::vector<std::string>* logs = nullptr;
  std::size_t count = 0;
  std::atomic<std::size_t> next{0};
  std::atomic<std::size_t> finished{0};
  std::size_t workersDone = 0;
  std::exception_ptr failure;

  void Work() {
    unsigned long long seen = 0;
    std::unique_lock<std::mutex> lock(mutex);
    for (;;) {
      passStarted.wait(lock, [&] { return stopping || pass != seen; });
      if (stopping)
        return;
      seen = pass;
      lock.unlock();
      for (std::size_t i = next.fetch_add(1); i < count; i = next.fetch_add(1)) {
        try {
          LogCapture capture((*logs)[i]);
          (*body)(i);
        } catch (...) {
          std::lock_guard<std::mutex> guard(mutex);
          if (!failure)
            failure = std::current_exception();
          next.store(count);
        }
        finished.fetch_add(1);
      }
      lock.lock();
      ++workersDone;
      workerDone.notify_one();
    }
  }
};

WorkerPool::WorkerPool(int threads) : state_(std::make_unique<State>()) {
  const int workers = WorkerCount(threads);
  // A thread that cannot start (a process or system limit) leaves the pool with those that did;
  // with none, the passes run on the caller's thread. The results are the same either way.
  for (int t = 0; workers > 1 && t < workers; ++t) {
    try {
      state_->threads.emplace_back([s = state_.get()] { s->Work(); });
    } catch (const std::system_error&) {
      break;
    }
  }
}

WorkerPool::~WorkerPool() {
  {
    std::lock_guard<std::mutex> lock(state_->mutex);
    state_->stopping = true;
  }
  state_->passStarted.notify_all();
  for (std::thread& t : state_->threads)
    t.join();
}

void WorkerPool::Run(std::size_t count, const std::function<void(std::size_t)>& body,
                     const std::function<void(std::size_t)>& progress) {
  State& s = *state_;
  if (s.threads.empty() || count <= 1) {
    for (std::size_t i = 0; i < count; ++i) {
      body(i);
      progress(i + 1);
    }
    return;
  }

  std::vector<std::string> logs(count);
  std::size_t reported = 0;
  {
    std::unique_lock<std::mutex> lock(s.mutex);
    s.body = &body;
    s.logs = &logs;
    s.count = count;
    s.next.store(0);
    s.finished.store(0);
    s.workersDone = 0;
    s.failure = nullptr;
    ++s.pass;
    s.passStarted.notify_all();
    // Every worker checks in before the pass ends, so none still reads it when the next begins.
    while (s.workersDone < s.threads.size()) {
      s.workerDone.wait_for(lock, std::chrono::milliseconds(100));
      const std::size_t now = s.finished.load();
      if (now != reported && s.workersDone < s.threads.size()) {
        lock.unlock();
        progress(now);
        reported = now;
        lock.lock();
      }
    }
  }

  std::ostream& log = Log();
  for (const std::string& text : logs)
    log << text;
  if (s.failure)
    std::rethrow_exception(s.failure);
  if (reported != count)
    progress(count);
}

} // namespace tresk
