// DrawFingerprint for `tresk plot`: loads the drawing module (cairo) on first use from beside the
// program (build tree) or from ../lib/tresk (installed tree) and calls it.
#include <dlfcn.h>
#include <unistd.h>

#include <climits>
#include <string>

#include "cli/plotDraw.hpp"

#if defined(__SANITIZE_ADDRESS__)
// fontconfig, which cairo loads for the labels, keeps its caches for the life of the process
// and never frees some of them; they are not leaks of this program.
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig.so\n";
}
// ...and say nothing about it: the commands' output is checked byte for byte.
extern "C" const char* __lsan_default_options() {
  return "print_suppressions=0";
}
#endif

namespace {

using DrawFunction = void (*)(const tresk::Fingerprint*, const std::string*, const PlotStyle*,
                              std::string*);

// The folder of the running program, "" when it cannot be told.
std::string ProgramFolder() {
  char path[PATH_MAX];
  const ssize_t n = readlink("/proc/self/exe", path, sizeof path - 1);
  if (n <= 0)
    return "";
  const std::string exe(path, static_cast<std::size_t>(n));
  return exe.substr(0, exe.find_last_of('/') + 1);
}

} // namespace

std::string DrawFingerprint(const tresk::Fingerprint& fingerprint, const std::string& picturePath,
                            const PlotStyle& style) {
  static DrawFunction draw = nullptr;
  static std::string failure;
  if (draw == nullptr && failure.empty()) {
    const std::string folder = ProgramFolder();
    std::string tried;
    for (const std::string& path :
         {folder + TRESK_DRAW_MODULE, folder + "../" TRESK_LIBDIR "/tresk/" TRESK_DRAW_MODULE}) {
      // Kept loaded for the life of the process: cairo's caches outlive the drawing.
      if (void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
        draw = reinterpret_cast<DrawFunction>(dlsym(module, "TreskDrawFingerprint"));
        break;
      }
      tried += std::string("\n  ") + dlerror();
    }
    if (draw == nullptr)
      failure = "the drawing module " TRESK_DRAW_MODULE " could not be loaded:" + tried;
  }
  if (draw == nullptr)
    return failure;
  std::string error;
  draw(&fingerprint, &picturePath, &style, &error);
  return error;
}
