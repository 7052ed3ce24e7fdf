// `tresk`: a thin command-line front end over libtresk for people who do not write C++.
#include <iostream>

#include "cli/commands.hpp"

int main(int argc, char** argv) {
  CLI::App app{"tresk - find and name knots in open chains (proteins, polymers)"};
  app.require_subcommand(1);
  app.set_version_flag("--version", "tresk 0.1.0");
  RegisterKnotCommands(app);
  RegisterScanCommands(app);
  RegisterBatchCommands(app);
  RegisterTableCommands(app);
  RegisterCoreCommand(app);
  CLI11_PARSE(app, argc, argv);
  return 0;
}
