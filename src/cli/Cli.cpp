#include "cli/Cli.h"

#include <CLI/CLI.hpp>
#include <vector>

namespace plotmeter {

int RunCli(std::span<const std::string> args, std::ostream& out, std::ostream& err) {
  CLI::App app{"Plotmeter: the area of a plot of land from survey data", "plotmeter-cli"};
  app.set_version_flag("--version", "plotmeter-cli 0.1.0");
  std::vector<std::string> reversed(args.rbegin(), args.rend());
  try {
    app.parse(reversed);
  } catch (const CLI::ParseError& e) {
    return app.exit(e, out, err);
  }
  out << app.help();
  return 0;
}

}  // namespace plotmeter
