// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace platen::test {

/// What a run of the command left behind.
struct ToolRun {
  int status = -1;
  std::string out;
  std::string err;
};

using Arguments = std::vector<std::string>;

/// A file that goes away with its last descriptor.
class ScratchFile {
 public:
  explicit ScratchFile(std::string_view contents = "") : file_(std::tmpfile(), &std::fclose) {
    std::fwrite(contents.data(), 1, contents.size(), file_.get());
    std::rewind(file_.get());
  }
  int descriptor() const { return ::fileno(file_.get()); }
  std::string contents() const {
    std::rewind(file_.get());
    std::string text;
    for (int octet = 0; (octet = std::fgetc(file_.get())) != EOF;) {
      text.push_back(static_cast<char>(octet));
    }
    return text;
  }

 private:
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
};

/// The environment of this process without what changes the command's output, and with `more`.
/// There is no home to leave anything in.
inline std::vector<std::string> toolEnvironment(const std::vector<std::string>& more) {
  std::vector<std::string> variables = more;
  for (char** variable = ::environ; *variable != nullptr; ++variable) {
    const std::string_view text = *variable;
    if (!text.starts_with("COLUMNS=") && !text.starts_with("NO_COLOR=") &&
        !text.starts_with("TERM=") && !text.starts_with("HOME=")) {
      variables.emplace_back(text);
    }
  }
  variables.emplace_back("HOME=/nonexistent");
  return variables;
}

inline std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) {
    pointers.push_back(text.data());
  }
  pointers.push_back(nullptr);
  return pointers;
}

/// Starts the command on these descriptors.
inline pid_t startTool(const Arguments& arguments, int in, int out, int err,
                       const std::vector<std::string>& environment = {}) {
  std::vector<std::string> words = arguments;
  words.insert(words.begin(), "platen");
  std::vector<std::string> variables = toolEnvironment(environment);
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_adddup2(&actions, in, STDIN_FILENO);
  ::posix_spawn_file_actions_adddup2(&actions, out, STDOUT_FILENO);
  ::posix_spawn_file_actions_adddup2(&actions, err, STDERR_FILENO);
  pid_t process = -1;
  const int error = ::posix_spawn(&process, PLATEN_TOOL, &actions, nullptr,
                                  pointersTo(words).data(), pointersTo(variables).data());
  ::posix_spawn_file_actions_destroy(&actions);
  if (error != 0) {
    throw std::runtime_error("cannot start " PLATEN_TOOL);
  }
  return process;
}

/// The exit status of the process; 128 and above for the signal that ended it.
inline int statusOf(pid_t process) {
  int status = 0;
  ::waitpid(process, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

/// Runs the command to its end, with `input` on its standard input.
inline ToolRun runTool(const Arguments& arguments, std::string_view input = "",
                       const std::vector<std::string>& environment = {}) {
  const ScratchFile in(input);
  const ScratchFile out;
  const ScratchFile err;
  const int status = statusOf(
      startTool(arguments, in.descriptor(), out.descriptor(), err.descriptor(), environment));
  return {status, out.contents(), err.contents()};
}

/// A folder of its own for the files of one test.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "platen-tool-XXXXXX").string();
    path_ = ::mkdtemp(pattern.data());
  }
  ~ScratchFolder() { std::filesystem::remove_all(path_); }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  std::string pathOf(std::string_view name) const { return path_ / name; }
  std::string add(std::string_view name, std::string_view contents) const {
    std::ofstream(pathOf(name), std::ios::binary) << contents;
    return pathOf(name);
  }

 private:
  std::filesystem::path path_;
};

}  // namespace platen::test
