// SPDX-License-Identifier: Apache-2.0
#include <exception>
#include <iostream>
#include <string_view>

#include "CommandLine.h"
#include "DisplayText.h"
#include "Failure.h"

namespace platen::tool {

namespace {

// One line, whatever a printer or a file has put into it.
int complain(ExitStatus status, std::string_view line) {
  std::cout.flush();
  std::cerr << "platen: " << harmless(line) << '\n';
  return static_cast<int>(status);
}

int run(int argc, const char* const* argv) {
  try {
    runCommandLine(argc, argv, std::cout);
    std::cout.flush();
    return std::cout ? static_cast<int>(ExitStatus::done)
                     : complain(ExitStatus::failed, "cannot write to standard output");
  } catch (const Failure& failure) {
    return complain(failure.status(), failure.what());
  } catch (const std::exception& exception) {
    return complain(ExitStatus::failed, exception.what());
  }
}

}  // namespace

}  // namespace platen::tool

int main(int argc, char** argv) { return platen::tool::run(argc, argv); }
