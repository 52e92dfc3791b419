// SPDX-License-Identifier: Apache-2.0

/// How the items of an archive become octets. A string that is not UTF-8 is
///
///     { "$octets": BASE64 }          ; in JSON
///     a byte string                  ; in CBOR

#include <nlohmann/json.hpp>

#include "coding/ArchiveForm.h"
#include "coding/ArchiveKeys.h"
#include "platform/Utf8.h"

namespace platen::inline v0 {

namespace {

using Json = nlohmann::ordered_json;  // Keeps keys in the order in which they were written.

class FormWriter {
 public:
  explicit FormWriter(bool isBinary) : isBinary_(isBinary) {}

  // NOLINTNEXTLINE(misc-no-recursion): bounded by kIPPArchiveDeepestNesting
  [[nodiscard]] Json formOf(const ArchiveNode& node) const {
    if (const auto* boolean = node.ifBool()) return *boolean;
    if (const auto* integer = node.ifInt()) return *integer;
    if (const auto* real = node.ifReal()) return *real;
    if (const auto* string = node.ifString()) return formOfString(*string);
    if (const auto* array = node.ifArray()) return formOfArray(*array);
    if (const auto* object = node.ifObject()) return formOfObject(*object);
    return nullptr;
  }

 private:
  [[nodiscard]] Json formOfString(const std::string& string) const {
    if (isValidUtf8(string)) {
      return string;
    }
    if (isBinary_) {
      return Json::binary(Data(string.begin(), string.end()));
    }
    return Json::object({{std::string(kOctetsKey), base64Of(string)}});
  }

  [[nodiscard]] Json formOfArray(const ArchiveNode::Array& array) const {
    Json::array_t items;
    for (const ArchiveNode& item : array) {
      items.push_back(formOf(item));
    }
    return items;
  }

  [[nodiscard]] Json formOfObject(const ArchiveNode::Object& object) const {
    Json::object_t fields;
    for (const auto& [key, value] : object) {
      if (key != kIdKey || !value.isAbsent()) {
        fields.push_back({key, formOf(value)});
      }
    }
    return fields;
  }

  bool isBinary_;
};

}  // namespace

Data writeArchiveForm(const ArchiveNode& root, IPPArchiveFormat format) {
  const bool isBinary = format == IPPArchiveFormat::cbor;
  const Json form = FormWriter(isBinary).formOf(root);
  if (isBinary) {
    return Json::to_cbor(form);
  }
  const bool isIndented = format == IPPArchiveFormat::indentedJSON;
  const std::string text = form.dump(isIndented ? 2 : -1) + (isIndented ? "\n" : "");
  return {text.begin(), text.end()};
}

}  // namespace platen::inline v0
