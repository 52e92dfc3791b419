// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPValue.h"

namespace platen::inline v0 {

TextEncoding IPPValue::_encodingFromLanguage(std::string_view language) {
  const std::size_t dot = language.find('.');
  if (dot == std::string_view::npos || language.find('.', dot + 1) != std::string_view::npos) {
    return TextEncoding::utf8();
  }
  return TextEncoding::forIANACharSetName(language.substr(dot + 1)).value_or(TextEncoding::utf8());
}

}  // namespace platen::inline v0
