// `tresk knot` and `tresk poly` (placeholder until the single-chain engine lands).
#include "cli/commands.hpp"

void RegisterKnotCommands(CLI::App&) {}
