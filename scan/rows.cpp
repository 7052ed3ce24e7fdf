// The two formats of a scan's output row and the short decimal text of a float (three
// decimals, trailing zeros and a bare point removed).
#include "scan/rows.hpp"

#include <iomanip>
#include <sstream>

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

// 0.5 -> "0.5", 1 -> "1", 1/3 -> "0.333", 0.0004 -> "0", -0 -> "-0"; inf and nan unchanged.
std::string removeTrailingZeros(float value) {
  std::ostringstream out;
  out << std::fixed << std::setprecision(3) << static_cast<double>(value);
  std::string text = out.str();
  while (text.find('.') != std::string::npos && text.back() == '0')
    text.pop_back();
  if (!text.empty() && text.back() == '.')
    text.pop_back();
  return text;
}
