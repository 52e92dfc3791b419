// SPDX-License-Identifier: Apache-2.0

// Stands in for libFuzzer's main: feeds the empty input and then every file of the given files and
// directories to the fuzz target, once each, in the order of their names. A finding ends the
// process as it does under libFuzzer.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> filesOf(const fs::path& path) {
  if (!fs::is_directory(path)) return {path};
  std::vector<fs::path> files;
  for (const auto& entry : fs::recursive_directory_iterator(path)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<std::uint8_t> readFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path.string());
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

int replay(const std::vector<std::string>& arguments) {
  LLVMFuzzerTestOneInput(nullptr, 0);
  std::size_t replayed = 0;
  for (const std::string& argument : arguments) {
    for (const fs::path& file : filesOf(argument)) {
      // Before the run, so that the last line names the input that ended the process.
      std::fprintf(stderr, "%s\n", file.c_str());
      const std::vector<std::uint8_t> input = readFile(file);
      LLVMFuzzerTestOneInput(input.data(), input.size());
      ++replayed;
    }
  }
  std::printf("replayed the empty input and %zu files\n", replayed);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return replay(std::vector<std::string>(argv + 1, argv + argc));
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
}
