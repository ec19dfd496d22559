// `seluvorne`: the floors of a data root at a terminal. Exit status 0 on
// success, 1 for an error of the library (printed as one line
// "error NNNN: description"), 2 for a mistake in the command line.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>

#include "commands.h"
#include "context.h"
#include "seluvorne/error.h"

#ifndef SELUVORNE_VERSION
#define SELUVORNE_VERSION "0"
#endif

namespace seluvorne::cli {

void PrintJson(const nlohmann::json& value) {
  std::cout << value.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
}

namespace {

int Run(int argc, char** argv) {
  Context context;
  CLI::App app{
      "Beam floors of a building at the terminal: list floors and beams, show and draw "
      "a beam, copy, export and import pages, check floors.",
      "seluvorne"};
  app.set_version_flag("--version", std::string("seluvorne ") + SELUVORNE_VERSION);
  app.require_subcommand(1);
  app.fallthrough();
  app.option_defaults()->always_capture_default();
  app.add_option("--data", context.data_root_option,
                 "the data root holding the floors (else SELUVORNE_DATA, else the settings file)");
  app.add_flag("--json", context.json, "print results as JSON");
  app.footer(
      "Floors are Z/K/F numbers under the data root (contractor/project/floor) or a floor folder;\n"
      "pages are numbered from 1, as the selection dialog shows them.\n"
      "Example: seluvorne --data ~/beams show 1/2/3 4");

  AddFloorCommands(app, context);
  AddBeamCommands(app, context);
  AddTransferCommands(app, context);
  AddCopyCommand(app, context);

  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp& e) {
    return app.exit(e);
  } catch (const CLI::CallForAllHelp& e) {
    return app.exit(e);
  } catch (const CLI::CallForVersion& e) {
    return app.exit(e);
  } catch (const CLI::ParseError& e) {
    app.exit(e);
    return 2;
  } catch (const UsageError& e) {
    fmt::print(stderr, "usage error: {}\n", e.what());
    return 2;
  } catch (const CommandFailed& e) {
    fmt::print(stderr, "{}\n", e.what());
    return 1;
  } catch (const Error& e) {
    fmt::print(stderr, "error {}: {}\n", e.number, e.description);
    return 1;
  } catch (const std::exception& e) {
    fmt::print(stderr, "error 440: {}\n", e.what());
    return 1;
  }
  return 0;
}

}  // namespace
}  // namespace seluvorne::cli

int main(int argc, char** argv) {
  return seluvorne::cli::Run(argc, argv);
}
