#include <unistd.h>

#include <iostream>
#include <string>
#include <vector>

#include "cli/Cli.h"
#include "cli/TextOutput.h"

int main(int argc, char** argv) {
  std::vector<std::string> args(argv + 1, argv + argc);
  // Standard output by its descriptor, so that a failed write is reported with its reason;
  // on a terminal each line shows as it is made, in turn with the boxes on standard error.
  plotmeter::OutputFile stdoutFile(STDOUT_FILENO);
  std::ostream out(&stdoutFile);
  const bool terminal = ::isatty(STDOUT_FILENO) == 1;
  if (terminal) out.setf(std::ios::unitbuf);
  return plotmeter::RunCli(args, out, std::cerr, terminal);
}
