// SPDX-License-Identifier: Apache-2.0
#include "coding/CodableClasses.h"

#include <functional>
#include <map>

#include "platen/IPPAttributeGroup.h"
#include "platen/IPPCodableClass.h"
#include "platen/IPPValue.h"

namespace platen::inline v0 {

namespace {

using Decode = std::function<IPPCoder::Object(IPPCoder&)>;
using Classes = std::map<std::string_view, Decode>;

template <class Class>
void add(Classes& classes, const Class& codable) {
  classes.try_emplace(codable.className(),
                      [&codable](IPPCoder& coder) { return codable.initWithCoder(coder); });
}

Classes collectClasses() {
  Classes classes;
  for (const auto& [syntaxName, valueClass] : IPPValue::ippValuesCatalog()) {
    add(classes, *valueClass);
  }
  for (const auto& [groupName, groupClass] : IPPAttributeGroup::ippGroupsCatalog()) {
    add(classes, *groupClass);
  }
  for (auto* entry = IPPCodableRegistration::first(); entry != nullptr; entry = entry->next()) {
    add(classes, entry->codableClass());
  }
  return classes;
}

const Classes& allClasses() {
  static const auto* const classes = new Classes(collectClasses());  // lives for the process
  return *classes;
}

}  // namespace

bool isCodableClass(std::string_view className) { return allClasses().contains(className); }

IPPCoder::Object decodeObjectOfClass(std::string_view className, IPPCoder& coder) {
  return allClasses().at(className)(coder);
}

}  // namespace platen::inline v0
