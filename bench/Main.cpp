// SPDX-License-Identifier: Apache-2.0

// platen-bench codec FILE...   times the decoder and the encoder on captured messages
// platen-bench limits FILE...  times what bounds them from below
// platen-bench upload|at-once|sequential FILE, or exchange FILE for all three
//                              times exchanges that are answered with the octets of FILE
// platen-bench printer URI     times exchanges with a printer

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>

#include "Bench.h"

namespace {

using platen::bench::Capture;

constexpr int kFailure = 1;
constexpr int kWrongArguments = 2;

Capture readCapture(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file || std::filesystem::is_directory(path)) {
    throw std::runtime_error("cannot read " + path.string());
  }
  return {path.stem().string(),
          {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()}};
}

// All are read before the first is measured: a list with a wrong name in it measures nothing.
std::vector<Capture> readCaptures(char** first, char** last) {
  std::vector<Capture> captures;
  for (; first != last; ++first) {
    captures.push_back(readCapture(*first));
  }
  return captures;
}

bool runCommand(std::string_view command, char** first, char** last) {
  using namespace platen::bench;
  if (command == "printer") {
    benchPrinter(*first);
    return true;
  }
  const std::vector<Capture> captures = readCaptures(first, last);
  if (command == "codec") {
    benchCodec(captures);
  } else if (command == "limits") {
    benchLimits(captures);
  } else {
    return benchExchange(command, captures.front());
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    if (argc > 2 && runCommand(argv[1], argv + 2, argv + argc)) {
      return 0;
    }
    std::fputs(
        "usage: platen-bench codec|limits FILE...\n"
        "       platen-bench exchange|upload|at-once|sequential FILE\n"
        "       platen-bench printer URI\n",
        stderr);
    return kWrongArguments;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "platen-bench: %s\n", failure.what());
    return kFailure;
  }
}
