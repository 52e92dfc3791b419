// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "Failure.h"
#include "platen/Exception.h"
#include "platen/TextEncoding.h"

namespace platen::tool {

/// Does what puts the text of an option into a request. What the command line gives and a value
/// cannot hold is wrong usage.
template <class Use>
void withOption(const std::string& option, const std::string& text, TextEncoding encoding,
                Use use) {
  if (!encoding.encode(text)) {
    throw Failure(ExitStatus::usage, option + " \"" + text + "\" is not " + encoding.name());
  }
  try {
    use();
  } catch (const Exception&) {
    throw Failure(ExitStatus::usage, option + " \"" + text + "\" is too long");
  }
}

}  // namespace platen::tool
