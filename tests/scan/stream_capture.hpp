// Test helper: collects what is written to a standard stream (std::clog, std::cerr) while it
// lives, so the scan's progress and error messages can be compared letter for letter.
#pragma once

#include <ostream>
#include <sstream>
#include <string>

class StreamCapture {
public:
  explicit StreamCapture(std::ostream& stream)
      : stream_(stream), old_(stream.rdbuf(text_.rdbuf())) {}
  ~StreamCapture() { stream_.rdbuf(old_); }
  StreamCapture(const StreamCapture&) = delete;
  StreamCapture& operator=(const StreamCapture&) = delete;
  std::string Text() const { return text_.str(); }

private:
  std::ostream& stream_;
  std::ostringstream text_;
  std::streambuf* old_;
};
