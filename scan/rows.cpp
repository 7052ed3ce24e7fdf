// The two formats of a scan's output row.
#include "scan/rows.hpp"

// Names mode: "firstId lastId verdict first last"; polynomial mode: "(firstId, lastId): verdict".
RowFile MakeRowFromJob(std::string verdict, Job job, int strength, int namesMode) {
  std::string text;
  if (namesMode != 0) {
    text = std::to_string(job.firstId) + " " + std::to_string(job.lastId) + " " + verdict + " " +
           std::to_string(job.first) + " " + std::to_string(job.last);
  } else {
    text = "(" + std::to_string(job.firstId) + ", " + std::to_string(job.lastId) + "): " + verdict;
  }
  return RowFile{job.first, job.last, strength, std::move(text)};
}
