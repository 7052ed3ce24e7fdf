// The scan's thread count and progress hook: process-wide settings read at the start of a scan.
#include "scan/threads.hpp"

#include <atomic>
#include <thread>

namespace {
std::atomic<int> gThreads{1};
std::atomic<FingerprintProgress> gProgress{nullptr};
std::atomic<void*> gProgressUser{nullptr};
} // namespace

void SetFingerprintThreads(int threads) {
  gThreads.store(threads < 0 ? 1 : threads);
}

int GetFingerprintThreads() {
  return gThreads.load();
}

int FingerprintWorkerCount() {
  int threads = gThreads.load();
  if (threads == 0) {
    unsigned cores = std::thread::hardware_concurrency();
    threads = cores == 0 ? 1 : static_cast<int>(cores);
  }
  return threads;
}

void SetFingerprintProgress(FingerprintProgress callback, void* user) {
  gProgressUser.store(user);
  gProgress.store(callback);
}

void ReportFingerprintProgress(int phase, unsigned long long done, unsigned long long total) {
  FingerprintProgress callback = gProgress.load();
  if (callback != nullptr)
    callback(phase, done, total, gProgressUser.load());
}
