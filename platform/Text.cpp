// SPDX-License-Identifier: Apache-2.0
#include "platen/Text.h"

#include <cstring>

namespace platen::inline v0 {

Text::Text(std::optional<std::string_view> text) {
  if (!text) {
    return;
  }
  char* copy = new char[text->size() + 1];  // never a null pointer, so that "" is not absent
  std::memcpy(copy, text->data(), text->size());
  copy[text->size()] = '\0';
  octets_ = copy;
  size_ = text->size() | kOwned;
}

Text::Text(const Text& other) : Text(other.view()) {}

}  // namespace platen::inline v0
