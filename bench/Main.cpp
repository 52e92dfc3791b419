// SPDX-License-Identifier: Apache-2.0

// platen-bench codec FILE...   times the decoder and the encoder on captured messages
// platen-bench limits FILE...  times what bounds them from below

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

}  // namespace

int main(int argc, char** argv) {
  const std::string_view command = argc > 2 ? argv[1] : "";
  if (command != "codec" && command != "limits") {
    std::fputs("usage: platen-bench codec|limits FILE...\n", stderr);
    return kWrongArguments;
  }
  try {
    const std::vector<Capture> captures = readCaptures(argv + 2, argv + argc);
    (command == "codec" ? platen::bench::benchCodec : platen::bench::benchLimits)(captures);
    return 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "platen-bench: %s\n", failure.what());
    return kFailure;
  }
}
