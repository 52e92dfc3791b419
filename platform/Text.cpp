// SPDX-License-Identifier: Apache-2.0
#include "platen/Text.h"

#include <cstring>
#include <utility>

namespace platen::inline v0 {

Text::Text(std::optional<std::string_view> text) {
  if (!text) {
    return;
  }
  char* copy = new char[text->size() + 1];  // never a null pointer, so that "" is not absent
  std::memcpy(copy, text->data(), text->size());
  copy[text->size()] = '\0';
  octets_ = copy;
  size_ = text->size() & (~std::size_t{0} >> 1U);
  owned_ = true;
}

Text Text::borrowed(std::string_view text) noexcept {
  Text result;
  result.octets_ = text.data() != nullptr ? text.data() : "";
  result.size_ = text.size() & (~std::size_t{0} >> 1U);
  return result;
}

Text::Text(const Text& other) : Text(other.view()) {}

Text::Text(Text&& other) noexcept
    : octets_(std::exchange(other.octets_, nullptr)), size_(other.size_), owned_(other.owned_) {
  other.size_ = 0;
  other.owned_ = false;
}

Text& Text::operator=(Text other) noexcept {
  std::swap(octets_, other.octets_);
  const std::size_t size = size_;
  const bool owned = owned_;
  size_ = other.size_;
  owned_ = other.owned_;
  other.size_ = size & (~std::size_t{0} >> 1U);
  other.owned_ = owned;
  return *this;
}

Text::~Text() {
  if (owned_) {
    delete[] octets_;
  }
}

}  // namespace platen::inline v0
