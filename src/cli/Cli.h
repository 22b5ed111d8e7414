// plotmeter-cli: the survey tool from the command line, over the same core as the
// desktop program. Runs in-process so that tests can call it with string streams.
#pragma once

#include <ostream>
#include <span>
#include <string>

namespace plotmeter {

// `args` excludes the program name. Returns the exit status: 0 success, 1 a refused
// file, failed processing or output that could not be written, 2 a usage error.
// `outIsTerminal`: standard output is a terminal, where the control bytes of a file's
// text are shown harmlessly.
int RunCli(std::span<const std::string> args, std::ostream& out, std::ostream& err,
           bool outIsTerminal = false);

}  // namespace plotmeter
