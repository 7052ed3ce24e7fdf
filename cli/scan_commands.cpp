// `tresk matrix` and `tresk plot` (placeholder until the scan lands).
#include "cli/commands.hpp"

void RegisterScanCommands(CLI::App&) {}
