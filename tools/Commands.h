// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The three commands. Each writes its result to `out` and raises a `Failure` when it cannot.

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "Failure.h"
#include "platen/IPPConstants.h"

namespace platen::tool {

struct AttributesOptions {
  std::string uri;
  /// Of attributes, with wildcards, or of groups of attributes (RFC 8011 §4.2.5.1); none for all.
  std::vector<std::string> names;
  double timeout = kDefaultTimeout;
  /// Columns; 0 for lines without end, nothing for what the display has.
  std::optional<std::size_t> width;
};

struct PrintOptions {
  std::string uri;
  std::string file;
  /// A MIME type; nothing to guess it from the document.
  std::optional<std::string> format;
  /// Of the job; nothing for the file's own.
  std::optional<std::string> name;
  bool wait = false;
  double timeout = kDefaultTimeout;
};

struct DumpOptions {
  enum class Kind { guessed, request, response };

  std::string file;
  Kind kind = Kind::guessed;
  /// As in `AttributesOptions`.
  std::optional<std::size_t> width;
};

/// Shows what a printer says about itself.
void showAttributes(const AttributesOptions& options, std::ostream& out);
/// Prints a file, and waits for the end of the job when asked to.
void printFile(const PrintOptions& options, std::ostream& out);
/// Shows a captured message.
void dumpMessage(const DumpOptions& options, std::ostream& out);

}  // namespace platen::tool
