// SPDX-License-Identifier: Apache-2.0
#include "Failure.h"

#include <iostream>

#include "DisplayText.h"

namespace platen::tool {

void complain(const std::string& line) {
  std::cout.flush();
  std::cerr << "platen: " << harmless(line) << '\n';
}

}  // namespace platen::tool
