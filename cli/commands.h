// The subcommands of `seluvorne`, each added to the application by its own
// function, in the file of its concern.
#pragma once

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "context.h"

namespace seluvorne::cli {

void AddFloorCommands(CLI::App& app, Context& context);     // floors, new, check
void AddBeamCommands(CLI::App& app, Context& context);      // pages, show, draw, select
void AddTransferCommands(CLI::App& app, Context& context);  // export, import
void AddCopyCommand(CLI::App& app, Context& context);       // copy

// Makes the floor's files as `seluvorne new` does, with every table the
// library's members use; answers whether the floor file existed already.
bool MakeFloor(Context& context, const Floor& floor);

// Prints `value` as JSON on standard output (two-space indent, UTF-8).
void PrintJson(const nlohmann::json& value);

}  // namespace seluvorne::cli
