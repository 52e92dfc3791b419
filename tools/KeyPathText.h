// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The results of key paths for scripts and people.

#include <iosfwd>
#include <string>

#include "DisplayText.h"
#include "platen/IPPMessage.h"

namespace platen::tool {

/// What the key path leads to in `message`, harmless to a terminal: texts and numbers bare, lists
/// with an element on each line, groups and dictionaries with a name and its value on each line.
/// An attribute is its value, as people read it; an element that is null is an empty line. An
/// operator alone is all attributes that it leads to, as those of a group. Raises a `Failure` that
/// names `source` for a key that is undefined, and where the path leads to nothing.
Lines linesAtKeyPath(const IPPMessage& message, const std::string& path, const std::string& source);

/// Writes each of them and a line end.
void writeLines(const Lines& lines, std::ostream& out);

}  // namespace platen::tool
