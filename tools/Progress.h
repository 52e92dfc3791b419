// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace platen::tool {

/// One line at the bottom of the terminal that tells how things go, on standard error, redrawn in
/// place. Where that is no terminal, or a "dumb" one, nothing is ever shown. What is shown goes
/// with it.
///
/// Threads: one thread at a time. Neither copied nor moved.
class Progress {
 public:
  using Clock = std::chrono::steady_clock;
  /// Makes the line: of at most so many columns, so long after it was first asked for.
  using Text = std::function<std::string(std::size_t columns, Clock::duration elapsed)>;

  explicit Progress(bool isWanted);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress() { erase(); }

  /// How long to wait at most until the next `refresh`.
  static constexpr std::chrono::milliseconds kInterval{100};

  /// What to show from now on. The first drawing is an interval away: what is over by then needs no
  /// line.
  void show(Text text);
  /// Redraws the line when an interval has passed.
  void refresh();
  /// Takes the line off the terminal, before something else is written there; the next `refresh`
  /// brings it back.
  void erase();

  [[nodiscard]] bool isWanted() const noexcept { return isWanted_; }

 private:
  bool isWanted_;
  bool isDrawn_ = false;
  Text text_;
  Clock::time_point begin_;
  Clock::time_point next_;
};

/// How far a transfer is: "[=====>    ]  45%  28.9 MB of 64.0 MB  12.3 MB/s". Without a `length`,
/// and where there is no room, with less.
std::string transferLine(std::uint64_t sent, std::optional<std::uint64_t> length,
                         std::chrono::steady_clock::duration elapsed, std::size_t columns);

/// A number of octets for people: "999 B", "28.9 MB".
std::string sizeText(double octets);

}  // namespace platen::tool
