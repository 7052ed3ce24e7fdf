// libFuzzer target for the chain reader: the first input byte picks the file kind, the rest is
// the file. Chains that read fine and are small are closed and named too, so the closures, the
// reduction, the projection and the naming see hostile coordinates as well.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "entry/entry.hpp"
#include "preprocessing/readChain.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0)
    return 0;
  static const char* const kExtensions[] = {".xyz", ".pdb", ".cif", ".txt"};
  static const std::string base = "/tmp/tresk_fuzz_" + std::to_string(getpid());
  const std::string path = base + kExtensions[data[0] % 4];
  FILE* f = std::fopen(path.c_str(), "wb");
  if (f == nullptr)
    return 0;
  std::fwrite(data + 1, 1, size - 1, f);
  std::fclose(f);

  tresk::ReadOptions options;
  options.maxBytes = 1 << 20;
  const tresk::ReadResult r = tresk::ReadChain(path, options);
  std::remove(path.c_str());
  if (!r.error.empty() || r.atoms.size() > 200)
    return 0;
  std::srand(1);
  int counts[42];
  for (int method : {1, 2}) {
    FindMajorKnot(r.atoms, counts, method, 2);
    (void)GiveTheNameOfKnot(counts);
  }
  return 0;
}
