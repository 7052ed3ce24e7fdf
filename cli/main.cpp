// `tresk`: a thin command-line front end over libtresk for people who do not write C++.
#include <cstring>
#include <iostream>

#include "cli/commands.hpp"

namespace {

// The subcommands, by the function that registers them.
struct Group {
  const char* names[2];
  void (*add)(CLI::App&);
};
const Group kGroups[] = {{{"knot", "poly"}, RegisterKnotCommands},
                         {{"matrix", "plot"}, RegisterScanCommands},
                         {{"batch", nullptr}, RegisterBatchCommands},
                         {{"build-extended-table", nullptr}, RegisterTableCommands},
                         {{"core", nullptr}, RegisterCoreCommand},
                         {{"map", nullptr}, RegisterMapCommand}};

} // namespace

int main(int argc, char** argv) {
  CLI::App app{"tresk - find and name knots in open chains (proteins, polymers)"};
  app.require_subcommand(1);
  app.set_version_flag("--version", "tresk 0.1.0");
  // Building every subcommand's options takes longer than many a command's work: when the first
  // argument names a subcommand only its group is registered (its parsing and help are the
  // same); anything else (--help, --version, a mistyped name) gets every subcommand.
  const Group* asked = nullptr;
  for (const Group& g : kGroups)
    for (const char* name : g.names)
      if (argc > 1 && name && std::strcmp(argv[1], name) == 0)
        asked = &g;
  for (const Group& g : kGroups)
    if (!asked || asked == &g)
      g.add(app);
  CLI11_PARSE(app, argc, argv);
  return 0;
}
