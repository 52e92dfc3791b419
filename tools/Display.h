// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace platen::tool {

/// How many columns the terminal has that is open there; nothing when that is no terminal, or one
/// that does not say.
std::optional<std::size_t> terminalWidth(int descriptor);

/// Whether a terminal is open there that knows more than to show characters one after the other.
bool isCapableTerminal(int descriptor);

/// What standard output is like: how wide, and whether it shows styles.
class Display {
 public:
  /// As wide as the terminal, else as the environment's COLUMNS says, else 100 columns; `width`
  /// goes before all of them, and 0 is without end. Styles are shown on a terminal only, and
  /// neither with NO_COLOR in the environment nor on a "dumb" one.
  static Display ofStandardOutput(std::optional<std::size_t> width);

  Display(std::size_t width, bool styled) noexcept : width_(width), styled_(styled) {}

  [[nodiscard]] std::size_t width() const noexcept { return width_; }
  /// `text` in bold, for headings.
  [[nodiscard]] std::string strong(std::string_view text) const;
  /// `text` in the colour of what came, of what went, and of what is another.
  [[nodiscard]] std::string added(std::string_view text) const;
  [[nodiscard]] std::string removed(std::string_view text) const;
  [[nodiscard]] std::string changed(std::string_view text) const;
  /// `text` toned down, for what is not looked at first.
  [[nodiscard]] std::string faint(std::string_view text) const;

 private:
  [[nodiscard]] std::string in(std::string_view style, std::string_view text) const;

  std::size_t width_;
  bool styled_;
};

}  // namespace platen::tool
