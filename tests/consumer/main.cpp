// SPDX-License-Identifier: Apache-2.0

// Counts the catalogs, and what is in none of them. The classes in them register themselves, which
// a linker undoes when it drops what nobody calls by name; so the sizes are the proof that the
// whole library was linked.

#include <platen/IPPAttributeGroup.h>
#include <platen/IPPCodableClass.h>
#include <platen/IPPValue.h>

#include <cstddef>
#include <iostream>

namespace {

std::size_t countOtherClasses() {
  std::size_t count = 0;
  const auto* entry = platen::IPPCodableRegistration::first();
  for (; entry != nullptr; entry = entry->next()) {
    ++count;
  }
  return count;
}

}  // namespace

int main() {
  constexpr std::size_t kValueClasses = 23;
  constexpr std::size_t kGroupClasses = 6;
  constexpr std::size_t kOtherClasses = 5;
  const std::size_t values = platen::IPPValue::ippValuesCatalog().size();
  const std::size_t groups = platen::IPPAttributeGroup::ippGroupsCatalog().size();
  const std::size_t others = countOtherClasses();
  std::cout << values << " value classes, " << groups << " group classes, " << others
            << " others\n";
  return values == kValueClasses && groups == kGroupClasses && others == kOtherClasses ? 0 : 1;
}
