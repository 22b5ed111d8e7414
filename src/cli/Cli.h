// plotmeter-cli: the survey tool from the command line, over the same core as the
// desktop program. Runs in-process so that tests can call it with string streams.
#pragma once

#include <ostream>
#include <span>
#include <string>

namespace plotmeter {

// `args` excludes the program name. Returns the exit status: 0 success, 1 a refused
// file or failed processing, 2 a usage error.
int RunCli(std::span<const std::string> args, std::ostream& out, std::ostream& err);

}  // namespace plotmeter
