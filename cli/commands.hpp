// The sub-commands of the `tresk` program, each group registered by its own file.
#pragma once

#include <CLI/CLI.hpp>

// `tresk knot` and `tresk poly`: the knot of one chain.
void RegisterKnotCommands(CLI::App& app);
// `tresk matrix` and `tresk plot`: the knot fingerprint and its picture.
void RegisterScanCommands(CLI::App& app);
