// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>
#include <pty.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "tests/tool/ToolRun.h"

namespace platen::test {

/// Runs the command to its end with its standard output and its standard error on one terminal of
/// that many columns; `out` of the result is all that was written there. `look` is given what has
/// been written so far, whenever there is more, and the process.
inline ToolRun runOnTerminal(
    const Arguments& arguments, int in, unsigned short columns,
    const std::vector<std::string>& environment,
    const std::function<void(const std::string&, pid_t)>& look = [](const auto&, pid_t) {}) {
  int master = -1;
  int slave = -1;
  const winsize size{25, columns, 0, 0};
  EXPECT_EQ(::openpty(&master, &slave, nullptr, nullptr, &size), 0);
  const pid_t process = startTool(arguments, in, slave, slave, environment);
  ::close(slave);
  ToolRun run;
  char buffer[1024];
  for (ssize_t count = 0; (count = ::read(master, buffer, sizeof buffer)) > 0;) {
    run.out.append(buffer, static_cast<std::size_t>(count));
    look(run.out, process);
  }
  ::close(master);
  run.status = statusOf(process);
  return run;
}

/// What a terminal shows of `written` at last, and each line as it once stood there. It knows the
/// three things that the command makes use of: new lines, going back to the first column, and
/// clearing the rest of a line.
class Screen {
 public:
  explicit Screen(const std::string& written) {
    for (std::size_t at = 0; at < written.size(); ++at) {
      if (written.compare(at, 3, "\x1B[K") == 0) {
        line_.erase(column_);
        at += 2;
        note();
      } else if (written[at] == '\r') {
        column_ = 0;
      } else if (written[at] == '\n') {
        note();
        shown_ += line_ + "\n";
        line_.clear();
        column_ = 0;
      } else {
        line_.resize(std::max(line_.size(), column_ + 1), ' ');
        line_[column_++] = written[at];
      }
    }
    shown_ += line_;
  }

  const std::string& shown() const { return shown_; }
  const std::vector<std::string>& states() const { return states_; }
  /// Whether some line once had `text` in it.
  bool hasShown(const std::string& text) const {
    return std::any_of(states_.begin(), states_.end(), [&](const std::string& line) {
      return line.find(text) != std::string::npos;
    });
  }
  std::size_t widest() const {
    std::size_t width = 0;
    for (const std::string& line : states_) {
      width = std::max(width, line.size());
    }
    return width;
  }

 private:
  void note() { states_.push_back(line_); }

  std::string line_;
  std::size_t column_ = 0;
  std::string shown_;
  std::vector<std::string> states_;
};

}  // namespace platen::test
