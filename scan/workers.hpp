// Runs the independent jobs of one batch pass on several threads while keeping the log stream
// exactly as a single-threaded run would write it.
#pragma once

#include <cstddef>
#include <functional>

// Calls body(i) for every i in 0 .. count-1. With one worker everything runs in order on the
// calling thread. With more, the jobs are handed out dynamically to that many threads; what a
// job writes to std::clog is held back and replayed in job order once all jobs are done.
// progress(done) is called on the calling thread as jobs finish. An exception thrown by a job
// stops the pass and is rethrown on the calling thread.
void RunJobs(std::size_t count, int workers, const std::function<void(std::size_t)>& body,
             const std::function<void(std::size_t)>& progress);
