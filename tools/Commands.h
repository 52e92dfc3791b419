// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The commands on single printers and files. Each writes its result to `out`
/// and raises a `Failure` when it cannot.

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "Failure.h"
#include "platen/IPPConstants.h"

namespace platen::tool {

struct AttributesOptions {
  /// All asked at once; one at least.
  std::vector<std::string> uris;
  /// Of attributes, with wildcards, or of groups of attributes (RFC 8011 §4.2.5.1); none for all.
  std::vector<std::string> names;
  double timeout = kDefaultTimeout;
  /// Columns; 0 for lines without end, nothing for what the display has.
  std::optional<std::size_t> width;
  /// For scripts.
  bool json = false;
  /// Where to keep the answer of the one printer; nothing for nowhere.
  std::optional<std::string> save;
  /// A key path, of which only the result is shown.
  std::optional<std::string> key;
};

struct PrintOptions {
  std::string uri;
  std::string file;
  /// A MIME type; nothing to guess it from the document.
  std::optional<std::string> format;
  /// Of the job; nothing for the file's own.
  std::optional<std::string> name;
  bool wait = false;
  /// Without a progress line.
  bool quiet = false;
  /// For scripts: the job at the end, in place of its states as they come.
  bool json = false;
  double timeout = kDefaultTimeout;
};

struct DumpOptions {
  enum class Kind { guessed, request, response };
  enum class Form { guessed, archive };

  std::string file;
  Kind kind = Kind::guessed;
  Form form = Form::guessed;
  /// As in `AttributesOptions`.
  std::optional<std::size_t> width;
  std::optional<std::string> key;
  bool json = false;
};

struct DiffOptions {
  /// Each the path of a file or the URI of a printer.
  std::string before;
  std::string after;
  /// Names of attributes to leave out, with wildcards.
  std::vector<std::string> ignored;
  double timeout = kDefaultTimeout;
  /// As in `AttributesOptions`.
  std::optional<std::size_t> width;
  bool json = false;
};

/// Shows what printers say about themselves.
void showAttributes(const AttributesOptions& options, std::ostream& out);
/// Prints a file, and waits for the end of the job when asked to.
void printFile(const PrintOptions& options, std::ostream& out);
/// Shows a captured message.
void dumpMessage(const DumpOptions& options, std::ostream& out);
/// Shows in what two answers differ. When they do it ends with an empty `Failure` of status 1, as
/// diff(1) does; whatever keeps it from comparing is a `Failure` of 2 and above.
void diffAnswers(const DiffOptions& options, std::ostream& out);

}  // namespace platen::tool
