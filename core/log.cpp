// The per-thread redirection of the engine's log stream.
#include "core/log.hpp"

#include <iostream>
#include <sstream>

namespace tresk {
namespace {

// A string-backed stream per capture; the stream writes straight into the caller's string.
struct Capture {
  explicit Capture(std::string& target) : text(target) {}
  std::string& text;
  std::ostringstream stream;
};

thread_local Capture* tCapture = nullptr;

} // namespace

std::ostream& Log() {
  if (tCapture == nullptr)
    return std::clog;
  return tCapture->stream;
}

LogCapture::LogCapture(std::string& text) : previous(tCapture) {
  tCapture = new Capture(text);
}

LogCapture::~LogCapture() {
  tCapture->text += tCapture->stream.str();
  delete tCapture;
  tCapture = static_cast<Capture*>(previous);
}

} // namespace tresk
