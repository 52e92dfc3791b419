// SPDX-License-Identifier: Apache-2.0
#include <cstdlib>
#include <exception>
#include <iostream>

#include "CommandLine.h"
#include "Failure.h"

namespace platen::tool {

namespace {

ExitStatus run(int argc, const char* const* argv) {
  try {
    runCommandLine(argc, argv, std::cout);
    std::cout.flush();
    if (std::cout) {
      return ExitStatus::done;
    }
    complain("cannot write to standard output");
  } catch (const Failure& failure) {
    if (*failure.what() != '\0') {
      complain(failure.what());
    }
    return failure.status();
  } catch (const std::exception& exception) {
    complain(exception.what());
  }
  return ExitStatus::failed;
}

}  // namespace

}  // namespace platen::tool

int main(int argc, char** argv) {
  using platen::tool::ExitStatus;
  const ExitStatus status = platen::tool::run(argc, argv);
  if (status >= ExitStatus::unreachable) {
    // Nobody waits any more for the look-up of a name, which would hold up a normal end.
    std::cout.flush();
    std::_Exit(static_cast<int>(status));
  }
  return static_cast<int>(status);
}
