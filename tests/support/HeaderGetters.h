// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace platen::test {

/// What a header says of one class.
struct DeclaredClass {
  std::string name;
  std::vector<std::string> bases;
  /// The public operations that take no argument, change nothing and give something; neither
  /// static ones nor those whose name begins with an underscore.
  std::set<std::string> getters;
};

/// The exported classes in the text of a public header, but for those inside of others.
std::vector<DeclaredClass> declaredClasses(const std::string& header);

}  // namespace platen::test
