// Multi-threaded batch passes of the scan: dynamic hand-out of job indices, per-job capture of
// the log stream (replayed in job order) and progress reports from the calling thread.
#include "scan/workers.hpp"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <iostream>
#include <mutex>
#include <streambuf>
#include <string>
#include <thread>
#include <vector>

namespace {

// Where the log output of the job running on this thread goes; null outside a job.
thread_local std::string* tLogSlot = nullptr;

// Stream buffer installed in std::clog during a threaded pass: text written by a job goes to
// that job's slot; text from any other thread goes straight to the original buffer.
class JobLogBuffer : public std::streambuf {
public:
  explicit JobLogBuffer(std::streambuf* original) : original_(original) {}

protected:
  int_type overflow(int_type c) override {
    if (traits_type::eq_int_type(c, traits_type::eof()))
      return traits_type::not_eof(c);
    if (tLogSlot != nullptr) {
      tLogSlot->push_back(traits_type::to_char_type(c));
      return c;
    }
    return original_ != nullptr ? original_->sputc(traits_type::to_char_type(c))
                                : traits_type::eof();
  }
  std::streamsize xsputn(const char* s, std::streamsize n) override {
    if (tLogSlot != nullptr) {
      tLogSlot->append(s, static_cast<std::size_t>(n));
      return n;
    }
    return original_ != nullptr ? original_->sputn(s, n) : 0;
  }
  int sync() override {
    return tLogSlot == nullptr && original_ != nullptr ? original_->pubsync() : 0;
  }

private:
  std::streambuf* original_;
};

} // namespace

void RunJobs(std::size_t count, int workers, const std::function<void(std::size_t)>& body,
             const std::function<void(std::size_t)>& progress) {
  if (workers <= 1 || count <= 1) {
    for (std::size_t i = 0; i < count; ++i) {
      body(i);
      progress(i + 1);
    }
    return;
  }

  std::vector<std::string> logs(count);
  JobLogBuffer capture(std::clog.rdbuf());
  std::streambuf* original = std::clog.rdbuf(&capture);

  std::atomic<std::size_t> nextJob{0};
  std::atomic<std::size_t> finished{0};
  std::mutex mutex;
  std::condition_variable wake;
  std::exception_ptr failure;

  auto worker = [&]() {
    for (;;) {
      const std::size_t i = nextJob.fetch_add(1);
      if (i >= count)
        break;
      tLogSlot = &logs[i];
      try {
        body(i);
      } catch (...) {
        std::lock_guard<std::mutex> lock(mutex);
        if (!failure)
          failure = std::current_exception();
        nextJob.store(count);
      }
      tLogSlot = nullptr;
      finished.fetch_add(1);
      wake.notify_one();
    }
    wake.notify_one();
  };

  const std::size_t threadCount = std::min<std::size_t>(static_cast<std::size_t>(workers), count);
  std::vector<std::thread> threads;
  threads.reserve(threadCount);
  for (std::size_t t = 0; t < threadCount; ++t)
    threads.emplace_back(worker);

  // The calling thread only reports progress, about ten times a second.
  std::size_t reported = 0;
  {
    std::unique_lock<std::mutex> lock(mutex);
    while (finished.load() < count && !failure) {
      wake.wait_for(lock, std::chrono::milliseconds(100));
      const std::size_t now = finished.load();
      if (now != reported) {
        lock.unlock();
        progress(now);
        reported = now;
        lock.lock();
      }
    }
  }
  for (std::thread& t : threads)
    t.join();
  std::clog.rdbuf(original);

  for (const std::string& text : logs) {
    if (!text.empty())
      std::clog.write(text.data(), static_cast<std::streamsize>(text.size()));
  }
  if (failure)
    std::rethrow_exception(failure);
  if (reported != count)
    progress(count);
}
