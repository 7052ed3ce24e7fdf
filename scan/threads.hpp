// Run settings of the fingerprint scan that are not arguments of its calls: how many threads
// analyse a batch of closed subchains, and an optional progress hook for long scans.
#pragma once

// Number of threads for the reduction (host path) and the analysis of each batch: 1 (the
// default) runs everything on the caller's thread; 0 uses every core; negative values count as 1.
// The output and the order of the log messages do not depend on it: every random draw stays in
// the single-threaded batch preparation and results are gathered in job order.
void SetFingerprintThreads(int threads);
// The setting as last given (0 = every core).
int GetFingerprintThreads();
// The number of threads a scan will actually use (at least 1).
int FingerprintWorkerCount();

// Progress of a scan: `phase` 1 is the coarse grid, 2 the refinement. `done` and `total` count
// closed subchain copies twice, once when reduced and once when analysed; `total` is the whole
// phase. Always called on the caller's thread, at most every tenth of a second while threads
// work and after every step otherwise.
using FingerprintProgress = void (*)(int phase, unsigned long long done, unsigned long long total,
                                     void* user);
// Installs the hook (nullptr removes it); `user` is passed back unchanged.
void SetFingerprintProgress(FingerprintProgress callback, void* user);
// Calls the installed hook, if any.
void ReportFingerprintProgress(int phase, unsigned long long done, unsigned long long total);
